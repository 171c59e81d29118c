// The command "recover": stage by stage, what it says, what it leaves, and when it does nothing.
#include "CliRun.h"
#include "ExitCode.h"
#include "HeldFile.h"
#include "ProjectLock.h"
#include "ProjectTree.h"
#include "RunHistory.h"
#include "SmallPlant.h"
#include "StageFile.h"
#include "TestSuite.h"

#include <QDir>
#include <QFile>
#include <QMap>
#include <QTest>

#include <csignal>
#include <filesystem>
#include <fstream>

using namespace Qt::StringLiterals;

namespace {

const QStringList allScreens{u"00.psc"_s, u"a.psc"_s, u"hall/00.psc"_s, u"hall/bad.psc"_s};
/// The last one cannot be converted.
const QStringList convertedScreens = allScreens.first(3);
const QStringList hall{u"hall/00.psc"_s, u"hall/bad.psc"_s};

/// Puts a small plant into the state in which a run was interrupted.
using Interruption = void (*)(const TestProject &project);

QByteArray original(const QString &screen)
{
    if (screen.endsWith("a.psc"_L1))
        return SmallPlant::screenWith("pump.plb");
    return screen.endsWith("bad.psc"_L1) ? SmallPlant::invalidScreen() : SmallPlant::plainScreen();
}

QByteArray converted(const QString &screen)
{
    return screen.endsWith("a.psc"_L1) ? SmallPlant::screenAfterUpdate() : original(screen);
}

void putOriginals(const TestProject &project, const QString &folder, const QStringList &screens = allScreens)
{
    for (const QString &screen : screens)
        project.write(folder + u'/' + screen, original(screen));
}

void putConverted(const TestProject &project, const QString &folder,
                  const QStringList &screens = convertedScreens)
{
    for (const QString &screen : screens)
        project.write(folder + u'/' + screen, converted(screen));
}

RunFacts someFacts()
{
    RunFacts facts;
    facts.program = u"vantrel-cli 1.2.3"_s;
    facts.started = QDateTime(QDate(2024, 3, 5), QTime(14, 7, 9));
    facts.shapeNames = QStringList{u"pump.plb"_s};
    facts.screens = allScreens;
    return facts;
}

void writeStage(const TestProject &project, const RunState &state)
{
    StageFile(project.dir(), someFacts()).enter(state);
}

void writeStage(const TestProject &project, RunStage stage, const QStringList &unsaved = {})
{
    writeStage(project, {.stage = stage, .unsaved = unsaved, .endedAt = stage});
}

/// That of a run that could not list all of "scr" and knows of one screen only.
void writeStageOfPartlyListedRun(const TestProject &project)
{
    RunFacts facts = someFacts();
    facts.listIsWhole = false;
    facts.screens = QStringList{u"00.psc"_s};
    StageFile(project.dir(), facts)
        .enter({.stage = RunStage::BackingUp, .unsaved = {}, .endedAt = RunStage::BackingUp});
}

/// The files below a folder of the project with their bytes.
QMap<QString, QByteArray> bytesBelow(const TestProject &project, const QString &folder)
{
    QMap<QString, QByteArray> bytes;
    for (const QString &file : project.files(folder))
        bytes.insert(file, project.read(folder + u'/' + file));
    return bytes;
}

QMap<QString, QByteArray> originals()
{
    QMap<QString, QByteArray> bytes;
    for (const QString &screen : allScreens)
        bytes.insert(screen, original(screen));
    return bytes;
}

QMap<QString, QByteArray> conversions()
{
    QMap<QString, QByteArray> bytes;
    for (const QString &screen : convertedScreens)
        bytes.insert(screen, converted(screen));
    return bytes;
}

/// What the last undoing has set aside.
QMap<QString, QByteArray> setAsideIn(const TestProject &project)
{
    const QString entry = RunHistory(project.dir()).entries().value(0);
    return bytesBelow(project, u".vantrel.history/%1/scr"_s.arg(entry));
}

CliResult recover(const TestProject &project, const QStringList &options = {})
{
    return CliRun().execute(QStringList{u"recover"_s, u"--project"_s, project.dir()} + options);
}

/// The same while the program may not look into a folder.
CliResult recoverWithClosedFolder(const TestProject &project, const QString &folder, const QString &option)
{
    const QString path = project.path(folder);
    const QFile::Permissions permissions = QFile::permissions(path);
    QFile::setPermissions(path, {});
    CliRun run;
    run.setPermissionsHold();
    const CliResult result = run.execute({u"recover"_s, u"--project"_s, project.dir(), option});
    QFile::setPermissions(path, permissions);
    return result;
}

/// As if somebody had changed the file a while after the run was interrupted.
void makeNewerThanStage(const TestProject &project, const QString &name)
{
    constexpr qint64 aWhile = 60; // seconds
    QFile file(project.path(name));
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(
        file.setFileTime(QDateTime::currentDateTime().addSecs(aWhile), QFileDevice::FileModificationTime));
}

/// As if somebody had brought the file from elsewhere, with its time.
void writeOld(const TestProject &project, const QString &name, const QByteArray &bytes)
{
    project.write(name, bytes);
    QFile file(project.path(name));
    QVERIFY(file.open(QIODevice::ReadWrite) &&
            file.setFileTime(QDateTime(QDate(2001, 1, 1), QTime(0, 0)), QFileDevice::FileModificationTime));
}

/// Makes a file whose name is not valid UTF-8.
void makeUnnamableFile(const TestProject &project, const char *name)
{
    std::ofstream((project.dir().toStdString() + '/') + name) << "ID;1;Rect;x\n";
}

bool isThere(const TestProject &project, const char *name)
{
    return std::filesystem::exists(project.dir().toStdString() + '/' + name);
}

void row(const char *name, Interruption interruption)
{
    QTest::newRow(name) << interruption;
}

void addInterruptionsBeforeCopyingBack()
{
    row("while converting", [](const TestProject &project) {
        putOriginals(project, u"scr"_s);
        putConverted(project, u"scr_temp"_s, {u"00.psc"_s});
        project.write(u"scr_temp/a.psc"_s, "ID;1;Ell");
        project.write(u"scr_bak/old.psc"_s, "old");
        writeStage(project, RunStage::Converting);
    });
    row("while removing the last backup", [](const TestProject &project) {
        putOriginals(project, u"scr"_s);
        putConverted(project, u"scr_temp"_s);
        project.write(u"scr_bak/old.psc"_s, "old");
        writeStage(project, RunStage::Discarding);
    });
    row("while backing up by renaming", [](const TestProject &project) {
        putOriginals(project, u"scr"_s, hall);
        putOriginals(project, u"scr_bak"_s, allScreens.first(2));
        project.makeFolder(u"scr_bak/hall"_s);
        putConverted(project, u"scr_temp"_s);
        writeStage(project, RunStage::BackingUp);
    });
    row("while backing up by copying", [](const TestProject &project) {
        putOriginals(project, u"scr"_s);
        putOriginals(project, u"scr_bak"_s, allScreens.first(2));
        putConverted(project, u"scr_temp"_s);
        writeStage(project, RunStage::BackingUp);
    });
    row("within a backup's copy", [](const TestProject &project) {
        putOriginals(project, u"scr"_s);
        putOriginals(project, u"scr_bak"_s, allScreens.first(2));
        project.write(u"scr_bak/hall/00.psc"_s, original(u"hall/00.psc"_s).first(5));
        putConverted(project, u"scr_temp"_s);
        writeStage(project, RunStage::BackingUp);
    });
    row("while removing the screens", [](const TestProject &project) {
        putOriginals(project, u"scr"_s, hall);
        putOriginals(project, u"scr_bak"_s);
        putConverted(project, u"scr_temp"_s);
        writeStage(project, RunStage::Removing);
    });
}

void addInterruptionsOfCopyingBack()
{
    row("while copying back by renaming", [](const TestProject &project) {
        putConverted(project, u"scr"_s, convertedScreens.first(2));
        putOriginals(project, u"scr_bak"_s);
        putConverted(project, u"scr_temp"_s, {u"hall/00.psc"_s});
        writeStage(project, RunStage::CopyingBack);
    });
    row("once all is copied back by renaming", [](const TestProject &project) {
        putConverted(project, u"scr"_s);
        putOriginals(project, u"scr_bak"_s);
        project.makeFolder(u"scr_temp/hall"_s);
        writeStage(project, RunStage::CopyingBack);
    });
    row("while copying back by copying", [](const TestProject &project) {
        putConverted(project, u"scr"_s, {u"a.psc"_s});
        putOriginals(project, u"scr_bak"_s);
        putConverted(project, u"scr_temp"_s);
        writeStage(project, RunStage::CopyingBack);
    });
    row("in the middle of a copy", [](const TestProject &project) {
        putConverted(project, u"scr"_s, {u"00.psc"_s});
        project.write(u"scr/a.psc"_s, converted(u"a.psc"_s).chopped(1));
        putOriginals(project, u"scr_bak"_s);
        putConverted(project, u"scr_temp"_s);
        writeStage(project, RunStage::CopyingBack);
    });
    row("while removing the converted screens", [](const TestProject &project) {
        putConverted(project, u"scr"_s);
        putOriginals(project, u"scr_bak"_s);
        putConverted(project, u"scr_temp"_s, {u"hall/00.psc"_s});
        writeStage(project, RunStage::CopyingBack);
    });
    row("while copying back beside screens without a backup", [](const TestProject &project) {
        putOriginals(project, u"scr"_s, hall);
        putConverted(project, u"scr"_s, {u"a.psc"_s});
        putOriginals(project, u"scr_bak"_s, allScreens.first(2));
        putConverted(project, u"scr_temp"_s);
        writeStage(project, RunStage::CopyingBack, hall);
    });
}

void addInterruptions()
{
    QTest::addColumn<Interruption>("interruption");
    addInterruptionsBeforeCopyingBack();
    addInterruptionsOfCopyingBack();
}

void addInterruptedRollBacks()
{
    QTest::newRow("while rolling back") << Interruption([](const TestProject &project) {
        putOriginals(project, u"scr"_s, {u"00.psc"_s, u"a.psc"_s, u"hall/bad.psc"_s});
        putOriginals(project, u"scr_bak"_s, convertedScreens);
        writeStage(project, {.stage = RunStage::RollingBack,
                             .unsaved = {u"hall/bad.psc"_s},
                             .endedAt = RunStage::CopyingBack});
    });
    QTest::newRow("once it is rolled back") << Interruption([](const TestProject &project) {
        putOriginals(project, u"scr"_s);
        putOriginals(project, u"scr_bak"_s, hall);
        putConverted(project, u"scr_temp"_s, {u"hall/00.psc"_s});
        writeStage(project, {.stage = RunStage::RolledBack, .unsaved = {}, .endedAt = RunStage::CopyingBack});
    });
}

} // namespace

