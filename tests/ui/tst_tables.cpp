// What the user can do with the two tables.
#include "LightBase.h"
#include "ReportedFile.h"
#include "RowToolTips.h"
#include "Surroundings.h"
#include "TableActions.h"
#include "TableLayout.h"
#include "TableText.h"
#include "TestSuite.h"
#include "TestWindow.h"

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QHeaderView>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QSettings>
#include <QTest>
#include <QToolTip>

#include <csignal>
#include <memory>

#include <sys/resource.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

/// Three columns and the given rows; not sorted.
std::unique_ptr<QTableWidget> table(const TextRows &rows)
{
    auto widget = std::make_unique<QTableWidget>(0, 3);
    widget->setObjectName(u"small"_s);
    widget->setHorizontalHeaderLabels({u"One"_s, u" Two"_s, u"Three"_s});
    for (const QStringList &row : rows) {
        const int place = widget->rowCount();
        widget->insertRow(place);
        for (int column = 0; column < row.size(); ++column)
            widget->setItem(place, column, new QTableWidgetItem(row.at(column)));
    }
    return widget;
}

const TextRows abc{{u"a1"_s, u"a2"_s, u"a3"_s}, {u"b1"_s, u"b2"_s, u"b3"_s}, {u"c1"_s, u"c2"_s, u"c3"_s}};

QString clipboardText()
{
    return QApplication::clipboard()->text();
}

QAction *entry(const QMenu &menu, const QString &text)
{
    const QList<QAction *> actions = menu.actions();
    for (QAction *action : actions) {
        if (action->text() == text)
            return action;
    }
    qFatal("no entry %s", qPrintable(text));
}

/// The menu that opens when the user asks for one at a place.
QMenu *openedMenu(QWidget &widget, QPoint place)
{
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, widget.mapToGlobal(place));
    QCoreApplication::sendEvent(&widget, &event);
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    if (menu == nullptr)
        qFatal("no menu was opened");
    return menu;
}

/// The menu that a window's table opens for a row.
QMenu *openedMenu(QTableWidget &table, int row)
{
    const QPoint place = row >= 0 ? table.visualRect(table.model()->index(row, 0)).center()
                                  : QPoint(5, table.viewport()->height() - 5);
    return openedMenu(*table.viewport(), place);
}

void drag(QWidget &widget, QPoint from, QPoint to)
{
    QTest::mousePress(&widget, Qt::LeftButton, {}, from);
    for (const QPoint place : {(from + to) / 2, to}) {
        QMouseEvent move(QEvent::MouseMove, place, widget.mapToGlobal(place), Qt::NoButton, Qt::LeftButton,
                         Qt::NoModifier);
        QCoreApplication::sendEvent(&widget, &move);
    }
    QTest::mouseRelease(&widget, Qt::LeftButton, {}, to);
}

Converter::STBlock report(const QString &imageFile)
{
    Converter::STBlock block;
    block.imageFile = imageFile;
    block.shapeFile = u"pump.plb"_s;
    block.imageObject = u"LIB;P101"_s;
    return block;
}

QSettings settings()
{
    return QSettings(u"QEL"_s, u"Vantrel"_s);
}

/// A palette of a dark theme while it lives.
class DarkTheme final
{
public:
    DarkTheme()
    {
        QPalette dark(QColor(0x30, 0x30, 0x30));
        dark.setColor(QPalette::Base, QColor(0x20, 0x20, 0x20));
        dark.setColor(QPalette::Text, Qt::white);
        QApplication::setPalette(dark);
    }
    ~DarkTheme() { QApplication::setPalette(QPalette()); }
    Q_DISABLE_COPY_MOVE(DarkTheme)
};

} // namespace

