// Conversion of one image file, driven by runs over small projects.
#include "ChangeLog.h"
#include "Converter.h"
#include "Golden.h"
#include "Recorders.h"
#include "TestProject.h"
#include "TestSuite.h"
#include "updUtils.h"

#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

/// Converts a project for the chosen shapes, and keeps what came of it.
struct Outcome
{
    Outcome(const TestProject &project, const QSet<QString> &shapes)
        : converter(project.dir())
        , recorder(converter)
    {
        converter.setFilterNames(shapes);
        converter.convert();
    }

    Converter converter;
    RunRecorder recorder;
    LogRecorder log;
};

/// Lines of text without the path of the project that they come from.
QByteArray withoutPath(QByteArray text, const TestProject &project)
{
    return text.replace(project.dir().toUtf8(), "{project}");
}

QByteArray toLines(const QStringList &texts)
{
    return texts.isEmpty() ? QByteArray() : texts.join(u'\n').toUtf8() + '\n';
}

const QByteArray plainObject = "ID;1;Frame\nPSDV;0;0;9;9;0;1;0;0;0;0;0\n"_ba;

/// An object that refers to a shape: 10 x 10 at (0, 0).
QByteArray candidate(const QByteArray &shape, int level)
{
    return "ID;1;Object\nLIB;" + shape + ";1;obj;OBJ:old\nPSDV;0;0;9;9;0;1;0;0;0;0;" +
           QByteArray::number(level) + '\n';
}

/// A shape of the same size, and an object of a level that was replaced by it.
QByteArray shapeNamed(const QByteArray &name)
{
    return "ID;1;Shape\nLIB;a;1;std;" + name + "\nPSDV;0;0;9;9;0;1;0;0;0;0;0;z\n";
}
QByteArray replacement(const QByteArray &name, int level)
{
    return "ID;1;Shape\nLIB;a;1;obj;" + name + "\nPSDV;0;0;9;9;0;1;0;0;0;0;" + QByteArray::number(level) +
           ";z\n";
}

} // namespace

class TestConvertFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void convertsLikeItsGoldenCase_data();
    void convertsLikeItsGoldenCase();

    void copiesAFileWithoutCandidatesByteForByte_data();
    void copiesAFileWithoutCandidatesByteForByte();
    void rewritesAFileWithCandidatesThatAreNotChosen_data();
    void rewritesAFileWithCandidatesThatAreNotChosen();
    void reportsAnUnreadableFile();
    void reportsATempFileThatCannotBeOpened_data();
    void reportsATempFileThatCannotBeOpened();
    void makesATempFolderAgainThatHasGone_data();
    void makesATempFolderAgainThatHasGone();
    void leavesTheTempFolderOfTheFileItStopsAt();
    void overwritesATempFileThatIsThere();
    void writesNothingBehindLinks_data();
    void writesNothingBehindLinks();
    void reportsATempFileOfSomebodyElse();
    void goesOnAfterAShapeThatFailsItsCheck();
    void namesTheSameLineWheneverAShapeFails();
    void looksForTheShapeInItsFolders_data();
    void looksForTheShapeInItsFolders();
    void reportsEveryObjectOfAMissingShape();
    void reportsEveryMissingIconOfEveryObject();
    void readsShapesAnewInEveryRun();
    void centresAnObjectWithoutACountedRectangleOnAClearedOne();
    void takesAShapeWithoutSections();
    void shiftsAxesByTheCentreAfterPlacing();
    void writesEveryByteOfUntouchedLines();
};

void TestConvertFile::convertsLikeItsGoldenCase_data()
{
    QTest::addColumn<QString>("folder");
    const QDir cases(QStringLiteral(VANTREL_TEST_DATA_DIR "/convert"));
    const QStringList names = cases.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    QVERIFY(!names.isEmpty());
    for (const QString &name : names)
        QTest::newRow(qPrintable(name)) << cases.filePath(name);
}

