// The command "check": every kind of finding, with its file, line and advice.
#include "CliRun.h"
#include "ExitCode.h"
#include "HeldFile.h"
#include "Limits.h"
#include "ProjectLock.h"
#include "ProjectTree.h"
#include "SmallPlant.h"
#include "TestSuite.h"

#include <QFile>
#include <QProcess>
#include <QSysInfo>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// A step that changes a small plant before it is checked.
using Preparation = void (*)(const TestProject &project);

CliResult check(const TestProject &project, const QStringList &options = {})
{
    return CliRun().execute(QStringList{u"check"_s, u"--project"_s, project.dir()} + options);
}

QByteArray totals(int files, int shapes, int obstacles, int hints)
{
    return "Files         " + QByteArray::number(files) +       //
           "\nShapes        " + QByteArray::number(shapes) +    //
           "\nObstacles     " + QByteArray::number(obstacles) + //
           "\nHints         " + QByteArray::number(hints) + '\n';
}

QByteArray shapeWithIcons(const QByteArray &bitmapLines)
{
    return "a header line\nID;1;Icon;State\n"
           "LIB;pump.plb;2;Lib/Pump;Lib/Pump\n"
           "PSDV;0;0;19;19;2;1;7;0;2;0;0;0\n" +
           bitmapLines;
}

/// A screen with an object that stands in two places: the part with its reference comes last.
QByteArray scatteredScreen()
{
    return SmallPlant::screenWith("pump.plb") +
           "ID;2;Rect;Frame\nPSDV;0;0;99;49;2;1;15;8;1;0;0;0\n"
           "ID;3;Rect;Part\nLIB;venturi.plb;1;Plant/Part;Obj/Part\nPSDV;10;10;29;29;2;1;15;8;1;0;1;0\n"
           "ID;4;Rect;End\nPSDV;0;0;99;49;2;1;15;8;1;0;0;0\n";
}

ExitCode exitCodeFor(const QByteArray &findings)
{
    if (findings.contains("a run was interrupted"))
        return ExitCode::FilesMissing;
    return findings.contains(": obstacle: ") ? ExitCode::Refused : ExitCode::DoneWithFindings;
}

void addRow(const char *name, const QString &folder, Preparation prepare, const QByteArray &findings,
            const QByteArray &end)
{
    QTest::newRow(name) << folder << prepare << findings << end;
}

void addRow(const char *name, Preparation prepare, const QByteArray &findings, const QByteArray &end)
{
    addRow(name, u"plant"_s, prepare, findings, end);
}

void addPathRows()
{
    addRow(
        "no image folder", [](const TestProject &project) { project.remove(u"scr"_s); },
        "scr: obstacle: there is no such folder; choose a project directory, which holds \"scr\"\n",
        totals(0, 0, 1, 0));
    addRow(
        "an empty image folder", [](const TestProject &project) { project.remove(u"scr/a.psc"_s); },
        "scr: obstacle: it holds no screen: a run would convert nothing, and take \"scr\" and the last "
        "backup "
        "away; put the screens into it\n",
        totals(0, 0, 1, 0));
    addRow(
        "/scr in the path", u"scripts/plant"_s, [](const TestProject &) {},
        "<project>: obstacle: the project's path holds \"/scr\", so that copies would go to other folders; "
        "move or rename the project\n",
        totals(1, 1, 1, 0));
    addRow(
        ".psc in the path", u"old.psc/plant"_s,
        [](const TestProject &project) { project.write(u"scr/a.psc"_s, SmallPlant::screenWith("pump.plb")); },
        "<project>: hint: the project's path holds \".psc\", so that every file in \"scr\" counts as an "
        "image "
        "file; move or rename the project\n",
        totals(1, 1, 0, 1));
    addRow(
        ".cat in the path", u"parts.cat/plant"_s,
        [](const TestProject &project) { project.write(u"scr/a.psc"_s, SmallPlant::plainScreen()); },
        "<project>: hint: the project's path holds \".cat\", so that every shape file is refused as a "
        "catalogue; move or rename the project\n",
        totals(1, 0, 0, 1));
    addRow(
        "/bmp in the path", u"bmps/plant"_s, [](const TestProject &) {},
        "<project>: hint: the project's path holds \"/bmp\", so that icons are looked for in all folders of "
        "the project; move or rename the project\n",
        totals(1, 1, 0, 1));
    addRow(
        "a temp folder from before",
        [](const TestProject &project) { project.write(u"scr_temp/old.psc"_s, "old"); },
        "scr_temp: obstacle: a run that did not end has left it; old files in it would reach \"scr\"; look "
        "whether \"scr\" is whole, then remove it\n",
        totals(1, 1, 1, 0));
    addRow(
        "a file in place of the backup folder",
        [](const TestProject &project) { project.write(u"scr_bak"_s, "no folder"); },
        "scr_bak: obstacle: it is no folder, so that a run could not make one; move it away\n",
        totals(1, 1, 1, 0));
    addRow(
        "no log folder", [](const TestProject &project) { project.remove(u"log"_s); },
        "log: hint: there is no such folder, so that a run writes no change log; make it\n",
        totals(1, 1, 0, 1));
}

