// The window without a mouse, and without a screen.
#include "Filters_UI.h"
#include "Gates.h"
#include "Surroundings.h"
#include "TestSuite.h"
#include "TestWindow.h"

#include <QAccessible>
#include <QApplication>
#include <QFileDialog>
#include <QShortcut>
#include <QTest>
#include <QTextDocument>

using namespace Qt::StringLiterals;

namespace {

bool isControl(QAccessible::Role role)
{
    switch (role) {
    case QAccessible::Button:
    case QAccessible::CheckBox:
    case QAccessible::ComboBox:
    case QAccessible::EditableText:
    case QAccessible::List:
    case QAccessible::ProgressBar:
    case QAccessible::RadioButton:
    case QAccessible::Table:
    case QAccessible::Window:
    case QAccessible::Dialog:
        return true;
    default:
        return false;
    }
}

/// What the accessibility tree tells of its controls: their names, "?" for one without.
void addNames(QAccessibleInterface *interface, QStringList &names)
{
    if (interface == nullptr || interface->state().invisible)
        return;
    if (isControl(interface->role())) {
        const QString name = interface->text(QAccessible::Name);
        const QString object = interface->object() != nullptr ? interface->object()->objectName() : QString();
        names += name.isEmpty() ? u"? "_s + object : name;
    }
    for (int index = 0; index < interface->childCount(); ++index)
        addNames(interface->child(index), names);
}

QStringList accessibleNames(QWidget &window)
{
    QStringList names;
    addNames(QAccessible::queryAccessibleInterface(&window), names);
    return names;
}

/// The widgets that Tab comes to, beginning with the one that has the focus.
QStringList tabChain(QWidget &window)
{
    QStringList names;
    const QWidget *first = QApplication::focusWidget();
    do {
        names += QApplication::focusWidget()->objectName();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    } while (QApplication::focusWidget() != first && names.size() < window.findChildren<QWidget *>().size());
    return names;
}

} // namespace

class TestAccess : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { forgetSettings(); }

    void namesEveryControl();
    void namesEveryControlOfTheDialog();
    void labelsLeadToTheirControls();
    void tellsWhatEveryButtonDoes();
    void readsOutTheFileThatIsWorkedOn();

    void tabGoesThroughTheWindow();
    void f5StartsAndCancels();
    void heldKeysActOnce();
    void ctrlOBrowses();
    void ctrlOBrowsesNotDuringARun();
    void ctrlLGoesToThePath();
    void ctrlFGoesToTheSearch();
};

void TestAccess::namesEveryControl()
{
    TestWindow window;
    window.show();
    const QStringList names = accessibleNames(window);
    QCOMPARE(names.filter(u"?"_s), QStringList());
    for (const QString &name :
         {u"Project folder"_s, u"Browse..."_s, u"Replaced Shapes"_s, u"Start Update"_s, u"Changed Files"_s,
          u"Log-File"_s, u"BMO Filters"_s, u"Logs"_s, u"Progress"_s, u"Exit"_s})
        QVERIFY2(names.contains(name), qPrintable(name));
}

void TestAccess::namesEveryControlOfTheDialog()
{
    const QSet<QString> all{u"pump.plb"_s};
    Filters_UI dialog(&all, &all, nullptr);
    dialog.show();
    const QStringList names = accessibleNames(dialog);
    QCOMPARE(names.filter(u"?"_s), QStringList());
    for (const QString &name :
         {u"BMO Filters"_s, u"Shape files"_s, u"Search"_s, u"Clear All"_s, u"Select All"_s})
        QVERIFY2(names.contains(name), qPrintable(name));
}

void TestAccess::labelsLeadToTheirControls()
{
    const TestWindow window;
    QCOMPARE(window.ui.label_4->buddy(), window.ui.lnProjectPath);
    QCOMPARE(window.ui.label_2->buddy(), window.ui.rplShapeTable);
    QCOMPARE(window.ui.label_3->buddy(), window.ui.logTable);
}

void TestAccess::tellsWhatEveryButtonDoes()
{
    const TestWindow window;
    const QSet<QString> none;
    const Filters_UI dialog(&none, &none, nullptr);
    const QList<QPushButton *> buttons =
        window.findChildren<QPushButton *>() + dialog.findChildren<QPushButton *>();
    QCOMPARE(buttons.size(), 10);
    for (const QPushButton *button : buttons) {
        QVERIFY2(!button->toolTip().isEmpty(), qPrintable(button->text()));
        QVERIFY2(!Qt::mightBeRichText(button->toolTip()), qPrintable(button->text()));
    }
}

