// Work on many files that may be broken off between two of them.
#pragma once

#include <QtGlobal>

#include <exception>
#include <functional>

/// Thrown where a thread was asked to end its work.
class WorkInterrupted final : public std::exception
{
};

/// Whether work is to end. Called on the threads that do it, more than once.
using IsEndWanted = std::function<bool()>;

/// Throws WorkInterrupted on a thread that was asked to end its work: in the way that an
/// InterruptionScope knows or, without one, by QThread::requestInterruption(). Called before a
/// folder is listed, and before a file is read, copied, compared or removed: who works on many
/// files leaves them as if the process had been killed between two of them. A thread that nobody
/// asks never meets it.
void endIfInterrupted();

/// What ends the work of this thread, for others that do a part of it. They may not outlive it.
IsEndWanted interruptionOfThisThread();

/// While it lives, the work of its thread is ended by something else than that thread: by a
/// signal, or by what ends the work of another one. Only for work that leaves nothing half done,
/// since it is broken off wherever a file begins. Of scopes in each other the innermost counts.
class InterruptionScope final
{
    Q_DISABLE_COPY_MOVE(InterruptionScope)

public:
    explicit InterruptionScope(IsEndWanted isEndWanted);
    ~InterruptionScope();

private:
    IsEndWanted m_outer;
};
