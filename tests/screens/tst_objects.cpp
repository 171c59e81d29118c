// Cutting an image file into objects, gathering their parts, reading their shape references,
// and keeping an object whose shape cannot be used.
#include "Converter.h"
#include "Recorders.h"
#include "TestSuite.h"

#include <QBuffer>
#include <QtTest>

#include <limits>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString id = u"ID;1;Shape"_s;
const QString icon = u"ID;1;Icon"_s;
const QString text = u"ID;1;Text"_s;
const QString library = u"LIB;pump.plb;1;p101;OBJ:pump"_s;
const QString noSection = u"head"_s;
const QString points = u"PNT;0;0"_s;

/// A rectangle line of a level, with what follows its first twelve fields.
QString psdv(const QString &level, const QString &more = QString())
{
    return u"PSDV;0;0;9;9;0;1;0;0;0;0;%1%2"_s.arg(level, more);
}

QString psdv(int level)
{
    return psdv(QString::number(level));
}

/// "0-2 level 1 candidate" for each record.
QStringList toTexts(const QList<Converter::STBlock> &objects)
{
    QStringList texts;
    for (const Converter::STBlock &object : objects) {
        QString description = u"%1-%2"_s.arg(object.firstLine).arg(object.lastLine);
        if (object.extraNumber > 0)
            description += u" level %1"_s.arg(object.extraNumber);
        if (object.replace)
            description += u" candidate"_s;
        texts += description;
    }
    return texts;
}

QList<Converter::STBlock> split(const QStringList &lines)
{
    Converter converter{QString()};
    QList<Converter::STBlock> objects;
    if (!converter.splitObjects(u"/p/scr/a.psc"_s, lines, objects))
        qFatal("objects are always cut");
    return objects;
}

/// The record of an object that reaches over all lines, as far as they can be read.
Converter::STBlock readReferences(const QStringList &lines)
{
    Converter converter{QString()};
    Converter::STBlock object;
    Converter::clearBlock(object);
    object.firstLine = 0;
    object.lastLine = static_cast<int>(lines.size()) - 1;
    object.replace = true;
    QList<Converter::STBlock> objects{object};
    converter.readShapeReferences(lines, objects);
    return objects.constFirst();
}

QString rectangle(const QString &corners, const QString &counts = u"1"_s)
{
    return u"PSDV;%1;0;%2;0;0;0;0;1"_s.arg(corners, counts);
}

} // namespace

class TestObjects : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cutsLinesIntoObjects_data();
    void cutsLinesIntoObjects();
    void namesEveryLineOnce_data();
    void namesEveryLineOnce();
    void findsNoCandidateWithoutARectangle_data();
    void findsNoCandidateWithoutARectangle();
    void recognisesCandidates_data();
    void recognisesCandidates();
    void keepsTheTextBehindTheFixedFields_data();
    void keepsTheTextBehindTheFixedFields();
    void startsFromClearedRecords();
    void takesItsTextsFromTheListThatItFills();
    void cutsAMillionRectanglesInLinearTime();

    void gathersScatteredParts_data();
    void gathersScatteredParts();
    void gathersManyPartsInLinearTime();
    void gathersNothingInAnEmptyFile();
    void gathersOnlyLinesThatAreThere_data();
    void gathersOnlyLinesThatAreThere();

    void readsTheShapeReference_data();
    void readsTheShapeReference();
    void leavesOtherRecordsAlone();
    void readsTheLargestRectangleOutsideOfTexts();
    void keepsTheFirstPosition();
    void setsOnlyLeftAndTopOfThePosition();
    void togglesIconRectanglesAcrossSections();
    void readsEachObjectForItself();
    void readsNothingBehindTheFieldsOfALine();

    void keepsAnObjectWhoseShapeCannotBeUsed_data();
    void keepsAnObjectWhoseShapeCannotBeUsed();
    void listsAFailedShapeOnce();
    void takesItsTextFromTheListThatItFills();
    void logsThenReportsThenWrites();
    void writesNothingForAnEmptyRange();
    void writesLatin1();
    void leavesAllElseInTheRecord();
};

