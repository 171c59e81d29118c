// The command line itself: what it explains and what it does not accept.
#include "CliRun.h"
#include "ExitCode.h"
#include "HeldFile.h"
#include "ProjectTree.h"
#include "SmallPlant.h"
#include "TestSuite.h"

#include <QFile>
#include <QProcess>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;

class TestUsage final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void refusesWrongUsage_data();
    void refusesWrongUsage();
    void explainsItself_data();
    void explainsItself();
    void tellsEveryExitCode_data();
    void tellsEveryExitCode();
    void tellsItsVersion();
    void tellsThatItCouldNotPrint();
    void takesNoRootFolder_data();
    void takesNoRootFolder();
    void followsLinksUpwards();
    void startsNowhereInAFolderThatIsGone();
    void readsNoListWithoutEnd();
    void beginsNothingWhereFewFilesMayBeOpen_data();
    void beginsNothingWhereFewFilesMayBeOpen();
    void keepsItsExitCodeWhereNobodyReads();
    void stopsWhileItReads_data();
    void stopsWhileItReads();
};

namespace {

const QByteArray seeUpdateHelp = "; see \"vantrel-cli update --help\"\n";

void row(const char *name, const QStringList &arguments, const QByteArray &complaint)
{
    QTest::newRow(name) << arguments << complaint;
}

void addShapeRows()
{
    const QByteArray noShape = "no shape was chosen, so that nothing would be replaced; use --shape NAME, "
                               "--shapes-from FILE, --all-shapes or --usable-shapes" +
                               seeUpdateHelp;
    row("no shape option", {u"update"_s, u"--project"_s, u"."_s}, noShape);
    const QByteArray emptyShape = "the name of a shape is empty; use --shape NAME";
    row("empty shape", {u"update"_s, u"--project"_s, u"."_s, u"--shape="_s}, emptyShape + seeUpdateHelp);
    row("empty shape beside another one",
        {u"update"_s, u"--project"_s, u"."_s, u"--shape"_s, u"pump.plb"_s, u"--shape"_s, u" "_s},
        emptyShape + seeUpdateHelp);
    row("empty shape to check", {u"check"_s, u"--project"_s, u"."_s, u"--shape="_s},
        emptyShape + "; see \"vantrel-cli check --help\"\n");
    row("list without a shape", {u"update"_s, u"--project"_s, u"."_s, u"--shapes-from"_s, u"/dev/null"_s},
        noShape);
    row("two sets of shapes", {u"update"_s, u"--project"_s, u"."_s, u"--all-shapes"_s, u"--usable-shapes"_s},
        "--all-shapes and --usable-shapes exclude each other" + seeUpdateHelp);
    row("list that does not exist", {u"update"_s, u"--project"_s, u"."_s, u"--shapes-from"_s, u"no-list"_s},
        "the list of shapes \"no-list\" could not be read" + seeUpdateHelp);
    row("folder as a list", {u"update"_s, u"--project"_s, u"."_s, u"--shapes-from"_s, u"."_s},
        "the list of shapes \".\" could not be read" + seeUpdateHelp);
    row("list without a name", {u"update"_s, u"--project"_s, u"."_s, u"--shapes-from"_s, u""_s},
        "the list of shapes \"\" could not be read" + seeUpdateHelp);
}

} // namespace

