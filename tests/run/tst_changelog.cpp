// The report record and the change log.
#include "ChangeLog.h"
#include "Converter.h"
#include "Recorders.h"
#include "TestProject.h"
#include "TestSuite.h"

#include <QtTest>

#include <array>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {
constexpr char header[] =
    "Status; Image File; Shape File; Image-Object; Replace by Shape-Object; Uminitalisation; Error\n";

Converter::STBlock replacedBlock()
{
    Converter::STBlock block;
    block.imageFile = u"/p/scr/a.psc"_s;
    block.shapeFile = u"pump.plb"_s;
    block.imageObject = u"OBJ:old"_s;
    block.shapeObject = u"OBJ:new"_s;
    block.initText = u"p101"_s;
    return block;
}

/// Puts something else where a project's log "log/run.csv" would lie.
void setUpInPlaceOfALog(const TestProject &project, const QString &what)
{
    const QByteArray path = QFile::encodeName(project.path(u"log/run.csv"_s));
    constexpr mode_t ownersOnly = 0600;
    if (what == "link to a file"_L1)
        project.link(u"../notes.txt"_s, u"log/run.csv"_s);
    else if (what == "link to nothing"_L1)
        project.link(u"../new.txt"_s, u"log/run.csv"_s);
    else if (what == "second name of a file"_L1)
        QCOMPARE(::link(QFile::encodeName(project.path(u"notes.txt"_s)).constData(), path.constData()), 0);
    else if (what == "folder"_L1)
        project.makeFolder(u"log/run.csv"_s);
    else
        QCOMPARE(::mknod(path.constData(), (what == "pipe"_L1 ? S_IFIFO : S_IFSOCK) | ownersOnly, 0), 0);
}
} // namespace

class TestChangeLog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesTheStatus_data();
    void namesTheStatus();
    void writesTheHeaderOnceAndThenRows();
    void writesTheRowsThatWereKeptInOneGo();
    void writesNothingWhereNoRowWasKept();
    void goesOnAtItsPathWhenTheLogWasMoved();
    void appendsToALogThatIsThereWithoutAHeader();
    void writesRows_data();
    void writesRows();
    void fillsPlaceHoldersOneAfterTheOther();
    void fillsPlaceHoldersOfRowsBelowALimit_data();
    void fillsPlaceHoldersOfRowsBelowALimit();
    void keepsWhatOnlyLooksLikePlaceHolders();
    void staysSmallWhateverARowWouldBecome();
    void tellsOfUnfilledRowsOnceForEachLog();
    void writesLatin1();
    void passesOverALogThatCannotBeOpened_data();
    void passesOverALogThatCannotBeOpened();
    void writesOnlyIntoAFileOfItsOwn_data();
    void writesOnlyIntoAFileOfItsOwn();
    void writesNothingIntoAPipeThatIsRead();
    void writesNothingIntoALinkedFolder();
    void leavesALogThatALinkHasReplaced();
    void tellsWhetherALogLiesThere();
    void startsWithAFreshRecord();
    void clearsARecordToOtherValues();
    void copiesRecordsByValue();
    void namesTheLogByProjectAndTime();
    void createsNoLogFileBeforeTheFirstReport();
};

void TestChangeLog::namesTheStatus_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("text");
    QTest::newRow("replaced") << 0 << u"REPLACE"_s;
    QTest::newRow("not replaced") << 1 << u"NO REPLACE"_s;
    QTest::newRow("error") << 2 << u"ERROR"_s;
    QTest::newRow("beyond") << 3 << u"REPLACE"_s;
    QTest::newRow("negative") << -1 << u"REPLACE"_s;
}

void TestChangeLog::namesTheStatus()
{
    QFETCH(const int, status);
    QTEST(statusText(status), "text");
}

