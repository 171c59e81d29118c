// The folder of the last runs: names, rights, what goes and what stays.
#include "Interruption.h"
#include "RootFolder.h"
#include "RunHistory.h"
#include "RunSummary.h"
#include "TestProject.h"
#include "TestSuite.h"

#include <QtTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

const QDateTime begin(QDate(2026, 3, 5), QTime(14, 7, 9));

void keep(const TestProject &project, const QString &entry, HistoryKind kind = HistoryKind::Run)
{
    const RunHistory history(project.dir());
    QCOMPARE(history.make(entry), QString());
    RunSummary summary;
    summary.kind = kind;
    summary.ended = begin;
    QCOMPARE(writeSummary(RootFolder(project.dir()), history.pathOf(entry), summary), QString());
}

mode_t rightsOf(const QString &path)
{
    struct stat status = {};
    return stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777 : 0;
}

} // namespace

class TestRunHistory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isEmptyWhereNothingWasKept();
    void namesARunByItsTime();
    void namesRunsInTheirOrderWhateverTheClockSays();
    void listsTheNewestFirst();
    void listsNothingElse();
    void givesFoldersTheRightsOfTheScreens();
    void makesNothingThroughALink();
    void saysWhatCannotBeMade();
    void tellsWhatIsInItsWay();
    void keepsTheNewestRunsAndAllThatIsNewer();
    void countsNoRunThatKeptNothing();
    void keepsNothingWhereNothingIsWanted();
    void removesWhatAnInterruptionLeft();
    void findsTheNewestRun();
    void countsFilesAndBytes();
    void stopsCountingWhenAskedTo();
};

void TestRunHistory::isEmptyWhereNothingWasKept()
{
    const TestProject project;
    const RunHistory history(project.dir());
    QCOMPARE(history.entries(), QStringList());
    QCOMPARE(history.newestRun(), QString());
    QCOMPARE(history.keepNewest(0), QString());
    QCOMPARE(history.sizeOf().files, 0);
    QVERIFY(!project.exists(u".vantrel.history"_s));
}

void TestRunHistory::namesARunByItsTime()
{
    const TestProject project;
    QCOMPARE(RunHistory(project.dir()).nameFor(begin), u"2026-03-05_14-07-09"_s);
}

void TestRunHistory::namesRunsInTheirOrderWhateverTheClockSays()
{
    const TestProject project;
    const RunHistory history(project.dir());
    keep(project, history.nameFor(begin));
    QCOMPARE(history.nameFor(begin), u"2026-03-05_14-07-09.001"_s);
    keep(project, history.nameFor(begin));
    QCOMPARE(history.nameFor(begin.addDays(-1)), u"2026-03-05_14-07-09.002"_s);
    QCOMPARE(history.nameFor(begin.addSecs(1)), u"2026-03-05_14-07-10"_s);
}

void TestRunHistory::listsTheNewestFirst()
{
    const TestProject project;
    const QStringList names{u"2026-03-05_14-07-10"_s, u"2026-03-05_14-07-09.001"_s, u"2026-03-05_14-07-09"_s,
                            u"2025-12-31_23-59-59"_s};
    for (const QString &name : {names.at(1), names.at(3), names.at(0), names.at(2)})
        keep(project, name);
    QCOMPARE(RunHistory(project.dir()).entries(), names);
}

void TestRunHistory::listsNothingElse()
{
    const TestProject project;
    project.makeFolder(u".vantrel.history/removed"_s);
    project.makeFolder(u".vantrel.history/2026-03-05"_s);
    project.makeFolder(u".vantrel.history/2026-03-05_14-07-09.1"_s);
    project.write(u".vantrel.history/2026-03-05_14-07-09"_s, "a file");
    project.makeFolder(u"elsewhere"_s);
    project.link(project.path(u"elsewhere"_s), u".vantrel.history/2026-03-05_14-07-10"_s);
    QCOMPARE(RunHistory(project.dir()).entries(), QStringList());
}

