// Reading a shape file, parsing its lines into a record, and looking for its icon bitmaps.
#include "BitmapFolders.h"
#include "Converter.h"
#include "Recorders.h"
#include "TestProject.h"
#include "TestSuite.h"
#include "updUtils.h"

#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

bool isFound(const TestProject &project, const QString &name)
{
    bool found = false;
    updUtils::findFileInBmpFolders(project.dir(), name, found);
    return found;
}

/// A rectangle line of a shape; `counts` is its field 6.
QString rectangle(const QString &corners, const QString &counts = u"1"_s)
{
    return u"PSDV;%1;0;%2;0;0;0;0;0;0"_s.arg(corners, counts);
}

const QString icon = u"ID;1;Icon"_s;
const QString text = u"ID;1;Text"_s;
const QString other = u"ID;1;Shape"_s;

} // namespace

class TestShapeReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsFromTheFirstSectionOn_data();
    void readsFromTheFirstSectionOn();
    void leavesAllAloneWhereTheFileIsRefused_data();
    void leavesAllAloneWhereTheFileIsRefused();
    void readsTheFileAsItIsNow();

    void readsTheNameOfTheLastLibraryLine();
    void resetsTheRecordFirst();
    void takesTheLargestRectangleThatCounts_data();
    void takesTheLargestRectangleThatCounts();
    void takesEverySecondRectangleOfIcons_data();
    void takesEverySecondRectangleOfIcons();
    void listsMissingIcons_data();
    void listsMissingIcons();
    void looksForIconsBelowTheProjectThatIsSet();
    void readsNothingBehindTheFieldsOfALine_data();
    void readsNothingBehindTheFieldsOfALine();

    void findsBitmaps_data();
    void findsBitmaps();
    void findsNoBitmapBelowAnUpperCaseProject();
    void findsBitmapsAnywhereBelowAFolderThatCounts();
    void neverClearsTheFoundFlag();
    void findsNoBitmapThatCannotBeReached();
    void findsNoBitmapThatHasGoneSinceItWasListed();
    void looksForBitmapsThroughLinksOnceOnly();
    void looksIntoEachFolderOnceHoweverManyLinksLeadThere();
    void findsWhatAListingDoesNotTell_data();
    void findsWhatAListingDoesNotTell();
};

void TestShapeReader::readsFromTheFirstSectionOn_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<int>("offset");

    QTest::newRow("no header") << "ID;1;Icon\nLIB;a\n"_ba << QStringList{icon, u"LIB;a"_s} << 0;
    QTest::newRow("three header lines") << "one\n\nLIB;x\nID;1;Icon\n"_ba << QStringList{icon} << 3;
    QTest::newRow("blank lines are kept behind it")
        << "ID;1;Icon\n\n  \nend"_ba << QStringList{icon, u""_s, u""_s, u"end"_s} << 0;
    QTest::newRow("only the first section counts")
        << "x\nID;1;Icon\nID;1;Text\n"_ba << QStringList{icon, text} << 1;
    QTest::newRow("section behind blanks") << "x\n\t ID;1;Icon \r\n"_ba << QStringList{icon} << 1;
    QTest::newRow("section inside a line") << "x;ID;1;Icon\n"_ba << QStringList() << -1;
    QTest::newRow("section in lower case") << "id;1;Icon\n"_ba << QStringList() << -1;
    QTest::newRow("section without a separator") << "ID\n"_ba << QStringList() << -1;
    QTest::newRow("a longer tag first") << "IDMS;a\nID;1;Icon\n"_ba << QStringList{icon} << 1;
    QTest::newRow("no section") << "LIB;a\nPSDV\n"_ba << QStringList() << -1;
    QTest::newRow("empty file") << QByteArray() << QStringList() << -1;
    QTest::newRow("carriage returns") << "x\r\nID;1;Icon\r\na\rb\r\n"_ba << QStringList{icon, u"a\rb"_s} << 1;
    QTest::newRow("Latin-1 and blanks of Unicode")
        << "ID;1;Icon\n\xa0\xfc\x85\n"_ba << QStringList{icon, u"\u00a0\u00fc\u0085"_s} << 0;
    QTest::newRow("zero bytes") << QByteArray("ID;1;Icon\n\0a\0\n", 14)
                                << QStringList{icon, QString::fromLatin1("\0a\0", 3)} << 0;
}

