// The main window between runs: its form, its settings, its buttons.
#include "CGuiFunc.h"
#include "Filters_UI.h"
#include "Gates.h"
#include "Surroundings.h"
#include "TestSuite.h"
#include "TestWindow.h"
#include "WatchFolderThread.h"

#include <QApplication>
#include <QFileDialog>
#include <QGridLayout>
#include <QMessageBox>
#include <QSettings>
#include <QTest>
#include <QTranslator>

#include <filesystem>

using namespace Qt::StringLiterals;

namespace {

QSettings settings()
{
    return QSettings(u"QEL"_s, u"Vantrel"_s);
}

QString richText(const QString &text)
{
    return uR"(<html><head/><body><p><span style=" font-size:12pt;">%1</span></p></body></html>)"_s.arg(text);
}

/// Translates every text into its context and itself.
class ContextTranslator final : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *sourceText, const char *, int) const override
    {
        return QString::fromUtf8(context) + u'|' + QString::fromUtf8(sourceText);
    }
};

/// Counts how often a widget is painted.
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

struct Place
{
    int row;
    int column;
    int rowSpan;
    int columnSpan;
};

} // namespace

class TestVantrelWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { forgetSettings(); }

    void hasItsSignalsAndSlotsInOrder();
    void isBuiltFromItsForm();
    void hasItsIcon();
    void placesItsWidgets_data();
    void placesItsWidgets();
    void showsItsTexts();
    void setsUpTheTableOfReplacedShapes();
    void translatesItsTexts();
    void beginsIdle();
    void takesDefaultsWithoutSettings();
    void restoresItsSettings();
    void savesItsSettings();
    void emptyProjectIsRemembered();

    void browsesForAProject();
    void keepsTheProjectWhenBrowsingIsCancelled();
    void opensTheBrowserWhereTheProjectIs();

    void newPathForgetsTheChoice();
    void everyKeystrokeForgetsTheChoice();
    void watchesTheTypedProject();
    void typingGivesNoWarnings();
    void changedFolderMakesNamesStale();

    void collectsNamesForTheDialog();
    void forgetsTheChoiceBeforeItCollects();
    void selectsAllNamesEvenIfTheDialogIsCancelled();
    void keepsTheChoiceForTheNextOpening();
    void cancelKeepsTheChoice();
    void collectsAgainAfterAChange();
    void offersNothingWithoutImageFiles();
    void showsTheWaitCursorOnlyWhileCollecting();

    void showsTheFileThatIsWorkedOn();
    void showsFileNamesAsTheyAre();
    void longFileNamesDoNotWidenTheWindow();
    void followsTheProgress();
    void paintsTheProgressWithEverythingElse();
    void addsReportsToTableAndChangeLog();

    void opensTheLogFile();
    void tellsThatTheLogFileIsGone();
    void opensFilesWithUnusualNames_data();
    void opensFilesWithUnusualNames();
};

void TestVantrelWindow::hasItsSignalsAndSlotsInOrder()
{
    QCOMPARE(
        ownMethods(Vantrel::staticMetaObject),
        QStringList({u"signal sigStartConvert()"_s, u"signal sigStopConvert()"_s,
                     u"slot onProgressChanged(int,int)"_s, u"slot onConvertInfo(Converter::STBlock)"_s,
                     u"slot onConvertEnd()"_s, u"slot onBtnStartPressed()"_s, u"slot onBtnBrowsePressed()"_s,
                     u"slot onBtnChangedFilesPressed()"_s, u"slot onBtnLogPressed()"_s,
                     u"slot onBtnFiltersPressed()"_s, u"slot onUpdFileName(QString)"_s,
                     u"slot onFolderChanged()"_s, u"slot onFolderPathChanged()"_s}));
    // Without arguments and with a base of each kind.
    QCOMPARE(Vantrel::staticMetaObject.superClass(), &QWidget::staticMetaObject);
    QVERIFY((std::is_base_of_v<Qel::Logger::LogListener, Vantrel>));
}

void TestVantrelWindow::isBuiltFromItsForm()
{
    QWidget widget;
    Ui_VantrelClass form;
    form.setupUi(&widget);
    QCOMPARE(widget.size(), QSize(1009, 826));
    QCOMPARE(form.progressBar->value(), 24);

    const TestWindow window;
    QCOMPARE(window.objectName(), u"VantrelClass"_s);
    QCOMPARE(window.windowTitle(), u"Vantrel"_s);
    QCOMPARE(window.layoutDirection(), Qt::LeftToRight);
    QCOMPARE(window.layout(), window.ui.gridLayout);
    QCOMPARE(window.ui.gridLayout->objectName(), u"gridLayout"_s);
    QCOMPARE(window.ui.gridLayout->horizontalSpacing(), 6);
    QCOMPARE(window.ui.gridLayout->verticalSpacing(), 6);
    QCOMPARE(window.ui.gridLayout->contentsMargins(), QMargins(11, 11, 11, 11));
}

