// The shapes of a project's library as a run sees them.
#include "ShapeCatalogue.h"

#include "Interruption.h"

#include <QFileInfo>

#include <algorithm>

ShapeCatalogue::ShapeCatalogue(const QString &projectDir)
    : m_library(projectDir)
    , m_converter(projectDir)
{
}

const CatalogueShape &ShapeCatalogue::shape(const QString &name)
{
    return shapeAt(m_library.path(name));
}

const CatalogueShape &ShapeCatalogue::shapeAt(const QString &path)
{
    auto shape = m_shapes.find(path);
    if (shape == m_shapes.end())
        shape = m_shapes.insert(path, read(path));
    return *shape;
}

CatalogueShape ShapeCatalogue::read(const QString &path)
{
    endIfInterrupted();
    CatalogueShape shape;
    shape.path = path;
    if (m_converter.openShapeFile(path, shape.lines, shape.error)) {
        check(shape);
        return shape;
    }
    if (!QFileInfo::exists(path))
        shape.usability = ShapeUsability::Missing;
    else
        shape.usability = isCatalogue(path) ? ShapeUsability::Refused : ShapeUsability::Unreadable;
    return shape;
}

void ShapeCatalogue::check(CatalogueShape &shape)
{
    shape.firstLine = m_converter.shapeLineOffset + 1;
    if (m_converter.checkShapeLines(shape.lines, shape.error)) {
        shape.error.clear();
        m_converter.parseShapeLines(shape.lines, shape.record);
        return;
    }
    shape.usability = ShapeUsability::Invalid;
    QString complaint;
    const auto line = std::find_if(shape.lines.cbegin(), shape.lines.cend(), [&](const QString &candidate) {
        return !m_converter.checkShapeLines({candidate}, complaint);
    });
    shape.errorLine = shape.firstLine + static_cast<int>(line - shape.lines.cbegin());
}

QStringList ShapeCatalogue::replacementFor(const STBlock &object, const CatalogueShape &shape)
{
    QStringList lines = shape.lines;
    m_converter.fitShapeLines(lines, object, shape.record);
    return lines;
}

int ShapeCatalogue::lineOfMissingIcon(const CatalogueShape &shape, qsizetype icon)
{
    // The shortest beginning of the shape in which the icon is missing ends with its line.
    qsizetype tooShort = 0;
    qsizetype longEnough = shape.lines.size();
    while (longEnough - tooShort > 1) {
        const qsizetype middle = tooShort + (longEnough - tooShort) / 2;
        STBlock record;
        m_converter.parseShapeLines(shape.lines.first(middle), record);
        (record.missingIcons.size() > icon ? longEnough : tooShort) = middle;
    }
    return shape.firstLine + static_cast<int>(longEnough) - 1;
}
