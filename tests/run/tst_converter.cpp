// A conversion run over a project: signals, stopping, backup and copy-back.
#include "ConversionRun.h"
#include "Converter.h"
#include "ProjectLock.h"
#include "Recorders.h"
#include "RunHistory.h"
#include "RunSummary.h"
#include "StageFile.h"
#include "TestProject.h"
#include "TestSuite.h"

#include <QMetaMethod>
#include <QtTest>

#include <cstdio>

#include <unistd.h>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

const QByteArray plain = "ID;1;Frame\nPSDV;0;0;9;9;0;1;0;0;0;0;0\n"_ba;
const QByteArray candidate = "ID;1;Pump\nLIB;pump.plb;1;p;OBJ:old\nPSDV;0;0;9;9;0;1;0;0;0;0;1\n"_ba;
const QByteArray shape = "ID;1;Shape\nLIB;pump.plb;1;x;OBJ:new\nPSDV;0;0;9;9;0;1;0;0;0;0;0;z\n"_ba;
const QByteArray converted = "ID;1;Shape\nLIB;pump.plb;1;p;OBJ:new\nPSDV;0;0;9;9;0;1;0;0;0;0;1;z\n"_ba;
const QSet<QString> chosen{u"pump.plb"_s};
constexpr int keepsNothing = 0; // runs in the history
const QString copyBackFailed =
    u"alert: !!! Could not copy all files from \\scr_temp folder to \\scr. Copy them manually !!!"_s;

/// A converter with a thread of its own that ends before the converter does.
class Worker final
{
    Q_DISABLE_COPY_MOVE(Worker)

public:
    Worker() = default;
    ~Worker()
    {
        converter.cancel();
        converter.thread()->quit();
        converter.thread()->wait();
    }

    /// Requests a run as a window does.
    void requestRun()
    {
        QMetaObject::invokeMethod(&converter, &Converter::onStartConvert, Qt::QueuedConnection);
    }

    Converter converter;
};

/// Wants a run to stop from one of its questions on.
class StoppingListener final : public RunListener
{
public:
    explicit StoppingListener(int questionsBefore)
        : m_questionsBefore(questionsBefore)
    {
    }

    QString onFound() override
    {
        hasFound = true;
        return {};
    }
    void onProgress(int /*count*/, int /*index*/) override {}
    void onFile(const QString & /*path*/) override {}
    void onReport(const STBlock & /*report*/) override {}
    bool isStopWanted() override { return m_questionsBefore-- <= 0; }

    bool hasFound = false;

private:
    int m_questionsBefore;
};

/// One run on this thread over a project whose "mac" holds the shape "pump.plb".
struct Outcome
{
    explicit Outcome(const TestProject &project, int keptRuns = RunHistory::usualRuns)
        : converter(project.dir())
        , recorder(converter)
    {
        converter.setKeptRuns(keptRuns);
        project.write(u"mac/pump.plb"_s, shape);
        converter.setFilterNames(chosen);
        converter.convert();
    }

    Converter converter;
    RunRecorder recorder;
    LogRecorder log;
};

QString putAwayAsItWas(const TestProject &project)
{
    const RunHistory history(project.dir());
    return u"warning: Folder %1 could not be backed up whole. It was moved to %2 as it was"_s.arg(
        project.path(u"scr"_s), history.pathOf(history.newestRun()));
}

} // namespace

class TestConverter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void declaresSignalsAndSlotsInOrder();
    void answersToItsClassName();
    void startsAThreadOfItsOwn();
    void worksOnTheCallersThreadForAProject();
    void registersTheReportForQueuedSignals();

    void tellsTheProgressOfEachFile();
    void tellsAboutEachFileInOrder();
    void runsOnItsOwnThread();
    void convertsNothingWhereNothingIsChosen();
    void keepsFilterNamesInLowerCase();

    void endsAProjectWithoutImageFilesLikeAnyOther_data();
    void endsAProjectWithoutImageFilesLikeAnyOther();
    void makesTheTempFolderBeforeItStops();
    void stopsBeforeTheNextFile_data();
    void stopsBeforeTheNextFile();
    void clearsTheStopFlagAtAStart();
    void keepsTheStopRequestOfASlot();
    void finishesWhenStoppedAtTheLastFile();
    void cancelsTheRunUnderWay();
    void cancelsAnAnnouncedStartThatHasNotBegun();
    void startsAgainRightAfterACancel();
    void ignoresACancelWhereNothingIsUnderWay();
    void startsAndCancelsInAnyOrder();
    void refusesAStartWhileARunIsUnderWay();
    void worksOnWhatItTookAtItsStart();
    void runsAgain();

    void writesDownWhatItDoesWhileItDoesIt();
    void leavesNeitherStageNorLock_data();
    void leavesNeitherStageNorLock();
    void touchesNothingWhileAnotherRunHoldsTheProject();
    void touchesNothingInWhatCanBeNoProject_data();
    void touchesNothingInWhatCanBeNoProject();
    void takesNoLockWhereItsOwnerHoldsIt();
    void takesOverTheLockOfADeadProcess();
    void runsWhereNeitherStageNorLockCanBeMade();
    void touchesNothingWhereItsStageCannotBeWritten();
    void breaksOffWhereALaterStageCannotBeWritten();

    void reportsFoldersThatCannotBeListed();
    void losesNoScreenInAMazeOfLinks_data();
    void losesNoScreenInAMazeOfLinks();
    void reportsNamesThatAreNotText();
    void backsUpImageFilesOnly();
    void replacesTheBackupOfTheRunBefore();
    void keepsWhatItDisplaces();
    void keepsWhatARunOverNoScreensDisplaces();
    void keepsAFileInThePlaceOfTheBackup();
    void keepsABackupThatCannotBeRemoved();
    void keepsTheLastRuns_data();
    void keepsTheLastRuns();
    void keepsNothingOfAStoppedRun();
    void startsOverACancelledRun_data();
    void startsOverACancelledRun();
    void keepsNoEntryWhereACancelledRunLeftNothing();
    void tellsWhatItCannotRemoveAtItsEnd();
    void keepsTheRightsOfScreensAndFolders();
    void putsOthersBackWhereAsked_data();
    void putsOthersBackWhereAsked();
    void breaksOffWhereOthersHaveNoPlace();
    void tellsWhatARunDid();
    void tellsWhereTheHistoryCannotBeWritten();
    void leavesFailedFilesToTheBackup();
    void keepsALayoutThatCannotBeCopied();
    void doesNotOverwriteAFileLeftInTheTempFolder();
    void removesTheImageFolderBeforeTheSecondAttempt();
    void savesOriginalsThatHaveNoBackup();
    void savesOriginalsBelowTheProjectOnly();
    void savesOriginalsInFoldersThatAreRenamed();
    void keepsTheImageFolderWhereOriginalsCannotBeSaved();
    void tellsThatTheCopyBackFailed();
    void mapsTheWholePathOfAProject();
    void savesOriginalsFromAStaleBackup();
    void leavesWhatLinkedFoldersLeadTo_data();
    void leavesWhatLinkedFoldersLeadTo();
    void makesFoldersWithTheirParentsWhenAskedTo();
    void makesOneLevelOfFoldersByDefault();
    void convertsFoldersInTheirOrder();
    void touchesNothingWhereARunWasInterrupted_data();
    void touchesNothingWhereARunWasInterrupted();
    void goesOnFromWhatIsLeftOverWhereAsked();
    void startsOverAStageFileThatTellsOfNoMore();
    void endsTheSearchWhereItIsStopped();
    void comesToItsFirstFileWhereItIsStoppedBefore();
};

void TestConverter::declaresSignalsAndSlotsInOrder()
{
    const QMetaObject &meta = Converter::staticMetaObject;
    QStringList signatures;
    for (int index = meta.methodOffset(); index < meta.methodCount(); ++index) {
        const QMetaMethod method = meta.method(index);
        signatures += QLatin1StringView(method.methodType() == QMetaMethod::Signal ? "signal " : "slot ") +
                      QString::fromLatin1(method.methodSignature());
        QCOMPARE(method.typeName(), "void");
        QCOMPARE(method.access(), QMetaMethod::Public);
    }
    QCOMPARE(signatures, (QStringList{u"signal sigProgressChanged(int,int)"_s,
                                      u"signal sigConvertInfo(Converter::STBlock)"_s,
                                      u"signal sigConvertEnd()"_s, u"signal sigUpdFileName(QString)"_s,
                                      u"slot onStopConvert()"_s, u"slot onStartConvert()"_s}));
}

void TestConverter::answersToItsClassName()
{
    Converter converter{QString()};
    QCOMPARE(converter.metaObject()->className(), "Converter");
    QVERIFY(converter.inherits("Converter"));
    QCOMPARE(static_cast<QObject *>(&converter)->qt_metacast("Converter"), static_cast<void *>(&converter));
    QCOMPARE(converter.qt_metacast("Vantrel"), nullptr);
}

void TestConverter::startsAThreadOfItsOwn()
{
    const Worker worker;
    const Converter &converter = worker.converter;
    QVERIFY(converter.hasWorkerThread());
    static_assert(std::is_same_v<decltype(Converter::stopRequested), std::atomic<bool>>);
    QVERIFY(!converter.stopRequested);
    QCOMPARE(converter.parent(), nullptr);
    QVERIFY(converter.thread() != QThread::currentThread());
    QVERIFY(converter.thread()->isRunning());
    QCOMPARE(converter.thread()->priority(), QThread::InheritPriority);
    QCOMPARE(converter.thread()->parent(), &converter);
    QCOMPARE(converter.logFileName(), u""_s);
}