void TestVantrelWindow::hasItsIcon()
{
    const TestWindow window;
    for (const int size : {64, 256}) {
        const QImage picture = window.windowIcon().pixmap(size).toImage();
        QCOMPARE(picture.size(), QSize(size, size));
        QCOMPARE(picture.pixelColor(0, 0).alpha(), 0);
        QCOMPARE(picture.pixelColor(size / 2, size * 52 / 64), QColor(0x1f, 0x3a, 0x4d)); // the screen's foot
    }
    QCOMPARE(QGuiApplication::desktopFileName(), u"vantrel"_s);
}

void TestVantrelWindow::placesItsWidgets_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<Place>("place");
    const auto row = [](const char *name, const Place &place) {
        QTest::newRow(name) << QString::fromLatin1(name) << place;
    };
    row("horizontalLayout", {0, 0, 2, 3});
    row("messageBar", {3, 0, 1, 3}); // hidden but for messages
    row("label_2", {7, 0, 1, 1});
    row("rplShapeTable", {9, 0, 1, 2});
    row("verticalLayout_2", {9, 2, 1, 1});
    row("label_3", {11, 0, 1, 1});
    row("logTable", {12, 0, 1, 1});
    row("FileName", {13, 0, 1, 1});
    row("progressBar", {14, 0, 1, 2});
    row("btnClose", {14, 2, 1, 1});
}

void TestVantrelWindow::placesItsWidgets()
{
    QFETCH(const QString, name);
    QFETCH(const Place, place);
    const TestWindow window;
    const QGridLayout &grid = *window.ui.gridLayout;
    QCOMPARE(grid.count(), 10);
    for (int index = 0; index < grid.count(); ++index) {
        QLayoutItem &item = *grid.itemAt(index);
        const QObject *object = item.layout() != nullptr ? static_cast<const QObject *>(item.layout())
                                                         : static_cast<const QObject *>(item.widget());
        if (object->objectName() != name)
            continue;
        Place actual{};
        grid.getItemPosition(index, &actual.row, &actual.column, &actual.rowSpan, &actual.columnSpan);
        QCOMPARE(actual.row, place.row);
        QCOMPARE(actual.column, place.column);
        QCOMPARE(actual.rowSpan, place.rowSpan);
        QCOMPARE(actual.columnSpan, place.columnSpan);
        return;
    }
    QFAIL("not in the grid");
}

void TestVantrelWindow::showsItsTexts()
{
    const TestWindow window;
    const Ui_VantrelClass &ui = window.ui;
    QCOMPARE(ui.label_4->text(), richText(u"Project:"_s));
    QCOMPARE(ui.label_2->text(), richText(u"Replaced Shapes"_s));
    QCOMPARE(ui.label_3->text(), richText(u"Logs"_s));
    QCOMPARE(ui.btnBrowse->text(), u"Browse..."_s);
    QCOMPARE(ui.btnClose->text(), u"Exit"_s);

    QCOMPARE(ui.horizontalLayout->spacing(), 6);
    QCOMPARE(ui.horizontalLayout->count(), 3);
    QCOMPARE(ui.horizontalLayout->itemAt(0)->widget(), ui.label_4);
    QCOMPARE(ui.horizontalLayout->itemAt(1)->widget(), ui.lnProjectPath);
    QCOMPARE(ui.horizontalLayout->itemAt(2)->widget(), ui.btnBrowse);

    QCOMPARE(ui.verticalLayout_2->spacing(), 6);
    QCOMPARE(ui.verticalLayout_2->count(), 5);
    const QStringList names{u"btnStart"_s, u"btnChangedFiles"_s, u"btnLog"_s, u"btnFilters"_s};
    const QStringList texts{u"Start Update"_s, u"Changed Files"_s, u"Log-File"_s, u"BMO Filters"_s};
    for (int index = 0; index < 4; ++index) {
        const auto *button = qobject_cast<QPushButton *>(ui.verticalLayout_2->itemAt(index)->widget());
        QVERIFY(button != nullptr);
        QCOMPARE(button->objectName(), names.at(index));
        QCOMPARE(button->text(), texts.at(index));
    }
    const QSpacerItem *spacer = ui.verticalLayout_2->itemAt(4)->spacerItem();
    QVERIFY(spacer != nullptr);
    QCOMPARE(spacer->sizeHint(), QSize(20, 40));
    QCOMPARE(spacer->sizePolicy().horizontalPolicy(), QSizePolicy::Minimum);
    QCOMPARE(spacer->sizePolicy().verticalPolicy(), QSizePolicy::Expanding);
}

