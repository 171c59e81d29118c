// Where the icon bitmaps of a project lie.
#pragma once

#include "FolderListing.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <set>
#include <utility>

#include <sys/types.h>

/// The folders below a folder whose path contains "/bmp", as they were when this object was made.
/// By convention all folder names are in lower case: others are looked for in lower case too.
class BitmapFolders final
{
public:
    explicit BitmapFolders(const QString &folder);

    /// Whether one of these folders holds this file; its name keeps its case. The file system has
    /// the last word, so a file that has come or gone since counts as such.
    bool contains(const QString &fileName) const;

private:
    enum class Purpose { Root, Bitmaps };
    using Place = std::pair<dev_t, ino_t>;

    /// A folder that the search is inside of, and how many of its entries were looked at.
    struct Level
    {
        QString folder;
        QList<FolderEntry> entries;
        qsizetype next = 0;
        Purpose purpose = Purpose::Bitmaps;
    };

    void search(const QString &folder);
    QString lookAt(const FolderEntry &entry, const Level &level);
    FolderListing listOnce(const QString &folder);

    QStringList m_folders;
    QHash<QByteArray, QString> m_folderOfName; ///< where an entry of this name was listed first
    std::set<Place> m_listed;
};