class TestTables : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void separatesCellsByTabs();
    void writesCellsThatStayTexts_data();
    void writesCellsThatStayTexts();
    void keepsRowsOfOneEmptyCell();
    void takesWhatIsShownInTheOrderOfTheHeader();

    void copiesTheSelection();
    void copiesOneCellAsItIs();
    void copiesNothingWithoutASelection();
    void copiesSelectedRowsOfTheLog();
    void copiesByKey();
    void copiesARowAndAll();
    void copiesTheRowThatWasClicked();
    void offersOnlyWhatIsPossible();
    void opensTheMenuOfTheRow();
    void savesTheTable();
    void keepsTheOldFileWhenSavingFails();
    void asksWhereToSave();
    void tellsThatSavingFailed();

    void findsTheFileOfARow_data();
    void findsTheFileOfARow();
    void opensTheFileAndItsFolder();
    void opensFilesOfARelativeProject();
    void tellsThatTheFileIsGone();
    void offersFilesOnlyForReports();

    void hiddenColumnsAndOrderSurviveARestart();
    void columnsAreDraggedToTheirPlace();
    void columnsAreHiddenByTheMenuOfTheHeader();
    void oneColumnStays();
    void writesNoSettingsUntilAColumnIsChanged();
    void ignoresSettingsOfOtherColumns_data();
    void ignoresSettingsOfOtherColumns();
    void shownAgainColumnsFit();

    void tellsARowInFull();
    void toolTipsShowMarkupAsItIs();

    void staysLightInADarkTheme();
    void leavesALightThemeAlone();
};

void TestTables::init()
{
    forgetSettings();
    QApplication::clipboard()->setText(u"untouched"_s);
}

// --- Texts ---

void TestTables::separatesCellsByTabs()
{
    QCOMPARE(tabSeparated({{u"a"_s, u"b"_s}, {u"1"_s, QString()}}), u"a\tb\n1\t\n"_s);
    QCOMPARE(tabSeparated({{u"x\ty"_s, u"x\ny"_s, u"x\r\ny"_s}}), u"x y\tx y\tx  y\n"_s);
    QCOMPARE(tabSeparated({}), QString());
}

void TestTables::writesCellsThatStayTexts_data()
{
    QTest::addColumn<QString>("cell");
    QTest::addColumn<QString>("written");
    QTest::newRow("plain") << u"a b;c=d'"_s << u"a b;c=d'"_s;
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("comma") << u"1, 2"_s << u"\"1, 2\""_s;
    QTest::newRow("quotation mark") << u"a\"b"_s << u"\"a\"\"b\""_s;
    QTest::newRow("line break") << u"a\nb"_s << uR"(a\nb)"_s;
    QTest::newRow("carriage return") << u"a\rb"_s << uR"(a\rb)"_s;
    QTest::newRow("tab") << u"a\tb"_s << uR"(a\tb)"_s;
    QTest::newRow("other control characters") << u"a\u001b\u009b,"_s << uR"("a\x1b\x9b,")"_s;
    QTest::newRow("formula") << u"=1+1"_s << u"'=1+1"_s;
    QTest::newRow("formula with quotes") << u"=a(\"b\",c)"_s << u"\"'=a(\"\"b\"\",c)\""_s;
    QTest::newRow("plus") << u"+1"_s << u"'+1"_s;
    QTest::newRow("minus") << u"-5, 7, 0, 0"_s << u"\"'-5, 7, 0, 0\""_s;
    QTest::newRow("at") << u"@a"_s << u"'@a"_s;
    QTest::newRow("tab first") << u"\t=a"_s << uR"('\t=a)"_s;
    QTest::newRow("line break first") << u"\n=a"_s << uR"(\n=a)"_s;
}

void TestTables::writesCellsThatStayTexts()
{
    QFETCH(const QString, cell);
    QFETCH(const QString, written);
    QCOMPARE(commaSeparated({{u"h"_s, u"i"_s}, {cell, cell}}),
             "h,i\r\n"_L1 + written + u',' + written + "\r\n"_L1);
}

void TestTables::keepsRowsOfOneEmptyCell()
{
    QCOMPARE(commaSeparated({{u"h"_s}, {QString()}, {u"x"_s}}), u"h\r\n\"\"\r\nx\r\n"_s);
    QCOMPARE(commaSeparated({{QString(), QString()}}), u",\r\n"_s);
    QCOMPARE(tabSeparated({{u"h"_s}, {QString()}}), u"h\n\n"_s);
}

void TestTables::takesWhatIsShownInTheOrderOfTheHeader()
{
    const auto widget = table(abc);
    widget->horizontalHeader()->moveSection(2, 0);
    widget->hideColumn(0);
    QCOMPARE(shownColumns(*widget), QList<int>({2, 1}));
    QCOMPARE(allTextRows(*widget),
             TextRows({{u"Three"_s, u"Two"_s}, {u"a3"_s, u"a2"_s}, {u"b3"_s, u"b2"_s}, {u"c3"_s, u"c2"_s}}));
    widget->sortItems(0, Qt::DescendingOrder);
    QCOMPARE(allTextRows(*widget).at(1), QStringList({u"c3"_s, u"c2"_s}));
}