/// Shapes with icons that are there, but for a run's way of looking for them.
void addUpperCaseRows()
{
    const auto writeShapes = [](const TestProject &project) {
        project.write(u"bmp/on.bmp"_s, "picture");
        for (const char *name : {"fan", "pump", "tank", "valve"}) {
            project.write(u"scr/%1.psc"_s.arg(QLatin1StringView(name)),
                          SmallPlant::screenWith(name + QByteArray(".plb")));
            project.write(u"mac/%1.plb"_s.arg(QLatin1StringView(name)), shapeWithIcons("DIV;0;on;on.bmp\n"));
        }
    };
    const QByteArray missing =
        ".plb:5: hint: Ikon on.bmp does not exist; put it into a folder \"bmp\" of the "
        "project, whose path is all lower case\n";
    addRow("upper-case letters in the path", u"Plant"_s, writeShapes,
           "<project>: obstacle: the project's path holds upper-case letters, so that no icon is found: each "
           "one in \"fan.plb\", \"pump.plb\", \"tank.plb\" and 1 more would leave the old lines of an object "
           "beside the new ones; move or rename the project\n"
           "mac/fan" +
               missing + "mac/pump" + missing + "mac/tank" + missing + "mac/valve" + missing,
           totals(5, 4, 1, 4));
}

void addBackupRows()
{
    const QByteArray aside =
        ": obstacle: this screen is not in \"scr\", and a run would set \"scr_bak\" aside; ";
    addRow(
        "screens that are in the backup only",
        [](const TestProject &project) {
            for (const char *folder : {"scr", "scr_bak"})
                project.write(QLatin1StringView(folder) + "/b.psc"_L1, SmallPlant::plainScreen());
            project.write(u"scr/scripts/c.psc"_s, SmallPlant::plainScreen());
            project.write(u"scr_bak/scr_bakipts/c.psc"_s, SmallPlant::plainScreen());
            project.write(u"scr_bak/scr_bakipts/d.psc"_s, SmallPlant::plainScreen());
            project.write(u"scr_bak/gone.psc"_s, SmallPlant::plainScreen());
            project.write(u"scr_bak/notes.txt"_s, "x");
        },
        "scr/scripts: hint: a run backs it up as \"scr_bak/scr_bakipts\", since its path holds \"/scr\"; "
        "look "
        "for its screens there\n"
        "scr_bak/gone.psc" +
            aside +
            "copy it to \"scr/gone.psc\", or move it to a folder of your own\n"
            "scr_bak/scr_bakipts/d.psc" +
            aside + "copy it to \"scr/scripts/d.psc\", or move it to a folder of your own\n",
        totals(3, 1, 2, 1));
    addRow(
        "a link in place of the backup folder",
        [](const TestProject &project) {
            project.write(u"kept/gone.psc"_s, SmallPlant::plainScreen());
            project.link(u"kept"_s, u"scr_bak"_s);
        },
        "scr_bak: obstacle: a run would take this link away, and make a folder; move it away\n",
        totals(1, 1, 1, 0));
}

void addFolderRows()
{
    addRow(
        "a folder without a screen above it",
        [](const TestProject &project) { project.write(u"scr/x/y/b.psc"_s, SmallPlant::plainScreen()); },
        "scr/x/y/b.psc: obstacle: its folder could not be made in \"scr_temp\", \"scr_bak\" and \"scr\": no "
        "screen comes before it in scr/x; use --make-folders\n",
        totals(2, 1, 1, 0));
    addRow(
        "a folder before the first screen",
        [](const TestProject &project) { project.write(u"scr/00/b.psc"_s, SmallPlant::plainScreen()); },
        "scr/00/b.psc: obstacle: its folder could not be made in \"scr_temp\", \"scr_bak\" and \"scr\": no "
        "screen comes before it in scr; use --make-folders\n",
        totals(2, 1, 1, 0));
    addRow(
        "a folder that the backup renames",
        [](const TestProject &project) { project.write(u"scr/scripts/b.psc"_s, SmallPlant::plainScreen()); },
        "scr/scripts: hint: a run backs it up as \"scr_bak/scr_bakipts\", since its path holds \"/scr\"; "
        "look "
        "for its screens there\n",
        totals(2, 1, 0, 1));
    addRow(
        "a copy of a screen",
        [](const TestProject &project) { project.write(u"scr/a.psc.bak"_s, SmallPlant::plainScreen()); },
        "scr/a.psc.bak: hint: a run converts this file too, since its path holds \".psc\"; move it out of "
        "\"scr\" if it is no screen\n",
        totals(2, 1, 0, 1));
}

