// The command "update": what it prints, what it leaves, and when it does not start.
#include "CliRun.h"
#include "ExitCode.h"
#include "HeldFile.h"
#include "ProjectTree.h"
#include "RunHistory.h"
#include "SmallPlant.h"
#include "StageFile.h"
#include "Streams.h"
#include "TestSuite.h"

#include <QFile>
#include <QScopeGuard>
#include <QTest>

#include <algorithm>

#include <csignal>
#include <filesystem>
#include <optional>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int longestWait = 120'000;

/// A step that changes a small plant before a run.
using Preparation = void (*)(const TestProject &project);

QStringList updateOf(const TestProject &project, const QStringList &options = {u"--all-shapes"_s})
{
    return QStringList{u"update"_s, u"--project"_s, project.dir()} + options;
}

CliResult update(const TestProject &project, const QStringList &options = {u"--all-shapes"_s})
{
    return CliRun().execute(updateOf(project, options));
}

QByteArray totals(int files, int replaced, int notReplaced, int errors,
                  const QByteArray &changeLog = "<project>/log/Vantrel_<time>.csv")
{
    const QList<QByteArray> numbers{QByteArray::number(files), QByteArray::number(replaced),
                                    QByteArray::number(notReplaced), QByteArray::number(errors)};
    qsizetype width = 0;
    for (const QByteArray &number : numbers)
        width = std::max(width, number.size());
    return "Files         " + numbers.at(0).rightJustified(width) +   //
           "\nReplaced      " + numbers.at(1).rightJustified(width) + //
           "\nNot replaced  " + numbers.at(2).rightJustified(width) + //
           "\nErrors        " + numbers.at(3).rightJustified(width) + //
           "\nSeconds       <seconds>"
           "\nChange log    " +
           changeLog + '\n';
}

const QByteArray noChangeLog = "none: it could not be written, or nothing was reported";

/// The table of a run over the plant that SmallPlant::makeIn() makes, and what follows it.
QByteArray smallPlantReport(const QByteArray &changeLog = "<project>/log/Vantrel_<time>.csv")
{
    return "Status   Image File  Shape File  Image-Object  Shape-Object  Prefix\n"
           "REPLACE  scr/a.psc   pump.plb    Obj/Pump      Lib/Pump      Plant/Pump\n"
           "\n" +
           totals(1, 1, 0, 0, changeLog);
}

QByteArray refusal(const QByteArray &obstacle)
{
    return "Refused, nothing was touched: a run would lose or not convert the following.\n" + obstacle +
           "\n1 obstacle; --force runs all the same.\n";
}

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray changeLogOf(const TestProject &project)
{
    const QStringList logs = project.files(u"log"_s);
    return logs.size() == 1 ? project.read("log/"_L1 + logs.first()) : QByteArray("(not one change log)");
}

void setPermissions(const TestProject &project, const QString &relative, mode_t mode)
{
    QVERIFY(::chmod(qPrintable(project.path(relative)), mode) == 0);
}

void makePipe(const TestProject &project, const QString &relative)
{
    QVERIFY(::mkfifo(qPrintable(project.path(relative)), 0600) == 0);
}

} // namespace

Q_DECLARE_METATYPE(Preparation)

#define COMPARE_EXIT_CODE(result, code) QCOMPARE((result).exitCode, static_cast<int>(ExitCode::code))

class TestUpdate final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsOtherFilesWhereAsked();
    void putsACancelledRunAway();
    void refusesWhereNothingCouldBeKept();
    void refusesWhereOnlyTheHistoryHasAScreen();
    void replacesObjects();
    void reportsErrorsAndGoesOn();
    void writesTheChangeLogOfTheRun();
    void needsNoLogFolder();
    void writesNoChangeLogThroughALinkedFolder();
    void keepsTheScreensOfOneRunAsBackup();

    void refusesWhatARunWouldLose_data();
    void refusesWhatARunWouldLose();
    void refusesAFileInPlaceOfTheScreensFolder();
    void refusesWhatIsNoProject_data();
    void refusesWhatIsNoProject();
    void refusesWhatItMayNotRead_data();
    void refusesWhatItMayNotRead();
    void refusesWhereFoldersCannotBeMade_data();
    void refusesWhereFoldersCannotBeMade();
    void refusesUpperCaseWhereItHidesIcons();
    void countsSeveralObstacles();
    void runsAllTheSameWithForce();
    void tellsHintsOfOneKindInOneLine();
    void makesFoldersWithTheirParents();
    void keepsASecondRunAwayFromItsBeginning();

    void tellsThatCopyingBackFailed();
    void namesFilesThatAreMissing();
    void namesFilesThatCouldNotBeConverted();

    void choosesShapes_data();
    void choosesShapes();
    void refusesNamesThatNoObjectRefersTo_data();
    void refusesNamesThatNoObjectRefersTo();
    void judgesNoNamesWhereScreensCannotBeRead();
    void takesTheUsableShapes();
    void takesANamedShapeBesideTheUsableOnes();
    void takesAnySpellingOfTheProject_data();
    void takesAnySpellingOfTheProject();

    void isQuiet();
    void escapesControlCharacters();
    void colours_data();
    void colours();
    void coloursATerminal_data();
    void coloursATerminal();
    void coloursARefusal();
    void showsProgressAtATerminal();
    void clearsTheProgressForALogLine();
    void showsNoProgressWhenQuiet();

    void runsOnWithoutAReader_data();
    void runsOnWithoutAReader();
    void runsOnWithClosedStreams_data();
    void runsOnWithClosedStreams();

    void stopsAtASignal_data();
    void stopsAtASignal();
    void tellsWhereNoVersionIsLeft();
    void goesOnWhereASignalIsIgnored();
    void endsAtOnceAtASecondSignal();
    void stopsWhileItReads();
    void stopsBeforeTheFirstFile();
    void endsTheRunDespiteASignalAfterTheLastFile();
    void givesUpAReportThatNobodyReads();
};

// --- Done ---

void TestUpdate::replacesObjects()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr/b.psc"_s, SmallPlant::plainScreen());

    const CliResult result = update(project);
    QCOMPARE(withPlaceholders(result.output, project.dir()),
             QByteArray("Status      Image File  Shape File  Image-Object  Shape-Object  Prefix\n"
                        "REPLACE     scr/a.psc   pump.plb    Obj/Pump      Lib/Pump      Plant/Pump\n"
                        "NO REPLACE  scr/b.psc\n"
                        "\n") +
                 totals(2, 1, 1, 0));
    QCOMPARE(result.errorOutput, QByteArray());
    COMPARE_EXIT_CODE(result, Done);
    QCOMPARE(project.read(u"scr/a.psc"_s), SmallPlant::screenAfterUpdate());
    QCOMPARE(project.read(u"scr/b.psc"_s), SmallPlant::plainScreen());
    QCOMPARE(project.read(u"scr_bak/a.psc"_s), SmallPlant::screenWith("pump.plb"));
    QCOMPARE(project.files(u"scr"_s), QStringList({u"a.psc"_s, u"b.psc"_s}));
    QCOMPARE(project.files(u"scr_bak"_s), QStringList({u"a.psc"_s, u"b.psc"_s}));
    QVERIFY(!project.exists(u"scr_temp"_s));
}

void TestUpdate::reportsErrorsAndGoesOn()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr/0.psc"_s, SmallPlant::screenWith("gone.plb", "Fan"));

    CliRun run;
    const CliResult result = run.execute(updateOf(project));
    QCOMPARE(withPlaceholders(result.output, project.dir()),
             QByteArray("Status   Image File  Shape File  Image-Object  Shape-Object  Prefix      Error\n"
                        "ERROR    scr/0.psc   gone.plb    Obj/Fan                     Plant/Fan   Could not "
                        "open Shape File\n"
                        "REPLACE  scr/a.psc   pump.plb    Obj/Pump      Lib/Pump      Plant/Pump\n"
                        "\n") +
                 totals(2, 1, 0, 1));
    QCOMPARE(result.errorOutput, QByteArray("error: Could not open Shape File gone.plb\n"));
    COMPARE_EXIT_CODE(result, DoneWithErrors);
    QCOMPARE(project.read(u"scr/0.psc"_s), SmallPlant::screenWith("gone.plb", "Fan"));
    QCOMPARE(project.read(u"scr/a.psc"_s), SmallPlant::screenAfterUpdate());
    QVERIFY(bytesOf(run.logFile()).contains("Could not open Shape File gone.plb\n"));
}

