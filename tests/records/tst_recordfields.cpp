// Fields of a record line: cutting, counting, numbers, joining and the small rewrites.
#include "RecordFields.h"
#include "TestSuite.h"
#include "TextBuffer.h"

#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

QStringList cut(const QString &line)
{
    const LineFields<QStringView> fields(line);
    QStringList texts;
    for (qsizetype index = 0; index < fields.size(); ++index)
        texts += fields.at(index).toString();
    return texts;
}

QString joined(const QStringList &fields)
{
    QString line = u"what was there before"_s;
    joinFields(fields, line);
    return line;
}

} // namespace

class TestRecordFields : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cutsAtEverySeparator_data();
    void cutsAtEverySeparator();
    void joinsWithoutSeparatorsAtTheEnds_data();
    void joinsWithoutSeparatorsAtTheEnds();
    void givesEveryLineBack_data();
    void givesEveryLineBack();
    void keepsEveryByteValue();
    void findsFieldsBehindAField();
    void readsFieldsThatAreNotThereAsEmpty();
    void readsNumbers_data();
    void readsNumbers();
    void writesNumbersInPlainDecimal_data();
    void writesNumbersInPlainDecimal();
    void movesReferencesToAnotherPrefix_data();
    void movesReferencesToAnotherPrefix();
    void shiftsTheNumbersOfAReferenceLine_data();
    void shiftsTheNumbersOfAReferenceLine();
};

void TestRecordFields::cutsAtEverySeparator_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QStringList>("fields");

    QTest::newRow("nothing") << u""_s << QStringList{u""_s};
    QTest::newRow("tag alone") << u"IVG"_s << QStringList{u"IVG"_s};
    QTest::newRow("empty field between") << u"PNT;2;;10"_s << QStringList{u"PNT"_s, u"2"_s, u""_s, u"10"_s};
    QTest::newRow("trailing separator") << u"ID;1;"_s << QStringList{u"ID"_s, u"1"_s, u""_s};
    QTest::newRow("leading separator") << u";a"_s << QStringList{u""_s, u"a"_s};
    QTest::newRow("separators alone") << u";;"_s << QStringList{u""_s, u""_s, u""_s};
    QTest::newRow("blanks stay") << u"A; b ;c"_s << QStringList{u"A"_s, u" b "_s, u"c"_s};
}

void TestRecordFields::cutsAtEverySeparator()
{
    QFETCH(const QString, line);
    QFETCH(const QStringList, fields);

    QCOMPARE(cut(line), fields);
    QCOMPARE(fieldCount(QStringView(line)), fields.size());
    for (qsizetype index = 0; index < fields.size(); ++index)
        QCOMPARE(fieldAt(line, index).toString(), fields.at(index));
}

void TestRecordFields::joinsWithoutSeparatorsAtTheEnds_data()
{
    QTest::addColumn<QStringList>("fields");
    QTest::addColumn<QString>("line");

    QTest::newRow("no fields") << QStringList() << u""_s;
    QTest::newRow("one empty field") << QStringList{u""_s} << u""_s;
    QTest::newRow("one field") << QStringList{u"IVG"_s} << u"IVG"_s;
    QTest::newRow("last one empty") << QStringList{u"IVG"_s, u"a"_s, u""_s} << u"IVG;a;"_s;
    QTest::newRow("first one empty") << QStringList{u""_s, u"a"_s} << u";a"_s;
}

void TestRecordFields::joinsWithoutSeparatorsAtTheEnds()
{
    QFETCH(const QStringList, fields);
    QTEST(joined(fields), "line");
}

void TestRecordFields::givesEveryLineBack_data()
{
    QTest::addColumn<QString>("line");

    QTest::newRow("nothing") << u""_s;
    QTest::newRow("separators alone") << u";;;"_s;
    QTest::newRow("trailing separator") << u"PNT;1;0;5;6;"_s;
    QTest::newRow("numbers in odd spelling") << u"PSDV; 007 ;+3;-0;1e3"_s;
    QTest::newRow("two hundred fields") << u"x;"_s.repeated(200);
}

void TestRecordFields::givesEveryLineBack()
{
    QFETCH(const QString, line);
    QCOMPARE(joined(line.split(u';')), line);
    QCOMPARE(joined(cut(line)), line);
}

void TestRecordFields::keepsEveryByteValue()
{
    for (char16_t value = 0; value <= 0xff; ++value) {
        const QString line = u"IVG;"_s + QChar(value) + u";b"_s + QChar(value);
        QCOMPARE(joined(line.split(u';')), line);
        QCOMPARE(joined(cut(line)), line);
    }
}

