// All that lies below a folder.
#pragma once

#include "FolderListing.h"

#include <QByteArray>

#include <functional>

/// An entry at any depth of a tree, while it is visited.
struct TreeEntry
{
    QByteArray path; ///< below the tree's folder, as the file system has it
    EntryKind kind = EntryKind::Other;
    const OpenFolder &folder; ///< that holds it

    /// How many bytes a file has; 0 where that cannot be told.
    qint64 size() const;
};

/// Visits every entry below a folder in no order, but each folder before what lies in it. No link is
/// followed. Returns 0, or the first errno where not all could be listed. Not gone on with on a thread
/// that is to end, see endIfInterrupted().
int visitTree(const OpenFolder &root, const std::function<void(const TreeEntry &)> &visit);
