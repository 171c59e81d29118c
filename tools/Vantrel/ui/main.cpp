// The program: one window and the event loop.
#include "CommandLine.h"
#include "StopSignals.h"
#include "Translations.h"
#include "Vantrel.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    // Read first: help, version and errors need no display.
    const CommandLine commandLine = readCommandLine(decodedArguments(argc, argv));
    if (commandLine.wish != CommandLine::ShowWindow)
        return endBefore(commandLine);

    const QApplication application(argc, argv);
    const Translations translations;
    const StopSignals stopSignals;
    QObject::connect(&stopSignals, &StopSignals::sigStopWanted, &application, &QCoreApplication::quit);
    Vantrel window;
    window.openProject(commandLine.projectDir);
    window.show();
    return QApplication::exec();
}