void TestUsage::refusesWrongUsage_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("complaint");
    const QByteArray seeHelp = "; see \"vantrel-cli --help\"\n";

    row("no command", {}, "no command was given" + seeHelp);
    row("empty command", {u""_s}, "no command was given" + seeHelp);
    row("misspelt command", {u"updte"_s}, "unknown command \"updte\", did you mean \"update\"?" + seeHelp);
    row("command that nothing is near to", {u"waterworks"_s}, "unknown command \"waterworks\"" + seeHelp);
    row("command in upper case", {u"UPDATE"_s}, "unknown command \"UPDATE\"" + seeHelp);
    row("command beyond ASCII", {u"pünktlich"_s}, "unknown command \"pünktlich\"" + seeHelp);
    row("command with control characters", {u"up\x1b[2J\ndate\x7f"_s},
        "unknown command \"up\\x1b[2J\\ndate\\x7f\"" + seeHelp);
    row("misspelt option before a command", {u"--versoin"_s},
        "unknown option \"--versoin\", did you mean \"--version\"?" + seeHelp);
    row("option of a command before it", {u"--project"_s, u"."_s, u"update"_s},
        "unknown option \"--project\"" + seeHelp);

    row("misspelt option", {u"update"_s, u"--shpe"_s, u"pump.plb"_s},
        "unknown option \"--shpe\", did you mean \"--shape\"?" + seeUpdateHelp);
    row("misspelt option with a value", {u"update"_s, u"--colour=never"_s},
        "unknown option \"--colour\", did you mean \"--color\"?" + seeUpdateHelp);
    row("option that nothing is near to", {u"update"_s, u"--waterworks"_s},
        "unknown option \"--waterworks\"" + seeUpdateHelp);
    row("short option", {u"update"_s, u"-p"_s}, "unknown option \"-p\"" + seeUpdateHelp);
    row("stray word", {u"update"_s, u"--project"_s, u"."_s, u"--all-shapes"_s, u"pump.plb"_s},
        "\"pump.plb\" was not expected" + seeUpdateHelp);
    row("missing value", {u"update"_s, u"--all-shapes"_s, u"--project"_s},
        "missing value after \"--project\"" + seeUpdateHelp);
    row("value of a switch", {u"update"_s, u"--all-shapes=yes"_s},
        "unexpected value after \"--all-shapes\"" + seeUpdateHelp);
    row("wrong colour mode", {u"update"_s, u"--color"_s, u"red"_s},
        "--color takes auto, always or never, not \"red\"" + seeUpdateHelp);
    row("empty colour mode", {u"update"_s, u"--color="_s},
        "--color takes auto, always or never, not \"\"" + seeUpdateHelp);

    const QByteArray noProject = "no project directory was named; use --project DIR" + seeUpdateHelp;
    row("no project", {u"update"_s, u"--all-shapes"_s}, noProject);
    row("empty project", {u"update"_s, u"--all-shapes"_s, u"--project"_s, u""_s}, noProject);
    addShapeRows();
}

void TestUsage::refusesWrongUsage()
{
    QFETCH(const QStringList, arguments);
    QFETCH(const QByteArray, complaint);

    const CliResult result = CliRun().execute(arguments);
    QCOMPARE(result.errorOutput, "vantrel-cli: " + complaint);
    QCOMPARE(result.output, QByteArray());
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::WrongUsage));
}

void TestUsage::explainsItself_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("firstLine");
    QTest::addColumn<QByteArrayList>("entries");
    QTest::newRow("the program") << QStringList{u"--help"_s}
                                 << QByteArray("Usage: vantrel-cli COMMAND [options]")
                                 << QByteArrayList{"update", "--help", "--version"};
    QTest::newRow("update") << QStringList{u"update"_s, u"--help"_s}
                            << QByteArray("Usage: vantrel-cli update [options]")
                            << QByteArrayList{"--project DIR", "--shape NAME",    "--shapes-from FILE",
                                              "--all-shapes",  "--usable-shapes", "--make-folders",
                                              "--force",       "--quiet",         "--color WHEN",
                                              "--help"};
    QTest::newRow("update, with other options")
        << QStringList{u"update"_s, u"--project"_s, u"."_s, u"--help"_s}
        << QByteArray("Usage: vantrel-cli update [options]") << QByteArrayList{"--project DIR"};
}