void TestObjects::cutsLinesIntoObjects_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QStringList>("objects");

    QTest::newRow("no lines") << QStringList() << QStringList();
    QTest::newRow("no section") << QStringList{noSection, psdv(1)} << QStringList();
    QTest::newRow("sections in lower case") << QStringList{u"id;1;a"_s, psdv(1)} << QStringList();
    QTest::newRow("one object from the first line on")
        << QStringList{id, psdv(0), points} << QStringList{u"0--1"_s, u"0-2"_s};
    QTest::newRow("a head of two lines")
        << QStringList{noSection, psdv(1), id, psdv(0)} << QStringList{u"0-1"_s, u"2-3"_s};
    QTest::newRow("two objects of level 0") << QStringList{id, psdv(0), points, id, points, psdv(0), points}
                                            << QStringList{u"0--1"_s, u"0-2"_s, u"3-6"_s};
    QTest::newRow("one level goes together")
        << QStringList{id, psdv(1), id, psdv(1), id, psdv(1), id, psdv(0)}
        << QStringList{u"0--1"_s, u"0-5 level 1"_s, u"6-7"_s};
    QTest::newRow("levels apart") << QStringList{id, psdv(1), id, psdv(2), id, psdv(1), id, psdv(0)}
                                  << QStringList{u"0--1"_s, u"0-1 level 1"_s, u"2-3 level 2"_s,
                                                 u"4-5 level 1"_s, u"6-7"_s};
    QTest::newRow("a section without a rectangle stays with the object before it")
        << QStringList{id, psdv(1), id, points, id, psdv(2), id, psdv(0)}
        << QStringList{u"0--1"_s, u"0-3 level 1"_s, u"4-5 level 2"_s, u"6-7"_s};
    QTest::newRow("sections at the end belong to the last object")
        << QStringList{id, psdv(0), id, points, id} << QStringList{u"0--1"_s, u"0-4"_s};
    QTest::newRow("a negative level closes like level 0")
        << QStringList{id, psdv(-1), id, psdv(-1), id, psdv(0)}
        << QStringList{u"0--1"_s, u"0-1"_s, u"2-3"_s, u"4-5"_s};
    QTest::newRow("a level that is no number is level 0")
        << QStringList{id, psdv(u"x"_s), id, psdv(u""_s), id, psdv(0)}
        << QStringList{u"0--1"_s, u"0-1"_s, u"2-3"_s, u"4-5"_s};
    QTest::newRow("levels are compared as numbers")
        << QStringList{id, psdv(u"01"_s), id, psdv(u" +1"_s), id, psdv(0)}
        << QStringList{u"0--1"_s, u"0-3 level 1"_s, u"4-5"_s};
    QTest::newRow("a rectangle line without a level is level 0")
        << QStringList{id, u"PSDV"_s, id, u"PSDV;1;2"_s, id, psdv(0)}
        << QStringList{u"0--1"_s, u"0-1"_s, u"2-3"_s, u"4-5"_s};

    // A rectangle with no new section in front of it cannot begin an object.
    QTest::newRow("two rectangles in one section of level 0")
        << QStringList{id, psdv(0), psdv(0), id, psdv(0)} << QStringList{u"0--1"_s, u"0-2"_s, u"3-4"_s};
    QTest::newRow("two levels in one section") << QStringList{id, psdv(1), psdv(2), psdv(0), id, psdv(0)}
                                               << QStringList{u"0--1"_s, u"0-3 level 1"_s, u"4-5"_s};
    QTest::newRow("two levels in a later section of the object")
        << QStringList{id, psdv(1), id, psdv(1), psdv(2), id, psdv(0)}
        << QStringList{u"0--1"_s, u"0-1 level 1"_s, u"2-4 level 1"_s, u"5-6"_s};

    // No line is lost in front of the first object.
    QTest::newRow("first sections without a rectangle")
        << QStringList{noSection, id, points, id, points, id, psdv(0)}
        << QStringList{u"0-0"_s, u"1-4"_s, u"5-6"_s};
    QTest::newRow("a first section without a rectangle, no head")
        << QStringList{id, points, id, psdv(0)} << QStringList{u"0--1"_s, u"0-1"_s, u"2-3"_s};
}

void TestObjects::cutsLinesIntoObjects()
{
    QFETCH(const QStringList, lines);
    const QList<Converter::STBlock> objects = split(lines);
    QTEST(toTexts(objects), "objects");
    for (const Converter::STBlock &object : objects)
        QCOMPARE(object.imageFile, u"/p/scr/a.psc"_s);
}

void TestObjects::namesEveryLineOnce_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("one object") << QStringList{id, psdv(0)};
    QTest::newRow("a long head") << QStringList{noSection, points, psdv(1), library, id, psdv(0)};
    QTest::newRow("sections before and behind")
        << QStringList{noSection, id, id, points, id, psdv(2), id, id};
    QTest::newRow("many levels") << QStringList{id,      psdv(1), psdv(2), id,      psdv(2), id,
                                                psdv(1), psdv(1), id,      psdv(0), psdv(3), id};
}

void TestObjects::namesEveryLineOnce()
{
    QFETCH(const QStringList, lines);
    int next = 0;
    for (const Converter::STBlock &object : split(lines)) {
        QCOMPARE(object.firstLine, next);
        next = object.lastLine + 1;
    }
    QCOMPARE(next, lines.size());
}

void TestObjects::findsNoCandidateWithoutARectangle_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("a section alone") << QStringList{id};
    QTest::newRow("sections and more") << QStringList{noSection, id, library, id, points};
}

void TestObjects::findsNoCandidateWithoutARectangle()
{
    QFETCH(const QStringList, lines);
    QStringList gathered = lines;
    QList<Converter::STBlock> objects = split(lines);
    Converter converter{QString()};
    converter.gatherScatteredParts(gathered, objects);
    converter.readShapeReferences(gathered, objects);

    QCOMPARE(gathered, lines);
    QVERIFY(!objects.isEmpty());
    for (const Converter::STBlock &object : objects) {
        QVERIFY(object.firstLine >= 0);
        QVERIFY(!object.replace);
    }
}

