// The command "history": what it lists, what it brings back, and what it refuses.
#include "CliRun.h"
#include "ExitCode.h"
#include "HeldFile.h"
#include "ProjectLock.h"
#include "ProjectTree.h"
#include "RunHistory.h"
#include "SmallPlant.h"
#include "StageFile.h"
#include "TestSuite.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;

#define COMPARE_EXIT_CODE(result, code) QCOMPARE((result).exitCode, static_cast<int>(ExitCode::code))

namespace {

CliResult history(const TestProject &project, const QStringList &options = {})
{
    return CliRun().execute(QStringList{u"history"_s, u"--project"_s, project.dir()} + options);
}

CliResult update(const TestProject &project, const QStringList &options = {})
{
    return CliRun().execute(
        QStringList{u"update"_s, u"--project"_s, project.dir(), u"--all-shapes"_s, u"--force"_s} + options);
}

/// A plant after two runs, with a note that the first one displaced.
void makeTwoRuns(const TestProject &project)
{
    SmallPlant::makeIn(project);
    project.write(u"scr/hall/notes.txt"_s, "notes");
    COMPARE_EXIT_CODE(update(project), Done);
    project.write(u"mac/pump.plb"_s, SmallPlant::shape().replace("Body", "Case"));
    COMPARE_EXIT_CODE(update(project), Done);
}

QList<QJsonObject> linesOf(const QByteArray &output)
{
    QList<QJsonObject> lines;
    for (const QByteArray &line : output.split('\n')) {
        if (!line.isEmpty())
            lines.append(QJsonDocument::fromJson(line).object());
    }
    return lines;
}

} // namespace

class TestHistory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void listsRunsTheNewestFirst();
    void listsNothingWhereNothingIsKept();
    void tellsRunsInJson();
    void bringsOneFileBack();
    void bringsAllBack();
    void bringsBackWhatARestoringReplaced();
    void touchesNothingWhereANameIsUnknown_data();
    void touchesNothingWhereANameIsUnknown();
    void refusesOverARunUnderWayOrInterrupted_data();
    void refusesOverARunUnderWayOrInterrupted();
    void showsWhatChangedSince();
    void removesEarlierRuns();
    void keepsAsManyRunsAsAskedFor();
    void refusesNumbersThatAreNone_data();
    void refusesNumbersThatAreNone();
    void stopsBetweenFiles_data();
    void stopsBetweenFiles();
};

void TestHistory::listsRunsTheNewestFirst()
{
    const TestProject project;
    makeTwoRuns(project);
    const CliResult result = history(project);
    COMPARE_EXIT_CODE(result, Done);
    const QList<QByteArray> lines = result.output.split('\n');
    const QStringList entries = RunHistory(project.dir()).entries();
    QCOMPARE(entries.size(), 2);
    QVERIFY(lines.at(0).startsWith("Run "));
    for (qsizetype run = 0; run < 2; ++run)
        QVERIFY2(lines.at(run + 1).simplified().startsWith(entries.at(run).toLatin1() + " run 1 1 "),
                 lines.at(run + 1));
    QVERIFY(result.output.endsWith("\n\nRuns          2\n"));
}

void TestHistory::listsNothingWhereNothingIsKept()
{
    const TestProject project;
    const CliResult result = history(project);
    COMPARE_EXIT_CODE(result, Done);
    QCOMPARE(result.errorOutput, "No run is kept.\n");
}

void TestHistory::tellsRunsInJson()
{
    const TestProject project;
    makeTwoRuns(project);
    const QList<QJsonObject> lines = linesOf(history(project, {u"--json"_s}).output);
    QCOMPARE(lines.size(), 3);
    const QJsonObject &first = lines.at(1);
    QCOMPARE(first.value("kind"_L1).toString(), u"run"_s);
    QCOMPARE(first.value("what"_L1).toString(), u"run"_s);
    QCOMPARE(first.value("name"_L1).toString(), RunHistory(project.dir()).entries().at(1));
    QCOMPARE(first.value("screens"_L1).toInt(), 1);
    QCOMPARE(first.value("replaced"_L1).toInt(), 1);
    QCOMPARE(first.value("errors"_L1).toInt(), 0);
    QCOMPARE(first.value("files"_L1).toInt(), 2); // with "run.json"
    QVERIFY(first.value("about"_L1).isNull());
    QVERIFY(first.value("changeLog"_L1).toString().startsWith("log/Vantrel_"_L1));
    QCOMPARE(lines.at(2).value("counts"_L1).toObject().value("runs"_L1).toInt(), 2);
}