void TestChangeLog::writesTheHeaderOnceAndThenRows()
{
    const TestProject project;
    project.makeFolder(u"log"_s);
    Converter::STBlock block = replacedBlock();
    writeChangeLog(block, project.path(u"log/run.csv"_s));
    block.status = 2;
    block.error = u"Could not open Shape File"_s;
    writeChangeLog(block, project.path(u"log/run.csv"_s));

    QCOMPARE(project.read(u"log/run.csv"_s),
             QByteArray(header) + "REPLACE;/p/scr/a.psc;pump.plb;old;new;p101;\n"
                                  "ERROR;/p/scr/a.psc;pump.plb;old;new;p101;Could not open Shape File\n");
}

void TestChangeLog::writesTheRowsThatWereKeptInOneGo()
{
    const TestProject project;
    ChangeLog log;
    Converter::STBlock block = replacedBlock();
    log.add(block);
    block.initText = u"p102"_s;
    log.add(block);
    QVERIFY(!project.exists(u"run.csv"_s));
    log.write(project.path(u"run.csv"_s));
    const QByteArray both = QByteArray(header) + "REPLACE;/p/scr/a.psc;pump.plb;old;new;p101;\n"
                                                 "REPLACE;/p/scr/a.psc;pump.plb;old;new;p102;\n";
    QCOMPARE(project.read(u"run.csv"_s), both);

    block.initText = u"p103"_s;
    log.append(block, project.path(u"run.csv"_s));
    QCOMPARE(project.read(u"run.csv"_s), both + "REPLACE;/p/scr/a.psc;pump.plb;old;new;p103;\n");
}

void TestChangeLog::writesNothingWhereNoRowWasKept()
{
    const TestProject project;
    ChangeLog log;
    log.write(project.path(u"run.csv"_s));
    QVERIFY(!project.exists(u"run.csv"_s));
}

void TestChangeLog::goesOnAtItsPathWhenTheLogWasMoved()
{
    const TestProject project;
    const QString path = project.path(u"run.csv"_s);
    const QByteArray oneRow = QByteArray(header) + "REPLACE;/p/scr/a.psc;pump.plb;old;new;p101;\n";
    ChangeLog log;
    log.append(replacedBlock(), path);
    QVERIFY(QFile::rename(path, project.path(u"kept.csv"_s)));
    log.append(replacedBlock(), path);
    QCOMPARE(project.read(u"kept.csv"_s), oneRow);
    QCOMPARE(project.read(u"run.csv"_s), oneRow);

    QVERIFY(QFile::remove(path));
    QVERIFY(QFile::rename(project.path(u"kept.csv"_s), path)); // another file in its place
    log.append(replacedBlock(), path);
    QCOMPARE(project.read(u"run.csv"_s), oneRow + "REPLACE;/p/scr/a.psc;pump.plb;old;new;p101;\n");
}

void TestChangeLog::appendsToALogThatIsThereWithoutAHeader()
{
    const TestProject project;
    project.write(u"log/empty.csv"_s, QByteArray());
    project.write(u"log/notes.csv"_s, "notes"_ba);
    writeChangeLog(replacedBlock(), project.path(u"log/empty.csv"_s));
    writeChangeLog(replacedBlock(), project.path(u"log/notes.csv"_s));
    QCOMPARE(project.read(u"log/empty.csv"_s), "REPLACE;/p/scr/a.psc;pump.plb;old;new;p101;\n"_ba);
    QCOMPARE(project.read(u"log/notes.csv"_s), "notesREPLACE;/p/scr/a.psc;pump.plb;old;new;p101;\n"_ba);
}