// --- Copies ---

void TestTables::copiesTheSelection()
{
    const auto widget = table(abc);
    widget->setSelectionMode(QAbstractItemView::MultiSelection);
    const TableActions actions(*widget);
    widget->item(2, 0)->setSelected(true);
    widget->item(0, 2)->setSelected(true);
    actions.copySelection();
    QCOMPARE(clipboardText(), u"One\tThree\na1\ta3\nc1\tc3\n"_s);
}

void TestTables::copiesOneCellAsItIs()
{
    const auto widget = table({{u"a\tb"_s, {}, {}}});
    const TableActions actions(*widget);
    widget->item(0, 0)->setSelected(true);
    actions.copySelection();
    QCOMPARE(clipboardText(), u"a\tb"_s);
}

void TestTables::copiesNothingWithoutASelection()
{
    const auto widget = table(abc);
    const TableActions actions(*widget);
    widget->setCurrentCell(1, 1, QItemSelectionModel::NoUpdate);
    actions.copySelection();
    actions.copyRow(-1);
    QCOMPARE(clipboardText(), u"untouched"_s);
}

void TestTables::copiesSelectedRowsOfTheLog()
{
    TestWindow window;
    window.ui.logTable->setRowCount(0);
    window.handleMessage(u"error"_s, u"today"_s, u"one"_s);
    window.handleMessage(u"info"_s, u"now"_s, u"two"_s);
    window.ui.logTable->selectRow(1);
    window.ui.logTable->findChild<TableActions *>()->copySelection();
    QCOMPARE(clipboardText(), u"Level\tDate/Time\tMessage\nerror\ttoday\tone\n"_s);
}

