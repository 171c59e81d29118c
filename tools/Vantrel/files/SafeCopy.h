// Putting a copy of a file into the place of another one.
#pragma once

#include <QString>

class RootFolder;

/// Makes `target`, which lies below the root, a copy of `source`, unless it is one. A copy is made
/// beside it, compared byte by byte and on the disk before it takes the place of what lies there; it
/// is as old as its source. Folders are made with their parents. Returns what went wrong; empty where
/// nothing did.
QString putCopy(const QString &source, const RootFolder &root, const QString &target);

/// Whether two paths lead to one file, over links on the way: neither is a copy of the other.
bool areOneFile(const QString &first, const QString &second);

/// Removes a file below the root if another one holds all bytes of it: it is a copy, or one that was broken
/// off. Returns whether the file is gone.
bool removeContained(const RootFolder &root, const QString &file, const QString &holder);