void TestShapeReader::readsFromTheFirstSectionOn()
{
    QFETCH(const QByteArray, bytes);
    const TestProject project;
    project.write(u"mac/a.plb"_s, bytes);

    Converter converter(project.dir());
    converter.shapeLineOffset = 77;
    QStringList lines{u"from before"_s};
    QString error;
    QVERIFY(converter.openShapeFile(project.path(u"mac/a.plb"_s), lines, error));
    QTEST(lines, "lines");
    QTEST(converter.shapeLineOffset, "offset");
}

void TestShapeReader::leavesAllAloneWhereTheFileIsRefused_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("no such file") << u"mac/gone.plb"_s;
    QTest::newRow("a folder") << u"mac/folder.plb"_s;
    QTest::newRow("a file that may not be read") << u"mac/secret.plb"_s;
    QTest::newRow("a catalogue") << u"mac/x.cat.plb"_s;
    QTest::newRow("a catalogue by its suffix") << u"mac/x.cat"_s;
    QTest::newRow("a file in a catalogue's folder") << u"mac/x.cats/a.plb"_s;
}

void TestShapeReader::leavesAllAloneWhereTheFileIsRefused()
{
    QFETCH(const QString, name);
    const TestProject project;
    project.makeFolder(u"mac/folder.plb"_s);
    for (const QString &file :
         {u"mac/x.cat.plb"_s, u"mac/x.cat"_s, u"mac/x.cats/a.plb"_s, u"mac/secret.plb"_s})
        project.write(file, "ID;1;Icon\n"_ba);
    QFile::setPermissions(project.path(u"mac/secret.plb"_s), QFile::Permissions());

    const OrdinaryUser user;
    Converter converter(project.dir());
    converter.shapeLineOffset = 77;
    QStringList lines{u"from before"_s};
    QString error = u"from before"_s;
    QVERIFY(!converter.openShapeFile(project.path(name), lines, error));
    QCOMPARE(error, u"Could not open Shape File"_s);
    QCOMPARE(lines, QStringList{u"from before"_s});
    QCOMPARE(converter.shapeLineOffset, 77);
}

void TestShapeReader::readsTheFileAsItIsNow()
{
    const TestProject project;
    Converter converter(project.dir());
    const QString path = project.path(u"mac/a.plb"_s);
    QStringList lines;
    QString error;
    QVERIFY(!converter.openShapeFile(path, lines, error));
    project.write(u"mac/a.plb"_s, "ID;1;Icon\n"_ba);
    QVERIFY(converter.openShapeFile(path, lines, error));
    QCOMPARE(lines, QStringList{icon});
    project.write(u"mac/a.plb"_s, "ID;1;Text\n"_ba);
    QVERIFY(converter.openShapeFile(path, lines, error));
    QCOMPARE(lines, QStringList{text});
    // A name of a catalogue in upper case is a name like others.
    project.write(u"mac/a.CAT.plb"_s, "ID;1;Icon\n"_ba);
    QVERIFY(converter.openShapeFile(project.path(u"mac/a.CAT.plb"_s), lines, error));
}

void TestShapeReader::readsTheNameOfTheLastLibraryLine()
{
    const TestProject project;
    Converter converter(project.dir());
    Converter::STBlock shape;
    QVERIFY(
        converter.parseShapeLines({u"LIB;a;b;c;first"_s, u"LIBX;a;b;c;last;d"_s, u"lib;a;b;c;no"_s}, shape));
    QCOMPARE(shape.imageObject, u"last"_s);
    QCOMPARE(shape.shapeFile, u""_s);
    QCOMPARE(shape.initText, u""_s);

    QVERIFY(converter.parseShapeLines({u"LIB;a;b;c;first"_s, u"LIB;a;b;c"_s}, shape));
    QCOMPARE(shape.imageObject, u""_s);
}

void TestShapeReader::resetsTheRecordFirst()
{
    const TestProject project;
    Converter converter(project.dir());
    Converter::STBlock cleared;
    Converter::clearBlock(cleared);
    Converter::STBlock shape;
    QVERIFY(converter.parseShapeLines({icon, u"LIB;a;b;c;d"_s, rectangle(u"1;2;3;4"_s), u"DIV;a;b;no.bmp"_s},
                                      shape));
    QCOMPARE(shape.missingIcons, QStringList{u"no.bmp"_s});
    QVERIFY(shape.iconToggle);

    QVERIFY(converter.parseShapeLines({}, shape));
    QCOMPARE(toText(shape), toText(cleared));
    QCOMPARE(toText(shape.rect2), u"0 0 0 0"_s);
    QCOMPARE(shape.missingIcons, QStringList());
    QVERIFY(!shape.iconToggle);
}

