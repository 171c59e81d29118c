// Moving files by renaming them.
#include "FileMove.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// What decides for all files of one folder.
struct Folders
{
    bool isBelowRoot = false;          ///< the source, without links on the way
    std::optional<dev_t> targetDevice; ///< nothing where the target's folder is missing
};

bool isAllowed(const char *path, int access)
{
    return faccessat(AT_FDCWD, path, access, AT_EACCESS) == 0;
}

/// Whether nothing below a folder, nor the folder itself, would resist being removed. Copying and
/// removing leaves behind what cannot be removed, so such a folder is not for renaming.
bool canBeRemoved(const QString &folder)
{
    namespace fs = std::filesystem;
    const fs::path root(QFile::encodeName(folder).toStdString());
    const auto isWritable = [](const fs::path &path) { return isAllowed(path.c_str(), R_OK | W_OK | X_OK); };
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

class Renaming final
{
public:
    explicit Renaming(const QString &root)
        : m_root(root)
        , m_canonicalRoot(QFileInfo(root).canonicalFilePath())
    {
    }

    bool isSafe(const FileMove &move);
    static bool rename(const QString &from, const QString &to);

private:
    Folders look(const FileMove &move) const;

    QString m_root;
    QString m_canonicalRoot;
    QHash<QString, Folders> m_folders;
};

Folders Renaming::look(const FileMove &move) const
{
    const QString folder = QFileInfo(move.from).path();
    const QString placeBelowRoot = folder.sliced(m_root.size());
    Folders folders;
    folders.isBelowRoot = QFileInfo(folder).canonicalFilePath() == m_canonicalRoot + placeBelowRoot;
    struct stat target = {};
    if (stat(QFile::encodeName(QFileInfo(move.to).path()).constData(), &target) == 0 &&
        S_ISDIR(target.st_mode))
        folders.targetDevice = target.st_dev;
    return folders;
}

bool Renaming::isSafe(const FileMove &move)
{
    const QString folder = QFileInfo(move.from).path();
    auto folders = m_folders.constFind(folder);
    if (folders == m_folders.constEnd())
        folders = m_folders.insert(folder, look(move));

    const QByteArray from = QFile::encodeName(move.from);
    struct stat file = {};
    struct stat target = {};
    return folders->isBelowRoot && lstat(from.constData(), &file) == 0 && S_ISREG(file.st_mode) &&
           file.st_nlink == 1 && folders->targetDevice == file.st_dev && isAllowed(from.constData(), R_OK) &&
           lstat(QFile::encodeName(move.to).constData(), &target) != 0;
}

bool Renaming::rename(const QString &from, const QString &to)
{
    return renameat2(AT_FDCWD, QFile::encodeName(from).constData(), AT_FDCWD,
                     QFile::encodeName(to).constData(), RENAME_NOREPLACE) == 0;
}

} // namespace

bool renameAll(const QList<FileMove> &moves, const QString &root)
{
    Renaming renaming(root);
    // What a link leads to stays there.
    if (QFileInfo(root).isSymLink() || (!moves.isEmpty() && !canBeRemoved(root)))
        return false;
    if (!std::all_of(moves.cbegin(), moves.cend(),
                     [&](const FileMove &move) { return renaming.isSafe(move); }))
        return false;

    const auto firstFailed = std::find_if_not(moves.cbegin(), moves.cend(), [](const FileMove &move) {
        return Renaming::rename(move.from, move.to);
    });
    if (firstFailed == moves.cend())
        return true;
    std::for_each(moves.cbegin(), firstFailed,
                  [](const FileMove &move) { Renaming::rename(move.to, move.from); });
    return false;
}
