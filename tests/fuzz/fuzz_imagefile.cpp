// Any bytes as an image file: read, checked, cut into objects, gathered, and their references read.
#include "Converter.h"
#include "Expect.h"
#include "TestProject.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

using Objects = QList<Converter::STBlock>;

/// Every line belongs to one record, in the order of the records.
void expectWholeCover(const QStringList &lines, const Objects &objects, const char *what)
{
    int next = 0;
    for (const Converter::STBlock &object : objects) {
        expect(object.firstLine == next && object.lastLine >= next - 1, what);
        next = object.lastLine + 1;
    }
    expect(objects.isEmpty() || next == lines.size(), what);
}

/// The numbers of the lines, to find each again once they are moved.
QStringList numbered(const QStringList &lines)
{
    QStringList numbers;
    for (qsizetype index = 0; index < lines.size(); ++index)
        numbers.append(QString::number(index));
    return numbers;
}

/// Every number once, and those of one object in their order.
void expectGathered(const QStringList &numbers, const Objects &objects)
{
    QList<qsizetype> places(numbers.size(), -1);
    for (qsizetype place = 0; place < numbers.size(); ++place)
        places[numbers.at(place).toLongLong()] = place;
    expect(!places.contains(-1), "gathering keeps every line once");
    for (const Converter::STBlock &object : objects) {
        for (int line = object.firstLine; line < object.lastLine; ++line)
            expect(places.at(line) < places.at(line + 1), "gathering keeps the order of an object's lines");
    }
}

/// Objects there are where a rectangle follows a section.
bool hasObjects(const QStringList &lines)
{
    const auto isSection = [](const QString &line) { return line.startsWith("ID;"_L1); };
    const auto isRectangle = [](const QString &line) { return line.startsWith("PSDV"_L1); };
    const auto section = std::find_if(lines.cbegin(), lines.cend(), isSection);
    return std::any_of(section, lines.cend(), isRectangle);
}

QStringList readAndCompare(Converter &converter, const QString &path, const QByteArray &file)
{
    QStringList lines;
    QString errorText;
    expect(converter.readImageFile(path, lines, errorText) && errorText.isEmpty(), "a file can be read");
    expect(lines == linesOf(file), "lines are those of the file");
    return lines;
}

void cutAndGather(Converter &converter, const QStringList &lines)
{
    Objects objects;
    expect(converter.splitObjects(u"a.psc"_s, lines, objects), "cutting never fails");
    if (!hasObjects(lines))
        return;
    expectWholeCover(lines, objects, "objects cover every line once");

    QStringList numbers = numbered(lines);
    Objects candidates = objects;
    converter.gatherScatteredParts(numbers, candidates);
    expectWholeCover(numbers, candidates, "gathered objects cover every line once");
    expectGathered(numbers, objects);

    QStringList gathered;
    for (const QString &number : std::as_const(numbers))
        gathered.append(lines.at(number.toLongLong()));
    converter.readShapeReferences(gathered, candidates);
    for (const Converter::STBlock &object : std::as_const(candidates)) {
        // The last object of a file may be a candidate without any reference.
        const bool isReferring = object.replace && !object.shapeFile.isEmpty();
        expect(!isReferring || !object.initText.isEmpty(), "only objects with a prefix are candidates");
        expect(!object.shapeFile.contains(".lib"_L1), "references name \".plb\" files");
    }
}

/// What one file costs, and the same file twice: reading grows with the size of the file.
void expectLinearWork(Converter &converter, const TestProject &project, const QByteArray &file)
{
    const auto cost = [&](const QByteArray &bytes) {
        project.write(u"scr/b.psc"_s, bytes);
        const MemoryMeter meter;
        QStringList lines;
        QString errorText;
        converter.readImageFile(project.path(u"scr/b.psc"_s), lines, errorText);
        converter.checkImageLines(lines, errorText);
        Objects objects;
        converter.splitObjects(u"b.psc"_s, lines, objects);
        converter.gatherScatteredParts(lines, objects);
        return meter.bytes();
    };
    // Lists grow by doubling, so a little more than twice is still linear.
    constexpr std::size_t fixedCost = 1 << 16;
    expect(cost(file + '\n' + file) <= 4 * cost(file) + fixedCost, "work grows linearly");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const TestProject project;
    static Converter converter(project.dir());

    const QByteArray file = bytesOf(data, size);
    project.write(u"scr/a.psc"_s, file);
    const QStringList lines = readAndCompare(converter, project.path(u"scr/a.psc"_s), file);

    QString errorText;
    const bool isValid = converter.checkImageLines(lines, errorText);
    expect(isValid || errorText.startsWith("Image File [line "_L1), "a refused file has its message");
    cutAndGather(converter, lines);
    expectLinearWork(converter, project, file);
    return 0;
}
