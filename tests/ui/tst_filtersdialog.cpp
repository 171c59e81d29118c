// The dialog in which shape files are chosen.
#include "Filters_UI.h"
#include "Surroundings.h"
#include "TestSuite.h"

#include <QApplication>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

using Names = QSet<QString>;

const Names plant{u"Pump1"_s, u"PUMP2"_s, u"valve"_s, u"tank"_s};

QStringList listed(const Filters_UI &dialog)
{
    const auto *list = dialog.findChild<QListWidget *>(u"listWidget"_s);
    QStringList names;
    for (int row = 0; row < list->count(); ++row)
        names += list->item(row)->text();
    return names;
}

Names selected(const Filters_UI &dialog)
{
    Names names;
    const QList<QListWidgetItem *> items = dialog.findChild<QListWidget *>(u"listWidget"_s)->selectedItems();
    for (const QListWidgetItem *item : items)
        names += item->text();
    return names;
}

} // namespace

class TestFiltersDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasItsSlotsInOrder();
    void hasItsForm();
    void listsAllNamesSorted();
    void selectsTheChosenNames();
    void ignoresChosenNamesThatAreNotOffered();
    void keepsCopiesOfTheNames();
    void togglesANameWithEachClick();
    void selectsAllNames();
    void clearsTheSelection();
    void typingShowsWhatContainsTheText();
    void typingForgetsTheSelection();
    void emptyTextShowsAllNames();
    void textThatIsSetDoesNotFilter();
    void searchTextIsNoPattern();
    void acceptsWhatIsSelected();
    void acceptsOnlyWhatTheTextShows();
    void selectsAllOfWhatTheTextShows();
    void acceptsNothing();
    void keepsTheChoiceWhenRejected_data();
    void keepsTheChoiceWhenRejected();
    void worksWithoutNames();
};

void TestFiltersDialog::hasItsSlotsInOrder()
{
    QCOMPARE(ownMethods(Filters_UI::staticMetaObject),
             QStringList({u"slot onOkPressed()"_s, u"slot onSelectAll()"_s, u"slot onClearAll()"_s,
                          u"slot onFilter(QString)"_s}));
}

