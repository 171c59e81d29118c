// The record grammar as the checks and the rewriting apply it, row by row.
#include "Converter.h"
#include "RecordGrammar.h"
#include "TestSuite.h"

#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

/// A line of `count` fields.
QString lineOf(const QString &tag, int count)
{
    return tag + u";x"_s.repeated(count - 1);
}

QString tooFew(const QString &kind, int line, const QString &tag, int required)
{
    return u"%1 File [line %2]: %3... not enough parameters (must be >= %4)"_s.arg(kind)
        .arg(line)
        .arg(tag)
        .arg(required);
}

QString tooMany(const QString &kind, int line, int required)
{
    return u"%1 File [line %2]: PNT... not enough parameters (must be == %3)"_s.arg(kind).arg(line).arg(
        required);
}

/// Line numbers in the first line and nothing in front of a shape.
class PlainConverter : public QObject
{
public:
    PlainConverter() { converter.shapeLineOffset = 0; }
    Converter converter{QString()};
};

} // namespace

class TestRecordGrammar : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void holdsShapeLinesToTheirFields_data();
    void holdsShapeLinesToTheirFields();
    void holdsImageLinesToTheirFields_data();
    void holdsImageLinesToTheirFields();
    void passesTheseShapeLines_data();
    void passesTheseShapeLines();
    void refusesTheseShapeLines_data();
    void refusesTheseShapeLines();
    void passesTooManyPointsWithTheComplaintLeft_data();
    void passesTooManyPointsWithTheComplaintLeft();
    void emptiesTheComplaintAtTheNextCheckedLine();
    void passesAnEmptyList();
    void stopsAtTheFirstFailingLine();
    void namesTheLineBehindTheTrueOneForTooFewPoints();
    void addsTheOffsetToShapeLines();
    void survivesCountsAtTheEndsOfTheRange();
    void leavesImageLinesBehindTheFirstFourRulesUnchecked_data();
    void leavesImageLinesBehindTheFirstFourRulesUnchecked();
    void takesTheFirstRuleThatMatches_data();
    void takesTheFirstRuleThatMatches();
    void keepsRulesThatNoLineReaches();
    void keepsTheOrderOfTheRewriting();
    void rebasesTheFieldsOfEachTag_data();
    void rebasesTheFieldsOfEachTag();
    void rebasesTheseLines_data();
    void rebasesTheseLines();
    void keepsTheNumberAndOrderOfLines();
    void takesItsPrefixFromTheListThatItChanges();
};

void TestRecordGrammar::holdsShapeLinesToTheirFields_data()
{
    QTest::addColumn<QString>("tag");
    QTest::addColumn<QString>("messageTag");
    QTest::addColumn<int>("required");

    QTest::newRow("ID;") << u"ID"_s << u""_s << 3;
    QTest::newRow("PSDV") << u"PSDV"_s << u"PSDV"_s << 13;
    QTest::newRow("LIB") << u"LIB"_s << u"LIB"_s << 4;
    QTest::newRow("IVG") << u"IVG"_s << u"IVG"_s << 2;
    QTest::newRow("IBG") << u"IBG"_s << u"IBG"_s << 2;
    QTest::newRow("ITC") << u"ITC"_s << u"ITC"_s << 2;
    QTest::newRow("IVGN") << u"IVGN"_s << u"IVG"_s << 2;
    QTest::newRow("IBGN") << u"IBGN"_s << u"IBG"_s << 2;
    QTest::newRow("ITCN") << u"ITCN"_s << u"ITC"_s << 2;
    QTest::newRow("ITA, named ITCN") << u"ITA"_s << u"ITCN"_s << 2;
    QTest::newRow("IDMS") << u"IDMS"_s << u"IDMS"_s << 2;
    QTest::newRow("ITX1") << u"ITX1"_s << u"ITX1"_s << 4;
    QTest::newRow("ITX2") << u"ITX2"_s << u"ITX2"_s << 7;
    QTest::newRow("ITXN") << u"ITXN"_s << u"ITXN"_s << 3;
    QTest::newRow("IIK1") << u"IIK1"_s << u"IIK1"_s << 2;
    QTest::newRow("IIK2") << u"IIK2"_s << u"IIK2"_s << 3;
    QTest::newRow("IIKN") << u"IIKN"_s << u"IIKN"_s << 3;
    QTest::newRow("ISB") << u"ISB"_s << u"ISB"_s << 2;
    QTest::newRow("ISA") << u"ISA"_s << u"ISA"_s << 21;
    QTest::newRow("IX1") << u"IX1"_s << u"IX1"_s << 6;
    QTest::newRow("IX2") << u"IX2"_s << u"IX2"_s << 6;
    QTest::newRow("IY1, named IX2") << u"IY1"_s << u"IX2"_s << 6;
    QTest::newRow("IY2") << u"IY2"_s << u"IY2"_s << 6;
    QTest::newRow("IBW") << u"IBW"_s << u"IBW"_s << 8;
}

