// The command line: which commands and options there are, and what was asked for.
#pragma once

#include "ExitCode.h"

#include <QStringList>

/// Performs what the arguments ask for; the first one is the program's name.
ExitCode runCommandLine(const QStringList &arguments);
