// Where the icon bitmaps of a project lie.
#include "BitmapFolders.h"

#include "Interruption.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

bool isFolder(const FolderEntry &entry, const QString &path)
{
    return entry.kind == EntryKind::Folder || (entry.kind == EntryKind::Link && QFileInfo(path).isDir());
}

} // namespace

BitmapFolders::BitmapFolders(const QString &folder)
{
    search(folder);
}

bool BitmapFolders::contains(const QString &fileName) const
{
    const auto isIn = [&](const QString &folder) { return QFileInfo::exists(folder + u'/' + fileName); };
    // Where a name was listed, a file may be out of reach, a link lead nowhere, or nothing lie any more.
    const auto listed = m_folderOfName.constFind(QFile::encodeName(fileName));
    if (listed != m_folderOfName.constEnd() && isIn(*listed))
        return true;
    // A listing cannot tell of names with folders in them, nor of folders that may be searched but
    // not listed, nor how the file system compares names.
    return std::any_of(m_folders.cbegin(), m_folders.cend(), isIn);
}

/// Each folder with all below it before the next one, without taking stack for a level.
void BitmapFolders::search(const QString &folder)
{
    QList<Level> levels{{folder, listOnce(folder).entries, 0, Purpose::Root}};
    while (!levels.isEmpty()) {
        Level &level = levels.last();
        if (level.next == level.entries.size()) {
            levels.removeLast();
            continue;
        }
        const FolderEntry entry = level.entries.at(level.next++);
        const QString inner = lookAt(entry, level);
        if (inner.isEmpty())
            continue;
        m_folders.append(inner);
        levels.append({inner, listOnce(inner).entries, 0, Purpose::Bitmaps});
    }
}

/// The path of an entry that is to be searched; empty for others.
QString BitmapFolders::lookAt(const FolderEntry &entry, const Level &level)
{
    if (level.purpose == Purpose::Bitmaps && !m_folderOfName.contains(entry.name))
        m_folderOfName.insert(entry.name, level.folder);
    const QString path = joinedPath(level.folder, QFile::decodeName(entry.name));
    const QString lowerPath = path.toLower();
    const bool isHidden = entry.name.startsWith('.');
    const bool isSearched = !isHidden && lowerPath.indexOf("/bmp"_L1) > 0 && isFolder(entry, path);
    return isSearched ? lowerPath : QString();
}

/// What a folder holds; nothing where links have led to it before.
FolderListing BitmapFolders::listOnce(const QString &folder)
{
    endIfInterrupted();
    const OpenFolder opened(QFile::encodeName(folder));
    struct stat status = {};
    if (!opened.isOpen() || fstat(opened.descriptor(), &status) != 0 ||
        !m_listed.insert({status.st_dev, status.st_ino}).second)
        return {};
    return opened.list();
}
