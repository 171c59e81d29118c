// The options "--dry-run" and "--fail-on-changes": what a run would do, and a project that stays
// as it is.
#include "CliRun.h"
#include "ExitCode.h"
#include "HeldFile.h"
#include "ProjectTree.h"
#include "SmallPlant.h"
#include "TestSuite.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTest>

#include <csignal>
#include <memory>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// A step that changes a small plant before a run.
using Preparation = void (*)(const TestProject &project);

QStringList dryRunOf(const QString &projectDir, const QStringList &options = {u"--all-shapes"_s})
{
    return QStringList{u"update"_s, u"--dry-run"_s, u"--project"_s, projectDir} + options;
}

CliResult dryRun(const TestProject &project, const QStringList &options = {u"--all-shapes"_s})
{
    return CliRun().execute(dryRunOf(project.dir(), options));
}

/// Everything that a change of a file or folder shows in, for each of them.
QStringList stampsBelow(const QString &folder)
{
    QStringList stamps;
    const auto filter = QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System;
    QStringList paths{folder};
    for (QDirIterator entries(folder, filter, QDirIterator::Subdirectories); entries.hasNext();)
        paths.append(entries.next());
    paths.sort();
    for (const QString &path : std::as_const(paths)) {
        struct stat status = {};
        if (lstat(QFile::encodeName(path).constData(), &status) != 0)
            continue;
        stamps.append(u"%1 %2 %3 %4 %5.%6 %7.%8"_s.arg(path)
                          .arg(status.st_ino)
                          .arg(status.st_mode)
                          .arg(status.st_size)
                          .arg(status.st_mtim.tv_sec)
                          .arg(status.st_mtim.tv_nsec)
                          .arg(status.st_ctim.tv_sec)
                          .arg(status.st_ctim.tv_nsec));
    }
    return stamps;
}

/// The table of reports at the beginning of an output.
QByteArray tableOf(const QByteArray &output)
{
    return output.left(output.indexOf("\n\n") + 1);
}

/// The lines of hunks in an output.
QByteArrayList hunkLinesOf(const QByteArray &output)
{
    QByteArrayList lines;
    for (const QByteArray &line : output.mid(tableOf(output).size()).split('\n')) {
        const bool isName = line.startsWith("--- ") || line.startsWith("+++ ");
        if (!isName && !line.isEmpty() && QByteArray("+-@ \\").contains(line.at(0)))
            lines.append(line);
    }
    return lines;
}

void makeExampleIn(const TestProject &project)
{
    copyFolder(QStringLiteral(VANTREL_SOURCE_DIR "/example/waterworks"), project.dir());
}

} // namespace

Q_DECLARE_METATYPE(Preparation)

class TestDryRun : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsReportsDiffsAndTotals();
    void leavesTheProjectAlone_data();
    void leavesTheProjectAlone();
    void reportsWhatARunReports_data();
    void reportsWhatARunReports();
    void showsWhatDiffShowsAfterARun();
    void worksBesideAFolderForTemporaryFilesWithCapitals();
    void passesOverATempFolderThatLeadsNowhere();
    void leavesNothingBehind();
    void takesAwayWhatAKilledOneHasLeft();
    void leavesOneThatIsUnderWay();
    void findsItsWayOutOfAMaze();
    void tellsWhatKeepsARunFromStarting_data();
    void tellsWhatKeepsARunFromStarting();
    void tellsOfALeftOverRun();
    void failsWhereAScreenWouldChange();
    void passesWhereNoScreenWouldChange();
    void namesTheCommandThatChanges();
    void needsADryRunToFailOnChanges();
    void isQuietWhereAsked();
    void showsScreensThatWouldGo();
    void showsScreensThatWouldCome();
    void stopsOnASignal();
    void stopsWhileItCopies();
};

