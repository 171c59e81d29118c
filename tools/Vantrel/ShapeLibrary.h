// The shapes and icon bitmaps of a project's library.
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

/// Finds and reads the shape files of one project and remembers what it has seen, so that a
/// shape is read once in a run, however many objects refer to it. Belongs to one thread.
class ShapeLibrary final
{
public:
    struct ShapeFile
    {
        bool readable = false;
        QStringList lines;         ///< from the first "ID;" line on
        int firstSectionLine = -1; ///< index of that line in the file; -1 without one
    };

    explicit ShapeLibrary(QString projectDir);

    const QString &projectDir() const { return m_projectDir; }

    /// The path of a shape file: below "mac", or, where there is none, below "mac/vlo".
    QString path(const QString &shapeFile);
    /// The content of the shape file at a path; catalogue files (".cat" in the path) are refused.
    const ShapeFile &shape(const QString &path);
    /// Whether the project's bitmap folders hold an icon bitmap.
    bool hasBitmap(const QString &fileName);

private:
    QString m_projectDir;
    QHash<QString, QString> m_paths;
    QHash<QString, ShapeFile> m_shapes;
    QHash<QString, bool> m_bitmaps;
};
