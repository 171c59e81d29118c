// The file that says how far a run came.
#include "Limits.h"
#include "StageFile.h"
#include "TestProject.h"
#include "TestSuite.h"

#include <QFile>
#include <QTest>

#include <cerrno>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

RunFacts someFacts()
{
    return {.program = u"vantrel-cli 1.2.3"_s,
            .started = QDateTime(QDate(2024, 3, 5), QTime(14, 7, 9)),
            .shapeNames = {u"pump.plb"_s, u"gate valve.plb"_s},
            .makesFolders = true,
            .listIsWhole = false,
            .hadTempFolder = true,
            .hadBackup = true,
            .keptRuns = 7,
            .keepsOthers = true,
            .historyEntry = u"2024-03-05_14-07-09"_s,
            .setAsideEntry = u"2024-03-05_14-07-10"_s,
            .screens = {u"a.psc"_s, u"boiler/100% b\nc: d.psc"_s, u" \u00fc.psc "_s, u"\ufeffmarked.psc"_s},
            .olderFiles = {u"a.psc"_s},
            .olderFolders = {u"boiler"_s}};
}

RunState someState()
{
    return {.stage = RunStage::CopyingBack, .unsaved = {u"a.psc"_s}, .endedAt = RunStage::Removing};
}

} // namespace

class TestStageFile final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsWhatItWrote();
    void isReadable();
    void knowsEveryStage();
    void doesNotUnderstandWhatIsNotWhole();
    void doesNotUnderstandAPathThatLeadsOut_data();
    void doesNotUnderstandAPathThatLeadsOut();
    void readsNothingButAFile();
    void tellsTheLastStageOnly();
    void doesNotReadALargeFile();
    void isNotBegunWhereALaterStageMightNotBeRead();
    void staysWhereAReplacementCannotBeWritten();
    void leavesNothingBesideIt();
    void isWrittenWhereAPipeLay();
    void staysWhenItsWriterIsGone();
    void isRemovedWithWhatAnInterruptionLeft();
    void isRemovedWhereALaterStageMayNotBeWritten();
    void staysWhereALaterStageCannotBeWritten();
    void doesNotFollowALink();
    void isNotMissedWhereItCannotBeMade();
};

void TestStageFile::readsWhatItWrote()
{
    const std::optional<RunRecord> record = readRunRecord(toText(someState(), toLines(someFacts())));
    QVERIFY(record);
    const RunFacts facts = someFacts();
    QCOMPARE(record->facts.program, facts.program);
    QCOMPARE(record->facts.started, facts.started);
    QCOMPARE(record->facts.shapeNames, facts.shapeNames);
    QCOMPARE(record->facts.makesFolders, true);
    QCOMPARE(record->facts.listIsWhole, false);
    QCOMPARE(record->facts.hadTempFolder, true);
    QCOMPARE(record->facts.hadBackup, true);
    QCOMPARE(record->facts.keptRuns, 7);
    QCOMPARE(record->facts.keepsOthers, true);
    QCOMPARE(record->facts.historyEntry, facts.historyEntry);
    QCOMPARE(record->facts.setAsideEntry, facts.setAsideEntry);
    QCOMPARE(record->facts.screens, facts.screens);
    QCOMPARE(record->facts.olderFiles, facts.olderFiles);
    QCOMPARE(record->facts.olderFolders, facts.olderFolders);
    QCOMPARE(record->state.stage, RunStage::CopyingBack);
    QCOMPARE(record->state.unsaved, someState().unsaved);
    QCOMPARE(record->state.endedAt, RunStage::Removing);
}

void TestStageFile::isReadable()
{
    QCOMPARE(toText(someState(), toLines(someFacts())), "vantrel run 1\n"
                                                        "stage: copying back\n"
                                                        "ended at: removing the screens that are backed up\n"
                                                        "program: vantrel-cli 1.2.3\n"
                                                        "started: 2024-03-05T14:07:09\n"
                                                        "makes folders: yes\n"
                                                        "list is whole: no\n"
                                                        "had scr_temp: yes\n"
                                                        "had scr_bak: yes\n"
                                                        "kept runs: 7\n"
                                                        "keeps others: yes\n"
                                                        "history: 2024-03-05_14-07-09\n"
                                                        "set aside: 2024-03-05_14-07-10\n"
                                                        "shape: pump.plb\n"
                                                        "shape: gate valve.plb\n"
                                                        "screen: a.psc\n"
                                                        "screen: boiler/100%25 b%0Ac: d.psc\n"
                                                        "screen:  %C3%BC.psc \n"
                                                        "screen: %EF%BB%BFmarked.psc\n"
                                                        "older file: a.psc\n"
                                                        "older folder: boiler\n"
                                                        "unsaved: a.psc\n"
                                                        "end\n");
}

