// The folder below which the program writes.
#pragma once

#include "FolderListing.h"

#include <QByteArray>
#include <QString>

#include <memory>

/// How a missing folder is made.
enum class FolderCreation {
    OneLevel,    ///< only where its parent exists
    WithParents, ///< with all that is missing above it
};

/// The folder of a project, held open. What is written, made, moved or removed below it is reached
/// from there, and never over a link: what a link leads to is not the project's, whoever has put it
/// there and whenever.
///
/// The names of a project's folders are mapped as texts, so that a path may lead beside the project.
/// Such a path is followed as it stands; only its last name is never followed over a link.
class RootFolder final
{
    Q_DISABLE_COPY_MOVE(RootFolder)

public:
    explicit RootFolder(const QString &path);

    /// A folder of the project, by its path from the top. ELOOP or ENOTDIR where a link is in the way.
    OpenFolder folder(const QString &path) const;
    /// The folder that holds an entry.
    OpenFolder parentOf(const QString &path) const;

    /// Makes a folder where it is missing. Returns whether it is there; a link is no folder. errno
    /// tells why not.
    bool makeFolder(const QString &path, FolderCreation creation) const;
    /// The same for one level, with these rights whatever the process's mask takes. One that is there
    /// keeps its own.
    bool makeFolder(const QString &path, unsigned rights) const;

    /// Removes a file or a link, never what it leads to. Returns whether it is gone; errno tells why not.
    bool removeFile(const QString &path) const;
    /// Removes a folder that holds nothing, with the same answers.
    bool removeEmptyFolder(const QString &path) const;

private:
    bool remove(const QString &path, int flags) const;
    bool isBelow(const QString &path, QString &relative) const;

    QString m_path;
    QString m_absolutePath;
    OpenFolder m_folder;
};

/// The folder below a root in which the last file was written, held open: most files follow another
/// of their folder. The root must live as long as it.
class FolderInUse final
{
public:
    explicit FolderInUse(const RootFolder &root)
        : m_root(root)
    {
    }

    /// Opens the folder of a path, where that is not the one in use.
    std::shared_ptr<const OpenFolder> parentOf(const QString &path);
    /// The next call opens its folder anew: this one may have gone.
    void letGo() { m_folder.reset(); }

private:
    const RootFolder &m_root;
    QString m_path;
    std::shared_ptr<const OpenFolder> m_folder;
};

/// The folder of a path, by the path alone.
QString parentPathOf(const QString &path);
/// The last name of a path, as the file system has it.
QByteArray lastNameOf(const QString &path);