void TestTables::copiesByKey()
{
    TestWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.onConvertInfo(report(u"/p/scr/a.psc"_s));
    window.onConvertInfo(report(u"/p/scr/b.psc"_s));
    window.ui.rplShapeTable->setFocus();
    window.ui.rplShapeTable->clearSelection();
    window.ui.rplShapeTable->item(0, 1)->setSelected(true);
    window.ui.rplShapeTable->setCurrentCell(1, 2, QItemSelectionModel::NoUpdate);
    QTest::keyClick(window.ui.rplShapeTable, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(clipboardText(), window.ui.rplShapeTable->item(0, 1)->text());

    window.ui.logTable->setFocus();
    window.ui.logTable->selectRow(0);
    QTest::keyClick(window.ui.logTable, Qt::Key_C, Qt::ControlModifier);
    QVERIFY(clipboardText().startsWith(u"Level\tDate/Time\tMessage\nsystem\t"_s));
}

void TestTables::copiesARowAndAll()
{
    const auto widget = table(abc);
    const TableActions actions(*widget);
    actions.copyRow(1);
    QCOMPARE(clipboardText(), u"One\tTwo\tThree\nb1\tb2\tb3\n"_s);
    actions.copyAll();
    QCOMPARE(clipboardText(), u"One\tTwo\tThree\na1\ta2\ta3\nb1\tb2\tb3\nc1\tc2\tc3\n"_s);
}

void TestTables::copiesTheRowThatWasClicked()
{
    const auto widget = table(abc);
    TableActions actions(*widget);
    const QMenu *menu = actions.menuFor(1);
    widget->insertRow(0); // as a run does
    entry(*menu, u"Copy Row"_s)->trigger();
    QCOMPARE(clipboardText(), u"One\tTwo\tThree\nb1\tb2\tb3\n"_s);
    widget->removeRow(2);
    QApplication::clipboard()->setText(u"untouched"_s);
    entry(*menu, u"Copy Row"_s)->trigger();
    QCOMPARE(clipboardText(), u"untouched"_s);
    entry(*menu, u"Copy All"_s)->trigger();
    QCOMPARE(clipboardText().count(u'\n'), 4);
}

void TestTables::offersOnlyWhatIsPossible()
{
    const auto widget = table(abc);
    TableActions actions(*widget);
    const auto enabled = [&](int row) {
        QStringList texts;
        const QList<QAction *> all = actions.menuFor(row)->actions();
        for (const QAction *action : all) {
            if (action->isEnabled() && !action->isSeparator())
                texts += action->text();
        }
        return texts;
    };
    QCOMPARE(enabled(1), QStringList({u"Copy Row"_s, u"Copy All"_s, u"Save As..."_s}));
    QCOMPARE(enabled(-1), QStringList({u"Copy All"_s, u"Save As..."_s}));
    widget->selectRow(0);
    QCOMPARE(enabled(0), QStringList({u"Copy"_s, u"Copy Row"_s, u"Copy All"_s, u"Save As..."_s}));
    widget->setRowCount(0);
    QCOMPARE(enabled(-1), QStringList());
    QCOMPARE(entry(*actions.menuFor(-1), u"Copy"_s)->shortcut(), QKeySequence(QKeySequence::Copy));
}

void TestTables::opensTheMenuOfTheRow()
{
    TestWindow window;
    window.show();
    window.handleMessage(u"info"_s, u"today"_s, u"below"_s);
    window.handleMessage(u"info"_s, u"today"_s, u"above"_s);
    window.ui.logTable->setCurrentCell(0, 0);
    const QPointer<QMenu> menu = openedMenu(*window.ui.logTable, 1);
    entry(*menu, u"Copy Row"_s)->trigger();
    QCOMPARE(clipboardText(), u"Level\tDate/Time\tMessage\ninfo\ttoday\tbelow\n"_s);
    entry(*menu, u"Copy"_s)->trigger();
    QVERIFY(clipboardText().endsWith(u"above\n"_s));
    menu->close();
    QTRY_VERIFY(menu.isNull()); // and does not stay with the table
}

// --- Saving ---

void TestTables::savesTheTable()
{
    const TestProject project;
    project.makeFolder(u"out"_s);
    const auto widget = table({{u"gr\u00fcn"_s, u"1, 2"_s, u"\"c\""_s}});
    const TableActions actions(*widget);
    widget->hideColumn(0);
    QCOMPARE(actions.writeTo(project.path(u"out/a.csv"_s)), QString());
    QCOMPARE(project.read(u"out/a.csv"_s), QByteArray("Two,Three\r\n\"1, 2\",\"\"\"c\"\"\"\r\n"));
    widget->showColumn(0);
    QCOMPARE(actions.writeTo(project.path(u"out/a.csv"_s)), QString());
    QVERIFY(project.read(u"out/a.csv"_s).contains("\ngr\xc3\xbcn,"));
}

void TestTables::keepsTheOldFileWhenSavingFails()
{
    const TestProject project;
    project.write(u"out/a.csv"_s, "old");
    const auto widget = table(abc);
    const TableActions actions(*widget);
    QVERIFY(!actions.writeTo(project.path(u"missing/a.csv"_s)).isEmpty());
    QVERIFY(!actions.writeTo(project.path(u"out"_s)).isEmpty());
    const QString pipe = project.path(u"pipe.csv"_s);
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QCOMPARE(actions.writeTo(pipe), u"this is not a file"_s);
    QVERIFY(QFile::remove(pipe));
    QCOMPARE(project.files(u"."_s), QStringList{u"out/a.csv"_s});
    QCOMPARE(project.read(u"out/a.csv"_s), QByteArray("old"));

    // A disk that is full only while the table is written.
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    QCOMPARE(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit few{4, before.rlim_max};
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &few), 0);
    const QString error = actions.writeTo(project.path(u"out/a.csv"_s));
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &before), 0);
    QVERIFY(!error.isEmpty());
    QCOMPARE(project.files(u"."_s), QStringList{u"out/a.csv"_s});
    QCOMPARE(project.read(u"out/a.csv"_s), QByteArray("old"));
}

