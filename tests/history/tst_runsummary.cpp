// "run.json": what is written is read, and nothing else.
#include "RootFolder.h"
#include "RunSummary.h"
#include "TestProject.h"
#include "TestSuite.h"

#include <QtTest>

using namespace Qt::StringLiterals;

class TestRunSummary : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsWhatItWrote();
    void writesNoTimeThatIsNotKnown();
    void replacesTheOneBefore();
    void readsNothingElse_data();
    void readsNothingElse();
    void saysWhatCannotBeWritten();
};

void TestRunSummary::readsWhatItWrote()
{
    const TestProject project;
    RunSummary summary;
    summary.kind = HistoryKind::Undo;
    summary.program = u"vantrel 9"_s;
    summary.projectDir = u"/pl\u00e4nt"_s;
    summary.started = QDateTime(QDate(2026, 3, 5), QTime(14, 7, 9, 123));
    summary.ended = summary.started.addMSecs(4567);
    summary.shapeNames = QStringList{u"pump.plb"_s, u"v\"alve.plb"_s};
    summary.screens = 412;
    summary.replaced = 58;
    summary.notReplaced = 3;
    summary.errors = 7;
    summary.changeLog = u"log/Vantrel_2026.csv"_s;
    summary.about = u"2026-03-04_00-00-00"_s;
    summary.stages = {{u"backing up"_s, summary.started}, {u"done"_s, summary.ended}};
    project.makeFolder(u"entry"_s);
    QCOMPARE(writeSummary(RootFolder(project.dir()), project.path(u"entry"_s), summary), QString());
    const std::optional<RunSummary> read = readSummary(project.path(u"entry"_s));
    QVERIFY(read);
    QCOMPARE(read->kind, summary.kind);
    QCOMPARE(read->program, summary.program);
    QCOMPARE(read->projectDir, summary.projectDir);
    QCOMPARE(read->started, summary.started);
    QCOMPARE(read->ended, summary.ended);
    QCOMPARE(read->shapeNames, summary.shapeNames);
    QCOMPARE(read->screens, 412);
    QCOMPARE(read->replaced, 58);
    QCOMPARE(read->notReplaced, 3);
    QCOMPARE(read->errors, 7);
    QCOMPARE(read->changeLog, summary.changeLog);
    QCOMPARE(read->about, summary.about);
    QCOMPARE(read->stages.size(), 2);
    QCOMPARE(read->stages.at(1).stage, u"done"_s);
    QCOMPARE(read->stages.at(1).begun, summary.ended);
    QCOMPARE(project.files(u"entry"_s), QStringList{u"run.json"_s});
}

void TestRunSummary::writesNoTimeThatIsNotKnown()
{
    const TestProject project;
    QCOMPARE(writeSummary(RootFolder(project.dir()), project.dir(), {}), QString());
    QVERIFY(!project.read(u"run.json"_s).contains("ended"));
    QVERIFY(!readSummary(project.dir())->ended.isValid());
}

void TestRunSummary::replacesTheOneBefore()
{
    const TestProject project;
    project.write(u"run.json"_s, "{");
    project.write(u".vantrel.copy"_s, "left by an interruption");
    RunSummary summary;
    summary.screens = 3;
    QCOMPARE(writeSummary(RootFolder(project.dir()), project.dir(), summary), QString());
    QCOMPARE(readSummary(project.dir())->screens, 3);
    QCOMPARE(project.files(u""_s), QStringList{u"run.json"_s});
}

void TestRunSummary::readsNothingElse_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("half of it") << QByteArray("{\"format\": 1, \"kind\": \"run\"");
    QTest::newRow("a list") << QByteArray("[1]");
    QTest::newRow("a kind of a later version") << QByteArray("{\"format\": 1, \"kind\": \"merge\"}");
    QTest::newRow("a later format") << QByteArray("{\"format\": 2, \"kind\": \"run\"}");
}

void TestRunSummary::readsNothingElse()
{
    QFETCH(const QByteArray, text);
    const TestProject project;
    project.write(u"run.json"_s, text);
    QVERIFY(!readSummary(project.dir()));
    QVERIFY(!readSummary(project.path(u"nowhere"_s)));
}

void TestRunSummary::saysWhatCannotBeWritten()
{
    const TestProject project;
    const QString path = project.path(u"nowhere"_s);
    QCOMPARE(writeSummary(RootFolder(project.dir()), path, {}),
             u"%1/run.json could not be written: No such file or directory"_s.arg(path));
}

VANTREL_TEST(QCoreApplication, TestRunSummary)
#include "tst_runsummary.moc"
