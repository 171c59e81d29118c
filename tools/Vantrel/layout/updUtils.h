// File-system operations of a conversion run.
#pragma once

#include "RootFolder.h"

#include <QFileInfo>
#include <QList>
#include <QSet>
#include <QString>

/// Finding, moving and removing the files of a project. Paths use '/'.
class updUtils
{
public:
    virtual ~updUtils() = default;

    /// Removes a folder with all that it holds. Links in it are removed, never followed. Stops at
    /// the first entry that cannot be removed, and before a folder that cannot be listed.
    /// Returns whether the folder is gone.
    static bool removeDir(const QString &path);

    /// The same, and logs why it stays.
    static bool removeDirOrLog(const QString &path);

    /// Appends the image files below a folder, depth first, by name ignoring case: every file that
    /// is not hidden and whose whole path contains ".psc". Follows links to folders, but never
    /// enters a folder that it is already inside of.
    static void findImageFiles(const QString &path, QList<QFileInfo> &files);

    /// Moves every image file below `projectDir` + `from` to the path in which each `from` is
    /// replaced by `to`; existing files are not overwritten. Where all arrived with their whole
    /// length, and every folder could be listed, removes the whole source folder and returns
    /// true; otherwise leaves it alone and returns false. Folders that could not be listed are
    /// logged.
    ///     moveImageFiles("/scr", "/scr_bak", "/plant")
    static bool moveImageFiles(const QString &from, const QString &to, const QString &projectDir,
                               FolderCreation creation = FolderCreation::OneLevel);

    /// The same without the removal: returns whether every image file arrived.
    static bool transferImageFiles(const QString &from, const QString &to, const QString &projectDir,
                                   FolderCreation creation);

    /// Looks for a file in the folders below `folder` whose path contains "/bmp", all folder names
    /// in lower case. Sets `found` where it exists; the caller clears it first.
    static void findFileInBmpFolders(const QString &folder, const QString &fileName, bool &found);
};

/// Makes folders as they are needed, and looks for each only until it is there. The root must live
/// as long as it.
class FolderMaker final
{
public:
    FolderMaker(const RootFolder &root, FolderCreation creation)
        : m_root(root)
        , m_creation(creation)
    {
    }

    /// What cannot be made shows when it is used, too. A new folder has the rights of `like`, and its
    /// owner may write into it.
    void make(const QString &path, const QString &like);
    /// Looks anew for a folder that was there, and makes it where it has gone since. Returns
    /// whether it was there; one that never was is left to the next make().
    bool makeAgain(const QString &path, const QString &like);

private:
    bool makeLevels(const QString &path, const QString &like) const;

    const RootFolder &m_root;
    FolderCreation m_creation;
    QSet<QString> m_present;
};
