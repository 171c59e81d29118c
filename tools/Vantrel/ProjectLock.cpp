// Keeps a second run away from a project.
#include "ProjectLock.h"

using namespace Qt::StringLiterals;

namespace {

/// How long a process may take from making its lock file to writing its name into it.
constexpr int longestStart = 1000; // milliseconds

} // namespace

ProjectLock::ProjectLock(const QString &projectDir)
    : m_file(projectDir + "/.vantrel.lock"_L1)
{
    // A run may take long: only the death of its process makes a lock stale.
    m_file.setStaleLockTime(0);
    take();
    m_isHeldByOther = !m_file.isLocked() && m_file.error() == QLockFile::LockFailedError;
    if (!m_isHeldByOther)
        return;
    qint64 process = 0;
    QString host;
    QString program;
    m_file.getLockInfo(&process, &host, &program);
    m_holder = u"%1, process %2 on %3"_s.arg(program).arg(process).arg(host);
}

void ProjectLock::take()
{
    // Taking a dead process's lock over is itself guarded by a lock, which another process may
    // have left when it died; one that is in use is left alone.
    QLockFile(m_file.fileName() + ".rmlock"_L1).removeStaleLockFile();
    if (m_file.tryLock() || !isUnfinished())
        return;
    // Nobody's name is in it: its process is about to write it, or died before it could.
    if (!m_file.tryLock(longestStart) && isUnfinished() && m_file.removeStaleLockFile())
        m_file.tryLock();
}

/// Whether the lock failed because of a file without a process in it.
bool ProjectLock::isUnfinished() const
{
    qint64 process = 0;
    QString host;
    QString program;
    return m_file.error() == QLockFile::LockFailedError && !m_file.getLockInfo(&process, &host, &program);
}
