// Help and documentation, printed from the tables of commands, options, exit codes and fields.
#pragma once

#include "CommandTable.h"

#include <QLatin1StringView>

class Output;

inline constexpr QLatin1StringView programName("vantrel-cli");

void printHelp(Output &output);
void printHelp(const CommandRow &command, Output &output);

/// The same and the lines of `--json` as Markdown: the tables of docs/cli.md.
void printDocs(Output &output);
/// The JSON Schema of the lines of `--json`.
void printSchema(Output &output);