void TestDryRun::showsReportsDiffsAndTotals()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr/b.psc"_s, SmallPlant::plainScreen());
    const CliResult result = dryRun(project);
    QCOMPARE(withPlaceholders(result.output, project.dir()),
             QByteArray("Status      Image File  Shape File  Image-Object  Shape-Object  Prefix\n"
                        "REPLACE     scr/a.psc   pump.plb    Obj/Pump      Lib/Pump      Plant/Pump\n"
                        "NO REPLACE  scr/b.psc\n"
                        "\n"
                        "--- scr/a.psc\n"
                        "+++ scr/a.psc\n"
                        "@@ -1,3 +1,3 @@\n"
                        "-ID;1;Rect;Pump\n"
                        "-LIB;pump.plb;1;Plant/Pump;Obj/Pump\n"
                        "-PSDV;10;10;29;29;2;1;15;8;1;0;1;0\n"
                        "+ID;1;Ellipse;Body\n"
                        "+LIB;pump.plb;2;Plant/Pump;Lib/Pump\n"
                        "+PSDV;10;10;29;29;2;1;7;0;2;0;1;0\n"
                        "\n"
                        "Files         2\n"
                        "Replaced      1\n"
                        "Not replaced  1\n"
                        "Errors        0\n"
                        "Changed       1\n"
                        "Lines added   3\n"
                        "Lines removed 3\n"
                        "Seconds       <seconds>\n"
                        "Change log    none: a dry run writes none\n"));
    QCOMPARE(result.errorOutput, QByteArray());
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::Done));
}

void TestDryRun::leavesTheProjectAlone_data()
{
    QTest::addColumn<Preparation>("prepare");
    QTest::newRow("the example plant") << Preparation(makeExampleIn);
    QTest::newRow("with a backup") << Preparation([](const TestProject &project) {
        SmallPlant::makeIn(project);
        project.write(u"scr_bak/old.psc"_s, "old");
    });
    QTest::newRow("with what a run would lose") << Preparation([](const TestProject &project) {
        SmallPlant::makeIn(project);
        project.write(u"scr/notes.txt"_s, "x");
        project.write(u"scr/.hidden"_s, "x");
        project.write(u"scr/x/y/b.psc"_s, SmallPlant::screenWith("pump.plb"));
        project.write(u"scr/bad.psc"_s, SmallPlant::invalidScreen());
    });
    QTest::newRow("with an old temp folder") << Preparation([](const TestProject &project) {
        SmallPlant::makeIn(project);
        project.write(u"scr_temp/a.psc"_s, "old");
        project.write(u"scr_temp/z.psc"_s, "old");
        project.link(u"../mac/pump.plb"_s, u"scr_temp/b.psc"_s);
        project.write(u"scr/b.psc"_s, SmallPlant::screenWith("pump.plb"));
    });
    QTest::newRow("with links") << Preparation([](const TestProject &project) {
        SmallPlant::makeIn(project);
        project.write(u"other/c.psc"_s, SmallPlant::screenWith("pump.plb"));
        project.link(u"../other"_s, u"scr/other"_s);
        project.link(u"../other/c.psc"_s, u"scr/c.psc"_s);
        project.link(u"."_s, u"scr/loop"_s);
        project.link(u"nowhere"_s, u"scr/gone.psc"_s);
        project.write(u"scr_temp/other/d.psc"_s, "old");
        // A level without screens: not all can be backed up, so that "scr" stays for a while.
        project.write(u"scr/x/y/b.psc"_s, SmallPlant::screenWith("pump.plb"));
    });
}

void TestDryRun::leavesTheProjectAlone()
{
    QFETCH(Preparation, prepare);
    const TestProject project;
    prepare(project);
    const QStringList tree = describeTree(project.dir());
    const QStringList stamps = stampsBelow(project.beside(QString()));
    dryRun(project, {u"--all-shapes"_s, u"--force"_s});
    QCOMPARE(describeTree(project.dir()), tree);
    QCOMPARE(stampsBelow(project.beside(QString())), stamps);
}

