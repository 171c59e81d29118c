// Runs that did not come to their end: what is found of them, and the two ways out.
#include "HeldFile.h"
#include "Interruption.h"
#include "LeftOverRun.h"
#include "ProjectLock.h"
#include "RunHistory.h"
#include "StageFile.h"
#include "TestProject.h"
#include "TestSuite.h"

#include <QDir>
#include <QFile>
#include <QMap>
#include <QTest>
#include <QThread>

#include <memory>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

/// Puts a project into the state in which a run was interrupted.
using Interruption = void (*)(const TestProject &project);

const QStringList screens{u"00.psc"_s, u"a.psc"_s, u"hall/00.psc"_s, u"hall/b.psc"_s};

QByteArray original(const QString &screen)
{
    return "before the run: " + screen.toUtf8();
}

QByteArray converted(const QString &screen)
{
    return "after the run: " + screen.toUtf8();
}

void putOriginals(const TestProject &project, const QString &folder, const QStringList &some = screens)
{
    for (const QString &screen : some)
        project.write(folder + u'/' + screen, original(screen));
}

void putConverted(const TestProject &project, const QString &folder, const QStringList &some = screens)
{
    for (const QString &screen : some)
        project.write(folder + u'/' + screen, converted(screen));
}

RunFacts facts()
{
    RunFacts facts;
    facts.program = u"vantrel 1.2.3"_s;
    facts.started = QDateTime(QDate(2024, 3, 5), QTime(14, 7, 9));
    facts.shapeNames = QStringList{u"pump.plb"_s};
    facts.screens = screens;
    return facts;
}

void writeStage(const TestProject &project, const RunState &state)
{
    StageFile(project.dir(), facts()).enter(state);
}

void writeStage(const TestProject &project, RunStage stage)
{
    writeStage(project, {.stage = stage, .unsaved = {}, .endedAt = stage});
}

void endWhileConverting(const TestProject &project)
{
    putOriginals(project, u"scr"_s);
    putConverted(project, u"scr_temp"_s, screens.first(2));
    writeStage(project, RunStage::Converting);
}

void endWhileDiscarding(const TestProject &project)
{
    putOriginals(project, u"scr"_s);
    putConverted(project, u"scr_temp"_s);
    project.write(u"scr_bak/older.psc"_s, "older");
    writeStage(project, RunStage::Discarding);
}

void endWhileBackingUp(const TestProject &project)
{
    putOriginals(project, u"scr"_s, screens.sliced(2));
    putOriginals(project, u"scr_bak"_s, screens.first(2));
    project.makeFolder(u"scr_bak/hall"_s);
    putConverted(project, u"scr_temp"_s);
    writeStage(project, RunStage::BackingUp);
}

void endWhileRemoving(const TestProject &project)
{
    putOriginals(project, u"scr"_s, screens.sliced(2));
    putOriginals(project, u"scr_bak"_s);
    putConverted(project, u"scr_temp"_s);
    writeStage(project, RunStage::Removing);
}

void endWhileCopyingBack(const TestProject &project)
{
    putConverted(project, u"scr"_s, screens.first(2));
    putOriginals(project, u"scr_bak"_s);
    putConverted(project, u"scr_temp"_s, screens.sliced(2));
    project.makeFolder(u"scr/hall"_s);
    writeStage(project, RunStage::CopyingBack);
}

void endWhileRollingBack(const TestProject &project)
{
    putOriginals(project, u"scr"_s, screens.first(2));
    putOriginals(project, u"scr_bak"_s);
    writeStage(project, {.stage = RunStage::RollingBack, .unsaved = {}, .endedAt = RunStage::CopyingBack});
}

void endOnceRolledBack(const TestProject &project)
{
    putOriginals(project, u"scr"_s);
    putOriginals(project, u"scr_bak"_s, screens.first(1));
    writeStage(project, {.stage = RunStage::RolledBack, .unsaved = {}, .endedAt = RunStage::CopyingBack});
}