// A case is a folder "in" with a project and the names of the chosen shapes in "shapes.txt", and
// a folder "expected" with what the run left behind, reported and logged. The path of the project
// reads "{project}" there.
void TestConvertFile::convertsLikeItsGoldenCase()
{
    QFETCH(const QString, folder);
    const TestProject project;
    copyFolder(folder + "/in"_L1, project.dir());
    project.makeFolder(u"log"_s);
    const QString shapes = QString::fromUtf8(project.read(u"shapes.txt"_s));
    const QStringList chosen = shapes.split(u'\n', Qt::SkipEmptyParts);

    const Outcome outcome(project, QSet<QString>(chosen.begin(), chosen.end()));
    QStringList reports;
    for (const Converter::STBlock &report : outcome.recorder.reports) {
        reports += toText(report);
        writeChangeLog(report, outcome.converter.logFileName());
    }

    const TestProject actual(u"actual"_s);
    for (const QString &tree : {u"scr"_s, u"scr_bak"_s, u"scr_temp"_s}) {
        if (project.exists(tree))
            copyFolder(project.path(tree), actual.path(tree));
    }
    actual.write(u"reports.txt"_s, withoutPath(toLines(reports), project));
    if (!outcome.log.entries.isEmpty())
        actual.write(u"log.txt"_s, withoutPath(toLines(outcome.log.entries), project));
    for (const QString &file : project.files(u"log"_s))
        actual.write(u"changelog.csv"_s, withoutPath(project.read("log/"_L1 + file), project));

    const QByteArray differences = goldenDifferences(folder + "/expected"_L1, actual.dir());
    QVERIFY2(differences.isEmpty(), differences.constData());
    QCOMPARE(folderDifferences(folder + "/in/mac"_L1, project.path(u"mac"_s)), QByteArray());
}

void TestConvertFile::copiesAFileWithoutCandidatesByteForByte_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no section") << "just\r\ntext"_ba;
    QTest::newRow("sections without a rectangle") << "head\nID;1;a\n LIB;pump.plb;1;p;o \nID;2;b"_ba;
    QTest::newRow("objects of level 0") << plainObject + " \r\n" + plainObject;
    QTest::newRow("every kind of line end") << "a\r\r\n\r\n\n\rb\r" + plainObject + "\0\xff\x1a"_ba;
    QTest::newRow("a candidate without a prefix")
        << "ID;1;a\nLIB;pump.plb;1;;OBJ:old\r\nPSDV;0;0;9;9;0;1;0;0;0;0;1 \n"_ba;
}

void TestConvertFile::copiesAFileWithoutCandidatesByteForByte()
{
    QFETCH(const QByteArray, bytes);
    const TestProject project;
    project.write(u"scr/a.psc"_s, bytes);
    project.write(u"mac/pump.plb"_s, shapeNamed("OBJ:new"));
    const Outcome outcome(project, {u"pump.plb"_s});

    QCOMPARE(outcome.recorder.reports.size(), 1);
    QCOMPARE(toText(outcome.recorder.reports.constFirst()),
             "NO REPLACE | "_L1 + project.path(u"scr/a.psc"_s) +
                 " |  |  |  |  | lines -1 to -1 | level -1 | rect 99999 99999 0 0 | at -99999 -99999 | "_L1);
    QVERIFY(project.exists(u"scr/a.psc"_s));
    QCOMPARE(project.read(u"scr/a.psc"_s), bytes);
    QCOMPARE(project.read(u"scr_bak/a.psc"_s), bytes);
    QCOMPARE(outcome.log.entries, QStringList());
}

