// Removing what a folder holds, however deep it is.
#pragma once

#include <QByteArray>

class OpenFolder;

/// Removes all that lies in a folder, folders first, each kind by name. Follows no link, and takes neither
/// stack nor descriptors for a level. Returns false, with an errno, at the first entry that stays. Ends
/// between two entries, see endIfInterrupted().
bool removeAllIn(const OpenFolder &folder);

/// Removes a folder of an open one with all that lies in it, or a link, never what it leads to; stops at
/// the first entry that stays. Returns whether it is gone, or was no folder; errno tells why not. Not gone on
/// with on a thread that is to end, see endIfInterrupted().
bool removeFolder(const OpenFolder &parent, const QByteArray &name);
