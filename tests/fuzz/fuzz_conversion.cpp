// Any screen and any shapes: whole runs over a project with one image file.
//
// An input is a screen, or sections that each begin with a line of their own:
//     @@ screen            the lines up to the next section are the image file
//     @@ shape pump.plb    ... a shape file
//     @@ bitmap lamp.bmp   ... an icon
//     @@ choose pump.plb   nothing; the shape takes part
#include "Converter.h"
#include "Expect.h"
#include "Recorders.h"
#include "TestProject.h"

#include <QDir>
#include <QHash>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

struct Plant
{
    QByteArray screen;
    QHash<QString, QByteArray> shapes;
    QSet<QString> bitmaps;
    QSet<QString> chosen;
};

/// A name that stays in its folder.
std::optional<QString> fileNameOf(const QByteArray &word)
{
    constexpr qsizetype longestName = 60;
    const bool isPlain = !word.isEmpty() && word.size() <= longestName && !word.contains('/') &&
                         !word.contains('\0') && !word.startsWith('.');
    return isPlain ? std::optional(QString::fromLatin1(word)) : std::nullopt;
}

/// Takes the line that opens a section; returns where the section's lines go, if anywhere.
QByteArray *openSection(const QByteArray &line, Plant &plant)
{
    const QByteArrayList words = line.trimmed().split(' ');
    const std::optional<QString> name = fileNameOf(words.value(2));
    const QByteArray kind = words.value(1);
    if (kind == "screen")
        return &plant.screen;
    if (!name)
        return nullptr;
    if (kind == "shape")
        return &plant.shapes[*name];
    if (kind == "bitmap")
        plant.bitmaps.insert(*name);
    if (kind == "choose")
        plant.chosen.insert(*name);
    return nullptr;
}

Plant plantOf(const QByteArray &input)
{
    Plant plant;
    QByteArray *section = &plant.screen;
    for (qsizetype begin = 0; begin < input.size();) {
        const qsizetype lineEnd = input.indexOf('\n', begin);
        const qsizetype next = lineEnd < 0 ? input.size() : lineEnd + 1;
        const QByteArray line = input.mid(begin, next - begin);
        if (line.startsWith("@@ "))
            section = openSection(line, plant);
        else if (section != nullptr)
            section->append(line);
        begin = next;
    }
    return plant;
}

void setUp(const TestProject &project, const Plant &plant)
{
    for (const QString &folder : {u"scr"_s, u"scr_bak"_s, u"scr_temp"_s, u"mac"_s, u"bmp"_s})
        QDir(project.path(folder)).removeRecursively();
    project.write(u"scr/a.psc"_s, plant.screen);
    for (auto shape = plant.shapes.cbegin(); shape != plant.shapes.cend(); ++shape)
        project.write(u"mac/"_s + shape.key(), shape.value());
    for (const QString &bitmap : plant.bitmaps)
        project.write(u"bmp/"_s + bitmap, {});
}

struct Outcome
{
    QList<Converter::STBlock> reports;
    std::optional<QByteArray> screen; ///< nothing where it was not converted
};

Outcome runOver(const TestProject &project, const Plant &plant, const QSet<QString> &chosen)
{
    setUp(project, plant);
    Converter converter(project.dir());
    const RunRecorder recorder(converter);
    converter.setFilterNames(chosen);
    converter.convert();

    expect(recorder.endedRuns() == 1, "a run ends once");
    expect(project.read(u"scr_bak/a.psc"_s) == plant.screen, "the backup is the screen, byte for byte");
    expect(!project.exists(u"scr_temp"_s), "nothing is left in between");
    Outcome outcome{.reports = recorder.reports, .screen = {}};
    if (project.exists(u"scr/a.psc"_s))
        outcome.screen = project.read(u"scr/a.psc"_s);
    return outcome;
}

/// A report about the screen as a whole, not about an object of it.
bool isAboutFile(const Converter::STBlock &report)
{
    return report.firstLine < 0;
}

void expectNothingReplaced(const Plant &plant, const Outcome &outcome)
{
    if (!outcome.screen) {
        expect(outcome.reports.size() == 1 && outcome.reports.first().status == 2,
               "a screen that is not converted is reported");
        return;
    }
    expect(outcome.reports.size() <= 1, "objects that are not chosen are not reported");
    if (!outcome.reports.isEmpty()) {
        expect(*outcome.screen == plant.screen, "a screen without candidates stays, byte for byte");
        return;
    }
    expectSameLines(linesOf(plant.screen), linesOf(*outcome.screen),
                    "every line is in the output exactly once");
    const qsizetype lineCount = linesOf(plant.screen).size();
    expect(outcome.screen->count('\n') == lineCount, "each line has one line end");
}

qsizetype linesOfShape(const Plant &plant, const QString &name)
{
    const QStringList lines = linesOf(plant.shapes.value(name));
    for (qsizetype index = 0; index < lines.size(); ++index) {
        if (lines.at(index).startsWith("ID;"_L1))
            return lines.size() - index;
    }
    return 0;
}

/// What the reports tell about the output: an object gives way to its shape's lines, and each of
/// its shape's missing icons brings its own lines back.
qsizetype expectedLines(const Plant &plant, const QList<Converter::STBlock> &reports)
{
    qsizetype lines = linesOf(plant.screen).size();
    QSet<int> replaced;
    for (const Converter::STBlock &report : reports) {
        const qsizetype own = report.lastLine - report.firstLine + 1;
        if (report.status == 0) {
            lines += linesOfShape(plant, report.shapeFile) - own;
            replaced.insert(report.firstLine);
        } else if (replaced.contains(report.firstLine)) {
            lines += own;
        }
    }
    return lines;
}

qsizetype longestLine(const QByteArray &file)
{
    qsizetype longest = 0;
    for (const QString &line : linesOf(file))
        longest = std::max(longest, line.size());
    return longest;
}

/// No line of the output is longer: one of a shape gets numbers and prefixes in place of its fields,
/// and an extra text with its own numbers. Prefix and extra text stand in one line of the screen.
qsizetype longestResult(const Plant &plant)
{
    constexpr qsizetype longestNumber = 11;
    const qsizetype longestOfScreen = longestLine(plant.screen);
    qsizetype longest = longestOfScreen;
    for (const QByteArray &shape : plant.shapes) {
        for (const QString &line : linesOf(shape)) {
            const qsizetype fields = line.count(u';') + 1;
            longest = std::max(longest, line.size() + fields * (longestNumber + longestOfScreen) +
                                            longestOfScreen * (1 + longestNumber) + 1);
        }
    }
    return longest;
}

void expectReplaced(const Plant &plant, const Outcome &outcome)
{
    const bool isUnchanged = !outcome.reports.isEmpty() && isAboutFile(outcome.reports.first());
    if (!outcome.screen || isUnchanged)
        return;
    for (const Converter::STBlock &report : outcome.reports) {
        expect(plant.chosen.contains(report.shapeFile) || report.status == 2 ||
                   plant.chosen.values().join(u' ').contains(report.shapeFile, Qt::CaseInsensitive),
               "only chosen shapes take part");
        expect(report.status == 0 || !report.error.isEmpty(), "an error has its text");
    }
    expect(outcome.screen->count('\n') == expectedLines(plant, outcome.reports),
           "the output has the lines that the reports tell of");
    expect(longestLine(*outcome.screen) <= longestResult(plant), "the output is bounded by its inputs");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const TestProject project;

    const Plant plant = plantOf(bytesOf(data, size));
    expectNothingReplaced(plant, runOver(project, plant, {}));
    expectReplaced(plant, runOver(project, plant, plant.chosen));
    return 0;
}
