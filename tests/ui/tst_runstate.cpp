// Which of its runs a window shows.
#include "RunState.h"
#include "TestSuite.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestRunState : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsNothingAtFirst();
    void showsARunUntilItsEnd();
    void knowsTheEndOfACancelledRun();
    void keepsTheNewRunApartFromEarlierOnes();
    void ignoresEndsOfNoRun();
    void staysTheSameObject();
};

void TestRunState::showsNothingAtFirst()
{
    const RunState run;
    QVERIFY(!run.isShown());
    QVERIFY(run.isLastOneTelling());
    QCOMPARE(run.projectDir(), QString());
}

void TestRunState::showsARunUntilItsEnd()
{
    RunState run;
    run.start(u"/plant"_s);
    QVERIFY(run.isShown());
    QCOMPARE(run.projectDir(), u"/plant"_s);
    QCOMPARE(run.takeEnd(), RunState::End::OfShownRun);
    run.leave();
    QVERIFY(!run.isShown());
    QCOMPARE(run.projectDir(), u"/plant"_s); // its reports are still there
}

void TestRunState::knowsTheEndOfACancelledRun()
{
    RunState run;
    run.start(u"/plant"_s);
    run.leave();
    QCOMPARE(run.takeEnd(), RunState::End::OfCancelledRun);
}

void TestRunState::keepsTheNewRunApartFromEarlierOnes()
{
    RunState run;
    for (const QString &project : {u"/first"_s, u"/second"_s}) {
        run.start(project);
        run.leave();
    }
    run.start(u"/third"_s);
    for (int earlier = 0; earlier < 2; ++earlier) {
        QVERIFY(!run.isLastOneTelling());
        QCOMPARE(run.takeEnd(), RunState::End::OfEarlierRun);
        QVERIFY(run.isShown());
    }
    QVERIFY(run.isLastOneTelling());
    QCOMPARE(run.takeEnd(), RunState::End::OfShownRun);
}

void TestRunState::ignoresEndsOfNoRun()
{
    RunState run;
    QCOMPARE(run.takeEnd(), RunState::End::OfCancelledRun);
    run.start(u"/plant"_s);
    QCOMPARE(run.takeEnd(), RunState::End::OfShownRun);
}

void TestRunState::staysTheSameObject()
{
    RunState run;
    const bool &isShown = run.isShown();
    run.start(u"/plant"_s);
    QVERIFY(isShown);
    run.leave();
    QVERIFY(!isShown);
}

VANTREL_TEST(QCoreApplication, TestRunState)
#include "tst_runstate.moc"
