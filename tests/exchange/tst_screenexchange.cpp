// Putting converted screens into the place of the original ones, and what is written down of it.
#include "ScreenExchange.h"
#include "StageFile.h"
#include "TestProject.h"
#include "TestSuite.h"

#include <QtTest>

using namespace Qt::StringLiterals;

class TestScreenExchange : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsWhichScreensHaveNoBackup();
};

void TestScreenExchange::tellsWhichScreensHaveNoBackup()
{
    const TestProject project;
    const QStringList screens{u"a.psc"_s, u"deep/level/b.psc"_s};
    for (const QString &screen : screens)
        project.write(u"scr/"_s + screen, "ID;1;");
    project.write(u"scr_temp/c.psc"_s, "ID;1;");
    RunFacts facts;
    facts.program = u"a test"_s;
    facts.started = QDateTime::currentDateTime();
    facts.screens = screens;
    StageFile stageFile(project.dir(), facts);
    // Two levels at once cannot be made, so that nothing is renamed and one screen is not backed up.
    const RunArchive archive(project.dir(), {});
    ScreenExchange exchange(project.dir(), facts, archive, stageFile);
    QVERIFY(exchange.backUpAndGoOn());
    const std::optional<RunRecord> record = StageFile::read(project.dir());
    QVERIFY(record);
    QCOMPARE(record->state.stage, RunStage::CopyingBack);
    QCOMPARE(record->state.unsaved, screens);
}

VANTREL_TEST(QCoreApplication, TestScreenExchange)
#include "tst_screenexchange.moc"
