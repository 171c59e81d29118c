// Arithmetic on coordinates at and beyond the ends of their range.
#include "TestSuite.h"
#include "WrapArithmetic.h"

#include <QtTest>

#include <limits>

namespace {
constexpr int least = std::numeric_limits<int>::min();
constexpr int most = std::numeric_limits<int>::max();

QRect corners(int x1, int y1, int x2, int y2)
{
    return {QPoint(x1, y1), QPoint(x2, y2)};
}
} // namespace

class TestWrapArithmetic : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void addsAndSubtractsAround_data();
    void addsAndSubtractsAround();
    void multipliesAround();
    void countsInclusiveEnds_data();
    void countsInclusiveEnds();
    void findsTheMiddleTruncatingTowardZero_data();
    void findsTheMiddleTruncatingTowardZero();
    void findsTheCentreOfARectangle();
    void subtractsPointsAround();
    void keepsAreasBeyondThirtyTwoBits_data();
    void keepsAreasBeyondThirtyTwoBits();
};

void TestWrapArithmetic::addsAndSubtractsAround_data()
{
    QTest::addColumn<int>("a");
    QTest::addColumn<int>("b");
    QTest::addColumn<int>("sum");
    QTest::addColumn<int>("difference");

    QTest::newRow("small numbers") << 5 << -7 << -2 << 12;
    QTest::newRow("beyond the greatest") << most << 1 << least << most - 1;
    QTest::newRow("beyond the least") << least << 1 << least + 1 << most;
    QTest::newRow("least and least") << least << least << 0 << 0;
    QTest::newRow("zero and least") << 0 << least << least << least;
}

void TestWrapArithmetic::addsAndSubtractsAround()
{
    QFETCH(const int, a);
    QFETCH(const int, b);
    QTEST(Wrap::add(a, b), "sum");
    QTEST(Wrap::subtract(a, b), "difference");
}

void TestWrapArithmetic::multipliesAround()
{
    QCOMPARE(Wrap::multiply(-3, 4), -12);
    QCOMPARE(Wrap::multiply(most, 2), -2);
    QCOMPARE(Wrap::multiply(least, 2), 0);
    QCOMPARE(Wrap::multiply(least, -1), least);
    QCOMPARE(Wrap::multiply(65536, 65536), 0);
}

void TestWrapArithmetic::countsInclusiveEnds_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("last");
    QTest::addColumn<int>("extent");

    QTest::newRow("one point") << 7 << 7 << 1;
    QTest::newRow("a hundred points") << 100 << 199 << 100;
    QTest::newRow("nothing") << 0 << -1 << 0;
    QTest::newRow("turned round") << 99999 << 0 << -99998;
    QTest::newRow("the whole range") << least << most << 0;
    QTest::newRow("from zero to the greatest") << 0 << most << least;
}

void TestWrapArithmetic::countsInclusiveEnds()
{
    QFETCH(const int, first);
    QFETCH(const int, last);
    QTEST(Wrap::extent(first, last), "extent");
}

void TestWrapArithmetic::findsTheMiddleTruncatingTowardZero_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("last");
    QTest::addColumn<int>("middle");

    QTest::newRow("even extent") << 100 << 199 << 150;
    QTest::newRow("odd extent") << 0 << 8 << 4;
    QTest::newRow("one point") << 7 << 7 << 7;
    QTest::newRow("negative ends") << -10 << -1 << -5;
    // -3 / 2 is -1, not -2.
    QTest::newRow("odd negative extent") << 4 << 0 << 3;
    // A cleared record: 99999 + (-99998) / 2.
    QTest::newRow("cleared") << 99999 << 0 << 50000;
    QTest::newRow("extent that wraps") << 0 << most << -1073741824;
}

void TestWrapArithmetic::findsTheMiddleTruncatingTowardZero()
{
    QFETCH(const int, first);
    QFETCH(const int, last);
    QTEST(Wrap::middle(first, last), "middle");
}

void TestWrapArithmetic::findsTheCentreOfARectangle()
{
    QCOMPARE(Wrap::centre(corners(100, 50, 199, 149)), QPoint(150, 100));
    QCOMPARE(Wrap::centre(corners(0, 0, 49, 49)), QPoint(25, 25));
    QCOMPARE(Wrap::centre(corners(99999, 99999, 0, 0)), QPoint(50000, 50000));
}

void TestWrapArithmetic::subtractsPointsAround()
{
    QCOMPARE(Wrap::subtract(QPoint(1, least), QPoint(4, 1)), QPoint(-3, most));
}

void TestWrapArithmetic::keepsAreasBeyondThirtyTwoBits_data()
{
    QTest::addColumn<QRect>("rect");
    QTest::addColumn<qint64>("area");

    QTest::newRow("one point") << corners(3, 3, 3, 3) << qint64{1};
    QTest::newRow("a screen") << corners(0, 0, 639, 479) << qint64{307200};
    QTest::newRow("more than 32 bits") << corners(0, 0, 69999, 69999) << qint64{4900000000};
    QTest::newRow("greatest by greatest") << corners(1, 1, most, most) << qint64{most} * most;
    QTest::newRow("a width that wraps to nothing") << corners(least, 0, most, 9) << qint64{0};
    QTest::newRow("a width that wraps to the least") << corners(0, 0, most, 1) << qint64{least} * 2;
}

void TestWrapArithmetic::keepsAreasBeyondThirtyTwoBits()
{
    QFETCH(const QRect, rect);
    QTEST(Wrap::area(rect), "area");
}

VANTREL_TEST(TestSuite::NoApplication, TestWrapArithmetic)
#include "tst_wraparithmetic.moc"