void TestUpdate::writesTheChangeLogOfTheRun()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr/0.psc"_s, SmallPlant::screenWith("gone.plb", "Fan"));
    project.write(u"scr/b.psc"_s, SmallPlant::plainScreen());

    update(project, {u"--all-shapes"_s, u"--quiet"_s});
    QCOMPARE(withPlaceholders(changeLogOf(project), project.dir()),
             QByteArray("Status; Image File; Shape File; Image-Object; Replace by Shape-Object; "
                        "Uminitalisation; Error\n"
                        "ERROR;<project>/scr/0.psc;gone.plb;Fan;;Plant/Fan;Could not open Shape File\n"
                        "REPLACE;<project>/scr/a.psc;pump.plb;Pump;;Plant/Pump;\n"
                        "NO REPLACE;<project>/scr/b.psc;;;;;\n"));
}

void TestUpdate::needsNoLogFolder()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.remove(u"log"_s);

    const CliResult result = update(project);
    QCOMPARE(withPlaceholders(result.output, project.dir()), smallPlantReport(noChangeLog));
    QCOMPARE(result.errorOutput,
             "log: hint: there is no such folder, so that a run writes no change log; make it\n");
    COMPARE_EXIT_CODE(result, Done);
    QVERIFY(!project.exists(u"log"_s));
}

void TestUpdate::writesNoChangeLogThroughALinkedFolder()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.remove(u"log"_s);
    project.makeFolder(u"elsewhere"_s);
    project.link(u"elsewhere"_s, u"log"_s);

    const CliResult result = update(project);
    QCOMPARE(withPlaceholders(result.output, project.dir()), smallPlantReport(noChangeLog));
    QCOMPARE(result.errorOutput,
             "log: hint: it is a link, so that a run writes no change log; make a folder in its place\n");
    COMPARE_EXIT_CODE(result, Done);
    QCOMPARE(project.files(u"elsewhere"_s), QStringList());
}

void TestUpdate::keepsTheScreensOfOneRunAsBackup()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr_bak/a.psc"_s, "older");

    COMPARE_EXIT_CODE(update(project), Done);
    QCOMPARE(project.files(u"scr_bak"_s), QStringList{u"a.psc"_s});
    COMPARE_EXIT_CODE(update(project), Done);
    QCOMPARE(project.read(u"scr_bak/a.psc"_s), SmallPlant::screenAfterUpdate());
    QCOMPARE(project.read(u"scr/a.psc"_s), SmallPlant::screenAfterUpdate());
}

// --- Refused ---

namespace {

void row(const char *name, Preparation prepare, const QByteArray &obstacle)
{
    QTest::newRow(name) << prepare << obstacle;
}

void addFolderRows()
{
    const QByteArray leftOver = "scr_temp: a run that did not end has left it; old files in it would reach "
                                "\"scr\"; look whether \"scr\" is whole, then remove it";
    row(
        "left-over of a stopped run", [](const TestProject &project) { project.makeFolder(u"scr_temp"_s); },
        leftOver);
    row(
        "file in place of the temp folder",
        [](const TestProject &project) { project.write(u"scr_temp"_s, "no folder"); },
        "scr_temp: it is no folder, so that a run could not make one; move it away");
    row(
        "no screens", [](const TestProject &project) { project.remove(u"scr/a.psc"_s); },
        "scr: it holds no screen: a run would convert nothing, and take \"scr\" and the last backup away; "
        "put "
        "the screens into it");
    row(
        "screen that is in the backup only",
        [](const TestProject &project) { project.write(u"scr_bak/old.psc"_s, SmallPlant::plainScreen()); },
        "scr_bak/old.psc: this screen is not in \"scr\", and a run would set \"scr_bak\" aside; copy it to "
        "\"scr/old.psc\", or move it to a folder of your own");
}

void addFileRows()
{
    const QByteArray noImageFile = ": a run would take this file away: it is no image file; use "
                                   "--keep-others, or move it out of \"scr\"";
    row(
        "file that is no screen", [](const TestProject &project) { project.write(u"scr/notes.txt"_s, "x"); },
        "scr/notes.txt" + noImageFile);
    row(
        "file that is no screen, in a folder",
        [](const TestProject &project) { project.write(u"scr/hall/notes.txt"_s, "x"); },
        "scr/hall/notes.txt" + noImageFile);
    row(
        "suffix in upper case",
        [](const TestProject &project) { project.write(u"scr/B.PSC"_s, SmallPlant::plainScreen()); },
        "scr/B.PSC" + noImageFile);
    row(
        "pipe", [](const TestProject &project) { makePipe(project, u"scr/b.psc"_s); },
        "scr/b.psc" + noImageFile);
    row(
        "hidden file",
        [](const TestProject &project) { project.write(u"scr/.b.psc"_s, SmallPlant::plainScreen()); },
        "scr/.b.psc: a run would take this hidden file away; use --keep-others, or move it out of \"scr\"");
    row(
        "screen in a hidden folder",
        [](const TestProject &project) { project.write(u"scr/.old/b.psc"_s, SmallPlant::plainScreen()); },
        "scr/.old/b.psc" + noImageFile);
    row(
        "name with control characters",
        [](const TestProject &project) { project.write(u"scr/a\x1b[2J\nb.txt"_s, "x"); },
        "scr/a\\x1b[2J\\nb.txt" + noImageFile);
}

void addLinkRows()
{
    const QByteArray link = ": a run would replace this link by what it leads to, or lose it; move it out of "
                            "\"scr\", or replace it by its files";
    row(
        "link to a folder", [](const TestProject &project) { project.link(u"../mac"_s, u"scr/shapes"_s); },
        "scr/shapes" + link);
    row(
        "link to a screen",
        [](const TestProject &project) {
            project.write(u"kept/b.psc"_s, SmallPlant::plainScreen());
            project.link(u"../kept/b.psc"_s, u"scr/b.psc"_s);
        },
        "scr/b.psc" + link);
    row(
        "link to nothing", [](const TestProject &project) { project.link(u"gone.psc"_s, u"scr/b.psc"_s); },
        "scr/b.psc" + link);
}

void addScreenRows()
{
    row(
        "screen with too short a line",
        [](const TestProject &project) { project.write(u"scr/b.psc"_s, SmallPlant::invalidScreen()); },
        "scr/b.psc: Image File [line 2]: PSDV... not enough parameters (must be >= 12); mend the line, or "
        "move the file out of \"scr\"");
    row(
        "folder level without a screen",
        [](const TestProject &project) {
            project.write(u"scr/hall/cellar/b.psc"_s, SmallPlant::plainScreen());
        },
        "scr/hall/cellar/b.psc: its folder could not be made in \"scr_temp\", \"scr_bak\" and \"scr\": no "
        "screen comes before it in scr/hall; use --make-folders");
    row(
        "folder whose own screens sort behind its folders",
        [](const TestProject &project) {
            project.write(u"scr/hall/cellar/b.psc"_s, SmallPlant::plainScreen());
            project.write(u"scr/hall/z.psc"_s, SmallPlant::plainScreen());
        },
        "scr/hall/cellar/b.psc: its folder could not be made in \"scr_temp\", \"scr_bak\" and \"scr\": no "
        "screen comes before it in scr/hall; use --make-folders");
    row(
        "name that is not valid UTF-8",
        [](const TestProject &project) {
            const QByteArray path = QFile::encodeName(project.path(u"scr/b"_s)) + "\xff.psc";
            QVERIFY(::close(::creat(path.constData(), 0600)) == 0);
        },
        "scr/b\xEF\xBF\xBD.psc: its name is not valid UTF-8, so that a run would not see it; rename it");
}

} // namespace

void TestUpdate::refusesWhatARunWouldLose_data()
{
    QTest::addColumn<Preparation>("prepare");
    QTest::addColumn<QByteArray>("obstacle");
    addFolderRows();
    addFileRows();
    addLinkRows();
    addScreenRows();
}

void TestUpdate::refusesWhatARunWouldLose()
{
    QFETCH(const Preparation, prepare);
    QFETCH(const QByteArray, obstacle);
    const TestProject project;
    // The project itself could not remove a file whose name is not valid.
    const auto cleanUp = qScopeGuard(
        [&project] { std::filesystem::remove_all(QFile::encodeName(project.dir()).toStdString()); });
    SmallPlant::makeIn(project);
    prepare(project);
    const QStringList before = describeTree(project.dir());

    const CliResult result = update(project);
    QCOMPARE(result.errorOutput, refusal(obstacle));
    QCOMPARE(result.output, QByteArray());
    COMPARE_EXIT_CODE(result, Refused);
    QCOMPARE(describeTree(project.dir()), before);
}