void TestRecordGrammar::holdsShapeLinesToTheirFields()
{
    QFETCH(const QString, tag);
    QFETCH(const QString, messageTag);
    QFETCH(const int, required);

    PlainConverter plain;
    QString error = u"from before"_s;
    QVERIFY(plain.converter.checkShapeLines({lineOf(tag, required)}, error));
    QCOMPARE(error, u""_s);
    QVERIFY(plain.converter.checkShapeLines({lineOf(tag, required + 1)}, error));
    QCOMPARE(error, u""_s);

    QVERIFY(!plain.converter.checkShapeLines({u"first"_s, lineOf(tag, required - 1)}, error));
    QCOMPARE(error, tooFew(u"Shape"_s, 2, messageTag, required));

    // A separator at the end makes one more field.
    QVERIFY(plain.converter.checkShapeLines({lineOf(tag, required - 1) + u';'}, error));
    QCOMPARE(error, u""_s);
}

void TestRecordGrammar::holdsImageLinesToTheirFields_data()
{
    QTest::addColumn<QString>("tag");
    QTest::addColumn<QString>("messageTag");
    QTest::addColumn<int>("required");

    QTest::newRow("ID;") << u"ID"_s << u""_s << 3;
    QTest::newRow("PSDV") << u"PSDV"_s << u"PSDV"_s << 12;
    QTest::newRow("LIB") << u"LIB"_s << u"LIB"_s << 5;
    QTest::newRow("a tag that begins like LIB") << u"LIBRARY"_s << u"LIB"_s << 5;
    QTest::newRow("a tag that begins like PSDV") << u"PSDVX"_s << u"PSDV"_s << 12;
}

void TestRecordGrammar::holdsImageLinesToTheirFields()
{
    QFETCH(const QString, tag);
    QFETCH(const QString, messageTag);
    QFETCH(const int, required);

    PlainConverter plain;
    QString error = u"from before"_s;
    QVERIFY(plain.converter.checkImageLines({lineOf(tag, required)}, error));
    QCOMPARE(error, u""_s);

    QVERIFY(!plain.converter.checkImageLines({u"first"_s, u""_s, lineOf(tag, required - 1)}, error));
    QCOMPARE(error, tooFew(u"Image"_s, 3, messageTag, required));
}

void TestRecordGrammar::passesTheseShapeLines_data()
{
    QTest::addColumn<QString>("line");

    QTest::newRow("empty line") << u""_s;
    QTest::newRow("unknown tag") << u"XYZ"_s;
    QTest::newRow("tag in lower case") << u"pnt;2;0;1"_s;
    QTest::newRow("rectangle in lower case") << u"psdv"_s;
    QTest::newRow("ID without a separator") << u"ID"_s;
    QTest::newRow("PNT without a separator") << u"PNT"_s;
    QTest::newRow("tag behind a blank") << u" LIB"_s;
    QTest::newRow("DIV") << u"DIV"_s;
    QTest::newRow("ITX3") << u"ITX3"_s;
    QTest::newRow("IIK3") << u"IIK3"_s;
    QTest::newRow("two points") << u"PNT;2;0;10;20;30;40"_s;
    QTest::newRow("no points") << u"PNT;0;0"_s;
    QTest::newRow("a count that is no number") << u"PNT;x;0"_s;
    QTest::newRow("a count with blanks and a sign") << u"PNT; +1 ;0;5;5"_s;
    QTest::newRow("IVGN with two fields") << u"IVGN;a"_s;
    QTest::newRow("two entries") << u"ITXN;2;x;a;b;c;d;e;f"_s;
    QTest::newRow("no entries") << u"ITXN;0;x"_s;
    QTest::newRow("entries that are no number") << u"ITXN;abc;x"_s;
    QTest::newRow("fewer than no entries") << u"ITXN;-5;x"_s;
    QTest::newRow("ISA without its last reference") << lineOf(u"ISA"_s, 21);
}