void endWhileUndoing(const TestProject &project)
{
    putConverted(project, u"scr"_s);
    putOriginals(project, u"scr_bak"_s);
    writeStage(project, {.stage = RunStage::SettingAside, .unsaved = {}, .endedAt = RunStage::Done});
}

QMap<QString, QByteArray> below(const TestProject &project, const QString &folder)
{
    QMap<QString, QByteArray> bytes;
    for (const QString &file : project.files(folder))
        bytes.insert(file, project.read(folder + u'/' + file));
    return bytes;
}

QMap<QString, QByteArray> all(QByteArray (*bytesOf)(const QString &screen))
{
    QMap<QString, QByteArray> bytes;
    for (const QString &screen : screens)
        bytes.insert(screen, bytesOf(screen));
    return bytes;
}

/// Screens of which no whole original is left.
QStringList lostScreens(const TestProject &project)
{
    QStringList lost;
    for (const QString &screen : screens) {
        if (project.read(u"scr/"_s + screen) != original(screen) &&
            project.read(u"scr_bak/"_s + screen) != original(screen))
            lost += screen;
    }
    return lost;
}

/// Recovers on a thread of its own, which can be asked to end.
class Worker final
{
public:
    using Work = RecoveryResult (LeftOverRun::*)();

    Worker(const TestProject &project, Work work)
        : m_thread(QThread::create([this, dir = project.dir(), work] { perform(dir, work); }))
    {
        m_thread->start();
    }

    void askToEnd() const { m_thread->requestInterruption(); }
    bool endsInterrupted() const
    {
        m_thread->wait();
        return m_isInterrupted;
    }

private:
    void perform(const QString &projectDir, Work work)
    {
        try {
            LeftOverRun run(projectDir);
            (run.*work)();
        } catch (const WorkInterrupted &) {
            m_isInterrupted = true;
        }
    }

    std::unique_ptr<QThread> m_thread;
    bool m_isInterrupted = false;
};

} // namespace

Q_DECLARE_METATYPE(Interruption)
Q_DECLARE_METATYPE(LeftOver)
Q_DECLARE_METATYPE(RecoveryOutcome)

class TestLeftOverRun final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsWhatIsLeft_data();
    void tellsWhatIsLeft();
    void tellsWhoIsAtWork();
    void keepsOthersAwayWhileItLives();
    void planTellsWhatLiesWhere();

    void putsBack_data();
    void putsBack();
    void completes_data();
    void completes();
    void preparesAConversion_data();
    void preparesAConversion();
    void goesOnWithAnUndoing();

    void touchesNothingWhereFilesWereChanged();
    void touchesNothingWithoutConvertedScreens();
    void namesScreensThatWereNotConverted();
    void leavesARunThatCannotBeCopiedBack();
    void saysWhyItFailedAndCanBeRepeated();
    void saysWhyTheStageFileStays();
    void leavesWhatAHistoryLeadsTo_data();
    void leavesWhatAHistoryLeadsTo();
    void leavesWhatCannotBePutAway();

    void endsBeforeTheNextScreen_data();
    void endsBeforeTheNextScreen();
    void planningEndsToo();
};

void TestLeftOverRun::tellsWhatIsLeft_data()
{
    QTest::addColumn<Interruption>("interruption");
    QTest::addColumn<LeftOver>("kind");
    QTest::newRow("nothing") << Interruption([](const TestProject &project) {
        putOriginals(project, u"scr"_s);
    }) << LeftOver::Nothing;
    QTest::newRow("a run") << Interruption(endWhileConverting) << LeftOver::Run;
    QTest::newRow("a run that was being taken back") << Interruption(endWhileRollingBack) << LeftOver::Run;
    QTest::newRow("a run that is done but for its file")
        << Interruption([](const TestProject &project) { writeStage(project, RunStage::Done); })
        << LeftOver::Run;
    QTest::newRow("an undoing") << Interruption(endWhileUndoing) << LeftOver::Undoing;
    QTest::newRow("no text") << Interruption([](const TestProject &project) {
        project.write(u".vantrel.run"_s, "no stage file\n");
    }) << LeftOver::Unreadable;
    QTest::newRow("a folder in its place")
        << Interruption([](const TestProject &project) { project.makeFolder(u".vantrel.run"_s); })
        << LeftOver::Unreadable;
}