void TestRecordFields::findsFieldsBehindAField()
{
    const QString line = u"PSDV;a;b;;c;"_s;
    QCOMPARE(fieldsFrom(line, 0).toString(), line);
    QCOMPARE(fieldsFrom(line, 2).toString(), u"b;;c;"_s);
    QCOMPARE(fieldsFrom(line, 4).toString(), u"c;"_s);
    QCOMPARE(fieldsFrom(line, 5).toString(), u""_s);
    QCOMPARE(fieldsFrom(line, 6).toString(), u""_s);
    QCOMPARE(fieldsFrom(line, 1000).toString(), u""_s);
}

void TestRecordFields::readsFieldsThatAreNotThereAsEmpty()
{
    const QString line = u"IVG;a"_s;
    const LineFields<QStringView> fields(line);
    QCOMPARE(fields.at(2).toString(), u""_s);
    QCOMPARE(fields.at(1000).toString(), u""_s);
    QCOMPARE(fields.number(2), 0);
    QCOMPARE(fieldAt(line, 2).toString(), u""_s);
    QCOMPARE(fieldAt(line, 1000).toString(), u""_s);
    QCOMPARE(fieldAt(QString(), 1).toString(), u""_s);
}

void TestRecordFields::readsNumbers_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<int>("number");

    QTest::newRow("plain") << u"42"_s << 42;
    QTest::newRow("negative") << u"-42"_s << -42;
    QTest::newRow("plus sign") << u"+42"_s << 42;
    QTest::newRow("blanks around") << u"  42\t"_s << 42;
    QTest::newRow("blanks and a sign") << u" -7 "_s << -7;
    QTest::newRow("leading zeros") << u"00042"_s << 42;
    QTest::newRow("many leading zeros") << u"000000000000042"_s << 42;
    QTest::newRow("minus zero") << u"-0"_s << 0;
    QTest::newRow("nothing") << u""_s << 0;
    QTest::newRow("blanks alone") << u"  "_s << 0;
    QTest::newRow("minus alone") << u"-"_s << 0;
    QTest::newRow("plus alone") << u"+"_s << 0;
    QTest::newRow("two signs") << u"--1"_s << 0;
    QTest::newRow("sign apart") << u"- 1"_s << 0;
    QTest::newRow("a word") << u"abc"_s << 0;
    QTest::newRow("digits, then a letter") << u"12a"_s << 0;
    QTest::newRow("a blank inside") << u"1 2"_s << 0;
    QTest::newRow("a decimal point") << u"3.5"_s << 0;
    QTest::newRow("an exponent") << u"1e3"_s << 0;
    QTest::newRow("hexadecimal") << u"0x10"_s << 0;
    QTest::newRow("group separators") << u"1,000"_s << 0;
    QTest::newRow("not a number") << u"nan"_s << 0;
    QTest::newRow("nine digits") << u"999999999"_s << 999999999;
    QTest::newRow("the greatest") << u"2147483647"_s << 2147483647;
    QTest::newRow("beyond the greatest") << u"2147483648"_s << 0;
    QTest::newRow("the least") << u"-2147483648"_s << (-2147483647 - 1);
    QTest::newRow("beyond the least") << u"-2147483649"_s << 0;
    QTest::newRow("far too long") << u"99999999999999999999"_s << 0;
}

void TestRecordFields::readsNumbers()
{
    QFETCH(const QString, field);
    QTEST(toNumber(field), "number");
    QCOMPARE(toNumber(field), field.toInt());
    QTEST(toNumber(QLatin1StringView(field.toLatin1())), "number");

    const QString line = u"PNT;"_s + field;
    QTEST(LineFields<QStringView>(line).number(1), "number");
}

void TestRecordFields::writesNumbersInPlainDecimal_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("text");

    QTest::newRow("zero") << 0 << u"0"_s;
    QTest::newRow("positive") << 1200 << u"1200"_s;
    QTest::newRow("negative") << -12 << u"-12"_s;
    QTest::newRow("the greatest") << 2147483647 << u"2147483647"_s;
    QTest::newRow("the least") << (-2147483647 - 1) << u"-2147483648"_s;
}

void TestRecordFields::writesNumbersInPlainDecimal()
{
    QFETCH(const int, number);
    TextBuffer<char16_t> characters;
    characters.appendNumber(number);
    QTEST(QString::fromUtf16(characters.data(), characters.size()), "text");
    QCOMPARE(toNumber(QStringView(characters.data(), characters.size())), number);

    TextBuffer<char> bytes;
    bytes.appendNumber(number);
    QTEST(QString::fromLatin1(bytes.data(), bytes.size()), "text");
    QCOMPARE(toNumber(QLatin1StringView(bytes.data(), bytes.size())), number);
}