Q_DECLARE_METATYPE(Interruption)
Q_DECLARE_METATYPE(ExitCode)

#define COMPARE_EXIT_CODE(result, code) QCOMPARE((result).exitCode, static_cast<int>(ExitCode::code))

class TestRecover final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rollsBack_data();
    void rollsBack();
    void finishes_data();
    void finishes();
    void tellsAndChangesNothing();
    void tellsTheSameAsJson();
    void findsNothingToRecover();

    void takesAnOlderTempFolderAsTheRunFoundIt();
    void convertsWithTheShapesOfTheRun();
    void undoesACompletedRun();
    void undoesWhereFoldersAreRenamedInTheBackup();
    void goesOnWithAnInterruptedUndoing();
    void takesRunsBackOneByOne();
    void takesARunOverNoScreensBack();
    void leavesScreensThatWereEditedSince();
    void leavesLinksThatCameAfterTheRun();
    void bringsBackWhatAnInterruptedRunDisplaced_data();
    void bringsBackWhatAnInterruptedRunDisplaced();
    void setsAsideWhatItDoesNotKnow();
    void setsAsideWhatCameInTheMiddleOfAnUndoing();
    void removesNoBackupThatIsPartOfAnEditedScreen();
    void looksAtTheFoldersWhereNothingTellsOfARun();
    void undoesBehindACancelledRun();
    void touchesNothingWhereItRefusesBehindACancelledRun();
    void keepsScreensThatCameLater();
    void keepsTheOriginalOfAScreenThatWasChangedLater();
    void canBeRepeatedWhereTheStageCannotBeWritten_data();
    void canBeRepeatedWhereTheStageCannotBeWritten();
    void canBeRepeatedWhereAScreenCannotBeCopied();
    void takesAConversionBackWithoutWritingTheStage();
    void usesNoHalfWrittenCopyThatItCannotRemove_data();
    void usesNoHalfWrittenCopyThatItCannotRemove();
    void tellsThatItCouldNotRemoveTheTempFolder();

    void changesNothingBehindLinks_data();
    void changesNothingBehindLinks();
    void touchesNothingWhereItCannotDecide_data();
    void touchesNothingWhereItCannotDecide();
    void refusesToUndo_data();
    void refusesToUndo();
    void refusesWhileARunIsUnderWay();
    void doesNotTakeNoAnswerForAbsence_data();
    void doesNotTakeNoAnswerForAbsence();
    void goesOnWhenAFolderCanBeListedAgain_data();
    void goesOnWhenAFolderCanBeListedAgain();
    void takesBackWhatARunMovedUnlisted();
    void refusesAProjectThatIsNotThere();
    void excludesItsOptions();

    void isToldByOtherCommands_data();
    void isToldByOtherCommands();
    void keepsUpdateFromStarting_data();
    void keepsUpdateFromStarting();
    void namesTheProgramThatHoldsTheProject();
    void needsNoFilesInAProtectedProject();
    void stopsWhileItPlans_data();
    void stopsWhileItPlans();
    void stopsBetweenScreens();
};

void TestRecover::rollsBack_data()
{
    addInterruptions();
    addInterruptedRollBacks();
}

void TestRecover::rollsBack()
{
    QFETCH(const Interruption, interruption);
    const TestProject project;
    project.write(u"mac/pump.plb"_s, SmallPlant::shape());
    interruption(project);
    const bool hasOlderBackup = project.exists(u"scr_bak/old.psc"_s);

    const CliResult result = recover(project, {u"--roll-back"_s});
    COMPARE_EXIT_CODE(result, Done);
    QVERIFY2(result.errorOutput.startsWith("The run was taken back"), result.errorOutput.constData());
    QCOMPARE(bytesBelow(project, u"scr"_s), originals());
    QVERIFY(!project.exists(u"scr_temp"_s));
    QCOMPARE(project.files(u"scr_bak"_s), hasOlderBackup ? QStringList{u"old.psc"_s} : QStringList());
    QVERIFY(!StageFile::exists(project.dir()));
    QVERIFY(!project.exists(u".vantrel.lock"_s));

    QCOMPARE(recover(project, {u"--roll-back"_s}).errorOutput,
             "No run was interrupted; there is nothing to recover.\n");
    QCOMPARE(bytesBelow(project, u"scr"_s), originals());
}

void TestRecover::finishes_data()
{
    addInterruptions();
    addInterruptedRollBacks();
}

void TestRecover::finishes()
{
    QFETCH(const Interruption, interruption);
    const TestProject project;
    project.write(u"mac/pump.plb"_s, SmallPlant::shape());
    interruption(project);

    const CliResult result = recover(project, {u"--finish"_s});
    // An invalid screen is reported, whether the screens are converted again or not.
    COMPARE_EXIT_CODE(result, FilesMissing);
    QVERIFY2(result.output.contains("scr/hall/bad.psc"), result.output.constData());
    QCOMPARE(bytesBelow(project, u"scr"_s), conversions());
    QCOMPARE(bytesBelow(project, u"scr_bak"_s), originals());
    QVERIFY(!project.exists(u"scr_temp"_s));
    QVERIFY(!StageFile::exists(project.dir()));
    QVERIFY(!project.exists(u".vantrel.lock"_s));
}

void TestRecover::tellsAndChangesNothing()
{
    const TestProject project;
    putConverted(project, u"scr"_s, convertedScreens.first(2));
    putOriginals(project, u"scr_bak"_s);
    putConverted(project, u"scr_temp"_s, {u"hall/00.psc"_s});
    writeStage(project, RunStage::CopyingBack);
    const QStringList before = describeTree(project.dir());

    const CliResult result = recover(project);
    COMPARE_EXIT_CODE(result, FilesMissing);
    QCOMPARE(
        withPlaceholders(result.output, project.dir()),
        ".vantrel.run: obstacle: a run was interrupted: copying back (vantrel-cli 1.2.3, begun at 2024-03-05 "
        "14:07:09); see \"vantrel-cli recover --project <project>\"\n"
        "scr: hint: 0 screens from before the run whole here; \"scr_bak\" holds the screens from before the "
        "run; \"scr\" and \"scr_temp\" hold the converted ones; \"vantrel-cli recover --project <project> "
        "--roll-back\" copies the screens from \"scr_bak\" to \"scr\" and removes \"scr_temp\"\n"
        "scr_bak: hint: 4 screens from before the run whole here only; \"vantrel-cli recover --project "
        "<project> --finish\" copies the rest back\n"
        "\n"
        "Files         4\n");
    QCOMPARE(result.errorOutput, "Nothing was changed; --roll-back or --finish does it.\n");
    QCOMPARE(describeTree(project.dir()), before);
}