void TestHistory::bringsOneFileBack()
{
    const TestProject project;
    makeTwoRuns(project);
    const QStringList entries = RunHistory(project.dir()).entries();
    const QByteArray now = project.read(u"scr/a.psc"_s);
    const CliResult result = history(project, {u"--restore"_s, entries.at(1), u"scr/a.psc"_s});
    COMPARE_EXIT_CODE(result, Done);
    QCOMPARE(project.read(u"scr/a.psc"_s), SmallPlant::screenWith("pump.plb"));
    QVERIFY(!project.exists(u"scr/hall/notes.txt"_s));
    const QString replaced = RunHistory(project.dir()).entries().at(0);
    QCOMPARE(result.errorOutput,
             u"\"scr\" holds 1 file as before this run. What they replaced is kept as %1.\n"_s.arg(replaced)
                 .toLatin1());
    QCOMPARE(project.read(u".vantrel.history/%1/scr/a.psc"_s.arg(replaced)), now);
}

void TestHistory::bringsAllBack()
{
    const TestProject project;
    makeTwoRuns(project);
    COMPARE_EXIT_CODE(history(project, {u"--restore"_s, RunHistory(project.dir()).entries().at(1)}), Done);
    QCOMPARE(project.read(u"scr/a.psc"_s), SmallPlant::screenWith("pump.plb"));
    QCOMPARE(project.read(u"scr/hall/notes.txt"_s), "notes");
}

void TestHistory::bringsBackWhatARestoringReplaced()
{
    const TestProject project;
    makeTwoRuns(project);
    const QByteArray now = project.read(u"scr/a.psc"_s);
    COMPARE_EXIT_CODE(history(project, {u"--restore"_s, RunHistory(project.dir()).entries().at(1)}), Done);
    COMPARE_EXIT_CODE(history(project, {u"--restore"_s, RunHistory(project.dir()).entries().at(0)}), Done);
    QCOMPARE(project.read(u"scr/a.psc"_s), now);
}

void TestHistory::touchesNothingWhereANameIsUnknown_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QByteArray>("complaint");
    QTest::newRow("a run to restore") << QStringList{u"--restore"_s, u"2001-01-01_00-00-00"_s}
                                      << QByteArray("The history holds no run 2001-01-01_00-00-00; ");
    QTest::newRow("a path in place of a run")
        << QStringList{u"--restore"_s, u"../scr"_s} << QByteArray("The history holds no run ../scr; ");
    QTest::newRow("a run to compare with")
        << QStringList{u"--diff"_s, u""_s} << QByteArray("The history holds no run ; ");
    QTest::newRow("a file") << QStringList{u"--restore"_s, u"<newest>"_s, u"a.psc"_s, u"b.psc"_s}
                            << QByteArray("Nothing was touched.\n");
    QTest::newRow("a path that leads out") << QStringList{u"--restore"_s, u"<newest>"_s, u"../mac/pump.plb"_s}
                                           << QByteArray("Nothing was touched.\n");
}

void TestHistory::touchesNothingWhereANameIsUnknown()
{
    QFETCH(QStringList, options);
    QFETCH(const QByteArray, complaint);
    const TestProject project;
    makeTwoRuns(project);
    options.replaceInStrings(u"<newest>"_s, RunHistory(project.dir()).entries().at(0));
    const QStringList before = describeTree(project.dir());
    const CliResult result = history(project, options);
    COMPARE_EXIT_CODE(result, WrongUsage);
    QVERIFY2(result.errorOutput.startsWith(complaint), result.errorOutput);
    QCOMPARE(describeTree(project.dir()), before);
}

void TestHistory::refusesOverARunUnderWayOrInterrupted_data()
{
    QTest::addColumn<bool>("isUnderWay");
    QTest::addColumn<QStringList>("options");
    for (const bool isUnderWay : {true, false}) {
        const char *const word = isUnderWay ? "under way" : "interrupted";
        QTest::addRow("restore, %s", word) << isUnderWay << QStringList{u"--restore"_s, u"<newest>"_s};
        QTest::addRow("prune, %s", word) << isUnderWay << QStringList{u"--prune"_s, u"0"_s};
    }
}