void TestDryRun::reportsWhatARunReports_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<Preparation>("prepare");
    QTest::newRow("the example plant") << u"plant"_s << Preparation(makeExampleIn);
    QTest::newRow("a path with capitals hides icons") << u"Plant"_s << Preparation(makeExampleIn);
    QTest::newRow("/scr in the path") << u"scripts/plant"_s << Preparation(makeExampleIn);
    QTest::newRow(".cat in the path") << u"parts.cat/plant"_s << Preparation(makeExampleIn);
    QTest::newRow(".psc in the path") << u"old.psc/plant"_s << Preparation([](const TestProject &project) {
        makeExampleIn(project);
        project.write(u"scr/notes.txt"_s, "x\n");
    });
    QTest::newRow("/bmp in the path") << u"bmps/plant"_s << Preparation([](const TestProject &project) {
        makeExampleIn(project);
        project.write(u"pictures/blower_fault.bmp"_s, "picture");
    });
    QTest::newRow("pictures beside screens")
        << u"bmps/plant"_s << Preparation([](const TestProject &project) {
               makeExampleIn(project);
               project.write(u"scr/area/blower_fault.bmp"_s, "picture");
           });
    QTest::newRow("screens that cannot be converted")
        << u"plant"_s << Preparation([](const TestProject &project) {
               SmallPlant::makeIn(project);
               project.write(u"scr/00/b.psc"_s, SmallPlant::screenWith("pump.plb"));
               project.write(u"scr/bad.psc"_s, SmallPlant::invalidScreen());
               project.write(u"scr/c.psc"_s, SmallPlant::plainScreen());
           });
}

void TestDryRun::reportsWhatARunReports()
{
    QFETCH(QString, folder);
    QFETCH(Preparation, prepare);
    const TestProject project(folder);
    prepare(project);
    const QStringList options{u"--all-shapes"_s, u"--force"_s};
    const CliResult foreseen = dryRun(project, options);
    const CliResult real =
        CliRun().execute(QStringList{u"update"_s, u"--project"_s, project.dir()} + options);
    QVERIFY(!tableOf(real.output).isEmpty());
    QCOMPARE(tableOf(foreseen.output), tableOf(real.output));
    QCOMPARE(foreseen.errorOutput, real.errorOutput);
    QCOMPARE(foreseen.exitCode, real.exitCode);
}

void TestDryRun::showsWhatDiffShowsAfterARun()
{
    const TestProject project;
    makeExampleIn(project);
    const CliResult foreseen = dryRun(project);
    CliRun().execute({u"update"_s, u"--all-shapes"_s, u"--project"_s, project.dir()});
    const CliResult afterwards = CliRun().execute({u"diff"_s, u"--project"_s, project.dir()});
    QVERIFY(hunkLinesOf(foreseen.output).size() > 1000);
    // Without a table in front, all of this output is diffs.
    QCOMPARE(hunkLinesOf(foreseen.output), hunkLinesOf("\n\n" + afterwards.output));
}

void TestDryRun::worksBesideAFolderForTemporaryFilesWithCapitals()
{
    const TestProject project;
    makeExampleIn(project);
    project.makeFolder(u"../Temporary"_s);
    CliRun run;
    run.setVariable(u"TMPDIR"_s, project.beside(u"Temporary"_s));
    QCOMPARE(tableOf(run.execute(dryRunOf(project.dir())).output), tableOf(dryRun(project).output));
}

void TestDryRun::passesOverATempFolderThatLeadsNowhere()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    const QByteArray table = tableOf(dryRun(project).output);
    project.link(u"scr_temp"_s, u"scr_temp"_s);
    const CliResult result = dryRun(project, {u"--all-shapes"_s, u"--force"_s});
    QCOMPARE(tableOf(result.output), table);
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::Done));
}

void TestDryRun::leavesNothingBehind()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.makeFolder(u"../temporary"_s);
    CliRun run;
    run.setVariable(u"TMPDIR"_s, project.beside(u"temporary"_s));
    QCOMPARE(run.execute(dryRunOf(project.dir())).exitCode, static_cast<int>(ExitCode::Done));
    QCOMPARE(describeTree(project.beside(u"temporary"_s)), QStringList());
}

