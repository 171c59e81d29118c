// The shapes and icon bitmaps of a project's library.
#pragma once

#include "BitmapFolders.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

/// Whether a path stands for a catalogue, which is refused as a shape file.
bool isCatalogue(const QString &path);

/// The shape files that lie in a folder itself, by name; hidden ones are none.
QStringList shapeFilesIn(const QString &folder);

/// Finds the shape files and bitmaps of one project and remembers where they are, so that each
/// is looked for once in a run, however many objects refer to it. Belongs to one thread.
class ShapeLibrary final
{
public:
    explicit ShapeLibrary(QString projectDir);

    /// The path of a shape file: below "mac", or, where there is none, below "mac/vlo".
    QString path(const QString &shapeFile);
    /// Whether the project's bitmap folders hold an icon bitmap.
    bool hasBitmap(const QString &fileName);

private:
    QString m_projectDir;
    QHash<QString, QString> m_paths;
    std::optional<BitmapFolders> m_bitmapFolders; ///< once a bitmap was looked for
    QHash<QString, bool> m_bitmaps;
};
