// Bringing back what a folder held beside what it holds now.
#include "FolderMerge.h"

#include "FileComparison.h"
#include "FileMove.h"
#include "RootFolder.h"
#include "SafeCopy.h"

#include <QFile>

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

enum class Kind { Nothing, Folder, File, Other, Unknown };

/// An entry of an open folder, whose name need not be a text.
struct Place
{
    const OpenFolder &folder;
    QByteArray name;
    QByteArray path; ///< for messages, and to read the file

    QString text() const { return QFile::decodeName(path); }
    Place in(const OpenFolder &opened, const QByteArray &entry) const
    {
        return {opened, entry, path + '/' + entry};
    }
};

Kind kindOf(const Place &place)
{
    struct stat status = {};
    errno = place.folder.error();
    if (!place.folder.isOpen() ||
        fstatat(place.folder.descriptor(), place.name.constData(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return errno == ENOENT ? Kind::Nothing : errno == ENOTDIR ? Kind::Other : Kind::Unknown;
    if (S_ISDIR(status.st_mode))
        return Kind::Folder;
    return S_ISREG(status.st_mode) ? Kind::File : Kind::Other;
}

bool removeIfEmpty(const Place &place)
{
    return unlinkat(place.folder.descriptor(), place.name.constData(), AT_REMOVEDIR) == 0;
}

QString notListed(const Place &place, int error)
{
    return u"%1 could not be listed: %2"_s.arg(place.text(), qt_error_string(error));
}

QString merge(const Place &from, const Place &to);

QString mergeEntries(const Place &from, const Place &to)
{
    const OpenFolder source(from.folder, from.name);
    const OpenFolder target(to.folder, to.name);
    if (!source.isOpen())
        return notListed(from, source.error());
    if (!target.isOpen())
        return notListed(to, target.error());
    const FolderListing listing = source.list();
    if (listing.error != 0)
        return notListed(from, listing.error);
    QString firstFailure;
    for (const FolderEntry &entry : listing.entries) {
        const QString failure = merge(from.in(source, entry.name), to.in(target, entry.name));
        if (firstFailure.isEmpty())
            firstFailure = failure;
    }
    return firstFailure;
}

QString merge(const Place &from, const Place &to)
{
    const Kind target = kindOf(to);
    if (target == Kind::Unknown)
        return u"%1 could not be looked at: %2"_s.arg(to.text(), qt_error_string(errno));
    if (target == Kind::Nothing) {
        if (to.folder.isOpen() && renameToNothing(from.folder, from.name, to.folder, to.name))
            return {};
        errno = to.folder.isOpen() ? errno : to.folder.error();
        return u"%1 could not be moved to %2: %3"_s.arg(from.text(), to.text(), qt_error_string(errno));
    }
    if (target != Kind::Folder || kindOf(from) != Kind::Folder)
        return {};
    const QString failure = mergeEntries(from, to);
    // Stays where it holds something still.
    removeIfEmpty(from);
    return failure;
}

bool removeTwin(const Place &from, const QByteArray &twinPath)
{
    const Kind kind = kindOf(from);
    if (kind == Kind::File) {
        const QString twin = QFile::decodeName(twinPath);
        return haveSameContent(from.text(), twin) && !areOneFile(from.text(), twin) &&
               unlinkat(from.folder.descriptor(), from.name.constData(), 0) == 0;
    }
    if (kind != Kind::Folder)
        return false;
    {
        const OpenFolder folder(from.folder, from.name);
        for (const FolderEntry &entry : folder.list().entries)
            removeTwin(from.in(folder, entry.name), twinPath + '/' + entry.name);
    }
    return removeIfEmpty(from);
}

bool removeEmpty(const Place &place)
{
    {
        const OpenFolder folder(place.folder, place.name);
        for (const FolderEntry &entry : folder.list().entries) {
            if (entry.kind == EntryKind::Folder)
                removeEmpty(place.in(folder, entry.name));
        }
    }
    return removeIfEmpty(place);
}

} // namespace

QString mergeBack(const RootFolder &root, const QString &from, const QString &to)
{
    const OpenFolder above = root.parentOf(from);
    const Place source{above, lastNameOf(from), QFile::encodeName(from)};
    if (kindOf(source) == Kind::Nothing)
        return {};
    const OpenFolder aboveTarget = root.parentOf(to);
    return merge(source, {aboveTarget, lastNameOf(to), QFile::encodeName(to)});
}

bool removeTwins(const RootFolder &root, const QString &from, const QString &to)
{
    const OpenFolder above = root.parentOf(from);
    const Place source{above, lastNameOf(from), QFile::encodeName(from)};
    return kindOf(source) == Kind::Nothing || removeTwin(source, QFile::encodeName(to));
}

bool removeEmptyFolders(const RootFolder &root, const QString &path)
{
    const OpenFolder above = root.parentOf(path);
    const Place place{above, lastNameOf(path), QFile::encodeName(path)};
    const Kind kind = kindOf(place);
    return kind == Kind::Nothing || (kind == Kind::Folder && removeEmpty(place));
}