namespace {

/// A dry run that waits for the shape of its second screen.
class WaitingDryRun final
{
public:
    WaitingDryRun()
    {
        SmallPlant::makeIn(m_project);
        m_project.write(u"scr/b.psc"_s, SmallPlant::screenWith("tank.plb"));
        m_project.write(u"mac/tank.plb"_s, SmallPlant::shape());
        m_project.makeFolder(u"../temporary"_s);
        m_shape = std::make_unique<HeldFile>(m_project.path(u"mac/tank.plb"_s));
    }

    QString temporaryFolder() const { return m_project.beside(u"temporary"_s); }
    bool start()
    {
        m_run.setVariable(u"TMPDIR"_s, temporaryFolder());
        m_run.start(dryRunOf(m_project.dir()));
        return m_shape->waitForReader();
    }
    CliResult kill()
    {
        m_run.sendSignalAtOnce(SIGKILL);
        return m_run.finish();
    }
    CliResult finish()
    {
        m_shape->release();
        return m_run.finish();
    }

private:
    TestProject m_project;
    std::unique_ptr<HeldFile> m_shape;
    CliRun m_run;
};

/// Another one with the same folder for temporary files.
CliResult dryRunBeside(const WaitingDryRun &other)
{
    const TestProject project;
    SmallPlant::makeIn(project);
    CliRun run;
    run.setVariable(u"TMPDIR"_s, other.temporaryFolder());
    return run.execute(dryRunOf(project.dir()));
}

} // namespace

void TestDryRun::takesAwayWhatAKilledOneHasLeft()
{
    WaitingDryRun killed;
    QVERIFY(killed.start());
    QCOMPARE(killed.kill().exitCode, CliResult::noExitCode);
    QVERIFY(!describeTree(killed.temporaryFolder()).isEmpty());
    QCOMPARE(dryRunBeside(killed).exitCode, static_cast<int>(ExitCode::Done));
    QCOMPARE(describeTree(killed.temporaryFolder()), QStringList());
}

void TestDryRun::leavesOneThatIsUnderWay()
{
    WaitingDryRun first;
    QVERIFY(first.start());
    const QStringList standIn = describeTree(first.temporaryFolder());
    QVERIFY(!standIn.isEmpty());
    QCOMPARE(dryRunBeside(first).exitCode, static_cast<int>(ExitCode::Done));
    QCOMPARE(describeTree(first.temporaryFolder()), standIn);
    QCOMPARE(first.finish().exitCode, static_cast<int>(ExitCode::Done));
    QCOMPARE(describeTree(first.temporaryFolder()), QStringList());
}

void TestDryRun::findsItsWayOutOfAMaze()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    makeMaze(project, u"scr"_s, SmallPlant::plainScreen());
    const QStringList tree = describeTree(project.dir());
    const CliResult result = dryRun(project);
    QVERIFY2(result.errorOutput.contains("links lead to more than 1000 folders"),
             result.errorOutput.constData());
    // The order of folders that are not sorted tells how many; at most with the plant's own screen,
    // and the seven that no link leads to.
    const QByteArray count = result.output.mid(result.output.lastIndexOf("\nFiles") + 7).trimmed();
    QVERIFY2(count.left(count.indexOf('\n')).toInt() <= 1008, count.constData());
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::Refused));
    QCOMPARE(describeTree(project.dir()), tree);
}

void TestDryRun::tellsWhatKeepsARunFromStarting_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::newRow("plainly") << QStringList();
    QTest::newRow("where changes count") << QStringList{u"--fail-on-changes"_s};
}

