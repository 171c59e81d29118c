// The headless companion.
#include "CommandLine.h"
#include "ExitCode.h"
#include "Process.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char *argv[])
{
    prepareProcess();
    // Several times what a run has open at once.
    constexpr int mostOpenFiles = 64;
    if (!mayOpenFiles(mostOpenFiles)) {
        std::fputs("vantrel-cli: too few files may be open at once; nothing was touched\n", stderr);
        return static_cast<int>(ExitCode::Refused);
    }
    const QCoreApplication application(argc, argv);
    return static_cast<int>(runCommandLine(QCoreApplication::arguments()));
}