/// Every entry begins a line and is followed by what it means.
void TestUsage::explainsItself()
{
    QFETCH(const QStringList, arguments);
    QFETCH(const QByteArray, firstLine);
    QFETCH(const QByteArrayList, entries);

    const CliResult result = CliRun().execute(arguments);
    QCOMPARE(result.errorOutput, QByteArray());
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::Done));
    const QByteArrayList lines = result.output.split('\n');
    QCOMPARE(lines.first(), firstLine);
    for (const QByteArray &entry : entries) {
        const auto explains = [&entry](const QByteArray &line) {
            return line.startsWith("  " + entry.leftJustified(20) + ' ') && line.size() > 23;
        };
        QVERIFY2(std::any_of(lines.cbegin(), lines.cend(), explains), entry.constData());
    }
}

void TestUsage::tellsEveryExitCode_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("the program") << QStringList{u"--help"_s};
    QTest::newRow("update") << QStringList{u"update"_s, u"--help"_s};
}

void TestUsage::tellsEveryExitCode()
{
    QFETCH(const QStringList, arguments);

    QByteArray expected = "\nExit codes:\n";
    for (const ExitCodeRow &row : exitCodes) {
        const QByteArray number = QByteArray::number(static_cast<int>(row.code)).rightJustified(3);
        expected += "  " + number + "  " + QByteArray(row.meaning.data(), row.meaning.size()) + '\n';
    }
    const CliResult result = CliRun().execute(arguments);
    const qsizetype table = result.output.indexOf("\nExit codes:\n");
    QCOMPARE(result.output.mid(table), expected);
}

void TestUsage::tellsItsVersion()
{
    const CliResult result = CliRun().execute({u"--version"_s});
    QCOMPARE(result.output, QByteArray("vantrel-cli " VANTREL_VERSION "\n"));
    QCOMPARE(result.errorOutput, QByteArray());
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::Done));
}

void TestUsage::tellsThatItCouldNotPrint()
{
    CliRun run;
    QFile full(u"/dev/full"_s);
    QVERIFY(full.open(QIODevice::WriteOnly));
    run.setOutput(full.handle());
    const CliResult result = run.execute({u"--help"_s});
    QCOMPARE(result.errorOutput, "vantrel-cli: the output could not be written: No space left on device\n");
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::DoneWithFindings));
}

void TestUsage::takesNoRootFolder_data()
{
    QTest::addColumn<QString>("path");
    for (const char *path : {"/", "//", "/.", "/..", "/../..", "/tmp/.."})
        QTest::newRow(path) << QString::fromLatin1(path);
}

void TestUsage::takesNoRootFolder()
{
    QFETCH(const QString, path);
    const CliResult result = CliRun().execute({u"check"_s, u"--project"_s, path});
    QCOMPARE(result.errorOutput,
             "vantrel-cli: the root folder is no project directory; use --project DIR; see \"vantrel-cli "
             "check --help\"\n");
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::WrongUsage));
}

void TestUsage::followsLinksUpwards()
{
    const TestProject project;
    project.makeFolder(u"real/plant"_s);
    project.makeFolder(u"other"_s);
    project.link(u"../real/plant"_s, u"other/link"_s);
    CliRun run;
    run.setWorkingFolder(project.path(u"other"_s));
    const CliResult upwards = run.execute({u"check"_s, u"--json"_s, u"--project"_s, u"link/.."_s});
    QVERIFY2(upwards.output.contains("\"project\":\"" + project.path(u"real"_s).toUtf8() + '"'),
             upwards.output.constData());
}

void TestUsage::startsNowhereInAFolderThatIsGone()
{
    const TestProject project;
    project.makeFolder(u"gone"_s);
    QProcess shell;
    shell.setWorkingDirectory(project.path(u"gone"_s));
    shell.start(u"sh"_s, {u"-c"_s, u"rmdir \"$PWD\" && exec \"$0\" check --project plant"_s,
                          QString::fromLatin1(VANTREL_CLI)});
    QVERIFY(shell.waitForFinished());
    QCOMPARE(
        shell.readAllStandardError(),
        "vantrel-cli: there is no folder \"plant\"; use --project DIR; see \"vantrel-cli check --help\"\n");
    QCOMPARE(shell.exitCode(), static_cast<int>(ExitCode::WrongUsage));
}