void TestConvertFile::rewritesAFileWithCandidatesThatAreNotChosen_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QSet<QString>>("shapes");
    QTest::addColumn<QByteArray>("rewritten");

    const QByteArray object = candidate("pump.plb", 1);
    const QByteArray spaced = QByteArray(object).replace("\n", " \t\r\n");
    QTest::newRow("no shapes chosen")
        << "head\r\n" + spaced + plainObject << QSet<QString>() << "head\n" + object + plainObject;
    QTest::newRow("another shape chosen")
        << spaced + " end" << QSet<QString>{u"valve.plb"_s} << object + "end\n";
    QTest::newRow("no name chosen") << spaced << QSet<QString>{u""_s} << object;
    QTest::newRow("a part of the name chosen") << spaced << QSet<QString>{u"pump"_s} << object;
    QTest::newRow("a last object without a reference")
        << "ID;1;a \nPSDV;0;0;9;9;0;1;0;0;0;0;1"_ba << QSet<QString>{u"pump.plb"_s}
        << "ID;1;a\nPSDV;0;0;9;9;0;1;0;0;0;0;1\n"_ba;
}

void TestConvertFile::rewritesAFileWithCandidatesThatAreNotChosen()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const QSet<QString>, shapes);
    const TestProject project;
    project.write(u"scr/a.psc"_s, bytes);
    project.write(u"mac/pump.plb"_s, shapeNamed("OBJ:new"));
    const Outcome outcome(project, shapes);

    QCOMPARE(outcome.recorder.reports.size(), 0);
    QTEST(project.read(u"scr/a.psc"_s), "rewritten");
    QCOMPARE(project.read(u"scr_bak/a.psc"_s), bytes);
}

void TestConvertFile::reportsAnUnreadableFile()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, plainObject);
    project.write(u"scr/b.psc"_s, plainObject);
    Converter converter(project.dir());
    const RunRecorder recorder(converter);
    const LogRecorder log;
    // The file goes away between the search and its turn.
    connect(&converter, &Converter::sigUpdFileName, this, [&](const QString &path) {
        if (path.endsWith("a.psc"_L1))
            QFile::remove(path);
    });
    converter.convert();

    QCOMPARE(recorder.statusWords(), (QStringList{u"ERROR"_s, u"NO REPLACE"_s}));
    QCOMPARE(recorder.reports.at(0).error, u"Could not open Image File"_s);
    QCOMPARE(recorder.reports.at(0).imageFile, project.path(u"scr/a.psc"_s));
    QCOMPARE(log.entries, QStringList{"error: Could not open Image File "_L1 + project.path(u"scr/a.psc"_s)});
    QCOMPARE(project.files(u"scr"_s), QStringList{u"b.psc"_s});
}

void TestConvertFile::reportsATempFileThatCannotBeOpened_data()
{
    QTest::addColumn<QString>("image");
    QTest::newRow("its folder could not be made") << u"area/deep/a.psc"_s;
    QTest::newRow("a folder in its place") << u"taken.psc"_s;
}

void TestConvertFile::reportsATempFileThatCannotBeOpened()
{
    QFETCH(const QString, image);
    const TestProject project;
    project.write("scr/"_L1 + image, candidate("pump.plb", 1));
    project.write(u"mac/pump.plb"_s, shapeNamed("OBJ:new"));
    project.makeFolder(u"scr_temp/taken.psc"_s);
    const Outcome outcome(project, {u"pump.plb"_s});

    const QString error = "Could not open Temp File "_L1 + project.path("scr_temp/"_L1 + image);
    QCOMPARE(outcome.recorder.reports.size(), 1);
    QCOMPARE(toText(outcome.recorder.reports.constFirst()),
             "ERROR | "_L1 + project.path("scr/"_L1 + image) +
                 " |  |  |  |  | lines -1 to -1 | level -1 | rect 99999 99999 0 0 | at -99999 -99999 | "_L1 +
                 error);
    QCOMPARE(outcome.log.entries.value(0), "error: "_L1 + error);
    QVERIFY2(outcome.log.namesSource(0, u"tools/Vantrel/Converter"_s, 1575),
             qUtf8Printable(outcome.log.lines.value(0)));
}