void TestChangeLog::writesRows_data()
{
    QTest::addColumn<QString>("imageObject");
    QTest::addColumn<QString>("shapeObject");
    QTest::addColumn<QString>("columns");

    QTest::newRow("both names, without their first four") << u"OBJ:old"_s << u"OBJ:new"_s << u"old;new"_s;
    QTest::newRow("equal names") << u"OBJ:pump"_s << u"OBJ:pump"_s << u"pump;"_s;
    QTest::newRow("equal but for the first four") << u"OBJ:pump"_s << u"STD:pump"_s << u"pump;"_s;
    QTest::newRow("equal but for letter case") << u"OBJ:pump"_s << u"OBJ:Pump"_s << u"pump;Pump"_s;
    QTest::newRow("exactly four characters") << u"OBJ:"_s << u"OBJ:new"_s << u";new"_s;
    QTest::newRow("both exactly four") << u"OBJ:"_s << u"STD:"_s << u";"_s;
    QTest::newRow("shorter than four stays whole") << u"OBJ"_s << u"ab"_s << u"OBJ;ab"_s;
    QTest::newRow("short and equal") << u"ab"_s << u"ab"_s << u"ab;"_s;
    QTest::newRow("no shape object") << u"OBJ:old"_s << u""_s << u"old;"_s;
    QTest::newRow("neither") << u""_s << u""_s << u";"_s;
    QTest::newRow("nothing is quoted") << u"OBJ:a;\"b"_s << u"OBJ:=c'\\d"_s << u"a;\"b;=c'\\d"_s;
    QTest::newRow("control characters are spelt out")
        << u"OBJ:a\nERROR;\rb"_s << u"OBJ:\t\u0000\u001b[2J\u007f"_s
        << uR"(a\nERROR;\rb;\t\x00\x1b[2J\x7f)"_s;
    QTest::newRow("line ends take no place of a tag") << u"\n\n\n\nold"_s << u"OBJ:\n"_s << uR"(old;\n)"_s;
    QTest::newRow("bytes of other encodings")
        << u"OBJ:\u00c3\u009f"_s << u"OBJ:\u0096"_s << u"\u00c3\u009f;\u0096"_s;
}

void TestChangeLog::writesRows()
{
    QFETCH(const QString, imageObject);
    QFETCH(const QString, shapeObject);
    QFETCH(const QString, columns);

    const TestProject project;
    Converter::STBlock block = replacedBlock();
    block.imageObject = imageObject;
    block.shapeObject = shapeObject;
    writeChangeLog(block, project.path(u"run.csv"_s));
    QCOMPARE(project.read(u"run.csv"_s),
             header + QByteArray("REPLACE;/p/scr/a.psc;pump.plb;") + columns.toLatin1() + ";p101;\n");
}

void TestChangeLog::fillsPlaceHoldersOneAfterTheOther()
{
    const TestProject project;
    Converter::STBlock block = replacedBlock();
    // The lowest place holder left is filled next, also one that a field brought along.
    block.imageFile = u"/p/%3/a.psc"_s;
    writeChangeLog(block, project.path(u"run.csv"_s));
    QCOMPARE(project.read(u"run.csv"_s),
             header + QByteArray("REPLACE;/p/pump.plb/a.psc;pump.plb;old;new;p101;\n"));
}

void TestChangeLog::fillsPlaceHoldersOfRowsBelowALimit_data()
{
    QTest::addColumn<int>("placeHolders");
    QTest::addColumn<int>("errorSize");
    QTest::addColumn<bool>("isFilled");

    // Beside the error and the screen, which takes it in, stand "NO REPLACE;" and five separators.
    constexpr int limit = 1 << 16;
    constexpr int around = 16;
    QTest::newRow("below the limit") << 1 << (limit - around) / 2 - 1 << true;
    QTest::newRow("the limit") << 1 << (limit - around) / 2 << false;
    QTest::newRow("many place holders") << 400 << 400 << false;
    QTest::newRow("a long field without many") << 1 << limit << false;
}

