// File-system operations of a conversion run.
#include "updUtils.h"

#include "FileMove.h"

#include <QDir>
#include <QFile>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool isDotEntry(const QFileInfo &entry)
{
    return entry.fileName() == "."_L1 || entry.fileName() == ".."_L1;
}

/// The folders that a search is inside of, by canonical path: links may lead back into them.
using FolderTrail = QStringList;

/// Calls `search` inside of a folder, unless the search is inside of it already.
template <typename Search>
void insideFolder(const QString &path, FolderTrail &trail, Search search)
{
    const QString canonicalPath = QFileInfo(path).canonicalFilePath();
    if (trail.contains(canonicalPath))
        return;
    trail.append(canonicalPath);
    search();
    trail.removeLast();
}

void collectImageFiles(const QString &path, FolderTrail &trail, QList<QFileInfo> &files)
{
    const QFileInfoList entries = QDir(path).entryInfoList();
    for (const QFileInfo &entry : entries) {
        if (isDotEntry(entry))
            continue;
        const QString entryPath = entry.filePath();
        if (entry.isDir())
            insideFolder(entryPath, trail, [&] { collectImageFiles(entryPath, trail, files); });
        else if (entryPath.contains(".psc"_L1))
            files.append(entry);
    }
}

void searchBitmap(const QString &folder, const QString &fileName, FolderTrail &trail, bool &found)
{
    const QFileInfoList entries = QDir(folder).entryInfoList();
    for (const QFileInfo &entry : entries) {
        if (found)
            return;
        // Bitmap folders are lower-case by convention; the bitmap's own name keeps its case.
        const QString path = entry.filePath().toLower();
        if (isDotEntry(entry) || path.indexOf("/bmp"_L1) <= 0 || !entry.isDir())
            continue;
        found = QFile::exists(path + u'/' + fileName);
        if (!found)
            insideFolder(path, trail, [&] { searchBitmap(path, fileName, trail, found); });
    }
}

QString mapped(QString path, const QString &from, const QString &to)
{
    return path.replace(from, to, Qt::CaseSensitive);
}

/// Copies every file, also after one that could not be copied.
bool copyAll(const QList<FileMove> &moves)
{
    return std::count_if(moves.cbegin(), moves.cend(),
                         [](const FileMove &move) { return !QFile::copy(move.from, move.to); }) == 0;
}

} // namespace

bool updUtils::removeDir(const QString &path)
{
    const QDir folder(path);
    if (!folder.exists())
        return true;

    const QFileInfoList entries = folder.entryInfoList(
        QDir::NoDotAndDotDot | QDir::AllDirs | QDir::Files | QDir::Hidden | QDir::System, QDir::DirsFirst);
    for (const QFileInfo &entry : entries) {
        const QString entryPath = entry.absoluteFilePath();
        const bool isFolder = entry.isDir() && !entry.isSymLink();
        if (!(isFolder ? removeDir(entryPath) : QFile::remove(entryPath)))
            return false;
    }
    return QDir().rmdir(path);
}

void updUtils::findImageFiles(const QString &path, QList<QFileInfo> &files)
{
    FolderTrail trail;
    insideFolder(path, trail, [&] { collectImageFiles(path, trail, files); });
}

bool updUtils::moveImageFiles(const QString &from, const QString &to, const QString &projectDir,
                              FolderCreation creation)
{
    if (!transferImageFiles(from, to, projectDir, creation))
        return false;
    removeDir(projectDir + from);
    return true;
}

bool updUtils::transferImageFiles(const QString &from, const QString &to, const QString &projectDir,
                                  FolderCreation creation)
{
    const QString source = projectDir + from;
    QList<QFileInfo> files;
    findImageFiles(source, files);

    QList<FileMove> moves;
    for (const QFileInfo &file : std::as_const(files)) {
        makeFolder(mapped(file.absolutePath(), from, to), creation);
        moves.append({file.filePath(), mapped(file.filePath(), from, to)});
    }
    // Renaming leaves what copying and removing leave, without moving a byte.
    return renameAll(moves, source) || copyAll(moves);
}

void updUtils::findFileInBmpFolders(const QString &folder, const QString &fileName, bool &found)
{
    FolderTrail trail;
    insideFolder(folder, trail, [&] { searchBitmap(folder, fileName, trail, found); });
}

void updUtils::makeFolder(const QString &path, FolderCreation creation)
{
    if (QDir(path).exists())
        return;
    if (creation == FolderCreation::WithParents)
        QDir().mkpath(path);
    else
        QDir().mkdir(path);
}