void TestConvertFile::makesATempFolderAgainThatHasGone_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("removedAt");
    QTest::addColumn<FolderCreation>("creation");
    QTest::addColumn<QStringList>("converted");

    const QByteArray object = candidate("pump.plb", 1);
    constexpr auto oneLevel = FolderCreation::OneLevel;
    constexpr auto withParents = FolderCreation::WithParents;
    const QStringList below{u"sub/x.psc"_s, u"sub/y.psc"_s};
    const QStringList behindFirst = QStringList{u"b.psc"_s, u"c.psc"_s} + below;
    QTest::newRow("before a file with candidates") << object << u"b.psc"_s << oneLevel << behindFirst;
    QTest::newRow("before a file that is copied") << plainObject << u"b.psc"_s << oneLevel << behindFirst;
    // A broken file is not written, but the folders below need the one that it would lie in.
    QTest::newRow("before a broken file")
        << object << u"broken.psc"_s << oneLevel << QStringList{u"c.psc"_s} + below;
    QTest::newRow("before a broken file, the last above") << object << u"s.psc"_s << oneLevel << below;
    QTest::newRow("before the first file below") << object << u"sub/x.psc"_s << withParents << below;
    QTest::newRow("before another file below")
        << object << u"sub/y.psc"_s << withParents << QStringList{u"sub/y.psc"_s};
    QTest::newRow("below a parent that is missing too")
        << object << u"sub/y.psc"_s << oneLevel << QStringList();
}

void TestConvertFile::makesATempFolderAgainThatHasGone()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const QString, removedAt);
    QFETCH(const FolderCreation, creation);
    const TestProject project;
    for (const QString &file : {u"a.psc"_s, u"b.psc"_s, u"c.psc"_s, u"sub/x.psc"_s, u"sub/y.psc"_s})
        project.write("scr/"_L1 + file, bytes);
    for (const QString &broken : {u"broken.psc"_s, u"s.psc"_s})
        project.write("scr/"_L1 + broken, "ID;1\n"_ba);
    Converter converter(project.dir());
    converter.setMakeFolders(creation == FolderCreation::WithParents);
    connect(&converter, &Converter::sigUpdFileName, this, [&](const QString &path) {
        if (path.endsWith(removedAt))
            project.remove(u"scr_temp"_s);
    });
    converter.convert();

    // Files of a folder below alone cannot be brought back one level at a time.
    QTEST(project.files(u"scr"_s) + project.files(u"scr_temp"_s), "converted");
}

void TestConvertFile::leavesTheTempFolderOfTheFileItStopsAt()
{
    const TestProject project;
    project.write(u"mac/pump.plb"_s, shapeNamed("OBJ:new"));
    project.write(u"scr/a.psc"_s, candidate("pump.plb", 1));
    project.write(u"scr/b.psc"_s, plainObject);
    Converter converter(project.dir());
    converter.setFilterNames({u"pump.plb"_s});
    // The first temp file is open then, and has no other place to come to.
    connect(&converter, &Converter::sigConvertInfo, this, [&] {
        project.remove(u"scr_temp"_s);
        converter.onStopConvert();
    });
    converter.convert();
    QCOMPARE(project.files(u"scr_temp"_s), QStringList{u"a.psc"_s});
    QCOMPARE(project.read(u"scr_temp/a.psc"_s), replacement("OBJ:new", 1));
}

void TestConvertFile::overwritesATempFileThatIsThere()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, candidate("pump.plb", 1));
    project.write(u"mac/pump.plb"_s, shapeNamed("OBJ:new"));
    project.write(u"scr_temp/a.psc"_s, QByteArray(5000, 'x'));
    const Outcome outcome(project, {u"pump.plb"_s});
    QCOMPARE(outcome.recorder.statusWords(), QStringList{u"REPLACE"_s});
    QCOMPARE(project.read(u"scr/a.psc"_s), replacement("OBJ:new", 1));
}

