// The folder below which the program writes.
#include "RootFolder.h"

#include "FileMove.h"
#include "FolderRemoval.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr mode_t usualRights = 0777; // but for what the process's mask takes

QString withoutLastSlashes(QString path)
{
    while (path.size() > 1 && path.endsWith(u'/'))
        path.chop(1);
    return path;
}

/// Whether a folder is there, itself and not over a link.
bool isFolder(const OpenFolder &parent, const QByteArray &name)
{
    struct stat status = {};
    if (fstatat(parent.descriptor(), name.constData(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return false;
    errno = S_ISLNK(status.st_mode) ? ELOOP : ENOTDIR;
    return S_ISDIR(status.st_mode);
}

bool makeFolderIn(const OpenFolder &parent, const QByteArray &name)
{
    const bool isMade = mkdirat(parent.descriptor(), name.constData(), usualRights) == 0;
    return isMade || (errno == EEXIST && isFolder(parent, name));
}

} // namespace

RootFolder::RootFolder(const QString &path)
    : m_path(path)
    , m_absolutePath(QFileInfo(path).absoluteFilePath())
    , m_folder(QFile::encodeName(path))
{
}

bool RootFolder::isBelow(const QString &path, QString &relative) const
{
    for (const QString &root : {m_path, m_absolutePath}) {
        if (path == root || path.startsWith(root + u'/')) {
            relative = path == root ? QString(u'.') : path.sliced(root.size() + 1);
            return true;
        }
    }
    return false;
}

OpenFolder RootFolder::folder(const QString &path) const
{
    QString relative;
    if (isBelow(path, relative))
        return OpenFolder::beneath(m_folder, QFile::encodeName(relative));
    return OpenFolder(QFile::encodeName(path));
}

OpenFolder RootFolder::parentOf(const QString &path) const
{
    return folder(parentPathOf(path));
}

bool RootFolder::makeFolder(const QString &path, FolderCreation creation) const
{
    {
        const OpenFolder parent = parentOf(path);
        if (parent.isOpen())
            return makeFolderIn(parent, lastNameOf(path));
        errno = parent.error();
    }
    const QString above = parentPathOf(path);
    if (errno != ENOENT || creation == FolderCreation::OneLevel || above == path)
        return false;
    return makeFolder(above, creation) && makeFolder(path, FolderCreation::OneLevel);
}

bool RootFolder::removeFile(const QString &path) const
{
    return remove(path, 0);
}

bool RootFolder::removeEmptyFolder(const QString &path) const
{
    return remove(path, AT_REMOVEDIR);
}

bool RootFolder::remove(const QString &path, int flags) const
{
    const OpenFolder parent = parentOf(path);
    if (!parent.isOpen()) {
        errno = parent.error();
        return errno == ENOENT;
    }
    return unlinkat(parent.descriptor(), lastNameOf(path).constData(), flags) == 0 || errno == ENOENT;
}

bool RootFolder::removeTree(const QString &path) const
{
    return removeFolder(parentOf(path), lastNameOf(path));
}

bool RootFolder::moveToNothing(const QString &from, const QString &to) const
{
    const OpenFolder source = parentOf(from);
    const OpenFolder target = parentOf(to);
    errno = source.isOpen() ? target.error() : source.error();
    return errno == 0 && renameToNothing(source, lastNameOf(from), target, lastNameOf(to));
}

bool RootFolder::makeFolder(const QString &path, unsigned rights) const
{
    const OpenFolder parent = parentOf(path);
    const QByteArray name = lastNameOf(path);
    errno = parent.error();
    if (!parent.isOpen())
        return false;
    if (mkdirat(parent.descriptor(), name.constData(), rights) != 0)
        return errno == EEXIST && isFolder(parent, name);
    // The mask has only taken some away; a disk that knows no rights keeps none.
    const OpenFolder folder(parent, name);
    if (folder.isOpen())
        fchmod(folder.descriptor(), rights);
    return true;
}

unsigned rightsLike(const QString &folder)
{
    constexpr mode_t rightsOfNone = 0755;
    constexpr mode_t allRights = 07777;
    struct stat status = {};
    const bool isKnown = stat(QFile::encodeName(folder).constData(), &status) == 0;
    return (isKnown ? status.st_mode & allRights : rightsOfNone) | S_IRWXU;
}

QString parentPathOf(const QString &path)
{
    const QString trimmed = withoutLastSlashes(path);
    const qsizetype slash = trimmed.lastIndexOf(u'/');
    return slash > 0 ? trimmed.first(slash) : QString(slash == 0 ? u'/' : u'.');
}

QByteArray lastNameOf(const QString &path)
{
    const QString trimmed = withoutLastSlashes(path);
    return QFile::encodeName(trimmed.sliced(trimmed.lastIndexOf(u'/') + 1));
}
