// File-system operations of a conversion run.
#include "updUtils.h"

#include "BitmapFolders.h"
#include "EngineLog.h"
#include "FileIo.h"
#include "FileMove.h"
#include "FolderListing.h"
#include "ImageFileSearch.h"
#include "Interruption.h"

#include <QFile>
#include <QStringList>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

QString mapped(QString path, const QString &from, const QString &to)
{
    return path.replace(from, to, Qt::CaseSensitive);
}

/// Whether a file lies in both places, with one length.
bool hasArrived(const FileMove &move)
{
    const QFileInfo source(move.from);
    const QFileInfo target(move.to);
    return source.isFile() && target.isFile() && source.size() == target.size();
}

/// Why a file was not copied is told only where the disk is to blame: a file in its place and a
/// missing folder follow from how a project is laid out.
bool copy(const FileMove &move, const RootFolder &root)
{
    const int error = copyFile(move.from, root, move.to);
    if (error == 0)
        return hasArrived(move);
    if (error != EEXIST && error != ENOENT && error != ENOTDIR)
        logError(u"Could not copy File %1 to %2: %3"_s.arg(move.from, move.to, qt_error_string(error)));
    return false;
}

/// Copies every file, also after one that could not be copied.
bool copyAll(const QList<FileMove> &moves, const RootFolder &root)
{
    return std::count_if(moves.cbegin(), moves.cend(),
                         [&root](const FileMove &move) { return !copy(move, root); }) == 0;
}

/// Whether all image files below a folder are known: one may have come since it was listed, and
/// would go away with the folder.
bool holdsOnly(const QSet<QString> &knownFiles, const QString &folder)
{
    const FoundImageFiles found = searchImageFiles(folder);
    logFailures(found);
    return found.isWhole() &&
           std::all_of(found.files.cbegin(), found.files.cend(),
                       [&](const QFileInfo &file) { return knownFiles.contains(file.filePath()); });
}

/// After the files were copied.
bool holdsOnlyCopied(const QList<FileMove> &moves, const QString &folder)
{
    QSet<QString> files;
    for (const FileMove &move : moves)
        files.insert(move.from);
    return holdsOnly(files, folder);
}

/// After the files were renamed: none of them is there any more.
bool holdsNoImageFile(const QString &folder)
{
    return holdsOnly({}, folder);
}

/// Those of a folder, so that nobody reads in its copy what was closed to them.
unsigned rightsLike(const QString &folder)
{
    constexpr mode_t usualRights = 0755;
    constexpr mode_t allRights = 07777;
    struct stat status = {};
    const bool isKnown = stat(QFile::encodeName(folder).constData(), &status) == 0;
    return (isKnown ? status.st_mode & allRights : usualRights) | S_IRWXU;
}

bool removeEntries(const OpenFolder &folder);

bool removeEntry(const OpenFolder &folder, const FolderEntry &entry)
{
    endIfInterrupted();
    if (entry.kind != EntryKind::Folder)
        return unlinkat(folder.descriptor(), entry.name.constData(), 0) == 0;
    {
        const OpenFolder inner(folder, entry.name);
        // One that cannot be opened may be empty.
        if (inner.isOpen() && !removeEntries(inner))
            return false;
    }
    return unlinkat(folder.descriptor(), entry.name.constData(), AT_REMOVEDIR) == 0;
}

/// Removes folders first, each kind by name; stops at the first entry that stays.
bool removeEntries(const OpenFolder &folder)
{
    FolderListing listing = folder.list();
    if (listing.error != 0)
        return false;
    std::sort(listing.entries.begin(), listing.entries.end(),
              [](const FolderEntry &first, const FolderEntry &second) {
                  const bool firstIsFolder = first.kind == EntryKind::Folder;
                  const bool secondIsFolder = second.kind == EntryKind::Folder;
                  return firstIsFolder != secondIsFolder ? firstIsFolder : first.name < second.name;
              });
    return std::all_of(listing.entries.cbegin(), listing.entries.cend(),
                       [&folder](const FolderEntry &entry) { return removeEntry(folder, entry); });
}

} // namespace

bool updUtils::removeDir(const QString &path)
{
    const OpenFolder parent(QFile::encodeName(parentPathOf(path)));
    if (saysMissing(parent.error()))
        return true;
    const QByteArray name = lastNameOf(path);
    struct stat status = {};
    // What a link leads to is not the project's.
    if (fstatat(parent.descriptor(), name.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
        S_ISLNK(status.st_mode))
        return unlinkat(parent.descriptor(), name.constData(), 0) == 0;
    {
        const OpenFolder folder(parent, name);
        if (saysMissing(folder.error()))
            return true;
        if (folder.isOpen() && !removeEntries(folder))
            return false;
    }
    return unlinkat(parent.descriptor(), name.constData(), AT_REMOVEDIR) == 0;
}

bool updUtils::removeDirOrLog(const QString &path)
{
    if (removeDir(path))
        return true;
    logError(u"Could not remove Folder %1: %2"_s.arg(path, QString::fromLocal8Bit(std::strerror(errno))));
    return false;
}

void updUtils::findImageFiles(const QString &path, QList<QFileInfo> &files)
{
    files += searchImageFiles(path).files;
}

bool updUtils::moveImageFiles(const QString &from, const QString &to, const QString &projectDir,
                              FolderCreation creation)
{
    if (!transferImageFiles(from, to, projectDir, creation))
        return false;
    removeDirOrLog(projectDir + from);
    return true;
}

bool updUtils::transferImageFiles(const QString &from, const QString &to, const QString &projectDir,
                                  FolderCreation creation)
{
    const QString source = projectDir + from;
    const FoundImageFiles found = searchImageFiles(source);
    logFailures(found);

    const RootFolder root(projectDir);
    FolderMaker folders(root, creation);
    QList<FileMove> moves;
    for (const QFileInfo &file : found.files) {
        folders.make(mapped(file.absolutePath(), from, to), file.absolutePath());
        moves.append({file.filePath(), mapped(file.filePath(), from, to)});
    }
    // Renaming leaves what copying and removing leave, without moving a byte.
    if (found.isWhole() && renameAll(moves, root, source))
        return holdsNoImageFile(source);
    return copyAll(moves, root) && found.isWhole() && holdsOnlyCopied(moves, source);
}

void updUtils::findFileInBmpFolders(const QString &folder, const QString &fileName, bool &found)
{
    found = found || BitmapFolders(folder).contains(fileName);
}

void FolderMaker::make(const QString &path, const QString &like)
{
    if (m_present.contains(path))
        return;
    if (makeLevels(path, like))
        m_present.insert(path);
    else if (isFailureOfDisk(errno))
        logError(u"Could not make Folder %1: %2"_s.arg(path, qt_error_string(errno)));
}

/// Folders above have the rights of those above.
bool FolderMaker::makeLevels(const QString &path, const QString &like) const
{
    const unsigned rights = rightsLike(like);
    if (m_root.makeFolder(path, rights))
        return true;
    const QString above = parentPathOf(path);
    if (errno != ENOENT || m_creation == FolderCreation::OneLevel || above == path)
        return false;
    return makeLevels(above, parentPathOf(like)) && m_root.makeFolder(path, rights);
}

bool FolderMaker::makeAgain(const QString &path, const QString &like)
{
    if (!m_present.remove(path))
        return false;
    make(path, like);
    return true;
}
