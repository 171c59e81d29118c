// The option "--json" of every command, and the documents that describe commands and lines.
#include "CliRun.h"
#include "ExitCode.h"
#include "SmallPlant.h"
#include "TestSuite.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTest>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// A step that changes a small plant before a command looks at it.
using Preparation = void (*)(const TestProject &project);

QStringList jsonOf(const QString &command, const TestProject &project, const QStringList &options = {})
{
    return QStringList{command, u"--json"_s, u"--project"_s, project.dir()} + options;
}

QByteArray textOf(const QString &path)
{
    QFile file(QStringLiteral(VANTREL_SOURCE_DIR) + u'/' + path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QList<QJsonObject> objectsOf(const QByteArray &output)
{
    QList<QJsonObject> objects;
    for (const QByteArray &line : output.split('\n')) {
        if (!line.isEmpty())
            objects.append(QJsonDocument::fromJson(line).object());
    }
    return objects;
}

QStringList kindsOf(const QByteArray &output)
{
    QStringList kinds;
    for (const QJsonObject &object : objectsOf(output))
        kinds.append(object.value("kind"_L1).toString());
    return kinds;
}

/// What is wrong with the lines; empty where they follow the schema.
QByteArray complaintsAbout(const QByteArray &lines)
{
    QProcess process;
    // The interpreter that the system's own packages are installed for.
    process.start(u"/usr/bin/python3"_s, {QStringLiteral(VANTREL_TEST_DATA_DIR "/cli-commands/validate.py"),
                                          QStringLiteral(VANTREL_SOURCE_DIR "/docs/cli.schema.json")});
    process.write(lines);
    process.closeWriteChannel();
    if (!process.waitForFinished(120'000))
        return "the validator did not end";
    const QByteArray complaints = process.readAllStandardOutput() + process.readAllStandardError();
    return process.exitCode() == 0 || !complaints.isEmpty() ? complaints : "the validator failed";
}

void makeExampleIn(const TestProject &project)
{
    copyFolder(QStringLiteral(VANTREL_SOURCE_DIR "/example/waterworks"), project.dir());
}

void makeFaultyPlantIn(const TestProject &project)
{
    SmallPlant::makeIn(project);
    project.write(u"scr/b.psc"_s, SmallPlant::invalidScreen());
    project.write(u"scr/c.psc"_s, SmallPlant::screenWith("gone.plb", "\xff\x1b\x85"));
    project.write(u"scr/d.psc"_s, SmallPlant::screenWith("x\"y\\.plb"));
    project.write(u"scr/a\nb.txt"_s, "x");
    project.write(u"scr/x/y/z.psc"_s, SmallPlant::plainScreen());
    project.write(u"scr_bak/old.psc"_s, "old\r\n\x01\xe9");
    const QByteArray name = QFile::encodeName(project.path(u"scr/f"_s)) + "\xe4.psc";
    QVERIFY(symlink("a.psc", name.constData()) == 0);
}

} // namespace

Q_DECLARE_METATYPE(Preparation)

class TestJson : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void followsTheSchema_data();
    void followsTheSchema();
    void schemaRefusesOtherLines_data();
    void schemaRefusesOtherLines();
    void tellsARunInOrder();
    void tellsADryRunInOrder();
    void givesEveryFieldOfAReport();
    void givesRectanglesWithInclusiveCorners();
    void givesDiffsWhole();
    void refusesWithFindings();
    void tellsHintsOfARunOneByOne();
    void leavesProgressOutWhereQuiet();
    void keepsUsageErrorsAsText();
    void documentsMatchTheTables();
};

void TestJson::followsTheSchema_data()
{
    QTest::addColumn<Preparation>("prepare");
    QTest::addColumn<QString>("command");
    QTest::addColumn<QStringList>("options");

    const QList<QPair<const char *, Preparation>> plants{{"small plant", SmallPlant::makeIn},
                                                         {"example plant", makeExampleIn},
                                                         {"faulty plant", makeFaultyPlantIn},
                                                         {"empty folder", [](const TestProject &) {}}};
    const QList<QStringList> commands{
        {u"check"_s, u"--shape"_s, u"none.plb"_s},
        {u"shapes"_s},
        {u"diff"_s},
        {u"update"_s, u"--all-shapes"_s},
        {u"update"_s, u"--all-shapes"_s, u"--force"_s},
        {u"update"_s, u"--all-shapes"_s, u"--dry-run"_s, u"--fail-on-changes"_s},
        {u"update"_s, u"--all-shapes"_s, u"--dry-run"_s, u"--force"_s},
    };
    for (const auto &[plant, prepare] : plants) {
        for (const QStringList &command : commands) {
            QTest::addRow("%s: %s", plant, qUtf8Printable(command.join(u' ')))
                << prepare << command.first() << command.sliced(1);
        }
    }
}

void TestJson::followsTheSchema()
{
    QFETCH(Preparation, prepare);
    QFETCH(QString, command);
    QFETCH(QStringList, options);
    const TestProject project;
    prepare(project);
    const CliResult result = CliRun().execute(jsonOf(command, project, options));
    QCOMPARE(complaintsAbout(result.output), QByteArray());
    QCOMPARE(result.errorOutput, QByteArray());
    QVERIFY(!result.output.contains('\x1b'));

    const QJsonObject end = objectsOf(result.output).constLast();
    QCOMPARE(end.value("kind"_L1).toString(), u"end"_s);
    QCOMPARE(end.value("command"_L1).toString(), command);
    QCOMPARE(end.value("exitCode"_L1).toInt(), result.exitCode);
    QCOMPARE(kindsOf(result.output).count(u"end"_s), 1);
}

void TestJson::schemaRefusesOtherLines_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("another version") << QByteArray(R"({"kind":"file","path":"a","version":2})");
    QTest::newRow("an unknown kind") << QByteArray(R"({"kind":"fiel","path":"a","version":1})");
    QTest::newRow("a field too few") << QByteArray(R"({"kind":"file","version":1})");
    QTest::newRow("a field too many") << QByteArray(R"({"kind":"file","path":"a","more":1,"version":1})");
    QTest::newRow("another type") << QByteArray(R"({"kind":"file","path":1,"version":1})");
}

void TestJson::schemaRefusesOtherLines()
{
    QFETCH(QByteArray, line);
    QVERIFY(!complaintsAbout(line + '\n').isEmpty());
    QCOMPARE(complaintsAbout(R"({"kind":"file","path":"a","version":1})"), QByteArray());
}

void TestJson::tellsARunInOrder()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr/b.psc"_s, SmallPlant::screenWith("gone.plb"));
    project.write(u"scr/c.psc"_s, SmallPlant::plainScreen());
    const CliResult result = CliRun().execute(jsonOf(u"update"_s, project, {u"--all-shapes"_s}));
    QCOMPARE(kindsOf(result.output),
             (QStringList{u"progress"_s, u"file"_s, u"report"_s, u"progress"_s, u"file"_s, u"report"_s,
                          u"progress"_s, u"file"_s, u"report"_s, u"progress"_s, u"log"_s, u"end"_s}));
    const QList<QJsonObject> lines = objectsOf(result.output);
    QCOMPARE(lines.at(1),
             (QJsonObject{{u"kind"_s, u"file"_s}, {u"path"_s, u"scr/a.psc"_s}, {u"version"_s, 1}}));
    QCOMPARE(lines.at(3),
             (QJsonObject{{u"kind"_s, u"progress"_s}, {u"count"_s, 3}, {u"index"_s, 1}, {u"version"_s, 1}}));
    const QJsonObject counts{{u"files"_s, 3}, {u"replaced"_s, 1}, {u"notReplaced"_s, 1}, {u"errors"_s, 1}};
    QCOMPARE(lines.last().value("counts"_L1).toObject(), counts);
    QVERIFY(lines.last().value("changeLog"_L1).toString().startsWith(project.path(u"log/Vantrel_"_s)));
    QCOMPARE(lines.at(10).value("message"_L1).toString(), u"Could not open Shape File gone.plb"_s);
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::DoneWithErrors));
}