void TestConverter::worksOnTheCallersThreadForAProject()
{
    const Converter converter(u"/plant"_s);
    QVERIFY(!converter.hasWorkerThread());
    QVERIFY(!converter.stopRequested);
    QCOMPARE(converter.parent(), nullptr);
    QCOMPARE(converter.thread(), QThread::currentThread());
    QVERIFY(converter.findChildren<QThread *>().isEmpty());
}

void TestConverter::registersTheReportForQueuedSignals()
{
    const Converter converter(u"/plant"_s);
    const QMetaType type = QMetaType::fromName("Converter::STBlock");
    QVERIFY(type.isValid());
    QVERIFY(type.isRegistered());
    QCOMPARE(type, QMetaType::fromType<Converter::STBlock>());
}

void TestConverter::tellsTheProgressOfEachFile()
{
    const TestProject project;
    for (const QString &file : {u"scr/a.psc"_s, u"scr/b.psc"_s, u"scr/c.psc"_s})
        project.write(file, plain);
    const Outcome outcome(project);
    QCOMPARE(outcome.recorder.events.filter(u"progress"_s),
             (QStringList{u"progress 3 0"_s, u"progress 3 1"_s, u"progress 3 2"_s, u"progress 3 3"_s}));
}

void TestConverter::tellsAboutEachFileInOrder()
{
    const TestProject project;
    project.write(u"scr/B.psc"_s, candidate);
    project.write(u"scr/a.psc"_s, plain);
    project.write(u"scr/sub/c.psc"_s, "ID;1\n"_ba);
    const Outcome outcome(project);
    QCOMPARE(
        outcome.recorder.events,
        (QStringList{u"progress 3 0"_s, "file "_L1 + project.path(u"scr/a.psc"_s), u"report NO REPLACE"_s,
                     u"progress 3 1"_s, "file "_L1 + project.path(u"scr/B.psc"_s), u"report REPLACE"_s,
                     u"progress 3 2"_s, "file "_L1 + project.path(u"scr/sub/c.psc"_s), u"report ERROR"_s,
                     u"progress 3 3"_s, u"end"_s}));
}

void TestConverter::runsOnItsOwnThread()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, candidate);
    project.write(u"mac/pump.plb"_s, shape);
    QSet<QThread *> threads;
    QMutex mutex;
    Worker worker;
    const RunRecorder recorder(worker.converter);
    // Without a context object the function is called where the signal is emitted.
    const auto note = [&] {
        const QMutexLocker lock(&mutex);
        threads += QThread::currentThread();
    };
    connect(&worker.converter, &Converter::sigProgressChanged, note);
    connect(&worker.converter, &Converter::sigUpdFileName, note);
    connect(&worker.converter, &Converter::sigConvertInfo, note);
    connect(&worker.converter, &Converter::sigConvertEnd, note);
    worker.converter.setProjectDir(project.dir());
    worker.converter.setFilterNames(chosen);
    worker.requestRun();

    QTRY_COMPARE(recorder.endedRuns(), 1);
    QCOMPARE(recorder.events, (QStringList{u"progress 1 0"_s, "file "_L1 + project.path(u"scr/a.psc"_s),
                                           u"report REPLACE"_s, u"progress 1 1"_s, u"end"_s}));
    QCOMPARE(recorder.reports.constFirst().shapeObject, u"OBJ:new"_s);
    QCOMPARE(project.read(u"scr/a.psc"_s), converted);
    const QMutexLocker lock(&mutex);
    QCOMPARE(threads, QSet<QThread *>{worker.converter.thread()});
}

void TestConverter::convertsNothingWhereNothingIsChosen()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, candidate);
    project.write(u"mac/pump.plb"_s, shape);
    Converter converter(project.dir());
    const RunRecorder recorder(converter);
    converter.convert();
    QCOMPARE(recorder.reports.size(), 0);
    QCOMPARE(project.read(u"scr/a.psc"_s), candidate);
    QCOMPARE(project.files(u"scr_bak"_s), QStringList{u"a.psc"_s});
}

void TestConverter::keepsFilterNamesInLowerCase()
{
    const TestProject project;
    project.write(u"mac/pump.plb"_s, shape);
    Converter converter(project.dir());
    const RunRecorder recorder(converter);
    converter.setFilterNames({u"PUMP.Plb"_s, u"other"_s});
    project.write(u"scr/a.psc"_s, candidate);
    converter.convert();
    QCOMPARE(recorder.statusWords(), QStringList{u"REPLACE"_s});

    // The names are exchanged, not added to.
    converter.setFilterNames({u"valve.plb"_s});
    project.write(u"scr/a.psc"_s, candidate);
    converter.convert();
    QCOMPARE(recorder.reports.size(), 1);
    QCOMPARE(project.read(u"scr/a.psc"_s), candidate);
}

void TestConverter::endsAProjectWithoutImageFilesLikeAnyOther_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("other files in scr") << u"scr/notes.txt"_s;
    QTest::newRow("no scr") << u"notes.txt"_s;
}

void TestConverter::endsAProjectWithoutImageFilesLikeAnyOther()
{
    QFETCH(const QString, file);
    const TestProject project;
    project.write(file, "notes"_ba);
    project.write(u"scr_bak/old.psc"_s, plain);
    const Outcome outcome(project);
    QCOMPARE(outcome.recorder.events, (QStringList{u"progress 0 0"_s, u"end"_s}));
    QCOMPARE(outcome.log.entries, QStringList());
    QVERIFY(!project.exists(u"scr_bak"_s));
    QVERIFY(!project.exists(u"scr"_s));
    QVERIFY(!project.exists(u"scr_temp"_s));
    QVERIFY(!outcome.converter.logFileName().isEmpty());
    QVERIFY(!project.exists(u"log"_s));
}

void TestConverter::makesTheTempFolderBeforeItStops()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, plain);
    Converter converter(project.dir());
    const RunRecorder recorder(converter);
    converter.stopRequested = true;
    converter.convert();
    QCOMPARE(recorder.events, QStringList{u"end"_s});
    QVERIFY(project.exists(u"scr_temp"_s));
    QCOMPARE(project.files(u""_s), (QStringList{u".vantrel.run"_s, u"scr/a.psc"_s}));
}

void TestConverter::stopsBeforeTheNextFile_data()
{
    QTest::addColumn<bool>("byFlag");
    QTest::newRow("by the flag") << true;
    QTest::newRow("by the operation") << false;
}

void TestConverter::stopsBeforeTheNextFile()
{
    QFETCH(const bool, byFlag);
    const TestProject project;
    for (const QString &file : {u"scr/a.psc"_s, u"scr/b.psc"_s, u"scr/sub/c.psc"_s, u"scr_bak/old.psc"_s})
        project.write(file, plain);
    Converter converter(project.dir());
    const RunRecorder recorder(converter);
    connect(&converter, &Converter::sigUpdFileName, this, [&](const QString &path) {
        if (!path.endsWith("b.psc"_L1))
            return;
        if (byFlag)
            converter.stopRequested = true;
        else
            converter.cancel();
    });
    converter.onStartConvert();

    // The file under way is finished; nothing is backed up or copied back.
    QCOMPARE(recorder.events,
             (QStringList{u"progress 3 0"_s, "file "_L1 + project.path(u"scr/a.psc"_s),
                          u"report NO REPLACE"_s, u"progress 3 1"_s,
                          "file "_L1 + project.path(u"scr/b.psc"_s), u"report NO REPLACE"_s, u"end"_s}));
    QCOMPARE(project.files(u"scr"_s), (QStringList{u"a.psc"_s, u"b.psc"_s, u"sub/c.psc"_s}));
    QCOMPARE(project.files(u"scr_temp"_s), (QStringList{u"a.psc"_s, u"b.psc"_s}));
    QVERIFY(project.exists(u"scr_temp/sub"_s));
    QCOMPARE(project.files(u"scr_bak"_s), QStringList{u"old.psc"_s});
}

void TestConverter::clearsTheStopFlagAtAStart()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, plain);
    Converter converter(project.dir());
    const RunRecorder recorder(converter);
    converter.stopRequested = true;
    converter.onStartConvert();
    QVERIFY(!converter.stopRequested);
    QCOMPARE(recorder.events.constLast(), u"end"_s);
    QVERIFY(recorder.events.contains(u"progress 1 1"_s));
}

void TestConverter::keepsTheStopRequestOfASlot()
{
    Converter converter(u"/plant"_s);
    const RunRecorder recorder(converter);
    converter.onStopConvert();
    QVERIFY(converter.stopRequested);
    QCOMPARE(recorder.events, QStringList());
}

void TestConverter::finishesWhenStoppedAtTheLastFile()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, plain);
    Converter converter(project.dir());
    const RunRecorder recorder(converter);
    connect(&converter, &Converter::sigUpdFileName, this, [&] { converter.stopRequested = true; });
    converter.onStartConvert();
    // The flag is looked at before a file only.
    QVERIFY(recorder.events.contains(u"progress 1 1"_s));
    QCOMPARE(project.files(u""_s), (QStringList{u"scr/a.psc"_s, u"scr_bak/a.psc"_s}));
}