void TestVantrelWindow::setsUpTheTableOfReplacedShapes()
{
    const TestWindow window;
    const QTableWidget &table = *window.ui.rplShapeTable;
    const QStringList headers{u"Status"_s,          u" Image File"_s,  u"Shape File"_s,
                              u"Position"_s,        u"Image-Object"_s, u"Replace by Shape-Object"_s,
                              u"Reinitalisation"_s, u"Error"_s};
    QCOMPARE(table.columnCount(), headers.size());
    for (int column = 0; column < headers.size(); ++column)
        QCOMPARE(table.horizontalHeaderItem(column)->text(), headers.at(column));
    QCOMPARE(table.rowCount(), 0);
    QCOMPARE(table.sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    QCOMPARE(table.sizePolicy().verticalPolicy(), QSizePolicy::Expanding);
    QCOMPARE(table.baseSize(), QSize(0, 0));
    QVERIFY(table.styleSheet().isEmpty());
    QCOMPARE(table.editTriggers(), QAbstractItemView::NoEditTriggers);
    QCOMPARE(table.selectionMode(), QAbstractItemView::MultiSelection);
    QVERIFY(!table.showGrid());
    QVERIFY(table.isSortingEnabled());
    QVERIFY(table.horizontalHeader()->isSortIndicatorShown());
}

void TestVantrelWindow::translatesItsTexts()
{
    ContextTranslator translator;
    QCoreApplication::installTranslator(&translator);
    TestWindow window;
    const Ui_VantrelClass &ui = window.ui;
    QCOMPARE(window.windowTitle(), u"VantrelClass|Vantrel"_s);
    QCOMPARE(ui.label_4->text(), "VantrelClass|"_L1 + richText(u"Project:"_s));
    QCOMPARE(ui.label_2->text(), "VantrelClass|"_L1 + richText(u"Replaced Shapes"_s));
    QCOMPARE(ui.label_3->text(), "VantrelClass|"_L1 + richText(u"Logs"_s));
    QCOMPARE(ui.btnStart->text(), u"VantrelClass|Start Update"_s);
    QCOMPARE(ui.btnChangedFiles->text(), u"VantrelClass|Changed Files"_s);
    QCOMPARE(ui.btnLog->text(), u"VantrelClass|Log-File"_s);
    QCOMPARE(ui.btnFilters->text(), u"VantrelClass|BMO Filters"_s);
    QCOMPARE(ui.btnBrowse->text(), u"VantrelClass|Browse..."_s);
    QCOMPARE(ui.btnClose->text(), u"VantrelClass|Exit"_s);
    QCOMPARE(ui.rplShapeTable->horizontalHeaderItem(1)->text(), u"VantrelClass| Image File"_s);
    QCOMPARE(ui.logTable->horizontalHeaderItem(1)->text(), u"Vantrel|Date/Time"_s);
    QVERIFY(ui.FileName->text().isEmpty());
    window.onUpdFileName(u"a"_s);
    QCOMPARE(ui.FileName->text(), u"Vantrel|Searching in a..."_s);
    window.onConvertEnd();
    QCOMPARE(ui.btnStart->text(), u"Vantrel|Start Update"_s);
    QCOMPARE(window.logMessages().first(), u"End"_s); // what is logged is not for the user alone

    const QSet<QString> none;
    const Filters_UI dialog(&none, &none, &window);
    QCOMPARE(dialog.windowTitle(), u"Filters_UI|BMO Filters"_s);
    QCOMPARE(dialog.findChild<QPushButton *>(u"btnClearAll"_s)->text(), u"Filters_UI|Clear All"_s);
    QCOMPARE(dialog.findChild<QPushButton *>(u"btnSelectAll"_s)->text(), u"Filters_UI|Select All"_s);

    int answered = 0;
    whenAsked<QMessageBox>(this, answered, [](QMessageBox *box) {
        QCOMPARE(box->windowTitle(), u"Vantrel|Vantrel Info"_s);
        QVERIFY(box->text().startsWith(u"Vantrel|File "_s));
        box->reject();
    });
    window.onBtnChangedFilesPressed();
    whenAsked<QFileDialog>(this, answered, [](QFileDialog *browser) {
        QCOMPARE(browser->windowTitle(), u"Vantrel|Select Project"_s);
        browser->reject();
    });
    window.onBtnBrowsePressed();
    QCoreApplication::removeTranslator(&translator);
    QCOMPARE(answered, 2);
}

void TestVantrelWindow::beginsIdle()
{
    const TestWindow window;
    QVERIFY(!window.running);
    QVERIFY(window.filterNamesStale);
    QVERIFY(window.logRowsOnTop);
    QVERIFY(window.allFilterNames.isEmpty());
    QVERIFY(window.selectedFilterNames.isEmpty());
    QCOMPARE(window.ui.btnStart->text(), u"Start Update"_s);
    QVERIFY(window.ui.FileName->text().isEmpty());
    QCOMPARE(window.ui.progressBar->minimum(), 0);
    QCOMPARE(window.ui.progressBar->maximum(), 100);
    QCOMPARE(window.ui.progressBar->value(), 0);
    QVERIFY(!window.ui.btnChangedFiles->isEnabled());
    QVERIFY(!window.ui.btnLog->isEnabled());
    for (const QPushButton *button :
         {window.ui.btnStart, window.ui.btnBrowse, window.ui.btnFilters, window.ui.btnClose})
        QVERIFY(button->isEnabled());
}

void TestVantrelWindow::takesDefaultsWithoutSettings()
{
    const TestWindow window;
    QCOMPARE(window.pos(), QPoint(200, 200));
    QCOMPARE(window.size(), QSize(800, 600));
    QCOMPARE(window.ui.lnProjectPath->text(), u"c:/velmorant/proj/velmora"_s);
}

void TestVantrelWindow::restoresItsSettings()
{
    settings().setValue("pos"_L1, QPoint(31, 47));
    settings().setValue("size"_L1, QSize(911, 733));
    settings().setValue("projDir"_L1, u"/plants/north <b>%1"_s);
    const TestWindow window;
    QCOMPARE(window.pos(), QPoint(31, 47));
    QCOMPARE(window.size(), QSize(911, 733));
    QCOMPARE(window.ui.lnProjectPath->text(), u"/plants/north <b>%1"_s);
    QVERIFY(window.selectedFilterNames.isEmpty());
}

void TestVantrelWindow::savesItsSettings()
{
    {
        TestWindow window;
        window.move(12, 34);
        window.resize(987, 654);
        window.ui.lnProjectPath->setText(u"/plants/south"_s);
        QVERIFY(!settings().contains("pos"_L1));
    }
    QCOMPARE(settings().value("pos"_L1), QVariant(QPoint(12, 34)));
    QCOMPARE(settings().value("size"_L1), QVariant(QSize(987, 654)));
    QCOMPARE(settings().value("projDir"_L1), QVariant(u"/plants/south"_s));
    QCOMPARE(settings().allKeys().size(), 3);
}

void TestVantrelWindow::emptyProjectIsRemembered()
{
    TestWindow().ui.lnProjectPath->clear();
    QCOMPARE(TestWindow().ui.lnProjectPath->text(), QString());
}

void TestVantrelWindow::browsesForAProject()
{
    const TestProject project;
    project.makeFolder(u"plant"_s);
    TestWindow window;
    window.selectedFilterNames = {u"a"_s};
    int answered = 0;
    whenAsked<QFileDialog>(this, answered, [&](QFileDialog *browser) {
        QCOMPARE(browser->windowTitle(), u"Select Project"_s);
        QCOMPARE(browser->parentWidget(), &window);
        QVERIFY(browser->testOption(QFileDialog::ShowDirsOnly));
        QVERIFY(browser->testOption(QFileDialog::DontUseNativeDialog));
        browser->selectFile(project.path(u"plant"_s));
        QTest::keyClick(browser, Qt::Key_Return);
    });
    QTest::mouseClick(window.ui.btnBrowse, Qt::LeftButton);
    QCOMPARE(answered, 1);
    QCOMPARE(window.ui.lnProjectPath->text(), project.path(u"plant"_s));
    QVERIFY(window.selectedFilterNames.isEmpty());
}

void TestVantrelWindow::keepsTheProjectWhenBrowsingIsCancelled()
{
    const TestProject project;
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    window.selectedFilterNames = {u"a"_s};
    window.filterNamesStale = false;
    int answered = 0;
    whenAsked<QFileDialog>(this, answered, [](QFileDialog *browser) { browser->reject(); });
    QTest::mouseClick(window.ui.btnBrowse, Qt::LeftButton);
    QCOMPARE(answered, 1);
    QCOMPARE(window.ui.lnProjectPath->text(), project.dir());
    QCOMPARE(window.selectedFilterNames, QSet<QString>{u"a"_s});
    QVERIFY(!window.filterNamesStale);
}

void TestVantrelWindow::opensTheBrowserWhereTheProjectIs()
{
    const TestProject project;
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    int answered = 0;
    whenAsked<QFileDialog>(this, answered, [&](QFileDialog *browser) {
        QCOMPARE(browser->directory().absolutePath(), project.dir());
        browser->reject();
    });
    window.onBtnBrowsePressed();
    QCOMPARE(answered, 1);
}

void TestVantrelWindow::newPathForgetsTheChoice()
{
    TestWindow window;
    window.filterNamesStale = false;
    window.selectedFilterNames = {u"a"_s};
    window.allFilterNames = {u"a"_s, u"b"_s};
    window.ui.lnProjectPath->setText(u"/elsewhere"_s);
    QVERIFY(window.filterNamesStale);
    QVERIFY(window.selectedFilterNames.isEmpty());
}

void TestVantrelWindow::everyKeystrokeForgetsTheChoice()
{
    TestWindow window;
    for (const char key : {'/', 'x', 'y'}) {
        window.filterNamesStale = false;
        window.selectedFilterNames = {u"a"_s};
        QTest::keyClick(window.ui.lnProjectPath, key);
        QVERIFY(window.filterNamesStale);
        QVERIFY(window.selectedFilterNames.isEmpty());
    }
    window.selectedFilterNames = {u"a"_s};
    window.filterNamesStale = false;
    window.ui.lnProjectPath->setText(window.ui.lnProjectPath->text()); // no change
    QVERIFY(!window.filterNamesStale);
    QCOMPARE(window.selectedFilterNames, QSet<QString>{u"a"_s});
}

void TestVantrelWindow::watchesTheTypedProject()
{
    const TestProject project;
    project.makeFolder(u"scr"_s);
    TestWindow window;
    window.ui.lnProjectPath->clear();
    QTest::keyClicks(window.ui.lnProjectPath, project.dir());
    waitForQueuedCalls(*window.watcher);
    window.filterNamesStale = false;
    project.write(u"scr/new.psc"_s, "LIB;a");
    QTRY_VERIFY(window.filterNamesStale);

    window.ui.lnProjectPath->setText(project.path(u"other"_s));
    waitForQueuedCalls(*window.watcher);
    QCoreApplication::processEvents();
    window.filterNamesStale = false;
    project.write(u"scr/newer.psc"_s, "LIB;a");
    project.makeFolder(u"other/scr"_s);
    window.ui.lnProjectPath->setText(project.path(u"third"_s));
    waitForQueuedCalls(*window.watcher);
    window.filterNamesStale = false;
    waitForQueuedCalls(*window.watcher);
    QCoreApplication::processEvents();
    QVERIFY(!window.filterNamesStale);
}

void TestVantrelWindow::typingGivesNoWarnings()
{
    const TestProject project;
    project.write(u"plant/scr/a.psc"_s, "LIB;a");
    const WarningRecorder recorder;
    {
        TestWindow window;
        window.ui.lnProjectPath->clear();
        QTest::keyClicks(window.ui.lnProjectPath, project.path(u"plant/scr/a.psc/b"_s));
        while (!window.ui.lnProjectPath->text().isEmpty())
            QTest::keyClick(window.ui.lnProjectPath, Qt::Key_Backspace);
        waitForQueuedCalls(*window.watcher);
    }
    QCOMPARE(WarningRecorder::warnings(), QStringList());
}

void TestVantrelWindow::changedFolderMakesNamesStale()
{
    const TestProject project;
    project.makeFolder(u"scr"_s);
    settings().setValue("projDir"_L1, project.dir());
    TestWindow window; // watches from its beginning
    waitForQueuedCalls(*window.watcher);
    window.filterNamesStale = false;
    window.selectedFilterNames = {u"a"_s};
    project.write(u"scr/new.psc"_s, "LIB;a");
    QTRY_VERIFY(window.filterNamesStale);
    QCOMPARE(window.selectedFilterNames, QSet<QString>{u"a"_s}); // until the dialog opens
}

void TestVantrelWindow::collectsNamesForTheDialog()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, "LIB;pump.plb;1\nLIB;valve.plb\n");
    project.write(u"scr/deep/b.psc"_s, "LIB;tank.plb\nLIB;pump.plb\n");
    project.write(u"scr/notes.txt"_s, "LIB;notes.plb\n");
    project.write(u"mac/c.psc"_s, "LIB;elsewhere.plb\n");
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    const QSet<QString> all{u"pump.plb"_s, u"valve.plb"_s, u"tank.plb"_s};
    int answered = 0;
    whenAsked<Filters_UI>(this, answered, [&](Filters_UI *dialog) {
        QCOMPARE(dialog->parentWidget(), &window);
        QCOMPARE(dialog->findChild<QListWidget *>()->count(), 3);
        QCOMPARE(dialog->findChild<QListWidget *>()->selectedItems().size(), 3);
        dialog->onClearAll();
        dialog->findChild<QListWidget *>()->item(0)->setSelected(true);
        dialog->onOkPressed();
    });
    QTest::mouseClick(window.ui.btnFilters, Qt::LeftButton);
    QCOMPARE(answered, 1);
    QCOMPARE(window.allFilterNames, all);
    QCOMPARE(window.selectedFilterNames, QSet<QString>{u"pump.plb"_s});
    QVERIFY(!window.filterNamesStale);
}