void TestObjects::recognisesCandidates_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<bool>("candidate");

    QTest::newRow("library line in front") << QStringList{id, library, psdv(1)} << true;
    QTest::newRow("level 2") << QStringList{id, library, psdv(2)} << true;
    QTest::newRow("level 0") << QStringList{id, library, psdv(0)} << false;
    QTest::newRow("negative level") << QStringList{id, library, psdv(-1)} << false;
    QTest::newRow("no library line") << QStringList{id, psdv(1)} << false;
    QTest::newRow("library line not just in front") << QStringList{id, library, u""_s, psdv(1)} << false;
    QTest::newRow("library line behind") << QStringList{id, psdv(1), library} << false;
    QTest::newRow("library line in the head") << QStringList{library, id, psdv(1)} << false;
    QTest::newRow("no shape named") << QStringList{id, u"LIB;;1;p;o"_s, psdv(1)} << false;
    QTest::newRow("no fields") << QStringList{id, u"LIB"_s, psdv(1)} << false;
    QTest::newRow("a blank as the shape") << QStringList{id, u"LIB; ;1;p;o"_s, psdv(1)} << true;
    QTest::newRow("a longer tag") << QStringList{id, u"LIBX;pump.plb;1;p;o"_s, psdv(1)} << false;
    QTest::newRow("a tag in lower case") << QStringList{id, u"lib;pump.plb;1;p;o"_s, psdv(1)} << false;
    QTest::newRow("the first rectangle decides against it")
        << QStringList{id, psdv(1), id, library, psdv(1)} << false;
    QTest::newRow("the first rectangle decides for it")
        << QStringList{id, library, psdv(1), id, psdv(1)} << true;
}

void TestObjects::recognisesCandidates()
{
    QFETCH(const QStringList, lines);
    QFETCH(const bool, candidate);

    // Another object follows, so the last object's own rule does not apply.
    const QList<Converter::STBlock> before = split(lines + QStringList{id, psdv(0)});
    QCOMPARE(before.size(), 3);
    QCOMPARE(before.at(1).replace, candidate);

    // The last object is a candidate by its level alone.
    const QList<Converter::STBlock> last = split(lines);
    QCOMPARE(last.size(), 2);
    QCOMPARE(last.at(1).replace, last.at(1).extraNumber > 0);
}

void TestObjects::keepsTheTextBehindTheFixedFields_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QString>("extraText");

    QTest::newRow("two more fields") << QStringList{id, psdv(u"1"_s, u";z;note;7"_s)} << u"note;7"_s;
    QTest::newRow("one more field") << QStringList{id, psdv(u"1"_s, u";z;note"_s)} << u"note"_s;
    QTest::newRow("empty fields in it") << QStringList{id, psdv(u"1"_s, u";z;;a;;"_s)} << u";a;;"_s;
    QTest::newRow("one empty field") << QStringList{id, psdv(u"1"_s, u";z;"_s)} << u""_s;
    QTest::newRow("no more than 13 fields") << QStringList{id, psdv(u"1"_s, u";z"_s)} << u""_s;
    QTest::newRow("no more than 12 fields") << QStringList{id, psdv(u"1"_s)} << u""_s;
    QTest::newRow("level 0") << QStringList{id, psdv(u"0"_s, u";z;note"_s)} << u""_s;
    QTest::newRow("the first rectangle's only")
        << QStringList{id, psdv(u"1"_s, u";z;one"_s), id, psdv(u"1"_s, u";z;two"_s)} << u"one"_s;
    QTest::newRow("not a later rectangle's")
        << QStringList{id, psdv(1), id, psdv(u"1"_s, u";z;two"_s)} << u""_s;
}

void TestObjects::keepsTheTextBehindTheFixedFields()
{
    QFETCH(const QStringList, lines);
    QTEST(split(lines).at(1).extraText, "extraText");
    // The objects behind it do not inherit the text.
    const QStringList more{id, psdv(u"8"_s, u";z;eight"_s), id, psdv(9),
                           id, psdv(u"8"_s, u";z;eight"_s), id, psdv(0)};
    QStringList texts;
    for (const Converter::STBlock &object : split(lines + more).mid(2))
        texts += object.extraText;
    QCOMPARE(texts, (QStringList{u"eight"_s, u""_s, u"eight"_s, u""_s}));
}

void TestObjects::startsFromClearedRecords()
{
    const QList<Converter::STBlock> objects = split({id, psdv(1), id, psdv(2), id, psdv(3)});
    QCOMPARE(objects.size(), 4);
    for (qsizetype index = 1; index < objects.size(); ++index) {
        const Converter::STBlock &object = objects.at(index);
        QCOMPARE(object.status, 0);
        QCOMPARE(toText(object.rect), u"99999 99999 0 0"_s);
        QCOMPARE(toText(object.rect2), u"0 0 0 0"_s);
        QCOMPARE(toText(object.rect3), u"-99999 -99999 0 0"_s);
        QCOMPARE(object.shapeFile + object.initText + object.imageObject + object.error, u""_s);
    }
}

