// Moving a shape's lines to the place of the object that they replace.
#include "Converter.h"
#include "TestSuite.h"

#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

Converter::STBlock blockAt(int x1, int y1, int x2, int y2)
{
    Converter::STBlock block;
    block.rect = QRect(QPoint(x1, y1), QPoint(x2, y2));
    return block;
}

QString place(const QString &line, const Converter::STBlock &target, const Converter::STBlock &shape)
{
    Converter converter{QString()};
    QStringList lines{line};
    converter.placeShapeLines(lines, target, shape);
    return lines.join(u'\n');
}

} // namespace

class TestPlacement : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void movesPointsByTheCorner_data();
    void movesPointsByTheCorner();
    void leavesLinesAlone_data();
    void leavesLinesAlone();
    void movesRectanglesByTheCentre_data();
    void movesRectanglesByTheCentre();
    void rebuildsARectangleLineFromItsFixedFields_data();
    void rebuildsARectangleLineFromItsFixedFields();
    void leavesShortRectangleLinesAlone_data();
    void leavesShortRectangleLinesAlone();
    void countsTheExtraTextAmongTheFieldsOfAShortLine_data();
    void countsTheExtraTextAmongTheFieldsOfAShortLine();
    void centresOnAClearedRecord();
    void wrapsAroundAtTheEndsOfTheRange();
    void keepsTheOrderOfAllLines();
    void placesThenRebases();
};

void TestPlacement::movesPointsByTheCorner_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("moved");

    // By 100 across and 50 down.
    QTest::newRow("two points") << u"PNT;2;0;0;0;49;49"_s << u"PNT;2;0;100;50;149;99"_s;
    QTest::newRow("one point") << u"PNT;1;7;-100;-50"_s << u"PNT;1;7;0;0"_s;
    QTest::newRow("numbers are spelt anew") << u"PNT; +1 ;x; 5 ;007"_s << u"PNT; +1 ;x;105;57"_s;
    QTest::newRow("no numbers") << u"PNT;1;0;a;"_s << u"PNT;1;0;100;50"_s;
    QTest::newRow("a separator at the end") << u"PNT;1;0;5;6;"_s << u"PNT;1;0;5;6;"_s;
    QTest::newRow("too many points") << u"PNT;1;0;5;6;7;8"_s << u"PNT;1;0;5;6;7;8"_s;
    QTest::newRow("too few points") << u"PNT;2;0;5;6"_s << u"PNT;2;0;5;6"_s;
    QTest::newRow("half a point") << u"PNT;1;0;5"_s << u"PNT;1;0;5"_s;
    QTest::newRow("no points") << u"PNT;0;0"_s << u"PNT;0;0"_s;
    QTest::newRow("a count that is no number") << u"PNT;x;0"_s << u"PNT;x;0"_s;
    QTest::newRow("nothing") << u"PNT;"_s << u"PNT;"_s;
    QTest::newRow("a negative count") << u"PNT;-1"_s << u"PNT;-1"_s;
    QTest::newRow("a longer tag") << u"PNTX;1;0;5;6"_s << u"PNTX;1;0;5;6"_s;
    QTest::newRow("a tag in lower case") << u"pnt;1;0;5;6"_s << u"pnt;1;0;5;6"_s;
}

void TestPlacement::movesPointsByTheCorner()
{
    QFETCH(const QString, line);
    QTEST(place(line, blockAt(100, 50, 199, 149), blockAt(0, 0, 49, 49)), "moved");
}

void TestPlacement::leavesLinesAlone_data()
{
    QTest::addColumn<QString>("line");
    for (const QString &line :
         {u""_s, u"ID;1;Icon"_s, u"LIB;a;b;c;d"_s, u"IX1;a;1;2;3;4;5"_s, u"DIV;1;2;a.bmp"_s,
          u"  PNT;1;0;5;6"_s, u"psdv;1;2;3;4;5;6;7;8;9;10;11;12"_s, u"free text"_s})
        QTest::newRow(qPrintable("line '"_L1 + line + '\''_L1)) << line;
}

void TestPlacement::leavesLinesAlone()
{
    QFETCH(const QString, line);
    QCOMPARE(place(line, blockAt(100, 50, 199, 149), blockAt(0, 0, 49, 49)), line);
}