void TestUpdate::refusesAFileInPlaceOfTheScreensFolder()
{
    const TestProject project;
    project.write(u"scr"_s, "no folder");

    const CliResult result = update(project);
    QVERIFY2(result.errorOutput.contains(
                 "\nscr: there is no such folder; choose a project directory, which holds \"scr\"\n"),
             result.errorOutput.constData());
    COMPARE_EXIT_CODE(result, Refused);
    QCOMPARE(project.read(u"scr"_s), QByteArray("no folder"));
}

void TestUpdate::refusesWhatIsNoProject_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::newRow("plainly") << QStringList();
    QTest::newRow("with force") << QStringList{u"--force"_s};
    QTest::newRow("as a dry run") << QStringList{u"--dry-run"_s, u"--force"_s};
}

/// There is nothing that a run could be forced over, and the last backup may be all that is left.
void TestUpdate::refusesWhatIsNoProject()
{
    QFETCH(const QStringList, options);
    const TestProject project;
    SmallPlant::makeIn(project);
    project.remove(u"scr"_s);
    // A hint about it would be beside the point.
    project.remove(u"log"_s);
    const QStringList before = describeTree(project.dir());
    const CliResult result = update(project, QStringList{u"--all-shapes"_s} + options);
    QCOMPARE(result.errorOutput,
             "Refused, nothing was touched: there is no such project.\n"
             "scr: there is no such folder; choose a project directory, which holds \"scr\"\n"
             "1 obstacle.\n");
    COMPARE_EXIT_CODE(result, Refused);
    QCOMPARE(describeTree(project.dir()), before);
}

void TestUpdate::refusesWhatItMayNotRead_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("obstacle");
    QTest::newRow("screen") << u"scr/b.psc"_s
                            << QByteArray("scr/b.psc: Could not open Image File; make it readable");
    QTest::newRow("folder") << u"scr/hall"_s
                            << QByteArray("scr: it could not be read whole: Permission denied; make every "
                                          "folder in it readable");
}

void TestUpdate::refusesWhatItMayNotRead()
{
    QFETCH(const QString, path);
    QFETCH(const QByteArray, obstacle);
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr/b.psc"_s, SmallPlant::plainScreen());
    project.makeFolder(u"scr/hall"_s);
    const QStringList before = describeTree(project.dir());

    setPermissions(project, path, 0);
    CliRun run;
    run.setPermissionsHold();
    const CliResult result = run.execute(updateOf(project));
    setPermissions(project, path, 0700);
    QCOMPARE(result.errorOutput, refusal(obstacle));
    QCOMPARE(result.output, QByteArray());
    COMPARE_EXIT_CODE(result, Refused);
    QCOMPARE(describeTree(project.dir()), before);
}

void TestUpdate::refusesWhereFoldersCannotBeMade_data()
{
    QTest::addColumn<Preparation>("prepare");
    const auto row = [](const char *name, Preparation prepare) { QTest::newRow(name) << prepare; };
    row("file in place of the backup folder",
        [](const TestProject &project) { project.write(u"scr_bak"_s, "no folder"); });
    row("link to nothing in place of the temp folder",
        [](const TestProject &project) { project.link(u"gone/for/ever"_s, u"scr_temp"_s); });
    row("project that may not be written",
        [](const TestProject &project) { setPermissions(project, u"."_s, 0500); });
    row("screens folder that may not be written",
        [](const TestProject &project) { setPermissions(project, u"scr"_s, 0500); });
    row("folder of screens that may not be written", [](const TestProject &project) {
        project.write(u"scr/hall/b.psc"_s, SmallPlant::plainScreen());
        setPermissions(project, u"scr/hall"_s, 0500);
    });
}

void TestUpdate::refusesWhereFoldersCannotBeMade()
{
    QFETCH(const Preparation, prepare);
    const TestProject project;
    SmallPlant::makeIn(project);
    prepare(project);
    const QStringList before = describeTree(project.dir());

    CliRun run;
    run.setPermissionsHold();
    const CliResult result = run.execute(updateOf(project));
    for (const QString &folder : {u"."_s, u"scr"_s, u"scr/hall"_s}) {
        if (project.exists(folder))
            setPermissions(project, folder, 0700);
    }
    COMPARE_EXIT_CODE(result, Refused);
    QCOMPARE(result.output, QByteArray());
    QCOMPARE(describeTree(project.dir()), before);
}

void TestUpdate::refusesUpperCaseWhereItHidesIcons()
{
    const TestProject project(u"Plant"_s);
    SmallPlant::makeIn(project);
    project.write(u"scr/b.psc"_s, SmallPlant::screenWith("lamp.plb", "Lamp"));
    project.write(u"mac/lamp.plb"_s, SmallPlant::shape() + "ID;2;Icon;State\nDIV;0;on;on.bmp\n");
    project.write(u"bmp/on.bmp"_s, "picture");
    const QStringList before = describeTree(project.dir());

    const CliResult result = update(project);
    COMPARE_EXIT_CODE(result, Refused);
    QVERIFY2(result.errorOutput.contains("upper-case letters, so that no icon is found: each one in "
                                         "\"lamp.plb\" would"),
             result.errorOutput.constData());
    QCOMPARE(describeTree(project.dir()), before);
    // A run for other shapes looks for no icon.
    COMPARE_EXIT_CODE(update(project, {u"--shape"_s, u"pump.plb"_s}), Done);
}

/// Copies would go to folders beside the project's own.
void TestUpdate::countsSeveralObstacles()
{
    const TestProject project(u"scripts/plant"_s);
    SmallPlant::makeIn(project);
    project.write(u"scr/notes.txt"_s, "x");
    const QStringList before = describeTree(project.dir());

    const CliResult result = update(project);
    QCOMPARE(withPlaceholders(result.errorOutput, project.dir()),
             QByteArray("Refused, nothing was touched: a run would lose or not convert the following.\n"
                        "<project>: the project's path holds \"/scr\", so that copies would go to other "
                        "folders; move or rename the project\n"
                        "scr/notes.txt: a run would take this file away: it is no image file; use "
                        "--keep-others, or move it out of "
                        "\"scr\"\n"
                        "2 obstacles; --force runs all the same.\n"));
    QCOMPARE(result.output, QByteArray());
    COMPARE_EXIT_CODE(result, Refused);
    QCOMPARE(describeTree(project.dir()), before);
}

/// What was refused is still told; what was said to be lost is lost, and lies in no backup.
void TestUpdate::runsAllTheSameWithForce()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr/notes.txt"_s, "x");

    const CliResult result = update(project, {u"--all-shapes"_s, u"--force"_s});
    QCOMPARE(withPlaceholders(result.output, project.dir()), smallPlantReport());
    QCOMPARE(result.errorOutput, QByteArray("scr/notes.txt: a run would take this file away: it is no image "
                                            "file; use --keep-others, or move it out of \"scr\"\n"));
    COMPARE_EXIT_CODE(result, Done);
    QCOMPARE(project.files(u"scr"_s), QStringList{u"a.psc"_s});
    QCOMPARE(project.files(u"scr_bak"_s), QStringList{u"a.psc"_s});
}

void TestUpdate::tellsHintsOfOneKindInOneLine()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.remove(u"log"_s);
    for (const QString &name : {u"b"_s, u"c"_s, u"d"_s})
        project.write(u"scr/%1.psc.bak"_s.arg(name), SmallPlant::plainScreen());

    const CliResult result = update(project);
    QCOMPARE(result.errorOutput,
             "log: hint: there is no such folder, so that a run writes no change log; make it\n"
             "scr/b.psc.bak and 2 more: hint: a file that does not end in \".psc\" is converted too; "
             "\"vantrel-cli check\" lists them\n");
    COMPARE_EXIT_CODE(result, Done);
    QCOMPARE(update(project, {u"--all-shapes"_s, u"--quiet"_s}).errorOutput, QByteArray());
}