void TestShapeReader::takesTheLargestRectangleThatCounts_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QString>("rect");

    const QString none = u"99999 99999 0 0"_s;
    const QString small = rectangle(u"1;1;4;4"_s);
    QTest::newRow("one") << QStringList{small} << u"1 1 4 4"_s;
    QTest::newRow("a larger one later") << QStringList{small, rectangle(u"0;0;9;9"_s)} << u"0 0 9 9"_s;
    QTest::newRow("a smaller one later") << QStringList{rectangle(u"0;0;9;9"_s), small} << u"0 0 9 9"_s;
    QTest::newRow("the first of two equal areas")
        << QStringList{rectangle(u"0;0;9;0"_s), rectangle(u"0;0;0;9"_s)} << u"0 0 9 0"_s;
    QTest::newRow("larger, but does not count")
        << QStringList{small, rectangle(u"0;0;9;9"_s, u"0"_s)} << u"1 1 4 4"_s;
    QTest::newRow("larger, but counts by a word")
        << QStringList{small, rectangle(u"0;0;9;9"_s, u"yes"_s)} << u"1 1 4 4"_s;
    QTest::newRow("larger, but counts by nothing")
        << QStringList{small, rectangle(u"0;0;9;9"_s, u""_s)} << u"1 1 4 4"_s;
    QTest::newRow("larger, but counts by too great a number")
        << QStringList{small, rectangle(u"0;0;9;9"_s, u"2147483648"_s)} << u"1 1 4 4"_s;
    QTest::newRow("counts by a negative number")
        << QStringList{rectangle(u"0;0;9;9"_s, u"-3"_s)} << u"0 0 9 9"_s;
    QTest::newRow("none counts") << QStringList{rectangle(u"0;0;9;9"_s, u"0"_s)} << none;
    QTest::newRow("larger, but of a text")
        << QStringList{small, text, rectangle(u"0;0;9;9"_s)} << u"1 1 4 4"_s;
    QTest::newRow("of texts only") << QStringList{text, rectangle(u"0;0;9;9"_s)} << none;
    QTest::newRow("of an icon") << QStringList{icon, rectangle(u"0;0;9;9"_s)} << u"0 0 9 9"_s;
    QTest::newRow("behind a text's end") << QStringList{text, other, rectangle(u"0;0;9;9"_s)} << u"0 0 9 9"_s;
    QTest::newRow("behind a text that became an icon")
        << QStringList{text, icon, rectangle(u"0;0;9;9"_s)} << u"0 0 9 9"_s;
    QTest::newRow("a kind that only begins like a text")
        << QStringList{u"ID;1;Texts"_s, rectangle(u"0;0;9;9"_s)} << u"0 0 9 9"_s;
    QTest::newRow("a kind in lower case")
        << QStringList{u"ID;1;text"_s, rectangle(u"0;0;9;9"_s)} << u"0 0 9 9"_s;
    QTest::newRow("a section without a kind")
        << QStringList{text, u"ID;1"_s, rectangle(u"0;0;9;9"_s)} << u"0 0 9 9"_s;
    QTest::newRow("corners turned round") << QStringList{small, rectangle(u"9;9;0;0"_s)} << u"1 1 8 8"_s;
    // 10 to 0 becomes 1 to 9 as soon as the left is more than one beyond the right.
    QTest::newRow("left and right turned round") << QStringList{rectangle(u"10;0;0;5"_s)} << u"1 0 9 5"_s;
    QTest::newRow("area of the normalised corners")
        << QStringList{rectangle(u"0;0;8;0"_s), rectangle(u"10;0;0;0"_s)} << u"0 0 8 0"_s;
    QTest::newRow("areas beyond 32 bits")
        << QStringList{rectangle(u"0;0;69999;69999"_s), rectangle(u"0;0;29999;29999"_s)}
        << u"0 0 69999 69999"_s;
    QTest::newRow("no area at all") << QStringList{rectangle(u"5;5;4;9"_s)} << none;
    QTest::newRow("corners that are no numbers") << QStringList{rectangle(u"a;b; 7 ;+8"_s)} << u"0 0 7 8"_s;
    QTest::newRow("behind a longer tag") << QStringList{u"PSDVX;0;0;9;9;0;1"_s} << u"0 0 9 9"_s;
    QTest::newRow("in lower case") << QStringList{u"psdv;0;0;9;9;0;1"_s} << none;
}

