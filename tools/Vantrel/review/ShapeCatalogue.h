// The shapes of a project's library as a run sees them.
#pragma once

#include "Converter.h"
#include "ShapeLibrary.h"

#include <QHash>
#include <QString>
#include <QStringList>

enum class ShapeUsability {
    Valid,
    Invalid,    ///< its lines fail their check
    Missing,    ///< neither in "mac" nor in "mac/vlo"
    Refused,    ///< a catalogue
    Unreadable, ///< a file that cannot be opened, or is too large
};

struct CatalogueShape
{
    QString path; ///< where it lies, or would be looked for last
    ShapeUsability usability = ShapeUsability::Valid;
    QString error;     ///< the message where it is not valid
    int errorLine = 0; ///< number of the line that fails its check
    int firstLine = 0; ///< number of the first of `lines` in the file
    QStringList lines;
    STBlock record;
};

/// Finds, reads and checks shape files, each once. Belongs to one thread.
class ShapeCatalogue final
{
public:
    explicit ShapeCatalogue(const QString &projectDir);

    /// The shape that objects with this reference get.
    const CatalogueShape &shape(const QString &name);
    const CatalogueShape &shapeAt(const QString &path);

    /// What a run writes in place of an object that refers to a valid shape.
    QStringList replacementFor(const STBlock &object, const CatalogueShape &shape);
    /// The number of the line in the shape's file that names this one of its missing icons.
    int lineOfMissingIcon(const CatalogueShape &shape, qsizetype icon);

private:
    CatalogueShape read(const QString &path);
    void check(CatalogueShape &shape);

    ShapeLibrary m_library;
    Converter m_converter;
    QHash<QString, CatalogueShape> m_shapes;
};
