// How grave the engine's entries in the log are, and the places that they name.
#include "EngineLog.h"

#include "TestSuite.h"

#include "Recorders.h"

#include <QtTest>

using namespace Qt::StringLiterals;

class TestEngineLog final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesItsPlaces_data();
    void namesItsPlaces();
    void tellsAlertsFromErrors();
};

void TestEngineLog::namesItsPlaces_data()
{
    QTest::addColumn<LogPlace>("place");
    QTest::addColumn<int>("line");
    QTest::newRow("image file") << LogPlace::ImageFile << 1460;
    QTest::newRow("temp file") << LogPlace::TempFile << 1575;
    QTest::newRow("shape file") << LogPlace::ShapeFile << 1620;
    QTest::newRow("copy-back") << LogPlace::CopyBack << 1688;
    QTest::newRow("run") << LogPlace::Run << 1700;
    QTest::newRow("lock") << LogPlace::Lock << 1710;
    QTest::newRow("left over") << LogPlace::LeftOver << 1715;
    QTest::newRow("files") << LogPlace::Files << 1720;
    QTest::newRow("change log") << LogPlace::ChangeLog << 1740;
}

void TestEngineLog::namesItsPlaces()
{
    QFETCH(const LogPlace, place);
    QFETCH(const int, line);
    const LogRecorder log;
    logError(u"text"_s, place);
    QVERIFY2(log.namesSource(0, u"tools/Vantrel/Converter"_s, line), qUtf8Printable(log.lines.value(0)));
}

void TestEngineLog::tellsAlertsFromErrors()
{
    const LogRecorder log;
    logAlert(u"text"_s, LogPlace::CopyBack);
    logError(u"text"_s);
    QCOMPARE(log.entries, (QStringList{u"alert: text"_s, u"error: text"_s}));
    QVERIFY2(log.namesSource(1, u"tools/Vantrel/Converter"_s, 1720), qUtf8Printable(log.lines.value(1)));
}

VANTREL_TEST(QCoreApplication, TestEngineLog)
#include "tst_enginelog.moc"
