// Moving files by renaming them.
#include "FileMove.h"

#include "RootFolder.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <QStringView>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

bool isAllowed(int folder, const char *path, int access)
{
    return faccessat(folder, path, access, AT_EACCESS) == 0;
}

/// Whether nothing below a folder, nor the folder itself, would resist being removed. Copying and
/// removing leaves behind what cannot be removed, so such a folder is not for renaming.
bool canBeRemoved(const QString &folder)
{
    namespace fs = std::filesystem;
    const fs::path root(QFile::encodeName(folder).toStdString());
    const auto isWritable = [](const fs::path &path) {
        return isAllowed(AT_FDCWD, path.c_str(), R_OK | W_OK | X_OK);
    };
    if (!isWritable(root.parent_path()) || !isWritable(root))
        return false;

    std::error_code error;
    fs::recursive_directory_iterator entry(root, error);
    for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        // The kind comes with the listing: no question for each file.
        if (!entry->is_symlink(error) && entry->is_directory(error) && !isWritable(entry->path()))
            return false;
    }
    return !error;
}

struct Names
{
    QByteArray from;
    QByteArray to;
};

/// The files that go from one folder to another. Both are opened for them: a path of many folders
/// takes the system longer to follow than a file to rename.
struct FolderMove
{
    QString from;
    QString to;
    QList<Names> files;
};

QList<FolderMove> byFolder(const QList<FileMove> &moves)
{
    QList<FolderMove> folders;
    QHash<std::pair<QStringView, QStringView>, qsizetype> places;
    for (const FileMove &move : moves) {
        const qsizetype fromEnd = move.from.lastIndexOf(u'/');
        const qsizetype toEnd = move.to.lastIndexOf(u'/');
        const std::pair folder{QStringView(move.from).first(fromEnd), QStringView(move.to).first(toEnd)};
        auto place = places.constFind(folder);
        if (place == places.constEnd()) {
            place = places.insert(folder, folders.size());
            folders.append({folder.first.toString(), folder.second.toString(), {}});
        }
        folders[*place].files.append(
            {QFile::encodeName(move.from.sliced(fromEnd + 1)), QFile::encodeName(move.to.sliced(toEnd + 1))});
    }
    return folders;
}

/// Whether the folders of a file's two places are told by its paths, the first one below `root`.
bool namesFolders(const FileMove &move, const QString &root)
{
    return move.from.startsWith(root + u'/') && move.to.contains(u'/');
}

/// Whether a file can still be reached by its path, which renaming in an open folder does not need.
bool isShortEnough(const QByteArray &folder, const QByteArray &name)
{
    return folder.size() + 1 + name.size() < PATH_MAX;
}

bool canBeRenamed(const RootFolder &project, const FolderMove &move)
{
    const QByteArray targetPath = QFile::encodeName(move.to);
    const OpenFolder source = project.folder(move.from);
    const OpenFolder target = project.folder(move.to);
    struct stat targetStatus = {};
    if (!source.isOpen() || !target.isOpen() || fstat(target.descriptor(), &targetStatus) != 0)
        return false;
    const FolderListing present = target.list();
    QSet<QByteArray> names;
    for (const FolderEntry &entry : present.entries)
        names.insert(entry.name);

    const auto canFile = [&](const Names &file) {
        struct stat status = {};
        return fstatat(source.descriptor(), file.from.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
               S_ISREG(status.st_mode) && status.st_nlink == 1 && status.st_dev == targetStatus.st_dev &&
               isAllowed(source.descriptor(), file.from.constData(), R_OK) && !names.contains(file.to) &&
               isShortEnough(targetPath, file.to);
    };
    return present.error == 0 && std::all_of(move.files.cbegin(), move.files.cend(), canFile);
}

bool rename(const OpenFolder &from, const QByteArray &name, const OpenFolder &to, const QByteArray &newName)
{
    return renameat2(from.descriptor(), name.constData(), to.descriptor(), newName.constData(),
                     RENAME_NOREPLACE) == 0;
}

/// Renames the files in their order up to the first that cannot be renamed, and returns their number.
qsizetype renameFiles(const RootFolder &project, const FolderMove &move)
{
    const OpenFolder source = project.folder(move.from);
    const OpenFolder target = project.folder(move.to);
    const auto failed = std::find_if_not(move.files.cbegin(), move.files.cend(), [&](const Names &file) {
        return rename(source, file.from, target, file.to);
    });
    return failed - move.files.cbegin();
}

/// Renames the first files back, each that can be.
void renameBack(const RootFolder &project, const FolderMove &move, qsizetype count)
{
    const OpenFolder source = project.folder(move.from);
    const OpenFolder target = project.folder(move.to);
    std::for_each(move.files.cbegin(), move.files.cbegin() + count,
                  [&](const Names &file) { rename(target, file.to, source, file.from); });
}

} // namespace

bool renameAll(const QList<FileMove> &moves, const RootFolder &project, const QString &root)
{
    const auto isPlain = [&root](const FileMove &move) { return namesFolders(move, root); };
    // What a link leads to stays there.
    if (!std::all_of(moves.cbegin(), moves.cend(), isPlain) || QFileInfo(root).isSymLink() ||
        (!moves.isEmpty() && !canBeRemoved(root)))
        return false;
    const QString canonicalRoot = QFileInfo(root).canonicalFilePath();
    const auto isReachedWithoutLinks = [&](const QString &folder) {
        return QFileInfo(folder).canonicalFilePath() == canonicalRoot + folder.sliced(root.size());
    };
    const QList<FolderMove> folders = byFolder(moves);
    if (!std::all_of(folders.cbegin(), folders.cend(), [&](const FolderMove &folder) {
            return isReachedWithoutLinks(folder.from) && canBeRenamed(project, folder);
        }))
        return false;

    for (auto folder = folders.cbegin(); folder != folders.cend(); ++folder) {
        const qsizetype count = renameFiles(project, *folder);
        if (count == folder->files.size())
            continue;
        renameBack(project, *folder, count);
        std::for_each(folders.cbegin(), folder,
                      [&project](const FolderMove &done) { renameBack(project, done, done.files.size()); });
        return false;
    }
    return true;
}

bool renameToNothing(const OpenFolder &from, const QByteArray &name, const OpenFolder &to,
                     const QByteArray &newName)
{
    if (rename(from, name, to, newName))
        return true;
    if (errno != EINVAL && errno != ENOSYS)
        return false;
    struct stat status = {};
    if (fstatat(to.descriptor(), newName.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0)
        errno = EEXIST;
    return errno == ENOENT &&
           renameat(from.descriptor(), name.constData(), to.descriptor(), newName.constData()) == 0;
}