void TestVantrelWindow::forgetsTheChoiceBeforeItCollects()
{
    // One long file under many names: the window looks at its events while it reads them.
    const TestProject project;
    const QString longFile = project.path(u"scr/long.psc"_s);
    project.write(u"scr/long.psc"_s, QByteArray("LIB;pump.plb\n").repeated(100'000));
    for (int name = 0; name < 60; ++name) {
        std::filesystem::create_hard_link(longFile.toStdString(),
                                          project.path(u"scr/%1.psc"_s.arg(name)).toStdString());
    }
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    window.selectedFilterNames = {u"chosen before"_s};
    int looksWithoutChoice = 0;
    QTimer looks;
    connect(&looks, &QTimer::timeout, &window,
            [&] { looksWithoutChoice += window.selectedFilterNames.isEmpty() ? 1 : 0; });
    looks.start(0);
    int answered = 0;
    whenAsked<Filters_UI>(this, answered, [](Filters_UI *dialog) { dialog->reject(); });
    window.onBtnFiltersPressed();
    QCOMPARE(answered, 1);
    QVERIFY(looksWithoutChoice > 0);
    QCOMPARE(window.selectedFilterNames, QSet<QString>{u"pump.plb"_s});
}

void TestVantrelWindow::selectsAllNamesEvenIfTheDialogIsCancelled()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, "LIB;pump.plb\nLIB;valve.plb\n");
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    int answered = 0;
    whenAsked<Filters_UI>(this, answered, [](Filters_UI *dialog) { dialog->close(); });
    window.onBtnFiltersPressed();
    QCOMPARE(answered, 1);
    QCOMPARE(window.selectedFilterNames, QSet<QString>({u"pump.plb"_s, u"valve.plb"_s}));
}