void TestShapeReader::takesTheLargestRectangleThatCounts()
{
    QFETCH(const QStringList, lines);
    const TestProject project;
    Converter converter(project.dir());
    Converter::STBlock shape;
    QVERIFY(converter.parseShapeLines(lines, shape));
    QTEST(toText(shape.rect), "rect");
}

void TestShapeReader::takesEverySecondRectangleOfIcons_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QString>("rect2");
    QTest::addColumn<bool>("toggle");

    const QString a = rectangle(u"1;1;4;4"_s);
    const QString b = rectangle(u"2;2;5;5"_s);
    const QString c = rectangle(u"3;3;9;9"_s, u"0"_s);
    QTest::newRow("none") << QStringList{icon} << u"0 0 0 0"_s << false;
    QTest::newRow("one") << QStringList{icon, a} << u"1 1 4 4"_s << true;
    QTest::newRow("two: the first") << QStringList{icon, a, b} << u"1 1 4 4"_s << false;
    QTest::newRow("three: the third") << QStringList{icon, a, b, c} << u"3 3 9 9"_s << true;
    QTest::newRow("across sections") << QStringList{icon, a, icon, b} << u"1 1 4 4"_s << false;
    QTest::newRow("across other sections")
        << QStringList{icon, a, other, b, text, b, icon, b} << u"1 1 4 4"_s << false;
    QTest::newRow("three in three icons") << QStringList{icon, a, icon, b, icon, c} << u"3 3 9 9"_s << true;
    QTest::newRow("outside of icons") << QStringList{a, other, b, text, c} << u"0 0 0 0"_s << false;
    QTest::newRow("normalised") << QStringList{icon, rectangle(u"10;0;0;5"_s)} << u"1 0 9 5"_s << true;
}

void TestShapeReader::takesEverySecondRectangleOfIcons()
{
    QFETCH(const QStringList, lines);
    const TestProject project;
    Converter converter(project.dir());
    Converter::STBlock shape;
    QVERIFY(converter.parseShapeLines(lines, shape));
    QTEST(toText(shape.rect2), "rect2");
    QTEST(shape.iconToggle, "toggle");
}

void TestShapeReader::listsMissingIcons_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QStringList>("missing");

    const QString here = u"DIV;1;2;here.bmp"_s;
    const QString gone = u"DIV;1;2;gone.bmp;more"_s;
    const QString lost = u"DIV;1;2;lost.bmp"_s;
    QTest::newRow("in the order of the file")
        << QStringList{icon, lost, here, gone} << QStringList{u"lost.bmp"_s, u"gone.bmp"_s};
    QTest::newRow("as often as it is named") << QStringList{icon, gone, gone, icon, gone}
                                             << QStringList{u"gone.bmp"_s, u"gone.bmp"_s, u"gone.bmp"_s};
    QTest::newRow("outside of icons") << QStringList{gone, other, gone, text, gone} << QStringList();
    QTest::newRow("behind the end of an icon") << QStringList{icon, other, gone} << QStringList();
    QTest::newRow("other letter case")
        << QStringList{icon, u"DIV;1;2;HERE.bmp"_s} << QStringList{u"HERE.bmp"_s};
    QTest::newRow("tag in lower case") << QStringList{icon, u"div;1;2;gone.bmp"_s} << QStringList();
    QTest::newRow("a longer tag") << QStringList{icon, u"DIVX;1;2;gone.bmp"_s} << QStringList{u"gone.bmp"_s};
}

void TestShapeReader::listsMissingIcons()
{
    QFETCH(const QStringList, lines);
    const TestProject project;
    project.write(u"bmp/here.bmp"_s, QByteArray());
    Converter converter(project.dir());
    Converter::STBlock shape;
    QVERIFY(converter.parseShapeLines(lines, shape));
    QTEST(shape.missingIcons, "missing");
}

void TestShapeReader::looksForIconsBelowTheProjectThatIsSet()
{
    const TestProject project;
    const TestProject next;
    next.write(u"bmp/a.bmp"_s, QByteArray());
    const QStringList lines{icon, u"DIV;1;2;a.bmp"_s};
    Converter converter(project.dir());
    Converter::STBlock shape;
    QVERIFY(converter.parseShapeLines(lines, shape));
    QCOMPARE(shape.missingIcons.size(), 1);
    converter.setProjectDir(next.dir());
    QVERIFY(converter.parseShapeLines(lines, shape));
    QCOMPARE(shape.missingIcons.size(), 0);

    // Nothing is remembered between two calls.
    next.remove(u"bmp/a.bmp"_s);
    QVERIFY(converter.parseShapeLines(lines, shape));
    QCOMPARE(shape.missingIcons.size(), 1);
}