void TestUpdate::makesFoldersWithTheirParents()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.remove(u"scr/a.psc"_s);
    project.write(u"scr/hall/cellar/a.psc"_s, SmallPlant::screenWith("pump.plb"));
    project.write(u"scr/hall/cellar/b.psc"_s, SmallPlant::plainScreen());

    COMPARE_EXIT_CODE(update(project), Refused);
    const CliResult result = update(project, {u"--all-shapes"_s, u"--make-folders"_s});
    QCOMPARE(
        withPlaceholders(result.output, project.dir()),
        QByteArray("Status      Image File             Shape File  Image-Object  Shape-Object  Prefix\n"
                   "REPLACE     scr/hall/cellar/a.psc  pump.plb    Obj/Pump      Lib/Pump      Plant/Pump\n"
                   "NO REPLACE  scr/hall/cellar/b.psc\n"
                   "\n") +
            totals(2, 1, 1, 0));
    QCOMPARE(result.errorOutput, QByteArray());
    COMPARE_EXIT_CODE(result, Done);
    const QStringList files{u"hall/cellar/a.psc"_s, u"hall/cellar/b.psc"_s};
    QCOMPARE(project.files(u"scr"_s), files);
    QCOMPARE(project.files(u"scr_bak"_s), files);
    QCOMPARE(project.read(u"scr/hall/cellar/a.psc"_s), SmallPlant::screenAfterUpdate());
    QVERIFY(!project.exists(u"scr_temp"_s));
}

/// The first one reads its screens and has made no folder yet.
void TestUpdate::keepsASecondRunAwayFromItsBeginning()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    HeldFile screen(project.path(u"scr/a.psc"_s));
    CliRun first;
    first.start(updateOf(project));
    QVERIFY(screen.waitForReader());
    QVERIFY(!project.exists(u"scr_temp"_s));

    const CliResult second = update(project, {u"--all-shapes"_s, u"--force"_s});
    COMPARE_EXIT_CODE(second, Refused);
    QVERIFY2(second.errorOutput.startsWith(
                 ".vantrel.lock: a run is under way: the project is in use by vantrel-cli, process "),
             second.errorOutput.constData());
    QCOMPARE(second.errorOutput.count('\n'), 1);
    QCOMPARE(second.output, QByteArray());

    screen.release();
    COMPARE_EXIT_CODE(first.finish(), Done);
    QCOMPARE(project.read(u"scr/a.psc"_s), SmallPlant::screenAfterUpdate());
    QVERIFY(!project.exists(u".vantrel.lock"_s));
}

// --- Copying back failed, or a file is missing ---

/// With no place for a backup, nor a history, the screens are left alone, and the converted ones are kept.
void TestUpdate::tellsThatCopyingBackFailed()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr_bak"_s, "no folder");

    const CliResult result = update(project, {u"--all-shapes"_s, u"--force"_s, u"--keep-runs"_s, u"0"_s});
    QCOMPARE(withPlaceholders(result.output, project.dir()), smallPlantReport());
    QVERIFY2(result.errorOutput.endsWith("alert: !!! Could not copy all files from \\scr_temp folder to "
                                         "\\scr. Copy them manually !!!\n"),
             result.errorOutput.constData());
    COMPARE_EXIT_CODE(result, FilesMissing);
    QCOMPARE(project.read(u"scr/a.psc"_s), SmallPlant::screenWith("pump.plb"));
    QCOMPARE(project.read(u"scr_temp/a.psc"_s), SmallPlant::screenAfterUpdate());
    QCOMPARE(project.read(u"scr_bak"_s), QByteArray("no folder"));
}

/// An unchanged screen whose folder cannot be made is reported like any other unchanged one.
void TestUpdate::namesFilesThatAreMissing()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr/hall/cellar/b.psc"_s, SmallPlant::plainScreen());

    const CliResult result = update(project, {u"--all-shapes"_s, u"--force"_s});
    QCOMPARE(
        withPlaceholders(result.output, project.dir()),
        QByteArray("Status      Image File             Shape File  Image-Object  Shape-Object  Prefix\n"
                   "REPLACE     scr/a.psc              pump.plb    Obj/Pump      Lib/Pump      Plant/Pump\n"
                   "NO REPLACE  scr/hall/cellar/b.psc\n"
                   "\n") +
            totals(2, 1, 1, 0));
    QCOMPARE(
        withPlaceholders(result.errorOutput, project.dir()),
        QByteArray("scr/hall/cellar/b.psc: its folder could not be made in \"scr_temp\", \"scr_bak\" and "
                   "\"scr\": no screen comes before it in scr/hall; use --make-folders\n"
                   "Missing: scr/hall/cellar/b.psc is not in \"scr\" after the run; its version from before "
                   "the run lies "
                   "in scr_bak/hall/cellar/b.psc.\n"));
    COMPARE_EXIT_CODE(result, FilesMissing);
    QCOMPARE(project.files(u"scr"_s), QStringList{u"a.psc"_s});
    QCOMPARE(project.read(u"scr_bak/hall/cellar/b.psc"_s), SmallPlant::plainScreen());
}

/// In the backup, a folder that begins like the one of the screens has another name.
void TestUpdate::namesFilesThatCouldNotBeConverted()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr/b.psc"_s, SmallPlant::invalidScreen());

    const CliResult result = update(project, {u"--all-shapes"_s, u"--force"_s});
    QCOMPARE(withPlaceholders(result.output, project.dir()),
             QByteArray("Status   Image File  Shape File  Image-Object  Shape-Object  Prefix      Error\n"
                        "REPLACE  scr/a.psc   pump.plb    Obj/Pump      Lib/Pump      Plant/Pump\n"
                        "ERROR    scr/b.psc                                                       Image File "
                        "[line 2]: PSDV... not enough parameters (must be >= 12)\n"
                        "\n") +
                 totals(2, 1, 0, 1));
    QCOMPARE(withPlaceholders(result.errorOutput, project.dir()),
             QByteArray("scr/b.psc: Image File [line 2]: PSDV... not enough parameters (must be >= 12); mend "
                        "the line, or move the file out of \"scr\"\n"
                        "error: Image File <project>/scr/b.psc [line 2]: PSDV... not enough parameters (must "
                        "be >= 12)\n"
                        "Missing: scr/b.psc is not in \"scr\" after the run; its version from before the run "
                        "lies in scr_bak/b.psc.\n"));
    COMPARE_EXIT_CODE(result, FilesMissing);
    QCOMPARE(project.files(u"scr"_s), QStringList{u"a.psc"_s});
    QCOMPARE(project.read(u"scr_bak/b.psc"_s), SmallPlant::invalidScreen());

    project.write(u"scr/scripts/c.psc"_s, SmallPlant::invalidScreen());
    const CliResult renamed = update(project, {u"--all-shapes"_s, u"--force"_s, u"--quiet"_s});
    COMPARE_EXIT_CODE(renamed, FilesMissing);
    QVERIFY2(renamed.errorOutput.endsWith("lies in scr_bak/scr_bakipts/c.psc.\n"),
             renamed.errorOutput.constData());
}

// --- What takes part ---

void TestUpdate::choosesShapes_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QByteArray>("list");
    QTest::addColumn<QStringList>("replaced");
    const auto row = [](const char *name, const QStringList &options, const QByteArray &list,
                        const QStringList &replaced) { QTest::newRow(name) << options << list << replaced; };
    const QStringList fromList{u"--shapes-from"_s, u"list"_s};

    row("one shape", {u"--shape"_s, u"fan.plb"_s}, {}, {u"fan"_s});
    row("in other letter case", {u"--shape"_s, u"FAN.Plb"_s}, {}, {u"fan"_s});
    row("several shapes", {u"--shape"_s, u"fan.plb"_s, u"--shape=pump.plb"_s}, {}, {u"fan"_s, u"pump"_s});
    row("one line", fromList, "pump.plb", {u"pump"_s});
    row("blanks, empty lines and CR LF", fromList, "\n  fan.plb\t\r\n\r\nVALVE.PLB \n",
        {u"fan"_s, u"valve"_s});
    row("list and name", {u"--shapes-from"_s, u"list"_s, u"--shape"_s, u"pump.plb"_s}, "fan.plb\n",
        {u"fan"_s, u"pump"_s});
    row("all shapes", {u"--all-shapes"_s}, {}, {u"fan"_s, u"pump"_s, u"valve"_s});
    row("all shapes and one of them", {u"--all-shapes"_s, u"--shape"_s, u"fan.plb"_s}, {},
        {u"fan"_s, u"pump"_s, u"valve"_s});
    row("comment lines", fromList, "# blowers\nfan.plb\n  # pump.plb\n#valve.plb", {u"fan"_s});
    // The screen's reference to "valve.lib" counts as one to "valve.plb".
    row("reference as it is compared", {u"--shape"_s, u"valve.plb"_s}, {}, {u"valve"_s});
}

