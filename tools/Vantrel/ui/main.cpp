// The program: one window and the event loop.
#include "Application.h"
#include "CommandLine.h"
#include "Failures.h"
#include "LeftOverStandIns.h"
#include "Process.h"
#include "StopSignals.h"
#include "Translations.h"
#include "UserSettings.h"
#include "Vantrel.h"

#include <cstdio>

namespace {

constexpr int failed = 1;

// Several times what it has open at once, and what it starts: the worker, the watcher, a search or a
// recovery, the desktop's bus, and what the libraries start for themselves.
constexpr NeededMeans meansOfWindow{.openFiles = 64, .threads = 12};

int showWindow(int argc, char *argv[], const QString &projectDir)
{
    forgetSettingsWithoutAHome();
    const Application application(argc, argv);
    const Translations translations;
    const StopSignals stopSignals;
    QObject::connect(&stopSignals, &StopSignals::sigStopWanted, &application, &QCoreApplication::quit);
    const LeftOverStandIns leftOverStandIns;
    Vantrel window;
    window.openProject(projectDir);
    window.show();
    return Application::exec();
}

} // namespace

int main(int argc, char *argv[])
{
    prepareProcess();
    endInsteadOfAborting("vantrel: the program could not go on\n", failed);
    // Read first: help, version and errors need no display.
    const CommandLine commandLine = readCommandLine(decodedArguments(argc, argv));
    if (commandLine.wish != CommandLine::ShowWindow)
        return endBefore(commandLine);
    if (const char *const lack = lackOf(meansOfWindow)) {
        std::fprintf(stderr, "vantrel: %s; nothing was touched\n", lack);
        return failed;
    }
    return showWindow(argc, argv, commandLine.projectDir);
}
