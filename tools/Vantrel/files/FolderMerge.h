// Bringing back what a folder held beside what it holds now.
#pragma once

#include <QString>

class RootFolder;

/// Renames all that lies below `from` to its place below `to`, wherever nothing lies there; whole
/// folders at once. What has no free place stays in `from`, folders that are empty then go away.
/// Both lie below the root, and no link is followed. Returns what went wrong first; empty where nothing
/// did, and where there is no `from`.
QString mergeBack(const RootFolder &root, const QString &from, const QString &to);

/// Removes the files below `from` whose bytes lie in their place below `to` too, and folders that
/// are empty then; both lie below the root. Returns whether nothing is left of `from`.
bool removeTwins(const RootFolder &root, const QString &from, const QString &to);

/// Removes a folder below the root if it holds nothing but folders, and of those below it the ones that
/// do. Returns whether it is gone.
bool removeEmptyFolders(const RootFolder &root, const QString &path);