void TestConvertFile::writesNothingBehindLinks_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("converted") << candidate("pump.plb", 1);
    QTest::newRow("unchanged") << QByteArray(plainObject);
}

void TestConvertFile::writesNothingBehindLinks()
{
    QFETCH(const QByteArray, bytes);
    const TestProject project;
    project.write(u"mac/pump.plb"_s, shapeNamed("OBJ:new"));
    for (const QString &file :
         {u"linked.psc"_s, u"dangling.psc"_s, u"twin.psc"_s, u"sub/a.psc"_s, u"sub/there.psc"_s})
        project.write(u"scr/"_s + file, bytes);
    for (const QString &file : {u"target.psc"_s, u"twin.psc"_s, u"sub/there.psc"_s})
        project.write(u"../outside/"_s + file, "of somebody else");
    project.makeFolder(u"scr_temp"_s);
    project.link(project.beside(u"outside/target.psc"_s), u"scr_temp/linked.psc"_s);
    project.link(project.beside(u"outside/made.psc"_s), u"scr_temp/dangling.psc"_s);
    project.link(project.beside(u"outside/sub"_s), u"scr_temp/sub"_s);
    QVERIFY(link(QFile::encodeName(project.beside(u"outside/twin.psc"_s)).constData(),
                 QFile::encodeName(project.path(u"scr_temp/twin.psc"_s)).constData()) == 0);
    const QStringList outside = filesBelow(project.beside(u"outside"_s));
    const Outcome outcome(project, {u"pump.plb"_s});
    QCOMPARE(filesBelow(project.beside(u"outside"_s)), outside);
    for (const QString &file : outside)
        QCOMPARE(project.read(u"../outside/"_s + file), "of somebody else");
}

/// The run began without a folder "scr_temp".
void TestConvertFile::reportsATempFileOfSomebodyElse()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, plainObject);
    project.write(u"scr/b.psc"_s, plainObject);
    Converter converter(project.dir());
    const RunRecorder recorder(converter);
    connect(&converter, &Converter::sigUpdFileName, this, [&](const QString &path) {
        if (path.endsWith("b.psc"_L1))
            project.write(u"scr_temp/b.psc"_s, "of somebody else");
    });
    converter.convert();
    QCOMPARE(recorder.statusWords(), (QStringList{u"NO REPLACE"_s, u"NO REPLACE"_s, u"ERROR"_s}));
    QVERIFY(toText(recorder.reports.constLast())
                .contains("Could not write Temp File "_L1 + project.path(u"scr_temp/b.psc"_s)));
    QCOMPARE(project.read(u"scr_bak/b.psc"_s), QByteArray(plainObject));
}

void TestConvertFile::goesOnAfterAShapeThatFailsItsCheck()
{
    const TestProject project;
    // The lines of a shape that failed are still there when the next object is placed.
    project.write(u"mac/short.plb"_s, "ID;1;Icon\nPSDV;1\nPNT;9;0;1\nLIB\nISA\nITXN\nIX1\nDIV\nPNT;\n"_ba);
    project.write(u"mac/pump.plb"_s, shapeNamed("OBJ:new"));
    const QByteArray bad = candidate("short.plb", 1);
    project.write(u"scr/a.psc"_s, bad + candidate("pump.plb", 2) + candidate("gone.plb", 3) +
                                      candidate("pump.plb", 4) + plainObject);
    const Outcome outcome(project, {u"pump.plb"_s, u"short.plb"_s, u"gone.plb"_s});

    QCOMPARE(outcome.recorder.statusWords(),
             (QStringList{u"ERROR"_s, u"REPLACE"_s, u"ERROR"_s, u"REPLACE"_s}));
    QCOMPARE(project.read(u"scr/a.psc"_s), bad + replacement("OBJ:new", 2) + candidate("gone.plb", 3) +
                                               replacement("OBJ:new", 4) + plainObject);
}