void TestShapeReader::readsNothingBehindTheFieldsOfALine_data()
{
    QTest::addColumn<QString>("line");
    for (const QString &line : {u"ID;"_s, u"LIB"_s, u"LIB;"_s, u"PSDV"_s, u"PSDV;"_s, u"PSDV;1;2;3"_s,
                                u"PSDV;1;2;3;4;5"_s, u"DIV"_s, u"DIV;"_s, u"DIV;1;2"_s, u""_s, u";"_s})
        QTest::newRow(qPrintable("line '"_L1 + line + '\''_L1)) << line;
}

void TestShapeReader::readsNothingBehindTheFieldsOfALine()
{
    QFETCH(const QString, line);
    const TestProject project;
    Converter converter(project.dir());
    Converter::STBlock shape;
    QVERIFY(converter.parseShapeLines({icon, line}, shape));
    QCOMPARE(toText(shape.rect), u"99999 99999 0 0"_s);
    QCOMPARE(shape.imageObject, u""_s);
}

void TestShapeReader::findsBitmaps_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isThere");

    QTest::newRow("in bmp") << u"bmp/a.bmp"_s << u"a.bmp"_s << true;
    QTest::newRow("below bmp") << u"bmp/icons/deep/a.bmp"_s << u"a.bmp"_s << true;
    QTest::newRow("in a folder that begins like it") << u"bmp32/a.bmp"_s << u"a.bmp"_s << true;
    QTest::newRow("its name in another letter case") << u"bmp/a.bmp"_s << u"A.BMP"_s << false;
    QTest::newRow("an upper-case name") << u"bmp/A.BMP"_s << u"A.BMP"_s << true;
    QTest::newRow("a folder in upper case") << u"BMP/a.bmp"_s << u"a.bmp"_s << false;
    QTest::newRow("a folder below in upper case") << u"bmp/Icons/a.bmp"_s << u"a.bmp"_s << false;
    QTest::newRow("directly in the project") << u"a.bmp"_s << u"a.bmp"_s << false;
    QTest::newRow("in another folder") << u"pictures/a.bmp"_s << u"a.bmp"_s << false;
    QTest::newRow("bmp below another folder") << u"pictures/bmp/a.bmp"_s << u"a.bmp"_s << false;
    QTest::newRow("a folder that ends like it") << u"xbmp/a.bmp"_s << u"a.bmp"_s << false;
    QTest::newRow("a hidden folder") << u"bmp/.icons/a.bmp"_s << u"a.bmp"_s << false;
    QTest::newRow("another name") << u"bmp/a.bmp"_s << u"b.bmp"_s << false;
    QTest::newRow("no suffix is implied") << u"bmp/a.bmp"_s << u"a"_s << false;
    QTest::newRow("a file called bmp") << u"bmp"_s << u"bmp"_s << false;
}

void TestShapeReader::findsBitmaps()
{
    QFETCH(const QString, file);
    QFETCH(const QString, name);
    const TestProject project;
    project.write(file, QByteArray());
    QTEST(isFound(project, name), "isThere");
}

void TestShapeReader::findsNoBitmapBelowAnUpperCaseProject()
{
    const TestProject project(u"Plant"_s);
    project.write(u"bmp/a.bmp"_s, QByteArray());
    QVERIFY(!isFound(project, u"a.bmp"_s));
}

void TestShapeReader::findsBitmapsAnywhereBelowAFolderThatCounts()
{
    const TestProject project(u"bmp-plants/plant"_s);
    project.write(u"pictures/a.bmp"_s, QByteArray());
    project.write(u"b.bmp"_s, QByteArray());
    QVERIFY(isFound(project, u"a.bmp"_s));
    QVERIFY(!isFound(project, u"b.bmp"_s));
}

void TestShapeReader::neverClearsTheFoundFlag()
{
    const TestProject project;
    bool found = true;
    updUtils::findFileInBmpFolders(project.dir(), u"a.bmp"_s, found);
    QVERIFY(found);
}