void TestFiltersDialog::hasItsForm()
{
    const Names none;
    QWidget parent;
    const Filters_UI dialog(&plant, &none, &parent);
    QCOMPARE(dialog.parentWidget(), &parent);
    QCOMPARE(dialog.objectName(), u"Filters_UI"_s);
    QCOMPARE(dialog.windowTitle(), u"BMO Filters"_s);
    QCOMPARE(dialog.size(), QSize(616, 493));
    QCOMPARE(dialog.sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    QCOMPARE(dialog.sizePolicy().verticalPolicy(), QSizePolicy::Expanding);
    QCOMPARE(dialog.contextMenuPolicy(), Qt::NoContextMenu);
    QVERIFY(!dialog.windowFlags().testFlag(Qt::WindowContextHelpButtonHint));

    const auto *rows = qobject_cast<QVBoxLayout *>(dialog.layout());
    QVERIFY(rows != nullptr);
    QCOMPARE(rows->objectName(), u"verticalLayout"_s);
    QCOMPARE(rows->count(), 4);
    const auto *list = qobject_cast<QListWidget *>(rows->itemAt(0)->widget());
    const auto *line = qobject_cast<QLineEdit *>(rows->itemAt(1)->widget());
    const auto *buttons = qobject_cast<QHBoxLayout *>(rows->itemAt(2)->layout());
    const auto *okCancel = qobject_cast<QDialogButtonBox *>(rows->itemAt(3)->widget());
    QVERIFY(list != nullptr && line != nullptr && buttons != nullptr && okCancel != nullptr);
    QCOMPARE(list->objectName(), u"listWidget"_s);
    QCOMPARE(list->selectionMode(), QAbstractItemView::MultiSelection);
    QCOMPARE(list->selectionBehavior(), QAbstractItemView::SelectRows);
    QCOMPARE(line->objectName(), u"lineFilter"_s);
    QCOMPARE(buttons->objectName(), u"horizontalLayout"_s);
    QCOMPARE(buttons->count(), 2);
    QCOMPARE(okCancel->objectName(), u"btnOkCancel"_s);
    QCOMPARE(okCancel->standardButtons(), QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    QCOMPARE(okCancel->focusPolicy(), Qt::StrongFocus);
    QVERIFY(!okCancel->centerButtons());

    const QStringList buttonTexts{u"Clear All"_s, u"Select All"_s};
    const QStringList buttonNames{u"btnClearAll"_s, u"btnSelectAll"_s};
    for (int index = 0; index < 2; ++index) {
        const auto *button = qobject_cast<QPushButton *>(buttons->itemAt(index)->widget());
        QVERIFY(button != nullptr);
        QCOMPARE(button->objectName(), buttonNames.at(index));
        QCOMPARE(button->text(), buttonTexts.at(index));
        QCOMPARE(button->focusPolicy(), Qt::TabFocus);
        QVERIFY(!button->autoDefault());
    }
}

void TestFiltersDialog::listsAllNamesSorted()
{
    const Names none;
    const Names many{u"delta"_s, u"alpha"_s, u"charlie"_s, u"bravo"_s, u"echo"_s, u"foxtrot"_s};
    const Filters_UI dialog(&many, &none, nullptr);
    QCOMPARE(listed(dialog),
             QStringList({u"alpha"_s, u"bravo"_s, u"charlie"_s, u"delta"_s, u"echo"_s, u"foxtrot"_s}));
}

void TestFiltersDialog::selectsTheChosenNames()
{
    const Names chosen{u"tank"_s, u"Pump1"_s};
    const Filters_UI dialog(&plant, &chosen, nullptr);
    QCOMPARE(selected(dialog), chosen);
    QCOMPARE(dialog.selectedNames(), chosen);
}

void TestFiltersDialog::ignoresChosenNamesThatAreNotOffered()
{
    const Names chosen{u"gone"_s, u"tank"_s, u"pump1"_s};
    const Filters_UI dialog(&plant, &chosen, nullptr);
    QCOMPARE(selected(dialog), Names{u"tank"_s});
}

void TestFiltersDialog::keepsCopiesOfTheNames()
{
    Names names = plant;
    Names chosen;
    Filters_UI dialog(&names, &chosen, nullptr);
    names.clear();
    dialog.onFilter({});
    QCOMPARE(listed(dialog).size(), plant.size());
    dialog.onSelectAll();
    dialog.onOkPressed();
    QCOMPARE(dialog.selectedNames(), plant);
    QVERIFY(chosen.isEmpty());
}

void TestFiltersDialog::togglesANameWithEachClick()
{
    const Names none;
    Filters_UI dialog(&plant, &none, nullptr);
    dialog.show();
    auto *list = dialog.findChild<QListWidget *>(u"listWidget"_s);
    const auto click = [&](int row) {
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualItemRect(list->item(row)).center());
    };
    click(0);
    click(2);
    QCOMPARE(selected(dialog), Names({listed(dialog).at(0), listed(dialog).at(2)}));
    click(0);
    QCOMPARE(selected(dialog), Names{listed(dialog).at(2)});
}

void TestFiltersDialog::selectsAllNames()
{
    const Names none;
    Filters_UI dialog(&plant, &none, nullptr);
    QTest::mouseClick(dialog.findChild<QPushButton *>(u"btnSelectAll"_s), Qt::LeftButton);
    QCOMPARE(selected(dialog), plant);
}

void TestFiltersDialog::clearsTheSelection()
{
    Filters_UI dialog(&plant, &plant, nullptr);
    QTest::mouseClick(dialog.findChild<QPushButton *>(u"btnClearAll"_s), Qt::LeftButton);
    QCOMPARE(selected(dialog), Names());
    QCOMPARE(listed(dialog).size(), plant.size());
}

void TestFiltersDialog::typingShowsWhatContainsTheText()
{
    const Names none;
    Filters_UI dialog(&plant, &none, nullptr);
    dialog.show();
    auto *line = dialog.findChild<QLineEdit *>(u"lineFilter"_s);
    QTest::keyClicks(line, u"pu"_s);
    QStringList shown = listed(dialog);
    QCOMPARE(Names(shown.begin(), shown.end()), Names({u"Pump1"_s, u"PUMP2"_s}));
    QTest::keyClicks(line, u"MP2"_s);
    QCOMPARE(listed(dialog), QStringList{u"PUMP2"_s});
    QTest::keyClicks(line, u"x"_s);
    QCOMPARE(listed(dialog), QStringList());
}

void TestFiltersDialog::typingForgetsTheSelection()
{
    Filters_UI dialog(&plant, &plant, nullptr);
    QTest::keyClicks(dialog.findChild<QLineEdit *>(u"lineFilter"_s), u"p"_s);
    QCOMPARE(listed(dialog).size(), 2);
    QCOMPARE(selected(dialog), Names());
}

void TestFiltersDialog::emptyTextShowsAllNames()
{
    const Names none;
    Filters_UI dialog(&plant, &none, nullptr);
    auto *line = dialog.findChild<QLineEdit *>(u"lineFilter"_s);
    QTest::keyClicks(line, u"p"_s);
    QTest::keyClick(line, Qt::Key_Backspace);
    QCOMPARE(listed(dialog).size(), plant.size());
    QStringList sorted = listed(dialog);
    std::sort(sorted.begin(), sorted.end());
    QCOMPARE(listed(dialog), sorted);
}

void TestFiltersDialog::textThatIsSetDoesNotFilter()
{
    Filters_UI dialog(&plant, &plant, nullptr);
    dialog.findChild<QLineEdit *>(u"lineFilter"_s)->setText(u"tank"_s);
    QCOMPARE(selected(dialog), plant);
}

void TestFiltersDialog::searchTextIsNoPattern()
{
    const Names names{u"a.b"_s, u"axb"_s, u"a*b"_s};
    Filters_UI dialog(&names, &names, nullptr);
    dialog.onFilter(u"a.b"_s);
    QCOMPARE(listed(dialog), QStringList{u"a.b"_s});
    dialog.onFilter(u"*"_s);
    QCOMPARE(listed(dialog), QStringList{u"a*b"_s});
}

void TestFiltersDialog::acceptsWhatIsSelected()
{
    const Names chosen{u"valve"_s, u"PUMP2"_s};
    Filters_UI dialog(&plant, &chosen, nullptr);
    auto *list = dialog.findChild<QListWidget *>(u"listWidget"_s);
    list->findItems(u"tank"_s, Qt::MatchExactly).first()->setSelected(true);
    list->findItems(u"valve"_s, Qt::MatchExactly).first()->setSelected(false);
    QTest::mouseClick(dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok), Qt::LeftButton);
    QCOMPARE(dialog.result(), int{QDialog::Accepted});
    QCOMPARE(dialog.selectedNames(), Names({u"PUMP2"_s, u"tank"_s}));
}