void TestLeftOverRun::tellsWhatIsLeft()
{
    QFETCH(const Interruption, interruption);
    QFETCH(const LeftOver, kind);
    const TestProject project;
    interruption(project);
    const QMap<QString, QByteArray> before = below(project, u""_s);
    {
        const LeftOverRun run(project.dir());
        QCOMPARE(run.kind(), kind);
        QCOMPARE(run.holder(), QString());
    }
    QCOMPARE(below(project, u""_s), before);
}

void TestLeftOverRun::tellsWhoIsAtWork()
{
    const TestProject project;
    endWhileConverting(project);
    const ProjectLock lock(project.dir());
    const LeftOverRun run(project.dir());
    QCOMPARE(run.kind(), LeftOver::InUse);
    QVERIFY2(run.holder().contains(u", process %1 on "_s.arg(QCoreApplication::applicationPid())),
             qPrintable(run.holder()));
}

void TestLeftOverRun::keepsOthersAwayWhileItLives()
{
    const TestProject project;
    {
        const LeftOverRun run(project.dir());
        QVERIFY(ProjectLock(project.dir()).isHeldByOther());
    }
    QVERIFY(!ProjectLock(project.dir()).isHeldByOther());
}

void TestLeftOverRun::planTellsWhatLiesWhere()
{
    const TestProject project;
    endWhileBackingUp(project);
    LeftOverRun run(project.dir());
    QVERIFY(run.plan().isDecidable());
    QCOMPARE(run.plan().inPlace, screens.sliced(2));
    QCOMPARE(run.plan().inBackup, screens.first(2));
    QCOMPARE(run.plan().record.facts.shapeNames, QStringList{u"pump.plb"_s});
    QCOMPARE(run.record().state.stage, RunStage::BackingUp);
}

void TestLeftOverRun::putsBack_data()
{
    QTest::addColumn<Interruption>("interruption");
    QTest::addColumn<int>("restored");
    QTest::newRow("converting") << Interruption(endWhileConverting) << 0;
    QTest::newRow("discarding") << Interruption(endWhileDiscarding) << 0;
    QTest::newRow("backing up") << Interruption(endWhileBackingUp) << 2;
    QTest::newRow("removing") << Interruption(endWhileRemoving) << 2;
    QTest::newRow("copying back") << Interruption(endWhileCopyingBack) << 4;
    QTest::newRow("rolling back") << Interruption(endWhileRollingBack) << 2;
    QTest::newRow("rolled back") << Interruption(endOnceRolledBack) << 0;
    QTest::newRow("undoing") << Interruption(endWhileUndoing) << 4;
}

void TestLeftOverRun::putsBack()
{
    QFETCH(const Interruption, interruption);
    QFETCH(const int, restored);
    const TestProject project;
    interruption(project);
    const RecoveryResult result = LeftOverRun(project.dir()).putBack();
    QCOMPARE(result.error, QString());
    QCOMPARE(result.outcome, RecoveryOutcome::Done);
    QCOMPARE(result.restoredScreens, restored);
    QCOMPARE(below(project, u"scr"_s), all(original));
    QVERIFY(!project.exists(u"scr_temp"_s));
    QCOMPARE(LeftOverRun(project.dir()).kind(), LeftOver::Nothing);
}