void TestRunHistory::givesFoldersTheRightsOfTheScreens()
{
    const TestProject project;
    project.makeFolder(u"scr"_s);
    QVERIFY(chmod(QFile::encodeName(project.path(u"scr"_s)).constData(), 02570) == 0);
    const RunHistory history(project.dir());
    const QString entry = history.nameFor(begin);
    QCOMPARE(history.make(entry), QString());
    // Whoever runs must be able to write into it.
    QCOMPARE(rightsOf(project.path(u".vantrel.history"_s)), mode_t(02770));
    QCOMPARE(rightsOf(history.pathOf(entry)), mode_t(02770));
}

void TestRunHistory::makesNothingThroughALink()
{
    const TestProject project;
    project.makeFolder(u"elsewhere"_s);
    project.link(project.path(u"elsewhere"_s), u".vantrel.history"_s);
    const RunHistory history(project.dir());
    QVERIFY(history.make(history.nameFor(begin)).contains(u"could not be made"_s));
    QCOMPARE(filesBelow(project.path(u"elsewhere"_s)), QStringList());
    QCOMPARE(QDir(project.path(u"elsewhere"_s)).entryList(QDir::NoDotAndDotDot | QDir::AllEntries),
             QStringList());
    QCOMPARE(history.entries(), QStringList());
}

void TestRunHistory::saysWhatCannotBeMade()
{
    const TestProject project;
    project.write(u".vantrel.history"_s, "a file");
    const RunHistory history(project.dir());
    QCOMPARE(history.make(history.nameFor(begin)),
             u"%1 could not be made: Not a directory"_s.arg(project.path(u".vantrel.history"_s)));
    QCOMPARE(project.read(u".vantrel.history"_s), "a file");
}

void TestRunHistory::tellsWhatIsInItsWay()
{
    const TestProject project;
    project.makeFolder(u"scr"_s);
    const RunHistory history(project.dir());
    QCOMPARE(history.obstacle(), QString());
    QVERIFY(!project.exists(u".vantrel.history"_s));
    project.makeFolder(u".vantrel.history"_s);
    QCOMPARE(history.obstacle(), QString());
    {
        const OrdinaryUser user;
        QCOMPARE(history.obstacle(), u"it cannot be written to"_s);
    }
    project.remove(u".vantrel.history"_s);
    project.link(u"scr"_s, u".vantrel.history"_s);
    QCOMPARE(history.obstacle(), u"it is no folder"_s);
    project.remove(u".vantrel.history"_s);
    project.link(u"/proc"_s, u"scr_bak"_s); // the link is the project's, what it leads to is not
    QCOMPARE(history.obstacle(), QString());
}

void TestRunHistory::keepsTheNewestRunsAndAllThatIsNewer()
{
    const TestProject project;
    keep(project, u"2026-03-01_00-00-00"_s);
    keep(project, u"2026-03-02_00-00-00"_s, HistoryKind::Undo);
    keep(project, u"2026-03-03_00-00-00"_s);
    keep(project, u"2026-03-04_00-00-00"_s, HistoryKind::Restore);
    keep(project, u"2026-03-05_00-00-00"_s);
    project.write(u".vantrel.history/2026-03-01_00-00-00/scr_bak/hall/a.psc"_s, "a");
    const RunHistory history(project.dir());
    QCOMPARE(history.keepNewest(3), QString());
    QCOMPARE(history.entries().size(), 5);
    QCOMPARE(history.keepNewest(2), QString());
    QCOMPARE(history.entries(),
             (QStringList{u"2026-03-05_00-00-00"_s, u"2026-03-04_00-00-00"_s, u"2026-03-03_00-00-00"_s}));
    QVERIFY(!project.exists(u".vantrel.history/2026-03-01_00-00-00"_s));
    QVERIFY(!project.exists(u".vantrel.history/removed"_s));
}

