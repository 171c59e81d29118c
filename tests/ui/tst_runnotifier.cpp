// What the desktop is told of a run.
#include "Gates.h"
#include "PrivateBus.h"
#include "RunNotifier.h"
#include "Surroundings.h"
#include "TestSuite.h"
#include "TestWindow.h"

#include <QApplication>
#include <QDBusConnectionInterface>
#include <QSettings>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A notifier with a clock that the test moves.
struct Notifier
{
    explicit Notifier(QDBusConnection connection, const QWidget &window)
        : bus(std::move(connection))
        , notifier(window, {[this] { return bus; }, [this] { return now; }})
    {
    }

    /// A run that lasts so long.
    void run(std::chrono::milliseconds duration)
    {
        notifier.runBegins(u"/plants/north"_s);
        now += duration;
        notifier.runEnds();
    }
    /// All that was sent before has arrived when this returns.
    void flush() const { QVERIFY(bus.interface()->registeredServiceNames().isValid()); }

    QDBusConnection bus;
    std::chrono::milliseconds now{1h};
    RunNotifier notifier;
};

/// Handles what a service was sent before.
void receive(const PrivateBus &bus, DesktopService &desktop)
{
    const qsizetype count = desktop.progress.size();
    QDBusMessage mark =
        QDBusMessage::createSignal(u"/mark"_s, u"com.canonical.Unity.LauncherEntry"_s, u"Update"_s);
    mark << u"mark"_s << QVariantMap();
    // Through the same connection as what it follows: the bus keeps that order.
    bus.connection(u"program"_s).send(mark);
    QTRY_VERIFY(!desktop.progress.isEmpty() && desktop.progress.last().program == "mark"_L1);
    QVERIFY(desktop.progress.size() > count);
    desktop.progress.removeLast();
}

} // namespace

class TestRunNotifier : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init() { forgetSettings(); }
    void cleanup();

    void tellsTheEndOfALongRun();
    void keepsQuiet_data();
    void keepsQuiet();
    void keepsQuietInAnActiveWindow();
    void countsOnlyTheLastRun();
    void namesOfProjectsAreNoMarkup();

    void showsProgressInWholePerCents();
    void showsProgressOfVeryManyFiles();
    void removesProgressAtTheEnd_data();
    void removesProgressAtTheEnd();
    void showsNoProgressWithoutARun();

    void toleratesADesktopWithout_data();
    void toleratesADesktopWithout();

    void windowTellsItsRuns();
    void windowTellsNoCancelledRun();
    void windowTellsNoRunThatItLeaves_data();
    void windowTellsNoRunThatItLeaves();

private: // NOLINT(readability-redundant-access-specifiers)
    QDBusConnection program() const { return m_bus->connection(u"program"_s); }

    std::unique_ptr<PrivateBus> m_bus;
};

void TestRunNotifier::initTestCase()
{
    m_bus = std::make_unique<PrivateBus>();
    // For what is not given a connection; read when it is first asked for.
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus->address().toUtf8());
}

void TestRunNotifier::cleanup()
{
    QDBusConnection::disconnectFromBus(u"program"_s);
}

void TestRunNotifier::tellsTheEndOfALongRun()
{
    DesktopService desktop(*m_bus, DesktopService::Everything);
    const QWidget window;
    Notifier test(program(), window);
    test.notifier.runBegins(u"/plants/north"_s);
    for (const int status : {0, 0, 1, 2, 0, 2})
        test.notifier.countReport(status);
    test.now += 10'001ms;
    test.notifier.runEnds();
    QTRY_COMPARE(desktop.notifications.size(), 1);
    QCOMPARE(desktop.notifications.first().program, u"Vantrel"_s);
    QCOMPARE(desktop.notifications.first().summary, u"The update of north has ended"_s);
    QCOMPARE(desktop.notifications.first().body, u"Objects replaced: 3, errors: 2"_s);
    // Shown with the program's icon, as long as the desktop shows others.
    QCOMPARE(desktop.notifications.first().icon, u"vantrel"_s);
    QCOMPARE(desktop.notifications.first().hints.value(u"desktop-entry"_s), QVariant(u"vantrel"_s));
    QCOMPARE(desktop.notifications.first().timeout, -1);
    test.notifier.runEnds(); // the end is told once
    receive(*m_bus, desktop);
    QCOMPARE(desktop.notifications.size(), 1);
}

void TestRunNotifier::keepsQuiet_data()
{
    QTest::addColumn<std::chrono::milliseconds>("duration");
    QTest::addColumn<bool>("isCancelled");
    QTest::newRow("short run") << std::chrono::milliseconds(10s) << false;
    QTest::newRow("cancelled run") << std::chrono::milliseconds(1h) << true;
}