void TestLeftOverRun::completes_data()
{
    QTest::addColumn<Interruption>("interruption");
    QTest::newRow("discarding") << Interruption(endWhileDiscarding);
    QTest::newRow("backing up") << Interruption(endWhileBackingUp);
    QTest::newRow("removing") << Interruption(endWhileRemoving);
    QTest::newRow("copying back") << Interruption(endWhileCopyingBack);
    QTest::newRow("done") << Interruption([](const TestProject &project) {
        putConverted(project, u"scr"_s);
        putOriginals(project, u"scr_bak"_s);
        writeStage(project, RunStage::Done);
    });
}

void TestLeftOverRun::completes()
{
    QFETCH(const Interruption, interruption);
    const TestProject project;
    interruption(project);
    const RecoveryResult result = LeftOverRun(project.dir()).complete();
    QCOMPARE(result.error, QString());
    QCOMPARE(result.outcome, RecoveryOutcome::Done);
    QCOMPARE(result.unconverted, QStringList());
    QCOMPARE(below(project, u"scr"_s), all(converted));
    QCOMPARE(below(project, u"scr_bak"_s), all(original));
    QVERIFY(!project.exists(u"scr_temp"_s));
    QCOMPARE(LeftOverRun(project.dir()).kind(), LeftOver::Nothing);
}

void TestLeftOverRun::preparesAConversion_data()
{
    QTest::addColumn<Interruption>("interruption");
    QTest::newRow("converting") << Interruption(endWhileConverting);
    QTest::newRow("rolling back") << Interruption(endWhileRollingBack);
    QTest::newRow("rolled back") << Interruption(endOnceRolledBack);
}

/// The stage file tells of the run until the next one writes its own.
void TestLeftOverRun::preparesAConversion()
{
    QFETCH(const Interruption, interruption);
    const TestProject project;
    interruption(project);
    QCOMPARE(LeftOverRun(project.dir()).complete().outcome, RecoveryOutcome::ConvertAgain);
    QCOMPARE(below(project, u"scr"_s), all(original));
    QVERIFY(!project.exists(u"scr_temp"_s));
    QCOMPARE(LeftOverRun(project.dir()).kind(), LeftOver::Run);
}

void TestLeftOverRun::goesOnWithAnUndoing()
{
    const TestProject project;
    endWhileUndoing(project);
    QCOMPARE(LeftOverRun(project.dir()).complete().outcome, RecoveryOutcome::Done);
    QCOMPARE(below(project, u"scr"_s), all(original));
    const QString entry = RunHistory(project.dir()).entries().value(0);
    QCOMPARE(below(project, u".vantrel.history/%1/scr"_s.arg(entry)), all(converted));
    QCOMPARE(LeftOverRun(project.dir()).kind(), LeftOver::Nothing);
}

void TestLeftOverRun::touchesNothingWhereFilesWereChanged()
{
    const TestProject project;
    endWhileRemoving(project);
    project.write(u"scr/hall/b.psc"_s, "written since");
    const QMap<QString, QByteArray> before = below(project, u""_s);
    for (const auto act : {&LeftOverRun::putBack, &LeftOverRun::complete}) {
        LeftOverRun run(project.dir());
        const RecoveryResult result = (run.*act)();
        QCOMPARE(result.outcome, RecoveryOutcome::ChangedFiles);
        QCOMPARE(result.changedFiles, QStringList{project.path(u"scr/hall/b.psc"_s)});
    }
    QCOMPARE(below(project, u""_s), before);
}

void TestLeftOverRun::touchesNothingWithoutConvertedScreens()
{
    const TestProject project;
    endWhileRemoving(project);
    QVERIFY(QDir(project.path(u"scr_temp"_s)).removeRecursively());
    const QMap<QString, QByteArray> before = below(project, u""_s);
    QCOMPARE(LeftOverRun(project.dir()).complete().outcome, RecoveryOutcome::NothingConverted);
    QCOMPARE(below(project, u""_s), before);
}