void TestTables::asksWhereToSave()
{
    const TestProject project;
    project.makeFolder(u"out"_s);
    TestWindow window;
    int answered = 0;
    whenAsked<QFileDialog>(this, answered, [&](QFileDialog *dialog) {
        QCOMPARE(dialog->acceptMode(), QFileDialog::AcceptSave);
        QCOMPARE(dialog->windowTitle(), u"Save Table"_s);
        dialog->setDirectory(project.path(u"out"_s));
        dialog->selectFile(project.path(u"out/log.csv"_s));
        QTest::keyClick(dialog, Qt::Key_Return);
    });
    entry(*openedMenu(*window.ui.logTable, -1), u"Save As..."_s)->trigger();
    QCOMPARE(answered, 1);
    QVERIFY(project.read(u"out/log.csv"_s).startsWith("Level,Date/Time,Message\r\nsystem,"));

    whenAsked<QFileDialog>(this, answered, [](QFileDialog *dialog) { dialog->reject(); });
    entry(*openedMenu(*window.ui.logTable, -1), u"Save As..."_s)->trigger();
    QCOMPARE(answered, 2);
    QCOMPARE(project.files(u"out"_s), QStringList{u"log.csv"_s});
}

void TestTables::tellsThatSavingFailed()
{
    const TestProject project;
    project.makeFolder(u"out"_s);
    TestWindow window;
    int saved = 0;
    int told = 0;
    whenAsked<QFileDialog>(this, saved, [&](QFileDialog *dialog) {
        whenAsked<QMessageBox>(this, told, [&](QMessageBox *box) {
            QCOMPARE(box->windowTitle(), u"Vantrel Info"_s);
            QCOMPARE(box->textFormat(), Qt::PlainText);
            QVERIFY(box->text().startsWith(
                u"File %1 could not be written: "_s.arg(project.path(u"out/<b>.csv"_s))));
            box->accept();
        });
        dialog->setDirectory(project.path(u"out"_s));
        dialog->selectFile(project.path(u"out/<b>.csv"_s));
        project.remove(u"out"_s);
        QMetaObject::invokeMethod(dialog, "accept", Qt::QueuedConnection);
    });
    entry(*openedMenu(*window.ui.logTable, -1), u"Save As..."_s)->trigger();
    QCOMPARE(saved, 1);
    QCOMPARE(told, 1);
}

// --- Files of rows ---

void TestTables::findsTheFileOfARow_data()
{
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("project");
    QTest::addColumn<QString>("file");
    QTest::newRow("usual") << u"<proj>/scr/a/b.psc"_s << u"/plants/north"_s << u"/plants/north/scr/a/b.psc"_s;
    QTest::newRow("project below scr")
        << u"<proj>/scr/north/scr/a.psc"_s << u"/p/scr/north"_s << u"/p/scr/north/scr/a.psc"_s;
    QTest::newRow("path as it is") << u"/elsewhere/a.psc"_s << u"/plants/north"_s << u"/elsewhere/a.psc"_s;
    QTest::newRow("nothing") << QString() << u"/plants/north"_s << QString();
    QTest::newRow("relative project") << u"<proj>/scr/a.psc"_s << u"north"_s << u"north/scr/a.psc"_s;
}

void TestTables::findsTheFileOfARow()
{
    QFETCH(const QString, shown);
    QFETCH(const QString, project);
    QFETCH(const QString, file);
    QCOMPARE(reportedFile(shown, project), file);
}

void TestTables::opensTheFileAndItsFolder()
{
    const TestProject project(u"a plant#1"_s);
    project.writeLines(u"scr/north/a.psc"_s, {"IVG;a"});
    project.makeFolder(u"scr_temp"_s);
    project.write(u"scr/0.psc"_s, "");
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    window.onBtnStartPressed();
    QTRY_VERIFY(window.isIdle());
    window.ui.lnProjectPath->setText(u"/another/project"_s); // the rows are still of the run

    DesktopRecorder desktop;
    QTableWidget &reports = *window.ui.rplShapeTable;
    const QList<QTableWidgetItem *> found = reports.findItems(u"<proj>/scr/north/a.psc"_s, Qt::MatchExactly);
    QCOMPARE(found.size(), 1);
    const QMenu *menu = openedMenu(reports, found.first()->row());
    entry(*menu, u"Open Image File"_s)->trigger();
    entry(*menu, u"Open Containing Folder"_s)->trigger();
    QCOMPARE(desktop.opened.size(), 2);
    QCOMPARE(QDir::cleanPath(desktop.opened.at(0).toLocalFile()), project.path(u"scr/north/a.psc"_s));
    QCOMPARE(QDir::cleanPath(desktop.opened.at(1).toLocalFile()), project.path(u"scr/north"_s));
}

