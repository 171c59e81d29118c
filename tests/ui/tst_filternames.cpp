// Collecting the names of shape files from image files.
#include "FilterNames.h"
#include "TestProject.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestFilterNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void collectsNames_data();
    void collectsNames();
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
    QSet<QString> names;
    collectFilterNames(project.path(u"missing.psc"_s), &names);
    collectFilterNames(project.path(u"folder.psc"_s), &names);
    collectFilterNames(u"/proc/self/mem"_s, &names); // opens, but cannot be read from its beginning
    QCOMPARE(names, QSet<QString>());
}

QTEST_GUILESS_MAIN(TestFilterNames)
#include "tst_filternames.moc"
