// Work on many files that may be broken off between two of them.
#pragma once

#include <exception>

/// Thrown where a thread was asked to end its work.
class WorkInterrupted final : public std::exception
{
};

/// Throws WorkInterrupted on a thread that was asked to end its work (QThread::requestInterruption()).
/// Called before a file is copied, compared or removed: who works on many files leaves them as if
/// the process had been killed between two of them. A thread that nobody asks never meets it.
void endIfInterrupted();