void TestPlacement::movesRectanglesByTheCentre_data()
{
    QTest::addColumn<QString>("corners");
    QTest::addColumn<QRect>("target");
    QTest::addColumn<QRect>("shape");
    QTest::addColumn<QString>("moved");

    const auto rect = [](int x1, int y1, int x2, int y2) { return QRect(QPoint(x1, y1), QPoint(x2, y2)); };
    const QRect shape = rect(0, 0, 49, 49);
    QTest::newRow("onto the centre") << u"0;0;49;49"_s << rect(100, 50, 199, 149) << shape
                                     << u"125;75;174;124"_s;
    QTest::newRow("a part of the shape")
        << u"10;20;11;22"_s << rect(100, 50, 199, 149) << shape << u"135;95;136;97"_s;
    QTest::newRow("odd extents") << u"0;0;2;4"_s << rect(10, 10, 14, 16) << rect(0, 0, 2, 4)
                                 << u"11;11;13;15"_s;
    // The centre moves by -35, -35: x stops at 0 and keeps the width, y does not stop.
    QTest::newRow("left of the screen")
        << u"25;25;74;74"_s << rect(0, 0, 29, 29) << rect(0, 0, 99, 99) << u"0;-10;49;39"_s;
    QTest::newRow("just on the edge")
        << u"35;35;40;40"_s << rect(0, 0, 29, 29) << rect(0, 0, 99, 99) << u"0;0;5;5"_s;
    // Width and height are those of the line, also negative ones: 9 - 20 and 5 - 8.
    QTest::newRow("corners turned round")
        << u"20;8;9;5"_s << rect(0, 0, 9, 9) << rect(0, 0, 9, 9) << u"20;8;9;5"_s;
    QTest::newRow("turned round and stopped")
        << u"-5;8;-16;5"_s << rect(0, 0, 9, 9) << rect(0, 0, 9, 9) << u"0;8;-11;5"_s;
    QTest::newRow("no numbers") << u"a;; 7 ;+8"_s << rect(100, 50, 199, 149) << shape << u"125;75;132;83"_s;
    // -99 / 2 is -49: a rectangle that is no rectangle has a centre too.
    QTest::newRow("a target turned round")
        << u"0;0;0;0"_s << rect(100, 100, 0, 0) << rect(0, 0, 0, 0) << u"51;51;51;51"_s;
}

void TestPlacement::movesRectanglesByTheCentre()
{
    QFETCH(const QString, corners);
    QFETCH(const QRect, target);
    QFETCH(const QRect, shape);
    QFETCH(const QString, moved);

    Converter::STBlock targetBlock;
    targetBlock.rect = target;
    targetBlock.extraNumber = 3;
    Converter::STBlock shapeBlock;
    shapeBlock.rect = shape;
    QCOMPARE(place(u"PSDV;%1;f5;1;f7;f8;f9;f10;99;f12"_s.arg(corners), targetBlock, shapeBlock),
             u"PSDV;%1;f5;1;f7;f8;f9;f10;3;f12"_s.arg(moved));
}

void TestPlacement::rebuildsARectangleLineFromItsFixedFields_data()
{
    QTest::addColumn<QString>("more");
    QTest::addColumn<QString>("extraText");
    QTest::addColumn<QString>("rebuilt");

    // Fields 11 and 12, and what follows them.
    QTest::newRow("13 fields, no extra text") << u"99;z"_s << u""_s << u"-7;z"_s;
    QTest::newRow("13 fields, extra text") << u"99;z"_s << u"note"_s << u"-7;z;note"_s;
    QTest::newRow("14 fields, no extra text") << u"99;z;drop"_s << u""_s << u"-7;z"_s;
    QTest::newRow("15 fields, no extra text") << u"99;z;drop;drop"_s << u""_s << u"-7;z"_s;
    QTest::newRow("15 fields, extra text") << u"99;z;drop;drop"_s << u"note"_s << u"-7;z;note"_s;
    QTest::newRow("extra text of several fields") << u"99;z"_s << u"a;;b;"_s << u"-7;z;a;;b;"_s;
    QTest::newRow("field 12 empty") << u"99;"_s << u""_s << u"-7;"_s;
    QTest::newRow("field 12 empty, extra text") << u"99;"_s << u"note"_s << u"-7;;note"_s;
}

void TestPlacement::rebuildsARectangleLineFromItsFixedFields()
{
    QFETCH(const QString, more);
    QFETCH(const QString, extraText);
    QFETCH(const QString, rebuilt);

    Converter::STBlock target = blockAt(0, 0, 9, 9);
    target.extraNumber = -7;
    target.extraText = extraText;
    QCOMPARE(place("PSDV; 1;+2;03;4;a;b;c;;d;e;"_L1 + more, target, blockAt(0, 0, 9, 9)),
             "PSDV;1;2;3;4;a;b;c;;d;e;"_L1 + rebuilt);
}

void TestPlacement::leavesShortRectangleLinesAlone_data()
{
    QTest::addColumn<QString>("line");
    QTest::newRow("tag alone") << u"PSDV"_s;
    QTest::newRow("no fields") << u"PSDV;"_s;
    QTest::newRow("two fields") << u"PSDV;1;2"_s;
    QTest::newRow("eleven fields") << u"PSDV;1;2;3;4;5;6;7;8;9;10"_s;
}

void TestPlacement::leavesShortRectangleLinesAlone()
{
    QFETCH(const QString, line);
    Converter::STBlock target = blockAt(100, 50, 199, 149);
    target.extraNumber = 1;
    QCOMPARE(place(line, target, blockAt(0, 0, 49, 49)), line);
}

