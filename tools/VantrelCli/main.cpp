// The headless companion.
#include "CommandLine.h"
#include "Process.h"

#include <QCoreApplication>

int main(int argc, char *argv[])
{
    prepareProcess();
    const QCoreApplication application(argc, argv);
    return static_cast<int>(runCommandLine(QCoreApplication::arguments()));
}