void TestShapeReader::findsNoBitmapThatCannotBeReached()
{
    const TestProject project;
    project.write(u"bmp/a.bmp"_s, QByteArray());
    project.write(u"bmp/open/b.bmp"_s, QByteArray());
    project.write(u"bmp32/b.bmp"_s, QByteArray());
    // Its names may be read, but nothing in it may be looked at.
    QFile::setPermissions(project.path(u"bmp"_s), QFile::Permissions::fromInt(0x4444));
    for (const QString &folder : {u""_s, u"bmp32"_s})
        QFile::setPermissions(project.path(folder), QFile::Permissions::fromInt(0x7777));
    const OrdinaryUser user;
    QVERIFY(!isFound(project, u"a.bmp"_s));
    // One of this name is in another folder.
    QVERIFY(isFound(project, u"b.bmp"_s));
}

void TestShapeReader::findsNoBitmapThatHasGoneSinceItWasListed()
{
    const TestProject project;
    project.write(u"bmp/a.bmp"_s, QByteArray());
    project.link(u"a.bmp"_s, u"bmp/link.bmp"_s);
    project.link(u"nowhere"_s, u"bmp/dangling.bmp"_s);
    const BitmapFolders folders(project.dir());
    QVERIFY(folders.contains(u"a.bmp"_s));
    QVERIFY(folders.contains(u"link.bmp"_s));
    QVERIFY(!folders.contains(u"dangling.bmp"_s));
    project.remove(u"bmp/a.bmp"_s);
    QVERIFY(!folders.contains(u"a.bmp"_s));
    QVERIFY(!folders.contains(u"link.bmp"_s));
}

void TestShapeReader::looksForBitmapsThroughLinksOnceOnly()
{
    const TestProject project;
    project.write(u"pictures/a.bmp"_s, QByteArray());
    project.makeFolder(u"bmp/sub"_s);
    project.link(u"."_s, u"bmp/itself"_s);
    project.link(u".."_s, u"bmp/up"_s);
    project.link(u"../../bmp"_s, u"bmp/sub/back"_s);
    QVERIFY(!isFound(project, u"b.bmp"_s));
    project.link(u"../pictures"_s, u"bmp/pictures"_s);
    QVERIFY(isFound(project, u"a.bmp"_s));
}

void TestShapeReader::looksIntoEachFolderOnceHoweverManyLinksLeadThere()
{
    const TestProject project;
    // Each folder is reached from the one before in two ways: two to the power of forty in all.
    constexpr int depth = 40;
    for (int level = 0; level < depth; ++level) {
        project.makeFolder(u"bmp/%1"_s.arg(level));
        for (const QString &way : {u"a"_s, u"b"_s})
            project.link(u"../%1"_s.arg(level + 1), u"bmp/%1/%2"_s.arg(level).arg(way));
    }
    project.write(u"bmp/%1/deep.bmp"_s.arg(depth), QByteArray());
    QVERIFY(isFound(project, u"deep.bmp"_s));
    QVERIFY(!isFound(project, u"b.bmp"_s));
}

void TestShapeReader::findsWhatAListingDoesNotTell_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<bool>("isThere");
    QTest::newRow("a file in a folder without the name") << u"sub/a.bmp"_s << true;
    QTest::newRow("a file above") << u"../mac/a.plb"_s << true;
    QTest::newRow("a folder") << u"sub"_s << true;
    QTest::newRow("the folder itself") << u""_s << true;
    QTest::newRow("a hidden file") << u".a.bmp"_s << true;
    QTest::newRow("a link to a file") << u"link.bmp"_s << true;
    QTest::newRow("a link to nothing") << u"dangling.bmp"_s << false;
    QTest::newRow("a file in a hidden folder") << u"hidden.bmp"_s << false;
    QTest::newRow("other letter case") << u"A.bmp"_s << false;
}

void TestShapeReader::findsWhatAListingDoesNotTell()
{
    QFETCH(const QString, fileName);
    const TestProject project;
    for (const QString &file : {u"bmp/sub/a.bmp"_s, u"mac/a.plb"_s, u"bmp/.a.bmp"_s, u"bmp/.h/hidden.bmp"_s})
        project.write(file, QByteArray());
    project.link(u"sub/a.bmp"_s, u"bmp/link.bmp"_s);
    project.link(u"nowhere"_s, u"bmp/dangling.bmp"_s);
    QTEST(isFound(project, fileName), "isThere");
}

VANTREL_TEST(QCoreApplication, TestShapeReader)
#include "tst_shapereader.moc"
