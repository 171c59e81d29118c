// Whole plants: the example that comes with the program, and one that it refuses.
#include "CliRun.h"
#include "ExitCode.h"
#include "Golden.h"
#include "ProjectTree.h"
#include "TestSuite.h"

#include <QRegularExpression>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QString examplePlant = QStringLiteral(VANTREL_SOURCE_DIR "/example/waterworks");
const QString lossyPlant = QStringLiteral(VANTREL_TEST_DATA_DIR "/cli/lossy/plant");

QByteArray changeLogOf(const TestProject &project)
{
    QStringList logs = project.files(u"log"_s);
    logs.removeAll(u"README.txt"_s);
    return logs.size() == 1 ? project.read("log/"_L1 + logs.first()) : QByteArray("(not one change log)");
}

/// What a run printed, fit to be compared: "report.txt" and "log.txt".
void keepTexts(const CliResult &result, const TestProject &project, const TestProject &outcome)
{
    outcome.write(u"report.txt"_s, withPlaceholders(result.output, project.dir()));
    outcome.write(u"log.txt"_s, withPlaceholders(result.errorOutput, project.dir()));
}

/// The folders that a run over a project leaves.
void keepFolders(const QStringList &folders, const TestProject &project, const TestProject &outcome)
{
    for (const QString &folder : folders)
        copyFolder(project.path(folder), outcome.path(folder));
}

/// The lines between the first two, a hint and a heading, and the last in the order of their text:
/// files come as the file system happens to list them.
QByteArray withSortedObstacles(const QByteArray &refusal)
{
    QByteArrayList lines = refusal.split('\n');
    constexpr qsizetype firstLines = 2;
    constexpr qsizetype lastLineAndItsEnd = 2;
    if (lines.size() > firstLines + lastLineAndItsEnd)
        std::sort(lines.begin() + firstLines, lines.end() - lastLineAndItsEnd);
    return lines.join('\n');
}

} // namespace

class TestExample final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void convertsTheExamplePlant();
    void leavesTheRestOfTheExamplePlantAlone();
    void refusesTheLossyPlant();
    void losesWhatItSaidWithForce();
};

void TestExample::convertsTheExamplePlant()
{
    const TestProject project(u"waterworks"_s);
    copyFolder(examplePlant, project.dir());

    const CliResult result =
        CliRun().execute({u"update"_s, u"--project"_s, project.dir(), u"--all-shapes"_s});
    const TestProject outcome;
    keepTexts(result, project, outcome);
    keepFolders({u"scr"_s}, project, outcome);
    outcome.write(u"change-log.csv"_s, withPlaceholders(changeLogOf(project), project.dir()));
    const QByteArray differences =
        goldenDifferences(QStringLiteral(VANTREL_TEST_DATA_DIR "/example"), outcome.dir());
    QVERIFY2(differences.isEmpty(), differences.constData());
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::DoneWithErrors));
}

void TestExample::leavesTheRestOfTheExamplePlantAlone()
{
    const TestProject project(u"waterworks"_s);
    copyFolder(examplePlant, project.dir());
    // The screens become the backup; the change log and the history are what is new.
    QStringList expected = describeTree(examplePlant);
    expected.replaceInStrings(QRegularExpression(u"^scr/"_s), u"scr_bak/"_s);

    CliRun().execute({u"update"_s, u"--project"_s, project.dir(), u"--all-shapes"_s});
    QStringList left = describeTree(project.dir());
    left.erase(std::remove_if(left.begin(), left.end(),
                              [](const QString &entry) {
                                  return entry.startsWith("scr/"_L1) ||
                                         entry.startsWith(".vantrel.history/"_L1) ||
                                         entry.startsWith("log/Vantrel_<time>.csv"_L1);
                              }),
               left.end());
    expected.sort();
    QCOMPARE(left, expected);
}

void TestExample::refusesTheLossyPlant()
{
    const TestProject project(u"boiler house"_s);
    copyFolder(lossyPlant, project.dir());

    const CliResult result =
        CliRun().execute({u"update"_s, u"--project"_s, project.dir(), u"--all-shapes"_s});
    const TestProject outcome;
    outcome.write(u"obstacles.txt"_s, withSortedObstacles(result.errorOutput));
    const QByteArray differences =
        goldenDifferences(QStringLiteral(VANTREL_TEST_DATA_DIR "/cli/lossy/refused"), outcome.dir());
    QVERIFY2(differences.isEmpty(), differences.constData());
    QCOMPARE(result.output, QByteArray());
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::Refused));
    QCOMPARE(describeTree(project.dir()), describeTree(lossyPlant));
}

void TestExample::losesWhatItSaidWithForce()
{
    const TestProject project(u"boiler house"_s);
    copyFolder(lossyPlant, project.dir());

    CliResult result =
        CliRun().execute({u"update"_s, u"--project"_s, project.dir(), u"--all-shapes"_s, u"--force"_s});
    // Which obstacles there are is tested above.
    result.errorOutput = result.errorOutput.mid(result.errorOutput.indexOf("error: "));
    const TestProject outcome;
    keepTexts(result, project, outcome);
    keepFolders({u"scr"_s, u"scr_bak"_s}, project, outcome);
    const QByteArray differences =
        goldenDifferences(QStringLiteral(VANTREL_TEST_DATA_DIR "/cli/lossy/forced"), outcome.dir());
    QVERIFY2(differences.isEmpty(), differences.constData());
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::FilesMissing));
    QVERIFY(!project.exists(u"scr_temp"_s));
}

VANTREL_TEST(QCoreApplication, TestExample)
#include "tst_example.moc"