void TestRecover::tellsTheSameAsJson()
{
    const TestProject project;
    putOriginals(project, u"scr"_s);
    writeStage(project, RunStage::Converting);
    const CliResult result = recover(project, {u"--json"_s});
    COMPARE_EXIT_CODE(result, FilesMissing);
    QCOMPARE(result.errorOutput, QByteArray());
    QCOMPARE(result.output.count('\n'), 4);
    QVERIFY2(result.output.contains("\"check\":\"run-interrupted\""), result.output.constData());
    QVERIFY2(result.output.contains("\"command\":\"recover\""), result.output.constData());
}

void TestRecover::findsNothingToRecover()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    const QStringList before = describeTree(project.dir());
    for (const QString &option : {u"--roll-back"_s, u"--finish"_s, u"--color=never"_s}) {
        const CliResult result = recover(project, {option});
        COMPARE_EXIT_CODE(result, Done);
        QCOMPARE(result.errorOutput, "No run was interrupted; there is nothing to recover.\n");
    }
    QCOMPARE(describeTree(project.dir()), before);

    project.write(u".vantrel.run.new"_s, "vantrel run 1\nstage: conv");
    COMPARE_EXIT_CODE(recover(project, {u"--finish"_s}), Done);
    QCOMPARE(describeTree(project.dir()), before);
}

void TestRecover::takesAnOlderTempFolderAsTheRunFoundIt()
{
    const TestProject project;
    project.write(u"mac/pump.plb"_s, SmallPlant::shape());
    putOriginals(project, u"scr"_s);
    project.write(u"scr_temp/older.psc"_s, "older");
    project.write(u"scr_temp/00.psc"_s, "older");
    RunFacts facts = someFacts();
    facts.hadTempFolder = true;
    facts.olderFiles = QStringList{u"older.psc"_s, u"00.psc"_s};
    // What the interrupted run has made.
    project.write(u"scr_temp/a.psc"_s, "half");
    project.makeFolder(u"scr_temp/hall"_s);
    StageFile(project.dir(), facts).enter({});

    const QMap<QString, QByteArray> older{{u"00.psc"_s, "older"}, {u"older.psc"_s, "older"}};
    COMPARE_EXIT_CODE(recover(project, {u"--roll-back"_s}), Done);
    QCOMPARE(bytesBelow(project, u"scr_temp"_s), older);
    QVERIFY(!project.exists(u"scr_temp/hall"_s));

    project.write(u"scr_temp/a.psc"_s, "half");
    StageFile(project.dir(), facts).enter({});
    COMPARE_EXIT_CODE(recover(project, {u"--finish"_s}), FilesMissing);
    QMap<QString, QByteArray> expected = conversions();
    expected.insert(older);
    QCOMPARE(bytesBelow(project, u"scr"_s), expected);
}

void TestRecover::convertsWithTheShapesOfTheRun()
{
    const TestProject project;
    project.write(u"mac/pump.plb"_s, SmallPlant::shape());
    project.write(u"scr/hall/cellar/a.psc"_s, SmallPlant::screenWith("pump.plb"));
    RunFacts facts = someFacts();
    facts.screens = QStringList{u"hall/cellar/a.psc"_s};
    facts.shapeNames.clear();
    facts.makesFolders = true;
    StageFile(project.dir(), facts).enter({});
    COMPARE_EXIT_CODE(recover(project, {u"--finish"_s}), Done);
    QCOMPARE(project.read(u"scr/hall/cellar/a.psc"_s), SmallPlant::screenWith("pump.plb"));
    QCOMPARE(project.read(u"scr_bak/hall/cellar/a.psc"_s), SmallPlant::screenWith("pump.plb"));
}

void TestRecover::undoesACompletedRun()
{
    const TestProject project;
    putConverted(project, u"scr"_s);
    project.write(u"scr/extra.psc"_s, "extra");
    putOriginals(project, u"scr_bak"_s);
    COMPARE_EXIT_CODE(recover(project, {u"--undo"_s}), Done);
    QCOMPARE(bytesBelow(project, u"scr"_s), originals());
    QMap<QString, QByteArray> setAside = conversions();
    setAside.insert(u"extra.psc"_s, "extra");
    QCOMPARE(setAsideIn(project), setAside);
    QVERIFY(!project.exists(u"scr_bak"_s));
    QVERIFY(!StageFile::exists(project.dir()));
}

void TestRecover::undoesWhereFoldersAreRenamedInTheBackup()
{
    const TestProject project;
    project.write(u"scr/script/a.psc"_s, "after");
    project.write(u"scr_bak/scr_bakipt/a.psc"_s, "before");
    COMPARE_EXIT_CODE(recover(project, {u"--undo"_s}), Done);
    QCOMPARE(project.files(u""_s), QStringList{u"scr/script/a.psc"_s});
    QCOMPARE(project.read(u"scr/script/a.psc"_s), "before");
    QCOMPARE(setAsideIn(project).value(u"script/a.psc"_s), "after");
}

void TestRecover::goesOnWithAnInterruptedUndoing()
{
    const TestProject project;
    putConverted(project, u"scr"_s);
    putOriginals(project, u"scr_bak"_s);
    RunFacts facts = someFacts();
    facts.setAsideEntry = u"2024-03-06_00-00-00"_s;
    putConverted(project, u".vantrel.history/2024-03-06_00-00-00/scr"_s, {u"00.psc"_s});
    StageFile(project.dir(), facts)
        .enter({.stage = RunStage::SettingAside, .unsaved = {}, .endedAt = RunStage::Done});
    COMPARE_EXIT_CODE(recover(project, {u"--finish"_s}), Refused);
    COMPARE_EXIT_CODE(recover(project), FilesMissing);
    QCOMPARE(bytesBelow(project, u"scr"_s), conversions());
    COMPARE_EXIT_CODE(recover(project, {u"--undo"_s}), Done);
    QCOMPARE(bytesBelow(project, u"scr"_s), originals());
    QCOMPARE(setAsideIn(project), conversions());
    QCOMPARE(RunHistory(project.dir()).entries(), QStringList{facts.setAsideEntry});
}

void TestRecover::takesRunsBackOneByOne()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    const auto run = [&project] {
        COMPARE_EXIT_CODE(
            CliRun().execute({u"update"_s, u"--project"_s, project.dir(), u"--all-shapes"_s, u"--force"_s}),
            Done);
    };
    QList<QStringList> states;
    const auto state = [&project] {
        return describeTree(project.path(u"scr"_s)) + describeTree(project.path(u"scr_bak"_s));
    };
    for (const QByteArray &note : {"first"_ba, "second"_ba, "third"_ba}) {
        project.write(u"scr/"_s + QString::fromLatin1(note) + u".txt"_s, note);
        project.write(u"mac/pump.plb"_s, SmallPlant::shape().replace("Body", note));
        states.append(state());
        run();
    }
    // What was put into "scr" after an earlier run stays there when that one is taken back.
    for (; !states.isEmpty(); states.removeLast()) {
        COMPARE_EXIT_CODE(recover(project, {u"--undo"_s}), Done);
        const QStringList now = state();
        for (const QString &entry : std::as_const(states.last()))
            QVERIFY2(now.contains(entry), qUtf8Printable(entry));
    }
    COMPARE_EXIT_CODE(recover(project, {u"--undo"_s}), Refused);
}

void TestRecover::takesARunOverNoScreensBack()
{
    const TestProject project;
    project.write(u"scr/notes.txt"_s, "notes");
    project.write(u"scr_bak/a.psc"_s, "the last copy");
    const QStringList before =
        describeTree(project.path(u"scr"_s)) + describeTree(project.path(u"scr_bak"_s));
    COMPARE_EXIT_CODE(
        CliRun().execute({u"update"_s, u"--project"_s, project.dir(), u"--all-shapes"_s, u"--force"_s}),
        Done);
    QVERIFY(!project.exists(u"scr"_s));
    COMPARE_EXIT_CODE(recover(project, {u"--undo"_s}), Done);
    QCOMPARE(describeTree(project.path(u"scr"_s)) + describeTree(project.path(u"scr_bak"_s)), before);
    QCOMPARE(RunHistory(project.dir()).entries(), QStringList());
}

void TestRecover::leavesScreensThatWereEditedSince()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr/b.psc"_s, SmallPlant::screenWith("pump.plb"));
    COMPARE_EXIT_CODE(CliRun().execute({u"update"_s, u"--project"_s, project.dir(), u"--all-shapes"_s}),
                      Done);
    project.write(u"scr/a.psc"_s, "edited");
    QFile edited(project.path(u"scr/a.psc"_s));
    QVERIFY(edited.open(QIODevice::ReadWrite) &&
            edited.setFileTime(QDateTime::currentDateTime().addSecs(60), QFileDevice::FileModificationTime));
    edited.close();
    const CliResult result = recover(project, {u"--undo"_s});
    COMPARE_EXIT_CODE(result, DoneWithFindings);
    QVERIFY(result.output.contains("scr/a.psc: hint: it was changed after the run, and stays as it is"));
    QVERIFY(!result.output.contains("scr/b.psc"));
    QCOMPARE(project.read(u"scr/a.psc"_s), "edited");
    QCOMPARE(project.read(u"scr/b.psc"_s), SmallPlant::screenWith("pump.plb"));
    QCOMPARE(project.read(u"scr_bak/a.psc"_s), SmallPlant::screenWith("pump.plb"));
}