void TestLeftOverRun::namesScreensThatWereNotConverted()
{
    const TestProject project;
    endWhileRemoving(project);
    project.remove(u"scr_temp/hall/b.psc"_s);
    const RecoveryResult result = LeftOverRun(project.dir()).complete();
    QCOMPARE(result.outcome, RecoveryOutcome::Done);
    QCOMPARE(result.unconverted, QStringList{u"hall/b.psc"_s});
}

void TestLeftOverRun::leavesARunThatCannotBeCopiedBack()
{
    const TestProject project;
    putOriginals(project, u"scr_bak"_s);
    putConverted(project, u"scr_temp"_s);
    // A run makes one level of folders only.
    project.write(u"scr_temp/cellar/deep/c.psc"_s, "deep");
    writeStage(project, RunStage::Removing);
    QCOMPARE(LeftOverRun(project.dir()).complete().outcome, RecoveryOutcome::NotAllCopiedBack);
    QCOMPARE(project.read(u"scr_temp/cellar/deep/c.psc"_s), "deep");
    QCOMPARE(LeftOverRun(project.dir()).kind(), LeftOver::Run);
    QCOMPARE(LeftOverRun(project.dir()).putBack().outcome, RecoveryOutcome::Done);
    QCOMPARE(below(project, u"scr"_s), all(original));
}

void TestLeftOverRun::saysWhyItFailedAndCanBeRepeated()
{
    const TestProject project;
    putOriginals(project, u"scr_bak"_s);
    project.write(u"scr/hall"_s, "in the way");
    writeStage(project, RunStage::CopyingBack);
    RecoveryResult result = LeftOverRun(project.dir()).putBack();
    QCOMPARE(result.outcome, RecoveryOutcome::Failed);
    QCOMPARE(result.error, u"%1 could not be copied to %2: Not a directory"_s.arg(
                               project.path(u"scr_bak/hall/00.psc"_s), project.path(u"scr/hall"_s)));
    QCOMPARE(lostScreens(project), QStringList());

    project.remove(u"scr/hall"_s);
    result = LeftOverRun(project.dir()).putBack();
    QCOMPARE(result.outcome, RecoveryOutcome::Done);
    QCOMPARE(below(project, u"scr"_s), all(original));
}

void TestLeftOverRun::leavesWhatAHistoryLeadsTo_data()
{
    QTest::addColumn<QString>("link");
    QTest::addColumn<QString>("target");
    QTest::newRow("the entry") << u".vantrel.history/2024-03-05_14-07-09"_s
                               << u"../../outside/2024-03-05_14-07-09"_s;
    QTest::newRow("all of it") << u".vantrel.history"_s << u"../outside"_s;
}

void TestLeftOverRun::leavesWhatAHistoryLeadsTo()
{
    QFETCH(const QString, link);
    QFETCH(const QString, target);
    const TestProject project;
    const QStringList outside{u"../outside/2024-03-05_14-07-09/scr/a.psc"_s,
                              u"../outside/2024-03-05_14-07-09/scr_bak/a.psc"_s};
    for (const QString &file : outside)
        project.write(file, "outside");
    putOriginals(project, u"scr"_s);
    if (link.contains(u'/'))
        project.makeFolder(u".vantrel.history"_s);
    project.link(target, link);
    RunFacts kept = facts();
    kept.historyEntry = u"2024-03-05_14-07-09"_s;
    StageFile(project.dir(), kept).enter({.stage = RunStage::Discarding, .unsaved = {}, .endedAt = {}});

    const RecoveryResult result = LeftOverRun(project.dir()).putBack();
    QCOMPARE(result.outcome, RecoveryOutcome::Failed);
    QVERIFY2(result.error.contains(u".vantrel.history/2024-03-05_14-07-09 is no folder"_s),
             qPrintable(result.error));
    for (const QString &file : outside)
        QCOMPARE(project.read(file), "outside");
    QCOMPARE(below(project, u"scr"_s), all(original));
    QVERIFY(StageFile::exists(project.dir()));
}