void TestConverter::cancelsTheRunUnderWay()
{
    const TestProject project;
    for (int file = 0; file < 50; ++file)
        project.write(u"scr/%1.psc"_s.arg(file), plain);
    Worker worker;
    const RunRecorder recorder(worker.converter);
    QSemaphore underWay;
    QSemaphore cancelled;
    // Holds the run in its first file until it has been cancelled.
    connect(&worker.converter, &Converter::sigUpdFileName, [&] {
        underWay.release();
        cancelled.acquire();
    });
    worker.converter.setProjectDir(project.dir());
    worker.converter.announceStart();
    worker.requestRun();
    underWay.acquire();
    worker.converter.cancel();
    cancelled.release(1000);

    QTRY_COMPARE(recorder.endedRuns(), 1);
    QCOMPARE(recorder.events.filter(u"progress"_s), QStringList{u"progress 50 0"_s});
    QCOMPARE(project.files(u"scr"_s).size(), 50);
    QVERIFY(!project.exists(u"scr_bak"_s));
}

void TestConverter::cancelsAnAnnouncedStartThatHasNotBegun()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, plain);
    Converter converter(project.dir());
    const RunRecorder recorder(converter);
    converter.announceStart();
    converter.cancel();
    converter.onStartConvert();
    QCOMPARE(recorder.events, QStringList{u"end"_s});
    QCOMPARE(project.files(u""_s), QStringList{u"scr/a.psc"_s});
}

void TestConverter::startsAgainRightAfterACancel()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, plain);
    Converter converter(project.dir());
    const RunRecorder recorder(converter);
    // Two starts are cancelled before they begin, the third one is announced behind the cancel.
    converter.announceStart();
    converter.announceStart();
    converter.cancel();
    converter.announceStart();
    converter.onStartConvert();
    converter.onStartConvert();
    QCOMPARE(recorder.events, (QStringList{u"end"_s, u"end"_s}));
    converter.onStartConvert();
    QCOMPARE(recorder.endedRuns(), 3);
    QVERIFY(recorder.events.contains(u"progress 1 1"_s));
}

void TestConverter::ignoresACancelWhereNothingIsUnderWay()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, plain);
    Converter converter(project.dir());
    const RunRecorder recorder(converter);
    converter.cancel();
    converter.announceStart();
    converter.onStartConvert();
    QVERIFY(recorder.events.contains(u"progress 1 1"_s));
    converter.cancel();
    converter.onStartConvert();
    QCOMPARE(recorder.events.count(u"progress 1 1"_s), 2);
}

void TestConverter::startsAndCancelsInAnyOrder()
{
    constexpr int rounds = 50;
    const TestProject project;
    for (const QString &file : {u"scr/a.psc"_s, u"scr/b.psc"_s, u"scr/c.psc"_s})
        project.write(file, candidate);
    project.write(u"mac/pump.plb"_s, shape);
    Worker worker;
    Converter &converter = worker.converter;
    const RunRecorder recorder(converter);
    for (int round = 0; round < rounds; ++round) {
        converter.setProjectDir(project.dir());
        converter.setFilterNames(chosen);
        converter.announceStart();
        worker.requestRun();
        // Every other round cancels at once, whatever the run has come to by then.
        if (round % 2 == 0)
            converter.cancel();
        else
            QTRY_COMPARE(recorder.endedRuns(), round + 1);
    }
    QTRY_COMPARE(recorder.endedRuns(), rounds);
    QVERIFY(recorder.events.count(u"progress 3 3"_s) >= rounds / 2);
    for (const QString &file : {u"scr/a.psc"_s, u"scr/b.psc"_s, u"scr/c.psc"_s})
        QCOMPARE(project.read(file), converted);
}

void TestConverter::refusesAStartWhileARunIsUnderWay()
{
    const TestProject project;
    for (const QString &file : {u"scr/a.psc"_s, u"scr/b.psc"_s})
        project.write(file, plain);
    Converter converter(project.dir());
    const RunRecorder recorder(converter);
    int refused = 0;
    const auto startAnother = [&] {
        ++refused;
        converter.onStartConvert();
        converter.convert();
    };
    connect(&converter, &Converter::sigUpdFileName, this, startAnother);
    connect(&converter, &Converter::sigConvertInfo, this, startAnother);
    // Neither does it clear a stop that was asked for.
    connect(&converter, &Converter::sigUpdFileName, this, [&](const QString &path) {
        if (path.endsWith("/b.psc"_L1)) {
            converter.stopRequested = true;
            converter.onStartConvert();
        }
    });
    converter.onStartConvert();
    QCOMPARE(refused, 4);
    QCOMPARE(recorder.endedRuns(), 1);
    QCOMPARE(recorder.events.filter(u"progress"_s),
             QStringList({u"progress 2 0"_s, u"progress 2 1"_s, u"progress 2 2"_s}));
    QVERIFY(converter.stopRequested);
    QVERIFY(project.exists(u"scr_bak/b.psc"_s));

    // Once it has ended, another one begins.
    QObject::disconnect(&converter, &Converter::sigUpdFileName, this, nullptr);
    QObject::disconnect(&converter, &Converter::sigConvertInfo, this, nullptr);
    converter.onStartConvert();
    QCOMPARE(recorder.endedRuns(), 2);
}

void TestConverter::worksOnWhatItTookAtItsStart()
{
    const TestProject project;
    const TestProject other;
    for (const TestProject *each : {&project, &other}) {
        each->write(u"scr/a.psc"_s, candidate);
        each->write(u"scr/b.psc"_s, candidate);
        each->write(u"mac/pump.plb"_s, shape);
    }
    Converter converter(project.dir());
    converter.setFilterNames(chosen);
    const RunRecorder recorder(converter);
    QStringList logs;
    connect(&converter, &Converter::sigUpdFileName, this, [&] {
        logs += converter.logFileName();
        converter.setProjectDir(other.dir());
        converter.setFilterNames({});
        converter.setMakeFolders(true);
    });
    converter.onStartConvert();

    QCOMPARE(recorder.statusWords(), (QStringList{u"REPLACE"_s, u"REPLACE"_s}));
    QCOMPARE(project.read(u"scr/a.psc"_s), converted);
    QCOMPARE(project.read(u"scr/b.psc"_s), converted);
    QCOMPARE(project.files(u"scr_bak"_s), (QStringList{u"a.psc"_s, u"b.psc"_s}));
    QCOMPARE(other.files(u""_s), (QStringList{u"mac/pump.plb"_s, u"scr/a.psc"_s, u"scr/b.psc"_s}));
    QCOMPARE(logs.size(), 2);
    QVERIFY(logs.at(0).startsWith(project.path(u"log/Vantrel_"_s)));
    QCOMPARE(logs.at(1), logs.at(0));
    QCOMPARE(converter.logFileName(), logs.at(0));

    // The next run takes what was set meanwhile.
    converter.onStartConvert();
    QCOMPARE(recorder.reports.size(), 2);
    QVERIFY(converter.logFileName().startsWith(other.path(u"log/Vantrel_"_s)));
    QCOMPARE(other.files(u"scr_bak"_s), (QStringList{u"a.psc"_s, u"b.psc"_s}));
}

void TestConverter::runsAgain()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, candidate);
    project.write(u"mac/pump.plb"_s, shape);
    Worker worker;
    const RunRecorder recorder(worker.converter);
    worker.converter.setProjectDir(project.dir());
    worker.converter.setFilterNames(chosen);
    for (int run = 0; run < 3; ++run)
        worker.requestRun();
    QTRY_COMPARE(recorder.endedRuns(), 3);
    QCOMPARE(recorder.events.count(u"progress 1 1"_s), 3);
    // The second run's original is what the first one had made.
    QCOMPARE(project.read(u"scr_bak/a.psc"_s), converted);
    QCOMPARE(project.read(u"scr/a.psc"_s), converted);
}

void TestConverter::writesDownWhatItDoesWhileItDoesIt()
{
    const TestProject project;
    for (const QString &file : {u"scr/a.psc"_s, u"scr/sub/b.psc"_s, u"scr_temp/old/c.psc"_s})
        project.write(file, plain);
    Converter converter(project.dir());
    converter.setFilterNames({u"Valve.plb"_s, u"pump.plb"_s});
    converter.setMakeFolders(true);
    std::optional<RunRecord> record;
    bool isLocked = false;
    connect(&converter, &Converter::sigUpdFileName, this, [&] {
        record = StageFile::read(project.dir());
        isLocked = ProjectLock(project.dir()).isHeldByOther();
    });
    converter.convert();
    QVERIFY(record);
    QCOMPARE(record->state.stage, RunStage::Converting);
    QCOMPARE(record->facts.program, thisProgram());
    QCOMPARE(record->facts.shapeNames, (QStringList{u"pump.plb"_s, u"valve.plb"_s}));
    QCOMPARE(record->facts.makesFolders, true);
    QCOMPARE(record->facts.listIsWhole, true);
    QCOMPARE(record->facts.hadTempFolder, true);
    QCOMPARE(record->facts.screens, (QStringList{u"a.psc"_s, u"sub/b.psc"_s}));
    QCOMPARE(record->facts.olderFiles, QStringList{u"old/c.psc"_s});
    QCOMPARE(record->facts.olderFolders, QStringList{u"old"_s});
    QVERIFY(isLocked);
}

void TestConverter::leavesNeitherStageNorLock_data()
{
    QTest::addColumn<bool>("isStopped");
    QTest::newRow("behind a completed run") << false;
    QTest::newRow("behind a stopped run") << true;
}