void TestConvertFile::namesTheSameLineWheneverAShapeFails()
{
    const TestProject project;
    project.write(u"mac/bad.plb"_s, "one\ntwo\nID;1;Shape\nLIB;a\n"_ba);
    project.write(u"mac/worse.plb"_s, "ID;1;Shape\nLIB;a\n"_ba);
    project.write(u"scr/a.psc"_s,
                  candidate("bad.plb", 1) + candidate("worse.plb", 2) + candidate("bad.plb", 3));
    project.write(u"scr/b.psc"_s, candidate("worse.plb", 1) + candidate("bad.plb", 2));
    const Outcome outcome(project, {u"bad.plb"_s, u"worse.plb"_s});

    const QString bad = u"Shape File [line 4]: LIB... not enough parameters (must be >= 4)"_s;
    const QString worse = u"Shape File [line 2]: LIB... not enough parameters (must be >= 4)"_s;
    QStringList errors;
    for (const Converter::STBlock &report : outcome.recorder.reports)
        errors += report.error;
    QCOMPARE(errors, (QStringList{bad, worse, bad, worse, bad}));
    QCOMPARE(outcome.log.entries.value(0),
             u"error: Shape File %1 [line 4]: LIB... not enough parameters (must be >= 4)"_s.arg(
                 project.path(u"mac/bad.plb"_s)));
    QCOMPARE(outcome.log.entries.size(), 5);
}

void TestConvertFile::looksForTheShapeInItsFolders_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("name");

    QTest::newRow("in mac") << QStringList{u"mac/pump.plb"_s} << u"mac/pump.plb"_s;
    QTest::newRow("in mac/vlo") << QStringList{u"mac/vlo/pump.plb"_s} << u"mac/vlo/pump.plb"_s;
    QTest::newRow("in both") << QStringList{u"mac/pump.plb"_s, u"mac/vlo/pump.plb"_s} << u"mac/pump.plb"_s;
    QTest::newRow("in neither") << QStringList{u"mac/other/pump.plb"_s} << u""_s;
    QTest::newRow("its name in upper case") << QStringList{u"mac/PUMP.PLB"_s} << u""_s;
    // What is there is taken, even where it cannot be read.
    QTest::newRow("a folder in mac") << QStringList{u"mac/pump.plb/x"_s, u"mac/vlo/pump.plb"_s} << u""_s;
}

void TestConvertFile::looksForTheShapeInItsFolders()
{
    QFETCH(const QStringList, files);
    QFETCH(const QString, name);
    const TestProject project;
    project.write(u"scr/a.psc"_s, candidate("pump.plb", 1));
    for (const QString &file : files)
        project.write(file, shapeNamed(file.toLatin1()));
    const Outcome outcome(project, {u"pump.plb"_s});

    QCOMPARE(outcome.recorder.reports.size(), 1);
    if (name.isEmpty()) {
        QCOMPARE(outcome.recorder.reports.constFirst().error, u"Could not open Shape File"_s);
        QCOMPARE(outcome.log.entries, QStringList{u"error: Could not open Shape File pump.plb"_s});
        QCOMPARE(project.read(u"scr/a.psc"_s), candidate("pump.plb", 1));
    } else {
        QCOMPARE(outcome.recorder.reports.constFirst().shapeObject, name);
        QCOMPARE(project.read(u"scr/a.psc"_s), replacement(name.toLatin1(), 1));
    }
}

void TestConvertFile::reportsEveryObjectOfAMissingShape()
{
    const TestProject project;
    const QByteArray screen = candidate("gone.plb", 1) + candidate("gone.plb", 2) + plainObject;
    project.write(u"scr/a.psc"_s, screen);
    project.write(u"scr/b.psc"_s, candidate("gone.plb", 3));
    const Outcome outcome(project, {u"gone.plb"_s});
    QCOMPARE(outcome.recorder.statusWords(), (QStringList{u"ERROR"_s, u"ERROR"_s, u"ERROR"_s}));
    QCOMPARE(outcome.log.entries.count(u"error: Could not open Shape File gone.plb"_s), 3);
    QCOMPARE(project.read(u"scr/a.psc"_s), screen);
}