void TestUpdate::choosesShapes()
{
    QFETCH(const QStringList, options);
    QFETCH(const QByteArray, list);
    QFETCH(const QStringList, replaced);
    const TestProject project;
    for (const QString &name : {u"fan"_s, u"pump"_s, u"valve"_s})
        project.write(u"mac/%1.plb"_s.arg(name), SmallPlant::shape());
    project.write(u"scr/fan.psc"_s, SmallPlant::screenWith("fan.plb"));
    project.write(u"scr/pump.psc"_s, SmallPlant::screenWith("pump.plb"));
    project.write(u"scr/valve.psc"_s, SmallPlant::screenWith("valve.lib"));
    project.write(u"list"_s, list);

    CliRun run;
    run.setWorkingFolder(project.dir());
    COMPARE_EXIT_CODE(run.execute(updateOf(project, options)), Done);
    QStringList changed;
    for (const QString &name : {u"fan"_s, u"pump"_s, u"valve"_s}) {
        if (project.read(u"scr/%1.psc"_s.arg(name)) == SmallPlant::screenAfterUpdate())
            changed += name;
    }
    QCOMPARE(changed, replaced);
}

void TestUpdate::refusesNamesThatNoObjectRefersTo_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QByteArray>("complaints");
    const auto row = [](const char *name, const QStringList &options, const QByteArrayList &complaints) {
        QByteArray lines;
        for (const QByteArray &complaint : complaints)
            lines += "vantrel-cli: " + complaint + "; see \"vantrel-cli update --help\"\n";
        QTest::newRow(name) << options << lines;
    };
    const QByteArray noObject = "no object refers to the shape ";
    const QByteArray seeNames = " (\"vantrel-cli shapes\" shows the names)";
    const QByteArray isPumps = noObject + "\"pumps.plb\", did you mean \"pump.plb\"?";
    row("typing error", {u"--shape"_s, u"pumps.plb"_s}, {isPumps});
    row("spelling of a reference", {u"--shape"_s, u"pumb.lib"_s},
        {noObject + "\"pumb.lib\", did you mean \"pump.plb\"?"});
    row("pattern", {u"--shape"_s, u"p*.plb"_s}, {noObject + "\"p*.plb\", did you mean \"pump.plb\"?"});
    row("beside a known one", {u"--shape"_s, u"pump.plb"_s, u"--shape"_s, u"agitator.plb"_s},
        {noObject + "\"agitator.plb\"" + seeNames});
    row("beside all", {u"--all-shapes"_s, u"--shape"_s, u"agitator.plb"_s},
        {noObject + "\"agitator.plb\"" + seeNames});
    row("several", {u"--shape"_s, u"x"_s, u"--shape"_s, u"pumps.plb"_s},
        {noObject + "\"x\"" + seeNames, isPumps});
    row("with force, before any obstacle", {u"--force"_s, u"--shape"_s, u"pumps.plb"_s}, {isPumps});
    row("as a dry run in JSON", {u"--dry-run"_s, u"--json"_s, u"--shape"_s, u"pumps.plb"_s}, {isPumps});

    QStringList many;
    QByteArrayList complaints;
    for (int number = 0; number < 12; ++number) {
        many += {u"--shape"_s, u"agitator%1"_s.arg(number)};
        if (number < 10)
            complaints.append(noObject + "\"agitator" + QByteArray::number(number) + '"' + seeNames);
    }
    row("many", many, complaints + QByteArrayList{"the same holds for 2 more of the names that were given"});
}

void TestUpdate::refusesNamesThatNoObjectRefersTo()
{
    QFETCH(const QStringList, options);
    QFETCH(const QByteArray, complaints);
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr/notes.txt"_s, "x");
    project.write(u"scr_bak/a.psc"_s, "older");
    const QStringList before = describeTree(project.dir());

    const CliResult result = update(project, options);
    QCOMPARE(result.errorOutput, complaints);
    QCOMPARE(result.output, QByteArray());
    COMPARE_EXIT_CODE(result, WrongUsage);
    QCOMPARE(describeTree(project.dir()), before);
}

/// The object that refers to the shape may be on such a screen.
void TestUpdate::judgesNoNamesWhereScreensCannotBeRead()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    setPermissions(project, u"scr/a.psc"_s, 0);
    CliRun run;
    run.setPermissionsHold();
    const CliResult result = run.execute(updateOf(project, {u"--shape"_s, u"pump.plb"_s}));
    COMPARE_EXIT_CODE(result, Refused);
    QCOMPARE(result.errorOutput, refusal("scr/a.psc: Could not open Image File; make it readable"));
}

namespace {

/// Screens with one object each, and their shapes: only "pump.plb" can be used.
void makeUnusableShapesIn(const TestProject &project)
{
    SmallPlant::makeIn(project);
    for (const char *name : {"empty.plb", "gone.plb", "invalid.plb", "lamp.plb", "x.cat.plb"})
        project.write(u"scr/%1.psc"_s.arg(QLatin1StringView(name)), SmallPlant::screenWith(name));
    project.write(u"mac/empty.plb"_s, "a header line\n");
    project.write(u"mac/invalid.plb"_s, "ID;1;Rect\nPSDV;1\n");
    project.write(u"mac/lamp.plb"_s,
                  SmallPlant::shape() + "ID;2;Icon;State\nDIV;0;on;on.bmp\nDIV;1;off;off.bmp\n");
    project.write(u"mac/x.cat.plb"_s, SmallPlant::shape());
    project.write(u"bmp/on.bmp"_s, "picture");
}

} // namespace

void TestUpdate::takesTheUsableShapes()
{
    const TestProject project;
    makeUnusableShapesIn(project);
    const CliResult result = update(project, {u"--usable-shapes"_s});
    QCOMPARE(
        result.errorOutput,
        "empty.plb: hint: this shape is left out: it holds no object; see \"vantrel-cli check\"\n"
        "gone.plb: hint: this shape is left out: it is missing in \"mac\" and \"mac/vlo\"; see \"vantrel-cli "
        "check\"\n"
        "invalid.plb: hint: this shape is left out: Shape File [line 2]: PSDV... not enough parameters (must "
        "be >= 13); see \"vantrel-cli check\"\n"
        "lamp.plb: hint: this shape is left out: Ikon off.bmp does not exist; see \"vantrel-cli check\"\n"
        "x.cat.plb: hint: this shape is left out: it is refused, since its path holds \".cat\"; see "
        "\"vantrel-cli check\"\n");
    COMPARE_EXIT_CODE(result, Done);
    QCOMPARE(project.read(u"scr/a.psc"_s), SmallPlant::screenAfterUpdate());
    for (const char *name : {"empty.plb", "gone.plb", "invalid.plb", "lamp.plb", "x.cat.plb"})
        QCOMPARE(project.read(u"scr/%1.psc"_s.arg(QLatin1StringView(name))), SmallPlant::screenWith(name));
}

void TestUpdate::takesANamedShapeBesideTheUsableOnes()
{
    const TestProject project;
    makeUnusableShapesIn(project);
    const CliResult result = update(project, {u"--usable-shapes"_s, u"--shape"_s, u"LAMP.plb"_s});
    COMPARE_EXIT_CODE(result, DoneWithErrors);
    QVERIFY2(!result.errorOutput.contains("lamp.plb: hint"), result.errorOutput.constData());
    QVERIFY2(result.output.contains("lamp.plb"), result.output.constData());
    QCOMPARE(project.read(u"scr/a.psc"_s), SmallPlant::screenAfterUpdate());
}

void TestUpdate::takesAnySpellingOfTheProject_data()
{
    QTest::addColumn<QString>("workingFolder");
    QTest::addColumn<QString>("spelling");
    QTest::newRow("relative") << u"."_s << u"plant"_s;
    QTest::newRow("working folder") << u"plant"_s << u"."_s;
    QTest::newRow("with dots") << u"plant/mac"_s << u"./../../plant/log/.."_s;
    QTest::newRow("slash at the end") << u"."_s << u"plant/"_s;
    QTest::newRow("doubled slashes") << u"."_s << u".//plant///"_s;
    QTest::newRow("absolute") << u"."_s << u"%1/plant"_s;
    QTest::newRow("absolute with dots") << u"."_s << u"%1/plant/./mac/../"_s;
}

/// All of them give the path that reports, messages and the change log show.
void TestUpdate::takesAnySpellingOfTheProject()
{
    QFETCH(const QString, workingFolder);
    QFETCH(const QString, spelling);
    const TestProject project;
    SmallPlant::makeIn(project);

    CliRun run;
    run.setWorkingFolder(project.beside(workingFolder));
    QString path = spelling;
    path.replace(u"%1"_s, project.beside(u"."_s));
    const CliResult result = run.execute({u"update"_s, u"--project"_s, path, u"--all-shapes"_s});
    QCOMPARE(withPlaceholders(result.output, project.dir()), smallPlantReport());
    QCOMPARE(result.errorOutput, QByteArray());
    COMPARE_EXIT_CODE(result, Done);
    QCOMPARE(project.read(u"scr/a.psc"_s), SmallPlant::screenAfterUpdate());
    QVERIFY(changeLogOf(project).contains("REPLACE;" + project.path(u"scr/a.psc"_s).toUtf8() + ';'));
}