void TestVantrelWindow::keepsTheChoiceForTheNextOpening()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, "LIB;pump.plb\nLIB;valve.plb\n");
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    int answered = 0;
    whenAsked<Filters_UI>(this, answered, [](Filters_UI *dialog) {
        dialog->onClearAll();
        dialog->findChild<QListWidget *>()->item(1)->setSelected(true);
        dialog->onOkPressed();
    });
    window.onBtnFiltersPressed();
    whenAsked<Filters_UI>(this, answered, [](Filters_UI *dialog) {
        QCOMPARE(dialog->findChild<QListWidget *>()->count(), 2);
        QCOMPARE(dialog->selectedNames(), QSet<QString>{u"valve.plb"_s});
        dialog->reject();
    });
    window.onBtnFiltersPressed();
    QCOMPARE(answered, 2);
}

void TestVantrelWindow::cancelKeepsTheChoice()
{
    TestWindow window;
    window.filterNamesStale = false;
    window.allFilterNames = {u"a"_s, u"b"_s};
    window.selectedFilterNames = {u"b"_s};
    int answered = 0;
    whenAsked<Filters_UI>(this, answered, [](Filters_UI *dialog) {
        dialog->onSelectAll();
        dialog->reject();
    });
    window.onBtnFiltersPressed();
    QCOMPARE(answered, 1);
    QCOMPARE(window.selectedFilterNames, QSet<QString>{u"b"_s});
}