void addEntryRows()
{
    addRow(
        "a name that is not UTF-8",
        [](const TestProject &project) {
            const QByteArray name = QFile::encodeName(project.path(u"scr/f"_s)) + "\xe4.psc";
            QVERIFY(symlink("a.psc", name.constData()) == 0);
        },
        "scr/f\xef\xbf\xbd.psc: obstacle: its name is not valid UTF-8, so that a run would not see it; "
        "rename "
        "it\n",
        totals(1, 1, 1, 0));
    addRow(
        "a link", [](const TestProject &project) { project.link(u"../mac"_s, u"scr/library"_s); },
        "scr/library: obstacle: a run would replace this link by what it leads to, or lose it; move it out "
        "of "
        "\"scr\", or replace it by its files\n",
        totals(1, 1, 1, 0));
    addRow(
        "a hidden file", [](const TestProject &project) { project.write(u"scr/.a.psc.swp"_s, "x"); },
        "scr/.a.psc.swp: obstacle: a run would take this hidden file away; use --keep-others, or move it out "
        "of \"scr\"\n",
        totals(1, 1, 1, 0));
    addRow(
        "a temp file", [](const TestProject &project) { project.write(u"scr/qt_temp.XyZabc"_s, "x"); },
        "scr/qt_temp.XyZabc: obstacle: a copy that was broken off has left this temp file; remove it\n",
        totals(1, 1, 1, 0));
    addRow(
        "files that are not image files",
        [](const TestProject &project) {
            project.write(u"scr/notes.txt"_s, "x");
            project.write(u"scr/b.PSC"_s, SmallPlant::plainScreen());
        },
        "scr/b.PSC: obstacle: a run would take this file away: it is no image file; use --keep-others, or "
        "move it out of \"scr\"\n"
        "scr/notes.txt: obstacle: a run would take this file away: it is no image file; use --keep-others, "
        "or move it out of \"scr\"\n",
        totals(1, 1, 2, 0));
    addRow(
        "a link to nothing",
        [](const TestProject &project) { project.link(u"none.psc"_s, u"scr/gone.psc"_s); },
        "scr/gone.psc: obstacle: a run would replace this link by what it leads to, or lose it; move it out "
        "of "
        "\"scr\", or replace it by its files\n",
        totals(1, 1, 1, 0));
}

void addRunRows()
{
    addRow(
        "a run in a folder whose name a shell divides", u"my plant"_s,
        [](const TestProject &project) { project.write(u".vantrel.run"_s, "?"); },
        ".vantrel.run: obstacle: a run was interrupted; the file that tells its stage cannot be read; see "
        "\"vantrel-cli recover --project '<project>'\"\n",
        totals(1, 1, 1, 0));
    addRow(
        "what an interrupted run has left",
        [](const TestProject &project) {
            project.write(u".vantrel.run"_s, "?");
            project.write(u"scr_temp/a.psc"_s, SmallPlant::screenAfterUpdate());
            project.write(u"scr_bak/a.psc"_s, SmallPlant::screenWith("pump.plb"));
            project.remove(u"scr"_s);
        },
        ".vantrel.run: obstacle: a run was interrupted; the file that tells its stage cannot be read; see "
        "\"vantrel-cli recover --project <project>\"\n",
        totals(0, 0, 1, 0));
}

/// Takes no room on the disk.
void writeTooLarge(const TestProject &project, const QString &name)
{
    project.write(name, "");
    QVERIFY(QFile::resize(project.path(name), largestFile + 1));
}

