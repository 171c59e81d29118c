// The folder below which the program writes.
#pragma once

#include "FolderListing.h"

#include <QByteArray>
#include <QString>

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
    /// Removes a folder with all that lies in it, or a link; stops at the first entry that stays. The
    /// same answers.
    bool removeTree(const QString &path) const;

    /// Renames a file, link or folder to a path where nothing lies. Returns false where it did not; errno
    /// tells why, EEXIST where something lies there.
    bool moveToNothing(const QString &from, const QString &to) const;

private:
    bool remove(const QString &path, int flags) const;
    bool isBelow(const QString &path, QString &relative) const;

    QString m_path;
    QString m_absolutePath;
    OpenFolder m_folder;
};

/// The rights of a folder, for one that is to hold the same: nobody reads in a copy what was closed to
/// them. The owner may always write into the new one.
unsigned rightsLike(const QString &folder);

/// The folder of a path, by the path alone.
QString parentPathOf(const QString &path);
/// The last name of a path, as the file system has it.
QByteArray lastNameOf(const QString &path);
