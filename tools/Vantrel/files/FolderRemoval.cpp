// Removing what a folder holds, however deep it is.
#include "FolderRemoval.h"

#include "FolderListing.h"
#include "Interruption.h"

#include <algorithm>
#include <cerrno>
#include <memory>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// A folder that the removal is inside of.
struct Level
{
    QByteArray name; ///< in the folder above
    dev_t device = 0;
    ino_t inode = 0;
    QList<FolderEntry> entries; ///< those left, the next one at the end
};

bool goesLater(const FolderEntry &first, const FolderEntry &second)
{
    const bool firstIsFolder = first.kind == EntryKind::Folder;
    const bool secondIsFolder = second.kind == EntryKind::Folder;
    return firstIsFolder != secondIsFolder ? secondIsFolder : first.name > second.name;
}

bool remove(const OpenFolder &folder, const QByteArray &name, int flags)
{
    return unlinkat(folder.descriptor(), name.constData(), flags) == 0;
}

/// The entries of a folder in the order in which they go, the first one at the end. Returns false where
/// not all were read.
bool listIn(const OpenFolder &folder, QList<FolderEntry> &entries)
{
    FolderListing listing = folder.list();
    std::sort(listing.entries.begin(), listing.entries.end(), goesLater);
    entries = std::move(listing.entries);
    return listing.error == 0;
}

class FolderRemoval final
{
public:
    bool removeAllIn(const OpenFolder &root);

private:
    bool enter(OpenFolder folder, const QByteArray &name, QList<FolderEntry> entries);
    bool removeNext();
    bool removeFolder(const QByteArray &name);
    bool leave();
    const OpenFolder &here() const { return *m_here; }

    std::vector<Level> m_levels;
    std::unique_ptr<OpenFolder> m_here; ///< the folder of the last level, the only one that is open
};

bool FolderRemoval::removeAllIn(const OpenFolder &root)
{
    QList<FolderEntry> entries;
    if (!listIn(root, entries))
        return false;
    if (entries.isEmpty())
        return true;
    bool goesOn = enter(OpenFolder(root, "."), {}, std::move(entries));
    while (goesOn) {
        if (!m_levels.back().entries.isEmpty())
            goesOn = removeNext();
        else if (m_levels.size() > 1)
            goesOn = leave();
        else
            return true;
    }
    return false;
}

bool FolderRemoval::enter(OpenFolder folder, const QByteArray &name, QList<FolderEntry> entries)
{
    struct stat status = {};
    if (!folder.isOpen() || fstat(folder.descriptor(), &status) != 0)
        return false;
    m_levels.push_back({name, status.st_dev, status.st_ino, std::move(entries)});
    m_here = std::make_unique<OpenFolder>(std::move(folder));
    return true;
}

bool FolderRemoval::removeNext()
{
    endIfInterrupted();
    const FolderEntry entry = m_levels.back().entries.takeLast();
    return entry.kind == EntryKind::Folder ? removeFolder(entry.name) : remove(here(), entry.name, 0);
}

/// Enters a folder that is to be emptied first. One that cannot be opened may be empty.
bool FolderRemoval::removeFolder(const QByteArray &name)
{
    OpenFolder folder(here(), name);
    QList<FolderEntry> entries;
    if (folder.isOpen() && !listIn(folder, entries))
        return false;
    return entries.isEmpty() ? remove(here(), name, AT_REMOVEDIR)
                             : enter(std::move(folder), name, std::move(entries));
}

/// Goes back up, unless somebody has moved the emptied folder elsewhere meanwhile.
bool FolderRemoval::leave()
{
    OpenFolder above(here(), "..");
    const QByteArray name = std::exchange(m_levels.back().name, {});
    m_levels.pop_back();
    struct stat status = {};
    if (!above.isOpen() || fstat(above.descriptor(), &status) != 0)
        return false;
    if (status.st_dev != m_levels.back().device || status.st_ino != m_levels.back().inode) {
        errno = ESTALE;
        return false;
    }
    m_here = std::make_unique<OpenFolder>(std::move(above));
    return remove(here(), name, AT_REMOVEDIR);
}

} // namespace

bool removeAllIn(const OpenFolder &folder)
{
    return FolderRemoval().removeAllIn(folder);
}

bool removeFolder(const OpenFolder &parent, const QByteArray &name)
{
    if (!parent.isOpen()) {
        errno = parent.error();
        return saysMissing(errno);
    }
    struct stat status = {};
    // What a link leads to is not the project's.
    if (fstatat(parent.descriptor(), name.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
        S_ISLNK(status.st_mode))
        return unlinkat(parent.descriptor(), name.constData(), 0) == 0;
    {
        const OpenFolder folder(parent, name);
        if (saysMissing(folder.error()))
            return true;
        if (folder.isOpen() && !removeAllIn(folder))
            return false;
    }
    return unlinkat(parent.descriptor(), name.constData(), AT_REMOVEDIR) == 0;
}