void addScreenRows()
{
    addRow(
        "a screen that is too large",
        [](const TestProject &project) { writeTooLarge(project, u"scr/b.psc"_s); },
        "scr/b.psc: obstacle: Could not open Image File; make it smaller than 512 MiB\n", totals(2, 1, 1, 0));
    addRow(
        "a screen whose name looks like a placeholder",
        [](const TestProject &project) { project.write(u"scr/%1.psc"_s, SmallPlant::invalidScreen()); },
        "scr/%1.psc:2: obstacle: Image File [line 2]: PSDV... not enough parameters (must be >= 12); mend "
        "the line, or move the file out of \"scr\"\n",
        totals(2, 1, 1, 0));
    addRow(
        "a screen that fails its check",
        [](const TestProject &project) { project.write(u"scr/b.psc"_s, SmallPlant::invalidScreen()); },
        "scr/b.psc:2: obstacle: Image File [line 2]: PSDV... not enough parameters (must be >= 12); mend the "
        "line, or move the file out of \"scr\"\n",
        totals(2, 1, 1, 0));
    addRow(
        "too few points: the message counts on, the finding does not",
        [](const TestProject &project) { project.write(u"scr/b.psc"_s, "\n\nPNT;2;0;1;2;3\n"); },
        "scr/b.psc:3: obstacle: Image File [line 4]: PNT... not enough parameters (must be >= 4); mend the "
        "line, or move the file out of \"scr\"\n",
        totals(2, 1, 1, 0));
}

void addReferenceRows()
{
    addRow(
        "a missing shape",
        [](const TestProject &project) { project.write(u"scr/b.psc"_s, SmallPlant::screenWith("x.plb")); },
        "scr/b.psc:2: hint: \"x.plb\" is missing in \"mac\" and \"mac/vlo\"; 1 object refers to it; put it "
        "into \"mac\"\n",
        totals(2, 2, 0, 1));
    addRow(
        "a missing shape, named behind what is gathered",
        [](const TestProject &project) { project.write(u"scr/a.psc"_s, scatteredScreen()); },
        "scr/a.psc:7: hint: \"venturi.plb\" is missing in \"mac\" and \"mac/vlo\"; 1 object refers to it; "
        "put "
        "it into \"mac\"\n",
        totals(1, 1, 0, 1));
    addRow(
        ".lib without .plb",
        [](const TestProject &project) {
            project.write(u"scr/b.psc"_s, SmallPlant::screenWith("x.lib"));
            project.write(u"scr/c.psc"_s, SmallPlant::screenWith("x.lib"));
            project.write(u"mac/x.lib"_s, SmallPlant::shape());
        },
        "scr/b.psc:2: hint: \"x.lib\" stands for \"x.plb\", which is missing in \"mac\" and \"mac/vlo\"; 2 "
        "objects refer to it; put \"x.plb\" into \"mac\"\n",
        totals(3, 2, 0, 1));
    addRow(
        "a refused shape",
        [](const TestProject &project) {
            project.write(u"scr/b.psc"_s, SmallPlant::screenWith("x.cat.plb"));
            project.write(u"mac/x.cat.plb"_s, SmallPlant::shape());
        },
        "scr/b.psc:2: hint: \"x.cat.plb\" is refused, since its path holds \".cat\"; 1 object refers to it; "
        "refer to a shape file that is no catalogue\n",
        totals(2, 2, 0, 1));
}

void addShapeRows()
{
    addRow(
        "a shape that is too large",
        [](const TestProject &project) { writeTooLarge(project, u"mac/pump.plb"_s); },
        "mac/pump.plb: hint: Could not open Shape File; make it smaller than 512 MiB\n", totals(1, 1, 0, 1));
    addRow(
        "a shape that cannot be opened",
        [](const TestProject &project) {
            project.write(u"scr/b.psc"_s, SmallPlant::screenWith("x.plb"));
            project.makeFolder(u"mac/x.plb"_s);
        },
        "mac/x.plb: hint: Could not open Shape File; make it readable\n", totals(2, 2, 0, 1));
    addRow(
        "a shape without an object",
        [](const TestProject &project) { project.write(u"mac/pump.plb"_s, "a header line\n"); },
        "mac/pump.plb: hint: it holds no object, so that a run would replace objects by nothing: 1 object "
        "refers to it; mend the shape file\n",
        totals(1, 1, 0, 1));
    addRow(
        "a shape that fails its check",
        [](const TestProject &project) { project.write(u"mac/pump.plb"_s, shapeWithIcons("IY1;a;b\n")); },
        "mac/pump.plb:5: hint: Shape File [line 5]: IX2... not enough parameters (must be >= 6); mend the "
        "line\n",
        totals(1, 1, 0, 1));
    addRow(
        "a shape with too few points: the message counts on, the finding does not",
        [](const TestProject &project) {
            project.write(u"mac/pump.plb"_s, shapeWithIcons("PNT;2;0;1;2;3\n"));
        },
        "mac/pump.plb:5: hint: Shape File [line 7]: PNT... not enough parameters (must be >= 4); mend the "
        "line\n",
        totals(1, 1, 0, 1));
    addRow(
        "a shape that no screen uses",
        [](const TestProject &project) { project.write(u"mac/vlo/spare.plb"_s, "ID;1\n"); },
        "mac/vlo/spare.plb:1: hint: Shape File [line 1]: ... not enough parameters (must be >= 3); mend the "
        "line\n",
        totals(1, 1, 0, 1));
    addRow(
        "missing icons",
        [](const TestProject &project) {
            project.write(u"bmp/lamps/on.bmp"_s, "picture");
            project.write(u"mac/pump.plb"_s, shapeWithIcons("DIV;0;on;on.bmp\nDIV;1;off;off.bmp\nDIV;2;free;"
                                                            "free.bmp\n"));
        },
        "mac/pump.plb:6: hint: Ikon off.bmp does not exist; put it into a folder \"bmp\" of the project, "
        "whose "
        "path is all lower case\n"
        "mac/pump.plb:7: hint: Ikon free.bmp does not exist; put it into a folder \"bmp\" of the project, "
        "whose path is all lower case\n",
        totals(1, 1, 0, 2));
}

} // namespace

