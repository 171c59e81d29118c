// What a run displaces goes to its entry of the history, and is removed only where that was said.
#include "Recorders.h"
#include "RunArchive.h"
#include "RunSummary.h"
#include "TestProject.h"
#include "TestSuite.h"

#include <QtTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

const QString entry = u"2026-03-05_14-07-09"_s;
const QString kept = u".vantrel.history/2026-03-05_14-07-09/"_s;

ino_t inodeOf(const QString &path)
{
    struct stat status = {};
    return lstat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_ino : 0;
}

} // namespace

class TestRunArchive : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void movesAFolderByRenamingIt();
    void isContentWhereNothingLies();
    void takesAwayALinkAndLeavesWhatItLeadsTo();
    void findsAFreeName();
    void removesWhereNothingIsKept();
    void tellsBeforeItRemoves();
    void leavesWhatMustNotBeRemoved();
    void writesWhatTheRunDid();
};

void TestRunArchive::movesAFolderByRenamingIt()
{
    const TestProject project;
    project.write(u"scr_bak/hall/a.psc"_s, "a");
    const ino_t inode = inodeOf(project.path(u"scr_bak"_s));
    RunArchive archive(project.dir(), entry);
    archive.open();
    QVERIFY(archive.isKeeping());
    QVERIFY(archive.putAway(u"scr_bak"_s));
    QVERIFY(!project.exists(u"scr_bak"_s));
    QCOMPARE(project.read(kept + u"scr_bak/hall/a.psc"_s), "a");
    QCOMPARE(inodeOf(project.path(kept + u"scr_bak"_s)), inode);
}

void TestRunArchive::isContentWhereNothingLies()
{
    const TestProject project;
    const LogRecorder log;
    RunArchive nothing(project.dir(), entry);
    nothing.open();
    QVERIFY(!nothing.isKeeping());
    QVERIFY(!project.exists(u".vantrel.history"_s));

    project.makeFolder(u"scr_temp"_s);
    RunArchive archive(project.dir(), entry);
    archive.open();
    QVERIFY(archive.putAway(u"scr_bak"_s));
    QVERIFY(archive.keep(u"scr"_s));
    QCOMPARE(log.entries, QStringList());
    QCOMPARE(project.files(u""_s), QStringList());
}

void TestRunArchive::takesAwayALinkAndLeavesWhatItLeadsTo()
{
    const TestProject project;
    project.write(u"elsewhere/a.psc"_s, "a");
    project.link(project.path(u"elsewhere"_s), u"scr_bak"_s);
    RunArchive archive(project.dir(), entry);
    archive.open();
    QVERIFY(archive.putAway(u"scr_bak"_s));
    QVERIFY(!QFileInfo(project.path(u"scr_bak"_s)).isSymLink());
    QVERIFY(QFileInfo(project.path(kept + u"scr_bak"_s)).isSymLink());
    QCOMPARE(project.read(u"elsewhere/a.psc"_s), "a");
}

void TestRunArchive::findsAFreeName()
{
    const TestProject project;
    project.makeFolder(u"scr"_s);
    RunArchive archive(project.dir(), entry);
    archive.open();
    for (const char *text : {"first", "second", "third"}) {
        project.write(u"scr/a.txt"_s, text);
        QVERIFY(archive.putAway(u"scr"_s));
    }
    project.write(u"scr/a.txt"_s, "fourth");
    QVERIFY(archive.putAway(u"scr"_s, u"other"_s));
    QCOMPARE(project.read(kept + u"scr/a.txt"_s), "first");
    QCOMPARE(project.read(kept + u"scr.2/a.txt"_s), "second");
    QCOMPARE(project.read(kept + u"scr.3/a.txt"_s), "third");
    QCOMPARE(project.read(kept + u"other/a.txt"_s), "fourth");
}

void TestRunArchive::removesWhereNothingIsKept()
{
    const TestProject project;
    project.write(u"scr_bak/a.psc"_s, "a");
    RunArchive archive(project.dir(), {});
    archive.open();
    QVERIFY(!archive.isKeeping());
    QVERIFY(!archive.keep(u"scr_bak"_s));
    QCOMPARE(project.read(u"scr_bak/a.psc"_s), "a");
    QVERIFY(archive.putAway(u"scr_bak"_s));
    QCOMPARE(project.files(u""_s), QStringList());
}

void TestRunArchive::tellsBeforeItRemoves()
{
    const TestProject project;
    project.write(u"scr_bak/a.psc"_s, "a");
    project.write(u".vantrel.history"_s, "in the way");
    const LogRecorder log;
    RunArchive archive(project.dir(), entry);
    archive.open();
    QVERIFY(!archive.isKeeping());
    QTRY_COMPARE(log.entries.size(), 1);
    QVERIFY(log.entries.first().startsWith(u"error: The history cannot be written"_s));
    QVERIFY(log.entries.first().contains(u"Not a directory"_s));
    QVERIFY(project.exists(u"scr_bak/a.psc"_s));
    QVERIFY(archive.putAway(u"scr_bak"_s));
    QVERIFY(!project.exists(u"scr_bak"_s));
}

void TestRunArchive::leavesWhatMustNotBeRemoved()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, "a");
    RunArchive archive(project.dir(), entry);
    archive.open();
    // The entry is gone when it is needed.
    project.remove(u".vantrel.history"_s);
    const LogRecorder log;
    QVERIFY(!archive.keep(u"scr"_s));
    QCOMPARE(project.read(u"scr/a.psc"_s), "a");
    QTRY_COMPARE(log.entries.size(), 1);
    QVERIFY(log.entries.first().contains(u"and stays: No such file or directory"_s));
}

void TestRunArchive::writesWhatTheRunDid()
{
    const TestProject project;
    project.makeFolder(u"scr"_s);
    RunArchive archive(project.dir(), entry);
    archive.open();
    RunSummary summary;
    summary.replaced = 58;
    archive.write(summary);
    QCOMPARE(readSummary(project.path(kept.chopped(1)))->replaced, 58);
    RunArchive(project.dir(), {}).write(summary);
    QCOMPARE(filesBelow(project.dir()), QStringList{kept + u"run.json"_s});
}

VANTREL_TEST(QCoreApplication, TestRunArchive)
#include "tst_runarchive.moc"
