// How often taking a screen apart and fitting a shape asks for memory. A file has hundreds of
// lines, and a project thousands of files: what asks once for each line costs more than all else.
#include "FileLines.h"
#include "ImageFile.h"
#include "ShapePlacement.h"
#include "TestProject.h"

#include <QtTest>

#include <atomic>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {
std::atomic<qsizetype> allocations = 0;
}

// Every allocation of the process, also those of its libraries, passes here.
extern "C" {
// The C library's own names.
void *__libc_malloc(std::size_t size);                // NOLINT(bugprone-reserved-identifier)
void *__libc_realloc(void *memory, std::size_t size); // NOLINT(bugprone-reserved-identifier)

void *malloc(std::size_t size)
{
    ++allocations;
    return __libc_malloc(size);
}

void *realloc(void *memory, std::size_t size)
{
    ++allocations;
    return __libc_realloc(memory, size);
}
}

namespace {

template <typename Work>
qsizetype allocationsOf(Work work)
{
    const qsizetype before = allocations;
    work();
    return allocations - before;
}

QByteArray screenOf(int objects, int linesEach)
{
    QByteArray screen;
    for (int object = 0; object < objects; ++object) {
        screen += "ID;1;Rect;Part\nPSDV;1;2;30;40;2;1;15;8;1;0;0;0\n";
        for (int line = 2; line < linesEach; ++line)
            screen += "TXT;Some text of the object;2;15;0;0;Arial;12;left\n";
    }
    return screen;
}

} // namespace

class TestAllocations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void countsThem();
    void asksForNoLineWhenAFileIsCut();
    void asksForNoLineWhenAScreenIsTakenApart();
    void asksForNothingWhenAShapeIsFittedAgain();
};

void TestAllocations::countsThem()
{
    QCOMPARE(allocationsOf([] { const QString text(100, u'x'); }), 1);
}

/// One block for the list of all lines.
void TestAllocations::asksForNoLineWhenAFileIsCut()
{
    const QByteArray screen = screenOf(100, 50);
    QCOMPARE(allocationsOf([&screen] { const FileLines lines(screen); }), 1);
}

/// Objects cost, lines do not.
void TestAllocations::asksForNoLineWhenAScreenIsTakenApart()
{
    const TestProject project;
    project.write(u"scr/few.psc"_s, screenOf(20, 10));
    project.write(u"scr/many.psc"_s, screenOf(20, 500));
    const auto taken = [&project](const QString &name) {
        const QString path = project.path(name);
        return allocationsOf([&path] { readImage(path); });
    };
    const qsizetype few = taken(u"scr/few.psc"_s);
    QCOMPARE(taken(u"scr/many.psc"_s), few);
    // Path, bytes, lines and objects; the list of objects grows by doubling.
    QVERIFY2(few <= 20, qPrintable(QString::number(few)));
}

/// The buffer for a screen keeps its memory from one object and screen to the next.
void TestAllocations::asksForNothingWhenAShapeIsFittedAgain()
{
    ShapePattern<QLatin1StringView> pattern;
    for (int line = 0; line < 100; ++line) {
        pattern.addPlaced("PSDV;1;2;30;40;2;1;15;8;1;0;1;0"_L1, RecordGrammar::LineKind::Rectangle);
        pattern.addLineEnd();
    }
    const Fitting<QLatin1StringView> fitting{
        .displacement = {}, .level = 3, .extraText = "a;b"_L1, .toPrefix = "Plant/Unit"_L1};
    TextBuffer<char> out;
    pattern.appendFilled(fitting, out);
    out.clear();
    QCOMPARE(allocationsOf([&] { pattern.appendFilled(fitting, out); }), 0);
    QCOMPARE(out.size(), 100 * QByteArray("PSDV;1;2;30;40;2;1;15;8;1;0;3;0;a;b\n").size());
}

QTEST_GUILESS_MAIN(TestAllocations)
#include "tst_allocations.moc"
