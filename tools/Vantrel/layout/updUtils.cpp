// File-system operations of a conversion run.
#include "updUtils.h"

#include "BitmapFolders.h"
#include "EngineLog.h"
#include "FileIo.h"
#include "FileMove.h"
#include "FolderListing.h"
#include "FolderRemoval.h"
#include "ImageFileSearch.h"

#include <QFile>
#include <QStringList>

#include <algorithm>
#include <cerrno>
#include <cstring>

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

/// Why a file was not copied is told only where the disk is to blame: a file in its place, a link
/// in the way and a missing folder follow from how a project is laid out.
bool copy(const FileMove &move, const RootFolder &root)
{
    const int error = copyFile(move.from, root, move.to);
    if (error == 0)
        return hasArrived(move);
    if (error != EEXIST && error != ENOENT && error != ENOTDIR && error != ELOOP)
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

} // namespace

bool updUtils::removeDir(const QString &path)
{
    return removeFolder(OpenFolder(QFile::encodeName(parentPathOf(path))), lastNameOf(path));
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
