// Putting a copy of a file into the place of another one.
#include "SafeCopy.h"

#include "FileComparison.h"
#include "FileIo.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// The name of a copy that has not taken its place. One that an interruption left is replaced by
/// the next, since copies are made in one order.
constexpr auto unfinishedCopy = "/.vantrel.copy"_L1;

/// Makes an exchange of names in a folder last.
void syncFolder(const QString &path)
{
    const int folder = open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0)
        return;
    fsync(folder);
    close(folder);
}

/// A file that comes back is as old as it was. A disk that cannot do that keeps the bytes all the same.
void keepTime(const QString &from, const QString &to)
{
    struct stat status = {};
    if (stat(QFile::encodeName(from).constData(), &status) != 0)
        return;
    const std::array times{timespec{0, UTIME_OMIT}, status.st_mtim};
    utimensat(AT_FDCWD, QFile::encodeName(to).constData(), times.data(), AT_SYMLINK_NOFOLLOW);
}

} // namespace

QString putCopy(const QString &source, const QString &target)
{
    if (haveSameContent(source, target)) {
        keepTime(source, target);
        return {};
    }
    const QString folder = QFileInfo(target).path();
    const QString beside = folder + unfinishedCopy;
    QDir().mkpath(folder);
    QFile::remove(beside);
    if (const int error = copyFile(source, beside); error != 0)
        return u"%1 could not be copied to %2: %3"_s.arg(source, folder, qt_error_string(error));
    if (!isWholeCopy(source, beside)) {
        QFile::remove(beside);
        return u"%1 could not be copied to %2 whole"_s.arg(source, folder);
    }
    keepTime(source, beside);
    if (std::rename(QFile::encodeName(beside).constData(), QFile::encodeName(target).constData()) != 0) {
        const QString reason = QString::fromLocal8Bit(std::strerror(errno));
        QFile::remove(beside);
        return u"%1 could not be put in place: %2"_s.arg(target, reason);
    }
    syncFolder(folder);
    return {};
}

bool areOneFile(const QString &first, const QString &second)
{
    const QFileInfo a(first);
    const QFileInfo b(second);
    const QString path = a.canonicalFilePath();
    const QString otherPath = b.canonicalFilePath();
    // Where the disk does not tell, removing one of them might remove both.
    const bool isUnknown = path.isEmpty() || otherPath.isEmpty();
    return isUnknown ? a.isFile() && b.isFile() : path == otherPath;
}

bool removeContained(const QString &file, const QString &holder)
{
    if (!mayExist(file))
        return true;
    return !areOneFile(file, holder) && isBeginningOf(file, holder) && QFile::remove(file);
}