void TestObjects::takesItsTextsFromTheListThatItFills()
{
    Converter converter{QString()};
    QList<Converter::STBlock> objects = split({id, psdv(0)});
    const QByteArray path = "/p/scr/b.psc"_ba;
    objects.first().imageFile = QString::fromLatin1(path);
    QVERIFY(converter.splitObjects(objects.at(0).imageFile, {id, psdv(0), id, psdv(1)}, objects));
    QCOMPARE(objects.size(), 3);
    for (const Converter::STBlock &object : std::as_const(objects))
        QCOMPARE(object.imageFile.toLatin1(), path);

    objects.last().missingIcons = QStringList{id, psdv(2)};
    QVERIFY(converter.splitObjects(QString(), objects.constLast().missingIcons, objects));
    QCOMPARE(toTexts(objects), (QStringList{u"0--1"_s, u"0-1 level 2 candidate"_s}));
}

void TestObjects::cutsAMillionRectanglesInLinearTime()
{
    // Closing at each rectangle would walk back to the section every time, or for ever.
    QStringList lines{id};
    for (int count = 0; count < 1000000; ++count)
        lines += psdv(count % 3);
    const QList<Converter::STBlock> objects = split(lines);
    QCOMPARE(toTexts(objects), (QStringList{u"0--1"_s, u"0-1000000"_s}));
}

namespace {

/// Points lines carry a mark of their own, so that each line can be told from the others.
QString mark(const QString &word)
{
    return points + u';' + word;
}

/// A rectangle of level 0, which belongs to nothing.
const QString flat = psdv(0);

void addPartsThatMove()
{
    const QStringList apart{id, library, psdv(1), mark(u"a"_s), id, flat, mark(u"b"_s)};
    QTest::newRow("nothing to gather")
        << apart << apart << QStringList{u"0--1"_s, u"0-3 level 1 candidate"_s, u"4-6"_s};

    QTest::newRow("a later part goes before the candidate's last line")
        << QStringList{id, library, psdv(1), mark(u"a"_s), id, flat, id, psdv(1), mark(u"b"_s), id, flat}
        << QStringList{id, library, psdv(1), id, psdv(1), mark(u"b"_s), mark(u"a"_s), id, flat, id, flat}
        << QStringList{u"0--1"_s, u"0-6 level 1 candidate"_s, u"7-8"_s, u"9-10"_s};

    QTest::newRow("two later parts keep their order")
        << QStringList{id,           library, psdv(1), mark(u"a"_s), id,      flat,         id, psdv(1),
                       mark(u"b"_s), id,      flat,    id,           psdv(1), mark(u"c"_s), id, flat}
        << QStringList{id,           library,      psdv(1), id,   psdv(1), mark(u"b"_s), id, psdv(1),
                       mark(u"c"_s), mark(u"a"_s), id,      flat, id,      flat,         id, flat}
        << QStringList{u"0--1"_s, u"0-9 level 1 candidate"_s, u"10-11"_s, u"12-13"_s, u"14-15"_s};

    QTest::newRow("a later candidate is only a part")
        << QStringList{id, library, psdv(1), mark(u"a"_s), id, flat, id, library, psdv(1), id, flat}
        << QStringList{id, library, psdv(1), id, library, psdv(1), mark(u"a"_s), id, flat, id, flat}
        << QStringList{u"0--1"_s, u"0-6 level 1 candidate"_s, u"7-8"_s, u"9-10"_s};

    QTest::newRow("levels gather each for itself")
        << QStringList{id, library, psdv(1),      mark(u"a"_s), id,      library,      psdv(2), mark(u"b"_s),
                       id, psdv(1), mark(u"c"_s), id,           psdv(2), mark(u"d"_s), id,      flat}
        << QStringList{id,      library, psdv(1), id,      psdv(1),      mark(u"c"_s), mark(u"a"_s), id,
                       library, psdv(2), id,      psdv(2), mark(u"d"_s), mark(u"b"_s), id,           flat}
        << QStringList{u"0--1"_s, u"0-6 level 1 candidate"_s, u"7-13 level 2 candidate"_s, u"14-15"_s};
}

void addPartsThatStay()
{
    const QStringList late{id, psdv(1), id, flat, id, library, psdv(1), mark(u"b"_s), id, flat};
    QTest::newRow("an earlier part stays")
        << late << late
        << QStringList{u"0--1"_s, u"0-1 level 1"_s, u"2-3"_s, u"4-7 level 1 candidate"_s, u"8-9"_s};

    QTest::newRow("an earlier part stays, a later one moves")
        << QStringList{id, psdv(1), id, flat,    id,           library, psdv(1),
                       id, flat,    id, psdv(1), mark(u"c"_s), id,      flat}
        << QStringList{id,      psdv(1),      id,      flat, id,   library, id,
                       psdv(1), mark(u"c"_s), psdv(1), id,   flat, id,      flat}
        << QStringList{u"0--1"_s,  u"0-1 level 1"_s, u"2-3"_s, u"4-9 level 1 candidate"_s,
                       u"10-11"_s, u"12-13"_s};

    const QStringList none{id, psdv(1), id, flat, id, psdv(1), id, flat};
    QTest::newRow("no candidate") << none << none
                                  << QStringList{u"0--1"_s, u"0-1 level 1"_s, u"2-3"_s, u"4-5 level 1"_s,
                                                 u"6-7"_s};

    QTest::newRow("the last object of the level moves")
        << QStringList{noSection, id, library, psdv(1), mark(u"a"_s), id, flat, id, psdv(1)}
        << QStringList{noSection, id, library, psdv(1), id, psdv(1), mark(u"a"_s), id, flat}
        << QStringList{u"0-0"_s, u"1-6 level 1 candidate"_s, u"7-8"_s};

    QTest::newRow("lines before the first object stay")
        << QStringList{noSection, id, points,  id,           library, psdv(1), id,
                       flat,      id, psdv(1), mark(u"b"_s), id,      flat}
        << QStringList{noSection,    id,      points, id,   library, id,  psdv(1),
                       mark(u"b"_s), psdv(1), id,     flat, id,      flat}
        << QStringList{u"0-0"_s, u"1-2"_s, u"3-8 level 1 candidate"_s, u"9-10"_s, u"11-12"_s};
}

} // namespace

