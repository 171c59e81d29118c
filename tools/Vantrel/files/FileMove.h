// Moving files by renaming them.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

class OpenFolder;
class RootFolder;

struct FileMove
{
    QString from;
    QString to;
};

/// Renames all of these files, whose folders are reached from that of their project, or leaves all where they
/// are and returns false. Touches nothing unless a copy of each would be sure to arrive and `root` to be
/// removed afterwards: every file is a readable regular file of one name that lies, as its path says, below
/// `root` without links on the way, on the file system of its target's folder; no target exists; no folder of
/// `root` is protected. Each file lies whole in one of its two places at any instant.
bool renameAll(const QList<FileMove> &moves, const RootFolder &project, const QString &root);

/// Renames a file, link or folder of an open folder to a name that nothing has. Returns false where it did
/// not; errno tells why, EEXIST where something lies there. A file system that cannot refuse by itself is
/// asked first.
bool renameToNothing(const OpenFolder &from, const QByteArray &name, const OpenFolder &to,
                     const QByteArray &newName);