void TestHistory::refusesOverARunUnderWayOrInterrupted()
{
    QFETCH(const bool, isUnderWay);
    QFETCH(QStringList, options);
    const TestProject project;
    makeTwoRuns(project);
    options.replaceInStrings(u"<newest>"_s, RunHistory(project.dir()).entries().at(0));
    std::optional<ProjectLock> lock;
    if (isUnderWay)
        lock.emplace(project.dir());
    else
        StageFile(project.dir(), {}).enter({});
    const CliResult result = history(project, options);
    COMPARE_EXIT_CODE(result, Refused);
    QVERIFY2(result.errorOutput.startsWith(isUnderWay ? "A run is under way" : "A run was interrupted"),
             result.errorOutput);
    QCOMPARE(RunHistory(project.dir()).entries().size(), 2);
}

void TestHistory::showsWhatChangedSince()
{
    const TestProject project;
    makeTwoRuns(project);
    const QString first = RunHistory(project.dir()).entries().at(1);
    const CliResult result = history(project, {u"--diff"_s, first});
    QVERIFY(result.exitCode != 0);
    QVERIFY2(result.output.startsWith("--- " + first.toLatin1() + "/a.psc\n+++ scr/a.psc\n"), result.output);
    QVERIFY(result.output.contains("+ID;1;Ellipse;Case\n"));
    COMPARE_EXIT_CODE(history(project, {u"--restore"_s, first}), Done);
    COMPARE_EXIT_CODE(history(project, {u"--diff"_s, first}), Done);
}

void TestHistory::removesEarlierRuns()
{
    const TestProject project;
    makeTwoRuns(project);
    const QStringList entries = RunHistory(project.dir()).entries();
    COMPARE_EXIT_CODE(history(project, {u"--prune"_s, u"1"_s}), Done);
    QCOMPARE(RunHistory(project.dir()).entries(), entries.first(1));
    COMPARE_EXIT_CODE(history(project, {u"--prune"_s, u"0"_s}), Done);
    QCOMPARE(RunHistory(project.dir()).entries(), QStringList());
    QCOMPARE(project.files(u"scr_bak"_s), QStringList{u"a.psc"_s});
}

void TestHistory::keepsAsManyRunsAsAskedFor()
{
    const TestProject project;
    makeTwoRuns(project);
    COMPARE_EXIT_CODE(update(project, {u"--keep-runs"_s, u"2"_s}), Done);
    QCOMPARE(RunHistory(project.dir()).entries().size(), 2);
    COMPARE_EXIT_CODE(update(project, {u"--keep-runs"_s, u"0"_s}), Done);
    QCOMPARE(RunHistory(project.dir()).entries().size(), 0);
}

void TestHistory::refusesNumbersThatAreNone_data()
{
    QTest::addColumn<QStringList>("words");
    for (const QString &number : {u"-1"_s, u"three"_s, u""_s, u"99999999999"_s}) {
        QTest::addRow("keep %s", qUtf8Printable(number))
            << QStringList{u"update"_s, u"--all-shapes"_s, u"--keep-runs="_s + number};
        QTest::addRow("prune %s", qUtf8Printable(number))
            << QStringList{u"history"_s, u"--prune="_s + number};
    }
}

void TestHistory::refusesNumbersThatAreNone()
{
    QFETCH(const QStringList, words);
    const TestProject project;
    SmallPlant::makeIn(project);
    const CliResult result = CliRun().execute(words + QStringList{u"--project"_s, project.dir()});
    COMPARE_EXIT_CODE(result, WrongUsage);
    QVERIFY2(result.errorOutput.contains(" takes a number of runs, 0 or more, not "), result.errorOutput);
}

void TestHistory::stopsBetweenFiles_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<QByteArray>("message");
    QTest::newRow("comparing") << u"--diff"_s << QByteArray("Stopped. Nothing was changed.\n");
    QTest::newRow("restoring") << u"--restore"_s
                               << QByteArray("Stopped. No file is lost; repeat the command.\n");
}

/// It ends although the file that it waits for is still held.
void TestHistory::stopsBetweenFiles()
{
    QFETCH(const QString, option);
    const TestProject project;
    makeTwoRuns(project);
    const QStringList entries = RunHistory(project.dir()).entries();
    const QStringList before = describeTree(project.dir());
    HeldFile screen(project.path(u".vantrel.history/%1/scr_bak/a.psc"_s.arg(entries.first())));
    CliRun run;
    run.start({u"history"_s, u"--project"_s, project.dir(), option, entries.at(1)});
    QVERIFY(screen.waitForReader());
    run.sendSignalAtOnce(SIGTERM);
    const CliResult result = run.finish();
    screen.release();
    QTEST(result.errorOutput, "message");
    COMPARE_EXIT_CODE(result, StoppedByTermination);
    QCOMPARE(describeTree(project.dir()), before);
}

VANTREL_TEST(QCoreApplication, TestHistory)
#include "tst_history.moc"
