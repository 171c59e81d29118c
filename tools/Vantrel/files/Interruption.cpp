// Work on many files that may be broken off between two of them.
#include "Interruption.h"

#include <QThread>

void endIfInterrupted()
{
    if (QThread::currentThread()->isInterruptionRequested())
        throw WorkInterrupted();
}