void TestRecordGrammar::passesTheseShapeLines()
{
    QFETCH(const QString, line);
    PlainConverter plain;
    QString error;
    QVERIFY2(plain.converter.checkShapeLines({line}, error), qUtf8Printable(error));
    QCOMPARE(error, u""_s);
}

void TestRecordGrammar::refusesTheseShapeLines_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("complaint");

    const QString shape = u"Shape"_s;
    // Too few points name the line behind the true one.
    QTest::newRow("one number of four") << u"PNT;2;0;10"_s << tooFew(shape, 2, u"PNT"_s, 4);
    QTest::newRow("three numbers of four") << u"PNT;2;0;10;20;30"_s << tooFew(shape, 2, u"PNT"_s, 4);
    QTest::newRow("no points, no field 2") << u"PNT;0"_s << tooFew(shape, 2, u"PNT"_s, 0);
    QTest::newRow("nothing behind the tag") << u"PNT;"_s << tooFew(shape, 2, u"PNT"_s, 0);
    QTest::newRow("IY1 is named IX2") << u"IY1;a;b"_s << tooFew(shape, 1, u"IX2"_s, 6);
    QTest::newRow("entries without room") << u"ITXN;2;x;a;b"_s << tooFew(shape, 1, u"ITXN"_s, 9);
    QTest::newRow("one field short of its entries")
        << u"ITXN;2;x;a;b;c;d;e"_s << tooFew(shape, 1, u"ITXN"_s, 9);
    QTest::newRow("very many entries") << u"ITXN;1000000;x"_s << tooFew(shape, 1, u"ITXN"_s, 3000003);
    QTest::newRow("too short to count entries") << u"ITXN;7"_s << tooFew(shape, 1, u"ITXN"_s, 3);
}

void TestRecordGrammar::refusesTheseShapeLines()
{
    QFETCH(const QString, line);
    PlainConverter plain;
    QString error;
    QVERIFY(!plain.converter.checkShapeLines({line}, error));
    QTEST(error, "complaint");
}

void TestRecordGrammar::passesTooManyPointsWithTheComplaintLeft_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<int>("required");

    QTest::newRow("separator at the end") << u"PNT;2;0;10;20;30;40;"_s << 4;
    QTest::newRow("one point more") << u"PNT;1;0;1;2;3;4"_s << 2;
    QTest::newRow("points though none are counted") << u"PNT;;;1;2"_s << 0;
    QTest::newRow("fewer than none are counted") << u"PNT;-1;0"_s << -2;
}

void TestRecordGrammar::passesTooManyPointsWithTheComplaintLeft()
{
    QFETCH(const QString, line);
    QFETCH(const int, required);
    PlainConverter plain;
    QString error;
    QVERIFY(plain.converter.checkShapeLines({u"first"_s, line, u"an unchecked line"_s}, error));
    QCOMPARE(error, tooMany(u"Shape"_s, 2, required));
    QVERIFY(plain.converter.checkImageLines({u"first"_s, line, u"an unchecked line"_s}, error));
    QCOMPARE(error, tooMany(u"Image"_s, 2, required));
}

void TestRecordGrammar::emptiesTheComplaintAtTheNextCheckedLine()
{
    PlainConverter plain;
    QString error;
    QVERIFY(plain.converter.checkShapeLines({u"PNT;0;0;1;2"_s, u"ID;1;Icon"_s}, error));
    QCOMPARE(error, u""_s);
}

void TestRecordGrammar::passesAnEmptyList()
{
    PlainConverter plain;
    QString error;
    QVERIFY(plain.converter.checkShapeLines({}, error));
    QVERIFY(plain.converter.checkImageLines({}, error));
}

void TestRecordGrammar::stopsAtTheFirstFailingLine()
{
    PlainConverter plain;
    QString error;
    const QStringList lines{u"ID;1;Icon"_s, u"LIB"_s, u"PSDV;1"_s};
    QVERIFY(!plain.converter.checkShapeLines(lines, error));
    QCOMPARE(error, tooFew(u"Shape"_s, 2, u"LIB"_s, 4));
    QVERIFY(!plain.converter.checkImageLines(lines, error));
    QCOMPARE(error, tooFew(u"Image"_s, 2, u"LIB"_s, 5));
}