void TestTables::opensFilesOfARelativeProject()
{
    const TestProject project;
    project.writeLines(u"scr/a.psc"_s, {"IVG;a"});
    const QString before = QDir::currentPath();
    const auto comeBack = qScopeGuard([&before] { QDir::setCurrent(before); });
    QVERIFY(QDir::setCurrent(project.dir()));
    TestWindow window;
    window.ui.lnProjectPath->setText(u"."_s);
    window.onBtnStartPressed();
    QTRY_VERIFY(window.isIdle());

    DesktopRecorder desktop;
    const QMenu *menu = openedMenu(*window.ui.rplShapeTable, 0);
    entry(*menu, u"Open Image File"_s)->trigger();
    entry(*menu, u"Open Containing Folder"_s)->trigger();
    QCOMPARE(desktop.opened.size(), 2);
    QCOMPARE(QDir::cleanPath(desktop.opened.at(0).toLocalFile()), project.path(u"scr/a.psc"_s));
    QCOMPARE(QDir::cleanPath(desktop.opened.at(1).toLocalFile()), project.path(u"scr"_s));
}

void TestTables::tellsThatTheFileIsGone()
{
    TestWindow window;
    window.onConvertInfo(report(u"/no/scr/<b>.psc"_s));
    const DesktopRecorder desktop;
    int answered = 0;
    whenAsked<QMessageBox>(this, answered, [](QMessageBox *box) {
        QVERIFY(box->text().startsWith(u"File "_s));
        QVERIFY(box->text().endsWith(u"/scr/<b>.psc does not exist anymore"_s));
        box->accept();
    });
    entry(*openedMenu(*window.ui.rplShapeTable, 0), u"Open Image File"_s)->trigger();
    QCOMPARE(answered, 1);
    QVERIFY(desktop.opened.isEmpty());
}

void TestTables::offersFilesOnlyForReports()
{
    TestWindow window;
    window.show();
    window.onConvertInfo(report(u"/no/scr/a.psc"_s));
    window.onConvertInfo({}); // about no file
    const auto offered = [&](QTableWidget *table, int row) {
        QStringList texts;
        const QList<QAction *> actions = openedMenu(*table, row)->actions();
        for (const QAction *action : actions) {
            if (action->text().startsWith(u"Open"_s) && action->isEnabled())
                texts += action->text();
        }
        return texts;
    };
    QCOMPARE(offered(window.ui.rplShapeTable, 1),
             QStringList({u"Open Image File"_s, u"Open Containing Folder"_s}));
    QCOMPARE(offered(window.ui.rplShapeTable, 0), QStringList());
    QCOMPARE(offered(window.ui.rplShapeTable, -1), QStringList());
    QCOMPARE(offered(window.ui.logTable, 0), QStringList());
}

// --- Columns ---

void TestTables::hiddenColumnsAndOrderSurviveARestart()
{
    {
        TestWindow window;
        window.ui.rplShapeTable->horizontalHeader()->moveSection(7, 0);
        window.ui.rplShapeTable->findChild<TableLayout *>()->setColumnShown(3, false);
        window.ui.logTable->findChild<TableLayout *>()->setColumnShown(1, false);
    }
    TestWindow window;
    QCOMPARE(shownColumns(*window.ui.rplShapeTable), QList<int>({7, 0, 1, 2, 4, 5, 6}));
    QCOMPARE(shownColumns(*window.ui.logTable), QList<int>({0, 2}));
    window.onConvertInfo(report(u"/p/scr/a.psc"_s)); // rows are filled as ever
    QCOMPARE(window.rowTexts(window.ui.rplShapeTable, 0).at(2), u"pump.plb"_s);

    // As it was made: nothing is left to remember.
    window.ui.rplShapeTable->horizontalHeader()->moveSection(0, 7);
    window.ui.rplShapeTable->findChild<TableLayout *>()->setColumnShown(3, true);
    window.ui.logTable->findChild<TableLayout *>()->setColumnShown(1, true);
    QCOMPARE(settings().childGroups(), QStringList());
}

void TestTables::columnsAreDraggedToTheirPlace()
{
    {
        TestWindow window;
        window.show();
        const QHeaderView &header = *window.ui.logTable->horizontalHeader();
        const int y = header.height() / 2;
        drag(*header.viewport(), {header.sectionViewportPosition(0) + 10, y},
             {header.sectionViewportPosition(1) + header.sectionSize(1) - 10, y});
        QCOMPARE(shownColumns(*window.ui.logTable), QList<int>({1, 0, 2}));
    }
    const TestWindow window;
    QCOMPARE(shownColumns(*window.ui.logTable), QList<int>({1, 0, 2}));
}

