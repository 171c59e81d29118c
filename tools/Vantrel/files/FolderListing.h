// What a folder holds, or why that could not be read.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

enum class EntryKind {
    File,
    Folder,
    Link,
    Other, ///< a pipe, a socket, a device
};

struct FolderEntry
{
    QByteArray name; ///< as the file system has it
    EntryKind kind = EntryKind::Other;
};

struct FolderListing
{
    QList<FolderEntry> entries; ///< without "." and "..", in no order
    int error = 0;              ///< number of the system's error; 0 where all was read
};

/// An open folder, whose entries are reached without its path: what is done to them cannot go
/// astray when a part of the path is exchanged.
class OpenFolder final
{
public:
    /// Opens the folder that the path leads to, over links too.
    explicit OpenFolder(const QByteArray &path);
    /// Opens a folder in an open one; a link to a folder is none.
    OpenFolder(const OpenFolder &parent, const QByteArray &name);
    /// Opens a folder any number of folders below an open one. Where a link is on the way or at its
    /// end, or the path leads up, it is not opened.
    static OpenFolder beneath(const OpenFolder &root, const QByteArray &path);
    ~OpenFolder();

    OpenFolder(OpenFolder &&other) noexcept;
    OpenFolder(const OpenFolder &) = delete;
    OpenFolder &operator=(const OpenFolder &) = delete;

    bool isOpen() const { return m_descriptor >= 0; }
    /// Why it could not be opened; 0 where it is open.
    int error() const { return m_error; }
    int descriptor() const { return m_descriptor; }

    /// Reads the entries once.
    FolderListing list() const;

private:
    explicit OpenFolder(int descriptor);

    int m_descriptor;
    int m_error;
};

/// The path of an entry.
QString joinedPath(const QString &folder, const QString &name);

/// Whether an error says that there is no folder.
bool saysMissing(int error);