void TestRecordGrammar::namesTheLineBehindTheTrueOneForTooFewPoints()
{
    PlainConverter plain;
    QString error;
    // The count of a line with two points is four, its fields less the first three.
    QVERIFY(!plain.converter.checkImageLines({u"a"_s, u"b"_s, u"PNT;2;0;1;2;3"_s}, error));
    QCOMPARE(error, tooFew(u"Image"_s, 4, u"PNT"_s, 4));
    QVERIFY(plain.converter.checkImageLines({u"a"_s, u"b"_s, u"PNT;2;0;1;2;3;4"_s}, error));
    QCOMPARE(error, u""_s);
}

void TestRecordGrammar::addsTheOffsetToShapeLines()
{
    PlainConverter plain;
    plain.converter.shapeLineOffset = 100;
    const QStringList before{u""_s, u""_s, u""_s, u""_s};
    QString error;

    QVERIFY(!plain.converter.checkShapeLines(before + QStringList{u"LIB"_s}, error));
    QCOMPARE(error, tooFew(u"Shape"_s, 105, u"LIB"_s, 4));
    QVERIFY(plain.converter.checkShapeLines(before + QStringList{u"PNT;0;0;1"_s}, error));
    QCOMPARE(error, tooMany(u"Shape"_s, 105, 0));
    QVERIFY(!plain.converter.checkShapeLines(before + QStringList{u"PNT;2;0;1;2"_s}, error));
    QCOMPARE(error, tooFew(u"Shape"_s, 206, u"PNT"_s, 4));

    QVERIFY(!plain.converter.checkImageLines(before + QStringList{u"LIB"_s}, error));
    QCOMPARE(error, tooFew(u"Image"_s, 5, u"LIB"_s, 5));
    QVERIFY(!plain.converter.checkImageLines(before + QStringList{u"PNT;2;0;1;2"_s}, error));
    QCOMPARE(error, tooFew(u"Image"_s, 6, u"PNT"_s, 4));
}

void TestRecordGrammar::survivesCountsAtTheEndsOfTheRange()
{
    PlainConverter plain;
    QString error;
    // Room for what cannot be counted in 32 bits must not be undefined behaviour.
    for (const QString &line :
         {u"ITXN;2147483647;x"_s, u"ITXN;-2147483648;x"_s, u"PNT;2147483647;x"_s, u"PNT;-2147483648;x"_s}) {
        plain.converter.checkShapeLines({line}, error);
        QStringList lines{line};
        plain.converter.placeShapeLines(lines, Converter::STBlock(), Converter::STBlock());
        plain.converter.rebaseShapeLines(lines, u"lib"_s, u"new"_s, 1, 1);
        QCOMPARE(lines, QStringList{line});
    }
}

void TestRecordGrammar::leavesImageLinesBehindTheFirstFourRulesUnchecked_data()
{
    QTest::addColumn<QString>("line");
    const QStringList tags{u"IVG"_s,  u"IBG"_s,  u"ITC"_s,  u"IVGN"_s, u"IBGN"_s, u"ITCN"_s, u"ITA"_s,
                           u"IDMS"_s, u"ITX1"_s, u"ITX2"_s, u"ITXN"_s, u"IIK1"_s, u"IIK2"_s, u"IIKN"_s,
                           u"ISB"_s,  u"ISA"_s,  u"IX1"_s,  u"IX2"_s,  u"IY1"_s,  u"IY2"_s,  u"IBW"_s};
    for (const QString &tag : tags)
        QTest::newRow(qPrintable(tag)) << tag;
    QTest::newRow("an empty line") << u""_s;
    QTest::newRow("an unknown tag") << u"XYZ;"_s;
    QTest::newRow("a tag in lower case") << u"lib"_s;
}

void TestRecordGrammar::leavesImageLinesBehindTheFirstFourRulesUnchecked()
{
    QFETCH(const QString, line);
    PlainConverter plain;
    QString error;
    QVERIFY2(plain.converter.checkImageLines({line}, error), qUtf8Printable(error));
}

void TestRecordGrammar::takesTheFirstRuleThatMatches_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("messageTag");
    QTest::addColumn<int>("required");

    QTest::newRow("IVGN is checked as IVG") << u"IVGN"_s << u"IVG"_s << 2;
    QTest::newRow("IBGN is checked as IBG") << u"IBGN"_s << u"IBG"_s << 2;
    QTest::newRow("ITCN is checked as ITC") << u"ITCN"_s << u"ITC"_s << 2;
    QTest::newRow("a longer tag") << u"ISAAC;1"_s << u"ISA"_s << 21;
    QTest::newRow("IX10 is checked as IX1") << u"IX10;1"_s << u"IX1"_s << 6;
    QTest::newRow("ITX1 in a longer tag") << u"ITX12;1"_s << u"ITX1"_s << 4;
}