void TestConverter::leavesNeitherStageNorLock()
{
    QFETCH(const bool, isStopped);
    const TestProject project;
    project.write(u"scr/a.psc"_s, plain);
    Converter converter(project.dir());
    converter.stopRequested = isStopped;
    QStringList filesAtEnd;
    connect(&converter, &Converter::sigConvertEnd, this, [&] { filesAtEnd = project.files(u""_s); });
    converter.convert();
    // What a stopped run leaves tells that nothing is to be recovered.
    QCOMPARE(filesAtEnd, isStopped ? (QStringList{u".vantrel.run"_s, u"scr/a.psc"_s})
                                   : (QStringList{u"scr/a.psc"_s, u"scr_bak/a.psc"_s}));
    QVERIFY(!StageFile::tellsOfInterruption(project.dir()));
}

void TestConverter::touchesNothingInWhatCanBeNoProject_data()
{
    QTest::addColumn<QString>("projectDir");
    QTest::addColumn<QString>("complaint");
    const QString root = u"the root folder is no project directory"_s;
    QTest::newRow("none") << QString() << u"no project directory was named"_s;
    QTest::newRow("empty") << u""_s << u"no project directory was named"_s;
    QTest::newRow("root folder") << u"/"_s << root;
    QTest::newRow("root folder with more slashes") << u"//."_s << root;
    QTest::newRow("root folder over another") << u"/tmp/.."_s << root;
}

void TestConverter::touchesNothingInWhatCanBeNoProject()
{
    QFETCH(const QString, projectDir);
    QFETCH(const QString, complaint);
    // Should it begin, it may not write into the root folder.
    const OrdinaryUser user;
    Converter converter(projectDir);
    const RunRecorder recorder(converter);
    const LogRecorder log;
    converter.convert();
    QCOMPARE(recorder.events, QStringList{u"end"_s});
    QCOMPARE(log.entries,
             QStringList{u"error: The run was not started, and nothing was touched: "_s + complaint});
    QVERIFY(log.namesSource(0, u"tools/Vantrel/Converter"_s, 1700));
    QVERIFY(converter.logFileName().isEmpty());
}

void TestConverter::touchesNothingWhileAnotherRunHoldsTheProject()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, candidate);
    project.write(u"scr_bak/old.psc"_s, plain);
    const auto other = std::make_unique<ProjectLock>(project.dir());
    const Outcome outcome(project);
    QCOMPARE(outcome.recorder.events, QStringList{u"end"_s});
    QCOMPARE(outcome.log.entries,
             QStringList{u"error: Project %1 is in use by %2; the run was not started"_s.arg(
                 project.dir(), ProjectLock(project.dir()).holder())});
    QCOMPARE(project.files(u""_s),
             (QStringList{u".vantrel.lock"_s, u"mac/pump.plb"_s, u"scr/a.psc"_s, u"scr_bak/old.psc"_s}));
    QVERIFY(!project.exists(u"scr_temp"_s));
    QCOMPARE(outcome.converter.logFileName(), QString());
}

void TestConverter::takesNoLockWhereItsOwnerHoldsIt()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, candidate);
    const ProjectLock lock(project.dir());
    QVERIFY(!lock.isHeldByOther());
    Converter converter(project.dir());
    converter.setLocked(true);
    const LogRecorder log;
    converter.convert();
    QCOMPARE(log.entries, QStringList());
    QVERIFY(project.exists(u"scr_bak/a.psc"_s));
    QVERIFY(project.exists(u".vantrel.lock"_s));
}

void TestConverter::takesOverTheLockOfADeadProcess()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, candidate);
    project.write(u".vantrel.lock"_s, QByteArray());
    const Outcome outcome(project);
    QCOMPARE(outcome.recorder.events.last(), u"end"_s);
    QCOMPARE(project.read(u"scr/a.psc"_s), converted);
    QVERIFY(!project.exists(u".vantrel.lock"_s));
}

void TestConverter::runsWhereNeitherStageNorLockCanBeMade()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, candidate);
    project.write(u"mac/pump.plb"_s, shape);
    project.makeFolder(u"scr_temp"_s);
    QFile::setPermissions(project.path(u"scr_temp"_s), QFile::Permissions::fromInt(0x7777));
    QFile::setPermissions(project.dir(), QFile::Permissions::fromInt(0x5555));
    Converter converter(project.dir());
    const RunRecorder recorder(converter);
    const LogRecorder log;
    converter.setFilterNames(chosen);
    {
        const OrdinaryUser user;
        converter.convert();
    }
    QFile::setPermissions(project.dir(), QFile::Permissions::fromInt(0x7777));
    QCOMPARE(recorder.events, (QStringList{u"progress 1 0"_s, "file "_L1 + project.path(u"scr/a.psc"_s),
                                           u"report REPLACE"_s, u"progress 1 1"_s, u"end"_s}));
    QCOMPARE(project.read(u"scr_temp/a.psc"_s), converted);
    QCOMPARE(project.read(u"scr/a.psc"_s), candidate);
    QVERIFY(log.entries.contains(
        u"warning: Nobody may write into %1: where this run is interrupted, nothing will "
        "tell how far it came"_s.arg(project.dir())));
}

/// Without it, an interruption would leave the only copies of screens where nobody looks for them.
void TestConverter::touchesNothingWhereItsStageCannotBeWritten()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, candidate);
    project.write(u"scr_bak/a.psc"_s, "older"_ba);
    project.makeFolder(u".vantrel.run.new"_s);
    const QStringList before = project.files(u""_s);
    const Outcome outcome(project);
    QCOMPARE(outcome.recorder.events, QStringList{u"end"_s});
    QCOMPARE(outcome.log.entries,
             QStringList{u"error: The run was not started, and nothing was touched: %1 could not be written: "
                         "Is a directory"_s.arg(project.path(u".vantrel.run"_s))});
    QCOMPARE(project.read(u"scr/a.psc"_s), candidate);
    QCOMPARE(project.read(u"scr_bak/a.psc"_s), "older"_ba);
    QVERIFY(!project.exists(u"scr_temp"_s));
}

void TestConverter::breaksOffWhereALaterStageCannotBeWritten()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, candidate);
    project.write(u"scr_bak/a.psc"_s, "older"_ba);
    project.write(u"mac/pump.plb"_s, shape);
    Converter converter(project.dir());
    const RunRecorder recorder(converter);
    const LogRecorder log;
    converter.setFilterNames(chosen);
    QObject::connect(&converter, &Converter::sigUpdFileName, &converter,
                     [&project] { project.makeFolder(u".vantrel.run.new"_s); });
    converter.convert();
    QCOMPARE(log.entries.size(), 1);
    QVERIFY2(log.entries.first().startsWith(u"error: The run was broken off: "_s),
             qUtf8Printable(log.entries.first()));
    QCOMPARE(project.read(u"scr/a.psc"_s), candidate);
    QCOMPARE(project.read(u"scr_bak/a.psc"_s), "older"_ba);
    QVERIFY(!recorder.events.contains(u"progress 1 1"_s));
    // What is left can be recovered.
    const std::optional<RunRecord> record = StageFile::read(project.dir());
    QVERIFY(record);
    QCOMPARE(record->state.stage, RunStage::Converting);
}

void TestConverter::reportsFoldersThatCannotBeListed()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, plain);
    project.write(u"scr/sub/b.psc"_s, plain);
    for (const QString &folder : {u""_s, u"scr"_s})
        QFile::setPermissions(project.path(folder), QFile::Permissions::fromInt(0x7777));
    QFile::setPermissions(project.path(u"scr/sub"_s), QFile::Permissions::fromInt(0));
    Converter converter(project.dir());
    const RunRecorder recorder(converter);
    const LogRecorder log;
    {
        const OrdinaryUser user;
        converter.convert();
    }
    const RunHistory history(project.dir());
    QFile::setPermissions(history.pathOf(history.newestRun(), u"scr/sub"_s),
                          QFile::Permissions::fromInt(0x7777));

    const QString message = u"Could not list Folder %1: Permission denied"_s.arg(project.path(u"scr/sub"_s));
    QCOMPARE(recorder.events.constFirst(), u"report ERROR"_s);
    QCOMPARE(recorder.reports.constFirst().imageFile, project.path(u"scr/sub"_s));
    QCOMPARE(recorder.reports.constFirst().error, message);
    QCOMPARE(log.entries.constFirst(), "error: "_L1 + message);
    QCOMPARE(log.entries.constLast(), putAwayAsItWas(project));
    // All that could be read is converted, and nothing is lost.
    QCOMPARE(project.files(u"scr"_s), QStringList{u"a.psc"_s});
    QCOMPARE(project.keptFiles(), (QStringList{u"scr/a.psc"_s, u"scr/sub/b.psc"_s}));
}

void TestConverter::losesNoScreenInAMazeOfLinks_data()
{
    QTest::addColumn<int>("keptRuns");
    QTest::newRow("with a history") << 1;
    QTest::newRow("without one") << 0;
}