void TestRunNotifier::keepsQuiet()
{
    QFETCH(const std::chrono::milliseconds, duration);
    QFETCH(const bool, isCancelled);
    DesktopService desktop(*m_bus, DesktopService::Everything);
    const QWidget window;
    Notifier test(program(), window);
    test.notifier.runBegins(u"/plants/north"_s);
    test.now += duration;
    if (isCancelled)
        test.notifier.runIsCancelled();
    test.notifier.runEnds(); // as the worker tells it in any case
    receive(*m_bus, desktop);
    QCOMPARE(desktop.notifications.size(), 0);
}

void TestRunNotifier::keepsQuietInAnActiveWindow()
{
    DesktopService desktop(*m_bus, DesktopService::Everything);
    QWidget window;
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    Notifier test(program(), window);
    test.run(1h);
    receive(*m_bus, desktop);
    QCOMPARE(desktop.notifications.size(), 0);
    window.hide();
    QTRY_VERIFY(!window.isActiveWindow());
    test.run(1h);
    QTRY_COMPARE(desktop.notifications.size(), 1);
}

void TestRunNotifier::countsOnlyTheLastRun()
{
    DesktopService desktop(*m_bus, DesktopService::Everything);
    const QWidget window;
    Notifier test(program(), window);
    test.notifier.countReport(0);
    test.notifier.countReport(2);
    test.run(1min);
    QTRY_COMPARE(desktop.notifications.size(), 1);
    QCOMPARE(desktop.notifications.first().body, u"Objects replaced: 0, errors: 0"_s);
}

void TestRunNotifier::namesOfProjectsAreNoMarkup()
{
    DesktopService desktop(*m_bus, DesktopService::Everything);
    const QWidget window;
    Notifier test(program(), window);
    test.notifier.runBegins(u"/plants/<b>%1"_s);
    test.now += 1min;
    test.notifier.runEnds();
    QTRY_COMPARE(desktop.notifications.size(), 1);
    QCOMPARE(desktop.notifications.first().summary, u"The update of <b>%1 has ended"_s); // always plain
    QVERIFY(!desktop.notifications.first().body.contains(u'<'));
}

void TestRunNotifier::showsProgressInWholePerCents()
{
    DesktopService desktop(*m_bus, DesktopService::TaskBarOnly);
    const QWidget window;
    Notifier test(program(), window);
    test.notifier.runBegins(u"/plants/north"_s);
    constexpr int count = 30'000;
    for (int done = 0; done <= count; ++done)
        test.notifier.showProgress(count, done);
    test.notifier.showProgress(0, 0); // a run over no file
    receive(*m_bus, desktop);
    QCOMPARE(desktop.progress.size(), 101);
    QCOMPARE(desktop.progress.at(0).program, u"application://vantrel.desktop"_s);
    QCOMPARE(desktop.progress.at(0).progress, 0.0);
    QCOMPARE(desktop.progress.at(50).progress, 0.5);
    QCOMPARE(desktop.progress.at(100).progress, 1.0);
    QVERIFY(desktop.progress.at(100).isVisible);
}

void TestRunNotifier::showsProgressOfVeryManyFiles()
{
    DesktopService desktop(*m_bus, DesktopService::TaskBarOnly);
    const QWidget window;
    Notifier test(program(), window);
    test.notifier.runBegins(u"/plants/north"_s);
    test.notifier.showProgress(40'000'000, 30'000'000);
    receive(*m_bus, desktop);
    QCOMPARE(desktop.progress.size(), 1);
    QCOMPARE(desktop.progress.first().progress, 0.75);
}

void TestRunNotifier::removesProgressAtTheEnd_data()
{
    QTest::addColumn<bool>("isCancelled");
    QTest::newRow("ended") << false;
    QTest::newRow("cancelled") << true;
}

void TestRunNotifier::removesProgressAtTheEnd()
{
    QFETCH(const bool, isCancelled);
    DesktopService desktop(*m_bus, DesktopService::TaskBarOnly);
    const QWidget window;
    Notifier test(program(), window);
    test.notifier.runBegins(u"/plants/north"_s);
    test.notifier.showProgress(2, 1);
    if (isCancelled)
        test.notifier.runIsCancelled();
    else
        test.notifier.runEnds();
    test.notifier.runEnds();
    receive(*m_bus, desktop);
    QCOMPARE(desktop.progress.size(), 2);
    QVERIFY(desktop.progress.first().isVisible);
    QVERIFY(!desktop.progress.last().isVisible);
}

void TestRunNotifier::showsNoProgressWithoutARun()
{
    DesktopService desktop(*m_bus, DesktopService::TaskBarOnly);
    const QWidget window;
    Notifier test(program(), window);
    test.notifier.showProgress(2, 1);
    test.notifier.runBegins(u"/plants/north"_s);
    test.notifier.runIsCancelled();
    test.notifier.showProgress(2, 1); // the worker has not seen it yet
    receive(*m_bus, desktop);
    QCOMPARE(desktop.progress.size(), 0);
}

