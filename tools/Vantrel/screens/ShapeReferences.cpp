// Reading what image objects and shapes say of themselves.
#include "ShapeReferences.h"

#include "FileLines.h"
#include "RectangleReader.h"
#include "ShapeLibrary.h"

using namespace Qt::StringLiterals;
using RecordGrammar::LineKind;

namespace {

template <RecordView View>
void readLibraryReference(View line, STBlock &object)
{
    const LineFields<View> fields(line);
    object.shapeFile = fields.at(RecordGrammar::Library::shapeFile).toString();
    object.shapeFile.replace(".lib"_L1, ".plb"_L1, Qt::CaseSensitive);
    object.initText = fields.at(RecordGrammar::Library::initText).toString();
    object.imageObject = fields.at(RecordGrammar::Library::objectName).toString();
    object.replace = !object.initText.isEmpty();
}

/// The first rectangle of an object gives its position.
void takePosition(const QRect &rect, STBlock &object)
{
    if (object.rect3.topLeft() != STBlock::noPosition)
        return;
    object.rect3.setLeft(rect.left());
    object.rect3.setTop(rect.top());
}

template <typename Lines>
void readObject(const Lines &lines, STBlock &object)
{
    RectangleReader rectangles(object);
    for (int index = std::max(object.firstLine, 0); index <= object.lastLine && index < lines.size();
         ++index) {
        const auto line = lineAt(lines, index);
        switch (kindAt(lines, index)) {
        case LineKind::Section:
            rectangles.enterSection(line);
            break;
        case LineKind::Library:
            readLibraryReference(line, object);
            break;
        case LineKind::Rectangle:
            takePosition(rectangles.readRectangle(line), object);
            break;
        default:
            break;
        }
    }
}

void noteMissingIcon(const QString &bitmap, ShapeLibrary &library, STBlock &shape)
{
    if (!library.hasBitmap(bitmap))
        shape.missingIcons.append(bitmap);
}

} // namespace

template <typename Lines>
void readReferences(const Lines &lines, QList<STBlock> &objects)
{
    for (STBlock &object : objects) {
        if (object.replace)
            readObject(lines, object);
    }
}

template <typename Lines>
void parseShape(const Lines &lines, ShapeLibrary &library, STBlock &shape)
{
    clearBlock(shape);
    RectangleReader rectangles(shape);
    for (qsizetype index = 0; index < lines.size(); ++index) {
        const auto line = lineAt(lines, index);
        switch (kindAt(lines, index)) {
        case LineKind::Section:
            rectangles.enterSection(line);
            break;
        case LineKind::Library:
            shape.imageObject = fieldAt(line, RecordGrammar::Library::objectName).toString();
            break;
        case LineKind::Bitmap:
            if (rectangles.inIconSection())
                noteMissingIcon(fieldAt(line, RecordGrammar::Bitmap::fileName).toString(), library, shape);
            break;
        case LineKind::Rectangle:
            rectangles.readRectangle(line);
            break;
        default:
            break;
        }
    }
}

template void readReferences(const QStringList &lines, QList<STBlock> &objects);
template void readReferences(const FileLines &lines, QList<STBlock> &objects);
template void parseShape(const QStringList &lines, ShapeLibrary &library, STBlock &shape);
template void parseShape(const FileLines &lines, ShapeLibrary &library, STBlock &shape);
