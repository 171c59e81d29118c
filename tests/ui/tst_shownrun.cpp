// Which of its runs a window shows.
#include "ShownRun.h"
#include "TestSuite.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestShownRun : public QObject
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

void TestShownRun::showsNothingAtFirst()
{
    const ShownRun run;
    QVERIFY(!run.isShown());
    QVERIFY(run.isLastOneTelling());
    QCOMPARE(run.projectDir(), QString());
}

void TestShownRun::showsARunUntilItsEnd()
{
    ShownRun run;
    run.start(u"/plant"_s);
    QVERIFY(run.isShown());
    QCOMPARE(run.projectDir(), u"/plant"_s);
    QCOMPARE(run.takeEnd(), ShownRun::End::OfShownRun);
    run.leave();
    QVERIFY(!run.isShown());
    QCOMPARE(run.projectDir(), u"/plant"_s); // its reports are still there
}

void TestShownRun::knowsTheEndOfACancelledRun()
{
    ShownRun run;
    run.start(u"/plant"_s);
    run.leave();
    QVERIFY(run.awaitsEndOf(u"/plant"_s));
    QVERIFY(!run.awaitsEndOf(u"/other"_s));
    QCOMPARE(run.takeEnd(), ShownRun::End::OfCancelledRun);
    QVERIFY(!run.awaitsEndOf(u"/plant"_s));
}

void TestShownRun::keepsTheNewRunApartFromEarlierOnes()
{
    ShownRun run;
    for (const QString &project : {u"/first"_s, u"/second"_s}) {
        run.start(project);
        run.leave();
    }
    run.start(u"/third"_s);
    for (const QString &earlier : {u"/first"_s, u"/second"_s}) {
        QVERIFY(run.awaitsEndOf(earlier));
        QVERIFY(!run.isLastOneTelling());
        QCOMPARE(run.takeEnd(), ShownRun::End::OfEarlierRun);
        QVERIFY(run.isShown());
    }
    QVERIFY(run.isLastOneTelling());
    QCOMPARE(run.takeEnd(), ShownRun::End::OfShownRun);
}

void TestShownRun::ignoresEndsOfNoRun()
{
    ShownRun run;
    QCOMPARE(run.takeEnd(), ShownRun::End::OfCancelledRun);
    run.start(u"/plant"_s);
    QCOMPARE(run.takeEnd(), ShownRun::End::OfShownRun);
}

void TestShownRun::staysTheSameObject()
{
    ShownRun run;
    const bool &isShown = run.isShown();
    run.start(u"/plant"_s);
    QVERIFY(isShown);
    run.leave();
    QVERIFY(!isShown);
}

VANTREL_TEST(QCoreApplication, TestShownRun)
#include "tst_shownrun.moc"