void TestAccess::readsOutTheFileThatIsWorkedOn()
{
    TestWindow window;
    window.onUpdFileName(u"/p/scr/a.psc"_s);
    QCOMPARE(QAccessible::queryAccessibleInterface(window.ui.FileName)->text(QAccessible::Name),
             u"Searching in /p/scr/a.psc..."_s);
}

void TestAccess::tabGoesThroughTheWindow()
{
    TestWindow window;
    window.onConvertEnd(); // all buttons can be pressed
    window.onConvertInfo({});
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.ui.lnProjectPath->setFocus();
    QCOMPARE(tabChain(window), QStringList({u"lnProjectPath"_s, u"btnBrowse"_s, u"btnFilters"_s,
                                            u"btnStart"_s, u"btnChangedFiles"_s, u"btnLog"_s,
                                            u"rplShapeTable"_s, u"logTable"_s, u"btnClose"_s}));
}

void TestAccess::f5StartsAndCancels()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, "");
    TestWindow window;
    WorkerGate gate(WorkerGate::BeforeFile, *window.converter);
    window.ui.lnProjectPath->setText(project.dir());
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    int clicks = 0;
    connect(window.ui.btnStart, &QPushButton::clicked, &window, [&] { ++clicks; });
    QTest::keyClick(&window, Qt::Key_F5);
    QVERIFY(window.isRunning());
    QVERIFY(gate.isReached());
    QTest::keyClick(&window, Qt::Key_F5);
    QVERIFY(window.isIdle());
    QVERIFY(window.converter->stopRequested);
    QCOMPARE(clicks, 2);
}

void TestAccess::heldKeysActOnce()
{
    const TestWindow window;
    const auto shortcuts = window.findChildren<QShortcut *>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(shortcuts.size(), 3);
    for (const QShortcut *shortcut : shortcuts)
        QVERIFY2(!shortcut->autoRepeat(), qPrintable(shortcut->key().toString()));
}

void TestAccess::ctrlOBrowses()
{
    TestWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    int answered = 0;
    whenAsked<QFileDialog>(this, answered, [](QFileDialog *browser) { browser->reject(); });
    QTest::keyClick(&window, Qt::Key_O, Qt::ControlModifier);
    QCOMPARE(answered, 1);
}

void TestAccess::ctrlOBrowsesNotDuringARun()
{
    TestWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.ui.btnBrowse->setEnabled(false);
    int answered = 0;
    whenAsked<QFileDialog>(&window, answered, [](QFileDialog *browser) { browser->reject(); });
    QTest::keyClick(&window, Qt::Key_O, Qt::ControlModifier);
    QCOMPARE(answered, 0);
}

void TestAccess::ctrlLGoesToThePath()
{
    TestWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.ui.btnStart->setFocus();
    QTest::keyClick(&window, Qt::Key_L, Qt::ControlModifier);
    QVERIFY(window.ui.lnProjectPath->hasFocus());
    QCOMPARE(window.ui.lnProjectPath->selectedText(), window.ui.lnProjectPath->text());
    window.ui.lnProjectPath->deselect(); // it is there already
    QTest::keyClick(window.ui.lnProjectPath, Qt::Key_L, Qt::ControlModifier);
    QCOMPARE(window.ui.lnProjectPath->selectedText(), window.ui.lnProjectPath->text());
}

void TestAccess::ctrlFGoesToTheSearch()
{
    const QSet<QString> all{u"pump.plb"_s};
    Filters_UI dialog(&all, &all, nullptr);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    auto *search = dialog.findChild<QLineEdit *>(u"lineFilter"_s);
    search->setText(u"valve"_s);
    auto *list = dialog.findChild<QListWidget *>();
    list->setFocus();
    QTest::keyClick(list, Qt::Key_F, Qt::ControlModifier);
    QVERIFY(search->hasFocus());
    QCOMPARE(search->selectedText(), u"valve"_s);
    search->deselect(); // it is there already
    QTest::keyClick(search, Qt::Key_F, Qt::ControlModifier);
    QCOMPARE(search->selectedText(), u"valve"_s);
    QCOMPARE(list->selectedItems().size(), 1); // nothing else is touched
}

VANTREL_TEST(QApplication, TestAccess)
#include "tst_access.moc"