void TestRecordFields::movesReferencesToAnotherPrefix_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("fromPrefix");
    QTest::addColumn<QString>("toPrefix");
    QTest::addColumn<QString>("moved");

    const QString from = u"C:/lib"_s;
    const QString to = u"D:/proj"_s;
    QTest::newRow("below the prefix") << u"C:/lib/pic.bmp"_s << from << to << u"D:/proj/pic.bmp"_s;
    QTest::newRow("the prefix itself") << u"C:/lib"_s << from << to << u"D:/proj"_s;
    QTest::newRow("a system reference") << u"System:pic.bmp"_s << from << to << u"System:pic.bmp"_s;
    QTest::newRow("elsewhere") << u"E:/x.bmp"_s << from << to << u"E:/x.bmp"_s;
    QTest::newRow("no folder boundary") << u"C:/library/x.bmp"_s << from << to << u"D:/projrary/x.bmp"_s;
    QTest::newRow("other letter case") << u"c:/lib/x.bmp"_s << from << to << u"c:/lib/x.bmp"_s;
    QTest::newRow("prefix further on") << u"/C:/lib/x"_s << from << to << u"/C:/lib/x"_s;
    QTest::newRow("prefix twice") << u"C:/lib/C:/lib"_s << from << to << u"D:/proj/C:/lib"_s;
    QTest::newRow("path not normalised") << u"C:/./lib/x"_s << from << to << u"C:/./lib/x"_s;
    QTest::newRow("empty field") << u""_s << from << to << u""_s;
    QTest::newRow("empty prefix") << u"pic.bmp"_s << u""_s << to << u"D:/projpic.bmp"_s;
    QTest::newRow("empty prefix, empty field") << u""_s << u""_s << to << u"D:/proj"_s;
    QTest::newRow("empty prefix, system") << u"System:x"_s << u""_s << to << u"System:x"_s;
    QTest::newRow("system in other case") << u"system:x"_s << u""_s << u"a/"_s << u"a/system:x"_s;
    QTest::newRow("system as the prefix") << u"System:x"_s << u"System:"_s << to << u"System:x"_s;
    QTest::newRow("to nothing") << u"C:/lib/x"_s << from << u""_s << u"/x"_s;
}

void TestRecordFields::movesReferencesToAnotherPrefix()
{
    QFETCH(QString, field);
    QFETCH(const QString, fromPrefix);
    QFETCH(const QString, toPrefix);
    replacePathPrefix(field, fromPrefix, toPrefix);
    QTEST(field, "moved");
}

void TestRecordFields::shiftsTheNumbersOfAReferenceLine_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<int>("shift");
    QTest::addColumn<QString>("shifted");

    QTest::newRow("both numbers") << u"IX1;a;;;10;20;30"_s << 5 << u"IX1;a;;;15;25;30"_s;
    QTest::newRow("backwards") << u"IX1;a;;;10;-20"_s << -15 << u"IX1;a;;;-5;-35"_s;
    QTest::newRow("no numbers") << u"IX1;a;;;p;q"_s << 5 << u"IX1;a;;;5;5"_s;
    QTest::newRow("empty fields") << u"IX1;a;;;;"_s << -3 << u"IX1;a;;;-3;-3"_s;
    QTest::newRow("respelt without a shift") << u"IX1;a;;; +7;007"_s << 0 << u"IX1;a;;;7;7"_s;
    QTest::newRow("wrapped around") << u"IX1;a;;;2147483647;0"_s << 1 << u"IX1;a;;;-2147483648;1"_s;
    QTest::newRow("field 5 missing") << u"IX1;a;;;10"_s << 5 << u"IX1;a;;;15"_s;
    QTest::newRow("both missing") << u"IX1;a"_s << 5 << u"IX1;a"_s;
}

void TestRecordFields::shiftsTheNumbersOfAReferenceLine()
{
    QFETCH(const QString, line);
    QFETCH(const int, shift);

    QStringList fields = line.split(u';');
    QString output = u"what was there before"_s;
    shiftReferenceFields(fields, output, shift);
    QTEST(output, "shifted");
    QCOMPARE(fields.join(u';'), output);
}

VANTREL_TEST(TestSuite::NoApplication, TestRecordFields)
#include "tst_recordfields.moc"