void TestJson::tellsADryRunInOrder()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    const CliResult result = CliRun().execute(
        jsonOf(u"update"_s, project, {u"--all-shapes"_s, u"--dry-run"_s, u"--fail-on-changes"_s}));
    QCOMPARE(kindsOf(result.output),
             (QStringList{u"progress"_s, u"file"_s, u"report"_s, u"progress"_s, u"diff"_s, u"end"_s}));
    const QList<QJsonObject> lines = objectsOf(result.output);
    QCOMPARE(lines.at(2).value("imageFile"_L1).toString(), project.path(u"scr/a.psc"_s));
    const QJsonObject &end = lines.constLast();
    QCOMPARE(end.value("dryRun"_L1).toBool(), true);
    QCOMPARE(end.value("changeLog"_L1), QJsonValue());
    QCOMPARE(end.value("exitCode"_L1).toInt(), 5);
    QCOMPARE(
        end.value("message"_L1).toString(),
        u"A run would change 1 screen; to have it do so: vantrel-cli update --project %1 --all-shapes"_s.arg(
            project.dir()));
}

void TestJson::givesEveryFieldOfAReport()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    const CliResult result = CliRun().execute(jsonOf(u"update"_s, project, {u"--all-shapes"_s}));
    const QJsonObject rect{{u"left"_s, 10}, {u"top"_s, 10}, {u"right"_s, 29}, {u"bottom"_s, 29}};
    const QJsonObject report = objectsOf(result.output).at(2);
    QCOMPARE(report.value("status"_L1).toString(), u"REPLACE"_s);
    QCOMPARE(report.value("imageFile"_L1).toString(), project.path(u"scr/a.psc"_s));
    QCOMPARE(report.value("shapeFile"_L1).toString(), u"pump.plb"_s);
    QCOMPARE(report.value("imageObject"_L1).toString(), u"Obj/Pump"_s);
    QCOMPARE(report.value("shapeObject"_L1).toString(), u"Lib/Pump"_s);
    QCOMPARE(report.value("initText"_L1).toString(), u"Plant/Pump"_s);
    QCOMPARE(report.value("error"_L1).toString(), QString());
    QCOMPARE(report.value("level"_L1).toInt(), 1);
    QCOMPARE(report.value("rect"_L1).toObject(), rect);
    QVERIFY(report.value("iconRect"_L1).isObject());
    QCOMPARE(report.value("position"_L1).toObject().value("left"_L1).toInt(), 10);
}