/// A run makes none, and what they lead to is not the project's.
void TestRecover::leavesLinksThatCameAfterTheRun()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    COMPARE_EXIT_CODE(CliRun().execute({u"update"_s, u"--project"_s, project.dir(), u"--all-shapes"_s}),
                      Done);
    writeOld(project, u"elsewhere/a.psc"_s, "of another project");
    project.remove(u"scr/a.psc"_s);
    project.link(project.path(u"elsewhere/a.psc"_s), u"scr/a.psc"_s);
    project.link(project.path(u"elsewhere/a.psc"_s), u"scr/later.psc"_s);
    project.link(project.path(u"elsewhere"_s), u"scr/shared"_s);
    project.write(u"scr_bak/shared/b.psc"_s, "of the project");
    const CliResult result = recover(project, {u"--undo"_s});
    COMPARE_EXIT_CODE(result, DoneWithFindings);
    QVERIFY2(result.output.contains("scr/a.psc: hint: it was changed after the run, and stays as it is"),
             result.output);
    for (const QString &link : {u"scr/a.psc"_s, u"scr/later.psc"_s, u"scr/shared"_s})
        QVERIFY2(QFileInfo(project.path(link)).isSymLink(), qUtf8Printable(link));
    QCOMPARE(project.files(u"elsewhere"_s), QStringList{u"a.psc"_s});
    QCOMPARE(project.read(u"elsewhere/a.psc"_s), "of another project");
    QCOMPARE(project.read(u"scr_bak/a.psc"_s), SmallPlant::screenWith("pump.plb"));
    QCOMPARE(project.read(u"scr_bak/shared/b.psc"_s), "of the project");
}

void TestRecover::bringsBackWhatAnInterruptedRunDisplaced_data()
{
    QTest::addColumn<RunStage>("stage");
    QTest::addColumn<bool>("isScrAway");
    QTest::newRow("before the screens are backed up") << RunStage::Discarding << false;
    QTest::newRow("when they are backed up") << RunStage::Removing << false;
    QTest::newRow("when \"scr\" is away") << RunStage::Removing << true;
    QTest::newRow("when some are copied back") << RunStage::CopyingBack << true;
}

void TestRecover::bringsBackWhatAnInterruptedRunDisplaced()
{
    QFETCH(const RunStage, stage);
    QFETCH(const bool, isScrAway);
    const TestProject project;
    RunFacts facts = someFacts();
    facts.historyEntry = u"2024-03-05_14-07-09"_s;
    facts.hadBackup = true;
    const QString kept = u".vantrel.history/2024-03-05_14-07-09/"_s;
    project.write(kept + u"run.json"_s, "{}");
    project.write(kept + u"scr_bak/older.psc"_s, "of the run before");
    project.write((isScrAway ? kept : QString()) + u"scr/hall/notes.txt"_s, "notes");
    putOriginals(project, stage == RunStage::Discarding ? u"scr"_s : u"scr_bak"_s);
    putConverted(project, u"scr_temp"_s);
    if (stage == RunStage::CopyingBack)
        putConverted(project, u"scr"_s, {u"00.psc"_s});
    StageFile(project.dir(), facts).enter({.stage = stage, .unsaved = {}, .endedAt = stage});
    COMPARE_EXIT_CODE(recover(project, {u"--roll-back"_s}), Done);
    QMap<QString, QByteArray> before = originals();
    before.insert(u"hall/notes.txt"_s, "notes");
    QCOMPARE(bytesBelow(project, u"scr"_s), before);
    QCOMPARE(project.files(u"scr_bak"_s), QStringList{u"older.psc"_s});
    QVERIFY(!project.exists(u"scr_temp"_s));
    QCOMPARE(RunHistory(project.dir()).entries(), QStringList());
}

/// A file may be older than the run and yet hold what nobody else holds.
void TestRecover::setsAsideWhatItDoesNotKnow()
{
    const TestProject project;
    putOriginals(project, u"scr_bak"_s);
    putConverted(project, u"scr"_s);
    writeOld(project, u"scr/a.psc"_s, "put back by hand");
    writeStage(project, RunStage::CopyingBack);
    COMPARE_EXIT_CODE(recover(project, {u"--roll-back"_s}), Done);
    QCOMPARE(bytesBelow(project, u"scr"_s), originals());
    QCOMPARE(setAsideIn(project).value(u"a.psc"_s), "put back by hand");
}

/// Once with bytes that nobody has, once with those that were set aside before.
void TestRecover::setsAsideWhatCameInTheMiddleOfAnUndoing()
{
    const TestProject project;
    putOriginals(project, u"scr_bak"_s);
    putConverted(project, u"scr"_s);
    const QString entry = u"2024-03-06_00-00-00"_s;
    const QString kept = u".vantrel.history/%1/"_s.arg(entry);
    putConverted(project, kept + u"scr"_s);
    project.write(kept + u"run.json"_s, "{}");
    writeOld(project, u"scr/a.psc"_s, "put there in between");
    RunFacts facts = someFacts();
    facts.setAsideEntry = entry;
    StageFile(project.dir(), facts)
        .enter({.stage = RunStage::RollingBack, .unsaved = {}, .endedAt = RunStage::Done});
    COMPARE_EXIT_CODE(recover(project, {u"--undo"_s}), Done);
    QCOMPARE(bytesBelow(project, u"scr"_s), originals());
    QCOMPARE(project.read(kept + u"scr/a.psc"_s), converted(u"a.psc"_s));
    QCOMPARE(project.files(kept + u"scr.2"_s), QStringList{u"a.psc"_s});
    QCOMPARE(project.read(kept + u"scr.2/a.psc"_s), "put there in between");
}

/// In an undoing there is no copy that was broken off.
void TestRecover::removesNoBackupThatIsPartOfAnEditedScreen()
{
    const TestProject project;
    putOriginals(project, u"scr_bak"_s);
    putOriginals(project, u"scr"_s);
    writeOld(project, u"scr/a.psc"_s, original(u"a.psc"_s) + "more");
    writeStage(project, {.stage = RunStage::RolledBack, .unsaved = {}, .endedAt = RunStage::Done});
    COMPARE_EXIT_CODE(recover(project, {u"--undo"_s}), Done);
    QCOMPARE(project.read(u"scr/a.psc"_s), original(u"a.psc"_s) + "more");
    QCOMPARE(project.files(u"scr_bak"_s), QStringList{u"a.psc"_s});
    QCOMPARE(project.read(u"scr_bak/a.psc"_s), original(u"a.psc"_s));
}

/// The file that told of the run is gone.
void TestRecover::looksAtTheFoldersWhereNothingTellsOfARun()
{
    const TestProject project;
    putOriginals(project, u"scr_bak"_s);
    const CliResult result = recover(project);
    COMPARE_EXIT_CODE(result, FilesMissing);
    QVERIFY2(
        result.errorOutput.startsWith("Nothing tells of an interrupted run, but \"scr\" holds no screen, and "
                                      "\"scr_bak\" holds 4 screens: "),
        result.errorOutput);
    COMPARE_EXIT_CODE(recover(project, {u"--undo"_s}), Done);
    QCOMPARE(bytesBelow(project, u"scr"_s), originals());
}

void TestRecover::undoesBehindACancelledRun()
{
    const TestProject project;
    putConverted(project, u"scr"_s);
    putOriginals(project, u"scr_bak"_s);
    putConverted(project, u"scr_temp"_s, {u"00.psc"_s});
    writeStage(project, RunStage::Cancelled);
    COMPARE_EXIT_CODE(recover(project, {u"--roll-back"_s}), Done);
    QCOMPARE(bytesBelow(project, u"scr"_s), conversions());
    COMPARE_EXIT_CODE(recover(project, {u"--undo"_s}), Done);
    QCOMPARE(bytesBelow(project, u"scr"_s), originals());
    QVERIFY(!project.exists(u"scr_temp"_s));
    QVERIFY(!StageFile::exists(project.dir()));
}

void TestRecover::touchesNothingWhereItRefusesBehindACancelledRun()
{
    const TestProject project;
    putOriginals(project, u"scr"_s);
    putConverted(project, u"scr_temp"_s, {u"00.psc"_s});
    writeStage(project, RunStage::Cancelled);
    makeUnnamableFile(project, "scr/\xff.psc");
    const QStringList before = describeTree(project.dir());
    COMPARE_EXIT_CODE(recover(project, {u"--undo"_s}), Refused);
    QCOMPARE(describeTree(project.dir()), before);
}