void TestPlacement::countsTheExtraTextAmongTheFieldsOfAShortLine_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("placed");
    QTest::newRow("still too short") << u"PSDV;1;2;3;4"_s << u"PSDV;1;2;3;4;x;y;z"_s;
    QTest::newRow("nothing but the tag") << u"PSDV"_s << u"PSDV;x;y;z"_s;
    QTest::newRow("just too short") << u"PSDV;1;2;3;4;5;6;7"_s << u"PSDV;1;2;3;4;5;6;7;x;y;z"_s;
    QTest::newRow("long enough with it")
        << u"PSDV;10;20;30;40;5;6;7;8"_s << u"PSDV;135;95;155;115;5;6;7;8;x;y;1"_s;
    QTest::newRow("its first field becomes the level")
        << u"PSDV;10;20;30;40;5;6;7;8;9;10"_s << u"PSDV;135;95;155;115;5;6;7;8;9;10;1;y;z"_s;
}

void TestPlacement::countsTheExtraTextAmongTheFieldsOfAShortLine()
{
    QFETCH(const QString, line);
    Converter::STBlock target = blockAt(100, 50, 199, 149);
    target.extraNumber = 1;
    target.extraText = u"x;y;z"_s;
    QTEST(place(line, target, blockAt(0, 0, 49, 49)), "placed");
}

void TestPlacement::centresOnAClearedRecord()
{
    // An object none of whose rectangles counts has the rectangle of a cleared record.
    Converter::STBlock target;
    Converter::clearBlock(target);
    const Converter::STBlock shape = blockAt(0, 0, 9, 9);
    QCOMPARE(place(u"PSDV;0;0;9;9;5;6;7;8;9;10;11;12"_s, target, shape),
             u"PSDV;49995;49995;50004;50004;5;6;7;8;9;10;-1;12"_s);
    QCOMPARE(place(u"PNT;1;0;0;0"_s, target, shape), u"PNT;1;0;99999;99999"_s);

    // A fresh record's is another one: (0, 0) to (-1, -1).
    QCOMPARE(place(u"PSDV;9;9;9;9;5;6;7;8;9;10;11;12"_s, Converter::STBlock(), shape),
             u"PSDV;4;4;4;4;5;6;7;8;9;10;0;12"_s);
}

void TestPlacement::wrapsAroundAtTheEndsOfTheRange()
{
    const Converter::STBlock one = blockAt(1, 1, 1, 1);
    const Converter::STBlock zero = blockAt(0, 0, 0, 0);
    QCOMPARE(place(u"PNT;1;0;2147483647;2147483646"_s, one, zero), u"PNT;1;0;-2147483648;2147483647"_s);
    // A number that does not fit counts as 0.
    QCOMPARE(place(u"PNT;1;0;2147483648;-2147483649"_s, one, zero), u"PNT;1;0;1;1"_s);
    // x wraps to the least number and is stopped at 0; y wraps.
    QCOMPARE(place(u"PSDV;2147483647;2147483647;2147483647;2147483647;5;6;7;8;9;10;11;12"_s, one, zero),
             u"PSDV;0;-2147483648;0;-2147483648;5;6;7;8;9;10;0;12"_s);
    // 2147483647 - (-2147483648) is -1 in 32 bits.
    QCOMPARE(place(u"PSDV;-2147483648;0;2147483647;0;5;6;7;8;9;10;11;12"_s, zero, zero),
             u"PSDV;0;0;-1;0;5;6;7;8;9;10;0;12"_s);
    // Displacements wrap too: 1 - (-2147483648) is -2147483647.
    const int least = -2147483647 - 1;
    QCOMPARE(place(u"PNT;1;0;0;0"_s, one, blockAt(least, least, least, least)),
             u"PNT;1;0;-2147483647;-2147483647"_s);
}

void TestPlacement::keepsTheOrderOfAllLines()
{
    Converter converter{QString()};
    QStringList lines{u"ID;1;Icon"_s, u""_s, u"PNT;1;0;1;1"_s, u"free; text"_s, u"PNT;1;0;2;2"_s};
    converter.placeShapeLines(lines, blockAt(5, 6, 7, 8), blockAt(0, 0, 2, 2));
    QCOMPARE(lines,
             (QStringList{u"ID;1;Icon"_s, u""_s, u"PNT;1;0;6;7"_s, u"free; text"_s, u"PNT;1;0;7;8"_s}));
    lines.clear();
    converter.placeShapeLines(lines, blockAt(5, 6, 7, 8), blockAt(0, 0, 2, 2));
    QCOMPARE(lines, QStringList());
}

void TestPlacement::placesThenRebases()
{
    Converter converter{QString()};
    QStringList lines{u"LIB;pump.plb;1;std;OBJ:new"_s, u"PSDV;0;0;49;49;0;1;0;0;0;0;0;z"_s,
                      u"IX1;std.level;;;10;std:5"_s};
    Converter::STBlock target = blockAt(100, 50, 199, 149);
    target.extraNumber = 1;
    converter.placeShapeLines(lines, target, blockAt(0, 0, 49, 49));
    converter.rebaseShapeLines(lines, u"std"_s, u"p101"_s, 125, 75);
    QCOMPARE(lines, (QStringList{u"LIB;pump.plb;1;p101;OBJ:new"_s, u"PSDV;125;75;174;124;0;1;0;0;0;0;1;z"_s,
                                 u"IX1;p101.level;;;135;125"_s}));
}

VANTREL_TEST(QCoreApplication, TestPlacement)
#include "tst_placement.moc"