void TestJson::givesRectanglesWithInclusiveCorners()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr/a.psc"_s, "ID;1;Icon;State\nLIB;pump.plb;1;Plant/P;Obj/P\n"
                                  "PSDV;-5;7;-5;7;2;1;15;8;1;0;1;0\n");
    const CliResult result = CliRun().execute(jsonOf(u"update"_s, project, {u"--all-shapes"_s}));
    const QJsonObject point{{u"left"_s, -5}, {u"top"_s, 7}, {u"right"_s, -5}, {u"bottom"_s, 7}};
    const QJsonObject report = objectsOf(result.output).at(2);
    QCOMPARE(report.value("rect"_L1).toObject(), point);
    QCOMPARE(report.value("iconRect"_L1).toObject(), point);
}

void TestJson::givesDiffsWhole()
{
    const TestProject project;
    project.write(u"scr_bak/a.psc"_s, "same\nold\t\xb3\r\n");
    project.write(u"scr/a.psc"_s, "same\nnew");
    const CliResult result = CliRun().execute(jsonOf(u"diff"_s, project));
    const QJsonObject hunk{
        {u"beforeStart"_s, 1},
        {u"beforeCount"_s, 2},
        {u"afterStart"_s, 1},
        {u"afterCount"_s, 2},
        {u"lines"_s,
         QJsonArray{u" same"_s, u"-old\t\u00b3\r"_s, u"+new"_s, u"\\ No newline at end of file"_s}},
    };
    const QJsonObject difference{
        {u"kind"_s, u"diff"_s},
        {u"version"_s, 1},
        {u"path"_s, u"scr/a.psc"_s},
        {u"change"_s, u"changed"_s},
        {u"before"_s, u"scr_bak/a.psc"_s},
        {u"after"_s, u"scr/a.psc"_s},
        {u"linesAdded"_s, 1},
        {u"linesRemoved"_s, 1},
        {u"hunks"_s, QJsonArray{hunk}},
    };
    QCOMPARE(objectsOf(result.output).at(2), difference);
}