void TestObjects::gathersScatteredParts_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QStringList>("gathered");
    QTest::addColumn<QStringList>("objects");
    addPartsThatMove();
    addPartsThatStay();
}

void TestObjects::gathersScatteredParts()
{
    QFETCH(QStringList, lines);
    QStringList sorted = lines;
    QList<Converter::STBlock> records = split(lines);
    Converter converter{QString()};
    converter.gatherScatteredParts(lines, records);

    QTEST(lines, "gathered");
    QTEST(toTexts(records), "objects");
    sorted.sort();
    lines.sort();
    QCOMPARE(lines, sorted);
}

void TestObjects::gathersManyPartsInLinearTime()
{
    // Moving each of these parts by itself would move a million lines hundreds of thousands of times.
    constexpr int parts = 100000;
    QStringList lines{id, library, psdv(1), points};
    for (int part = 0; part < parts; ++part)
        lines += {id, psdv(2), id, psdv(1), points, u"part %1"_s.arg(part)};
    QList<Converter::STBlock> records = split(lines);
    const qsizetype count = lines.size();
    Converter converter{QString()};
    converter.gatherScatteredParts(lines, records);

    QCOMPARE(lines.size(), count);
    // The candidate with its parts; the objects of level 2 that stood between them.
    QCOMPARE(records.size(), 2 + parts);
    QCOMPARE(records.at(1).lastLine, 3 + 4 * parts);
    QCOMPARE(lines.at(records.at(1).lastLine), points);
    QCOMPARE(lines.at(records.at(1).lastLine - 1), u"part %1"_s.arg(parts - 1));
    QCOMPARE(records.constLast().lastLine, count - 1);
}

void TestObjects::gathersNothingInAnEmptyFile()
{
    QStringList lines;
    QList<Converter::STBlock> records;
    Converter converter{QString()};
    converter.gatherScatteredParts(lines, records);
    converter.readShapeReferences(lines, records);
    QCOMPARE(lines, QStringList());
    QVERIFY(records.isEmpty());
}

void TestObjects::gathersOnlyLinesThatAreThere_data()
{
    constexpr int least = std::numeric_limits<int>::min();
    constexpr int greatest = std::numeric_limits<int>::max();
    using Ranges = QList<std::pair<int, int>>;
    QTest::addColumn<Ranges>("ranges");
    QTest::addColumn<QString>("gathered");
    QTest::addColumn<QStringList>("objects");

    const QStringList all{u"0-4 level 1 candidate"_s};
    QTest::newRow("a candidate from before the first line") << Ranges{{-3, 1}, {2, 4}} << u"acdeb"_s << all;
    QTest::newRow("a part from before the first line") << Ranges{{3, 4}, {least, 2}} << u"dabce"_s << all;
    QTest::newRow("a part to behind the last line") << Ranges{{0, 2}, {3, greatest}} << u"abdec"_s << all;
    // Its last line is the last one that is there.
    QTest::newRow("a candidate to behind the last line")
        << Ranges{{2, greatest}, {0, 1}} << u"cdabe"_s << all;
    QTest::newRow("a candidate behind the last line")
        << Ranges{{5, 9}, {0, 1}} << u"ab"_s << QStringList{u"0-1 level 1 candidate"_s};
    QTest::newRow("a candidate before the first line")
        << Ranges{{least, least}, {0, 1}} << u"ab"_s << QStringList{u"0-1 level 1 candidate"_s};
    QTest::newRow("ranges turned round")
        << Ranges{{4, 0}, {3, 1}} << u""_s << QStringList{u"0--1 level 1 candidate"_s};
}

void TestObjects::gathersOnlyLinesThatAreThere()
{
    using Ranges = QList<std::pair<int, int>>;
    QFETCH(const Ranges, ranges);
    QStringList lines{u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s};
    QList<Converter::STBlock> records;
    for (const auto &[first, last] : ranges) {
        Converter::STBlock record;
        record.firstLine = first;
        record.lastLine = last;
        record.extraNumber = 1;
        record.replace = records.isEmpty();
        records.append(record);
    }
    Converter converter{QString()};
    converter.gatherScatteredParts(lines, records);
    QTEST(lines.join(QString()), "gathered");
    QTEST(toTexts(records), "objects");
}