// --- What is printed ---

/// Neither table nor summary; the log stays.
void TestUpdate::isQuiet()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr/b.psc"_s, SmallPlant::screenWith("gone.plb"));

    const CliResult result = update(project, {u"--all-shapes"_s, u"--quiet"_s});
    QCOMPARE(result.output, QByteArray());
    QCOMPARE(result.errorOutput, QByteArray("error: Could not open Shape File gone.plb\n"));
    COMPARE_EXIT_CODE(result, DoneWithErrors);
    QCOMPARE(project.read(u"scr/a.psc"_s), SmallPlant::screenAfterUpdate());
    QVERIFY(changeLogOf(project).contains("gone.plb"));
}

void TestUpdate::escapesControlCharacters()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.remove(u"scr/a.psc"_s);
    project.write(u"scr/a\n\x1b[2J.psc"_s, "ID;1;Rect;x\n"
                                           "LIB;go\x07ne.plb;1;Pl\tant;Ob\x85j\n"
                                           "PSDV;10;10;29;29;2;1;15;8;1;0;1;0\n");

    const CliResult result = update(project);
    QCOMPARE(withPlaceholders(result.output, project.dir()),
             QByteArray("Status  Image File          Shape File    Image-Object  Prefix   Error\n"
                        "ERROR   scr/a\\n\\x1b[2J.psc  go\\x07ne.plb  Ob\\x85j       Pl\\tant  Could not "
                        "open Shape File\n"
                        "\n") +
                 totals(1, 0, 0, 1));
    QCOMPARE(result.errorOutput, QByteArray("error: Could not open Shape File go\\x07ne.plb\n"));
}

void TestUpdate::colours_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("noColor");
    QTest::addColumn<bool>("isColoured");
    QTest::newRow("default, no terminal") << QStringList() << QString() << false;
    QTest::newRow("auto, no terminal") << QStringList{u"--color=auto"_s} << QString() << false;
    QTest::newRow("never") << QStringList{u"--color"_s, u"never"_s} << QString() << false;
    QTest::newRow("always") << QStringList{u"--color"_s, u"always"_s} << QString() << true;
    QTest::newRow("always, which outdoes NO_COLOR")
        << QStringList{u"--color"_s, u"always"_s} << u"1"_s << true;
}

void TestUpdate::colours()
{
    QFETCH(const QStringList, options);
    QFETCH(const QString, noColor);
    QFETCH(const bool, isColoured);
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr/b.psc"_s, SmallPlant::screenWith("gone.plb"));

    CliRun run;
    run.setVariable(u"NO_COLOR"_s, noColor);
    const CliResult result = run.execute(updateOf(project, QStringList{u"--all-shapes"_s} + options));
    const QByteArray bold = isColoured ? "\x1b[1m" : "";
    const QByteArray red = isColoured ? "\x1b[31m" : "";
    const QByteArray yellow = isColoured ? "\x1b[33m" : "";
    const QByteArray plain = isColoured ? "\x1b[0m" : "";
    QCOMPARE(withPlaceholders(result.output, project.dir()),
             bold + "Status   Image File  Shape File  Image-Object  Shape-Object  Prefix      Error" + plain +
                 "\n"
                 "REPLACE  scr/a.psc   pump.plb    Obj/Pump      Lib/Pump      Plant/Pump\n" +
                 red +
                 "ERROR    scr/b.psc   gone.plb    Obj/Pump                    Plant/Pump  Could not open "
                 "Shape File" +
                 plain + "\n\n" + totals(2, 1, 0, 1));
    QCOMPARE(result.errorOutput, yellow + "error" + plain + ": Could not open Shape File gone.plb\n");
}

void TestUpdate::coloursATerminal_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("variable");
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("isColoured");
    QTest::newRow("default") << QStringList() << u"TERM"_s << u"xterm"_s << true;
    QTest::newRow("auto") << QStringList{u"--color=auto"_s} << u"TERM"_s << u"xterm"_s << true;
    QTest::newRow("never") << QStringList{u"--color=never"_s} << u"TERM"_s << u"xterm"_s << false;
    QTest::newRow("NO_COLOR") << QStringList() << u"NO_COLOR"_s << u"1"_s << false;
    QTest::newRow("empty NO_COLOR") << QStringList() << u"NO_COLOR"_s << QString() << true;
    QTest::newRow("dumb terminal") << QStringList() << u"TERM"_s << u"dumb"_s << false;
}

/// Each stream is looked at by itself: here only the table goes to a terminal.
void TestUpdate::coloursATerminal()
{
    QFETCH(const QStringList, options);
    QFETCH(const QString, variable);
    QFETCH(const QString, value);
    QFETCH(const bool, isColoured);
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr/a.psc"_s, SmallPlant::screenWith("gone.plb"));

    CliRun run;
    run.setVariable(variable, value);
    Terminal terminal(80);
    run.setOutput(terminal.writeEnd());
    run.start(updateOf(project, QStringList{u"--all-shapes"_s} + options));
    terminal.closeWriteEnd();
    const QByteArray shown = terminal.readToEnd();
    const CliResult result = run.finish();
    QCOMPARE(shown.startsWith("\x1b[1mStatus"), isColoured);
    QCOMPARE(shown.contains("\x1b[31mERROR"), isColoured);
    QCOMPARE(shown.contains('\x1b'), isColoured);
    QCOMPARE(result.errorOutput, QByteArray("error: Could not open Shape File gone.plb\n"));
}

void TestUpdate::coloursARefusal()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr/notes.txt"_s, "x");
    const CliResult result = update(project, {u"--all-shapes"_s, u"--color=always"_s});
    QVERIFY2(result.errorOutput.startsWith("\x1b[31mRefused, nothing was touched: a run would lose or not "
                                           "convert the following.\x1b[0m\nscr/notes.txt: "),
             result.errorOutput.constData());
}

/// The bar with the file's path, cut to the terminal's width, then an empty line again.
void TestUpdate::showsProgressAtATerminal()
{
    const TestProject project;
    SmallPlant::makeIn(project);

    CliRun run;
    Terminal terminal(50);
    run.setErrorOutput(terminal.writeEnd());
    run.start(updateOf(project));
    terminal.closeWriteEnd();
    const QByteArray shown = terminal.readToEnd();
    const CliResult result = run.finish();
    const QByteArray line = "[........................] 0/1 " + project.path(u"scr/a.psc"_s).toUtf8();
    QCOMPARE(shown, "\r\x1b[K" + line.left(49) + "\r\x1b[K");
    QCOMPARE(withPlaceholders(result.output, project.dir()), smallPlantReport());
    COMPARE_EXIT_CODE(result, Done);
}

/// What is still to be read when lines that begin anew have erased what stood before them.
QByteArray leftAtATerminal(const QByteArray &shown)
{
    static const QByteArray erasing = "\r\x1b[K"_ba;
    QByteArrayList lines = shown.split('\n');
    for (QByteArray &line : lines) {
        if (const qsizetype erased = line.lastIndexOf(erasing); erased >= 0)
            line.remove(0, erased + erasing.size());
        line.replace('\r', QByteArray()); // the terminal's own, before a line's end
    }
    return lines.join('\n');
}

void TestUpdate::clearsTheProgressForALogLine()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr/0.psc"_s, SmallPlant::screenWith("gone.plb"));

    CliRun run;
    Terminal terminal(400);
    run.setErrorOutput(terminal.writeEnd());
    run.start(updateOf(project, {u"--all-shapes"_s, u"--color=never"_s}));
    terminal.closeWriteEnd();
    const QByteArray shown = terminal.readToEnd();
    COMPARE_EXIT_CODE(run.finish(), DoneWithErrors);
    QVERIFY2(shown.contains("] 0/2 "), shown);
    QVERIFY2(shown.contains("\r\x1b[Kerror: "), shown);
    QCOMPARE(leftAtATerminal(shown), "error: Could not open Shape File gone.plb\n"_ba);
}

void TestUpdate::showsNoProgressWhenQuiet()
{
    const TestProject project;
    SmallPlant::makeIn(project);

    CliRun run;
    Terminal terminal(80);
    run.setErrorOutput(terminal.writeEnd());
    run.start(updateOf(project, {u"--all-shapes"_s, u"--quiet"_s}));
    terminal.closeWriteEnd();
    QCOMPARE(terminal.readToEnd(), QByteArray());
    COMPARE_EXIT_CODE(run.finish(), Done);
}

