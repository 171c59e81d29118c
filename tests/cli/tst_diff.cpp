// The command "diff": what a run changed, as a unified diff.
#include "CliRun.h"
#include "ExitCode.h"
#include "ProjectTree.h"
#include "SmallPlant.h"
#include "Streams.h"
#include "TestSuite.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

CliResult diff(const TestProject &project, const QStringList &options = {})
{
    return CliRun().execute(QStringList{u"diff"_s, u"--project"_s, project.dir()} + options);
}

QByteArray totals(int files, int changed, int added, int removed)
{
    return "Files         " + QByteArray::number(files) +     //
           "\nChanged       " + QByteArray::number(changed) + //
           "\nLines added   " + QByteArray::number(added) +   //
           "\nLines removed " + QByteArray::number(removed) + '\n';
}

QByteArray randomLines(QRandomGenerator &random, int count, int spellings)
{
    QByteArray text;
    for (int line = 0; line < count; ++line)
        text += "TXT;" + QByteArray::number(random.bounded(spellings)) + '\n';
    return text;
}

/// The text with some of its lines removed, exchanged and moved.
QByteArray changed(QRandomGenerator &random, const QByteArray &text)
{
    QByteArrayList lines = text.chopped(1).split('\n');
    const auto changes = random.bounded(static_cast<int>(lines.size()) + 1) / 3;
    for (int change = 0; change < changes; ++change) {
        const auto place = random.bounded(static_cast<int>(lines.size()));
        switch (random.bounded(3)) {
        case 0:
            lines.removeAt(place);
            break;
        case 1:
            lines[place] = "TXT;new;" + QByteArray::number(random.bounded(9));
            break;
        default:
            lines.move(place, random.bounded(static_cast<int>(lines.size())));
        }
        if (lines.isEmpty())
            return {};
    }
    return lines.join('\n') + '\n';
}

} // namespace

class TestDiff : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsWhatARunChanged();
    void findsNothingInEqualFolders();
    void showsAddedAndRemovedScreens();
    void showsLineEndsThatDiffer_data();
    void showsLineEndsThatDiffer();
    void showsLatin1AsUtf8AndEscapesControls();
    void joinsHunksThatShareTheirContext();
    void findsScreensOfRenamedFolders();
    void needsBothFolders();
    void tellsWhatItMayNotRead();
    void tellsWhatItHasNotListed();
    void colorsWhereAsked();
    void colorsATerminal_data();
    void colorsATerminal();
    void leadsFromOneVersionToTheOther_data();
    void leadsFromOneVersionToTheOther();
    void changesNothing();
    void printsItsHelp();
};

void TestDiff::showsWhatARunChanged()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr/b.psc"_s, SmallPlant::plainScreen());
    CliRun().execute({u"update"_s, u"--all-shapes"_s, u"--project"_s, project.dir()});
    const CliResult result = diff(project);
    QCOMPARE(result.output, "--- scr_bak/a.psc\n"
                            "+++ scr/a.psc\n"
                            "@@ -1,3 +1,3 @@\n"
                            "-ID;1;Rect;Pump\n"
                            "-LIB;pump.plb;1;Plant/Pump;Obj/Pump\n"
                            "-PSDV;10;10;29;29;2;1;15;8;1;0;1;0\n"
                            "+ID;1;Ellipse;Body\n"
                            "+LIB;pump.plb;2;Plant/Pump;Lib/Pump\n"
                            "+PSDV;10;10;29;29;2;1;7;0;2;0;1;0\n"
                            "\n" +
                                totals(2, 1, 3, 3));
    QCOMPARE(result.errorOutput, QByteArray());
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::Different));
}

void TestDiff::findsNothingInEqualFolders()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, "x\r\ny");
    project.write(u"scr_bak/a.psc"_s, "x\r\ny");
    const CliResult result = diff(project);
    QCOMPARE(result.output, totals(1, 0, 0, 0));
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::Done));
}

void TestDiff::showsAddedAndRemovedScreens()
{
    const TestProject project;
    project.write(u"scr/new.psc"_s, "one\n");
    project.write(u"scr/none.psc"_s, "");
    project.write(u"scr_bak/area/old.psc"_s, "one\ntwo\n");
    const CliResult result = diff(project);
    QCOMPARE(result.output, "--- /dev/null\n+++ scr/new.psc\n@@ -0,0 +1 @@\n+one\n"
                            "--- /dev/null\n+++ scr/none.psc\n"
                            "--- scr_bak/area/old.psc\n+++ /dev/null\n@@ -1,2 +0,0 @@\n-one\n-two\n"
                            "\n" +
                                totals(3, 3, 1, 2));
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::Different));
}