void TestObjects::readsTheShapeReference_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QString>("shapeFile");
    QTest::addColumn<QString>("initText");
    QTest::addColumn<QString>("imageObject");
    QTest::addColumn<bool>("candidate");

    const QString name = u"OBJ:pump"_s;
    QTest::newRow("as it stands") << QStringList{library} << u"pump.plb"_s << u"p101"_s << name << true;
    QTest::newRow("an old suffix") << QStringList{u"LIB;valve.lib;1;p;OBJ:pump"_s} << u"valve.plb"_s << u"p"_s
                                   << name << true;
    QTest::newRow("an old suffix anywhere")
        << QStringList{u"LIB;a.library.lib;1;p;OBJ:pump"_s} << u"a.plbrary.plb"_s << u"p"_s << name << true;
    QTest::newRow("an old suffix in upper case")
        << QStringList{u"LIB;Valve.LIB;1;p;OBJ:pump"_s} << u"Valve.LIB"_s << u"p"_s << name << true;
    QTest::newRow("no prefix") << QStringList{u"LIB;valve.plb;1;;OBJ:pump"_s} << u"valve.plb"_s << u""_s
                               << name << false;
    QTest::newRow("a blank as prefix")
        << QStringList{u"LIB;valve.plb;1; ;OBJ:pump"_s} << u"valve.plb"_s << u" "_s << name << true;
    QTest::newRow("the last line decides") << QStringList{library, u"LIB;tank.plb;1;t;OBJ:tank"_s}
                                           << u"tank.plb"_s << u"t"_s << u"OBJ:tank"_s << true;
    QTest::newRow("the last line decides against it") << QStringList{library, u"LIB;tank.plb;1;;OBJ:tank"_s}
                                                      << u"tank.plb"_s << u""_s << u"OBJ:tank"_s << false;
    QTest::newRow("the last line decides for it")
        << QStringList{u"LIB;tank.plb;1;;OBJ:tank"_s, library} << u"pump.plb"_s << u"p101"_s << name << true;
    QTest::newRow("a longer tag") << QStringList{u"LIBX;pump.plb;1;p101;OBJ:pump"_s} << u"pump.plb"_s
                                  << u"p101"_s << name << true;
    QTest::newRow("too short") << QStringList{u"LIB;pump.plb"_s} << u"pump.plb"_s << u""_s << u""_s << false;
    QTest::newRow("no library line") << QStringList{id, psdv(1)} << u""_s << u""_s << u""_s << true;
    QTest::newRow("a tag in lower case")
        << QStringList{u"lib;pump.plb;1;p;o"_s} << u""_s << u""_s << u""_s << true;
}

void TestObjects::readsTheShapeReference()
{
    QFETCH(const QStringList, lines);
    const Converter::STBlock object = readReferences(lines);
    QTEST(object.shapeFile, "shapeFile");
    QTEST(object.initText, "initText");
    QTEST(object.imageObject, "imageObject");
    QTEST(object.replace, "candidate");
}

void TestObjects::leavesOtherRecordsAlone()
{
    const QStringList lines{id, library, rectangle(u"1;2;3;4"_s)};
    Converter converter{QString()};
    Converter::STBlock plain;
    Converter::clearBlock(plain);
    plain.firstLine = 0;
    plain.lastLine = 2;
    Converter::STBlock empty = plain;
    empty.replace = true;
    empty.firstLine = 3;
    QList<Converter::STBlock> objects{plain, empty};
    converter.readShapeReferences(lines, objects);

    QCOMPARE(toText(objects.at(0)), toText(plain));
    QVERIFY(!objects.at(0).replace);
    QCOMPARE(toText(objects.at(1)), toText(empty));
    QVERIFY(objects.at(1).replace);
}

void TestObjects::readsTheLargestRectangleOutsideOfTexts()
{
    const Converter::STBlock object = readReferences(
        {id, library, rectangle(u"5;5;8;8"_s), rectangle(u"0;0;99;99"_s, u"0"_s), text,
         rectangle(u"0;0;50;50"_s), icon, rectangle(u"10;0;0;5"_s), id, rectangle(u"0;0;8;5"_s)});
    // 16 points, then 54 that were turned round, then 54 again.
    QCOMPARE(toText(object.rect), u"1 0 9 5"_s);
    QCOMPARE(toText(readReferences({id, library, rectangle(u"0;0;99;99"_s, u""_s)}).rect),
             u"99999 99999 0 0"_s);
    QCOMPARE(
        toText(readReferences({id, rectangle(u"0;0;69999;69999"_s), rectangle(u"0;0;29999;29999"_s)}).rect),
        u"0 0 69999 69999"_s);
}