void TestRecordGrammar::takesTheFirstRuleThatMatches()
{
    QFETCH(const QString, line);
    QFETCH(const QString, messageTag);
    QFETCH(const int, required);
    PlainConverter plain;
    QString error;
    QVERIFY(!plain.converter.checkShapeLines({line}, error));
    QCOMPARE(error, tooFew(u"Shape"_s, 1, messageTag, required));
}

void TestRecordGrammar::keepsRulesThatNoLineReaches()
{
    const QStringList order{u"ID;"_s,  u"PNT;"_s, u"PSDV"_s, u"LIB"_s,  u"IVG"_s,  u"IBG"_s,  u"ITC"_s,
                            u"IVGN"_s, u"IBGN"_s, u"ITCN"_s, u"ITA"_s,  u"IDMS"_s, u"ITX1"_s, u"ITX2"_s,
                            u"ITXN"_s, u"IIK1"_s, u"IIK2"_s, u"IIKN"_s, u"ISB"_s,  u"ISA"_s,  u"IX1"_s,
                            u"IX2"_s,  u"IY1"_s,  u"IY2"_s,  u"IBW"_s};
    const QStringList unreachable{u"IVGN"_s, u"IBGN"_s, u"ITCN"_s};

    QStringList prefixes;
    for (const RecordGrammar::CheckRule &rule : RecordGrammar::checkRules) {
        const QString prefix = rule.prefix.toString();
        prefixes += prefix;
        const auto *const taken = RecordGrammar::ruleFor(prefix, RecordGrammar::checkRules);
        QCOMPARE(taken != &rule, unreachable.contains(prefix));
        if (unreachable.contains(prefix))
            QCOMPARE(rule.shapeFields, 3);
    }
    QCOMPARE(prefixes, order);

    const auto *const ibgn = RecordGrammar::checkRules.begin() + order.indexOf(u"IBGN"_s);
    QCOMPARE(ibgn->messageTag.toString(), u"ITCN"_s);
}

void TestRecordGrammar::keepsTheOrderOfTheRewriting()
{
    const QStringList order{u"LIB"_s,  u"IVG;"_s, u"IBG;"_s, u"ITC;"_s, u"IVGN"_s, u"IBGN"_s,
                            u"ITCN"_s, u"ITA"_s,  u"IDMS"_s, u"ITX1"_s, u"ITX2"_s, u"ITXN"_s,
                            u"IIK1"_s, u"IIK2"_s, u"IIKN"_s, u"ISB"_s,  u"ISA"_s,  u"IX1"_s,
                            u"IX2"_s,  u"IY1"_s,  u"IY2"_s,  u"IBW"_s};
    QStringList prefixes;
    for (const RecordGrammar::RebaseRule &rule : RecordGrammar::rebaseRules)
        prefixes += rule.prefix.toString();
    QCOMPARE(prefixes, order);
}

void TestRecordGrammar::rebasesTheFieldsOfEachTag_data()
{
    QTest::addColumn<QString>("tag");
    QTest::addColumn<QList<int>>("references");

    QTest::newRow("IVG;") << u"IVG"_s << QList<int>{1};
    QTest::newRow("IBG;") << u"IBG"_s << QList<int>{1};
    QTest::newRow("ITC;") << u"ITC"_s << QList<int>{1};
    QTest::newRow("IVGN") << u"IVGN"_s << QList<int>{2};
    QTest::newRow("IBGN") << u"IBGN"_s << QList<int>{2};
    QTest::newRow("ITCN") << u"ITCN"_s << QList<int>{2};
    QTest::newRow("ITA") << u"ITA"_s << QList<int>{1};
    QTest::newRow("IDMS") << u"IDMS"_s << QList<int>{1};
    QTest::newRow("ITX1") << u"ITX1"_s << QList<int>{1, 2, 3};
    QTest::newRow("ITX2") << u"ITX2"_s << QList<int>{1, 2, 3, 4, 5, 6};
    QTest::newRow("ITXN without a count") << u"ITXN"_s << QList<int>{2};
    QTest::newRow("IIK1") << u"IIK1"_s << QList<int>{1};
    QTest::newRow("IIK2") << u"IIK2"_s << QList<int>{1, 2};
    QTest::newRow("IIKN") << u"IIKN"_s << QList<int>{2};
    QTest::newRow("ISB") << u"ISB"_s << QList<int>{1};
    QTest::newRow("ISA") << u"ISA"_s << QList<int>{1, 2, 4, 6, 8, 14, 20, 29};
    QTest::newRow("IBW") << u"IBW"_s << QList<int>{7};

    QTest::newRow("IVG, longer, no N") << u"IVGX"_s << QList<int>{};
    QTest::newRow("PSDV") << u"PSDV"_s << QList<int>{};
    QTest::newRow("PNT") << u"PNT"_s << QList<int>{};
    QTest::newRow("ID") << u"ID"_s << QList<int>{};
    QTest::newRow("DIV") << u"DIV"_s << QList<int>{};
    QTest::newRow("an unknown tag") << u"XYZ"_s << QList<int>{};
    QTest::newRow("a tag in lower case") << u"ivg"_s << QList<int>{};
}

