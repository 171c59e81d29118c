// Collecting the names of shape files from image files.
#include "FilterNames.h"
#include "TestProject.h"
#include "TestSuite.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

/// The same names, found in the obvious way.
QSet<QString> namesLineByLine(const QByteArray &bytes)
{
    QSet<QString> names;
    const QList<QByteArray> lines = bytes.split('\n');
    for (const QByteArray &line : lines) {
        const QList<QByteArray> fields = line.trimmed().split(';');
        if (fields.first().startsWith("LIB") && fields.size() > 1 && !fields.at(1).isEmpty())
            names += QString::fromLatin1(fields.at(1));
    }
    return names;
}

} // namespace

class TestFilterNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void collectsNames_data();
    void collectsNames();
    void collectsWhatEachLineHolds();
    void addsToWhatIsThere();
    void addsNothingForAFileThatCannotBeRead();
};

void TestFilterNames::collectsNames_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QSet<QString>>("names");

    using Names = QSet<QString>;
    QTest::newRow("one line") << "LIB;Pump1;x\n"_ba << Names{u"Pump1"_s};
    QTest::newRow("each name once") << "LIB;Pump1;x\nLIB;Pump1\n"_ba << Names{u"Pump1"_s};
    QTest::newRow("letter case tells names apart") << "LIB;a\nLIB;A\n"_ba << Names{u"a"_s, u"A"_s};
    QTest::newRow("empty name") << "LIB;\nLIB;;x\n"_ba << Names{};
    QTest::newRow("no name") << "LIB\n"_ba << Names{};
    QTest::newRow("tag in lower case") << "lib;Pump1\n"_ba << Names{};
    QTest::newRow("longer tag") << "LIBX;Valve\n"_ba << Names{u"Valve"_s};
    QTest::newRow("tag inside a line") << "ID;LIB;Pump1\n"_ba << Names{};
    QTest::newRow("blanks before the tag") << " \t LIB;Pump1;x\n"_ba << Names{u"Pump1"_s};
    QTest::newRow("blanks inside the name") << "LIB; a b ;x\n"_ba << Names{u" a b "_s};
    QTest::newRow("a blank as name") << "LIB; ;x\n"_ba << Names{u" "_s};
    QTest::newRow("blanks at the end of the line") << "LIB;Pump1 \t\r\n"_ba << Names{u"Pump1"_s};
    QTest::newRow("CR LF") << "LIB;a.plb\r\nLIB;b.plb;2\r\n"_ba << Names{u"a.plb"_s, u"b.plb"_s};
    QTest::newRow("CR inside the first line") << "LIB;a\rb;x\n"_ba << Names{u"a\rb"_s};
    QTest::newRow("no line end at the end") << "ID;1\nLIB;last"_ba << Names{u"last"_s};
    QTest::newRow("Latin-1") << "LIB;\xdc"
                                "bersicht.plb;1\n"_ba
                             << Names{u"\u00dcbersicht.plb"_s};
    QTest::newRow("markup and placeholders") << "LIB;<b>%1</b>;1\n"_ba << Names{u"<b>%1</b>"_s};
    QTest::newRow("tag as name") << "LIB;LIB;x\nLIB LIB;a\n"_ba << Names{u"LIB"_s, u"a"_s};
    QTest::newRow("all kinds of blanks before the tag") << "x\n \n\t\v\f\r LIB;a\n"_ba << Names{u"a"_s};
    QTest::newRow("empty lines") << "\n\nLIB;a\n\n"_ba << Names{u"a"_s};
    QTest::newRow("empty file") << ""_ba << Names{};
}

void TestFilterNames::collectsNames()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const QSet<QString>, names);
    const TestProject project;
    project.write(u"scr/a.psc"_s, bytes);

    QSet<QString> collected;
    collectFilterNames(project.path(u"scr/a.psc"_s), &collected);
    QCOMPARE(collected, names);
}

void TestFilterNames::collectsWhatEachLineHolds()
{
    const TestProject project;
    const QByteArray alphabet = "LLIIBB;;; \n\n\r\t\va\xe4\0"_ba;
    QRandomGenerator random(1729);
    int found = 0;
    for (int round = 0; round < 300; ++round) {
        QByteArray bytes;
        for (int line = 0; line < 30; ++line) {
            bytes += random.bounded(2) == 0 ? "LIB;" : "";
            for (int length = random.bounded(9); length > 0; --length)
                bytes += alphabet.at(random.bounded(int(alphabet.size())));
            bytes += random.bounded(4) == 0 ? "" : "\n";
        }
        project.write(u"a.psc"_s, bytes);
        QSet<QString> names;
        collectFilterNames(project.path(u"a.psc"_s), &names);
        QCOMPARE(names, namesLineByLine(bytes));
        found += int(names.size());
    }
    QVERIFY(found > 1000);
}

void TestFilterNames::addsToWhatIsThere()
{
    const TestProject project;
    project.write(u"a.psc"_s, "LIB;second\n");
    QSet<QString> names{u"first"_s};
    collectFilterNames(project.path(u"a.psc"_s), &names);
    QCOMPARE(names, QSet<QString>({u"first"_s, u"second"_s}));
}

void TestFilterNames::addsNothingForAFileThatCannotBeRead()
{
    const TestProject project;
    project.makeFolder(u"folder.psc"_s);
    constexpr mode_t forOwner = 0600;
    QCOMPARE(mkfifo(QFile::encodeName(project.path(u"pipe.psc"_s)).constData(), forOwner), 0);
    QSet<QString> names;
    collectFilterNames(project.path(u"pipe.psc"_s), &names);
    collectFilterNames(project.path(u"missing.psc"_s), &names);
    collectFilterNames(project.path(u"folder.psc"_s), &names);
    collectFilterNames(u"/proc/self/mem"_s, &names); // opens, but cannot be read from its beginning
    QCOMPARE(names, QSet<QString>());
}

VANTREL_TEST(QCoreApplication, TestFilterNames)
#include "tst_filternames.moc"