void TestTables::columnsAreHiddenByTheMenuOfTheHeader()
{
    TestWindow window;
    window.show();
    const QPointer<QMenu> menu = openedMenu(*window.ui.logTable->horizontalHeader()->viewport(), {10, 5});
    QVERIFY(entry(*menu, u"Date/Time"_s)->isChecked());
    entry(*menu, u"Date/Time"_s)->trigger();
    QCOMPARE(shownColumns(*window.ui.logTable), QList<int>({0, 2}));
    menu->close();
    QTRY_VERIFY(menu.isNull());

    const QMenu *next = openedMenu(*window.ui.logTable->horizontalHeader()->viewport(), {10, 5});
    QVERIFY(!entry(*next, u"Date/Time"_s)->isChecked());
    entry(*next, u"Date/Time"_s)->trigger();
    QCOMPARE(shownColumns(*window.ui.logTable), QList<int>({0, 1, 2}));
}

void TestTables::oneColumnStays()
{
    const auto widget = table(abc);
    TableLayout layout(*widget);
    for (int column = 0; column < 3; ++column)
        layout.setColumnShown(column, false);
    QCOMPARE(shownColumns(*widget), QList<int>{2});

    const QList<QAction *> entries = layout.columnMenu()->actions();
    QCOMPARE(entries.size(), 3);
    QVERIFY(!entries.at(2)->isEnabled());
    QVERIFY(entries.at(2)->isChecked());
    QCOMPARE(entries.at(1)->text(), u"Two"_s);
    entries.at(1)->trigger();
    QCOMPARE(shownColumns(*widget), QList<int>({1, 2}));
}

void TestTables::writesNoSettingsUntilAColumnIsChanged()
{
    const auto widget = table(abc);
    {
        const TableLayout layout(*widget);
        widget->resizeColumnsToContents();
    }
    QCOMPARE(settings().allKeys(), QStringList());
}

void TestTables::ignoresSettingsOfOtherColumns_data()
{
    QTest::addColumn<QStringList>("order");
    QTest::addColumn<QStringList>("hidden");
    QTest::addColumn<QList<int>>("shown");
    const QStringList none;
    QTest::newRow("fewer") << QStringList({u"1"_s, u"0"_s}) << none << QList<int>({0, 1, 2});
    QTest::newRow("more") << QStringList({u"3"_s, u"2"_s, u"1"_s, u"0"_s}) << none << QList<int>({0, 1, 2});
    QTest::newRow("twice") << QStringList({u"1"_s, u"1"_s, u"0"_s}) << none << QList<int>({0, 1, 2});
    QTest::newRow("no numbers") << QStringList({u"a"_s, u"b"_s, u"c"_s}) << none << QList<int>({0, 1, 2});
    QTest::newRow("all hidden") << none << QStringList({u"0"_s, u"1"_s, u"2"_s}) << QList<int>{2};
    QTest::newRow("hidden elsewhere")
        << none << QStringList({u"9"_s, u"-1"_s, u"x"_s}) << QList<int>({0, 1, 2});
    QTest::newRow("right") << QStringList({u"2"_s, u"0"_s, u"1"_s}) << QStringList{u"0"_s}
                           << QList<int>({2, 1});
}

void TestTables::ignoresSettingsOfOtherColumns()
{
    QFETCH(const QStringList, order);
    QFETCH(const QStringList, hidden);
    QFETCH(const QList<int>, shown);
    settings().setValue("columns/smallOrder"_L1, order);
    settings().setValue("columns/smallHidden"_L1, hidden);
    const auto widget = table(abc);
    const TableLayout layout(*widget);
    QCOMPARE(shownColumns(*widget), shown);
}

