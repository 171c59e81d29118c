// Reading an image file, counting the fields of its lines, and reporting what is wrong with it.
#include "Converter.h"
#include "FileLines.h"
#include "Recorders.h"
#include "TestProject.h"
#include "TestSuite.h"

#include <QtTest>

using namespace Qt::StringLiterals;

class TestImageReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsLines_data();
    void readsLines();
    void keepsEveryByteInsideALine();
    void leavesTheListAloneWhereTheFileCannotBeOpened_data();
    void leavesTheListAloneWhereTheFileCannotBeOpened();
    void replacesTheListOfTheFileBefore();
    void readsAVeryLongLine();
    void knowsWhereInItsFileALineStood();
    void checksTheNumberOfFields_data();
    void checksTheNumberOfFields();
    void reportsWithoutThePathAndLogsWithIt_data();
    void reportsWithoutThePathAndLogsWithIt();
    void reportsAClearedRecord();
};

void TestImageReader::readsLines_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("lines");

    QTest::newRow("empty file") << QByteArray() << QStringList();
    QTest::newRow("one line end") << "\n"_ba << QStringList{u""_s};
    QTest::newRow("last line without its end") << "a\nb"_ba << QStringList{u"a"_s, u"b"_s};
    QTest::newRow("last line with its end") << "a\nb\n"_ba << QStringList{u"a"_s, u"b"_s};
    QTest::newRow("empty line at the end") << "a\n\n"_ba << QStringList{u"a"_s, u""_s};
    QTest::newRow("empty lines between") << "a\n\n\nb"_ba << QStringList{u"a"_s, u""_s, u""_s, u"b"_s};
    QTest::newRow("carriage returns before the ends") << "a\r\nb\r\n"_ba << QStringList{u"a"_s, u"b"_s};
    QTest::newRow("several carriage returns") << "a\r\r\nb\r"_ba << QStringList{u"a"_s, u"b"_s};
    QTest::newRow("blanks at both ends") << " \t\v\f\ra\t b \v\f\r\n"_ba << QStringList{u"a\t b"_s};
    QTest::newRow("blanks alone") << " \t \n\r\n"_ba << QStringList{u""_s, u""_s};
    QTest::newRow("blanks alone at the end") << "a\n  "_ba << QStringList{u"a"_s, u""_s};
    QTest::newRow("carriage return inside the first line")
        << "a\rb;c\r\nd"_ba << QStringList{u"a\rb;c"_s, u"d"_s};
    QTest::newRow("carriage return inside a later line")
        << "d\na\rb;c\n"_ba << QStringList{u"d"_s, u"a\rb;c"_s};
    QTest::newRow("carriage returns alone") << "a\rb\rc"_ba << QStringList{u"a\rb\rc"_s};
    QTest::newRow("zero bytes") << QByteArray("\0a\0b\0\nc", 7)
                                << QStringList{QString::fromLatin1("\0a\0b\0", 5), u"c"_s};
    QTest::newRow("Latin-1") << "M\xfcll\xff\n"_ba << QStringList{u"M\u00fcll\u00ff"_s};
    QTest::newRow("not UTF-8") << "\xc3\xbc\n"_ba << QStringList{u"\u00c3\u00bc"_s};
    QTest::newRow("no-break spaces stay") << "\xa0 a \xa0\n"_ba << QStringList{u"\u00a0 a \u00a0"_s};
    QTest::newRow("next-line characters stay") << "\x85 a \x85\n"_ba << QStringList{u"\u0085 a \u0085"_s};
    QTest::newRow("other control bytes stay") << "\x1c\x1f"
                                                 "a\x1d\x1e\n"_ba
                                              << QStringList{u"\x1c\x1f"
                                                             "a\x1d\x1e"_s};
    QTest::newRow("byte order mark stays")
        << "\xef\xbb\xbfID;1;a\n"_ba << QStringList{u"\u00ef\u00bb\u00bfID;1;a"_s};
}

void TestImageReader::readsLines()
{
    QFETCH(const QByteArray, bytes);
    const TestProject project;
    project.write(u"scr/a.psc"_s, bytes);

    Converter converter(project.dir());
    QStringList lines;
    QString error;
    QVERIFY(converter.readImageFile(project.path(u"scr/a.psc"_s), lines, error));
    QTEST(lines, "lines");
}

void TestImageReader::keepsEveryByteInsideALine()
{
    QByteArray line("<");
    for (int byte = 0; byte <= 0xff; ++byte) {
        if (byte != '\n')
            line += static_cast<char>(byte);
    }
    line += '>';
    const TestProject project;
    project.write(u"scr/a.psc"_s, line + '\n' + line);

    Converter converter(project.dir());
    QStringList lines;
    QString error;
    QVERIFY(converter.readImageFile(project.path(u"scr/a.psc"_s), lines, error));
    QCOMPARE(lines.size(), 2);
    QCOMPARE(lines.at(0).toLatin1(), line);
    QCOMPARE(lines.at(1).toLatin1(), line);
}