void TestRecordGrammar::rebasesTheFieldsOfEachTag()
{
    QFETCH(const QString, tag);
    QFETCH(const QList<int>, references);

    QStringList fields{tag};
    QStringList expected{tag};
    for (int field = 1; field <= 32; ++field) {
        fields += u"lib/%1"_s.arg(field);
        expected += (references.contains(field) ? u"new/%1"_s : u"lib/%1"_s).arg(field);
    }

    PlainConverter plain;
    QStringList lines{fields.join(u';')};
    plain.converter.rebaseShapeLines(lines, u"lib"_s, u"new"_s, 100, 200);
    QCOMPARE(lines, QStringList{expected.join(u';')});
}

void TestRecordGrammar::rebasesTheseLines_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("rebased");

    // From "lib" to "new", 5 across and 11 down.
    QTest::newRow("LIB is set") << u"LIB;lib;lib;elsewhere;lib"_s << u"LIB;lib;lib;new;lib"_s;
    QTest::newRow("LIB is set to what it is") << u"LIB;a;b;new;c"_s << u"LIB;a;b;new;c"_s;
    QTest::newRow("LIB is set though System") << u"LIB;a;b;System:c"_s << u"LIB;a;b;new"_s;
    QTest::newRow("LIB without field 3") << u"LIB;a;b"_s << u"LIB;a;b"_s;
    QTest::newRow("IVG with its tag alone") << u"IVG;"_s << u"IVG;"_s;
    QTest::newRow("IVG without a separator") << u"IVG"_s << u"IVG"_s;
    QTest::newRow("IVGN without field 2") << u"IVGN;lib/a"_s << u"IVGN;lib/a"_s;
    QTest::newRow("IBGN without field 2") << u"IBGN;lib/a"_s << u"IBGN;lib/a"_s;
    QTest::newRow("ITCN without field 2") << u"ITCN;lib/a"_s << u"ITCN;lib/a"_s;
    QTest::newRow("a system reference") << u"ITA;System:lib"_s << u"ITA;System:lib"_s;
    QTest::newRow("an empty reference") << u"ITA;;lib"_s << u"ITA;;lib"_s;
    QTest::newRow("a separator at the end") << u"ITA;lib/a;"_s << u"ITA;new/a;"_s;
    QTest::newRow("blanks stay") << u"ITA;lib/ a ; b "_s << u"ITA;new/ a ; b "_s;
    QTest::newRow("ITXN, two entries")
        << u"ITXN;2;lib/t;lib/a;lib/b;lib/c;lib/d;lib/e;lib/f;lib/g;lib/h;lib/i"_s
        << u"ITXN;2;new/t;lib/a;lib/b;new/c;lib/d;lib/e;new/f;lib/g;lib/h;lib/i"_s;
    QTest::newRow("ITXN, no entries")
        << u"ITXN;0;lib/t;lib/a;lib/b;lib/c"_s << u"ITXN;0;new/t;lib/a;lib/b;lib/c"_s;
    QTest::newRow("ITXN, fewer than none")
        << u"ITXN;-1;lib/t;lib/a;lib/b;lib/c"_s << u"ITXN;-1;new/t;lib/a;lib/b;lib/c"_s;
    QTest::newRow("ITXN, more entries than fields")
        << u"ITXN;2147483647;lib/t;lib/a;lib/b;lib/c"_s << u"ITXN;2147483647;new/t;lib/a;lib/b;new/c"_s;
    QTest::newRow("ISA without fields 20 and 29")
        << u"ISA;lib/1;lib/2;lib/3;lib/4"_s << u"ISA;new/1;new/2;lib/3;new/4"_s;
    QTest::newRow("IX1") << u"IX1;lib/a;lib:b;lib;10;20"_s << u"IX1;new/a;new:b;lib;15;25"_s;
    QTest::newRow("IX2") << u"IX2;lib/a;lib:b;lib;10;20"_s << u"IX2;new/a;new:b;lib;15;25"_s;
    QTest::newRow("IY1") << u"IY1;lib/a;lib:b;lib;10;20"_s << u"IY1;new/a;new:b;lib;21;31"_s;
    QTest::newRow("IY2") << u"IY2;lib/a;lib:b;lib;10;20"_s << u"IY2;new/a;new:b;lib;21;31"_s;
    QTest::newRow("axis, empty field 2") << u"IX1;lib/a;;;10;0"_s << u"IX1;new/a;;;15;5"_s;
    QTest::newRow("axis, both references")
        << u"IX1;lib;lib:b;lib/c:d;1;2"_s << u"IX1;new;new:b;new/c:d;6;7"_s;
    QTest::newRow("axis, references for numbers") << u"IX1;lib;;;lib:4;System:5"_s << u"IX1;new;;;5;5"_s;
    QTest::newRow("axis, a system reference")
        << u"IY2;lib;System:lib:b;;1;2"_s << u"IY2;new;System:lib:b;;12;13"_s;
    QTest::newRow("axis, numbers respelt") << u"IX1;a;;; +7;007;008"_s << u"IX1;a;;;12;12;008"_s;
    QTest::newRow("axis, numbers missing") << u"IX1;lib/a;b:c"_s << u"IX1;new/a;b:c"_s;
    QTest::newRow("IBW without field 7") << u"IBW;lib;lib"_s << u"IBW;lib;lib"_s;
    QTest::newRow("empty line") << u""_s << u""_s;
}