void TestChangeLog::fillsPlaceHoldersOfRowsBelowALimit()
{
    QFETCH(const int, placeHolders);
    QFETCH(const int, errorSize);
    QFETCH(const bool, isFilled);

    const TestProject project;
    Converter::STBlock block;
    block.status = ReportStatus::NotReplaced;
    block.imageFile = u"%7"_s.repeated(placeHolders);
    block.error = QString(errorSize, u'e');
    const LogRecorder log;
    writeChangeLog(block, project.path(u"run.csv"_s));
    const QByteArray error = block.error.toLatin1();
    const QByteArray screen = isFilled ? error.repeated(placeHolders) : block.imageFile.toLatin1();
    QCOMPARE(project.read(u"run.csv"_s),
             QByteArray(header) + "NO REPLACE;" + screen + ";;;;;" + error + '\n');
    QCOMPARE(log.entries.size(), isFilled ? 0 : 1);
}

void TestChangeLog::keepsWhatOnlyLooksLikePlaceHolders()
{
    const TestProject project;
    Converter::STBlock block = replacedBlock();
    block.initText = u"50 %, %L, %x, %"_s;
    const LogRecorder log;
    writeChangeLog(block, project.path(u"run.csv"_s));
    QCOMPARE(project.read(u"run.csv"_s),
             header + QByteArray("REPLACE;/p/scr/a.psc;pump.plb;old;new;50 %, %L, %x, %;\n"));
    QCOMPARE(log.entries, QStringList());
}

void TestChangeLog::staysSmallWhateverARowWouldBecome()
{
    const TestProject project;
    Converter::STBlock block;
    // Filled, each of them multiplies the one behind it: some 10 to the 14th characters.
    constexpr int many = 2000;
    block.shapeFile = u"%4"_s.repeated(many);
    block.imageObject = u"OBJ:"_s + u"%5"_s.repeated(many);
    block.shapeObject = u"OBJ:"_s + u"%6"_s.repeated(many);
    block.initText = u"%7"_s.repeated(many);
    block.error = QString(many, u'e');
    writeChangeLog(block, project.path(u"run.csv"_s));
    QCOMPARE(project.read(u"run.csv"_s),
             header + QByteArray("REPLACE;;") + QByteArray("%4").repeated(many) + ';' +
                 QByteArray("%5").repeated(many) + ';' + QByteArray("%6").repeated(many) + ';' +
                 QByteArray("%7").repeated(many) + ';' + QByteArray(many, 'e') + '\n');
}

void TestChangeLog::tellsOfUnfilledRowsOnceForEachLog()
{
    const TestProject project;
    Converter::STBlock block;
    constexpr int many = 400;
    block.imageFile = u"/p/scr/a.psc"_s;
    block.initText = u"%7"_s.repeated(many);
    block.error = QString(many, u'e');
    Converter::STBlock next = block;
    next.imageFile = u"/p/scr/b.psc"_s;

    const QString warning =
        u"warning: A row of the change log would be too long with the place holders in its names filled, "
        "so they were left as they are. The names stand on screen /p/scr/a.psc"_s;
    const LogRecorder recorder;
    ChangeLog log;
    log.append(block, project.path(u"run.csv"_s));
    log.append(next, project.path(u"run.csv"_s));
    log.append(block, project.path(u"run.csv"_s));
    QCOMPARE(recorder.entries, QStringList{warning});
    log.append(block, project.path(u"next.csv"_s));
    QCOMPARE(recorder.entries, QStringList({warning, warning}));
    log.append(block, project.path(u"nowhere/run.csv"_s));
    QCOMPARE(recorder.entries.size(), 2); // nothing was written
}

void TestChangeLog::writesLatin1()
{
    const TestProject project;
    Converter::STBlock block = replacedBlock();
    block.initText = u"Gr\u00fc\u00dfe"_s;
    block.error = u"\u20ac"_s;
    writeChangeLog(block, project.path(u"run.csv"_s));
    QCOMPARE(project.read(u"run.csv"_s), header +
                                             QByteArray("REPLACE;/p/scr/a.psc;pump.plb;old;new;Gr\xfc\xdf"
                                                        "e;") +
                                             QStringView(u"\u20ac").toLatin1() + '\n');
}

void TestChangeLog::passesOverALogThatCannotBeOpened_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("no folder for it") << u"log/run.csv"_s;
    QTest::newRow("a folder in its place") << u"folder"_s;
}