Q_DECLARE_METATYPE(Preparation)

class TestCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsNothingInASoundProject();
    void findsEachKind_data();
    void findsEachKind();
    void findsWhatItMayNotRead_data();
    void findsWhatItMayNotRead();
    void findsItsWayOutOfAMaze();
    void tellsNothingButWhoseRunIsUnderWay_data();
    void tellsNothingButWhoseRunIsUnderWay();
    void takesNoLeftOverLockForARun_data();
    void takesNoLeftOverLockForARun();
    void tellsOfARunThatBeginsMeanwhile_data();
    void tellsOfARunThatBeginsMeanwhile();
    void listsFindingsInTheSameOrderAgain();
    void takesUpperCaseAmissWhereIconsAreAffected();
    void foreseesMakeFolders();
    void findsNamesThatMatchNothing();
    void readsNamesFromAFile();
    void findsThatThereIsNoRoom();
    void escapesWhatNamesHold();
    void findsAllThatUpdateRefuses();
    void writesNothing();
    void takesPathsInAnyForm();
    void printsItsHelp();
};

void TestCheck::findsNothingInASoundProject()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    const CliResult result = check(project);
    QCOMPARE(result.output, totals(1, 1, 0, 0));
    QCOMPARE(result.errorOutput, QByteArray());
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::Done));
}

void TestCheck::findsEachKind_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<Preparation>("prepare");
    QTest::addColumn<QByteArray>("findings");
    QTest::addColumn<QByteArray>("end");

    addPathRows();
    addUpperCaseRows();
    addBackupRows();
    addFolderRows();
    addEntryRows();
    addRunRows();
    addScreenRows();
    addReferenceRows();
    addShapeRows();
}

void TestCheck::findsEachKind()
{
    QFETCH(QString, folder);
    QFETCH(Preparation, prepare);
    QFETCH(QByteArray, findings);
    QFETCH(QByteArray, end);

    const TestProject project(folder);
    SmallPlant::makeIn(project);
    prepare(project);
    const CliResult result = check(project);
    QCOMPARE(withPlaceholders(result.output, project.dir()), findings + '\n' + end);
    QCOMPARE(result.errorOutput, QByteArray());
    QCOMPARE(result.exitCode, static_cast<int>(exitCodeFor(findings)));
}

void TestCheck::findsWhatItMayNotRead_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<mode_t>("mode");
    QTest::addColumn<QByteArray>("findings");
    QTest::addColumn<QByteArray>("end");

    constexpr mode_t none = 0;
    constexpr mode_t notWritable = 0500;
    QTest::newRow("screen") << u"scr/b.psc"_s << none
                            << QByteArray(
                                   "scr/b.psc: obstacle: Could not open Image File; make it readable\n")
                            << totals(2, 1, 1, 0);
    QTest::newRow("folder of screens")
        << u"scr/hall"_s << none
        << QByteArray("scr: obstacle: it could not be read whole: Permission denied; make every folder in it "
                      "readable\n")
        << totals(2, 1, 1, 0);
    QTest::newRow("shape") << u"mac/pump.plb"_s << none
                           << QByteArray("mac/pump.plb: hint: Could not open Shape File; make it readable\n")
                           << totals(2, 1, 0, 1);
    QTest::newRow("log folder") << u"log"_s << notWritable
                                << QByteArray("log: hint: it cannot be written to, so that a run writes no "
                                              "change log; make it writable\n")
                                << totals(2, 1, 0, 1);
}