void TestRecover::keepsScreensThatCameLater()
{
    const TestProject project;
    putConverted(project, u"scr"_s, convertedScreens.first(2));
    putOriginals(project, u"scr_bak"_s);
    putConverted(project, u"scr_temp"_s, {u"hall/00.psc"_s});
    project.write(u"scr/later.psc"_s, "later");
    project.write(u"scr_bak/later_too.psc"_s, "later");
    writeStage(project, RunStage::CopyingBack);
    COMPARE_EXIT_CODE(recover(project, {u"--roll-back"_s}), Done);
    QCOMPARE(project.read(u"scr/later.psc"_s), "later");
    QCOMPARE(project.files(u"scr_bak"_s), QStringList{u"later_too.psc"_s});
    QCOMPARE(project.read(u"scr/a.psc"_s), original(u"a.psc"_s));
}

void TestRecover::keepsTheOriginalOfAScreenThatWasChangedLater()
{
    const TestProject project;
    putOriginals(project, u"scr"_s);
    putOriginals(project, u"scr_bak"_s);
    project.write(u"scr/a.psc"_s, original(u"a.psc"_s) + "more");
    writeStage(project, {.stage = RunStage::RolledBack, .unsaved = {}, .endedAt = RunStage::BackingUp});
    makeNewerThanStage(project, u"scr/a.psc"_s);
    COMPARE_EXIT_CODE(recover(project, {u"--roll-back"_s}), Done);
    QCOMPARE(project.read(u"scr/a.psc"_s), original(u"a.psc"_s) + "more");
    QCOMPARE(project.files(u"scr_bak"_s), QStringList{u"a.psc"_s});
}

void TestRecover::canBeRepeatedWhereTheStageCannotBeWritten_data()
{
    QTest::addColumn<Interruption>("interruption");
    QTest::addColumn<QString>("option");
    QTest::addColumn<ExitCode>("exitCode"); // of the repeated command
    const auto takenBack = [](const char *name, Interruption interruption, const QString &option) {
        QTest::newRow(name) << interruption << option << ExitCode::Done;
    };
    const auto finished = [](const char *name, Interruption interruption) {
        QTest::newRow(name) << interruption << u"--finish"_s << ExitCode::FilesMissing;
    };
    takenBack(
        "roll back",
        [](const TestProject &project) {
            putConverted(project, u"scr"_s);
            putOriginals(project, u"scr_bak"_s);
            writeStage(project, RunStage::CopyingBack);
        },
        u"--roll-back"_s);
    takenBack(
        "undo",
        [](const TestProject &project) {
            putConverted(project, u"scr"_s);
            putOriginals(project, u"scr_bak"_s);
            writeStage(project, RunStage::Done);
        },
        u"--undo"_s);
    finished("finish, removing the last backup", [](const TestProject &project) {
        putOriginals(project, u"scr"_s);
        putConverted(project, u"scr_temp"_s);
        writeStage(project, RunStage::Discarding);
    });
    finished("finish, backing up", [](const TestProject &project) {
        putOriginals(project, u"scr"_s, hall);
        putOriginals(project, u"scr_bak"_s, allScreens.first(2));
        putConverted(project, u"scr_temp"_s);
        writeStage(project, RunStage::BackingUp);
    });
    finished("finish, removing the screens", [](const TestProject &project) {
        putOriginals(project, u"scr"_s, hall);
        putOriginals(project, u"scr_bak"_s);
        putConverted(project, u"scr_temp"_s);
        writeStage(project, RunStage::Removing);
    });
    finished("finish, copying back", [](const TestProject &project) {
        putConverted(project, u"scr"_s, {u"a.psc"_s});
        putOriginals(project, u"scr_bak"_s);
        putConverted(project, u"scr_temp"_s);
        writeStage(project, RunStage::CopyingBack);
    });
}

/// Otherwise an interruption of what follows could not be told from one of what was before.
void TestRecover::canBeRepeatedWhereTheStageCannotBeWritten()
{
    QFETCH(const Interruption, interruption);
    QFETCH(const QString, option);
    QFETCH(const ExitCode, exitCode);
    const TestProject project;
    interruption(project);
    project.makeFolder(u".vantrel.run.new"_s);
    const QStringList before = describeTree(project.dir());
    const CliResult result = recover(project, {option});
    COMPARE_EXIT_CODE(result, FilesMissing);
    QCOMPARE(withPlaceholders(result.errorOutput, project.dir()),
             "<project>/.vantrel.run could not be written: Is a directory. No screen is lost; repeat the "
             "command.\n");
    QCOMPARE(describeTree(project.dir()), before);

    QVERIFY(QDir(project.dir()).rmdir(u".vantrel.run.new"_s));
    QCOMPARE(recover(project, {option}).exitCode, static_cast<int>(exitCode));
    const bool isFinished = option == "--finish"_L1;
    QCOMPARE(bytesBelow(project, u"scr"_s), isFinished ? conversions() : originals());
    QVERIFY(!isFinished || bytesBelow(project, u"scr_bak"_s) == originals());
}

void TestRecover::canBeRepeatedWhereAScreenCannotBeCopied()
{
    const TestProject project;
    putConverted(project, u"scr"_s, {u"00.psc"_s});
    putOriginals(project, u"scr_bak"_s);
    putConverted(project, u"scr_temp"_s, {u"a.psc"_s, u"hall/00.psc"_s});
    project.write(u"scr/hall"_s, "in the way");
    writeStage(project, RunStage::CopyingBack);
    const CliResult result = recover(project, {u"--finish"_s});
    COMPARE_EXIT_CODE(result, FilesMissing);
    QVERIFY2(result.errorOutput.contains("/scr_temp/hall/00.psc could not be copied"),
             result.errorOutput.constData());
    QVERIFY2(result.errorOutput.endsWith("repeat the command.\n"), result.errorOutput.constData());

    QVERIFY(QFile::remove(project.path(u"scr/hall"_s)));
    COMPARE_EXIT_CODE(recover(project, {u"--finish"_s}), FilesMissing);
    QCOMPARE(bytesBelow(project, u"scr"_s), conversions());
}

/// A full disk may be what the run was killed for.
void TestRecover::takesAConversionBackWithoutWritingTheStage()
{
    const TestProject project;
    putOriginals(project, u"scr"_s);
    putConverted(project, u"scr_temp"_s, {u"00.psc"_s});
    writeStage(project, RunStage::Converting);
    project.makeFolder(u".vantrel.run.new"_s);
    COMPARE_EXIT_CODE(recover(project, {u"--roll-back"_s}), Done);
    QVERIFY(!project.exists(u"scr_temp"_s));
    QVERIFY(!StageFile::exists(project.dir()));
    QCOMPARE(bytesBelow(project, u"scr"_s), originals());
}

void TestRecover::usesNoHalfWrittenCopyThatItCannotRemove_data()
{
    QTest::addColumn<bool>("hadTempFolder");
    QTest::addColumn<QString>("option");
    QTest::newRow("finish") << false << u"--finish"_s;
    QTest::newRow("finish, in an older folder") << true << u"--finish"_s;
    QTest::newRow("roll back") << false << u"--roll-back"_s;
}

void TestRecover::usesNoHalfWrittenCopyThatItCannotRemove()
{
    QFETCH(const bool, hadTempFolder);
    QFETCH(const QString, option);
    const TestProject project;
    RunFacts facts = someFacts();
    facts.hadTempFolder = hadTempFolder;
    putOriginals(project, u"scr"_s);
    project.write(u"scr_temp/00.psc"_s, "ID;1");
    StageFile(project.dir(), facts).enter({});
    QFile::setPermissions(project.path(u"scr_temp"_s), QFile::Permissions::fromInt(0x5555));
    CliRun run;
    run.setPermissionsHold();
    const CliResult result = run.execute({u"recover"_s, u"--project"_s, project.dir(), option});
    QFile::setPermissions(project.path(u"scr_temp"_s), QFile::Permissions::fromInt(0x7777));
    COMPARE_EXIT_CODE(result, FilesMissing);
    QVERIFY2(result.errorOutput.contains("could not be removed: Permission denied. No screen is lost"),
             result.errorOutput.constData());
    QCOMPARE(bytesBelow(project, u"scr"_s), originals());
    QVERIFY(StageFile::exists(project.dir()));
}

