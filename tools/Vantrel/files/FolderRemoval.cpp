// Removing folders with all that lies in them.
#include "FolderRemoval.h"

#include "FolderListing.h"
#include "Interruption.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

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
        if (folder.isOpen() && !removeEntries(folder))
            return false;
    }
    return unlinkat(parent.descriptor(), name.constData(), AT_REMOVEDIR) == 0;
}