void TestCheck::findsWhatItMayNotRead()
{
    QFETCH(const QString, path);
    QFETCH(const mode_t, mode);
    QFETCH(const QByteArray, findings);
    QFETCH(const QByteArray, end);
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr/b.psc"_s, SmallPlant::plainScreen());
    project.makeFolder(u"scr/hall"_s);

    QVERIFY(::chmod(qPrintable(project.path(path)), mode) == 0);
    CliRun run;
    run.setPermissionsHold();
    const CliResult result = run.execute({u"check"_s, u"--project"_s, project.dir()});
    QVERIFY(::chmod(qPrintable(project.path(path)), 0700) == 0);
    QCOMPARE(result.output, findings + '\n' + end);
    QCOMPARE(result.exitCode, static_cast<int>(exitCodeFor(findings)));
}

void TestCheck::findsItsWayOutOfAMaze()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    makeMaze(project, u"scr"_s, SmallPlant::plainScreen());
    const CliResult result = check(project);
    QVERIFY2(result.output.contains(
                 ": obstacle: it could not be listed: links lead to more than 1000 folders, of which this "
                 "one and all after it are left out; take the links away that lead to it\n"),
             result.output.constData());
    QVERIFY2(result.output.contains("\nFiles         1004\n"), result.output.right(300).constData());
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::Refused));
}

namespace {

void addCommandRows()
{
    QTest::addColumn<QStringList>("command");
    QTest::newRow("check") << QStringList{u"check"_s};
    QTest::newRow("shapes") << QStringList{u"shapes"_s};
    QTest::newRow("diff") << QStringList{u"diff"_s};
    QTest::newRow("dry run") << QStringList{u"update"_s, u"--dry-run"_s, u"--all-shapes"_s};
}

QByteArray underWay(const QString &projectDir)
{
    return "a run is under way: the project is in use by " + ProjectLock(projectDir).holder().toUtf8() +
           "; wait until it has ended\n";
}

/// The lines about files of a project in what a command has printed, without their severity.
QByteArray findingsIn(const CliResult &result)
{
    QByteArray lines;
    for (const QByteArray &line : (result.output + result.errorOutput).split('\n')) {
        if (line.contains(": "))
            lines += line + '\n';
    }
    return lines.replace(" obstacle: ", " ");
}

} // namespace

void TestCheck::tellsNothingButWhoseRunIsUnderWay_data()
{
    addCommandRows();
}

/// The run stands in the middle of its backup.
void TestCheck::tellsNothingButWhoseRunIsUnderWay()
{
    QFETCH(const QStringList, command);
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr/x/y/b.psc"_s, SmallPlant::plainScreen());
    project.write(u"scr_bak/c.psc"_s, SmallPlant::plainScreen());
    project.write(u"scr_temp/a.psc"_s, SmallPlant::screenAfterUpdate());
    project.write(u".vantrel.run"_s, "?");
    const ProjectLock lock(project.dir());
    const QStringList before = describeTree(project.dir());

    const CliResult result = CliRun().execute(command + QStringList{u"--project"_s, project.dir()});
    QCOMPARE(findingsIn(result), ".vantrel.lock: " + underWay(project.dir()));
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::Refused));
    QCOMPARE(describeTree(project.dir()), before);
}

void TestCheck::takesNoLeftOverLockForARun_data()
{
    QTest::addColumn<QByteArray>("lock");
    QProcess process;
    process.start(u"true"_s, QStringList());
    QVERIFY(process.waitForStarted());
    const QByteArray ended = QByteArray::number(process.processId());
    QVERIFY(process.waitForFinished());
    const QByteArray host = QSysInfo::machineHostName().toUtf8();
    QTest::newRow("of a process that has ended") << ended + "\nvantrel-cli\n" + host + '\n';
    QTest::newRow("of a process whose number another program has")
        << QByteArray::number(QCoreApplication::applicationPid()) + "\nvantrel-cli\n" + host + '\n';
    QTest::newRow("without a name in it") << QByteArray();
}

void TestCheck::takesNoLeftOverLockForARun()
{
    QFETCH(const QByteArray, lock);
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u".vantrel.lock"_s, lock);
    QCOMPARE(check(project).output, totals(1, 1, 0, 0));
    QCOMPARE(project.read(u".vantrel.lock"_s), lock);
}

void TestCheck::tellsOfARunThatBeginsMeanwhile_data()
{
    addCommandRows();
}

