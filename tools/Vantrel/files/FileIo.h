// Reading and writing whole files.
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

class RootFolder;

/// Whether the disk is to blame for an errno, and not how a project is laid out.
bool isFailureOfDisk(int error);

/// Whether anything lies there, a link that leads nowhere too. Also yes where the disk gives no
/// answer: who would remove or replace it must not take that for a no.
bool mayExist(const QString &path);

/// How many bytes the user may still write on the disk of a path. Where the disk gives no answer,
/// as many as can be.
qint64 availableBytes(const QString &path);

/// A file's bytes and permissions.
struct FileContent
{
    QByteArray bytes;
    unsigned mode = 0; ///< permission bits of owner, group and others
};

/// Opens a file for reading and returns its descriptor, or -1 and an errno. One that a server holds for
/// another user is waited for, and a pipe is not. Waits no longer on a thread that is to end, see
/// endIfInterrupted().
int openWhenFree(const QByteArray &name);

/// Reads a file whole. Nothing where it cannot be opened or read to its end, where it is no
/// regular file (a pipe would be waited for, a device might never end), or is larger than `largestFile`.
/// May end anywhere on a thread that is to end, see endIfInterrupted().
std::optional<FileContent> readFile(const QString &path);

/// Copies a file of any size to a place below a root where none lies, with its permissions. Returns
/// 0, or an errno where the copy is not whole; there is none then, nor on a thread that is to end, see
/// endIfInterrupted().
int copyFile(const QString &from, const RootFolder &root, const QString &to);