void TestRecover::tellsThatItCouldNotRemoveTheTempFolder()
{
    const TestProject project;
    putConverted(project, u"scr"_s);
    putOriginals(project, u"scr_bak"_s, convertedScreens);
    project.makeFolder(u"scr_temp/hall/cellar"_s);
    RunFacts facts = someFacts();
    facts.screens = convertedScreens;
    StageFile(project.dir(), facts)
        .enter({.stage = RunStage::CopyingBack, .unsaved = {}, .endedAt = RunStage::CopyingBack});
    QFile::setPermissions(project.path(u"scr_temp/hall"_s), QFile::Permissions::fromInt(0x5555));
    CliRun run;
    run.setPermissionsHold();
    const CliResult result = run.execute({u"recover"_s, u"--project"_s, project.dir(), u"--finish"_s});
    QFile::setPermissions(project.path(u"scr_temp/hall"_s), QFile::Permissions::fromInt(0x7777));
    COMPARE_EXIT_CODE(result, DoneWithErrors);
    QVERIFY2((result.output + result.errorOutput).contains("Could not remove Folder"),
             (result.output + result.errorOutput).constData());
}

namespace {

const QByteArray missing = "scr/hall/bad.psc: obstacle: it lies neither in \"scr\" nor in \"scr_bak\"";

void addMissingScreens()
{
    const Interruption isMissing = [](const TestProject &project) {
        putOriginals(project, u"scr_bak"_s, convertedScreens);
        putConverted(project, u"scr_temp"_s);
        writeStage(project, RunStage::Removing);
    };
    QTest::newRow("a screen is missing, roll back") << isMissing << u"--roll-back"_s << missing;
    QTest::newRow("a screen is missing, finish") << isMissing << u"--finish"_s << missing;
    QTest::newRow("a screen is missing, tell")
        << isMissing << u"--json"_s << QByteArray("\"path\":\"scr/hall/bad.psc\"");

    const Interruption isChanged = [](const TestProject &project) {
        putOriginals(project, u"scr"_s);
        putOriginals(project, u"scr_bak"_s, allScreens.first(2));
        project.write(u"scr/a.psc"_s, "changed");
        writeStage(project, RunStage::BackingUp);
    };
    QTest::newRow("two versions of a screen")
        << isChanged << u"--roll-back"_s
        << QByteArray("scr/a.psc: obstacle: its versions in \"scr\" and \"scr_bak\" differ");
    QTest::newRow("a screen was changed after its copy was broken off")
        << Interruption([](const TestProject &project) {
               putOriginals(project, u"scr"_s);
               project.write(u"scr_bak/a.psc"_s, original(u"a.psc"_s).first(5));
               writeStage(project, RunStage::BackingUp);
               makeNewerThanStage(project, u"scr/a.psc"_s);
           })
        << u"--roll-back"_s << QByteArray("scr/a.psc: obstacle: its versions in \"scr\"");
}

void addChangedScreens()
{
    const QByteArray changed = "scr/a.psc: obstacle: it holds neither what the run had found nor what";
    const Interruption isChangedBeforeRemoval = [](const TestProject &project) {
        project.write(u"scr/a.psc"_s, "changed");
        putOriginals(project, u"scr_bak"_s);
        putConverted(project, u"scr_temp"_s);
        writeStage(project, RunStage::Removing);
    };
    QTest::newRow("a changed screen would be removed, finish")
        << isChangedBeforeRemoval << u"--finish"_s << changed;
    QTest::newRow("a changed screen would be removed, roll back")
        << isChangedBeforeRemoval << u"--roll-back"_s << changed;
    const Interruption isChangedBeforeItsCopy = [](const TestProject &project) {
        putConverted(project, u"scr"_s, {u"00.psc"_s});
        project.write(u"scr/a.psc"_s, "changed");
        putOriginals(project, u"scr_bak"_s);
        putConverted(project, u"scr_temp"_s, {u"a.psc"_s, u"hall/00.psc"_s});
        writeStage(project, RunStage::CopyingBack);
    };
    QTest::newRow("a changed screen would be replaced, finish")
        << isChangedBeforeItsCopy << u"--finish"_s << changed;
    QTest::newRow("a changed screen would be replaced, roll back")
        << isChangedBeforeItsCopy << u"--roll-back"_s << changed;
    QTest::newRow("a screen was changed after it had been renamed back")
        << Interruption([](const TestProject &project) {
               putConverted(project, u"scr"_s, {u"00.psc"_s});
               putOriginals(project, u"scr_bak"_s);
               putConverted(project, u"scr_temp"_s, {u"hall/00.psc"_s});
               writeStage(project, RunStage::CopyingBack);
               project.write(u"scr/a.psc"_s, "changed");
               makeNewerThanStage(project, u"scr/a.psc"_s);
           })
        << u"--roll-back"_s << changed;
}

void addLinkedScreens()
{
    const Interruption isLinked = [](const TestProject &project) {
        putOriginals(project, u"scr_bak"_s);
        putConverted(project, u"scr_temp"_s);
        QVERIFY(QFile::link(u"scr_bak"_s, project.path(u"scr"_s)));
        writeStage(project, RunStage::CopyingBack);
    };
    const QByteArray linked = "scr/a.psc: obstacle: over a link, it is the same file";
    QTest::newRow("\"scr\" leads to \"scr_bak\", roll back") << isLinked << u"--roll-back"_s << linked;
    QTest::newRow("\"scr\" leads to \"scr_bak\", finish") << Interruption([](const TestProject &project) {
        putOriginals(project, u"scr_bak"_s);
        putConverted(project, u"scr_temp"_s);
        QVERIFY(QFile::link(u"scr_bak"_s, project.path(u"scr"_s)));
        writeStage(project, RunStage::BackingUp);
    }) << u"--finish"_s << linked;
    QTest::newRow("\"scr\" leads to \"scr_bak\", undo") << Interruption([](const TestProject &project) {
        putOriginals(project, u"scr_bak"_s);
        QVERIFY(QFile::link(u"scr_bak"_s, project.path(u"scr"_s)));
    }) << u"--undo"_s << linked;
    QTest::newRow("a screen leads to its backup") << Interruption([](const TestProject &project) {
        putOriginals(project, u"scr"_s, hall);
        QVERIFY(QFile::link(u"../scr_bak/a.psc"_s, project.path(u"scr/a.psc"_s)));
        putOriginals(project, u"scr_bak"_s);
        putConverted(project, u"scr_temp"_s);
        writeStage(project, RunStage::Removing);
    }) << u"--roll-back"_s << linked;
}

void addWhatElseIsUnclear()
{
    QTest::newRow("the converted screens are gone") << Interruption([](const TestProject &project) {
        putOriginals(project, u"scr"_s, hall);
        putOriginals(project, u"scr_bak"_s, allScreens.first(2));
        writeStage(project, RunStage::BackingUp);
    }) << u"--finish"_s << QByteArray("\"scr_temp\" is gone, and the converted screens with it");
    QTest::newRow("no screen is left, roll back") << Interruption([](const TestProject &project) {
        putConverted(project, u"scr_temp"_s);
        writeStage(project, RunStage::Discarding);
    }) << u"--roll-back"_s << missing;
    QTest::newRow("a backup is gone, undo") << Interruption([](const TestProject &project) {
        putConverted(project, u"scr"_s);
        putOriginals(project, u"scr_bak"_s, convertedScreens);
        writeStage(project, {.stage = RunStage::SettingAside, .unsaved = {}, .endedAt = RunStage::Done});
    }) << u"--undo"_s << missing;
    QTest::newRow("a name that no text can name") << Interruption([](const TestProject &project) {
        putOriginals(project, u"scr"_s);
        makeUnnamableFile(project, "scr/hall/pump\xe4.psc");
        putConverted(project, u"scr_temp"_s);
        writeStageOfPartlyListedRun(project);
    }) << u"--roll-back"_s << QByteArray("scr/hall/pump\\xe4.psc: obstacle: its name is not valid UTF-8");
    QTest::newRow("a stage file that is cut off") << Interruption([](const TestProject &project) {
        putOriginals(project, u"scr"_s);
        project.write(u".vantrel.run"_s, "vantrel run 1\nstage: converting\n");
    }) << u"--roll-back"_s << QByteArray("\".vantrel.run\" cannot be read or understood");
}

} // namespace

void TestRecover::changesNothingBehindLinks_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<RunStage>("stage");
    QTest::addColumn<bool>("hadTempFolder");
    QTest::addColumn<QString>("option");
    for (const QString &folder : {u"scr"_s, u"scr_bak"_s, u"scr_temp"_s, u"scr/hall"_s, u"scr_bak/hall"_s,
                                  u"scr_temp/hall"_s, u".vantrel.history"_s}) {
        for (const RunStage stage : {RunStage::Converting, RunStage::BackingUp, RunStage::Removing,
                                     RunStage::CopyingBack, RunStage::RollingBack, RunStage::Done}) {
            for (const bool hadTempFolder : {false, true}) {
                for (const QString &option : {u"--roll-back"_s, u"--finish"_s, u"--undo"_s}) {
                    QTest::addRow("%s, %s%s, %s", qUtf8Printable(folder), rowOf(stage).name,
                                  hadTempFolder ? " with an older folder" : "", qUtf8Printable(option))
                        << folder << stage << hadTempFolder << option;
                }
            }
        }
    }
}

