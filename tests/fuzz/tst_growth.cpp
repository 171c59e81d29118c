// How the work of a run grows with its input. Counted are the comparisons that the engine's own
// code makes, which the compiler's instrumentation tells, and the memory that is asked for: both
// are the same in every execution, other than time.
#include "Converter.h"
#include "Expect.h"
#include "RunRecord.h"
#include "TestProject.h"

#include <QtTest>

#include <atomic>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

std::atomic<std::uint64_t> comparisonCount{0};

} // namespace

// What instrumented code calls before each comparison and each switch; the names are the compiler's.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {
void __sanitizer_cov_trace_cmp1(std::uint8_t, std::uint8_t)
{
    ++comparisonCount;
}
void __sanitizer_cov_trace_cmp2(std::uint16_t, std::uint16_t)
{
    ++comparisonCount;
}
void __sanitizer_cov_trace_cmp4(std::uint32_t, std::uint32_t)
{
    ++comparisonCount;
}
void __sanitizer_cov_trace_cmp8(std::uint64_t, std::uint64_t)
{
    ++comparisonCount;
}
void __sanitizer_cov_trace_const_cmp1(std::uint8_t, std::uint8_t)
{
    ++comparisonCount;
}
void __sanitizer_cov_trace_const_cmp2(std::uint16_t, std::uint16_t)
{
    ++comparisonCount;
}
void __sanitizer_cov_trace_const_cmp4(std::uint32_t, std::uint32_t)
{
    ++comparisonCount;
}
void __sanitizer_cov_trace_const_cmp8(std::uint64_t, std::uint64_t)
{
    ++comparisonCount;
}
void __sanitizer_cov_trace_switch(std::uint64_t, std::uint64_t *)
{
    ++comparisonCount;
}
}
// NOLINTEND(bugprone-reserved-identifier)

namespace {

/// What a run works on, of a size that a number gives.
struct Input
{
    QByteArray screen;
    QList<QByteArray> shapes; ///< 0.plb, 1.plb, ...
};

struct Work
{
    double comparisons = 0;
    double bytes = 0;
};

QByteArray object(int level, const QByteArray &shape)
{
    return "ID;1;O\nLIB;" + shape + ";1;p;OBJ:a\nPSDV;0;0;9;9;0;1;0;0;0;0;" + QByteArray::number(level) +
           '\n';
}

const QByteArray plainObject = "ID;1;O\nPSDV;0;0;9;9;0;1;0;0;0;0;0\n"_ba;
const QByteArray smallShape = "ID;1;S\nLIB;x;1;q;OBJ:n\nPSDV;0;0;9;9;0;1;0;0;0;0;0;z\n"_ba;

QByteArray repeated(int count, const std::function<QByteArray(int)> &part)
{
    QByteArray text;
    for (int index = 0; index < count; ++index)
        text += part(index);
    return text;
}

/// What is counted while something is done.
Work workOf(const std::function<void()> &doing)
{
    const std::uint64_t before = comparisonCount;
    const MemoryMeter meter;
    doing();
    return {.comparisons = static_cast<double>(comparisonCount - before),
            .bytes = static_cast<double>(meter.bytes())};
}

Work workOfRun(const Input &input)
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, input.screen);
    QSet<QString> chosen{u"missing.plb"_s};
    for (qsizetype index = 0; index < input.shapes.size(); ++index) {
        const QString name = QString::number(index) + ".plb"_L1;
        project.write(u"mac/"_s + name, input.shapes.at(index));
        chosen.insert(name);
    }
    for (int index = 0; index < 4000; ++index)
        chosen.insert(u"m%1.plb"_s.arg(index));

    Converter converter(project.dir());
    converter.setFilterNames(chosen);
    return workOf([&converter] { converter.convert(); });
}

Work workOfReading(const QByteArray &lines)
{
    const QByteArray text =
        "vantrel run 1\nstage: copying back\nstarted: 2026-01-02T03:04:05\n" + lines + "end\n";
    return workOf([&text] { QVERIFY2(readRunRecord(text), "the lines are not understood"); });
}

constexpr int usualSize = 1000;

void verifyGrowth(const Work &least, const Work &single, const Work &fourfold)
{
    QVERIFY2(single.comparisons > least.comparisons + usualSize, "nothing was counted");
    // Lists and buffers grow by doubling, so that their steps fall differently. What grows with the
    // square of its input takes sixteen times as much.
    constexpr double mostTimes = 8;
    const auto times = [](double whole, double part, double fixed) {
        return (whole - fixed) / (part - fixed);
    };
    const double comparisons = times(fourfold.comparisons, single.comparisons, least.comparisons);
    const double bytes = times(fourfold.bytes, single.bytes, least.bytes);
    QVERIFY2(comparisons <= mostTimes, qPrintable(u"%1 times the comparisons"_s.arg(comparisons)));
    QVERIFY2(bytes <= mostTimes, qPrintable(u"%1 times the memory"_s.arg(bytes)));
}

} // namespace

using MakeInput = std::function<Input(int size)>;
Q_DECLARE_METATYPE(MakeInput)
using MakeLine = std::function<QByteArray(int index)>;
Q_DECLARE_METATYPE(MakeLine)

class TestGrowth : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void growsWithItsInputAlone_data();
    void growsWithItsInputAlone();
    void readsARunRecordInItsLengthAlone_data();
    void readsARunRecordInItsLengthAlone();
};

