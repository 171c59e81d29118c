// Any bytes as a shape file: read, checked and parsed.
#include "Converter.h"
#include "Expect.h"
#include "TestProject.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString fieldOf(const QString &line, qsizetype index)
{
    return line.split(u';').value(index);
}

/// The texts of one field of all lines that begin with a tag.
QStringList fieldsOf(const QStringList &lines, QLatin1StringView tag, qsizetype index)
{
    QStringList fields;
    for (const QString &line : lines) {
        if (line.startsWith(tag))
            fields.append(fieldOf(line, index));
    }
    return fields;
}

void expectTailOfFile(const QStringList &lines, const QByteArray &file, int offset)
{
    const QStringList all = linesOf(file);
    if (offset < 0) {
        expect(lines.isEmpty() && std::none_of(all.cbegin(), all.cend(),
                                               [](const QString &line) { return line.startsWith("ID;"_L1); }),
               "only a file without sections has no lines");
        return;
    }
    expect(lines == all.mid(offset), "lines are those of the file from its first section on");
    expect(lines.first().startsWith("ID;"_L1), "the first line opens a section");
}

void expectRecordOfLines(const Converter::STBlock &shape, const QStringList &lines)
{
    const QStringList names = fieldsOf(lines, "LIB"_L1, 4);
    expect(shape.imageObject == (names.isEmpty() ? QString() : names.last()), "the last name is the shape's");

    QStringList bitmaps = fieldsOf(lines, "DIV"_L1, 3);
    for (const QString &icon : shape.missingIcons)
        expect(bitmaps.removeOne(icon), "each missing icon stands in a line of its own");

    const bool isCleared = shape.rect.left() == 99999 && shape.rect.right() == 0;
    const bool isOrdered = shape.rect.left() <= shape.rect.right() && shape.rect.top() <= shape.rect.bottom();
    expect(isCleared || isOrdered || !fieldsOf(lines, "PSDV"_L1, 1).isEmpty(),
           "a rectangle comes from a line");
    expect(!shape.replace && shape.status == 0 && shape.error.isEmpty(), "nothing else is filled");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const TestProject project;
    static Converter converter(project.dir());

    const QByteArray file = bytesOf(data, size);
    project.write(u"mac/a.plb"_s, file);
    QStringList lines;
    QString errorText;
    expect(converter.openShapeFile(project.path(u"mac/a.plb"_s), lines, errorText), "a file can be read");
    expectTailOfFile(lines, file, converter.shapeLineOffset);

    const bool isValid = converter.checkShapeLines(lines, errorText);
    expect(isValid || errorText.startsWith("Shape File [line "_L1), "a refused shape has its message");

    const MemoryMeter meter;
    Converter::STBlock shape;
    expect(converter.parseShapeLines(lines, shape), "parsing never fails");
    constexpr std::size_t bytesOfSearch = 1 << 16; // a look through the bitmap folders for each icon
    const auto searches = static_cast<std::size_t>(fieldsOf(lines, "DIV"_L1, 3).size()) + 1;
    expect(meter.bytes() <= 64 * size + bytesOfSearch * searches, "work grows linearly");
    expectRecordOfLines(shape, lines);
    return 0;
}