void TestStageFile::knowsEveryStage()
{
    for (const RunStageRow &row : runStageRows) {
        const RunState state{.stage = row.stage, .unsaved = {}, .endedAt = RunStage::Done};
        const std::optional<RunRecord> record = readRunRecord(toText(state, toLines(someFacts())));
        QVERIFY2(record, row.name);
        QCOMPARE(record->state.stage, row.stage);
    }
}

void TestStageFile::doesNotUnderstandWhatIsNotWhole()
{
    const QByteArray whole = toText(someState(), toLines(someFacts()));
    for (qsizetype size = 0; size < whole.size(); ++size)
        QVERIFY2(!readRunRecord(whole.left(size)), qPrintable(QString::number(size)));
    QVERIFY(!readRunRecord(QByteArray(whole).replace("copying back", "sleeping")));
    QVERIFY(!readRunRecord(QByteArray(whole).replace("shape: ", "form: ")));
    QVERIFY(!readRunRecord(QByteArray(whole).replace("run 1", "run 2")));
    QVERIFY(!readRunRecord(QByteArray(whole).replace("folders: yes", "folders: maybe")));
    QVERIFY(!readRunRecord(whole + "\n"));
    // A recovery could not read again what it would write itself.
    QVERIFY(!readRunRecord(QByteArray(whole).replace("started: 2024-03-05T14:07:09\n", "")));
}

void TestStageFile::doesNotUnderstandAPathThatLeadsOut_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("to the folder above") << QByteArray("screen: ../mac/pump.plb");
    QTest::newRow("in the middle") << QByteArray("older file: boiler/../../mac/pump.plb");
    QTest::newRow("from the root") << QByteArray("unsaved: /etc/a.psc");
    QTest::newRow("of the history") << QByteArray("history: ..");
    QTest::newRow("below the history") << QByteArray("set aside: 2024-03-05_14-07-09/scr");
    QTest::newRow("nowhere") << QByteArray("older folder: ");
    // To the system a name ends there.
    QTest::newRow("to the folder above, with an end") << QByteArray("screen: ..%00a/..%00b/mac/pump.plb");
    QTest::newRow("of another file, with an end") << QByteArray("unsaved: a.psc%00.psc");
    QTest::newRow("of the history, with an end") << QByteArray("history: ..%002024-03-05_14-07-09");
}

void TestStageFile::doesNotUnderstandAPathThatLeadsOut()
{
    QFETCH(const QByteArray, line);
    const QByteArray facts = toLines(someFacts());
    QVERIFY(readRunRecord(toText(someState(), facts)));
    QVERIFY(!readRunRecord(toText(someState(), facts + line + '\n')));
}

/// A pipe would be waited for.
void TestStageFile::readsNothingButAFile()
{
    const TestProject project;
    const QByteArray path = QFile::encodeName(StageFile::path(project.dir()));
    QCOMPARE(mkfifo(path.constData(), 0600), 0);
    QVERIFY(StageFile::exists(project.dir()));
    QVERIFY(!StageFile::read(project.dir()));
}

void TestStageFile::doesNotReadALargeFile()
{
    const TestProject project;
    StageFile(project.dir(), someFacts()).enter(someState());
    const QByteArray whole = project.read(u".vantrel.run"_s);
    const QByteArray foot = "end\n";
    const qsizetype room = static_cast<qsizetype>(largestStageFile) - whole.size();
    const QByteArray line = "screen: " + QByteArray(room - 9, 'x') + '\n';
    project.write(u".vantrel.run"_s, whole.chopped(foot.size()) + line + foot);
    QVERIFY(StageFile::read(project.dir()));

    project.write(u".vantrel.run"_s, whole.chopped(foot.size()) + "screen: y" + line.sliced(8) + foot);
    QVERIFY(!StageFile::read(project.dir()));
    QVERIFY(StageFile::tellsOfInterruption(project.dir()));
}

void TestStageFile::isNotBegunWhereALaterStageMightNotBeRead()
{
    const TestProject project;
    RunFacts facts = someFacts();
    facts.screens = {QString(largestFirstStage, u'x')};
    StageFile file(project.dir(), facts);
    QVERIFY(!file.enter({.stage = RunStage::Converting, .unsaved = {}, .endedAt = RunStage::Converting}));
    QCOMPARE(file.error(), EFBIG);
    QVERIFY(!StageFile::exists(project.dir()));
}

void TestStageFile::staysWhereAReplacementCannotBeWritten()
{
    const TestProject project;
    StageFile file(project.dir(), someFacts(), IfUnwritable::Stop);
    QVERIFY(file.enter(someState()));
    QCOMPARE(file.error(), 0);
    project.makeFolder(u".vantrel.run.new"_s);
    QVERIFY(!file.enter({.stage = RunStage::RollingBack, .unsaved = {}, .endedAt = RunStage::Removing}));
    QCOMPARE(file.error(), EISDIR);
    const std::optional<RunRecord> record = StageFile::read(project.dir());
    QVERIFY(record);
    QCOMPARE(record->state.stage, RunStage::CopyingBack);
}