void TestRunNotifier::toleratesADesktopWithout_data()
{
    QTest::addColumn<bool>("hasBus");
    QTest::newRow("services") << true;
    QTest::newRow("bus") << false;
}

void TestRunNotifier::toleratesADesktopWithout()
{
    QFETCH(const bool, hasBus);
    const WarningRecorder recorder;
    const QWidget window;
    Notifier test(hasBus ? program() : QDBusConnection::connectToBus(u"unix:path=/no/such"_s, u"program"_s),
                  window);
    QCOMPARE(test.bus.isConnected(), hasBus);
    test.notifier.runBegins(u"/plants/north"_s);
    test.notifier.showProgress(2, 1);
    test.now += 1min;
    test.notifier.runEnds();
    if (hasBus)
        test.flush();
    QCoreApplication::processEvents();
    QCOMPARE(WarningRecorder::warnings(), QStringList());
}

void TestRunNotifier::windowTellsItsRuns()
{
    const TestProject project;
    copyExamplePlant(project);
    DesktopService desktop(*m_bus, DesktopService::Everything);
    {
        TestWindow window; // with the session's bus
        window.ui.lnProjectPath->setText(project.dir());
        window.onBtnStartPressed();
        QTRY_VERIFY(window.isIdle());
        QTRY_VERIFY(!desktop.progress.isEmpty() && !desktop.progress.last().isVisible);
        QVERIFY(desktop.progress.size() > 10);
        QCOMPARE(desktop.notifications.size(), 0); // it was short
    }
    TestWindow window;
    std::chrono::milliseconds now{};
    window.notifier = std::make_unique<RunNotifier>(
        window, RunNotifier::Surroundings{[this] { return program(); }, [&] { return now += 1min; }});
    window.ui.lnProjectPath->setText(project.dir());
    window.selectedFilterNames = {u"tank.plb"_s};
    window.onBtnStartPressed();
    QTRY_COMPARE(desktop.notifications.size(), 1);
    QCOMPARE(desktop.notifications.first().summary, u"The update of plant has ended"_s);
    const qsizetype replaced = window.ui.rplShapeTable->findItems(u"REPLACE"_s, Qt::MatchExactly).size();
    const qsizetype errors = window.ui.rplShapeTable->findItems(u"ERROR"_s, Qt::MatchExactly).size();
    QVERIFY(replaced > 0);
    QCOMPARE(desktop.notifications.first().body,
             u"Objects replaced: %1, errors: %2"_s.arg(replaced).arg(errors));
    QTRY_VERIFY(window.isIdle());
}

void TestRunNotifier::windowTellsNoCancelledRun()
{
    const TestProject project;
    copyExamplePlant(project);
    DesktopService desktop(*m_bus, DesktopService::Everything);
    TestWindow window;
    std::chrono::milliseconds now{};
    window.notifier = std::make_unique<RunNotifier>(
        window, RunNotifier::Surroundings{[this] { return program(); }, [&] { return now += 1min; }});
    window.ui.lnProjectPath->setText(project.dir());
    WorkerGate gate(WorkerGate::BeforeFile, *window.converter);
    window.onBtnStartPressed();
    QVERIFY(gate.isReached());
    window.onBtnStartPressed();
    gate.open();
    waitForQueuedCalls(*window.converter);
    QCoreApplication::processEvents();
    QTRY_VERIFY(window.isIdle());
    receive(*m_bus, desktop);
    QCOMPARE(desktop.notifications.size(), 0);
}

void TestRunNotifier::windowTellsNoRunThatItLeaves_data()
{
    QTest::addColumn<bool>("isClosed");
    QTest::newRow("closed") << true;
    QTest::newRow("destroyed") << false;
}

void TestRunNotifier::windowTellsNoRunThatItLeaves()
{
    QFETCH(const bool, isClosed);
    const TestProject project;
    copyExamplePlant(project);
    DesktopService desktop(*m_bus, DesktopService::Everything);
    auto window = std::make_unique<TestWindow>();
    std::chrono::milliseconds now{};
    window->notifier = std::make_unique<RunNotifier>(
        *window, RunNotifier::Surroundings{[this] { return program(); }, [&] { return now += 1min; }});
    window->ui.lnProjectPath->setText(project.dir());
    WorkerGate gate(WorkerGate::BeforeFile, *window->converter);
    window->onBtnStartPressed();
    QVERIFY(gate.isReached());
    QTRY_VERIFY(!desktop.progress.isEmpty());
    if (isClosed) {
        window->close();
        QTRY_VERIFY(!desktop.progress.last().isVisible); // though the worker is still at it
    }
    gate.openWhenStopped(*window->converter);
    window.reset();
    receive(*m_bus, desktop);
    QVERIFY(!desktop.progress.last().isVisible);
    QCOMPARE(desktop.notifications.size(), 0);
}

VANTREL_TEST(QApplication, TestRunNotifier)
#include "tst_runnotifier.moc"
