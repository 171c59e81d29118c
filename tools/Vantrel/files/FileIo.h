// Reading and writing whole files.
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

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

/// Reads a file whole. Nothing where it cannot be opened or read to its end, where it is no
/// regular file (a pipe would be waited for, a device might never end), or is larger than `largestFile`.
std::optional<FileContent> readFile(const QString &path);

/// Copies a file of any size to where none lies, with its permissions. Returns 0, or an errno where
/// the copy is not whole; there is none then. Not begun on a thread that is to end, see
/// endIfInterrupted().
int copyFile(const QString &from, const QString &to);

/// A file that is written once, from its beginning to its end.
class FileWriter final
{
public:
    /// Opens a new or emptied file.
    static FileWriter overwriting(const QString &path);
    /// Opens a new file with these permissions; fails where one is there.
    static FileWriter creating(const QString &path, unsigned mode);
    /// The same, but the file is seen by others only when it is whole, where the file system can do
    /// that; one that is there shows when the content is written.
    static FileWriter appearing(const QString &path, unsigned mode);
    ~FileWriter();

    FileWriter(FileWriter &&other) noexcept;
    FileWriter(const FileWriter &) = delete;
    FileWriter &operator=(const FileWriter &) = delete;

    bool isOpen() const { return m_descriptor >= 0; }
    /// The reason of the last failure, an errno.
    int error() const { return m_error; }

    /// Writes the whole content and closes the file. Removes it and returns false where not all
    /// of the content arrived.
    bool write(const char *bytes, qsizetype size);

    /// The same in parts: what is appended is the content when the file is finished. Where either
    /// returns false, the file is closed and removed.
    bool append(const char *bytes, qsizetype size);
    bool finish();
    /// Closes and removes the file, for the reason of an errno.
    void discard(int error);

private:
    FileWriter(const QString &path, int flags, unsigned mode);
    bool setMode(unsigned mode);
    bool appear();
    bool close();

    QByteArray m_path;
    int m_descriptor = -1;
    int m_error = 0;
    bool m_isThere = true; ///< under its name
};