void TestJson::refusesWithFindings()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr/b.psc"_s, SmallPlant::invalidScreen());
    const CliResult result = CliRun().execute(jsonOf(u"update"_s, project, {u"--all-shapes"_s}));
    QCOMPARE(kindsOf(result.output), (QStringList{u"finding"_s, u"end"_s}));
    const QJsonObject finding{
        {u"kind"_s, u"finding"_s},
        {u"version"_s, 1},
        {u"check"_s, u"screen-invalid"_s},
        {u"severity"_s, u"obstacle"_s},
        {u"path"_s, u"scr/b.psc"_s},
        {u"line"_s, 2},
        {u"text"_s, u"Image File [line 2]: PSDV... not enough parameters (must be >= 12)"_s},
        {u"advice"_s, u"mend the line, or move the file out of \"scr\""_s},
    };
    QCOMPARE(objectsOf(result.output).constFirst(), finding);
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::Refused));
}

void TestJson::tellsHintsOfARunOneByOne()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    project.write(u"scr/b.psc.bak"_s, SmallPlant::plainScreen());
    project.write(u"scr/c.psc.bak"_s, SmallPlant::plainScreen());
    const CliResult result =
        CliRun().execute(jsonOf(u"update"_s, project, {u"--all-shapes"_s, u"--quiet"_s}));
    QCOMPARE(kindsOf(result.output).mid(0, 3), (QStringList{u"finding"_s, u"finding"_s, u"report"_s}));
    const CliResult checked = CliRun().execute(jsonOf(u"check"_s, project));
    for (const QByteArray &line : result.output.split('\n').mid(0, 2))
        QVERIFY2(checked.output.contains(line), line.constData());
}

void TestJson::leavesProgressOutWhereQuiet()
{
    const TestProject project;
    SmallPlant::makeIn(project);
    const CliResult result =
        CliRun().execute(jsonOf(u"update"_s, project, {u"--all-shapes"_s, u"--quiet"_s}));
    QCOMPARE(kindsOf(result.output), (QStringList{u"report"_s, u"end"_s}));
}

void TestJson::keepsUsageErrorsAsText()
{
    const CliResult result = CliRun().execute({u"check"_s, u"--json"_s});
    QCOMPARE(result.output, QByteArray());
    QCOMPARE(result.errorOutput, QByteArray("vantrel-cli: no project directory was named; use --project DIR; "
                                            "see \"vantrel-cli check --help\"\n"));
    QCOMPARE(result.exitCode, static_cast<int>(ExitCode::WrongUsage));
}

/// The tables in the document are those that the program prints, and so is the schema.
void TestJson::documentsMatchTheTables()
{
    const QByteArray tables = CliRun().execute({u"--print-docs"_s}).output;
    QVERIFY(tables.contains("\n### Exit codes\n"));
    QVERIFY2(textOf(u"docs/cli.md"_s).endsWith("\n## Reference\n" + tables),
             "docs/cli.md must end with what vantrel-cli --print-docs prints");
    QVERIFY2(textOf(u"docs/cli.schema.json"_s) == CliRun().execute({u"--print-schema"_s}).output,
             "docs/cli.schema.json must be what vantrel-cli --print-schema prints");
}

VANTREL_TEST(QCoreApplication, TestJson)
#include "tst_json.moc"
