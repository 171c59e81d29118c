// Keeps a second run away from a project.
#include "ProjectLock.h"

#include "Limits.h"

#include <QFile>
#include <QSysInfo>

#include <cerrno>
#include <csignal>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

/// How long a process may take from making its lock file to writing its name into it.
constexpr int longestStart = 1000; // milliseconds

/// Taking over a dead process's lock is itself guarded by a lock.
QString guardOf(const QLockFile &lock)
{
    return lock.fileName() + ".rmlock"_L1;
}

/// Whether something lies there that must not be opened: a pipe would be waited for, a link may lead to
/// what has no end, and a lock is read whole.
bool isTrap(const QString &path)
{
    struct stat file = {};
    if (lstat(QFile::encodeName(path).constData(), &file) != 0 || S_ISDIR(file.st_mode))
        return false;
    return !S_ISREG(file.st_mode) || file.st_size > largestLock;
}

} // namespace

ProjectLock::ProjectLock(const QString &projectDir)
    : m_file(projectDir + "/.vantrel.lock"_L1)
{
    for (const QString &path : {m_file.fileName(), guardOf(m_file)}) {
        if (isTrap(path)) {
            refuse(path);
            return;
        }
    }
    // A run may take long: only the death of its process makes a lock stale.
    m_file.setStaleLockTime(0);
    take();
    if (m_file.isLocked() || m_file.error() != QLockFile::LockFailedError)
        return;
    qint64 process = 0;
    QString host;
    QString program;
    if (!m_file.getLockInfo(&process, &host, &program)) {
        refuse(m_file.fileName());
        return;
    }
    m_isHeldByOther = true;
    m_holder = u"%1, process %2 on %3"_s.arg(program, QString::number(process), host);
}

void ProjectLock::refuse(const QString &path)
{
    m_isHeldByOther = true;
    m_holder = u"nobody knows whom: %1 is no lock"_s.arg(path);
}

void ProjectLock::take()
{
    // Another process may have left the guard when it died; one that is in use is left alone.
    QLockFile(guardOf(m_file)).removeStaleLockFile();
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