void TestStageFile::tellsTheLastStageOnly()
{
    const TestProject project;
    StageFile file(project.dir(), someFacts());
    QVERIFY(!StageFile::exists(project.dir()));
    file.enter({.stage = RunStage::Converting, .unsaved = {}, .endedAt = RunStage::Converting});
    QVERIFY(StageFile::exists(project.dir()));
    QCOMPARE(StageFile::read(project.dir())->state.stage, RunStage::Converting);
    file.enter(someState());
    QCOMPARE(StageFile::read(project.dir())->state.stage, RunStage::CopyingBack);
    QCOMPARE(StageFile::read(project.dir())->facts.screens, someFacts().screens);
}

void TestStageFile::leavesNothingBesideIt()
{
    const TestProject project;
    StageFile file(project.dir(), someFacts());
    file.enter(someState());
    file.enter(someState());
    QCOMPARE(project.files(u""_s), QStringList{u".vantrel.run"_s});
    QVERIFY(file.remove());
    QCOMPARE(project.files(u""_s), QStringList());
    QVERIFY(file.remove());
}

void TestStageFile::isWrittenWhereAPipeLay()
{
    const TestProject project;
    constexpr mode_t forOwner = 0600;
    QCOMPARE(mkfifo(QFile::encodeName(project.path(u".vantrel.run.new"_s)).constData(), forOwner), 0);
    StageFile(project.dir(), someFacts()).enter(someState());
    QCOMPARE(StageFile::read(project.dir())->facts.program, someFacts().program);
}

void TestStageFile::staysWhenItsWriterIsGone()
{
    const TestProject project;
    StageFile(project.dir(), someFacts()).enter(someState());
    QCOMPARE(StageFile::read(project.dir())->facts.program, someFacts().program);
}

void TestStageFile::isRemovedWithWhatAnInterruptionLeft()
{
    const TestProject project;
    project.write(u".vantrel.run.new"_s, "vantrel run 1\nstage: do");
    StageFile file(project.dir(), someFacts());
    QVERIFY(file.remove());
    QCOMPARE(project.files(u""_s), QStringList());
}

void TestStageFile::isRemovedWhereALaterStageMayNotBeWritten()
{
    const TestProject project;
    StageFile file(project.dir(), someFacts());
    QVERIFY(file.enter({.stage = RunStage::Converting, .unsaved = {}, .endedAt = RunStage::Converting}));
    const QByteArray path = QFile::encodeName(project.path(u".vantrel.run"_s));
    {
        QFile::setPermissions(project.dir(), QFile::Permissions::fromInt(0x5555));
        const OrdinaryUser user;
        QVERIFY(file.enter(someState()));
    }
    QFile::setPermissions(project.dir(), QFile::Permissions::fromInt(0x7777));
    QVERIFY(!file.isUsable());
    QCOMPARE(unlink(path.constData()), 0);

    // Nor is one begun anew in the middle of a run.
    QVERIFY(file.enter(someState()));
    QVERIFY(!StageFile::exists(project.dir()));
}

void TestStageFile::staysWhereALaterStageCannotBeWritten()
{
    const TestProject project;
    StageFile file(project.dir(), someFacts());
    QVERIFY(file.enter({.stage = RunStage::Converting, .unsaved = {}, .endedAt = RunStage::Converting}));
    project.makeFolder(u".vantrel.run.new"_s);
    QVERIFY(!file.enter(someState()));
    QVERIFY(file.isUsable());
    QCOMPARE(file.errorText(),
             u"%1 could not be written: Is a directory"_s.arg(project.path(u".vantrel.run"_s)));
    QCOMPARE(StageFile::read(project.dir())->state.stage, RunStage::Converting);
}

void TestStageFile::doesNotFollowALink()
{
    const TestProject project;
    project.write(u"kept"_s, "kept");
    project.link(u"kept"_s, u".vantrel.run.new"_s);
    project.link(u"kept"_s, u".vantrel.run"_s);
    StageFile file(project.dir(), someFacts());
    file.enter(someState());
    QCOMPARE(project.read(u"kept"_s), "kept");
}

void TestStageFile::isNotMissedWhereItCannotBeMade()
{
    const TestProject project;
    StageFile file(project.path(u"gone"_s), someFacts());
    file.enter(someState());
    QVERIFY(!StageFile::exists(project.path(u"gone"_s)));
    QVERIFY(!StageFile::read(project.path(u"gone"_s)));
    QVERIFY(file.remove());
}

VANTREL_TEST(QCoreApplication, TestStageFile)
#include "tst_stagefile.moc"