void TestConverter::losesNoScreenInAMazeOfLinks()
{
    QFETCH(const int, keptRuns);
    const TestProject project;
    makeMaze(project, u"scr"_s, plain);
    // Only a link that is left out leads to this one, which the run does not see.
    project.write(u"elsewhere/c.psc"_s, candidate);
    project.link(u"../elsewhere"_s, u"scr/y"_s);
    project.write(u"scr/z.psc"_s, plain);
    const QStringList before = project.files(u"scr"_s);
    Converter converter(project.dir());
    converter.setKeptRuns(keptRuns);
    const RunRecorder recorder(converter);
    const LogRecorder log;
    converter.convert();

    QCOMPARE(recorder.events.constFirst(), u"report ERROR"_s);
    QVERIFY(recorder.reports.constFirst().error.contains(u"links lead to more than 1000 folders"_s));
    QCOMPARE(log.entries.constFirst(), "error: "_L1 + recorder.reports.constFirst().error);
    QCOMPARE(project.read(u"elsewhere/c.psc"_s), candidate);
    if (keptRuns == 0) {
        QCOMPARE(project.files(u"scr"_s), before);
        return;
    }
    QCOMPARE(log.entries.constLast(), putAwayAsItWas(project));
    // It is converted, though it comes behind the maze.
    QCOMPARE(project.read(u"scr/z.psc"_s), plain);
    const RunHistory history(project.dir());
    QCOMPARE(filesBelow(history.pathOf(history.newestRun(), u"scr"_s)), before);
}

void TestConverter::reportsNamesThatAreNotText()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, plain);
    // The second is what a reader of the first one's name may take it for.
    const QByteArray odd = QFile::encodeName(project.path(u"scr"_s)) + "/f\xe4.psc";
    project.write(u"scr/f\ufffd.psc"_s, candidate);
    QCOMPARE(::rename(QFile::encodeName(project.path(u"scr/a.psc"_s)).constData(), odd.constData()), 0);
    const Outcome outcome(project);

    const QString shown = project.path(u"scr/f\\xe4.psc"_s);
    QCOMPARE(outcome.recorder.statusWords(), (QStringList{u"ERROR"_s, u"REPLACE"_s}));
    QCOMPARE(outcome.recorder.reports.constFirst().imageFile, shown);
    QCOMPARE(outcome.recorder.reports.constFirst().error,
             u"Could not open Image File: its name is not valid UTF-8"_s);
    QCOMPARE(outcome.log.entries,
             (QStringList{u"error: Could not open Image File %1: its name is not valid UTF-8"_s.arg(shown),
                          putAwayAsItWas(project)}));
    QCOMPARE(project.read(u"scr/f\ufffd.psc"_s), converted);
    QCOMPARE(project.read(u"scr_bak/f\ufffd.psc"_s), candidate);
    const RunHistory history(project.dir());
    const QByteArray kept = QFile::encodeName(history.pathOf(history.newestRun(), u"scr"_s)) + "/f\xe4.psc";
    QCOMPARE(::access(kept.constData(), F_OK), 0);
}

void TestConverter::backsUpImageFilesOnly()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, candidate);
    project.write(u"scr/sub/b.psc"_s, plain);
    project.write(u"scr/notes.txt"_s, "notes"_ba);
    project.write(u"scr/.hidden.psc"_s, plain);
    const Outcome outcome(project);
    // What is no image file goes to the history with the folder.
    QCOMPARE(project.keptFiles(), (QStringList{u"scr/.hidden.psc"_s, u"scr/notes.txt"_s}));
    QCOMPARE(project.files(u""_s), (QStringList{u"mac/pump.plb"_s, u"scr/a.psc"_s, u"scr/sub/b.psc"_s,
                                                u"scr_bak/a.psc"_s, u"scr_bak/sub/b.psc"_s}));
    QCOMPARE(project.read(u"scr/a.psc"_s), converted);
    QCOMPARE(project.read(u"scr_bak/a.psc"_s), candidate);
    QVERIFY(!project.exists(u"scr_temp"_s));
}

void TestConverter::replacesTheBackupOfTheRunBefore()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, candidate);
    project.write(u"scr_bak/a.psc"_s, "old"_ba);
    project.write(u"scr_bak/gone/b.psc"_s, "old"_ba);
    project.write(u"scr_bak/.hidden"_s, "old"_ba);
    const Outcome outcome(project);
    QCOMPARE(project.files(u"scr_bak"_s), QStringList{u"a.psc"_s});
    QCOMPARE(project.read(u"scr_bak/a.psc"_s), candidate);
}

void TestConverter::keepsWhatItDisplaces()
{
    const TestProject project;
    project.write(u"scr/hall/a.psc"_s, plain);
    project.write(u"scr/a.psc"_s, candidate);
    project.write(u"scr/hall/notes.txt"_s, "notes"_ba);
    project.makeFolder(u"scr/empty"_s);
    project.link(u"a.psc"_s, u"scr/link.txt"_s);
    project.write(u"scr_bak/gone/b.psc"_s, "old"_ba);
    project.write(u"scr_bak/.hidden"_s, "old"_ba);
    project.write(u"scr_temp/left.txt"_s, "left"_ba);
    const Outcome outcome(project);
    QCOMPARE(outcome.log.entries, QStringList());
    QCOMPARE(project.keptFiles(),
             (QStringList{u"scr/hall/notes.txt"_s, u"scr/link.txt"_s, u"scr_bak/.hidden"_s,
                          u"scr_bak/gone/b.psc"_s, u"scr_temp/left.txt"_s}));
    const RunHistory history(project.dir());
    QCOMPARE(history.entries().size(), 1);
    QVERIFY(QFileInfo(history.pathOf(history.newestRun(), u"scr/empty"_s)).isDir());
    QVERIFY(!project.exists(u"scr_temp"_s));
}

void TestConverter::keepsWhatARunOverNoScreensDisplaces()
{
    const TestProject project;
    project.write(u"scr/notes.txt"_s, "notes"_ba);
    project.write(u"scr_bak/a.psc"_s, "the last copy"_ba);
    const Outcome outcome(project);
    QCOMPARE(project.keptFiles(), (QStringList{u"scr/notes.txt"_s, u"scr_bak/a.psc"_s}));
}

void TestConverter::keepsAFileInThePlaceOfTheBackup()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, candidate);
    project.write(u"scr_bak"_s, "a file"_ba);
    const Outcome outcome(project);
    QCOMPARE(outcome.log.entries, QStringList());
    QCOMPARE(project.keptFiles(), QStringList{u"scr_bak"_s});
    QCOMPARE(project.read(u"scr_bak/a.psc"_s), candidate);
    QCOMPARE(project.read(u"scr/a.psc"_s), converted);
}

/// Moving a folder needs no right to change what is in it.
void TestConverter::keepsABackupThatCannotBeRemoved()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, candidate);
    project.write(u"scr_bak/locked/b.psc"_s, "older"_ba);
    project.write(u"mac/pump.plb"_s, shape);
    for (const QString &folder : {u""_s, u"scr"_s, u"scr_bak"_s})
        QFile::setPermissions(project.path(folder), QFile::Permissions::fromInt(0x7777));
    QFile::setPermissions(project.path(u"scr_bak/locked"_s), QFile::Permissions::fromInt(0x5555));
    const LogRecorder log;
    {
        const OrdinaryUser user;
        Converter converter(project.dir());
        converter.setFilterNames(chosen);
        converter.convert();
    }
    QCOMPARE(log.entries, QStringList());
    QCOMPARE(project.keptFiles(), QStringList{u"scr_bak/locked/b.psc"_s});
    QCOMPARE(project.files(u"scr_bak"_s), QStringList{u"a.psc"_s});
}

void TestConverter::keepsTheLastRuns_data()
{
    QTest::addColumn<int>("keptRuns");
    QTest::addColumn<QStringList>("backups"); // of the run before, the oldest first
    QTest::newRow("three") << 3 << QStringList{u"1"_s, u"2"_s, u"3"_s};
    QTest::newRow("one") << 1 << QStringList{u"3"_s};
    QTest::newRow("none") << 0 << QStringList();
    QTest::newRow("more than there are") << 100 << QStringList{u"0"_s, u"1"_s, u"2"_s, u"3"_s};
}

void TestConverter::keepsTheLastRuns()
{
    QFETCH(const int, keptRuns);
    QFETCH(const QStringList, backups);
    const TestProject project;
    project.write(u"scr_bak/a.psc"_s, "0"_ba);
    for (const QByteArray &text : {"1"_ba, "2"_ba, "3"_ba, "4"_ba}) {
        project.write(u"scr/a.psc"_s, text);
        const Outcome outcome(project, keptRuns);
        QCOMPARE(project.read(u"scr_bak/a.psc"_s), text);
    }
    const RunHistory history(project.dir());
    QStringList kept;
    for (const QString &entry : history.entries()) {
        QFile file(history.pathOf(entry, u"scr_bak/a.psc"_s));
        QVERIFY(file.open(QIODevice::ReadOnly));
        kept.prepend(QString::fromLatin1(file.readAll()));
    }
    QCOMPARE(kept, backups);
}

void TestConverter::keepsNothingOfAStoppedRun()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, plain);
    project.write(u"scr_bak/a.psc"_s, "old"_ba);
    Converter converter(project.dir());
    converter.stopRequested = true;
    converter.convert();
    QVERIFY(!project.exists(u".vantrel.history"_s));
    QCOMPARE(project.read(u"scr_bak/a.psc"_s), "old");
}

void TestConverter::tellsWhatItCannotRemoveAtItsEnd()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, plain);
    Converter converter(project.dir());
    const LogRecorder log;
    connect(&converter, &Converter::sigProgressChanged, this, [&](int count, int index) {
        if (index < count)
            return;
        project.remove(u".vantrel.run"_s);
        project.makeFolder(u".vantrel.run"_s);
    });
    converter.convert();
    QCOMPARE(log.entries.size(), 1);
    QVERIFY2(log.entries.first().endsWith(
                 u"%1 could not be removed: Is a directory. It tells of a run that came "
                 "to its end, and the next run replaces it"_s.arg(project.path(u".vantrel.run"_s))),
             qUtf8Printable(log.entries.first()));
    QCOMPARE(project.read(u"scr/a.psc"_s), plain);
}

