// Small files that tell what is under way.
#pragma once

#include <QByteArray>

class OpenFolder;

/// Writes a file of an open folder, whole at any time, and on the disk when this returns: first beside
/// it, under its name with ".new" behind, where whatever was left is replaced. Returns 0, or an errno.
int writeToDisk(const OpenFolder &folder, const QByteArray &name, const QByteArray &bytes);

/// Removes a file, its beginning beside it too, so that it stays away. Returns 0 where it is gone, or an
/// errno.
int removeFromDisk(const OpenFolder &folder, const QByteArray &name);

/// Removes the beginning that an interruption has left beside a file.
void removeBeginning(const OpenFolder &folder, const QByteArray &name);
