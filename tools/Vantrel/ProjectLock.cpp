// Keeps a second run away from a project.
#include "ProjectLock.h"

#include <QSysInfo>

#include <cerrno>

#include <csignal>

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
    m_holder = m_file.getLockInfo(&process, &host, &program)
                   ? u"%1, process %2 on %3"_s.arg(program).arg(process).arg(host)
                   : u"nobody knows whom: %1 is no lock"_s.arg(m_file.fileName());
}

void ProjectLock::take()
{
    // Taking a dead process's lock over is itself guarded by a lock, which another process may
    // have left when it died; one that is in use is left alone.
    QLockFile(m_file.fileName() + ".rmlock"_L1).removeStaleLockFile();
    if (m_file.tryLock() || !isAbandoned())
        return;
    // Its process is about to write its name into it, or another one is taking it over. Otherwise
    // nobody will: on a full disk not even the lock can be made that guards the taking over.
    if (!m_file.tryLock(longestStart) && isAbandoned() && m_file.removeStaleLockFile())
        m_file.tryLock();
}

/// Whether the lock failed because of a file without a process in it, or with one that has died.
bool ProjectLock::isAbandoned() const
{
    if (m_file.error() != QLockFile::LockFailedError)
        return false;
    qint64 process = 0;
    QString host;
    QString program;
    if (!m_file.getLockInfo(&process, &host, &program))
        return true;
    return host == QSysInfo::machineHostName() && kill(static_cast<pid_t>(process), 0) != 0 && errno == ESRCH;
}
