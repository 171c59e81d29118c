// Who works on a project at this moment.
#include "LockHolder.h"

#include "Limits.h"

#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSysInfo>

#include <cerrno>
#include <csignal>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

/// The number of a process that has died may be another program's by now.
bool isAlive(qint64 process, const QString &program)
{
    if (kill(static_cast<pid_t>(process), 0) != 0 && errno == ESRCH)
        return false;
    const QString name = QFileInfo(QFile::symLinkTarget(u"/proc/%1/exe"_s.arg(process))).fileName();
    return name.isEmpty() || name == program || name == program + " (deleted)"_L1;
}

} // namespace

std::optional<QString> lockHolderOf(const QString &projectDir)
{
    const QLockFile lock(projectDir + "/.vantrel.lock"_L1);
    struct stat file = {};
    if (lstat(QFile::encodeName(lock.fileName()).constData(), &file) != 0)
        return std::nullopt;
    // Opening a pipe would wait, a lock is read whole, and no run starts beside something that is none.
    if (!S_ISREG(file.st_mode) || file.st_size > largestLock)
        return u"nobody knows whom: %1 is no lock"_s.arg(lock.fileName());
    qint64 process = 0;
    QString host;
    QString program;
    // Without a name in it, its process died at once, or is about to begin.
    if (!lock.getLockInfo(&process, &host, &program))
        return std::nullopt;
    if (host == QSysInfo::machineHostName() && !isAlive(process, program))
        return std::nullopt;
    return u"%1, process %2 on %3"_s.arg(program, QString::number(process), host);
}
