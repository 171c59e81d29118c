// The command "shapes": every shape name that screens use, where it lies, its check and its state.
#include "CliRun.h"
#include "ExitCode.h"
#include "ProjectTree.h"
#include "SmallPlant.h"
#include "TestSuite.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

CliResult shapes(const TestProject &project, const QStringList &options = {})
{
    return CliRun().execute(QStringList{u"shapes"_s, u"--project"_s, project.dir()} + options);
}

CliResult dryRun(const TestProject &project, const QString &shape)
{
    return CliRun().execute({u"update"_s, u"--project"_s, project.dir(), u"--shape"_s, shape, u"--dry-run"_s,
                             u"--fail-on-changes"_s, u"--quiet"_s, u"--force"_s});
}

} // namespace

class TestShapes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void listsEveryNameWithItsState();
    void findsNothingWhereAllIsUpToDate();
    void tellsUnusableShapesFromOutdatedOnes();
    void isOutdatedWhereAnIconIsMissing();
    void countsAScreenOnce();
    void tellsWhatItLeftOut();
    void needsAnImageFolder();
    void agreesWithADryRun();
    void colorsOnlyWhereAsked();
    void printsItsHelp();
};

void TestShapes::listsEveryNameWithItsState()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr/b.psc"_s, SmallPlant::screenWith("tank.lib"));
    project.write(u"scr/c.psc"_s, SmallPlant::screenWith("broken.plb"));
    project.write(u"scr/d.psc"_s, SmallPlant::screenWith("x.cat.plb"));
    project.write(u"scr/e.psc"_s, SmallPlant::screenWith("gone.plb"));
    project.write(u"scr/f.psc"_s, SmallPlant::screenAfterUpdate());
    project.write(u"mac/vlo/tank.plb"_s, SmallPlant::shape());
    project.write(u"mac/broken.plb"_s, "ID;1;Rect\nPSDV;1\n");
    project.write(u"mac/x.cat.plb"_s, SmallPlant::shape());
    const QStringList before = describeTree(project.dir());

    const CliResult result = shapes(project);
    QCOMPARE(result.output,
             QByteArray("Shape       Objects  Screens  Place    State     Check\n"
                        "broken.plb        1        1  mac      unusable  Shape File [line 2]: PSDV... not "
                        "enough parameters (must be >= 13)\n"
                        "gone.plb          1        1  missing  unusable  Could not open Shape File\n"
                        "pump.plb          2        2  mac      outdated  valid\n"
                        "tank.plb          1        1  mac/vlo  outdated  valid\n"
                        "x.cat.plb         1        1  refused  unusable  Could not open Shape File\n"
                        "\n"
                        "Files         6\n"
                        "Shapes        5\n"
                        "Objects       6\n"
                        "Outdated      2\n"
                        "Unusable      3\n"));
    QCOMPARE(result.errorOutput, QByteArray());
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::Different));
    QCOMPARE(describeTree(project.dir()), before);
}

void TestShapes::findsNothingWhereAllIsUpToDate()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr/a.psc"_s, SmallPlant::screenAfterUpdate());
    const CliResult result = shapes(project);
    QCOMPARE(result.output, QByteArray("Shape     Objects  Screens  Place  State       Check\n"
                                       "pump.plb        1        1  mac    up to date  valid\n"
                                       "\n"
                                       "Files         1\n"
                                       "Shapes        1\n"
                                       "Objects       1\n"
                                       "Outdated      0\n"
                                       "Unusable      0\n"));
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::Done));
}

void TestShapes::tellsUnusableShapesFromOutdatedOnes()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr/a.psc"_s, SmallPlant::screenAfterUpdate());
    project.write(u"scr/b.psc"_s, SmallPlant::screenWith("gone.plb"));
    QCOMPARE(shapes(project).exitCode, static_cast<int>(ExitCode::DoneWithFindings));
    project.write(u"scr/a.psc"_s, SmallPlant::screenWith("pump.plb"));
    QCOMPARE(shapes(project).exitCode, static_cast<int>(ExitCode::Different));
}

