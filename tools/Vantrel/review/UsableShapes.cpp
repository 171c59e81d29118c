// Shapes that a run can put in place of objects without leaving anything behind.
#include "UsableShapes.h"

#include "ShapeCatalogue.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

/// Why a shape cannot be used; empty where it can.
QString reasonAgainst(const CatalogueShape &shape)
{
    switch (shape.usability) {
    case ShapeUsability::Missing:
        return u"it is missing in \"mac\" and \"mac/vlo\""_s;
    case ShapeUsability::Refused:
        return u"it is refused, since its path holds \".cat\""_s;
    case ShapeUsability::Unreadable:
    case ShapeUsability::Invalid:
        return shape.error;
    case ShapeUsability::Valid:
        break;
    }
    if (shape.lines.isEmpty())
        return u"it holds no object"_s;
    if (const QStringList &icons = shape.record.missingIcons; !icons.isEmpty())
        return u"Ikon %1 does not exist"_s.arg(icons.join(", "_L1));
    return {};
}

} // namespace

UsableShapes usableShapesAmong(const QString &projectDir, const QSet<QString> &shapeNames)
{
    ShapeCatalogue catalogue(projectDir);
    QStringList names(shapeNames.cbegin(), shapeNames.cend());
    names.sort();
    UsableShapes shapes;
    for (const QString &name : std::as_const(names)) {
        const QString reason = reasonAgainst(catalogue.shape(name));
        if (reason.isEmpty()) {
            shapes.names.insert(name);
            continue;
        }
        shapes.leftOut.append({FindingKind::ShapeLeftOut, name, u"this shape is left out: %1"_s.arg(reason),
                               u"see \"vantrel-cli check\""_s});
    }
    return shapes;
}
