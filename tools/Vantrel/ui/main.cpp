// The program: one window and the event loop.
#include "StopSignals.h"
#include "Vantrel.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    const StopSignals stopSignals;
    QObject::connect(&stopSignals, &StopSignals::sigStopWanted, &application, &QCoreApplication::quit);
    Vantrel window;
    window.show();
    return QApplication::exec();
}