void TestLeftOverRun::saysWhyTheStageFileStays()
{
    const TestProject project;
    project.makeFolder(u".vantrel.run"_s);
    QCOMPARE(LeftOverRun(project.dir()).forget(),
             project.path(u".vantrel.run"_s) + " could not be removed: Is a directory"_L1);
}

/// In a folder with the sticky bit, whoever may remove the files of another may not rename their folder.
void TestLeftOverRun::leavesWhatCannotBePutAway()
{
    const TestProject project;
    putConverted(project, u"scr_temp"_s);
    writeStage(project, RunStage::Cancelled);
    QCOMPARE(::chmod(QFile::encodeName(project.dir()).constData(), 01777), 0);
    for (const QString &folder : {u"scr_temp"_s, u"scr_temp/hall"_s})
        QCOMPARE(::chmod(QFile::encodeName(project.path(folder)).constData(), 0777), 0);
    const OrdinaryUser user;
    LeftOverRun run(project.dir());
    QCOMPARE(run.kind(), LeftOver::Cancelled);
    QCOMPARE(run.putAway().error, project.path(u"scr_temp"_s) + " could not be moved"_L1);
    QCOMPARE(below(project, u"scr_temp"_s), all(converted));
}

void TestLeftOverRun::endsBeforeTheNextScreen_data()
{
    QTest::addColumn<Interruption>("interruption");
    QTest::addColumn<QString>("held"); // which the work meets on its way
    QTest::addColumn<bool>("putsBack");
    QTest::newRow("putting back") << Interruption(endWhileRemoving) << u"scr_bak/a.psc"_s << true;
    QTest::newRow("completing") << Interruption(endWhileRemoving) << u"scr/hall/00.psc"_s << false;
    QTest::newRow("completing, copying") << Interruption([](const TestProject &project) {
        endWhileBackingUp(project);
        // So that it is copied, and all others too.
        QVERIFY(QFile::link(project.path(u"scr/hall/b.psc"_s), project.path(u"scr/hall/c.psc"_s)));
    }) << u"scr/hall/00.psc"_s << false;
}

void TestLeftOverRun::endsBeforeTheNextScreen()
{
    QFETCH(const Interruption, interruption);
    QFETCH(const QString, held);
    QFETCH(const bool, putsBack);
    const TestProject project;
    interruption(project);
    {
        HeldFile file(project.path(held));
        const Worker worker(project, putsBack ? &LeftOverRun::putBack : &LeftOverRun::complete);
        QVERIFY(file.waitForReader());
        worker.askToEnd();
        file.release();
        QVERIFY(worker.endsInterrupted());
    }
    QCOMPARE(lostScreens(project), QStringList());
    QVERIFY(below(project, u"scr"_s) != all(putsBack ? original : converted));
    QCOMPARE(project.files(u"scr"_s).filter(u".vantrel"_s), QStringList());

    LeftOverRun again(project.dir());
    QCOMPARE(again.kind(), LeftOver::Run);
    QCOMPARE((putsBack ? again.putBack() : again.complete()).outcome, RecoveryOutcome::Done);
    QCOMPARE(below(project, u"scr"_s), all(putsBack ? original : converted));
}

void TestLeftOverRun::planningEndsToo()
{
    const TestProject project;
    endWhileBackingUp(project);
    bool isInterrupted = false;
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        LeftOverRun run(project.dir());
        QThread::currentThread()->requestInterruption();
        try {
            run.plan();
        } catch (const WorkInterrupted &) {
            isInterrupted = true;
        }
    }));
    thread->start();
    thread->wait();
    QVERIFY(isInterrupted);
}

VANTREL_TEST(QCoreApplication, TestLeftOverRun)
#include "tst_leftoverrun.moc"