void TestConvertFile::reportsEveryMissingIconOfEveryObject()
{
    const TestProject project;
    const QByteArray icons = "ID;2;Icon\nDIV;1;2;gone.bmp\nDIV;1;2;here.bmp\nDIV;1;2;gone.bmp\n";
    project.write(u"mac/pump.plb"_s, shapeNamed("OBJ:new") + icons);
    project.write(u"bmp/here.bmp"_s, QByteArray());
    project.write(u"scr/a.psc"_s, candidate("pump.plb", 1) + candidate("pump.plb", 2));
    project.write(u"scr/b.psc"_s, candidate("pump.plb", 5));
    const Outcome outcome(project, {u"pump.plb"_s});

    const QStringList each{u"REPLACE"_s, u"ERROR"_s, u"ERROR"_s};
    QCOMPARE(outcome.recorder.statusWords(), each + each + each);
    QCOMPARE(outcome.log.entries, QStringList(6, u"error: Ikon gone.bmp does not exist"_s));
    const auto output = [&](int level) {
        return replacement("OBJ:new", level) + icons + candidate("pump.plb", level).repeated(2);
    };
    QCOMPARE(project.read(u"scr/a.psc"_s), output(1) + output(2));
    QCOMPARE(project.read(u"scr/b.psc"_s), output(5));

    // What the first icon changed in the record is still changed for the next one, but it was
    // reported as replaced before.
    const QList<Converter::STBlock> &reports = outcome.recorder.reports;
    QVERIFY(reports.at(0).replace);
    QCOMPARE(reports.at(0).error, u""_s);
    QVERIFY(!reports.at(2).replace);
    QCOMPARE(reports.at(2).error, u"Ikon gone.bmp does not exist"_s);
    QCOMPARE(reports.at(2).shapeObject, u"OBJ:new"_s);
}

void TestConvertFile::readsShapesAnewInEveryRun()
{
    const TestProject project;
    project.write(u"mac/pump.plb"_s, shapeNamed("OBJ:one") + "ID;2;Icon\nDIV;1;2;a.bmp\n");
    project.write(u"scr/a.psc"_s, candidate("pump.plb", 1));
    Converter converter(project.dir());
    const RunRecorder recorder(converter);
    converter.setFilterNames({u"pump.plb"_s});
    converter.convert();
    QCOMPARE(recorder.statusWords(), (QStringList{u"REPLACE"_s, u"ERROR"_s}));

    project.write(u"bmp/a.bmp"_s, QByteArray());
    project.write(u"mac/pump.plb"_s, shapeNamed("OBJ:two"));
    project.write(u"scr/a.psc"_s, candidate("pump.plb", 1));
    converter.convert();
    QCOMPARE(recorder.statusWords(), (QStringList{u"REPLACE"_s, u"ERROR"_s, u"REPLACE"_s}));
    QCOMPARE(project.read(u"scr/a.psc"_s), replacement("OBJ:two", 1));
}

void TestConvertFile::centresAnObjectWithoutACountedRectangleOnAClearedOne()
{
    const TestProject project;
    project.write(u"mac/pump.plb"_s, "ID;1;Shape\nLIB;a;1;std;std\nPSDV;0;0;9;9;0;1;0;0;0;0;0;z\n"
                                     "PNT;1;0;1;2\nIX1;std;;;0;0\nIY1;std;;;0;1\n"_ba);
    project.write(u"scr/a.psc"_s, "ID;1;a\nLIB;pump.plb;1;p;OBJ:old\nPSDV;0;0;9;9;0;0;0;0;0;0;1\n"_ba);
    const Outcome outcome(project, {u"pump.plb"_s});
    // The centre of (99999, 99999) to (0, 0) is (50000, 50000), that of the shape (5, 5).
    QCOMPARE(project.read(u"scr/a.psc"_s),
             "ID;1;Shape\nLIB;a;1;p;std\nPSDV;49995;49995;50004;50004;0;1;0;0;0;0;1;z\n"
             "PNT;1;0;100000;100001\nIX1;p;;;49995;49995\nIY1;p;;;49995;49996\n"_ba);
    QCOMPARE(toText(outcome.recorder.reports.constFirst().rect), u"99999 99999 0 0"_s);
}