void TestImageReader::leavesTheListAloneWhereTheFileCannotBeOpened_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("no such file") << u"scr/gone.psc"_s;
    QTest::newRow("no such folder") << u"gone/a.psc"_s;
    QTest::newRow("a folder") << u"scr/folder.psc"_s;
    QTest::newRow("a file that may not be read") << u"scr/secret.psc"_s;
    QTest::newRow("a link to nothing") << u"scr/dangling.psc"_s;
}

void TestImageReader::leavesTheListAloneWhereTheFileCannotBeOpened()
{
    QFETCH(const QString, name);
    const TestProject project;
    project.makeFolder(u"scr/folder.psc"_s);
    project.write(u"scr/secret.psc"_s, "a"_ba);
    QFile::setPermissions(project.path(u"scr/secret.psc"_s), QFile::Permissions());
    project.link(u"nowhere"_s, u"scr/dangling.psc"_s);

    const OrdinaryUser user;
    Converter converter(project.dir());
    QStringList lines{u"from"_s, u"before"_s};
    QString error = u"from before"_s;
    QVERIFY(!converter.readImageFile(project.path(name), lines, error));
    QCOMPARE(error, u"Could not open Image File"_s);
    QCOMPARE(lines, (QStringList{u"from"_s, u"before"_s}));
}

void TestImageReader::replacesTheListOfTheFileBefore()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, "a\n"_ba);
    Converter converter(project.dir());
    QStringList lines{u"from"_s, u"before"_s};
    QString error;
    QVERIFY(converter.readImageFile(project.path(u"scr/a.psc"_s), lines, error));
    QCOMPARE(lines, QStringList{u"a"_s});
}

void TestImageReader::readsAVeryLongLine()
{
    const QByteArray line = "PNT;1;0"_ba + QByteArray(1 << 20, 'x');
    const TestProject project;
    project.write(u"scr/a.psc"_s, "a\n" + line + "\nb\n");
    Converter converter(project.dir());
    QStringList lines;
    QString error;
    QVERIFY(converter.readImageFile(project.path(u"scr/a.psc"_s), lines, error));
    QCOMPARE(lines, (QStringList{u"a"_s, QString::fromLatin1(line), u"b"_s}));
}

void TestImageReader::knowsWhereInItsFileALineStood()
{
    FileLines lines("one\r\n\n  three \nfour"_ba);
    for (int index = 0; index < lines.size(); ++index)
        QCOMPARE(lines.numberInFile(index), index + 1);
    const FileLines picked = lines.picked({3, 1, 2});
    QCOMPARE(picked.numberInFile(0), 4);
    QCOMPARE(picked.numberInFile(1), 2);
    QCOMPARE(picked.numberInFile(2), 3);
    lines.removeFirst(2);
    QCOMPARE(lines.numberInFile(0), 3);
}

void TestImageReader::checksTheNumberOfFields_data()
{
    QTest::addColumn<QString>("tag");
    QTest::addColumn<int>("present");
    QTest::addColumn<int>("required");
    QTest::addColumn<int>("offset");
    QTest::addColumn<int>("index");
    QTest::addColumn<bool>("imageFile");
    QTest::addColumn<bool>("passes");
    QTest::addColumn<QString>("complaint");

    const QString points = u"PNT"_s;
    const QString library = u"LIB"_s;
    QTest::newRow("enough") << library << 5 << 5 << 0 << 3 << true << true << u""_s;
    QTest::newRow("more than enough") << library << 9 << 5 << 0 << 3 << true << true << u""_s;
    QTest::newRow("too few, image") << library << 4 << 5 << 100 << 3 << true << false
                                    << u"Image File [line 4]: LIB... not enough parameters (must be >= 5)"_s;
    QTest::newRow("too few, shape")
        << library << 4 << 5 << 100 << 3 << false << false
        << u"Shape File [line 104]: LIB... not enough parameters (must be >= 5)"_s;
    QTest::newRow("no tag") << u""_s << 2 << 3 << 0 << 2 << true << false
                            << u"Image File [line 3]: ... not enough parameters (must be >= 3)"_s;
    QTest::newRow("exact") << points << 4 << 4 << 0 << 3 << true << true << u""_s;
    QTest::newRow("too few points, image")
        << points << 4 << 6 << 100 << 3 << true << false
        << u"Image File [line 5]: PNT... not enough parameters (must be >= 6)"_s;
    QTest::newRow("too many points, image")
        << points << 6 << 4 << 100 << 3 << true << true
        << u"Image File [line 4]: PNT... not enough parameters (must be == 4)"_s;
    QTest::newRow("too few points, shape")
        << points << 2 << 4 << 100 << 4 << false << false
        << u"Shape File [line 206]: PNT... not enough parameters (must be >= 4)"_s;
    QTest::newRow("too many points, shape")
        << points << 5 << 4 << 100 << 4 << false << true
        << u"Shape File [line 105]: PNT... not enough parameters (must be == 4)"_s;
    QTest::newRow("no section line in the shape")
        << points << 2 << 4 << -1 << 0 << false << false
        << u"Shape File [line 0]: PNT... not enough parameters (must be >= 4)"_s;
    QTest::newRow("points in lower case count as others")
        << u"pnt"_s << 6 << 4 << 0 << 0 << true << true << u""_s;
    QTest::newRow("points with a separator count as others")
        << u"PNT;"_s << 6 << 4 << 0 << 0 << true << true << u""_s;
    QTest::newRow("fewer than none required")
        << points << 0 << -2 << 0 << 0 << true << true
        << u"Image File [line 1]: PNT... not enough parameters (must be == -2)"_s;
    QTest::newRow("fewer than none present")
        << points << -1 << 0 << 0 << 0 << true << false
        << u"Image File [line 2]: PNT... not enough parameters (must be >= 0)"_s;
}