void TestTables::shownAgainColumnsFit()
{
    TestWindow window;
    auto *layout = window.ui.logTable->findChild<TableLayout *>();
    window.handleMessage(u"info"_s, u"today"_s, QString(200, u'w'));
    const int width = window.ui.logTable->columnWidth(2);
    layout->setColumnShown(2, false);
    window.handleMessage(u"info"_s, u"today"_s, u"short"_s);
    layout->setColumnShown(2, true);
    QCOMPARE(window.ui.logTable->columnWidth(2), width);

    QTableWidget &reports = *window.ui.rplShapeTable;
    constexpr int errorColumn = 7;
    reports.findChild<TableLayout *>()->setColumnShown(errorColumn, false);
    Converter::STBlock block = report(u"/p/scr/a.psc"_s);
    block.error = QString(200, u'w');
    window.onConvertInfo(block);
    reports.findChild<TableLayout *>()->setColumnShown(errorColumn, true);
    const int shown = reports.columnWidth(errorColumn);
    reports.resizeColumnsToContents();
    QCOMPARE(shown, reports.columnWidth(errorColumn));
}

// --- Looks ---

void TestTables::tellsARowInFull()
{
    TestWindow window;
    Converter::STBlock block = report(u"/p/scr/a.psc"_s);
    block.status = 2;
    block.error = QString(300, u'e');
    window.onConvertInfo(block);
    window.ui.rplShapeTable->hideColumn(1);
    const auto textOf = [](const QTableWidget *table) {
        const QObjectList &children = table->children();
        const auto *tips = *std::find_if(children.begin(), children.end(), [](const QObject *child) {
            return dynamic_cast<const RowToolTips *>(child) != nullptr;
        });
        return dynamic_cast<const RowToolTips *>(tips)->textOf(0);
    };
    QCOMPARE(textOf(window.ui.rplShapeTable),
             u"Status: ERROR\nImage File: <proj>/scr/a.psc\nShape File: pump.plb\nPosition: 0, 0, -1, -1\n"
             "Image-Object: P101\nError: "_s +
                 block.error);
    window.handleMessage(u"info"_s, u"today"_s, u"the message"_s);
    QCOMPARE(textOf(window.ui.logTable), u"Level: info\nDate/Time: today\nMessage: the message"_s);
}

void TestTables::toolTipsShowMarkupAsItIs()
{
    TestWindow window;
    window.show();
    window.handleMessage(u"<b>bold</b>"_s, u"today"_s, u"message"_s);
    QTableWidget &log = *window.ui.logTable;
    const auto rest = [&](QPoint place) {
        QHelpEvent event(QEvent::ToolTip, place, log.viewport()->mapToGlobal(place));
        QCoreApplication::sendEvent(log.viewport(), &event);
        return QToolTip::text();
    };
    QVERIFY(rest(log.visualItemRect(log.item(0, 1)).center()).contains(u"&lt;b&gt;bold&lt;/b&gt;"_s));
    log.item(0, 0)->setText(u"plain"_s);
    QCOMPARE(rest(log.visualItemRect(log.item(0, 0)).center()),
             u"Level: plain\nDate/Time: today\nMessage: message"_s);
}

void TestTables::staysLightInADarkTheme()
{
    TestWindow before; // the theme may change while the window is open
    const DarkTheme darkTheme;
    QCoreApplication::processEvents();
    const TestWindow window;
    for (const TestWindow *shown : {static_cast<const TestWindow *>(&before), &window}) {
        for (const QTableWidget *table : {shown->ui.rplShapeTable, shown->ui.logTable}) {
            QCOMPARE(table->viewport()->palette().color(QPalette::Base), QColor(Qt::white));
            QCOMPARE(table->palette().color(QPalette::Text), QColor(Qt::black));
            QVERIFY(table->styleSheet().isEmpty());
            QCOMPARE(table->palette().color(QPalette::Window), shown->palette().color(QPalette::Window));
        }
        QVERIFY(shown->ui.lnProjectPath->palette().color(QPalette::Base).lightness() < 128);
    }
}

void TestTables::leavesALightThemeAlone()
{
    TestWindow window;
    {
        const DarkTheme darkTheme;
        QCoreApplication::processEvents();
    }
    QCoreApplication::processEvents();
    QPalette paper = QApplication::palette();
    paper.setColor(QPalette::Base, QColor(0xff, 0xf8, 0xe8));
    QApplication::setPalette(paper);
    QCoreApplication::processEvents();
    const QColor base = window.ui.logTable->palette().color(QPalette::Base);
    QApplication::setPalette(QPalette());
    QCOMPARE(base, QColor(0xff, 0xf8, 0xe8));
}

VANTREL_TEST(QApplication, TestTables)
#include "tst_tables.moc"