void TestChangeLog::passesOverALogThatCannotBeOpened()
{
    QFETCH(const QString, name);
    const TestProject project;
    project.makeFolder(u"folder"_s);
    const LogRecorder log;
    writeChangeLog(replacedBlock(), project.path(name));
    QCOMPARE(project.files(u""_s), QStringList());
    QVERIFY(!project.exists(u"log"_s));
    QCOMPARE(log.entries, QStringList());
}

void TestChangeLog::writesOnlyIntoAFileOfItsOwn_data()
{
    QTest::addColumn<QString>("setUp");
    for (const char *const name :
         {"link to a file", "link to nothing", "second name of a file", "pipe", "folder", "socket"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void TestChangeLog::writesOnlyIntoAFileOfItsOwn()
{
    QFETCH(const QString, setUp);
    const TestProject project;
    project.write(u"notes.txt"_s, "notes\n");
    project.makeFolder(u"log"_s);
    setUpInPlaceOfALog(project, setUp);
    const QStringList before = project.files(u""_s);

    const LogRecorder log;
    const QString path = project.path(u"log/run.csv"_s);
    writeChangeLog(replacedBlock(), path);
    QCOMPARE(project.files(u""_s), before);
    QCOMPARE(project.read(u"notes.txt"_s), "notes\n"_ba);
    QVERIFY(!isChangeLog(path));
    QCOMPARE(log.entries, QStringList());
}

void TestChangeLog::writesNothingIntoAPipeThatIsRead()
{
    const TestProject project;
    const QByteArray path = QFile::encodeName(project.path(u"run.csv"_s));
    constexpr mode_t ownersOnly = 0600;
    QCOMPARE(::mkfifo(path.constData(), ownersOnly), 0);
    const int reader = ::open(path.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    QVERIFY(reader >= 0);
    writeChangeLog(replacedBlock(), project.path(u"run.csv"_s));
    std::array<char, 8> read{};
    QCOMPARE(::read(reader, read.data(), read.size()), ssize_t{0});
    ::close(reader);
}

void TestChangeLog::writesNothingIntoALinkedFolder()
{
    const TestProject project;
    project.makeFolder(u"elsewhere"_s);
    project.link(u"elsewhere"_s, u"log"_s);
    for (const QString &name : {u"log/run.csv"_s, u"log//run.csv"_s}) {
        writeChangeLog(replacedBlock(), project.path(name));
        QVERIFY(!isChangeLog(project.path(name)));
    }
    QCOMPARE(project.files(u"elsewhere"_s), QStringList());

    // How the project itself is reached is the user's matter.
    project.link(u"."_s, u"linked"_s);
    project.remove(u"log"_s);
    project.makeFolder(u"log"_s);
    writeChangeLog(replacedBlock(), project.path(u"linked/log/run.csv"_s));
    QVERIFY(project.exists(u"log/run.csv"_s));
}

void TestChangeLog::leavesALogThatALinkHasReplaced()
{
    const TestProject project;
    const QString path = project.path(u"run.csv"_s);
    project.write(u"notes.txt"_s, "notes\n");
    ChangeLog log;
    log.append(replacedBlock(), path);
    QVERIFY(QFile::rename(path, project.path(u"kept.csv"_s)));
    project.link(u"notes.txt"_s, u"run.csv"_s);
    const QByteArray kept = project.read(u"kept.csv"_s);
    log.append(replacedBlock(), path);
    QCOMPARE(project.read(u"notes.txt"_s), "notes\n"_ba);
    QCOMPARE(project.read(u"kept.csv"_s), kept);
}

void TestChangeLog::tellsWhetherALogLiesThere()
{
    const TestProject project;
    const QString path = project.path(u"log/run.csv"_s);
    QVERIFY(!isChangeLog(path)); // not even a folder for it
    project.makeFolder(u"log"_s);
    QVERIFY(!isChangeLog(path));
    writeChangeLog(replacedBlock(), path);
    QVERIFY(isChangeLog(path));
    QVERIFY(!isChangeLog(QString()));
}

void TestChangeLog::startsWithAFreshRecord()
{
    const Converter::STBlock block;
    QCOMPARE(block.firstLine, 0);
    QCOMPARE(block.lastLine, 0);
    QCOMPARE(block.extraNumber, 0);
    QCOMPARE(block.status, 0);
    QVERIFY(!block.replace);
    QVERIFY(!block.iconToggle);
    for (const QString &text : {block.shapeFile, block.imageFile, block.initText, block.imageObject,
                                block.shapeObject, block.error, block.extraText})
        QCOMPARE(text, u""_s);
    QCOMPARE(block.missingIcons, QStringList());
    for (const QRect &rect : {block.rect, block.rect2, block.rect3})
        QCOMPARE(toText(rect), u"0 0 -1 -1"_s);
}

void TestChangeLog::clearsARecordToOtherValues()
{
    Converter::STBlock block = replacedBlock();
    block.firstLine = block.lastLine = block.extraNumber = block.status = 7;
    block.replace = block.iconToggle = true;
    block.error = block.extraText = u"text"_s;
    block.missingIcons = QStringList{u"a.bmp"_s};
    block.rect = block.rect2 = block.rect3 = QRect(1, 2, 3, 4);
    Converter::clearBlock(block);

    QCOMPARE(block.firstLine, -1);
    QCOMPARE(block.lastLine, -1);
    QCOMPARE(block.extraNumber, -1);
    QCOMPARE(block.status, 0);
    QVERIFY(!block.replace);
    QVERIFY(!block.iconToggle);
    for (const QString &text : {block.shapeFile, block.imageFile, block.initText, block.imageObject,
                                block.shapeObject, block.error, block.extraText})
        QCOMPARE(text, u""_s);
    QCOMPARE(block.missingIcons, QStringList());
    QCOMPARE(toText(block.rect), u"99999 99999 0 0"_s);
    QCOMPARE(toText(block.rect2), u"0 0 0 0"_s);
    QCOMPARE(toText(block.rect3), u"-99999 -99999 0 0"_s);
}

void TestChangeLog::copiesRecordsByValue()
{
    const Converter::STBlock block = replacedBlock();
    const QVariant variant = QVariant::fromValue(block);
    const Converter converter{QString()}; // which registers the type
    QCOMPARE(variant.metaType(), QMetaType::fromName("Converter::STBlock"));
    QCOMPARE(toText(variant.value<Converter::STBlock>()), toText(block));
}

void TestChangeLog::namesTheLogByProjectAndTime()
{
    Converter converter(u"/plant"_s);
    QCOMPARE(converter.logFileName(), u""_s);
    converter.createLogFileName();

    static const QRegularExpression pattern(
        u"^/plant/log/Vantrel(_\\d{4}-\\d\\d-\\d\\d_\\d\\d-\\d\\d-\\d\\d)\\.csv$"_s);
    const QRegularExpressionMatch match = pattern.match(converter.logFileName());
    QVERIFY2(match.hasMatch(), qUtf8Printable(converter.logFileName()));
    QVERIFY(QDateTime::fromString(match.captured(1), u"_yyyy-MM-dd_hh-mm-ss"_s).isValid());
}

void TestChangeLog::createsNoLogFileBeforeTheFirstReport()
{
    const TestProject project;
    project.makeFolder(u"log"_s);
    Converter converter(project.dir());
    converter.createLogFileName();
    QCOMPARE(project.files(u"log"_s), QStringList());

    writeChangeLog(replacedBlock(), converter.logFileName());
    QCOMPARE(project.files(u"log"_s).size(), 1);
    QCOMPARE(project.dir() + "/log/"_L1 + project.files(u"log"_s).constFirst(), converter.logFileName());
}

VANTREL_TEST(QCoreApplication, TestChangeLog)
#include "tst_changelog.moc"
