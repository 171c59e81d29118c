// Where the icon bitmaps of a project lie.
#pragma once

#include "FolderListing.h"

#include <QByteArray>
#include <QSet>
#include <QString>
#include <QStringList>

#include <set>
#include <utility>

#include <sys/types.h>

/// The folders below a folder whose path contains "/bmp", and what they held when they were listed.
/// By convention all folder names are in lower case: others are looked for in lower case too.
class BitmapFolders final
{
public:
    explicit BitmapFolders(const QString &folder);

    /// Whether one of the folders holds this file now; its name keeps its case.
    bool contains(const QString &fileName) const;

private:
    enum class Purpose { Root, Bitmaps };
    using Place = std::pair<dev_t, ino_t>;

    void enter(const QString &folder, Purpose purpose);
    FolderListing listOnce(const QString &folder);

    QStringList m_folders;
    QSet<QByteArray> m_names; ///< of the files in them
    std::set<Place> m_listed;
};