/// Somebody has put a link into the place of a folder that a recovery writes to, or takes from.
void TestRecover::changesNothingBehindLinks()
{
    QFETCH(const QString, folder);
    QFETCH(const RunStage, stage);
    QFETCH(const bool, hadTempFolder);
    QFETCH(const QString, option);
    const TestProject project;
    putOriginals(project, u"scr_bak"_s);
    putConverted(project, u"scr"_s);
    putConverted(project, u"scr_temp"_s);
    RunFacts facts = someFacts();
    facts.hadTempFolder = hadTempFolder;
    facts.historyEntry = u"2024-03-05_14-07-09"_s;
    StageFile(project.dir(), facts)
        .enter({.stage = stage,
                .unsaved = {},
                .endedAt = stage == RunStage::RollingBack ? RunStage::CopyingBack : stage});
    for (const QString &screen : allScreens + QStringList{u"notes.txt"_s, u"deep/old.psc"_s})
        project.write(u"../outside/"_s + screen, "of somebody else: " + screen.toUtf8());
    if (project.exists(folder))
        project.remove(folder);
    project.link(project.beside(u"outside"_s), folder);
    const QStringList outside = describeTree(project.beside(u"outside"_s));
    recover(project, {option});
    QCOMPARE(describeTree(project.beside(u"outside"_s)), outside);
}

void TestRecover::touchesNothingWhereItCannotDecide_data()
{
    QTest::addColumn<Interruption>("interruption");
    QTest::addColumn<QString>("option");
    QTest::addColumn<QByteArray>("complaint");
    addMissingScreens();
    addChangedScreens();
    addLinkedScreens();
    addWhatElseIsUnclear();
}

void TestRecover::touchesNothingWhereItCannotDecide()
{
    QFETCH(const Interruption, interruption);
    QFETCH(const QString, option);
    QFETCH(const QByteArray, complaint);
    const TestProject project;
    interruption(project);
    const QStringList before = describeTree(project.dir());
    const CliResult result = recover(project, {option});
    COMPARE_EXIT_CODE(result, Refused);
    const QByteArray output = result.output + result.errorOutput;
    QVERIFY2(output.contains(complaint), output.constData());
    QCOMPARE(describeTree(project.dir()), before);
}

void TestRecover::refusesToUndo_data()
{
    QTest::addColumn<Interruption>("interruption");
    QTest::addColumn<QByteArray>("complaint");
    QTest::newRow("without a backup")
        << Interruption([](const TestProject &project) { putConverted(project, u"scr"_s); })
        << QByteArray("Refused: there is nothing to undo, neither a \"scr_bak\" with screens in it nor a run "
                      "in the history.\n");
    QTest::newRow("an interrupted run") << Interruption([](const TestProject &project) {
        putOriginals(project, u"scr"_s);
        writeStage(project, RunStage::Converting);
    }) << QByteArray("The last run was interrupted; --roll-back takes it back.\n");
}

void TestRecover::refusesToUndo()
{
    QFETCH(const Interruption, interruption);
    QFETCH(const QByteArray, complaint);
    const TestProject project;
    interruption(project);
    const QStringList before = describeTree(project.dir());
    const CliResult result = recover(project, {u"--undo"_s});
    COMPARE_EXIT_CODE(result, Refused);
    QCOMPARE(result.errorOutput, complaint);
    QCOMPARE(describeTree(project.dir()), before);
}

void TestRecover::refusesWhileARunIsUnderWay()
{
    const TestProject project;
    putOriginals(project, u"scr"_s);
    writeStage(project, RunStage::Converting);
    const ProjectLock lock(project.dir());
    const QString holder = ProjectLock(project.dir()).holder();
    for (const QString &option : {u"--roll-back"_s, u"--finish"_s, u"--undo"_s}) {
        const CliResult result = recover(project, {option});
        COMPARE_EXIT_CODE(result, Refused);
        QCOMPARE(result.errorOutput,
                 u"A run is under way: the project is in use by %1.\n"_s.arg(holder).toUtf8());
    }
    QVERIFY(StageFile::exists(project.dir()));
}

void TestRecover::refusesAProjectThatIsNotThere()
{
    const TestProject project;
    for (const QString &option : {u"--roll-back"_s, u"--undo"_s, u"--color=never"_s}) {
        const CliResult result =
            CliRun().execute({u"recover"_s, u"--project"_s, project.path(u"gone"_s), option});
        COMPARE_EXIT_CODE(result, Refused);
        QCOMPARE(withPlaceholders(result.errorOutput, project.dir()), "There is no folder <project>/gone.\n");
    }
}

/// No answer of the disk must not be taken for "there is nothing".
void TestRecover::doesNotTakeNoAnswerForAbsence_data()
{
    QTest::addColumn<Interruption>("interruption");
    QTest::addColumn<QString>("closedFolder");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QByteArray>("complaint");
    const QStringList all{u"--roll-back"_s, u"--finish"_s, u"--undo"_s};
    const QByteArray undecided = "what is right cannot be decided";
    const Interruption isBackingUp = [](const TestProject &project) {
        putOriginals(project, u"scr"_s);
        putOriginals(project, u"scr_bak"_s, allScreens.first(2));
        for (const QString &screen : hall)
            project.write("scr_bak/"_L1 + screen, "ID;1");
        putConverted(project, u"scr_temp"_s);
        writeStage(project, RunStage::BackingUp);
    };
    QTest::newRow("stage file") << isBackingUp << u"."_s << all
                                << QByteArray("\".vantrel.run\" cannot be read or understood");
    QTest::newRow("screens") << isBackingUp << u"scr/hall"_s << all << undecided;
    QTest::newRow("backup") << isBackingUp << u"scr_bak/hall"_s << all << undecided;
    QTest::newRow("screens that the run could not list") << Interruption([](const TestProject &project) {
        putOriginals(project, u"scr"_s);
        putConverted(project, u"scr_temp"_s);
        writeStageOfPartlyListedRun(project);
    }) << u"scr/hall"_s << all << QByteArray("scr/hall: obstacle: it cannot be listed");
    QTest::newRow("screens of a completed run") << Interruption([](const TestProject &project) {
        putConverted(project, u"scr"_s);
        putOriginals(project, u"scr_bak"_s);
    }) << u"scr/hall"_s << QStringList{u"--undo"_s}
                                                << QByteArray("\"scr\" or \"scr_bak\" cannot be read whole");
}

void TestRecover::doesNotTakeNoAnswerForAbsence()
{
    QFETCH(const Interruption, interruption);
    QFETCH(const QString, closedFolder);
    QFETCH(const QStringList, options);
    QFETCH(const QByteArray, complaint);
    const TestProject project;
    interruption(project);
    const QStringList before = describeTree(project.dir());
    for (const QString &option : options) {
        const CliResult result = recoverWithClosedFolder(project, closedFolder, option);
        COMPARE_EXIT_CODE(result, Refused);
        const QByteArray output = result.output + result.errorOutput;
        QVERIFY2(output.contains(complaint), output.constData());
        QCOMPARE(describeTree(project.dir()), before);
    }
}

/// The rest is done when the folder can be listed.
void TestRecover::goesOnWhenAFolderCanBeListedAgain_data()
{
    QTest::addColumn<Interruption>("interruption");
    QTest::addColumn<QString>("closedFolder");
    QTest::addColumn<QString>("option");
    QTest::addColumn<QByteArray>("complaint");
    QTest::addColumn<ExitCode>("exitCode"); // of the repeated command
    QTest::addColumn<Interruption>("requireResult");

    QTest::newRow("undoing") << Interruption([](const TestProject &project) {
        putConverted(project, u"scr"_s);
        putOriginals(project, u"scr_bak"_s);
        writeStage(project, {.stage = RunStage::SettingAside, .unsaved = {}, .endedAt = RunStage::Done});
    }) << u"scr/hall"_s << u"--undo"_s
                             << QByteArray("\"scr\" could not be read whole. No screen is lost; repeat")
                             << ExitCode::Done << Interruption([](const TestProject &project) {
                                    QCOMPARE(bytesBelow(project, u"scr"_s), originals());
                                    QCOMPARE(setAsideIn(project), conversions());
                                });
    QTest::newRow("an older \"scr_temp\"")
        << Interruption([](const TestProject &project) {
               putOriginals(project, u"scr"_s);
               project.write(u"scr_temp/hall/older.psc"_s, "older");
               makeUnnamableFile(project, "scr_temp/pump\xe4.psc");
               RunFacts facts = someFacts();
               facts.hadTempFolder = true;
               facts.olderFiles = QStringList{u"hall/older.psc"_s};
               facts.olderFolders = QStringList{u"hall"_s};
               StageFile(project.dir(), facts).enter({});
           })
        << u"scr_temp/hall"_s << u"--roll-back"_s << QByteArray("could not be listed: Permission denied")
        << ExitCode::Done << Interruption([](const TestProject &project) {
               QCOMPARE(bytesBelow(project, u"scr"_s), originals());
               QCOMPARE(project.files(u"scr_temp"_s), QStringList{u"hall/older.psc"_s});
               QVERIFY(isThere(project, "scr_temp/pump\xe4.psc"));
           });
    QTest::newRow("the backup of an earlier run")
        << Interruption([](const TestProject &project) {
               putOriginals(project, u"scr"_s);
               project.write(u"scr_bak/hall/gone.psc"_s, "gone");
               putConverted(project, u"scr_temp"_s);
               writeStage(project, RunStage::Discarding);
           })
        << u"scr_bak/hall"_s << u"--finish"_s << QByteArray("The last backup could not be removed. No screen")
        << ExitCode::FilesMissing << Interruption([](const TestProject &project) {
               QCOMPARE(bytesBelow(project, u"scr"_s), conversions());
               QCOMPARE(bytesBelow(project, u"scr_bak"_s), originals());
           });
}