/// One that was killed before it displaced anything, or the second entry of one that was completed later.
void TestRunHistory::countsNoRunThatKeptNothing()
{
    const TestProject project;
    keep(project, u"2026-03-01_00-00-00"_s);
    project.write(u".vantrel.history/2026-03-02_00-00-00/.vantrel.copy"_s, "{");
    QCOMPARE(writeSummary(RootFolder(project.dir()), project.path(u".vantrel.history/2026-03-02_00-00-00"_s),
                          RunSummary()),
             QString());
    project.write(u".vantrel.history/2026-03-03_00-00-00/.vantrel.copy"_s, "{");
    const RunHistory history(project.dir());
    QCOMPARE(history.keepNewest(1), QString());
    QCOMPARE(history.newestRun(), u"2026-03-01_00-00-00"_s);
    // What has no list of what it is may be all that there is of a run.
    project.write(u".vantrel.history/2026-03-03_00-00-00/scr/notes.txt"_s, "notes");
    QCOMPARE(history.newestRun(), u"2026-03-03_00-00-00"_s);
    QCOMPARE(history.keepNewest(1), QString());
    QCOMPARE(history.entries(), QStringList{u"2026-03-03_00-00-00"_s});
}

void TestRunHistory::keepsNothingWhereNothingIsWanted()
{
    const TestProject project;
    keep(project, u"2026-03-01_00-00-00"_s, HistoryKind::Undo);
    keep(project, u"2026-03-03_00-00-00"_s);
    const RunHistory history(project.dir());
    QCOMPARE(history.keepNewest(0), QString());
    QCOMPARE(history.entries(), QStringList());
}

void TestRunHistory::removesWhatAnInterruptionLeft()
{
    const TestProject project;
    keep(project, u"2026-03-01_00-00-00"_s);
    project.write(u".vantrel.history/removed/scr/half.txt"_s, "left");
    const RunHistory history(project.dir());
    QCOMPARE(history.remove(u"2026-03-01_00-00-00"_s), QString());
    QCOMPARE(project.files(u".vantrel.history"_s), QStringList());
}

void TestRunHistory::findsTheNewestRun()
{
    const TestProject project;
    keep(project, u"2026-03-01_00-00-00"_s);
    keep(project, u"2026-03-02_00-00-00"_s, HistoryKind::Undo);
    const RunHistory history(project.dir());
    QCOMPARE(history.newestRun(), u"2026-03-01_00-00-00"_s);
    // What nobody can read may be a run's.
    project.write(u".vantrel.history/2026-03-02_00-00-00/run.json"_s, "{");
    project.write(u".vantrel.history/2026-03-02_00-00-00/scr/notes.txt"_s, "notes");
    QCOMPARE(history.newestRun(), u"2026-03-02_00-00-00"_s);
}

void TestRunHistory::countsFilesAndBytes()
{
    const TestProject project;
    project.write(u".vantrel.history/2026-03-01_00-00-00/scr/a.txt"_s, "12345");
    project.write(u".vantrel.history/2026-03-02_00-00-00/scr_bak/b.psc"_s, "123");
    project.write(u"elsewhere/c"_s, "1234567");
    project.link(project.path(u"elsewhere"_s), u".vantrel.history/2026-03-01_00-00-00/scr/link"_s);
    const RunHistory history(project.dir());
    QCOMPARE(history.sizeOf().files, 2);
    QCOMPARE(history.sizeOf().bytes, 8);
    QCOMPARE(history.sizeOf(u"2026-03-02_00-00-00"_s).bytes, 3);
}

/// A history may hold many files.
void TestRunHistory::stopsCountingWhenAskedTo()
{
    const TestProject project;
    keep(project, u"2026-03-01_00-00-00"_s);
    const InterruptionScope scope([] { return true; });
    QVERIFY_THROWS_EXCEPTION(WorkInterrupted, RunHistory(project.dir()).sizeOf());
}

VANTREL_TEST(QCoreApplication, TestRunHistory)
#include "tst_runhistory.moc"