void TestRecordGrammar::rebasesTheseLines()
{
    QFETCH(const QString, line);
    PlainConverter plain;
    QStringList lines{line};
    plain.converter.rebaseShapeLines(lines, u"lib"_s, u"new"_s, 5, 11);
    QCOMPARE(lines.size(), 1);
    QTEST(lines.constFirst(), "rebased");
}

void TestRecordGrammar::keepsTheNumberAndOrderOfLines()
{
    PlainConverter plain;
    QStringList lines{u"ID;1;Icon"_s, u""_s, u"ITA;lib"_s, u"free text"_s, u"IVG;lib/a"_s};
    plain.converter.rebaseShapeLines(lines, u"lib"_s, u"new"_s, 0, 0);
    QCOMPARE(lines, (QStringList{u"ID;1;Icon"_s, u""_s, u"ITA;new"_s, u"free text"_s, u"IVG;new/a"_s}));

    // An empty prefix is the beginning of every reference but those of the system.
    lines = {u"ITA;a"_s, u"IVG;"_s, u"ITX1;System:a;System;"_s, u"IX1;:;System:;:;1;2"_s};
    plain.converter.rebaseShapeLines(lines, u""_s, u"p."_s, 0, 0);
    QCOMPARE(lines, (QStringList{u"ITA;p.a"_s, u"IVG;p."_s, u"ITX1;System:a;p.System;p."_s,
                                 u"IX1;p.:;System:;p.:;1;2"_s}));
}

void TestRecordGrammar::takesItsPrefixFromTheListThatItChanges()
{
    PlainConverter plain;
    QStringList lines{QString::fromLatin1("ITA;a path that is not so short"_ba), u"IVG;a/b"_s, u"IBG;a"_s};
    const QString prefix = QString::fromLatin1(lines.constFirst().toLatin1());
    plain.converter.rebaseShapeLines(lines, u"a"_s, lines.constFirst(), 0, 0);
    QCOMPARE(lines.at(1), "IVG;"_L1 + prefix + "/b"_L1);
    QCOMPARE(lines.at(2), "IBG;"_L1 + prefix);
}

VANTREL_TEST(QCoreApplication, TestRecordGrammar)
#include "tst_recordgrammar.moc"
