// What killed dry runs have left in the folders for temporary files.
#include "LeftOverStandIns.h"

#include "Interruption.h"
#include "ScratchProject.h"

#include <exception>

namespace {

/// What cannot be removed now is left to the next start.
void removeThem()
{
    try {
        ScratchProject::removeLeftOvers();
    } catch (const std::exception &) { // an interruption too
    }
}

} // namespace

LeftOverStandIns::LeftOverStandIns()
    : m_thread(QThread::create(removeThem))
{
    m_thread->start(QThread::LowPriority);
}

LeftOverStandIns::~LeftOverStandIns()
{
    m_thread->requestInterruption();
    m_thread->wait();
}