void TestVantrelWindow::collectsAgainAfterAChange()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, "LIB;pump.plb\nLIB;valve.plb\n");
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    waitForQueuedCalls(*window.watcher);
    int answered = 0;
    whenAsked<Filters_UI>(this, answered, [](Filters_UI *dialog) {
        dialog->onClearAll();
        dialog->onOkPressed();
    });
    window.onBtnFiltersPressed();
    QVERIFY(window.selectedFilterNames.isEmpty());
    project.write(u"scr/b.psc"_s, "LIB;tank.plb\n");
    QTRY_VERIFY(window.filterNamesStale);
    whenAsked<Filters_UI>(this, answered, [](Filters_UI *dialog) { dialog->reject(); });
    window.onBtnFiltersPressed();
    QCOMPARE(window.selectedFilterNames, QSet<QString>({u"pump.plb"_s, u"valve.plb"_s, u"tank.plb"_s}));
    QCOMPARE(answered, 2);
}

void TestVantrelWindow::offersNothingWithoutImageFiles()
{
    const TestProject project;
    TestWindow window;
    window.allFilterNames = window.selectedFilterNames = {u"of another project"_s};
    window.ui.lnProjectPath->setText(project.dir());
    int answered = 0;
    whenAsked<Filters_UI>(this, answered, [](Filters_UI *dialog) {
        QCOMPARE(dialog->findChild<QListWidget *>()->count(), 0);
        dialog->onSelectAll();
        dialog->onOkPressed();
    });
    window.onBtnFiltersPressed();
    QCOMPARE(answered, 1);
    QVERIFY(window.allFilterNames.isEmpty());
    QVERIFY(window.selectedFilterNames.isEmpty());
}

