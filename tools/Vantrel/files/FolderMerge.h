// Bringing back what a folder held beside what it holds now.
#pragma once

#include <QString>

/// Renames all that lies below `from` to its place below `to`, wherever nothing lies there; whole
/// folders at once. What has no free place stays in `from`, folders that are empty then go away.
/// Follows no link. Returns what went wrong first; empty where nothing did, and where there is no
/// `from`.
QString mergeBack(const QString &from, const QString &to);

/// Removes the files below `from` whose bytes lie in their place below `to` too, and folders that
/// are empty then. Returns whether nothing is left of `from`.
bool removeTwins(const QString &from, const QString &to);

/// Removes a folder if it holds nothing but folders, and of those below it the ones that do.
/// Returns whether it is gone.
bool removeEmptyFolders(const QString &path);