/// And goes on, without naming what a refused run does not lose.
void TestDryRun::tellsWhatKeepsARunFromStarting()
{
    QFETCH(const QStringList, options);
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr/bad.psc"_s, SmallPlant::invalidScreen());
    project.write(u"scr/notes.txt"_s, "x");
    const CliResult result = dryRun(project, QStringList{u"--all-shapes"_s} + options);
    QVERIFY2(tableOf(result.output).contains("REPLACE  scr/a.psc"), result.output.constData());
    QVERIFY2(result.output.contains("--- scr/a.psc\n"), result.output.constData());
    const QByteArray badLine = " [line 2]: PSDV... not enough parameters (must be >= 12)";
    QCOMPARE(withPlaceholders(result.errorOutput, project.dir()),
             "A run would be refused: it would lose or not convert the following.\n"
             "scr/notes.txt: a run would take this file away: it is no image file; use --keep-others, or "
             "move it out of \"scr\"\n"
             "scr/bad.psc: Image File" +
                 badLine +
                 "; mend the line, or move the file out of \"scr\"\n"
                 "2 obstacles; --force runs all the same.\n"
                 "error: Image File <project>/scr/bad.psc" +
                 badLine + '\n');
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::Refused));
}

void TestDryRun::tellsOfALeftOverRun()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr/notes.txt"_s, "x");
    project.write(u".vantrel.run"_s, "?");
    const CliResult result = dryRun(project, {u"--all-shapes"_s, u"--force"_s});
    QVERIFY2(tableOf(result.output).contains("REPLACE  scr/a.psc"), result.output.constData());
    QVERIFY2(result.errorOutput.startsWith("A run would be refused: an earlier one was interrupted.\n"
                                           ".vantrel.run: a run was interrupted; "),
             result.errorOutput.constData());
    QVERIFY2(result.errorOutput.endsWith("\n2 obstacles.\n"), result.errorOutput.constData());
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::FilesMissing));
}

void TestDryRun::failsWhereAScreenWouldChange()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    const CliResult result = dryRun(project, {u"--shape"_s, u"pump.plb"_s, u"--fail-on-changes"_s});
    QCOMPARE(
        withPlaceholders(result.errorOutput, project.dir()),
        QByteArray("A run would change 1 screen; to have it do so: vantrel-cli update --project <project> "
                   "--shape pump.plb\n"));
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::WouldChange));
}

void TestDryRun::passesWhereNoScreenWouldChange()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr/a.psc"_s, SmallPlant::screenAfterUpdate());
    const CliResult result = dryRun(project, {u"--all-shapes"_s, u"--fail-on-changes"_s});
    QVERIFY(result.output.contains("\nChanged       0\n"));
    QCOMPARE(result.errorOutput, QByteArray());
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::Done));
}

void TestDryRun::namesTheCommandThatChanges()
{
    const TestProject project(u"the plant's"_s);
    SmallPlant::makeIn(project);
    project.write(u"scr/b.psc"_s, SmallPlant::screenWith("pump.plb"));
    project.write(u"scr/c.psc"_s, SmallPlant::screenWith("a b"));
    project.write(u"scr/d.psc"_s, SmallPlant::screenWith("c.plb"));
    project.write(u"mac/a b"_s, SmallPlant::shape());
    project.write(u"mac/c.plb"_s, SmallPlant::shape());
    project.write(u"names.txt"_s, "pump.plb\n");
    const CliResult result =
        dryRun(project, {u"--shapes-from"_s, project.path(u"names.txt"_s), u"--make-folders"_s, u"--quiet"_s,
                         u"--shape"_s, u"a b"_s, u"--shape"_s, u"c.plb"_s, u"--fail-on-changes"_s});
    QString quotedDir = project.dir();
    quotedDir.replace(u"'"_s, u"'\\''"_s);
    const QString command = u"vantrel-cli update --project '%1' --shape 'a b' --shape c.plb --shapes-from "
                            "'%1/names.txt' --make-folders"_s.arg(quotedDir);
    QCOMPARE(QString::fromUtf8(result.errorOutput),
             u"A run would change 4 screens; to have it do so: %1\n"_s.arg(command));
    QCOMPARE(result.output, QByteArray());
}

