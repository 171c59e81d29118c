// Cutting an image file into objects, and gathering the scattered parts of placed ones.
#include "ObjectCutter.h"

#include "FileLines.h"
#include "RecordGrammar.h"

#include <QHash>

#include <algorithm>
#include <vector>

namespace Field = RecordGrammar::Rectangle;
using RecordGrammar::LineKind;

template <typename Lines>
ObjectCutter<Lines>::ObjectCutter(const QString &imageFile, const Lines &lines, QList<STBlock> &objects)
    : m_imageFile(imageFile)
    , m_lines(lines)
    , m_objects(objects)
{
    clearBlock(m_object);
}

template <typename Lines>
void ObjectCutter<Lines>::cut()
{
    const auto lineCount = static_cast<int>(m_lines.size());
    for (int index = 0; index < lineCount; ++index) {
        const LineKind kind = kindAt(m_lines, index);
        if (kind == LineKind::Section)
            enterSection(index);
        else if (kind == LineKind::Rectangle && m_section >= 0)
            takeRectangle(index);
    }

    if (!isOpen())
        return;
    // The last object is a candidate by its level alone, with or without a library reference.
    m_object.replace = m_object.extraNumber > 0;
    closeObject(lineCount - 1);
}

template <typename Lines>
void ObjectCutter<Lines>::enterSection(int index)
{
    if (m_section < 0) {
        m_firstSection = index;
        appendPlainLines(0, index - 1);
    }
    m_section = index;
}

template <typename Lines>
void ObjectCutter<Lines>::takeRectangle(int index)
{
    if (isOpen() && belongsToOpenObject(index))
        return;
    if (!isOpen()) {
        if (m_section > m_firstSection)
            appendPlainLines(m_firstSection, m_section - 1);
        openObject(index);
        return;
    }

    closeObject(m_section - 1);
    // Earlier rectangles of the section were the closed object's, but now the section is an object
    // of its own: the first of them gives it its level. All others belong to it, as no section follows.
    openObject(firstRectangleOfSection());
}

/// There is one where the section's lines are being walked over a rectangle.
template <typename Lines>
int ObjectCutter<Lines>::firstRectangleOfSection() const
{
    int line = m_section + 1;
    while (kindAt(m_lines, line) != LineKind::Rectangle)
        ++line;
    return line;
}

template <typename Lines>
bool ObjectCutter<Lines>::belongsToOpenObject(int rectangleLine) const
{
    if (m_section == m_object.firstLine)
        return true;
    const int level = toNumber(fieldAt(lineAt(m_lines, rectangleLine), Field::level));
    return m_object.extraNumber >= 1 && level == m_object.extraNumber;
}

template <typename Lines>
void ObjectCutter<Lines>::openObject(int rectangleLine)
{
    const auto line = lineAt(m_lines, rectangleLine);
    m_object.firstLine = m_section;
    m_object.extraNumber = toNumber(fieldAt(line, Field::level));
    if (m_object.extraNumber > 0)
        m_object.extraText = fieldsFrom(line, Field::extra).toString();
    m_object.replace = m_object.extraNumber >= 1 && hasLibraryReference(rectangleLine);
}

template <typename Lines>
bool ObjectCutter<Lines>::hasLibraryReference(int rectangleLine) const
{
    const auto before = lineAt(m_lines, rectangleLine - 1);
    return fieldAt(before, 0) == QStringView(RecordGrammar::libraryTag) &&
           !fieldAt(before, RecordGrammar::Library::shapeFile).isEmpty();
}

template <typename Lines>
void ObjectCutter<Lines>::closeObject(int lastLine)
{
    m_object.imageFile = m_imageFile;
    m_object.lastLine = lastLine;
    m_objects.append(std::move(m_object));
    clearBlock(m_object);
}

template <typename Lines>
void ObjectCutter<Lines>::appendPlainLines(int firstLine, int lastLine)
{
    STBlock plain;
    clearBlock(plain);
    plain.imageFile = m_imageFile;
    plain.firstLine = firstLine;
    plain.lastLine = lastLine;
    m_objects.append(plain);
}

namespace {

/// For each record the records whose lines it takes over; empty for most.
struct Gathering
{
    QHash<qsizetype, QList<qsizetype>> partsOf;
    QList<bool> isTaken;
};

Gathering findParts(const QList<STBlock> &objects)
{
    Gathering gathering;
    gathering.isTaken.resize(objects.size());
    QHash<int, qsizetype> candidateOfLevel;
    for (qsizetype index = 0; index < objects.size(); ++index) {
        const STBlock &object = objects.at(index);
        if (const auto candidate = candidateOfLevel.constFind(object.extraNumber);
            candidate != candidateOfLevel.constEnd()) {
            gathering.partsOf[*candidate].append(index);
            gathering.isTaken[index] = true;
        } else if (object.replace) {
            candidateOfLevel.insert(object.extraNumber, index);
        }
    }
    return gathering;
}

/// The lines of a record, both ends included; `last` is before `first` where there are none.
struct LineRange
{
    int first;
    int last;
};

/// A record's lines as far as they are among `count` ones.
LineRange linesOf(const STBlock &object, int count)
{
    const int first = std::clamp(object.firstLine, 0, count);
    return {first, std::clamp(object.lastLine, first - 1, count - 1)};
}

QStringList picked(const QStringList &lines, const std::vector<int> &indices)
{
    QStringList pickedLines;
    pickedLines.reserve(static_cast<qsizetype>(indices.size()));
    for (const int index : indices)
        pickedLines.append(lines.at(index));
    return pickedLines;
}

FileLines picked(const FileLines &lines, const std::vector<int> &indices)
{
    return lines.picked(indices);
}

} // namespace

template <typename Lines>
void gatherParts(Lines &lines, QList<STBlock> &objects)
{
    const Gathering gathering = findParts(objects);
    if (gathering.partsOf.isEmpty())
        return;

    std::vector<int> order;
    order.reserve(static_cast<std::size_t>(lines.size()));
    QList<STBlock> gatheredObjects;
    const auto lineCount = static_cast<int>(lines.size());
    const auto takeLines = [&order](LineRange range) {
        for (int index = range.first; index <= range.last; ++index)
            order.push_back(index);
    };

    for (qsizetype index = 0; index < objects.size(); ++index) {
        if (gathering.isTaken.at(index))
            continue;
        STBlock object = objects.at(index);
        const auto firstLine = static_cast<int>(order.size());
        const QList<qsizetype> parts = gathering.partsOf.value(index);
        const LineRange own = linesOf(object, lineCount);
        takeLines({own.first, own.last - 1});
        for (const qsizetype part : parts)
            takeLines(linesOf(objects.at(part), lineCount));
        if (own.first <= own.last)
            takeLines({own.last, own.last});
        object.firstLine = firstLine;
        object.lastLine = static_cast<int>(order.size()) - 1;
        gatheredObjects.append(object);
    }
    lines = picked(lines, order);
    objects = gatheredObjects;
}

template class ObjectCutter<QStringList>;
template class ObjectCutter<FileLines>;
template void gatherParts(QStringList &lines, QList<STBlock> &objects);
template void gatherParts(FileLines &lines, QList<STBlock> &objects);
