// What a run tells, on its way to the tables.
#include "Backlog.h"
#include "TestSuite.h"

#include <QElapsedTimer>
#include <QTest>

#include <numeric>

namespace {

/// Takes longer than a turn may.
void dawdle()
{
    QElapsedTimer clock;
    clock.start();
    while (!clock.hasExpired(20)) {
    }
}

QList<int> numbersBelow(int count)
{
    QList<int> numbers(count);
    std::iota(numbers.begin(), numbers.end(), 0);
    return numbers;
}

} // namespace

class TestBacklog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void performsTheFirstStepAtOnce();
    void letsWait();
    void keepsTheOrder();
    void performsAtOnceAgainAfterAPause();
    void finishesWhatWaits();
    void finishesWhatStepsAdd();
    void stepsOfATurnMayAddSteps();
    void hearsTheUserBetweenLongSteps();
};

void TestBacklog::performsTheFirstStepAtOnce()
{
    Backlog backlog;
    bool performed = false;
    backlog.add([&] { performed = true; });
    QVERIFY(performed);
    QVERIFY(backlog.isEmpty());
}

void TestBacklog::letsWait()
{
    Backlog backlog;
    int performed = 0;
    for (int step = 0; step < 3; ++step)
        backlog.add([&] { ++performed; });
    QCOMPARE(performed, 1);
    QVERIFY(!backlog.isEmpty());
    QTRY_COMPARE(performed, 3);
    QVERIFY(backlog.isEmpty());
}

void TestBacklog::keepsTheOrder()
{
    constexpr int count = 1000;
    Backlog backlog;
    QList<int> performed;
    for (int step = 0; step < count; ++step) {
        backlog.add([&performed, step] { performed += step; });
        if (step % 100 == 50)
            QCoreApplication::processEvents();
    }
    QTRY_COMPARE(performed.size(), count);
    QCOMPARE(performed, numbersBelow(count));
}

void TestBacklog::performsAtOnceAgainAfterAPause()
{
    Backlog backlog;
    int performed = 0;
    const auto addStep = [&] { backlog.add([&] { ++performed; }); };
    addStep();
    addStep();
    QCOMPARE(performed, 1);
    QTRY_VERIFY(!backlog.findChild<QTimer *>()->isActive());
    QCOMPARE(performed, 2);
    addStep();
    QCOMPARE(performed, 3);
}

void TestBacklog::finishesWhatWaits()
{
    constexpr int count = 100;
    Backlog backlog;
    QList<int> performed;
    for (int step = 0; step < count; ++step)
        backlog.add([&performed, step] { performed += step; });
    QVERIFY(performed.size() < count);
    backlog.finish();
    QCOMPARE(performed, numbersBelow(count));
    QVERIFY(backlog.isEmpty());
}

void TestBacklog::finishesWhatStepsAdd()
{
    Backlog backlog;
    QList<int> performed;
    backlog.add([&] { performed += 0; });
    backlog.add([&] {
        performed += 1;
        backlog.add([&] { performed += 3; });
    });
    backlog.add([&] { performed += 2; });
    backlog.finish();
    QCOMPARE(performed, numbersBelow(4));
}

void TestBacklog::stepsOfATurnMayAddSteps()
{
    Backlog backlog;
    QList<int> performed;
    backlog.add([&] { performed += 0; });
    backlog.add([&] {
        backlog.add([&] { performed += 3; });
        performed += 1; // before those that wait, too
    });
    backlog.add([&] { performed += 2; });
    QTRY_COMPARE(performed.size(), 4);
    QCOMPARE(performed, numbersBelow(4));
}

void TestBacklog::hearsTheUserBetweenLongSteps()
{
    constexpr int count = 6;
    Backlog backlog;
    QList<int> performedBeforeTick;
    int performed = 0;
    QTimer user;
    connect(&user, &QTimer::timeout, &user, [&] { performedBeforeTick += performed; });
    user.start(0);
    for (int step = 0; step < count; ++step) {
        backlog.add([&] {
            dawdle();
            ++performed;
        });
    }
    QTRY_COMPARE(performed, count);
    // Each of them took a turn of its own.
    for (int step = 1; step < count; ++step)
        QVERIFY2(performedBeforeTick.contains(step), QByteArray::number(step));
}

VANTREL_TEST(QCoreApplication, TestBacklog)
#include "tst_backlog.moc"