void TestImageReader::checksTheNumberOfFields()
{
    QFETCH(const QString, tag);
    QFETCH(const int, present);
    QFETCH(const int, required);
    QFETCH(const int, offset);
    QFETCH(const int, index);
    QFETCH(const bool, imageFile);

    Converter converter{QString()};
    converter.shapeLineOffset = offset;
    QString error = u"from before"_s;
    const LogRecorder log;
    QTEST(converter.checkFieldCount(tag, present, required, error, index, imageFile), "passes");
    QTEST(error, "complaint");
    QCOMPARE(log.entries, QStringList());
}

void TestImageReader::reportsWithoutThePathAndLogsWithIt_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("expanded");

    QTest::newRow("not opened") << u"/p/scr/a.psc"_s << u"Could not open Image File"_s
                                << u"Could not open Image File /p/scr/a.psc"_s;
    QTest::newRow("a line's complaint")
        << u"/p/scr/a.psc"_s << u"Image File [line 7]: LIB... not enough parameters (must be >= 5)"_s
        << u"Image File /p/scr/a.psc [line 7]: LIB... not enough parameters (must be >= 5)"_s;
    QTest::newRow("named twice") << u"/p/a.psc"_s << u"Image File, Image File"_s
                                 << u"Image File /p/a.psc, Image File /p/a.psc"_s;
    QTest::newRow("other letter case") << u"/p/a.psc"_s << u"image file"_s << u"image file"_s;
    QTest::newRow("the words in the path")
        << u"/Image File/a.psc"_s << u"Image File!"_s << u"Image File /Image File/a.psc!"_s;
    QTest::newRow("a place holder in the path")
        << u"/p/%1/a.psc"_s << u"Image File!"_s << u"Image File /p/%1/a.psc!"_s;
    QTest::newRow("nothing to expand") << u"/p/a.psc"_s << u"Nothing"_s << u"Nothing"_s;
}

void TestImageReader::reportsWithoutThePathAndLogsWithIt()
{
    QFETCH(const QString, path);
    QFETCH(QString, message);
    QFETCH(const QString, expanded);

    Converter converter{QString()};
    const RunRecorder recorder(converter);
    const LogRecorder log;
    const QString given = message;
    converter.reportImageFileError(path, message);

    QCOMPARE(recorder.events, QStringList{u"report ERROR"_s});
    QCOMPARE(recorder.reports.constFirst().imageFile, path);
    QCOMPARE(recorder.reports.constFirst().error, given);
    QCOMPARE(message, expanded);
    QCOMPARE(log.entries, QStringList{"error: "_L1 + expanded});
    QVERIFY2(log.namesSource(0, u"tools/Vantrel/Converter"_s, 1460), qUtf8Printable(log.lines.value(0)));
}

void TestImageReader::reportsAClearedRecord()
{
    Converter converter{QString()};
    const RunRecorder recorder(converter);
    QString message = u"Could not open Image File"_s;
    converter.reportImageFileError(u"/p/scr/a.psc"_s, message);
    QCOMPARE(toText(recorder.reports.constFirst()),
             u"ERROR | /p/scr/a.psc |  |  |  |  | lines -1 to -1 | level -1 | rect 99999 99999 0 0 | "
             "at -99999 -99999 | Could not open Image File"_s);
}

VANTREL_TEST(QCoreApplication, TestImageReader)
#include "tst_imagereader.moc"
