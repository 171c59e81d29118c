// The shapes of a run, each opened once.
#include "OpenedShapes.h"

#include "LineCheck.h"
#include "Remembered.h"
#include "ShapeFile.h"
#include "ShapeLibrary.h"
#include "ShapeReferences.h"
#include "ShapeRewriting.h"

const OpenedShape &OpenedShapes::shape(const QString &name)
{
    return remembered(m_shapes, name, [&] { return open(m_library.path(name)); });
}

OpenedShape OpenedShapes::open(const QString &path)
{
    OpenedShape opened;
    const std::optional<ShapeFile> file = readShapeFile(path, opened.errorText);
    opened.isReadable = file.has_value();
    opened.isValid =
        opened.isReadable && checkLines(file->lines, {FileKind::Shape, file->lineOffset}, opened.errorText);
    if (opened.isValid) {
        parseShape(file->lines, m_library, opened.shape);
        opened.lines =
            std::make_shared<const ShapePattern<QLatin1StringView>>(patternOf(file->lines, opened.shape));
    }
    return opened;
}
