// All that lies below a folder.
#include "FolderTree.h"

#include "Interruption.h"

#include <QList>

#include <fcntl.h>
#include <sys/stat.h>

qint64 TreeEntry::size() const
{
    const QByteArray name = path.sliced(path.lastIndexOf('/') + 1);
    struct stat status = {};
    const bool isKnown = fstatat(folder.descriptor(), name.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0;
    return isKnown ? status.st_size : 0;
}

int visitTree(const OpenFolder &root, const std::function<void(const TreeEntry &)> &visit)
{
    int firstError = 0;
    const auto note = [&firstError](int error) { firstError = firstError == 0 ? error : firstError; };
    // Each is opened from the root: a tree of any depth takes one descriptor and no stack.
    QList<QByteArray> waiting{"."};
    while (!waiting.isEmpty()) {
        const QByteArray path = waiting.takeLast();
        const OpenFolder folder = OpenFolder::beneath(root, path);
        note(folder.error());
        if (!folder.isOpen())
            continue;
        const FolderListing listing = folder.list();
        note(listing.error);
        for (const FolderEntry &entry : listing.entries) {
            endIfInterrupted();
            const QByteArray entryPath = path == "." ? entry.name : path + '/' + entry.name;
            visit({entryPath, entry.kind, folder});
            if (entry.kind == EntryKind::Folder)
                waiting.append(entryPath);
        }
    }
    return firstError;
}