void TestDryRun::needsADryRunToFailOnChanges()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    const CliResult result = CliRun().execute(
        {u"update"_s, u"--project"_s, project.dir(), u"--all-shapes"_s, u"--fail-on-changes"_s});
    QCOMPARE(result.errorOutput,
             QByteArray("vantrel-cli: --fail-on-changes needs --dry-run; see \"vantrel-cli "
                        "update --help\"\n"));
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::WrongUsage));
    QCOMPARE(project.read(u"scr/a.psc"_s), SmallPlant::screenWith("pump.plb"));
}

void TestDryRun::isQuietWhereAsked()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    const CliResult result = dryRun(project, {u"--all-shapes"_s, u"--quiet"_s});
    QCOMPARE(result.output, QByteArray());
    QCOMPARE(result.errorOutput, QByteArray());
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::Done));
}

void TestDryRun::showsScreensThatWouldGo()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr/bad.psc"_s, SmallPlant::invalidScreen());
    const QByteArray output = dryRun(project, {u"--shape"_s, u"pump.plb"_s, u"--force"_s}).output;
    QVERIFY2(
        output.contains("--- scr/bad.psc\n+++ /dev/null\n@@ -1,2 +0,0 @@\n-ID;1;Rect;Cut\n-PSDV;0;0;99\n"),
        output.constData());
}

void TestDryRun::showsScreensThatWouldCome()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr_temp/old.psc"_s, "old\n");
    const QByteArray output = dryRun(project, {u"--shape"_s, u"pump.plb"_s, u"--force"_s}).output;
    QVERIFY2(output.contains("--- /dev/null\n+++ scr/old.psc\n@@ -0,0 +1 @@\n+old\n"), output.constData());
}

void TestDryRun::stopsOnASignal()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.makeFolder(u"../temporary"_s);
    project.write(u"scr/b.psc"_s, SmallPlant::screenWith("tank.plb"));
    project.write(u"scr/c.psc"_s, SmallPlant::screenWith("pump.plb"));
    project.write(u"mac/tank.plb"_s, SmallPlant::shape());
    const QStringList stamps = stampsBelow(project.dir());
    HeldFile shape(project.path(u"mac/tank.plb"_s));

    CliRun run;
    run.setVariable(u"TMPDIR"_s, project.beside(u"temporary"_s));
    run.start(dryRunOf(project.dir()));
    QVERIFY(shape.waitForReader());
    QVERIFY(run.sendSignal(SIGTERM));
    shape.release();
    const CliResult result = run.finish();
    QCOMPARE(result.errorOutput, QByteArray("Stopped. Nothing was changed.\n"));
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::StoppedByTermination));
    QCOMPARE(stampsBelow(project.dir()), stamps);
    QCOMPARE(describeTree(project.beside(u"temporary"_s)), QStringList());
}

void TestDryRun::stopsWhileItCopies()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.makeFolder(u"../temporary"_s);
    project.write(u"scr_temp/x.psc"_s, SmallPlant::plainScreen());
    const QStringList stamps = stampsBelow(project.dir());
    HeldFile leftOver(project.path(u"scr_temp/x.psc"_s));

    CliRun run;
    run.setVariable(u"TMPDIR"_s, project.beside(u"temporary"_s));
    run.start(dryRunOf(project.dir()));
    QVERIFY(leftOver.waitForReader());
    QVERIFY(!describeTree(project.beside(u"temporary"_s)).isEmpty());
    run.sendSignalAtOnce(SIGINT);
    leftOver.release();
    const CliResult result = run.finish();
    QVERIFY2(result.errorOutput.endsWith("\nStopped. Nothing was changed.\n"),
             result.errorOutput.constData());
    QCOMPARE(result.output, QByteArray());
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::StoppedByInterrupt));
    QCOMPARE(stampsBelow(project.dir()), stamps);
    QCOMPARE(describeTree(project.beside(u"temporary"_s)), QStringList());
}

VANTREL_TEST(QCoreApplication, TestDryRun)
#include "tst_dryrun.moc"