void TestConverter::keepsTheRightsOfScreensAndFolders()
{
    const TestProject project;
    const QByteArray object = "ID;1;Rect;N\nLIB;pump.plb;1;Plant/1;Obj\nPSDV;1;2;3;4;2;1;15;8;1;0;1;0\n";
    project.write(u"scr/a.psc"_s, object);
    project.write(u"scr/hall/b.psc"_s, plain);
    project.write(u"mac/pump.plb"_s, "ID;1;Ellipse;Body\nLIB;pump.plb;2;Lib/Pump;Lib/Pump\n"
                                     "PSDV;0;0;19;19;2;1;7;0;2;0;0;0\n");
    const QMap<QString, mode_t> rights{
        {u"a.psc"_s, 0600}, {u"hall/b.psc"_s, 0640}, {u"hall"_s, 0700}, {u""_s, 0750}};
    for (auto name = rights.cbegin(); name != rights.cend(); ++name)
        QCOMPARE(chmod(QFile::encodeName(project.path(u"scr/"_s + name.key())).constData(), name.value()), 0);
    Converter converter(project.dir());
    converter.setFilterNames({u"pump.plb"_s});
    converter.convert();
    QVERIFY(project.read(u"scr/a.psc"_s) != object);
    for (const QString &folder : {u"scr/"_s, u"scr_bak/"_s}) {
        for (auto name = rights.cbegin(); name != rights.cend(); ++name) {
            struct stat status = {};
            QCOMPARE(stat(QFile::encodeName(project.path(folder + name.key())).constData(), &status), 0);
            QCOMPARE(status.st_mode & 07777, name.value());
        }
    }
}

void TestConverter::startsOverACancelledRun_data()
{
    QTest::addColumn<bool>("putsAway");
    QTest::addColumn<int>("keptRuns");
    QTest::addColumn<QStringList>("screens"); // afterwards
    QTest::addColumn<QStringList>("kept");
    const QStringList both{u"a.psc"_s, u"b.psc"_s};
    QTest::newRow("into the history")
        << true << 3 << QStringList{u"b.psc"_s} << QStringList{u"scr_temp/a.psc"_s};
    QTest::newRow("without a history") << true << 0 << QStringList{u"b.psc"_s} << QStringList();
    QTest::newRow("unless asked to") << false << 3 << both << QStringList();
}

void TestConverter::startsOverACancelledRun()
{
    QFETCH(const bool, putsAway);
    QFETCH(const int, keptRuns);
    QFETCH(const QStringList, screens);
    QFETCH(const QStringList, kept);
    const TestProject project;
    project.write(u"scr/a.psc"_s, plain);
    project.write(u"scr/b.psc"_s, plain);
    Converter converter(project.dir());
    QObject::connect(&converter, &Converter::sigConvertInfo, &converter, &Converter::cancel);
    converter.convert();
    QCOMPARE(project.files(u"scr_temp"_s), QStringList{u"a.psc"_s});
    QCOMPARE(StageFile::read(project.dir())->state.stage, RunStage::Cancelled);
    QCOMPARE(StageFile::read(project.dir())->facts.screens, QStringList());

    // The user removes a screen before the next run.
    project.remove(u"scr/a.psc"_s);
    Converter next(project.dir());
    const LogRecorder log;
    next.setPutsAwayTempFolder(putsAway);
    next.setKeptRuns(keptRuns);
    next.convert();
    QCOMPARE(log.entries, QStringList());
    QCOMPARE(project.files(u"scr"_s), screens);
    QCOMPARE(project.keptFiles(), kept);
    QVERIFY(!StageFile::exists(project.dir()));
}

void TestConverter::keepsNoEntryWhereACancelledRunLeftNothing()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, plain);
    Converter converter(project.dir());
    converter.stopRequested = true;
    converter.convert();
    QVERIFY(QDir().rmdir(project.path(u"scr_temp"_s)));
    converter.setPutsAwayTempFolder(true);
    converter.stopRequested = false;
    converter.convert();
    QCOMPARE(RunHistory(project.dir()).entries().size(), 1); // of the second run
}

void TestConverter::putsOthersBackWhereAsked_data()
{
    QTest::addColumn<int>("keptRuns");
    QTest::newRow("with a history") << RunHistory::usualRuns;
    QTest::newRow("without one") << keepsNothing;
}

void TestConverter::putsOthersBackWhereAsked()
{
    QFETCH(const int, keptRuns);
    const TestProject project;
    project.write(u"scr/a.psc"_s, candidate);
    project.write(u"scr/bad.psc"_s, "LIB;a\n"_ba);
    project.write(u"scr/hall/notes.txt"_s, "notes"_ba);
    project.write(u"scr/.draft"_s, "draft"_ba);
    project.makeFolder(u"scr/empty"_s);
    project.write(u"mac/pump.plb"_s, shape);
    Converter converter(project.dir());
    const LogRecorder log;
    converter.setFilterNames(chosen);
    converter.setKeptRuns(keptRuns);
    converter.setKeepsOthers(true);
    converter.convert();
    QCOMPARE(project.read(u"scr/a.psc"_s), converted);
    QCOMPARE(project.read(u"scr/bad.psc"_s), "LIB;a\n"_ba);
    QCOMPARE(project.read(u"scr/hall/notes.txt"_s), "notes"_ba);
    QCOMPARE(project.read(u"scr/.draft"_s), "draft"_ba);
    QVERIFY(QFileInfo(project.path(u"scr/empty"_s)).isDir());
    QCOMPARE(project.files(u"scr_bak"_s), (QStringList{u"a.psc"_s, u"bad.psc"_s}));
    QCOMPARE(project.keptFiles(), QStringList());
    QCOMPARE(log.entries.size(), 1); // about the screen
    QCOMPARE(RunHistory(project.dir()).entries().size(), keptRuns == 0 ? 0 : 1);
}

void TestConverter::breaksOffWhereOthersHaveNoPlace()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, candidate);
    project.write(u"scr/notes.txt"_s, "notes"_ba);
    project.write(u".vantrel.history"_s, "in the way"_ba);
    Converter converter(project.dir());
    const RunRecorder recorder(converter);
    const LogRecorder log;
    converter.setKeepsOthers(true);
    converter.convert();
    QVERIFY(!recorder.events.contains(u"progress 1 1"_s));
    QCOMPARE(log.entries.size(), 2);
    QCOMPARE(log.entries.last(),
             u"error: The run was broken off, and \"scr\" is untouched: other files would have no place"_s);
    QCOMPARE(project.files(u"scr"_s), (QStringList{u"a.psc"_s, u"notes.txt"_s}));
    QVERIFY(!project.exists(u"scr_bak"_s));
    QVERIFY(!StageFile::exists(project.dir()));
}

void TestConverter::tellsWhatARunDid()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, candidate);
    project.write(u"scr/b.psc"_s, plain);
    project.write(u"scr/c.psc"_s, "LIB;a\n"_ba);
    const QDateTime before = QDateTime::currentDateTime();
    const Outcome outcome(project);
    const RunHistory history(project.dir());
    const std::optional<RunSummary> summary = readSummary(history.pathOf(history.newestRun()));
    QVERIFY(summary);
    QCOMPARE(summary->kind, HistoryKind::Run);
    QCOMPARE(summary->program, thisProgram());
    QCOMPARE(summary->projectDir, project.dir());
    QVERIFY(summary->started >= before);
    QVERIFY(summary->ended >= summary->started);
    QCOMPARE(summary->shapeNames, QStringList{u"pump.plb"_s});
    QCOMPARE(summary->screens, 3);
    QCOMPARE(summary->replaced, 1);
    QCOMPARE(summary->notReplaced, 1);
    QCOMPARE(summary->errors, 1);
    QCOMPARE(project.path(summary->changeLog), outcome.converter.logFileName());
    QStringList stages;
    for (const StageTime &stage : summary->stages) {
        stages.append(stage.stage);
        QVERIFY(stage.begun >= summary->started && stage.begun <= summary->ended);
    }
    QCOMPARE(stages, (QStringList{u"converting"_s, u"removing the last backup"_s, u"backing up"_s,
                                  u"removing the screens that are backed up"_s, u"copying back"_s}));
}

void TestConverter::tellsWhereTheHistoryCannotBeWritten()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, candidate);
    project.write(u"scr_bak/a.psc"_s, "old"_ba);
    project.write(u".vantrel.history"_s, "in the way"_ba);
    const Outcome outcome(project);
    QCOMPARE(outcome.log.entries.size(), 1);
    QVERIFY(outcome.log.entries.first().startsWith(u"error: The history cannot be written"_s));
    QVERIFY(outcome.log.namesSource(0, u"tools/Vantrel/Converter"_s, 1730));
    QCOMPARE(project.read(u"scr/a.psc"_s), converted);
    QCOMPARE(project.read(u"scr_bak/a.psc"_s), candidate);
    QCOMPARE(project.read(u".vantrel.history"_s), "in the way");
}

void TestConverter::leavesFailedFilesToTheBackup()
{
    const TestProject project;
    project.write(u"scr/bad.psc"_s, "LIB;a\n"_ba);
    project.write(u"scr/good.psc"_s, candidate);
    const Outcome outcome(project);
    QCOMPARE(outcome.recorder.statusWords(), (QStringList{u"ERROR"_s, u"REPLACE"_s}));
    QCOMPARE(project.files(u"scr"_s), QStringList{u"good.psc"_s});
    QCOMPARE(project.files(u"scr_bak"_s), (QStringList{u"bad.psc"_s, u"good.psc"_s}));
    QCOMPARE(project.read(u"scr_bak/bad.psc"_s), "LIB;a\n"_ba);
    QCOMPARE(outcome.recorder.events.constLast(), u"end"_s);
}