void TestRecover::goesOnWhenAFolderCanBeListedAgain()
{
    QFETCH(const Interruption, interruption);
    QFETCH(const QString, closedFolder);
    QFETCH(const QString, option);
    QFETCH(const QByteArray, complaint);
    QFETCH(const ExitCode, exitCode);
    QFETCH(const Interruption, requireResult);
    const TestProject project;
    interruption(project);
    const CliResult result = recoverWithClosedFolder(project, closedFolder, option);
    COMPARE_EXIT_CODE(result, FilesMissing);
    QVERIFY2(result.errorOutput.contains(complaint), result.errorOutput.constData());
    QVERIFY(StageFile::exists(project.dir()));

    QCOMPARE(recover(project, {option}).exitCode, static_cast<int>(exitCode));
    QVERIFY(!StageFile::exists(project.dir()));
    requireResult(project);
}

void TestRecover::takesBackWhatARunMovedUnlisted()
{
    const TestProject project;
    putOriginals(project, u"scr"_s, hall);
    putOriginals(project, u"scr_bak"_s, allScreens.first(2));
    putConverted(project, u"scr_temp"_s);
    writeStageOfPartlyListedRun(project);
    COMPARE_EXIT_CODE(recover(project, {u"--roll-back"_s}), Done);
    QCOMPARE(bytesBelow(project, u"scr"_s), originals());
    QVERIFY(!project.exists(u"scr_bak"_s));
}

void TestRecover::excludesItsOptions()
{
    const TestProject project;
    const CliResult result = recover(project, {u"--roll-back"_s, u"--finish"_s});
    COMPARE_EXIT_CODE(result, WrongUsage);
    QCOMPARE(result.errorOutput, "vantrel-cli: --roll-back, --finish and --undo exclude each other; see "
                                 "\"vantrel-cli recover --help\"\n");
}

void TestRecover::isToldByOtherCommands_data()
{
    QTest::addColumn<QString>("command");
    QTest::newRow("check") << u"check"_s;
    QTest::newRow("shapes") << u"shapes"_s;
    QTest::newRow("diff") << u"diff"_s;
}

void TestRecover::isToldByOtherCommands()
{
    QFETCH(const QString, command);
    const TestProject project;
    SmallPlant::makeIn(project);
    writeStage(project, RunStage::CopyingBack);
    const QStringList before = describeTree(project.dir());
    const CliResult result = CliRun().execute({command, u"--project"_s, project.dir()});
    COMPARE_EXIT_CODE(result, FilesMissing);
    QVERIFY2(result.output.startsWith(".vantrel.run: obstacle: a run was interrupted: copying back"),
             result.output.constData());
    QVERIFY2(result.output.contains("recover --project"), result.output.constData());
    QCOMPARE(describeTree(project.dir()), before);
}

void TestRecover::keepsUpdateFromStarting_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::newRow("plainly") << QStringList();
    QTest::newRow("with force") << QStringList{u"--force"_s};
    QTest::newRow("as a dry run") << QStringList{u"--dry-run"_s, u"--force"_s};
}

void TestRecover::keepsUpdateFromStarting()
{
    QFETCH(const QStringList, options);
    const TestProject project;
    SmallPlant::makeIn(project);
    writeStage(project, RunStage::CopyingBack);
    const QStringList before = describeTree(project.dir());
    const CliResult result = CliRun().execute(
        QStringList{u"update"_s, u"--project"_s, project.dir(), u"--all-shapes"_s} + options);
    COMPARE_EXIT_CODE(result, FilesMissing);
    QVERIFY2(result.errorOutput.contains("see \"vantrel-cli recover --project"),
             result.errorOutput.constData());
    QCOMPARE(describeTree(project.dir()), before);
}

void TestRecover::namesTheProgramThatHoldsTheProject()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    writeStage(project, RunStage::Converting);
    const ProjectLock lock(project.dir());
    const QStringList before = describeTree(project.dir());
    const CliResult result =
        CliRun().execute({u"update"_s, u"--project"_s, project.dir(), u"--all-shapes"_s, u"--quiet"_s});
    COMPARE_EXIT_CODE(result, Refused);
    QCOMPARE(result.errorOutput, u".vantrel.lock: a run is under way: the project is in use by %1; wait "
                                 "until it has ended\n"_s.arg(ProjectLock(project.dir()).holder())
                                     .toUtf8());
    QCOMPARE(describeTree(project.dir()), before);
}

void TestRecover::needsNoFilesInAProtectedProject()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.makeFolder(u"scr_temp"_s);
    QFile::setPermissions(project.dir(), QFile::Permissions::fromInt(0x5555));
    CliRun run;
    run.setPermissionsHold();
    const CliResult result =
        run.execute({u"update"_s, u"--project"_s, project.dir(), u"--all-shapes"_s, u"--force"_s});
    QFile::setPermissions(project.dir(), QFile::Permissions::fromInt(0x7777));
    COMPARE_EXIT_CODE(result, FilesMissing);
    QVERIFY2(result.output.contains("REPLACE  scr/a.psc"), result.output.constData());
    QCOMPARE(project.read(u"scr/a.psc"_s), SmallPlant::screenWith("pump.plb"));
    QVERIFY(!StageFile::exists(project.dir()));
    QVERIFY(!project.exists(u".vantrel.lock"_s));
}

void TestRecover::stopsWhileItPlans_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QByteArray>("message");
    const QByteArray repeat = "Stopped. No screen is lost; repeat the command.\n";
    QTest::newRow("telling") << QStringList() << QByteArray("Stopped. Nothing was changed.\n");
    QTest::newRow("rolling back") << QStringList{u"--roll-back"_s} << repeat;
    QTest::newRow("finishing") << QStringList{u"--finish"_s} << repeat;
}

/// It ends although the file that it waits for is still held.
void TestRecover::stopsWhileItPlans()
{
    QFETCH(const QStringList, options);
    const TestProject project;
    putOriginals(project, u"scr"_s);
    putOriginals(project, u"scr_bak"_s);
    putConverted(project, u"scr_temp"_s);
    writeStage(project, RunStage::BackingUp);
    const QStringList before = describeTree(project.dir());
    HeldFile screen(project.path(u"scr_bak/"_s + allScreens.first()));
    CliRun run;
    run.start(QStringList{u"recover"_s, u"--project"_s, project.dir()} + options);
    QVERIFY(screen.waitForReader());
    run.sendSignalAtOnce(SIGTERM);
    const CliResult result = run.finish();
    screen.release();
    QTEST(result.errorOutput, "message");
    COMPARE_EXIT_CODE(result, StoppedByTermination);
    QCOMPARE(describeTree(project.dir()), before);
}

void TestRecover::stopsBetweenScreens()
{
    const TestProject project;
    putOriginals(project, u"scr_bak"_s);
    putConverted(project, u"scr_temp"_s);
    writeStage(project, RunStage::Removing);
    const QStringList rollBack{u"recover"_s, u"--project"_s, project.dir(), u"--roll-back"_s};
    {
        const HeldFile screen(project.path(u"scr_bak/"_s + allScreens.at(1)));
        CliRun run;
        run.start(rollBack);
        QVERIFY(screen.waitForReader());
        run.sendSignalAtOnce(SIGINT);
        const CliResult result = run.finish();
        QCOMPARE(result.errorOutput, "Stopped. No screen is lost; repeat the command.\n");
        COMPARE_EXIT_CODE(result, StoppedByInterrupt);
        QCOMPARE(project.files(u"scr"_s), QStringList{allScreens.first()});
        QVERIFY(!project.exists(u".vantrel.lock"_s));
    }
    COMPARE_EXIT_CODE(CliRun().execute(rollBack), Done);
    QCOMPARE(bytesBelow(project, u"scr"_s), originals());
}

VANTREL_TEST(QCoreApplication, TestRecover)
#include "tst_recover.moc"
