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
    enter(folder, Purpose::Root);
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

void BitmapFolders::enter(const QString &folder, Purpose purpose)
{
    const FolderListing listing = listOnce(folder);
    for (const FolderEntry &entry : listing.entries) {
        if (purpose == Purpose::Bitmaps && !m_folderOfName.contains(entry.name))
            m_folderOfName.insert(entry.name, folder);
        const QString path = joinedPath(folder, QFile::decodeName(entry.name));
        const QString lowerPath = path.toLower();
        const bool isHidden = entry.name.startsWith('.');
        if (isHidden || lowerPath.indexOf("/bmp"_L1) <= 0 || !isFolder(entry, path))
            continue;
        m_folders.append(lowerPath);
        enter(lowerPath, Purpose::Bitmaps);
    }
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