void TestConverter::keepsALayoutThatCannotBeCopied()
{
    const TestProject project;
    project.write(u"scr/area/deep/a.psc"_s, plain);
    project.write(u"scr/area/deep/b.psc"_s, candidate);
    const Outcome outcome(project);
    // The copy of an unchanged file fails silently, the file that is rewritten says so.
    QCOMPARE(outcome.recorder.statusWords(), (QStringList{u"NO REPLACE"_s, u"ERROR"_s}));
    QCOMPARE(outcome.log.entries.size(), 1);
    QCOMPARE(outcome.recorder.events.mid(outcome.recorder.events.size() - 2),
             (QStringList{u"progress 2 2"_s, u"end"_s}));
    QCOMPARE(project.files(u""_s),
             (QStringList{u"mac/pump.plb"_s, u"scr/area/deep/a.psc"_s, u"scr/area/deep/b.psc"_s}));
    QCOMPARE(project.read(u"scr/area/deep/b.psc"_s), candidate);
}

void TestConverter::doesNotOverwriteAFileLeftInTheTempFolder()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, plain);
    project.write(u"scr/b.psc"_s, candidate);
    project.write(u"scr_temp/a.psc"_s, "left over"_ba);
    project.write(u"scr_temp/b.psc"_s, "left over"_ba);
    project.write(u"scr_temp/sub/c.psc"_s, "left over"_ba);
    const Outcome outcome(project);
    // An unchanged file is copied, which does not overwrite; a rewritten one is opened, which does.
    QCOMPARE(project.read(u"scr/a.psc"_s), "left over"_ba);
    QCOMPARE(project.read(u"scr/b.psc"_s), converted);
    QCOMPARE(project.read(u"scr/sub/c.psc"_s), "left over"_ba);
    QCOMPARE(project.files(u"scr_bak"_s), (QStringList{u"a.psc"_s, u"b.psc"_s}));
    QCOMPARE(project.read(u"scr_bak/a.psc"_s), plain);
    QVERIFY(!project.exists(u"scr_temp"_s));
}

void TestConverter::removesTheImageFolderBeforeTheSecondAttempt()
{
    const TestProject project;
    // The folder of the first file cannot be made in time, so "scr" is still there for the copy-back.
    project.write(u"scr/area/deep/a.psc"_s, plain);
    project.write(u"scr/notes.txt"_s, "notes"_ba);
    project.write(u"scr/z.psc"_s, candidate);
    const Outcome outcome(project);
    QCOMPARE(outcome.log.entries, QStringList());
    QCOMPARE(outcome.recorder.statusWords(), (QStringList{u"NO REPLACE"_s, u"REPLACE"_s}));
    QCOMPARE(project.files(u"scr"_s), QStringList{u"z.psc"_s});
    QCOMPARE(project.read(u"scr/z.psc"_s), converted);
    QVERIFY(!project.exists(u"scr_temp"_s));
}

void TestConverter::savesOriginalsThatHaveNoBackup()
{
    const TestProject project;
    project.write(u"scr/area/deep/a.psc"_s, plain + "a");
    project.write(u"scr/area/deep/b.psc"_s, plain + "b");
    project.write(u"scr/z.psc"_s, candidate);
    const Outcome outcome(project);
    QCOMPARE(project.files(u"scr_bak"_s),
             (QStringList{u"area/deep/a.psc"_s, u"area/deep/b.psc"_s, u"z.psc"_s}));
    QCOMPARE(project.read(u"scr_bak/area/deep/a.psc"_s), plain + "a");
    QCOMPARE(project.read(u"scr_bak/area/deep/b.psc"_s), plain + "b");
    QCOMPARE(project.read(u"scr_bak/z.psc"_s), candidate);
}

void TestConverter::savesOriginalsBelowTheProjectOnly()
{
    const TestProject project(u"scripts/plant"_s);
    // What lies in "scr_temp" itself does not come from this run: the run's own temp folder would
    // lie beside "scripts". It makes the copy-back fail, as "scr" was not backed up.
    project.write(u"scr/a.psc"_s, plain);
    project.write(u"scr/scrap/b.psc"_s, plain + "b");
    project.write(u"scr_temp/a.psc"_s, "left over"_ba);
    const Outcome outcome(project);
    QCOMPARE(project.files(u"scr"_s), QStringList{u"a.psc"_s});
    QCOMPARE(project.read(u"scr/a.psc"_s), "left over"_ba);
    QCOMPARE(project.files(u"scr_bak"_s), (QStringList{u"a.psc"_s, u"scr_bakap/b.psc"_s}));
    QCOMPARE(project.read(u"scr_bak/a.psc"_s), plain);
    QCOMPARE(project.read(u"scr_bak/scr_bakap/b.psc"_s), plain + "b");
    QVERIFY(!QFileInfo::exists(project.beside(u"scr_bakipts"_s)));
    QCOMPARE(outcome.log.entries, QStringList());
}

void TestConverter::savesOriginalsInFoldersThatAreRenamed()
{
    const TestProject project;
    project.write(u"scr/area/scr1/scr2/a.psc"_s, plain);
    project.write(u"scr/z.psc"_s, candidate);
    const Outcome outcome(project);
    QCOMPARE(project.files(u"scr_bak"_s), (QStringList{u"area/scr_bak1/scr_bak2/a.psc"_s, u"z.psc"_s}));
    QCOMPARE(project.files(u"scr"_s), QStringList{u"z.psc"_s});
}

void TestConverter::keepsTheImageFolderWhereOriginalsCannotBeSaved()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, candidate);
    project.write(u"scr/b.psc"_s, plain);
    // A file in the place of the backup folder: nothing can be saved in it.
    project.write(u"scr_bak"_s, "a file"_ba);
    const Outcome outcome(project, keepsNothing);
    QCOMPARE(outcome.log.entries, (QStringList{copyBackFailed}));
    QVERIFY2(outcome.log.namesSource(0, u"tools/Vantrel/Converter"_s, 1688),
             qUtf8Printable(outcome.log.lines.value(0)));
    QCOMPARE(project.files(u""_s), (QStringList{u"mac/pump.plb"_s, u"scr/a.psc"_s, u"scr/b.psc"_s,
                                                u"scr_bak"_s, u"scr_temp/a.psc"_s, u"scr_temp/b.psc"_s}));
    QCOMPARE(project.read(u"scr/a.psc"_s), candidate);
    QCOMPARE(project.read(u"scr_temp/a.psc"_s), converted);
    QCOMPARE(outcome.recorder.events.mid(outcome.recorder.events.size() - 2),
             (QStringList{u"progress 2 2"_s, u"end"_s}));
}

void TestConverter::tellsThatTheCopyBackFailed()
{
    const TestProject project;
    // The folder in "scr_temp" is there already, the one in "scr" cannot be made again.
    project.write(u"scr/area/deep/a.psc"_s, candidate);
    project.makeFolder(u"scr_temp/area/deep"_s);
    const Outcome outcome(project);
    QCOMPARE(outcome.recorder.statusWords(), QStringList{u"REPLACE"_s});
    QCOMPARE(outcome.log.entries, QStringList{copyBackFailed});
    QVERIFY2(outcome.log.namesSource(0, u"tools/Vantrel/Converter"_s, 1688),
             qUtf8Printable(outcome.log.lines.value(0)));
    QCOMPARE(project.files(u""_s),
             (QStringList{u"mac/pump.plb"_s, u"scr_bak/area/deep/a.psc"_s, u"scr_temp/area/deep/a.psc"_s}));
    QCOMPARE(project.read(u"scr_bak/area/deep/a.psc"_s), candidate);
    QCOMPARE(project.read(u"scr_temp/area/deep/a.psc"_s), converted);
    QCOMPARE(outcome.recorder.events.mid(outcome.recorder.events.size() - 2),
             (QStringList{u"progress 1 1"_s, u"end"_s}));
}

void TestConverter::mapsTheWholePathOfAProject()
{
    const TestProject project(u"scripts/plant"_s);
    project.write(u"scr/a.psc"_s, candidate);
    project.write(u"scr/b.psc"_s, plain);
    QVERIFY(QDir().mkpath(project.beside(u"scr_tempipts/plant"_s)));
    const Outcome outcome(project);
    // Temp files lie beside "scripts", where the copy-back does not look for them; the backup has
    // no folder there, so the originals stay.
    QCOMPARE(outcome.recorder.statusWords(), (QStringList{u"REPLACE"_s, u"NO REPLACE"_s}));
    QCOMPARE(filesBelow(project.beside(u"scr_tempipts"_s)),
             (QStringList{u"plant/scr_temp/a.psc"_s, u"plant/scr_temp/b.psc"_s}));
    QCOMPARE(project.files(u""_s), (QStringList{u"mac/pump.plb"_s, u"scr/a.psc"_s, u"scr/b.psc"_s}));
    QCOMPARE(project.read(u"scr/a.psc"_s), candidate);
    QCOMPARE(outcome.log.entries, QStringList());
}

