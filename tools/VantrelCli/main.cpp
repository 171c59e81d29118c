// The headless companion.
#include "CommandLine.h"
#include "ExitCode.h"
#include "Process.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char *argv[])
{
    prepareProcess();
    prepareWithoutDisplay();
    // Several times what a run has open at once.
    constexpr int mostOpenFiles = 64;
    if (const char *const lack = lackOf({.openFiles = mostOpenFiles})) {
        std::fprintf(stderr, "vantrel-cli: %s; nothing was touched\n", lack);
        return static_cast<int>(ExitCode::Refused);
    }
    const QCoreApplication application(argc, argv);
    return static_cast<int>(runCommandLine(QCoreApplication::arguments()));
}
