// The bar that is there when the window has something to say.
#include "MessageBar.h"
#include "Surroundings.h"
#include "TestSuite.h"
#include "TestWindow.h"
#include "Translations.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace {

Message someMessage(MessageLevel level, const QString &text, int &pressed)
{
    return {
        .level = level,
        .text = text,
        .buttons = {{.text = u"&Do It"_s, .name = u"btnDoIt"_s, .toolTip = u"Does it"_s, .press = [&pressed] {
                         ++pressed;
                     }}}};
}

MessageBar &barOf(const TestWindow &window)
{
    return *window.findChild<MessageBar *>(u"messageBar"_s);
}

QString textOf(const MessageBar &bar)
{
    return bar.findChild<QLabel *>(u"messageText"_s)->text();
}

/// Of what stands in the form, but for the window's frame.
QList<QRect> placesOf(const TestWindow &window)
{
    return {window.ui.lnProjectPath->geometry(), window.ui.label_2->geometry(),
            window.ui.rplShapeTable->geometry(), window.ui.logTable->geometry(),
            window.ui.btnStart->geometry(),      window.ui.progressBar->geometry()};
}

} // namespace

class TestMessageBar final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { forgetSettings(); }

    void takesNoRoomWithoutAMessage();
    void showsTextsAsTheyAre();
    void showsOneMessageAtATime();
    void doesWhatIsPressed();
    void mayTellWhileItsButtonIsPressed();
    void canBeClosed();
    void isReachedByKeys();
    void speaksGerman();
};

void TestMessageBar::takesNoRoomWithoutAMessage()
{
    TestWindow window;
    window.resize(800, 600);
    window.show();
    const QList<QRect> places = placesOf(window);
    QVERIFY(barOf(window).isHidden());
    // The form without any bar.
    window.ui.gridLayout->removeWidget(&barOf(window));
    window.ui.gridLayout->activate();
    QCOMPARE(placesOf(window), places);
    int pressed = 0;
    window.ui.gridLayout->addWidget(&barOf(window), 3, 0, 1, 3);
    barOf(window).tell(someMessage(MessageLevel::Error, u"text"_s, pressed));
    QTRY_VERIFY(window.ui.label_2->y() > places.at(1).y());
    const int bottom = barOf(window).mapTo(&window, QPoint(0, barOf(window).height())).y();
    QVERIFY(bottom <= window.ui.label_2->y());
    barOf(window).withdraw();
    QTRY_COMPARE(placesOf(window), places);
}

void TestMessageBar::showsTextsAsTheyAre()
{
    QWidget parent;
    MessageBar bar(&parent);
    bar.tell({.level = MessageLevel::Warning, .text = u"<b>a</b> & b"_s, .buttons = {}});
    const auto *label = bar.findChild<QLabel *>(u"messageText"_s);
    QCOMPARE(label->text(), u"<b>a</b> & b"_s);
    QCOMPARE(label->textFormat(), Qt::PlainText);
    QVERIFY(bar.findChildren<QPushButton *>().isEmpty());
}

void TestMessageBar::showsOneMessageAtATime()
{
    QWidget parent;
    MessageBar bar(&parent);
    int pressed = 0;
    bar.tell(someMessage(MessageLevel::Information, u"first"_s, pressed));
    bar.tell(someMessage(MessageLevel::Error, u"second"_s, pressed));
    QVERIFY(!bar.isHidden());
    QCOMPARE(textOf(bar), u"second"_s);
    QCOMPARE(bar.accessibleName(), u"Error: second"_s);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(bar.findChildren<QPushButton *>().size(), 1);
}

void TestMessageBar::doesWhatIsPressed()
{
    QWidget parent;
    MessageBar bar(&parent);
    int pressed = 0;
    bar.tell(someMessage(MessageLevel::Information, u"text"_s, pressed));
    auto *button = bar.findChild<QPushButton *>(u"btnDoIt"_s);
    QCOMPARE(button->toolTip(), u"Does it"_s);
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(pressed, 1);
    QVERIFY(bar.isHidden());
}

void TestMessageBar::mayTellWhileItsButtonIsPressed()
{
    QWidget parent;
    MessageBar bar(&parent);
    bar.tell({.level = MessageLevel::Information,
              .text = u"before"_s,
              .buttons = {{.text = u"&Do It"_s, .name = u"btnDoIt"_s, .toolTip = {}, .press = [&bar] {
                               bar.tell({.level = MessageLevel::Warning, .text = u"after"_s, .buttons = {}});
                           }}}});
    QTest::mouseClick(bar.findChild<QPushButton *>(u"btnDoIt"_s), Qt::LeftButton);
    QVERIFY(!bar.isHidden());
    QCOMPARE(textOf(bar), u"after"_s);
}

void TestMessageBar::canBeClosed()
{
    QWidget parent;
    MessageBar bar(&parent);
    int pressed = 0;
    bar.tell(someMessage(MessageLevel::Information, u"text"_s, pressed));
    QTest::mouseClick(bar.findChild<QToolButton *>(u"btnCloseMessage"_s), Qt::LeftButton);
    QVERIFY(bar.isHidden());
    QCOMPARE(pressed, 0);
}

void TestMessageBar::isReachedByKeys()
{
    TestWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.ui.btnBrowse->setFocus();
    int pressed = 0;
    barOf(window).tell(someMessage(MessageLevel::Information, u"text"_s, pressed));
    QVERIFY2(window.ui.btnBrowse->hasFocus(), "a message takes nobody's focus");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget()->objectName(), u"btnDoIt"_s);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget()->objectName(), u"btnCloseMessage"_s);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QCOMPARE(pressed, 1);
}

void TestMessageBar::speaksGerman()
{
    const Translations translations({u"de-DE"_s});
    QWidget parent;
    MessageBar bar(&parent);
    bar.tell({.level = MessageLevel::Error, .text = u"Text"_s, .buttons = {}});
    QCOMPARE(bar.accessibleName(), u"Fehler: Text"_s);
}

VANTREL_TEST(QApplication, TestMessageBar)
#include "tst_messagebar.moc"