void TestConvertFile::takesAShapeWithoutSections()
{
    const TestProject project;
    project.write(u"mac/empty.plb"_s, "LIB;a;1;std;OBJ:new\nPSDV;1\n"_ba);
    project.write(u"scr/a.psc"_s, candidate("empty.plb", 1) + plainObject);
    const Outcome outcome(project, {u"empty.plb"_s});
    // Nothing stands behind its header, so nothing takes the object's place.
    QCOMPARE(outcome.recorder.statusWords(), QStringList{u"REPLACE"_s});
    QCOMPARE(outcome.recorder.reports.constFirst().shapeObject, u""_s);
    QCOMPARE(project.read(u"scr/a.psc"_s), plainObject);
}

void TestConvertFile::shiftsAxesByTheCentreAfterPlacing()
{
    const TestProject project;
    // The shape's name is the prefix that its references are moved from.
    project.write(u"mac/axis.plb"_s, "ID;1;Shape\nLIB;a;1;x;std\nPSDV;10;20;29;29;0;1;0;0;0;0;0;z\n"
                                     "IX2;std.a;std:b;c;1;2\nIY2;std.a;std:b;c;1;2\nISA;std\n"_ba +
                                         "ISA" + QByteArray(";std").repeated(20) + '\n');
    project.write(u"scr/a.psc"_s,
                  "ID;1;a\nLIB;axis.plb;1;p;OBJ:old\nPSDV;100;200;199;229;0;1;0;0;0;0;1\n"_ba);
    Outcome outcome(project, {u"axis.plb"_s});
    QCOMPARE(outcome.recorder.statusWords(), QStringList{u"ERROR"_s});

    project.write(u"mac/axis.plb"_s, project.read(u"mac/axis.plb"_s).replace("ISA;std\n", ""));
    outcome.converter.convert();
    QCOMPARE(outcome.recorder.statusWords(), (QStringList{u"ERROR"_s, u"REPLACE"_s}));
    // Centres: (150, 215) and (20, 25).
    QByteArray isa = "ISA;p;p;std;p;std;p;std;p;std;std;std;std;std;p;std;std;std;std;std;p\n";
    QCOMPARE(project.read(u"scr/a.psc"_s), "ID;1;Shape\nLIB;a;1;p;std\nPSDV;140;210;159;219;0;1;0;0;0;0;1;z\n"
                                           "IX2;p.a;p:b;c;131;132\nIY2;p.a;p:b;c;191;192\n" +
                                               isa);
}

void TestConvertFile::writesEveryByteOfUntouchedLines()
{
    QByteArray every("text;<");
    for (int byte = 0; byte <= 0xff; ++byte) {
        if (byte != '\n')
            every += static_cast<char>(byte);
    }
    every += ">\n";
    const TestProject project;
    project.write(u"mac/pump.plb"_s, shapeNamed("OBJ:new") + every);
    project.write(u"scr/a.psc"_s, every + candidate("pump.plb", 1) + plainObject + every);
    const Outcome outcome(project, {u"pump.plb"_s});
    QCOMPARE(project.read(u"scr/a.psc"_s), every + replacement("OBJ:new", 1) + every + plainObject + every);
}

VANTREL_TEST(QCoreApplication, TestConvertFile)
#include "tst_convertfile.moc"
