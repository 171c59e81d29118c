// Failures that leave a step of the program.
#include "Application.h"
#include "Recorders.h"
#include "Surroundings.h"
#include "TestSuite.h"

#include <QMessageBox>
#include <QTest>
#include <QThread>

#include <functional>
#include <new>
#include <system_error>

using namespace Qt::StringLiterals;

namespace {

QList<QMessageBox *> shownBoxes()
{
    QList<QMessageBox *> boxes;
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        auto *box = qobject_cast<QMessageBox *>(widget);
        if (box != nullptr && box->isVisible())
            boxes += box;
    }
    return boxes;
}

} // namespace

class TestApplication final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void logsWhatLeavesAStep_data();
    void logsWhatLeavesAStep();
    void goesOnBehindAFailedStepOfAThread();

private:             // NOLINT(readability-redundant-access-specifiers)
    int m_boxes = 0; ///< that the one application has shown
};

void TestApplication::logsWhatLeavesAStep_data()
{
    using Fail = void (*)();
    QTest::addColumn<Fail>("fail");
    QTest::addColumn<QString>("failure");
    QTest::newRow("memory") << Fail([] { throw std::bad_alloc(); }) << u"there is not enough memory"_s;
    QTest::newRow("thread") << Fail([] {
        throw std::system_error(EAGAIN, std::generic_category(), "thread");
    }) << u"Resource temporarily unavailable"_s;
    QTest::newRow("something else") << Fail([] { throw 1; }) << u"an unknown failure"_s;
}

void TestApplication::logsWhatLeavesAStep()
{
    using Fail = void (*)();
    QFETCH(const Fail, fail);
    QFETCH(const QString, failure);
    const LogRecorder log;
    bool isNextDone = false;
    QMetaObject::invokeMethod(
        this, [fail] { fail(); }, Qt::QueuedConnection);
    QMetaObject::invokeMethod(
        this, [&] { isNextDone = true; }, Qt::QueuedConnection);
    QTRY_VERIFY(isNextDone);
    QCOMPARE(log.entries, QStringList{u"error: A step of the program failed: "_s + failure});

    // The user is told of the first failure, and not again.
    QCoreApplication::processEvents();
    const QList<QMessageBox *> boxes = shownBoxes();
    QCOMPARE(boxes.size(), m_boxes == 0 ? 1 : 0);
    for (QMessageBox *box : boxes) {
        ++m_boxes;
        QCOMPARE(box->windowTitle(), u"Vantrel Info"_s);
        QVERIFY2(box->text().contains(failure), qPrintable(box->text()));
        box->accept();
    }
}

void TestApplication::goesOnBehindAFailedStepOfAThread()
{
    const LogRecorder log;
    QThread thread;
    QObject worker;
    worker.moveToThread(&thread);
    thread.start();
    std::atomic<bool> isNextDone{false};
    QMetaObject::invokeMethod(
        &worker, [] { throw std::bad_alloc(); }, Qt::QueuedConnection);
    QMetaObject::invokeMethod(
        &worker, [&] { isNextDone = true; }, Qt::QueuedConnection);
    QTRY_VERIFY(isNextDone);
    thread.quit();
    QVERIFY(thread.wait());
    QTRY_COMPARE(log.entries,
                 QStringList{u"error: A step of the program failed: there is not enough memory"_s});
}

VANTREL_TEST(Application, TestApplication)
#include "tst_application.moc"
