// Removing folders with all that lies in them.
#pragma once

#include <QByteArray>

class OpenFolder;

/// Removes a folder of an open one with all that lies in it, or a link, never what it leads to; stops at
/// the first entry that stays. Returns whether it is gone, or was no folder; errno tells why not. Not gone on
/// with on a thread that is to end, see endIfInterrupted().
bool removeFolder(const OpenFolder &parent, const QByteArray &name);