void TestVantrelWindow::showsTheWaitCursorOnlyWhileCollecting()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, "LIB;pump.plb\n");
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    QList<Qt::CursorShape> shapes;
    QTimer::singleShot(0, &window, [&] {
        if (QApplication::overrideCursor() != nullptr)
            shapes += QApplication::overrideCursor()->shape();
    });
    int answered = 0;
    whenAsked<Filters_UI>(this, answered, [](Filters_UI *dialog) {
        QCOMPARE(QApplication::overrideCursor(), nullptr);
        dialog->reject();
    });
    window.onBtnFiltersPressed();
    QCOMPARE(shapes, QList<Qt::CursorShape>{Qt::WaitCursor}); // events were handled meanwhile
    QCOMPARE(QApplication::overrideCursor(), nullptr);
    QCOMPARE(answered, 1);
}

void TestVantrelWindow::showsTheFileThatIsWorkedOn()
{
    TestWindow window;
    window.onUpdFileName(u"/p/scr/a.psc"_s);
    QCOMPARE(window.ui.FileName->text(), u"Searching in /p/scr/a.psc..."_s);
    QCOMPARE(window.ui.FileName->toolTip(), u"Searching in /p/scr/a.psc..."_s);
    window.onConvertEnd();
    QCOMPARE(window.ui.FileName->text(), QString());
    QCOMPARE(window.ui.FileName->toolTip(), QString());
}

void TestVantrelWindow::showsFileNamesAsTheyAre()
{
    TestWindow window;
    window.onUpdFileName(u"/p/<b>%1</b>.psc"_s);
    QCOMPARE(window.ui.FileName->text(), u"Searching in /p/<b>%1</b>.psc..."_s);
    QCOMPARE(window.ui.FileName->textFormat(), Qt::PlainText);
    QVERIFY(window.ui.FileName->toolTip().contains(u"&lt;b&gt;%1&lt;/b&gt;"_s)); // tool tips take rich text
}

void TestVantrelWindow::longFileNamesDoNotWidenTheWindow()
{
    TestWindow window;
    window.show();
    const QSize size = window.size();
    const int least = window.minimumSizeHint().width();
    const QString path = u"/p/scr/"_s + QString(5000, u'w') + ".psc"_L1;
    window.onUpdFileName(path);
    QCoreApplication::processEvents();
    QCOMPARE(window.minimumSizeHint().width(), least);
    QCOMPARE(window.size(), size);
    QCOMPARE(window.ui.FileName->toolTip(), u"Searching in %1..."_s.arg(path));
    QVERIFY(window.ui.FileName->width() > 300); // and it is not squeezed away
}

void TestVantrelWindow::followsTheProgress()
{
    TestWindow window;
    window.onProgressChanged(7, 3);
    QCOMPARE(window.ui.progressBar->maximum(), 7);
    QCOMPARE(window.ui.progressBar->value(), 3);
    window.onProgressChanged(2, 2);
    QCOMPARE(window.ui.progressBar->maximum(), 2);
    QCOMPARE(window.ui.progressBar->value(), 2);
    window.onConvertEnd();
    QCOMPARE(window.ui.progressBar->maximum(), 2);
    QCOMPARE(window.ui.progressBar->value(), 0);
}

void TestVantrelWindow::paintsTheProgressWithEverythingElse()
{
    TestWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QCoreApplication::processEvents();
    PaintCounter painted(*window.ui.progressBar);
    for (int file = 0; file <= 100; ++file)
        window.onProgressChanged(100, file);
    QCOMPARE(painted.count, 0);
    QTRY_VERIFY(painted.count > 0);
}

void TestVantrelWindow::addsReportsToTableAndChangeLog()
{
    const TestProject project;
    project.makeFolder(u"log"_s);
    TestWindow window;
    window.converter->setProjectDir(project.dir());
    QMetaObject::invokeMethod(
        window.converter.get(), [&] { window.converter->createLogFileName(); }, Qt::BlockingQueuedConnection);

    Converter::STBlock block;
    block.imageFile = project.path(u"scr/a.psc"_s);
    block.status = 1;
    window.onConvertInfo(block);
    QCOMPARE(window.rowTexts(window.ui.rplShapeTable, 0).first(2),
             QStringList({u"NO REPLACE"_s, u"<proj>/scr/a.psc"_s}));
    QFile changeLog(window.converter->logFileName());
    QVERIFY(changeLog.open(QIODevice::ReadOnly));
    QCOMPARE(changeLog.readAll().count('\n'), 2);
}

