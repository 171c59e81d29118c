// The command line of the program.
#pragma once

#include <QString>
#include <QStringList>

/// What the program is asked to do, as it stands on its command line.
struct CommandLine
{
    enum Wish {
        ShowWindow,
        PrintAndEnd,  ///< `text` goes to the standard output
        RefuseAndEnd, ///< `text` tells on the standard error what is wrong
    };

    Wish wish = ShowWindow;
    QString text;
    QString projectDir; ///< the project to open; empty for the one of the last time
};

/// The arguments that follow the program's name.
QStringList decodedArguments(int count, const char *const *arguments);

/// Reads the arguments that follow the program's name. Qt's own options are passed over. Needs no
/// application object and no display.
CommandLine readCommandLine(const QStringList &arguments);

/// Prints the text of a command line that asks for no window. Returns the exit code: 0, or 2 for
/// one that is refused.
int endBefore(const CommandLine &commandLine);