/// It begins while the command reads a screen, and has moved the others.
void TestCheck::tellsOfARunThatBeginsMeanwhile()
{
    QFETCH(const QStringList, command);
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr_bak/a.psc"_s, SmallPlant::screenWith("pump.plb"));
    project.write(u"scr/notes.txt"_s, "x");
    HeldFile screen(project.path(u"scr/a.psc"_s));
    CliRun run;
    run.start(command + QStringList{u"--project"_s, project.dir()});
    QVERIFY(screen.waitForReader());
    const ProjectLock lock(project.dir());
    screen.release();

    const CliResult result = run.finish();
    QCOMPARE(findingsIn(result), ".vantrel.lock: " + underWay(project.dir()));
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::Refused));
}

void TestCheck::listsFindingsInTheSameOrderAgain()
{
    const TestProject first(u"first"_s);
    const TestProject second(u"second"_s);
    const QStringList names{u"c.txt"_s, u"a.txt"_s, u"e.txt"_s, u"b.txt"_s, u"d.txt"_s};
    for (qsizetype index = 0; index < names.size(); ++index) {
        first.write(u"scr/"_s + names.at(index), "x");
        second.write(u"scr/"_s + names.at(names.size() - 1 - index), "x");
    }
    const QByteArray output = check(first).output;
    QCOMPARE(check(second).output, output);
    QVERIFY(output.indexOf("scr/a.txt") < output.indexOf("scr/b.txt"));
    QVERIFY(output.indexOf("scr/d.txt") < output.indexOf("scr/e.txt"));
}

void TestCheck::takesUpperCaseAmissWhereIconsAreAffected()
{
    const TestProject project(u"Plant"_s);
    SmallPlant::makeIn(project);
    project.write(u"mac/spare.plb"_s, shapeWithIcons("DIV;0;on;on.bmp\n"));
    project.write(u"scr/b.psc"_s, SmallPlant::screenWith("fan.plb"));
    project.write(u"mac/fan.plb"_s, shapeWithIcons("DIV;0;on;on.bmp\n"));
    const auto isAmiss = [&project](const QStringList &options) {
        return check(project, options).output.contains("upper-case letters");
    };
    QVERIFY(isAmiss({}));
    QVERIFY(isAmiss({u"--shape"_s, u"FAN.plb"_s}));
    QVERIFY(!isAmiss({u"--shape"_s, u"pump.plb"_s}));
    project.remove(u"scr/b.psc"_s);
    QVERIFY(!isAmiss({}));
}

void TestCheck::foreseesMakeFolders()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr/x/y/b.psc"_s, SmallPlant::plainScreen());
    QCOMPARE(check(project).exitCode, static_cast<int>(ExitCode::Refused));
    const CliResult result = check(project, {u"--make-folders"_s});
    QCOMPARE(result.output, totals(2, 1, 0, 0));
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::Done));
}

void TestCheck::findsNamesThatMatchNothing()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    const CliResult result = check(project, {u"--shape"_s, u"PUMP.plb"_s, u"--shape"_s, u"pump.lib"_s,
                                             u"--shape"_s, u"something-else"_s});
    QCOMPARE(result.output,
             "--shape pump.lib: hint: no object refers to this shape, so that nothing would be replaced; did "
             "you mean \"pump.plb\"?\n"
             "--shape something-else: hint: no object refers to this shape, so that nothing would be "
             "replaced; see the names that \"vantrel-cli shapes\" shows\n\n" +
                 totals(1, 1, 0, 2));
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::DoneWithFindings));
}

void TestCheck::readsNamesFromAFile()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"names.txt"_s, "# pumps\npump.plb\n\n  tank.plb \n");
    const CliResult result = check(project, {u"--shapes-from"_s, project.path(u"names.txt"_s)});
    QCOMPARE(result.output,
             "--shape tank.plb: hint: no object refers to this shape, so that nothing would be replaced; see "
             "the names that \"vantrel-cli shapes\" shows\n\n" +
                 totals(1, 1, 0, 1));
    const CliResult missing = check(project, {u"--shapes-from"_s, u"none.txt"_s});
    QCOMPARE(missing.errorOutput,
             QByteArray("vantrel-cli: the list of shapes \"none.txt\" could not be read; "
                        "see \"vantrel-cli check --help\"\n"));
    QCOMPARE(missing.exitCode, static_cast<int>(ExitCode::WrongUsage));
}