void TestObjects::keepsTheFirstPosition()
{
    const auto position = [](const QStringList &lines) { return readReferences(lines).rect3.topLeft(); };
    QCOMPARE(position({rectangle(u"5;6;8;8"_s), rectangle(u"1;2;99;99"_s)}), QPoint(5, 6));
    QCOMPARE(position({rectangle(u"9;8;1;2"_s), rectangle(u"0;0;99;99"_s)}), QPoint(2, 3));
    // Also of a rectangle that does not count, and of one of a text or an icon.
    QCOMPARE(position({rectangle(u"5;6;8;8"_s, u"0"_s), rectangle(u"1;2;99;99"_s)}), QPoint(5, 6));
    QCOMPARE(position({text, rectangle(u"5;6;8;8"_s), id, rectangle(u"1;2;99;99"_s)}), QPoint(5, 6));
    QCOMPARE(position({icon, rectangle(u"5;6;8;8"_s), rectangle(u"1;2;99;99"_s)}), QPoint(5, 6));
    QCOMPARE(position({id, library}), QPoint(-99999, -99999));
    // Only where both are as cleared, there is no position yet.
    QCOMPARE(position({rectangle(u"-99999;6;8;8"_s), rectangle(u"1;2;99;99"_s)}), QPoint(-99999, 6));
    QCOMPARE(position({rectangle(u"-99999;-99999;8;8"_s), rectangle(u"1;2;99;99"_s)}), QPoint(1, 2));
}

void TestObjects::setsOnlyLeftAndTopOfThePosition()
{
    QCOMPARE(toText(readReferences({rectangle(u"5;6;80;90"_s)}).rect3), u"5 6 0 0"_s);
}

void TestObjects::togglesIconRectanglesAcrossSections()
{
    const QString a = rectangle(u"1;1;4;4"_s);
    const QString b = rectangle(u"2;2;5;5"_s);
    const QString c = rectangle(u"3;3;9;9"_s, u"0"_s);
    QCOMPARE(toText(readReferences({a, id, b, text, c}).rect2), u"0 0 0 0"_s);
    QCOMPARE(toText(readReferences({icon, a, icon, b}).rect2), u"1 1 4 4"_s);
    const Converter::STBlock object = readReferences({icon, a, id, b, icon, b, text, b, icon, c});
    QCOMPARE(toText(object.rect2), u"3 3 9 9"_s);
    QVERIFY(object.iconToggle);
}

void TestObjects::readsEachObjectForItself()
{
    const QStringList lines{icon, library, rectangle(u"0;0;99;99"_s), id, rectangle(u"1;1;4;4"_s)};
    Converter::STBlock first;
    Converter::clearBlock(first);
    first.replace = true;
    first.firstLine = 0;
    first.lastLine = 2;
    Converter::STBlock second = first;
    second.firstLine = 4;
    second.lastLine = 4;
    QList<Converter::STBlock> objects{first, second};
    Converter converter{QString()};
    converter.readShapeReferences(lines, objects);

    QCOMPARE(toText(objects.at(0).rect), u"0 0 99 99"_s);
    // Neither the largest area nor the section goes on into the next object.
    QCOMPARE(toText(objects.at(1).rect), u"1 1 4 4"_s);
    QCOMPARE(toText(objects.at(1).rect2), u"0 0 0 0"_s);
    QCOMPARE(objects.at(1).rect3.topLeft(), QPoint(1, 1));
    QCOMPARE(objects.at(1).imageObject, u""_s);
}

void TestObjects::readsNothingBehindTheFieldsOfALine()
{
    for (const QString &line :
         {u""_s, u";"_s, u"ID;"_s, u"LIB"_s, u"LIB;"_s, u"PSDV"_s, u"PSDV;1"_s, u"PNT;"_s}) {
        const Converter::STBlock object = readReferences({icon, line});
        QCOMPARE(toText(object.rect), u"99999 99999 0 0"_s);
    }
}

void TestObjects::keepsAnObjectWhoseShapeCannotBeUsed_data()
{
    QTest::addColumn<QString>("shapeFile");
    QTest::addColumn<QString>("error");
    QTest::addColumn<QString>("logged");

    QTest::newRow("not opened") << u"pump.plb"_s << u"Could not open Shape File"_s
                                << u"error: Could not open Shape File pump.plb"_s;
    QTest::newRow("a line's complaint")
        << u"/p/mac/pump.plb"_s << u"Shape File [line 7]: LIB... not enough parameters (must be >= 4)"_s
        << u"error: Shape File /p/mac/pump.plb [line 7]: LIB... not enough parameters (must be >= 4)"_s;
    QTest::newRow("a missing icon") << u"a.bmp"_s << u"Ikon a.bmp does not exist"_s
                                    << u"error: Ikon a.bmp does not exist"_s;
    QTest::newRow("other letter case") << u"pump.plb"_s << u"shape file"_s << u"error: shape file"_s;
    QTest::newRow("a place holder in the name")
        << u"%1.plb"_s << u"Could not open Shape File"_s << u"error: Could not open Shape File %1.plb"_s;
}

