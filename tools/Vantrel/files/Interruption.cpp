// Work on many files that may be broken off between two of them.
#include "Interruption.h"

#include <QThread>

#include <utility>

namespace {

thread_local IsEndWanted isEndWantedHere;

} // namespace

void endIfInterrupted()
{
    if (isEndWantedHere ? isEndWantedHere() : QThread::currentThread()->isInterruptionRequested())
        throw WorkInterrupted();
}

IsEndWanted interruptionOfThisThread()
{
    if (isEndWantedHere)
        return isEndWantedHere;
    return [thread = QThread::currentThread()] { return thread->isInterruptionRequested(); };
}

InterruptionScope::InterruptionScope(IsEndWanted isEndWanted)
    : m_outer(std::exchange(isEndWantedHere, std::move(isEndWanted)))
{
}

InterruptionScope::~InterruptionScope()
{
    isEndWantedHere = std::move(m_outer);
}
