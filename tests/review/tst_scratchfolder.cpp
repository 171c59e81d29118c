// Folders for temporary files: they go away, and so does what a killed process has left.
#include "DeepFolders.h"
#include "ScratchFolder.h"
#include "ScratchProject.h"
#include "TestProject.h"
#include "TestSuite.h"
#include "updUtils.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

QStringList namesIn(const TestProject &place)
{
    return QDir(place.dir()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
}

void setMode(const TestProject &place, const QString &name, mode_t mode)
{
    QCOMPARE(::chmod(QFile::encodeName(place.path(name)).constData(), mode), 0);
}

} // namespace

class TestScratchFolder final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void letsNobodyElseIn();
    void goesAwayWithAllInIt();
    void cannotBeMadeWhereThereIsNoFolder();
    void removesWhatIsLeftOver();
    void leavesWhatSomebodyHolds();
    void leavesWhatIsNotItsOwn_data();
    void leavesWhatIsNotItsOwn();
    void leavesWhatALinkLeadsTo();
    void removesLeftOversOfAnyDepth();
    void standsInForNoProjectThatIsTooDeep();
};

void TestScratchFolder::letsNobodyElseIn()
{
    const TestProject place;
    ScratchFolder folder;
    QVERIFY(folder.makeIn(place.dir()));
    QVERIFY(folder.path().startsWith(place.path(u"vantrel-dry-run-"_s)));
    struct stat status = {};
    QCOMPARE(::stat(QFile::encodeName(folder.path()).constData(), &status), 0);
    QCOMPARE(status.st_mode & 07777U, 0700U);
}

void TestScratchFolder::goesAwayWithAllInIt()
{
    const TestProject place;
    place.write(u"elsewhere/kept"_s, "x"_ba);
    {
        ScratchFolder folder;
        QVERIFY(folder.makeIn(place.dir()));
        QVERIFY(QDir().mkpath(folder.path() + "/a/b"_L1));
        QVERIFY(QFile::link(place.path(u"elsewhere"_s), folder.path() + "/a/link"_L1));
    }
    QCOMPARE(place.files(u""_s), QStringList{u"elsewhere/kept"_s});
    QCOMPARE(namesIn(place), QStringList{u"elsewhere"_s});
}

void TestScratchFolder::cannotBeMadeWhereThereIsNoFolder()
{
    const TestProject place;
    ScratchFolder folder;
    QVERIFY(!folder.makeIn(place.path(u"gone"_s)));
    QCOMPARE(folder.path(), QString());
}

void TestScratchFolder::removesWhatIsLeftOver()
{
    const TestProject place;
    place.write(u"vantrel-dry-run-1/plant/scr/a.psc"_s, "x"_ba);
    setMode(place, u"vantrel-dry-run-1"_s, 0700);
    {
        ScratchFolder folder;
        QVERIFY(folder.makeIn(place.dir()));
        QCOMPARE(namesIn(place), QStringList{QFileInfo(folder.path()).fileName()});
    }
    QCOMPARE(namesIn(place), QStringList());
}

void TestScratchFolder::leavesWhatSomebodyHolds()
{
    const TestProject place;
    ScratchFolder first;
    QVERIFY(first.makeIn(place.dir()));
    ScratchFolder second;
    QVERIFY(second.makeIn(place.dir()));
    QVERIFY(QFileInfo(first.path()).isDir());
}

void TestScratchFolder::leavesWhatIsNotItsOwn_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<mode_t>("mode");
    QTest::newRow("of another name") << u"vantrel-run"_s << mode_t{0700};
    QTest::newRow("that others may enter") << u"vantrel-dry-run-1"_s << mode_t{0755};
}

void TestScratchFolder::leavesWhatIsNotItsOwn()
{
    QFETCH(const QString, name);
    QFETCH(const mode_t, mode);
    const TestProject place;
    place.write(name + "/kept"_L1, "x"_ba);
    place.write(u"vantrel-dry-run-file"_s, "x"_ba);
    setMode(place, name, mode);
    {
        ScratchFolder folder;
        QVERIFY(folder.makeIn(place.dir()));
    }
    QCOMPARE(place.read(name + "/kept"_L1), "x"_ba);
    QCOMPARE(place.read(u"vantrel-dry-run-file"_s), "x"_ba);
}

void TestScratchFolder::leavesWhatALinkLeadsTo()
{
    const TestProject place;
    place.write(u"elsewhere/kept"_s, "x"_ba);
    setMode(place, u"elsewhere"_s, 0700);
    place.link(u"elsewhere"_s, u"vantrel-dry-run-1"_s);
    {
        ScratchFolder folder;
        QVERIFY(folder.makeIn(place.dir()));
    }
    QCOMPARE(place.read(u"elsewhere/kept"_s), "x"_ba);
    QVERIFY(QFileInfo(place.path(u"vantrel-dry-run-1"_s)).isSymLink());
}

void TestScratchFolder::removesLeftOversOfAnyDepth()
{
    const TestProject place;
    place.makeFolder(u"vantrel-dry-run-1"_s);
    setMode(place, u"vantrel-dry-run-1"_s, 0700);
    makeDeepFolders(place.path(u"vantrel-dry-run-1"_s), veryDeep);
    onSmallStack([&] { ScratchFolder::removeLeftOversIn(place.dir()); });
    QCOMPARE(namesIn(place), QStringList());
}

void TestScratchFolder::standsInForNoProjectThatIsTooDeep()
{
    const TestProject place;
    place.write(u"plant/scr/a.psc"_s, "a"_ba);
    place.makeFolder(u"temporary"_s);
    makeDeepFolders(place.path(u"plant/scr"_s), veryDeep);
    qputenv("TMPDIR", QFile::encodeName(place.path(u"temporary"_s)));
    QString error;
    onSmallStack([&] { error = ScratchProject(place.path(u"plant"_s)).error(); });
    qunsetenv("TMPDIR");
    QVERIFY2(error.endsWith(": File name too long"_L1), qPrintable(error));
    QCOMPARE(place.files(u"temporary"_s), QStringList());
    QVERIFY(updUtils::removeDir(place.path(u"plant"_s)));
}

VANTREL_TEST(TestSuite::NoApplication, TestScratchFolder)
#include "tst_scratchfolder.moc"