void TestObjects::keepsAnObjectWhoseShapeCannotBeUsed()
{
    QFETCH(const QString, shapeFile);
    QFETCH(const QString, error);
    QFETCH(const QString, logged);

    Converter converter{QString()};
    Converter::STBlock object;
    object.firstLine = 1;
    object.lastLine = 3;
    object.replace = true;
    QStringList failed{u"before.plb"_s};
    QBuffer output;
    QVERIFY(output.open(QIODevice::WriteOnly));
    const RunRecorder recorder(converter);
    const LogRecorder log;
    converter.reportShapeFileError(output, object, {u"a"_s, id, u""_s, psdv(1), u"e"_s}, shapeFile, error,
                                   failed);

    QCOMPARE(object.status, 2);
    QCOMPARE(object.error, error);
    QVERIFY(!object.replace);
    QCOMPARE(failed, (QStringList{u"before.plb"_s, shapeFile}));
    QCOMPARE(log.entries, QStringList{logged});
    QVERIFY2(log.lines.value(0).contains("tools/Vantrel/Converter"_L1), qUtf8Printable(log.lines.value(0)));
    QCOMPARE(recorder.events, QStringList{u"report ERROR"_s});
    QCOMPARE(toText(recorder.reports.constFirst()), toText(object));
    QVERIFY(!recorder.reports.constFirst().replace);
    QCOMPARE(output.data(), (id + "\n\n"_L1 + psdv(1) + u'\n').toLatin1());
}

void TestObjects::listsAFailedShapeOnce()
{
    Converter converter{QString()};
    const RunRecorder recorder(converter);
    Converter::STBlock object;
    QStringList failed;
    QBuffer output;
    QVERIFY(output.open(QIODevice::WriteOnly));
    for (const QString &name : {u"b.plb"_s, u"a.plb"_s, u"b.plb"_s, u"B.plb"_s})
        converter.reportShapeFileError(output, object, {u"line"_s}, name, u"error"_s, failed);
    QCOMPARE(failed, (QStringList{u"b.plb"_s, u"a.plb"_s, u"B.plb"_s}));
    QCOMPARE(recorder.reports.size(), 4);
    QCOMPARE(output.data(), "line\nline\nline\nline\n"_ba);
}

void TestObjects::takesItsTextFromTheListThatItFills()
{
    Converter converter{QString()};
    const RunRecorder recorder(converter);
    Converter::STBlock object;
    QStringList failed{u"an error of many words"_s};
    failed.squeeze();
    QBuffer output;
    QVERIFY(output.open(QIODevice::WriteOnly));
    const LogRecorder log;
    converter.reportShapeFileError(output, object, {u"line"_s}, u"a.plb"_s, failed.constFirst(), failed);
    QCOMPARE(log.entries, QStringList{u"error: an error of many words"_s});
    QCOMPARE(failed.size(), 2);
}

void TestObjects::logsThenReportsThenWrites()
{
    Converter converter{QString()};
    Converter::STBlock object;
    QStringList failed;
    QBuffer output;
    QVERIFY(output.open(QIODevice::WriteOnly));
    const LogRecorder log;
    int reports = 0;
    connect(&converter, &Converter::sigConvertInfo, this, [&] {
        ++reports;
        QCOMPARE(log.entries.size(), 1);
        QCOMPARE(failed.size(), 1);
        QCOMPARE(output.data(), QByteArray());
    });
    converter.reportShapeFileError(output, object, {u"line"_s}, u"a.plb"_s, u"error"_s, failed);
    QCOMPARE(reports, 1);
    QCOMPARE(output.data(), "line\n"_ba);
}

void TestObjects::writesNothingForAnEmptyRange()
{
    Converter converter{QString()};
    Converter::STBlock object;
    object.firstLine = 1;
    object.lastLine = 0;
    QStringList failed;
    QBuffer output;
    QVERIFY(output.open(QIODevice::WriteOnly));
    converter.reportShapeFileError(output, object, {u"a"_s, u"b"_s}, u"a.plb"_s, u"error"_s, failed);
    QCOMPARE(output.data(), QByteArray());
}

void TestObjects::writesLatin1()
{
    Converter converter{QString()};
    Converter::STBlock object;
    QStringList failed;
    QBuffer output;
    QVERIFY(output.open(QIODevice::WriteOnly));
    converter.reportShapeFileError(output, object, {u"\u00fc\r\u0085;\u00ff"_s}, u"a.plb"_s, u"error"_s,
                                   failed);
    QCOMPARE(output.data(), "\xfc\r\x85;\xff\n"_ba);
}

void TestObjects::leavesAllElseInTheRecord()
{
    Converter converter{QString()};
    const QStringList lines{id, library, rectangle(u"1;2;30;40"_s)};
    Converter::STBlock object = readReferences(lines);
    object.shapeObject = u"OBJ:new"_s;
    const Converter::STBlock before = object;
    QStringList failed;
    QBuffer output;
    QVERIFY(output.open(QIODevice::WriteOnly));
    converter.reportShapeFileError(output, object, lines, u"a.bmp"_s, u"Ikon a.bmp does not exist"_s, failed);

    object.status = before.status;
    object.error = before.error;
    QCOMPARE(toText(object), toText(before));
}

VANTREL_TEST(QCoreApplication, TestObjects)
#include "tst_objects.moc"
