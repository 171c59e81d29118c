// The window while it collects names.
#include "BusySign.h"
#include "Filters_UI.h"
#include "Gates.h"
#include "HeldFile.h"
#include "StopSignals.h"
#include "Surroundings.h"
#include "TestSuite.h"
#include "TestWindow.h"
#include "WatchFolderThread.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QProgressBar>
#include <QTest>
#include <QTimer>

#include <csignal>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

/// Counts how often a widget is painted while it lives.
class PaintCounter final : public QObject
{
public:
    explicit PaintCounter(QWidget &widget) { widget.installEventFilter(this); }

    int count = 0;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

} // namespace

using Leaving = std::function<void(QWidget &window)>;
Q_DECLARE_METATYPE(Leaving)

class TestBusySign : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { forgetSettings(); }

    void showsThatItIsBusyAndEndsAsBefore();
    void leavesTheBarOfARunAlone();
    void repaintsWhatNeedsIt();
    void handlesWhatWaitsWhenItEnds();

    void windowIsBusyWhileItCollects();
    void windowHandlesEventsWhileItCollects();
    void windowLeavesTheProgressOfARun();
    void changesDuringTheCollectionAreNotLost();
    void windowEndsTheCollectionWhenItIsLeft_data();
    void windowEndsTheCollectionWhenItIsLeft();
};

void TestBusySign::showsThatItIsBusyAndEndsAsBefore()
{
    QProgressBar bar;
    bar.setRange(0, 7);
    bar.setValue(3);
    {
        const BusySign sign(bar, BusySign::BarIsFree);
        QCOMPARE(bar.minimum(), 0);
        QCOMPARE(bar.maximum(), 0);
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    }
    QCOMPARE(bar.maximum(), 7);
    QCOMPARE(bar.value(), 3);
    QCOMPARE(QApplication::overrideCursor(), nullptr);
}

void TestBusySign::leavesTheBarOfARunAlone()
{
    QProgressBar bar;
    bar.setRange(0, 7);
    {
        const BusySign sign(bar, BusySign::BarShowsRun);
        QCOMPARE(bar.maximum(), 7);
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
        bar.setValue(5); // the run goes on
    }
    QCOMPARE(bar.value(), 5);
    QCOMPARE(QApplication::overrideCursor(), nullptr);
}

void TestBusySign::repaintsWhatNeedsIt()
{
    TestWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    BusySign sign(*window.ui.progressBar, BusySign::BarShowsRun);
    QCoreApplication::processEvents();
    PaintCounter paints(*window.ui.btnStart);
    window.ui.btnStart->update();
    while (paints.count == 0) // at the latest when it is next due
        sign.keepRepainted();
    QCOMPARE(paints.count, 1);
}

void TestBusySign::handlesWhatWaitsWhenItEnds()
{
    QProgressBar bar;
    bool isHandled = false;
    {
        const BusySign sign(bar, BusySign::BarIsFree);
        QMetaObject::invokeMethod(
            &bar, [&] { isHandled = true; }, Qt::QueuedConnection);
        QVERIFY(!isHandled);
    }
    QVERIFY(isHandled);
}

void TestBusySign::windowIsBusyWhileItCollects()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, "LIB;pump.plb\n");
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    QList<int> maxima;
    QTimer::singleShot(0, &window, [&] { maxima += window.ui.progressBar->maximum(); });
    int answered = 0;
    whenAsked<Filters_UI>(this, answered, [&](Filters_UI *dialog) {
        maxima += window.ui.progressBar->maximum();
        dialog->reject();
    });
    window.onBtnFiltersPressed();
    QCOMPARE(answered, 1);
    QCOMPARE(maxima, QList<int>({0, 100}));
    QCOMPARE(window.ui.progressBar->value(), 0);
}

/// A file that is held keeps the collection waiting, not the window.
void TestBusySign::windowHandlesEventsWhileItCollects()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, "LIB;pump.plb\n");
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    HeldFile screen(project.path(u"scr/a.psc"_s));
    bool isHandled = false;
    QTimer timer;
    connect(&timer, &QTimer::timeout, &window, [&] {
        if (isHandled || !screen.hasReader())
            return;
        isHandled = true;
        screen.release();
    });
    timer.start(0);
    int answered = 0;
    whenAsked<Filters_UI>(this, answered, [](Filters_UI *dialog) { dialog->reject(); });
    window.onBtnFiltersPressed();
    QCOMPARE(answered, 1);
    QVERIFY(isHandled);
    QCOMPARE(window.allFilterNames, QSet<QString>{u"pump.plb"_s});
}

void TestBusySign::windowLeavesTheProgressOfARun()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, "LIB;pump.plb\n");
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    WorkerGate gate(WorkerGate::BeforeFile, *window.converter);
    window.onBtnStartPressed();
    QVERIFY(gate.isReached());
    QCoreApplication::processEvents();
    QCOMPARE(window.ui.progressBar->maximum(), 1);
    int maximum = 0;
    QTimer::singleShot(0, &window, [&] { maximum = window.ui.progressBar->maximum(); });
    int answered = 0;
    whenAsked<Filters_UI>(this, answered, [](Filters_UI *dialog) { dialog->reject(); });
    window.onBtnFiltersPressed();
    QCOMPARE(answered, 1);
    QCOMPARE(maximum, 1);
    gate.open();
    QTRY_VERIFY(window.isIdle());
}

void TestBusySign::changesDuringTheCollectionAreNotLost()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, "LIB;pump.plb\n");
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    waitForQueuedCalls(*window.watcher);
    QCoreApplication::processEvents();
    int answered = 0;
    whenAsked<Filters_UI>(this, answered, [](Filters_UI *dialog) { dialog->reject(); });
    // Told at the end of the collection, when the window handles events once more.
    QTimer::singleShot(0, &window,
                       [&] { QTimer::singleShot(0, &window, [&] { window.onFolderChanged(); }); });
    window.onBtnFiltersPressed();
    QCOMPARE(answered, 1);
    QVERIFY(window.filterNamesStale);
}

void TestBusySign::windowEndsTheCollectionWhenItIsLeft_data()
{
    QTest::addColumn<Leaving>("leave");
    QTest::newRow("closed") << Leaving([](QWidget &window) { window.close(); });
    QTest::newRow("signal") << Leaving([](QWidget & /*window*/) { std::raise(SIGTERM); });
}

/// Although the file that it reads is still held. It asks nothing then.
void TestBusySign::windowEndsTheCollectionWhenItIsLeft()
{
    QFETCH(const Leaving, leave);
    const TestProject project;
    project.write(u"scr/a.psc"_s, "LIB;pump.plb\n");
    std::signal(SIGTERM, SIG_DFL); // one that is ignored stays so
    const StopSignals stopSignals;
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    window.show();
    const HeldFile screen(project.path(u"scr/a.psc"_s));
    bool isCollecting = false;
    QTimer timer;
    connect(&timer, &QTimer::timeout, &window, [&] {
        if (isCollecting || !screen.hasReader())
            return;
        isCollecting = true;
        leave(window);
    });
    timer.start(0);
    QObject context;
    int answered = 0;
    whenAsked<Filters_UI>(&context, answered, [](Filters_UI *dialog) { dialog->reject(); });
    window.onBtnFiltersPressed();
    QVERIFY(isCollecting);
    QCOMPARE(answered, 0);
    QVERIFY(window.filterNamesStale);
    QCOMPARE(window.ui.progressBar->maximum(), 100);
}

VANTREL_TEST(QApplication, TestBusySign)
#include "tst_busysign.moc"