void TestFiltersDialog::acceptsOnlyWhatTheTextShows()
{
    Filters_UI dialog(&plant, &plant, nullptr);
    QTest::keyClicks(dialog.findChild<QLineEdit *>(u"lineFilter"_s), u"pu"_s);
    auto *list = dialog.findChild<QListWidget *>(u"listWidget"_s);
    list->findItems(u"PUMP2"_s, Qt::MatchExactly | Qt::MatchCaseSensitive).first()->setSelected(true);
    dialog.onOkPressed();
    QCOMPARE(dialog.selectedNames(), Names{u"PUMP2"_s});
}

void TestFiltersDialog::selectsAllOfWhatTheTextShows()
{
    const Names none;
    Filters_UI dialog(&plant, &none, nullptr);
    dialog.onFilter(u"pu"_s);
    dialog.onSelectAll();
    dialog.onOkPressed();
    QCOMPARE(dialog.selectedNames(), Names({u"Pump1"_s, u"PUMP2"_s}));
}

void TestFiltersDialog::acceptsNothing()
{
    Filters_UI dialog(&plant, &plant, nullptr);
    dialog.onClearAll();
    dialog.onOkPressed();
    QCOMPARE(dialog.result(), int{QDialog::Accepted});
    QCOMPARE(dialog.selectedNames(), Names());
}

void TestFiltersDialog::keepsTheChoiceWhenRejected_data()
{
    QTest::addColumn<bool>("byCloseButton");
    QTest::newRow("Cancel") << false;
    QTest::newRow("the close button") << true;
}

void TestFiltersDialog::keepsTheChoiceWhenRejected()
{
    QFETCH(const bool, byCloseButton);
    const Names chosen{u"valve"_s};
    Filters_UI dialog(&plant, &chosen, nullptr);
    dialog.show();
    dialog.onSelectAll();
    if (byCloseButton)
        dialog.close();
    else
        QTest::mouseClick(dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Cancel),
                          Qt::LeftButton);
    QCOMPARE(dialog.result(), int{QDialog::Rejected});
    QVERIFY(!dialog.isVisible());
    QCOMPARE(dialog.selectedNames(), chosen);
}

void TestFiltersDialog::worksWithoutNames()
{
    const Names none;
    Filters_UI dialog(&none, &none, nullptr);
    dialog.onSelectAll();
    dialog.onFilter(u"x"_s);
    dialog.onOkPressed();
    QCOMPARE(dialog.selectedNames(), Names());
}

VANTREL_TEST(QApplication, TestFiltersDialog)
#include "tst_filtersdialog.moc"
