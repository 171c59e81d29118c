// The program: one window and the event loop.
#include "CommandLine.h"
#include "Process.h"
#include "StopSignals.h"
#include "Translations.h"
#include "Vantrel.h"

#include <QApplication>

#include <cstdio>

namespace {

constexpr int failed = 1;

// Several times what it has open at once, and what it starts: the worker, the watcher, a search or a
// recovery, the desktop's bus, and what the libraries start for themselves.
constexpr NeededMeans meansOfWindow{.openFiles = 64, .threads = 12};

} // namespace

int main(int argc, char *argv[])
{
    prepareProcess();
    // Read first: help, version and errors need no display.
    const CommandLine commandLine = readCommandLine(decodedArguments(argc, argv));
    if (commandLine.wish != CommandLine::ShowWindow)
        return endBefore(commandLine);
    if (const char *const lack = lackOf(meansOfWindow)) {
        std::fprintf(stderr, "vantrel: %s; nothing was touched\n", lack);
        return failed;
    }

    const QApplication application(argc, argv);
    const Translations translations;
    const StopSignals stopSignals;
    QObject::connect(&stopSignals, &StopSignals::sigStopWanted, &application, &QCoreApplication::quit);
    Vantrel window;
    window.openProject(commandLine.projectDir);
    window.show();
    return QApplication::exec();
}