// --- Streams that nobody reads ---

void TestUpdate::runsOnWithoutAReader_data()
{
    QTest::addColumn<bool>("isOutputBroken");
    QTest::addColumn<bool>("isErrorOutputBroken");
    QTest::newRow("of the report") << true << false;
    QTest::newRow("of the log") << false << true;
    QTest::newRow("of either") << true << true;
}

/// Far more is printed than a pipe or a buffer holds.
void TestUpdate::runsOnWithoutAReader()
{
    QFETCH(const bool, isOutputBroken);
    QFETCH(const bool, isErrorOutputBroken);
    constexpr int screens = 200;
    const TestProject project;
    SmallPlant::makeIn(project);
    for (int number = 0; number < screens; ++number)
        project.write(u"scr/b%1.psc"_s.arg(number), SmallPlant::screenWith("gone.plb"));

    CliRun run;
    Pipe pipe;
    pipe.closeReadEnd();
    if (isOutputBroken)
        run.setOutput(pipe.writeEnd());
    if (isErrorOutputBroken)
        run.setErrorOutput(pipe.writeEnd());
    const CliResult result = run.execute(updateOf(project));
    COMPARE_EXIT_CODE(result, DoneWithErrors);
    QCOMPARE(result.output.isEmpty(), isOutputBroken);
    QCOMPARE(result.errorOutput.isEmpty(), isErrorOutputBroken);
    QCOMPARE(project.files(u"scr"_s).size(), screens + 1);
    QCOMPARE(project.read(u"scr/a.psc"_s), SmallPlant::screenAfterUpdate());
    QVERIFY(!project.exists(u"scr_temp"_s));
    QCOMPARE(changeLogOf(project).count('\n'), screens + 2);
}

void TestUpdate::runsOnWithClosedStreams_data()
{
    QTest::addColumn<bool>("isInputClosed");
    QTest::addColumn<bool>("isOutputClosed");
    QTest::addColumn<bool>("isErrorOutputClosed");
    QTest::newRow("report") << false << true << false;
    QTest::newRow("log") << false << false << true;
    QTest::newRow("report and log") << false << true << true;
    QTest::newRow("all three") << true << true << true;
}

/// No file that the program opens may take the place of a stream that it was not given.
void TestUpdate::runsOnWithClosedStreams()
{
    QFETCH(const bool, isInputClosed);
    QFETCH(const bool, isOutputClosed);
    QFETCH(const bool, isErrorOutputClosed);
    constexpr int screens = 200;
    const TestProject project;
    SmallPlant::makeIn(project);
    for (int number = 0; number < screens; ++number)
        project.write(u"scr/%1.psc"_s.arg(number), SmallPlant::screenWith("gone.plb"));

    CliRun run;
    if (isInputClosed)
        run.setInputClosed();
    if (isOutputClosed)
        run.setOutput(CliRun::closedStream);
    if (isErrorOutputClosed)
        run.setErrorOutput(CliRun::closedStream);
    const CliResult result = run.execute(updateOf(project));
    COMPARE_EXIT_CODE(result, DoneWithErrors);
    QCOMPARE(project.read(u"scr/a.psc"_s), SmallPlant::screenAfterUpdate());
    QCOMPARE(project.read(u"scr/0.psc"_s), SmallPlant::screenWith("gone.plb"));
    QCOMPARE(project.files(u"scr"_s).size(), screens + 1);
    QVERIFY(!project.exists(u"scr_temp"_s));
    QCOMPARE(changeLogOf(project).count('\n'), screens + 2);
}

// --- Signals ---

namespace {

/// A plant whose run waits, within its second screen, until the test delivers a shape.
class WaitingPlant final
{
public:
    WaitingPlant()
    {
        SmallPlant::makeIn(m_project);
        m_project.write(u"scr/b.psc"_s, SmallPlant::screenWith("slow.plb", "Fan"));
        m_project.write(u"scr/c.psc"_s, SmallPlant::screenWith("pump.plb", "Tank"));
        m_project.write(u"mac/slow.plb"_s, SmallPlant::shape());
        m_shape.emplace(m_project.path(u"mac/slow.plb"_s));
    }

    const TestProject &project() const { return m_project; }

    /// Returns once the run has come to the shape; false where it does not.
    bool waitForRun() const { return m_shape->waitForReader(); }
    void deliverShape() { m_shape->release(); }

private:
    TestProject m_project;
    std::optional<HeldFile> m_shape;
};

const QByteArray reportOfTwoScreens =
    "Status   Image File  Shape File  Image-Object  Shape-Object  Prefix\n"
    "REPLACE  scr/a.psc   pump.plb    Obj/Pump      Lib/Pump      Plant/Pump\n"
    "REPLACE  scr/b.psc   slow.plb    Obj/Fan       Lib/Pump      Plant/Fan\n"
    "\n";

} // namespace

void TestUpdate::stopsAtASignal_data()
{
    QTest::addColumn<int>("signal");
    QTest::addColumn<int>("exitCode");
    QTest::newRow("SIGINT") << SIGINT << 130;
    QTest::newRow("SIGTERM") << SIGTERM << 143;
    QTest::newRow("SIGHUP") << SIGHUP << 129;
}

/// The screen under way is finished, the next one is not begun.
void TestUpdate::stopsAtASignal()
{
    QFETCH(const int, signal);
    QFETCH(const int, exitCode);
    WaitingPlant plant;
    const TestProject &project = plant.project();
    const QStringList screens = describeTree(project.path(u"scr"_s));

    CliRun run;
    run.start(updateOf(project));
    QVERIFY(plant.waitForRun());
    QVERIFY(run.sendSignal(signal));
    plant.deliverShape();
    const CliResult result = run.finish();
    QCOMPARE(withPlaceholders(result.output, project.dir()), reportOfTwoScreens + totals(3, 2, 0, 0));
    QCOMPARE(
        result.errorOutput,
        QByteArray("Stopped. \"scr\" is untouched; \"scr_temp\" keeps the files converted so far, and the "
                   "next run puts it into the history.\n"));
    QCOMPARE(result.exitCode, exitCode);
    QCOMPARE(describeTree(project.path(u"scr"_s)), screens);
    QCOMPARE(project.files(u"scr_temp"_s), QStringList({u"a.psc"_s, u"b.psc"_s}));
    QVERIFY(!project.exists(u"scr_bak"_s));
}

/// Somebody removes a screen while the run is busy with the one before it.
void TestUpdate::tellsWhereNoVersionIsLeft()
{
    WaitingPlant plant;
    CliRun run;
    run.start(updateOf(plant.project(), {u"--all-shapes"_s, u"--quiet"_s}));
    QVERIFY(plant.waitForRun());
    plant.project().remove(u"scr/c.psc"_s);
    plant.deliverShape();
    const CliResult result = run.finish();
    COMPARE_EXIT_CODE(result, FilesMissing);
    QVERIFY2(result.errorOutput.endsWith(
                 "\nMissing: scr/c.psc is not in \"scr\" after the run; nor is its version "
                 "from before the run in \"scr_bak\".\n"),
             result.errorOutput.constData());
}

void TestUpdate::goesOnWhereASignalIsIgnored()
{
    WaitingPlant plant;
    CliRun run;
    run.setSignalIgnored(SIGHUP);
    run.start(updateOf(plant.project()));
    QVERIFY(plant.waitForRun());
    run.sendSignalAtOnce(SIGHUP);
    plant.deliverShape();
    COMPARE_EXIT_CODE(run.finish(), Done);
}

/// What it has left is told to the next command, as after any other death.
void TestUpdate::endsAtOnceAtASecondSignal()
{
    WaitingPlant plant;
    const QStringList screens = describeTree(plant.project().path(u"scr"_s));
    CliRun run;
    run.start(updateOf(plant.project()));
    QVERIFY(plant.waitForRun());
    QVERIFY(run.sendSignal(SIGHUP));
    run.sendSignalAtOnce(SIGINT);
    QCOMPARE(run.finish().exitCode, CliResult::noExitCode);
    plant.deliverShape();
    QCOMPARE(describeTree(plant.project().path(u"scr"_s)), screens);
    COMPARE_EXIT_CODE(CliRun().execute(updateOf(plant.project())), FilesMissing);
}