void TestVantrelWindow::opensTheLogFile()
{
    TestWindow window;
    DesktopRecorder desktop;
    const QString path = Qel::Logger::getLogFilePath();
    QVERIFY(QFileInfo::exists(path));
    window.onBtnLogPressed();
    QCOMPARE(desktop.opened.size(), 1);
    QCOMPARE(desktop.opened.first().toString(), u"file:///"_s + path);
    QCOMPARE(QFileInfo(desktop.opened.first().toLocalFile()).canonicalFilePath(),
             QFileInfo(path).canonicalFilePath());
}

void TestVantrelWindow::tellsThatTheLogFileIsGone()
{
    TestWindow window;
    window.onConvertEnd();
    DesktopRecorder desktop;
    const QString path = Qel::Logger::getLogFilePath();
    QVERIFY(QFile::rename(path, path + ".away"_L1));
    int answered = 0;
    whenAsked<QMessageBox>(this, answered, [&](QMessageBox *box) {
        QCOMPARE(box->parentWidget(), &window);
        QCOMPARE(box->icon(), QMessageBox::Critical);
        QCOMPARE(box->windowTitle(), u"Vantrel Info"_s);
        QCOMPARE(box->text(), u"File %1 does not exist anymore"_s.arg(path));
        QCOMPARE(box->standardButtons(), QMessageBox::Ok);
        box->button(QMessageBox::Ok)->click();
    });
    QTest::mouseClick(window.ui.btnLog, Qt::LeftButton);
    QVERIFY(QFile::rename(path + ".away"_L1, path));
    QCOMPARE(answered, 1);
    QVERIFY(desktop.opened.isEmpty());
}

void TestVantrelWindow::opensFilesWithUnusualNames_data()
{
    QTest::addColumn<QString>("project");
    QTest::newRow("blank") << u"a plant"_s;
    QTest::newRow("number sign") << u"plant#1"_s;
    QTest::newRow("question mark") << u"plant?x=1"_s;
    QTest::newRow("per cent") << u"100%25 %1 %zz"_s;
    QTest::newRow("umlaut") << u"gr\u00fcn"_s;
    QTest::newRow("markup") << u"<b>bold<"_s;
    QTest::newRow("brackets") << u"a[1]{2};:@&=+$,"_s;
    QTest::newRow("backslash") << u"a\\b"_s;
}

void TestVantrelWindow::opensFilesWithUnusualNames()
{
    QFETCH(const QString, project);
    const TestProject plant(project);
    plant.makeFolder(u"log"_s);
    TestWindow window;
    window.ui.lnProjectPath->setText(plant.dir());
    window.converter->setProjectDir(plant.dir());
    QMetaObject::invokeMethod(
        window.converter.get(), [&] { window.converter->createLogFileName(); }, Qt::BlockingQueuedConnection);
    const QString path = window.converter->logFileName();
    const DesktopRecorder desktop;

    int answered = 0;
    whenAsked<QMessageBox>(this, answered, [&](QMessageBox *box) {
        QCOMPARE(box->text(),
                 "File "_L1 + path + " does not exist anymore in the project folder "_L1 + plant.dir());
        QCOMPARE(box->textFormat(), Qt::PlainText);
        box->accept();
    });
    window.onBtnChangedFilesPressed();
    QCOMPARE(answered, 1);

    window.onConvertInfo({});
    QVERIFY(QFileInfo::exists(path));
    window.onBtnChangedFilesPressed();
    QCOMPARE(desktop.opened.size(), 1);
    QVERIFY(desktop.opened.first().isValid());
    QVERIFY(desktop.opened.first().toEncoded().startsWith("file:///"));
    QVERIFY(!desktop.opened.first().hasFragment() && !desktop.opened.first().hasQuery());
    QCOMPARE(QFileInfo(desktop.opened.first().toLocalFile()).canonicalFilePath(), path);

    // A folder in its place is not a file to open.
    QVERIFY(QFile::remove(path) && QDir().mkpath(path));
    whenAsked<QMessageBox>(this, answered, [](QMessageBox *box) { box->accept(); });
    window.onBtnChangedFilesPressed();
    QCOMPARE(answered, 2);
    QCOMPARE(desktop.opened.size(), 1);
}

VANTREL_TEST(QApplication, TestVantrelWindow)
#include "tst_window.moc"