/// A run adds the object's lines once more for a missing icon, even where the shape is the same.
void TestShapes::isOutdatedWhereAnIconIsMissing()
{
    const QByteArray icon = "ID;2;Icon;State\nDIV;0;on;lamp.bmp\n";
    const TestProject project;
    project.write(u"scr/a.psc"_s, SmallPlant::screenAfterUpdate() + icon);
    project.write(u"mac/pump.plb"_s, SmallPlant::shape() + icon);
    QVERIFY(shapes(project).output.contains("mac    outdated  valid\n"));
    QCOMPARE(dryRun(project, u"pump.plb"_s).exitCode, static_cast<int>(ExitCode::WouldChange));

    project.write(u"bmp/lamps/lamp.bmp"_s, "picture");
    QVERIFY(shapes(project).output.contains("mac    up to date  valid\n"));
    QCOMPARE(dryRun(project, u"pump.plb"_s).exitCode, static_cast<int>(ExitCode::Done));
}

void TestShapes::countsAScreenOnce()
{
    const TestProject project;
    QByteArray screen;
    for (int object = 1; object <= 12; ++object) {
        QByteArray lines = SmallPlant::screenWith("pump.plb", "P" + QByteArray::number(object));
        lines.replace(";0;1;0\n", ";0;" + QByteArray::number(object) + ";0\n");
        screen += lines;
    }
    project.write(u"scr/a.psc"_s, screen);
    project.write(u"scr/b.psc"_s, SmallPlant::plainScreen());
    project.write(u"mac/pump.plb"_s, SmallPlant::shape());
    const QByteArray output = shapes(project).output;
    QVERIFY2(output.contains("\npump.plb       12        1  mac    outdated  valid\n"), output.constData());
    QVERIFY2(
        output.endsWith("Files          2\nShapes         1\nObjects       12\nOutdated       1\nUnusable  "
                        "     0\n"),
        output.constData());
}

void TestShapes::tellsWhatItLeftOut()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, SmallPlant::invalidScreen());
    const CliResult result = shapes(project);
    QCOMPARE(
        result.output,
        QByteArray("scr/a.psc:2: obstacle: Image File [line 2]: PSDV... not enough parameters (must be >= "
                   "12); mend the line, or move the file out of \"scr\"\n"
                   "\n"
                   "Files         1\n"
                   "Shapes        0\n"
                   "Objects       0\n"
                   "Outdated      0\n"
                   "Unusable      0\n"));
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::Refused));
}

void TestShapes::needsAnImageFolder()
{
    const TestProject project;
    const CliResult result = shapes(project);
    QVERIFY(result.output.startsWith("scr: obstacle: there is no such folder; "));
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::Refused));
}

/// Each shape alone: outdated where a run for it alone would change a screen. The lines of the
/// plant are put into the form that a run writes first, so that nothing but objects can change.
void TestShapes::agreesWithADryRun()
{
    const TestProject project;
    copyFolder(QStringLiteral(VANTREL_SOURCE_DIR "/example/waterworks"), project.dir());
    CliRun().execute({u"update"_s, u"--project"_s, project.dir(), u"--all-shapes"_s, u"--quiet"_s});
    project.write(u"mac/valve.plb"_s, project.read(u"mac/pump.plb"_s));

    int outdated = 0;
    int upToDate = 0;
    for (const QByteArray &line : shapes(project).output.split('\n')) {
        if (!line.contains(" outdated ") && !line.contains(" up to date "))
            continue;
        const bool isOutdated = line.contains(" outdated ");
        (isOutdated ? outdated : upToDate) += 1;
        const CliResult result = dryRun(project, QString::fromUtf8(line.left(line.indexOf(' '))));
        QCOMPARE(result.exitCode == static_cast<int>(ExitCode::WouldChange), isOutdated);
    }
    QVERIFY(outdated >= 2);
    QVERIFY(upToDate >= 5);
}

void TestShapes::colorsOnlyWhereAsked()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    QVERIFY(!shapes(project).output.contains('\x1b'));
    QVERIFY(shapes(project, {u"--color"_s, u"always"_s}).output.contains("\x1b[33m"));
    QVERIFY(!shapes(project, {u"--color"_s, u"always"_s, u"--json"_s}).output.contains('\x1b'));
}

void TestShapes::printsItsHelp()
{
    const CliResult result = CliRun().execute({u"shapes"_s, u"--help"_s});
    QVERIFY(result.output.startsWith(
        "Usage: vantrel-cli shapes [options]\n\n"
        "List the shapes that screens use, and whether their objects are current.\n\n"
        "Options:\n"
        "  --project DIR        the project directory, which holds \"scr\" and \"mac\"\n"
        "  --json               print one JSON object a line, and nothing else\n"
        "  --color WHEN         colour the output: auto (at a terminal), always or never\n"
        "  --help               show this help\n\n"
        "Exit codes:\n"));
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::Done));
}

VANTREL_TEST(QCoreApplication, TestShapes)
#include "tst_shapes.moc"