void TestGrowth::growsWithItsInputAlone_data()
{
    QTest::addColumn<MakeInput>("makeInput");
    const auto row = [](const char *name, const MakeInput &makeInput) { QTest::newRow(name) << makeInput; };
    const auto screen = [&](const char *name, const std::function<QByteArray(int)> &part,
                            const QByteArray &before = {}) {
        row(name,
            [=](int size) { return Input{.screen = before + repeated(size, part), .shapes = {smallShape}}; });
    };

    screen("empty lines", [](int) { return "\n"_ba; });
    screen("sections without rectangles", [](int) { return "ID;1;O\n"_ba; });
    screen(
        "rectangles of one section", [](int) { return "PSDV;0;0;9;9;0;1;0;0;0;0;0\n"_ba; }, "ID;1;O\n");
    screen("rectangles before any section", [](int) { return "PSDV;0;0;9;9;0;1;0;0;0;0;0\n"_ba; });
    screen("plain objects", [](int) { return plainObject; });
    screen("parts of one object", [](int) { return object(1, "0.plb"); });
    screen("an object for each level", [](int index) { return object(index + 1, "0.plb"); });
    screen("parts of two objects by turns", [](int index) { return object(1 + index % 2, "0.plb"); });
    screen("replaced objects", [](int index) { return object(index + 1, "0.plb") + plainObject; });
    screen("objects of one missing shape", [](int index) { return object(index + 1, "missing.plb"); });
    screen("objects of a missing shape each",
           [](int index) { return object(index + 1, "m" + QByteArray::number(index) + ".plb"); });
    screen(
        "points", [](int) { return "PNT;2;0;1;2;3;4\n"_ba; }, "ID;1;O\n");

    row("an object of many lines", [](int size) {
        return Input{.screen = object(1, "0.plb") + repeated(size, [](int) { return "TXT;a;b\n"_ba; }),
                     .shapes = {smallShape}};
    });
    row("a long extra text", [](int size) {
        const QByteArray extra = repeated(size, [](int) { return ";x"_ba; });
        return Input{.screen = object(1, "0.plb").chopped(1) + ";0;0" + extra + '\n' + plainObject,
                     .shapes = {smallShape}};
    });
    row("a shape of many lines", [](int size) {
        return Input{.screen = object(1, "0.plb"),
                     .shapes = {smallShape + repeated(size, [](int) { return "IVG;q/a.bmp\n"_ba; })}};
    });
    row("a shape of many points in a line", [](int size) {
        return Input{.screen = object(1, "0.plb"),
                     .shapes = {smallShape + "PNT;" + QByteArray::number(size) + ";0" +
                                repeated(size, [](int) { return ";1;2"_ba; }) + '\n'}};
    });
    row("a shape of many entries in a line", [](int size) {
        return Input{.screen = object(1, "0.plb"),
                     .shapes = {smallShape + "ITXN;" + QByteArray::number(size) + ";q" +
                                repeated(size, [](int) { return ";1;2;OBJ:n"_ba; }) + '\n'}};
    });
    row("a shape of many missing icons", [](int size) {
        const QByteArray icons =
            repeated(size, [](int index) { return "DIV;1;2;i" + QByteArray::number(index) + ".bmp\n"; });
        return Input{.screen = object(1, "0.plb"), .shapes = {"ID;1;Icon\n" + icons + smallShape}};
    });
    row("many shapes", [](int size) {
        return Input{
            .screen = repeated(
                size, [](int index) { return object(index + 1, QByteArray::number(index) + ".plb"); }),
            .shapes = QList<QByteArray>(size, smallShape)};
    });
}

void TestGrowth::growsWithItsInputAlone()
{
    QFETCH(const MakeInput, makeInput);
    // What a run does whatever its input is.
    workOfRun(makeInput(1));
    const Work least = workOfRun(makeInput(1));
    verifyGrowth(least, workOfRun(makeInput(usualSize)), workOfRun(makeInput(4 * usualSize)));
}

void TestGrowth::readsARunRecordInItsLengthAlone_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<MakeLine>("part");
    const auto row = [](const char *name, const QByteArray &before, const MakeLine &part) {
        QTest::newRow(name) << before << part;
    };
    row("many screens", {}, [](int index) { return "screen: " + QByteArray::number(index) + ".psc\n"; });
    row("one screen many times", {}, [](int) { return "screen: a.psc\n"_ba; });
    row("many shapes", {}, [](int index) { return "shape: " + QByteArray::number(index) + ".plb\n"; });
    row("a stage many times", {}, [](int) { return "stage: converting\n"_ba; });
    row("many folders deep", "screen: a", [](int) { return "/a"_ba; });
}

void TestGrowth::readsARunRecordInItsLengthAlone()
{
    QFETCH(const QByteArray, before);
    QFETCH(const MakeLine, part);
    const auto lines = [&](int size) {
        const QByteArray text = before + repeated(size, part);
        return text.endsWith('\n') ? text : text + '\n';
    };
    const Work least = workOfReading(lines(1));
    verifyGrowth(least, workOfReading(lines(usualSize)), workOfReading(lines(4 * usualSize)));
}

QTEST_GUILESS_MAIN(TestGrowth)
#include "tst_growth.moc"