void TestDiff::showsLineEndsThatDiffer_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::addColumn<QByteArray>("hunk");

    const QByteArray mark = "\\ No newline at end of file\n";
    QTest::newRow("CR LF becomes LF") << QByteArray("a\r\nb\r\n") << QByteArray("a\nb\n")
                                      << QByteArray("@@ -1,2 +1,2 @@\n-a\\r\n-b\\r\n+a\n+b\n");
    QTest::newRow("a missing line end comes")
        << QByteArray("a\nb") << QByteArray("a\nb\n") << "@@ -1,2 +1,2 @@\n a\n-b\n" + mark + "+b\n";
    QTest::newRow("a line end goes") << QByteArray("b\n") << QByteArray("b")
                                     << "@@ -1 +1 @@\n-b\n+b\n" + mark;
    QTest::newRow("none has a line end")
        << QByteArray("a\nx") << QByteArray("b\nx") << "@@ -1,2 +1,2 @@\n-a\n+b\n x\n" + mark;
    QTest::newRow("blanks at the end")
        << QByteArray("a \n") << QByteArray("a\n") << QByteArray("@@ -1 +1 @@\n-a \n+a\n");
}

void TestDiff::showsLineEndsThatDiffer()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QFETCH(QByteArray, hunk);

    const TestProject project;
    project.write(u"scr_bak/a.psc"_s, before);
    project.write(u"scr/a.psc"_s, after);
    const QByteArray output = diff(project).output;
    QCOMPARE(output.left(output.indexOf("\n\nFiles") + 1), "--- scr_bak/a.psc\n+++ scr/a.psc\n" + hunk);
}

void TestDiff::showsLatin1AsUtf8AndEscapesControls()
{
    const TestProject project;
    project.write(u"scr_bak/a.psc"_s, "");
    project.write(u"scr/a.psc"_s, QByteArray("m\xb3\t\x1b[31m\x85\0x\n", 11));
    const QByteArray output = diff(project).output;
    QVERIFY2(output.contains("\n+m\xc2\xb3\\t\\x1b[31m\\x85\\x00x\n"), output.constData());
}

void TestDiff::joinsHunksThatShareTheirContext()
{
    const auto numbered = [](int first, int second) {
        QByteArray text;
        for (int line = 1; line <= 20; ++line)
            text += (line == first || line == second ? "x" : QByteArray::number(line)) + '\n';
        return text;
    };
    const TestProject project;
    project.write(u"scr_bak/near.psc"_s, numbered(0, 0));
    project.write(u"scr/near.psc"_s, numbered(5, 12));
    const QByteArray near = diff(project).output;
    QVERIFY2(near.contains("@@ -2,14 +2,14 @@\n 2\n"), near.constData());
    QCOMPARE(near.count("@@ -"), 1);

    project.write(u"scr/near.psc"_s, numbered(5, 13));
    const QByteArray far = diff(project).output;
    QVERIFY2(far.contains("@@ -2,7 +2,7 @@\n 2\n"), far.constData());
    QVERIFY2(far.contains("@@ -10,7 +10,7 @@\n 10\n"), far.constData());
}

void TestDiff::findsScreensOfRenamedFolders()
{
    const TestProject project;
    project.write(u"scr/scripts/a.psc"_s, "new\n");
    project.write(u"scr_bak/scr_bakipts/a.psc"_s, "old\n");
    const QByteArray output = diff(project).output;
    QCOMPARE(output, "--- scr_bak/scr_bakipts/a.psc\n+++ scr/scripts/a.psc\n@@ -1 +1 @@\n-old\n+new\n\n" +
                         totals(1, 1, 1, 1));
}

void TestDiff::needsBothFolders()
{
    const TestProject project;
    const CliResult result = diff(project);
    QCOMPARE(result.output,
             "scr: obstacle: there is no such folder; choose a project directory, which holds \"scr\"\n"
             "scr_bak: hint: there is no such folder; compare after a run, which makes it\n"
             "\n" +
                 totals(0, 0, 0, 0));
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::Refused));

    project.makeFolder(u"scr"_s);
    QCOMPARE(diff(project).exitCode, static_cast<int>(ExitCode::DoneWithFindings));
}

void TestDiff::tellsWhatItHasNotListed()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, "one\n");
    project.write(u"scr_bak/a.psc"_s, "one\n");
    makeMaze(project, u"scr"_s, "one\n");
    makeMaze(project, u"scr_bak"_s, "one\n");
    const CliResult result = diff(project, {u"--json"_s});
    const QByteArray finding = "it could not be listed: links lead to more than 1000 folders";
    QCOMPARE(result.output.count(finding), 2);
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::Refused));
}

void TestDiff::colorsWhereAsked()
{
    const TestProject project;
    project.write(u"scr_bak/a.psc"_s, "old\n");
    project.write(u"scr/a.psc"_s, "new\n");
    const QByteArray output = diff(project, {u"--color"_s, u"always"_s}).output;
    QVERIFY2(output.startsWith("\x1b[1m--- scr_bak/a.psc\x1b[0m\n\x1b[1m+++ scr/a.psc\x1b[0m\n"
                               "\x1b[2m@@ -1 +1 @@\x1b[0m\n\x1b[31m-old\x1b[0m\n\x1b[32m+new\x1b[0m\n"),
             output.constData());
    QVERIFY(!diff(project).output.contains('\x1b'));
}