void TestCheck::findsThatThereIsNoRoom()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr/large.psc"_s, SmallPlant::plainScreen().repeated(1500));
    project.makeFolder(u"disk"_s);
    // A disk of this process alone, with room for the project and little more.
    QProcess process;
    const QString script = u"mount -t tmpfs -o size=120k none \"$1/disk\" || exit 99; "
                           "cp -r \"$1/scr\" \"$1/mac\" \"$1/log\" \"$1/disk\" && "
                           "exec \"$0\" check --project \"$1/disk\""_s;
    process.start(u"unshare"_s,
                  {u"-Urm"_s, u"sh"_s, u"-c"_s, script, QStringLiteral(VANTREL_CLI), project.dir()});
    const bool isRun = process.waitForFinished();
    constexpr int noDisk = 99;
    constexpr int noNamespace = 1;
    const QByteArray output = process.readAllStandardOutput();
    if (!isRun || process.exitCode() == noDisk || (process.exitCode() == noNamespace && output.isEmpty()))
        QSKIP("this system lets no process have a disk of its own");
    QVERIFY2(output.contains("/disk: obstacle: the copies of a run need up to "), output.constData());
    QVERIFY2(output.endsWith("\n\n" + totals(2, 1, 1, 0)), output.constData());
    QCOMPARE(process.exitCode(), static_cast<int>(ExitCode::Refused));
}

void TestCheck::escapesWhatNamesHold()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr/a\nb\x1b[31m\u202e\u2028.txt"_s, "x");
    QCOMPARE(check(project).output, "scr/a\\nb\\x1b[31m\\u202e\\u2028.txt: obstacle: a run would take this "
                                    "file away: it is no image file; use --keep-others, or move it out "
                                    "of \"scr\"\n\n" +
                                        totals(1, 1, 1, 0));
}

void TestCheck::findsAllThatUpdateRefuses()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr_temp/old.psc"_s, "old");
    project.write(u"scr/00/b.psc"_s, SmallPlant::invalidScreen());
    project.write(u"scr/.hidden"_s, "x");
    project.write(u"scr/notes.txt"_s, "x");
    project.link(u"../mac"_s, u"scr/library"_s);
    QByteArrayList obstacles;
    for (const QByteArray &line : check(project).output.split('\n')) {
        if (line.contains(": obstacle: "))
            obstacles.append(line);
    }
    const CliResult refused =
        CliRun().execute({u"update"_s, u"--all-shapes"_s, u"--project"_s, project.dir()});
    QCOMPARE(refused.exitCode, static_cast<int>(ExitCode::Refused));
    QByteArrayList refusals = refused.errorOutput.split('\n').mid(1, obstacles.size());
    for (QByteArray &obstacle : obstacles) {
        obstacle.replace(" obstacle: ", " ");
        // The command that refuses names the file alone.
        obstacle.replace("b.psc:2:", "b.psc:");
    }
    QCOMPARE(refusals, obstacles);
    QCOMPARE(obstacles.size(), 6);
}

void TestCheck::writesNothing()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    const QStringList before = describeTree(project.dir());
    check(project);
    QCOMPARE(describeTree(project.dir()), before);
}

void TestCheck::takesPathsInAnyForm()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    for (const QString &form : {u"plant"_s, u"./plant/"_s, u"other/../plant//"_s}) {
        CliRun run;
        run.setWorkingFolder(project.beside(QString()));
        const CliResult result = run.execute({u"check"_s, u"--project"_s, form});
        QCOMPARE(result.output, totals(1, 1, 0, 0));
    }
    for (const QString &form : {u""_s, u"/"_s, u"//"_s, u"/tmp/.."_s}) {
        const CliResult result = CliRun().execute({u"check"_s, u"--project"_s, form});
        QCOMPARE(result.output, QByteArray());
        QVERIFY(result.errorOutput.startsWith("vantrel-cli: "));
        QCOMPARE(result.errorOutput.count('\n'), 1);
        QCOMPARE(result.exitCode, static_cast<int>(ExitCode::WrongUsage));
    }
}

void TestCheck::printsItsHelp()
{
    const CliResult result = CliRun().execute({u"check"_s, u"--help"_s});
    QVERIFY(result.output.startsWith(
        "Usage: vantrel-cli check [options]\n\n"
        "Look for what a run would lose, leave out or report as an error.\n\n"
        "Options:\n"
        "  --project DIR        the project directory, which holds \"scr\" and \"mac\"\n"
        "  --shape NAME         look whether objects refer to this shape file; may be repeated\n"
        "  --shapes-from FILE   the same for every line of a file but empty ones and # comments\n"
        "  --make-folders       check for a run with this option: no level needs a screen\n"
        "  --json               print one JSON object a line, and nothing else\n"
        "  --color WHEN         colour the output: auto (at a terminal), always or never\n"
        "  --help               show this help\n\n"
        "Exit codes:\n"));
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::Done));
}

VANTREL_TEST(QCoreApplication, TestCheck)
#include "tst_check.moc"
