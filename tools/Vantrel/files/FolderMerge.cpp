// Bringing back what a folder held beside what it holds now.
#include "FolderMerge.h"

#include "FileComparison.h"
#include "FileMove.h"
#include "FolderListing.h"
#include "SafeCopy.h"

#include <QFile>

#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

enum class Kind { Nothing, Folder, File, Other, Unknown };

Kind kindOf(const QByteArray &path)
{
    struct stat status = {};
    if (lstat(path.constData(), &status) != 0)
        return errno == ENOENT ? Kind::Nothing : errno == ENOTDIR ? Kind::Other : Kind::Unknown;
    if (S_ISDIR(status.st_mode))
        return Kind::Folder;
    return S_ISREG(status.st_mode) ? Kind::File : Kind::Other;
}

/// Paths as the file system has them: a name need not be a text.
QString merge(const QByteArray &from, const QByteArray &to)
{
    const Kind target = kindOf(to);
    if (target == Kind::Unknown) {
        return u"%1 could not be looked at: %2"_s.arg(QFile::decodeName(to), qt_error_string(errno));
    }
    if (target == Kind::Nothing) {
        if (renameToNothing(from, to))
            return {};
        return u"%1 could not be moved to %2: %3"_s.arg(QFile::decodeName(from), QFile::decodeName(to),
                                                        qt_error_string(errno));
    }
    if (target != Kind::Folder || kindOf(from) != Kind::Folder)
        return {};
    const FolderListing listing = OpenFolder(from).list();
    if (listing.error != 0) {
        return u"%1 could not be listed: %2"_s.arg(QFile::decodeName(from), qt_error_string(listing.error));
    }
    QString firstFailure;
    for (const FolderEntry &entry : listing.entries) {
        const QString failure = merge(from + '/' + entry.name, to + '/' + entry.name);
        if (firstFailure.isEmpty())
            firstFailure = failure;
    }
    // Stays where it holds something still.
    rmdir(from.constData());
    return firstFailure;
}

bool removeTwin(const QByteArray &from, const QByteArray &to)
{
    const Kind kind = kindOf(from);
    if (kind == Kind::File) {
        const QString file = QFile::decodeName(from);
        const QString twin = QFile::decodeName(to);
        return haveSameContent(file, twin) && !areOneFile(file, twin) && QFile::remove(file);
    }
    if (kind != Kind::Folder)
        return false;
    for (const FolderEntry &entry : OpenFolder(from).list().entries)
        removeTwin(from + '/' + entry.name, to + '/' + entry.name);
    return rmdir(from.constData()) == 0;
}

bool removeIfEmpty(const QByteArray &path)
{
    for (const FolderEntry &entry : OpenFolder(path).list().entries) {
        if (entry.kind == EntryKind::Folder)
            removeIfEmpty(path + '/' + entry.name);
    }
    return rmdir(path.constData()) == 0;
}

} // namespace

QString mergeBack(const QString &from, const QString &to)
{
    const QByteArray source = QFile::encodeName(from);
    return kindOf(source) == Kind::Nothing ? QString() : merge(source, QFile::encodeName(to));
}

bool removeTwins(const QString &from, const QString &to)
{
    const QByteArray source = QFile::encodeName(from);
    return kindOf(source) == Kind::Nothing || removeTwin(source, QFile::encodeName(to));
}

bool removeEmptyFolders(const QString &path)
{
    const QByteArray folder = QFile::encodeName(path);
    const Kind kind = kindOf(folder);
    return kind == Kind::Nothing || (kind == Kind::Folder && removeIfEmpty(folder));
}