void TestDiff::colorsATerminal_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("variable");
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("isColored");
    QTest::newRow("terminal") << QStringList() << u"TERM"_s << u"xterm"_s << true;
    QTest::newRow("NO_COLOR") << QStringList() << u"NO_COLOR"_s << u"1"_s << false;
    QTest::newRow("dumb terminal") << QStringList() << u"TERM"_s << u"dumb"_s << false;
    QTest::newRow("JSON") << QStringList{u"--json"_s} << u"TERM"_s << u"xterm"_s << false;
    QTest::newRow("JSON always") << QStringList{u"--json"_s, u"--color=always"_s} << u"TERM"_s << u"xterm"_s
                                 << false;
}

void TestDiff::colorsATerminal()
{
    QFETCH(const QStringList, options);
    QFETCH(const QString, variable);
    QFETCH(const QString, value);
    QFETCH(const bool, isColored);
    const TestProject project;
    project.write(u"scr_bak/a.psc"_s, "old\n");
    project.write(u"scr/a.psc"_s, "new\n");

    CliRun run;
    run.setVariable(variable, value);
    Terminal terminal(80);
    run.setOutput(terminal.writeEnd());
    run.start(QStringList{u"diff"_s, u"--project"_s, project.dir()} + options);
    terminal.closeWriteEnd();
    const QByteArray shown = terminal.readToEnd();
    run.finish();
    QVERIFY(shown.contains("-old"));
    QCOMPARE(shown.contains("\x1b[31m-old\x1b[0m"), isColored);
    QCOMPARE(shown.contains('\x1b'), isColored);
}

void TestDiff::tellsWhatItMayNotRead()
{
    const TestProject project;
    project.write(u"scr_bak/a.psc"_s, "old\n");
    project.write(u"scr/a.psc"_s, "new\n");
    QVERIFY(::chmod(qPrintable(project.path(u"scr_bak/a.psc"_s)), 0) == 0);
    CliRun run;
    run.setPermissionsHold();
    const CliResult result = run.execute({u"diff"_s, u"--project"_s, project.dir()});
    QCOMPARE(result.output, "scr/a.psc: obstacle: it could not be read, so that it was not compared; make it "
                            "readable\n\n" +
                                totals(1, 0, 0, 0));
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::Refused));
}

void TestDiff::leadsFromOneVersionToTheOther_data()
{
    QTest::addColumn<int>("lines");
    QTest::addColumn<int>("spellings");
    for (const int lines : {1, 7, 60, 400, 20000}) {
        for (const int spellings : {2, 40, 1'000'000})
            QTest::addRow("%d lines out of %d", lines, spellings) << lines << spellings;
    }
}

/// What is printed is a patch that another program applies without a doubt.
void TestDiff::leadsFromOneVersionToTheOther()
{
    QFETCH(int, lines);
    QFETCH(int, spellings);

    QRandomGenerator random(static_cast<quint32>(lines * 7 + spellings));
    const TestProject project;
    const QByteArray before = randomLines(random, lines, spellings);
    const QByteArray after = changed(random, before) + "TXT;last\n";
    project.write(u"scr_bak/a.psc"_s, before);
    project.write(u"scr/a.psc"_s, after);
    project.write(u"changes.patch"_s, diff(project).output);

    QProcess process;
    process.setWorkingDirectory(project.dir());
    process.start(u"patch"_s,
                  {u"--batch"_s, u"--fuzz=0"_s, u"-p0"_s, u"-i"_s, u"changes.patch"_s, u"scr_bak/a.psc"_s});
    if (!process.waitForStarted())
        QSKIP("there is no program \"patch\"");
    QVERIFY(process.waitForFinished());
    const QByteArray output = process.readAll();
    QCOMPARE(project.read(u"scr_bak/a.psc"_s), after);
    QVERIFY2(!output.contains("offset"), output.constData());
}

void TestDiff::changesNothing()
{
    const TestProject project;
    project.write(u"scr_bak/a.psc"_s, "old\n");
    project.write(u"scr/a.psc"_s, "new\n");
    const QStringList before = describeTree(project.dir());
    diff(project);
    QCOMPARE(describeTree(project.dir()), before);
}

void TestDiff::printsItsHelp()
{
    const CliResult result = CliRun().execute({u"diff"_s, u"--help"_s});
    QVERIFY(result.output.startsWith(
        "Usage: vantrel-cli diff [options]\n\n"
        "Show what changed between the backup of the last run and the screens.\n\n"
        "Options:\n"
        "  --project DIR        the project directory, which holds \"scr\" and \"mac\"\n"));
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::Done));
}

VANTREL_TEST(QCoreApplication, TestDiff)
#include "tst_diff.moc"
