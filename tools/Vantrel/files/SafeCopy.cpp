// Putting a copy of a file into the place of another one.
#include "SafeCopy.h"

#include "FileComparison.h"
#include "FileIo.h"
#include "FileWriter.h"
#include "RootFolder.h"

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

/// A file that comes back is as old as it was. A disk that cannot do that keeps the bytes all the same.
void keepTime(const QString &from, const OpenFolder &folder, const QByteArray &name)
{
    struct stat status = {};
    if (stat(QFile::encodeName(from).constData(), &status) != 0)
        return;
    const std::array times{timespec{0, UTIME_OMIT}, status.st_mtim};
    utimensat(folder.descriptor(), name.constData(), times.data(), AT_SYMLINK_NOFOLLOW);
}

} // namespace

QString putCopy(const QString &source, const RootFolder &root, const QString &target)
{
    const QString folderPath = QFileInfo(target).path();
    const QByteArray name = lastNameOf(target);
    if (haveSameContent(source, target)) {
        keepTime(source, root.folder(folderPath), name);
        return {};
    }
    const QString beside = folderPath + u'/' + QLatin1StringView(unfinishedFile);
    root.makeFolder(folderPath, FolderCreation::WithParents);
    root.removeFile(beside);
    if (const int error = copyFile(source, root, beside); error != 0)
        return u"%1 could not be copied to %2: %3"_s.arg(source, folderPath, qt_error_string(error));
    if (!isWholeCopy(source, beside)) {
        root.removeFile(beside);
        return u"%1 could not be copied to %2 whole"_s.arg(source, folderPath);
    }
    const OpenFolder folder = root.folder(folderPath);
    keepTime(source, folder, unfinishedFile);
    if (renameat(folder.descriptor(), unfinishedFile, folder.descriptor(), name.constData()) != 0) {
        const QString reason = QString::fromLocal8Bit(std::strerror(errno));
        root.removeFile(beside);
        return u"%1 could not be put in place: %2"_s.arg(target, reason);
    }
    // Makes the exchange of names last.
    fsync(folder.descriptor());
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

bool removeContained(const RootFolder &root, const QString &file, const QString &holder)
{
    if (!mayExist(file))
        return true;
    return !areOneFile(file, holder) && isBeginningOf(file, holder) && root.removeFile(file);
}