void TestConverter::savesOriginalsFromAStaleBackup()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, candidate);
    project.write(u"scr_bak/a.psc"_s, "older"_ba);
    project.write(u"scr_bak/locked/b.psc"_s, "older"_ba);
    project.write(u"mac/pump.plb"_s, shape);
    for (const QString &folder : {u""_s, u"scr"_s, u"scr_bak"_s})
        QFile::setPermissions(project.path(folder), QFile::Permissions::fromInt(0x7777));
    QFile::setPermissions(project.path(u"scr_bak/locked"_s), QFile::Permissions::fromInt(0x5555));
    {
        // The old backup cannot be removed, and the new one does not overwrite it.
        const OrdinaryUser user;
        Converter converter(project.dir());
        converter.setFilterNames(chosen);
        converter.setKeptRuns(keepsNothing);
        converter.convert();
    }
    QFile::setPermissions(project.path(u"scr_bak/locked"_s), QFile::Permissions::fromInt(0x7777));
    QCOMPARE(project.read(u"scr_bak/locked/b.psc"_s), "older"_ba);
    QCOMPARE(project.read(u"scr_bak/a.psc"_s), candidate);
    QCOMPARE(project.read(u"scr/a.psc"_s), converted);
}

void TestConverter::leavesWhatLinkedFoldersLeadTo_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QStringList>("outside");
    QTest::newRow("scr") << u"scr"_s << QStringList{u"a.psc"_s, u"notes.txt"_s};
    QTest::newRow("scr_temp") << u"scr_temp"_s << QStringList{u"notes.txt"_s};
    QTest::newRow("scr_bak") << u"scr_bak"_s << QStringList{u"notes.txt"_s, u"old/old.txt"_s};
}

void TestConverter::leavesWhatLinkedFoldersLeadTo()
{
    QFETCH(const QString, folder);
    const TestProject project;
    project.write(u"elsewhere/notes.txt"_s, "notes"_ba);
    project.link(u"elsewhere"_s, folder);
    project.write(u"scr/a.psc"_s, candidate);
    project.write(u"scr_bak/old/old.txt"_s, "old"_ba);
    const Outcome outcome(project);

    QTEST(project.files(u"elsewhere"_s), "outside");
    QCOMPARE(project.read(u"scr/a.psc"_s), converted);
    QCOMPARE(project.read(u"scr_bak/a.psc"_s), candidate);
    QVERIFY(!project.exists(u"scr_bak/old"_s));
    QVERIFY(!project.exists(u"scr_temp"_s));
    if (folder == "scr"_L1)
        QCOMPARE(project.read(u"elsewhere/a.psc"_s), candidate);
}

void TestConverter::makesFoldersWithTheirParentsWhenAskedTo()
{
    const TestProject project;
    project.write(u"mac/pump.plb"_s, shape);
    project.write(u"scr/area/deep/a.psc"_s, candidate);
    project.write(u"scr/area/deep/er/b.psc"_s, plain);
    project.write(u"scr/z.psc"_s, plain);
    Converter converter(project.dir());
    converter.setMakeFolders(true);
    converter.setFilterNames(chosen);
    const RunRecorder recorder(converter);
    const LogRecorder log;
    converter.convert();

    const QStringList files{u"area/deep/a.psc"_s, u"area/deep/er/b.psc"_s, u"z.psc"_s};
    QCOMPARE(recorder.statusWords(), (QStringList{u"REPLACE"_s, u"NO REPLACE"_s, u"NO REPLACE"_s}));
    QCOMPARE(project.files(u"scr"_s), files);
    QCOMPARE(project.files(u"scr_bak"_s), files);
    QCOMPARE(project.read(u"scr/area/deep/a.psc"_s), converted);
    QCOMPARE(project.read(u"scr_bak/area/deep/a.psc"_s), candidate);
    QVERIFY(!project.exists(u"scr_temp"_s));
    QCOMPARE(log.entries, QStringList());
}

void TestConverter::makesOneLevelOfFoldersByDefault()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, candidate);
    project.write(u"scr/area/b.psc"_s, candidate);
    project.write(u"scr/area/deep/c.psc"_s, candidate);
    const Outcome outcome(project);
    QCOMPARE(outcome.recorder.statusWords(), (QStringList{u"REPLACE"_s, u"REPLACE"_s, u"REPLACE"_s}));
    QCOMPARE(project.files(u"scr"_s), (QStringList{u"a.psc"_s, u"area/b.psc"_s, u"area/deep/c.psc"_s}));
    QCOMPARE(project.files(u"scr_bak"_s), project.files(u"scr"_s));
}

void TestConverter::convertsFoldersInTheirOrder()
{
    const TestProject project;
    // A folder that is found before any file of its parent has no folder to go into.
    project.write(u"scr/area/b.psc"_s, candidate);
    project.write(u"scr/z.psc"_s, candidate);
    const Outcome outcome(project);
    QCOMPARE(outcome.recorder.statusWords(), (QStringList{u"ERROR"_s, u"REPLACE"_s}));
    QCOMPARE(outcome.recorder.reports.at(0).error,
             "Could not open Temp File "_L1 + project.path(u"scr_temp/area/b.psc"_s));
    QCOMPARE(project.files(u"scr"_s), QStringList{u"z.psc"_s});
    QCOMPARE(project.files(u"scr_bak"_s), (QStringList{u"area/b.psc"_s, u"z.psc"_s}));
}

namespace {

/// A project whose run was interrupted: one screen lies in "scr", the other one only in "scr_bak".
void leaveInterrupted(const TestProject &project, RunStage stage)
{
    project.write(u"scr/a.psc"_s, "ID;1;A\n");
    project.write(u"scr_bak/b.psc"_s, "ID;1;B\n");
    project.write(u"scr_temp/a.psc"_s, "ID;1;A\n");
    project.makeFolder(u"log"_s);
    RunFacts facts = factsOfRun(project.dir(), {});
    facts.screens = {u"a.psc"_s, u"b.psc"_s};
    StageFile(project.dir(), facts).enter({.stage = stage, .unsaved = {}, .endedAt = stage});
}

QMap<QString, QByteArray> bytesOf(const TestProject &project)
{
    QMap<QString, QByteArray> bytes;
    for (const QString &file : project.files(u""_s))
        bytes.insert(file, project.read(file));
    return bytes;
}

} // namespace

void TestConverter::touchesNothingWhereARunWasInterrupted_data()
{
    QTest::addColumn<RunStage>("stage");
    QTest::addColumn<bool>("isReadable");
    for (const RunStageRow &row : runStageRows) {
        if (row.stage != RunStage::Done && row.stage != RunStage::Cancelled)
            QTest::newRow(row.name) << row.stage << true;
    }
    QTest::newRow("nobody knows where") << RunStage::Converting << false;
}

void TestConverter::touchesNothingWhereARunWasInterrupted()
{
    QFETCH(RunStage, stage);
    QFETCH(bool, isReadable);
    const TestProject project;
    leaveInterrupted(project, stage);
    if (!isReadable)
        project.write(u".vantrel.run"_s, "no stage file\n");
    const QMap<QString, QByteArray> before = bytesOf(project);

    Converter converter(project.dir());
    const RunRecorder recorder(converter);
    const LogRecorder log;
    converter.convert();

    QCOMPARE(bytesOf(project), before);
    QCOMPARE(recorder.events, QStringList{u"end"_s});
    QCOMPARE(log.entries.size(), 1);
    QVERIFY(log.entries.constFirst().startsWith(
        u"error: A run on project %1 was interrupted ("_s.arg(project.dir())));
    QVERIFY(log.namesSource(0, u"tools/Vantrel/Converter"_s, 1715));
    QVERIFY(converter.logFileName().isEmpty());
}

void TestConverter::goesOnFromWhatIsLeftOverWhereAsked()
{
    const TestProject project;
    leaveInterrupted(project, RunStage::Converting);
    Converter converter(project.dir());
    converter.setGoesOnFromLeftOver(true);
    const LogRecorder log;
    converter.convert();
    QCOMPARE(log.entries, QStringList());
    QVERIFY(!project.exists(u".vantrel.run"_s));
    QVERIFY(!project.exists(u"scr_temp"_s));
}

void TestConverter::startsOverAStageFileThatTellsOfNoMore()
{
    const TestProject project;
    leaveInterrupted(project, RunStage::Done);
    Converter converter(project.dir());
    const LogRecorder log;
    converter.convert();
    QCOMPARE(log.entries, QStringList());
    QVERIFY(!project.exists(u".vantrel.run"_s));
    QCOMPARE(project.files(u"scr_bak"_s), QStringList{u"a.psc"_s});
}

void TestConverter::endsTheSearchWhereItIsStopped()
{
    const TestProject project;
    project.write(u"scr/x/a.psc"_s, plain);
    for (const int folders : {1, 2}) {
        StoppingListener listener(folders);
        ConversionRun({.projectDir = project.dir(), .filterNames = {}}, listener).perform();
        QVERIFY(!listener.hasFound);
        QCOMPARE(project.files(u""_s), QStringList{u"scr/x/a.psc"_s});
        QVERIFY(!project.exists(u"scr_temp"_s));
    }
}

void TestConverter::comesToItsFirstFileWhereItIsStoppedBefore()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, plain);
    StoppingListener listener(0);
    ConversionRun({.projectDir = project.dir(), .filterNames = {}}, listener).perform();
    QVERIFY(listener.hasFound);
    QVERIFY(project.exists(u"scr_temp"_s));
    QCOMPARE(project.read(u"scr/a.psc"_s), plain);
}

VANTREL_TEST(QCoreApplication, TestConverter)
#include "tst_converter.moc"