/// While the first screen is read, before the run.
void TestUpdate::stopsWhileItReads()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    for (int number = 0; number < 100; ++number)
        project.write(u"scr/b%1.psc"_s.arg(number), SmallPlant::plainScreen());
    const QStringList before = describeTree(project.dir());
    HeldFile screen(project.path(u"scr/a.psc"_s));
    CliRun run;
    run.start(updateOf(project));
    QVERIFY(screen.waitForReader());
    run.sendSignalAtOnce(SIGTERM);
    screen.release();
    const CliResult result = run.finish();
    QCOMPARE(result.errorOutput, QByteArray("Stopped. Nothing was changed.\n"));
    COMPARE_EXIT_CODE(result, StoppedByTermination);
    QCOMPARE(describeTree(project.dir()), before);
}

/// The program has told so many obstacles that it waits for a reader when the signal comes.
void TestUpdate::stopsBeforeTheFirstFile()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    for (int number = 0; number < Pipe::capacity / 10; ++number)
        project.write(u"scr/%1.txt"_s.arg(number), "x");
    const QStringList before = describeTree(project.dir());

    CliRun run;
    Pipe pipe;
    run.setErrorOutput(pipe.writeEnd());
    run.start(updateOf(project, {u"--all-shapes"_s, u"--force"_s}));
    pipe.closeWriteEnd();
    QVERIFY(QTest::qWaitFor([&pipe] { return pipe.hasArrivals(); }, longestWait));
    run.sendSignalAtOnce(SIGTERM);
    pipe.readToEnd();
    const CliResult result = run.finish();
    COMPARE_EXIT_CODE(result, StoppedByTermination);
    QCOMPARE(result.output, QByteArray());
    QCOMPARE(describeTree(project.dir()), before);
}

/// The screens are converted and copied back while the program waits for a reader of its log.
void TestUpdate::endsTheRunDespiteASignalAfterTheLastFile()
{
    constexpr int screens = 50;
    const QByteArray shapeFile = "gone" + QByteArray(qsizetype{2} * Pipe::capacity / screens, 'e') + ".plb";
    const TestProject project;
    SmallPlant::makeIn(project);
    for (int number = 0; number < screens; ++number)
        project.write(u"scr/%1.psc"_s.arg(number), SmallPlant::screenWith(shapeFile));

    CliRun run;
    Pipe pipe;
    run.setErrorOutput(pipe.writeEnd());
    run.start(updateOf(project));
    pipe.closeWriteEnd();
    const auto isCopiedBack = [&project] {
        return project.exists(u"scr_bak"_s) && !project.exists(u"scr_temp"_s);
    };
    QVERIFY(QTest::qWaitFor(isCopiedBack, longestWait));
    run.sendSignalAtOnce(SIGTERM);
    const QByteArray log = pipe.readToEnd();
    const CliResult result = run.finish();
    // What nobody reads in time is given up.
    const QByteArray whole =
        QByteArray("error: Could not open Shape File " + shapeFile + '\n').repeated(screens);
    QVERIFY2(whole.startsWith(log), log.constData());
    QVERIFY2(withPlaceholders(result.output, project.dir()).endsWith(totals(screens + 1, 1, 0, screens)),
             result.output.constData());
    COMPARE_EXIT_CODE(result, DoneWithErrors);
    QCOMPARE(project.read(u"scr/a.psc"_s), SmallPlant::screenAfterUpdate());
    QCOMPARE(project.files(u"scr"_s).size(), screens + 1);
}

/// The run is over and the program waits for a reader of its report.
void TestUpdate::givesUpAReportThatNobodyReads()
{
    const TestProject project;
    SmallPlant::makeIn(project);

    CliRun run;
    Pipe pipe;
    pipe.fill();
    run.setOutput(pipe.writeEnd());
    run.start(updateOf(project));
    pipe.closeWriteEnd();
    QVERIFY(run.waitUntilOutputBlocks());
    QVERIFY(!project.exists(u"scr_temp"_s));
    run.sendSignalAtOnce(SIGTERM);
    const CliResult result = run.finish();
    COMPARE_EXIT_CODE(result, StoppedByTermination);
    QCOMPARE(result.errorOutput, QByteArray());
    QCOMPARE(pipe.readToEnd().size(), Pipe::capacity);
    QCOMPARE(project.read(u"scr/a.psc"_s), SmallPlant::screenAfterUpdate());
    QVERIFY(!project.exists(u".vantrel.lock"_s));
}

void TestUpdate::keepsOtherFilesWhereAsked()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr/hall/notes.txt"_s, "notes");
    project.write(u"scr/.draft"_s, "draft");
    project.write(u"scr/bad.psc"_s, SmallPlant::invalidScreen());
    COMPARE_EXIT_CODE(update(project, {u"--all-shapes"_s}), Refused);
    // The broken screen is still reported, but nothing is lost and nothing has to be forced.
    COMPARE_EXIT_CODE(update(project, {u"--all-shapes"_s, u"--keep-others"_s}), DoneWithErrors);
    QCOMPARE(project.read(u"scr/a.psc"_s), SmallPlant::screenAfterUpdate());
    QCOMPARE(project.read(u"scr/hall/notes.txt"_s), "notes");
    QCOMPARE(project.read(u"scr/.draft"_s), "draft");
    QCOMPARE(project.read(u"scr/bad.psc"_s), SmallPlant::invalidScreen());
}

/// check, recover and update say the same about what it has left.
void TestUpdate::putsACancelledRunAway()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr_temp/gone.psc"_s, SmallPlant::plainScreen());
    RunFacts facts;
    facts.program = u"a test"_s;
    facts.started = QDateTime::currentDateTime();
    StageFile(project.dir(), facts)
        .enter({.stage = RunStage::Cancelled, .unsaved = {}, .endedAt = RunStage::Cancelled});

    const CliResult checked = CliRun().execute({u"check"_s, u"--project"_s, project.dir()});
    COMPARE_EXIT_CODE(checked, DoneWithFindings);
    QVERIFY2(checked.output.startsWith("scr_temp: hint: the last run was cancelled"), checked.output);
    const CliResult recovered = CliRun().execute({u"recover"_s, u"--project"_s, project.dir()});
    COMPARE_EXIT_CODE(recovered, Done);
    QVERIFY2(recovered.errorOutput.startsWith("The last run was cancelled: \"scr\" is untouched."),
             recovered.errorOutput);

    const CliResult updated = update(project, {u"--all-shapes"_s});
    COMPARE_EXIT_CODE(updated, Done);
    QVERIFY2(updated.errorOutput.contains("the last run was cancelled"), updated.errorOutput);
    QCOMPARE(project.files(u"scr"_s), QStringList{u"a.psc"_s});
    QCOMPARE(project.keptFiles(), QStringList{u"scr_temp/gone.psc"_s});
    QVERIFY(!StageFile::exists(project.dir()));
}

void TestUpdate::refusesWhereNothingCouldBeKept()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u".vantrel.history"_s, "in the way");
    const CliResult refused = update(project, {u"--all-shapes"_s});
    COMPARE_EXIT_CODE(refused, Refused);
    QVERIFY2(refused.errorOutput.contains(".vantrel.history: it is no folder, so that a run would remove"),
             refused.errorOutput);
    COMPARE_EXIT_CODE(update(project, {u"--all-shapes"_s, u"--keep-runs"_s, u"0"_s}), Done);
    COMPARE_EXIT_CODE(update(project, {u"--all-shapes"_s, u"--force"_s}), DoneWithErrors);
}

void TestUpdate::refusesWhereOnlyTheHistoryHasAScreen()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr/script/bad.psc"_s, SmallPlant::invalidScreen());
    const QStringList forced{u"--all-shapes"_s, u"--force"_s, u"--make-folders"_s};
    COMPARE_EXIT_CODE(update(project, forced), FilesMissing);
    COMPARE_EXIT_CODE(update(project, forced), Done);
    // It is in the entry of the second run now.
    const CliResult refused = update(project, {u"--all-shapes"_s});
    COMPARE_EXIT_CODE(refused, Refused);
    const QString kept =
        u".vantrel.history/%1/scr_bak/scr_bakipt/bad.psc"_s.arg(RunHistory(project.dir()).newestRun());
    QVERIFY2(refused.errorOutput.contains(kept.toUtf8() + ": this screen is not in \"scr\""),
             refused.errorOutput);
    QVERIFY2(refused.errorOutput.contains("copy it to \"scr/script/bad.psc\""), refused.errorOutput);
    QCOMPARE(project.read(kept), SmallPlant::invalidScreen());
}

VANTREL_TEST(QCoreApplication, TestUpdate)
#include "tst_update.moc"