void TestUsage::readsNoListWithoutEnd()
{
    const CliResult result =
        CliRun().execute({u"check"_s, u"--project"_s, u"."_s, u"--shapes-from"_s, u"/dev/zero"_s});
    QCOMPARE(result.errorOutput,
             "vantrel-cli: the list of shapes \"/dev/zero\" is longer than 16 MiB; see \"vantrel-cli check "
             "--help\"\n");
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::WrongUsage));
}

void TestUsage::beginsNothingWhereFewFilesMayBeOpen_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("areEnough");
    for (const int count : {8, 20, 60})
        QTest::addRow("%d files", count) << count << false;
    QTest::newRow("100 files") << 100 << true;
}

void TestUsage::beginsNothingWhereFewFilesMayBeOpen()
{
    QFETCH(const int, count);
    QFETCH(const bool, areEnough);
    QProcess shell;
    shell.start(u"sh"_s, {u"-c"_s, u"ulimit -n %1 && exec \"$0\" --version"_s.arg(count),
                          QString::fromLatin1(VANTREL_CLI)});
    QVERIFY(shell.waitForFinished());
    QCOMPARE(shell.readAllStandardError(),
             areEnough ? QByteArray()
                       : "vantrel-cli: too few files may be open at once; nothing was touched\n");
    QCOMPARE(shell.exitCode(), static_cast<int>(areEnough ? ExitCode::Done : ExitCode::Refused));
}

/// A usage error must not become another one because its message cannot be printed.
void TestUsage::keepsItsExitCodeWhereNobodyReads()
{
    CliRun run;
    run.setOutput(CliRun::closedStream);
    run.setErrorOutput(CliRun::closedStream);
    QCOMPARE(run.execute({u"--help"_s}).exitCode, static_cast<int>(ExitCode::Done));
    QCOMPARE(run.execute({u"updte"_s}).exitCode, static_cast<int>(ExitCode::WrongUsage));
}

void TestUsage::stopsWhileItReads_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<int>("signal");
    QTest::addColumn<int>("exitCode");
    for (const QString &command : {u"check"_s, u"shapes"_s, u"diff"_s}) {
        QTest::addRow("%s, SIGINT", qPrintable(command)) << command << SIGINT << 130;
        QTest::addRow("%s, SIGTERM", qPrintable(command)) << command << SIGTERM << 143;
        QTest::addRow("%s, SIGHUP", qPrintable(command)) << command << SIGHUP << 129;
    }
}

/// At most the next screen is named.
void TestUsage::stopsWhileItReads()
{
    QFETCH(const QString, command);
    QFETCH(const int, signal);
    QFETCH(const int, exitCode);
    const TestProject project;
    SmallPlant::makeIn(project);
    for (const QString &folder : {u"scr"_s, u"scr_bak"_s}) {
        project.write(folder + "/b.psc"_L1, SmallPlant::plainScreen());
        project.write(folder + "/c.psc"_L1, SmallPlant::invalidScreen());
        project.write(folder + "/d.psc"_L1, SmallPlant::invalidScreen());
    }
    const QStringList before = describeTree(project.dir());
    HeldFile screen(project.path(u"scr/b.psc"_s));
    CliRun run;
    run.start({command, u"--project"_s, project.dir(), u"--json"_s});
    QVERIFY(screen.waitForReader());
    run.sendSignalAtOnce(signal);
    screen.release();
    const CliResult result = run.finish();
    QVERIFY2(result.output.contains("Stopped. Nothing was changed."), result.output.constData());
    QVERIFY2(!result.output.contains("d.psc"), result.output.constData());
    QCOMPARE(result.exitCode, exitCode);
    QCOMPARE(describeTree(project.dir()), before);
}

VANTREL_TEST(QCoreApplication, TestUsage)
#include "tst_usage.moc"
