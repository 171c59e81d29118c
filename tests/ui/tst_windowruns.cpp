// Whole runs through the main window, up to leaving it in the middle of one.
#include "Filters_UI.h"
#include "Gates.h"
#include "RunHistory.h"
#include "Surroundings.h"
#include "TestSuite.h"
#include "TestWindow.h"
#include "UserSettings.h"
#include "WatchFolderThread.h"

#include <QApplication>
#include <QFile>
#include <QMessageBox>
#include <QSettings>
#include <QTest>

#include <atomic>
#include <memory>
#include <thread>

#include <malloc.h>

using namespace Qt::StringLiterals;

namespace {

/// For what a run takes at most, also where disks are slow and sanitizers watch.
constexpr int patience = 60'000;

/// The reports of a first run over the example plant with all names selected.
constexpr int plantFiles = 17;
constexpr int plantReplaced = 57;
constexpr int plantNotReplaced = 3;
constexpr int plantErrors = 7;
constexpr int plantReports = plantReplaced + plantNotReplaced + plantErrors;

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// One image file with as many objects as asked for; all of them refer to the shape.
QByteArray imageWithObjects(int count, const QByteArray &shapeFile)
{
    QByteArray bytes;
    for (int object = 1; object <= count; ++object) {
        const QByteArray number = QByteArray::number(object);
        bytes += "ID;" + number + ";Rect;N\nLIB;" + shapeFile + ";1;Pre" + number + ";LIB;o" + number +
                 "\nPSDV;1;2;3;4;2;1;15;8;1;0;" + number + ";0\n";
    }
    return bytes;
}

/// A project of three small files without anything to replace.
void makeSmallProject(const TestProject &project)
{
    for (const QString &name : {u"a"_s, u"b"_s, u"c"_s})
        project.write(u"scr/%1.psc"_s.arg(name), "ID;1;Rect;" + name.toLatin1() + "\n");
    project.makeFolder(u"log"_s);
}

int countInColumn(const QTableWidget &table, int column, const QString &text)
{
    int count = 0;
    for (int row = 0; row < table.rowCount(); ++row)
        count += table.item(row, column)->text() == text ? 1 : 0;
    return count;
}

qsizetype countOf(const QStringList &messages, const QString &message)
{
    return messages.count(message);
}

void chooseAllNames(TestWindow &window)
{
    int answered = 0;
    whenAsked<Filters_UI>(&window, answered, [](Filters_UI *dialog) { dialog->onOkPressed(); });
    QTest::mouseClick(window.ui.btnFilters, Qt::LeftButton);
    QCOMPARE(answered, 1);
}

void press(QPushButton *button)
{
    QTest::mouseClick(button, Qt::LeftButton);
}

bool fitsColumns(QTableWidget &table)
{
    QList<int> widths;
    for (int column = 0; column < table.columnCount(); ++column)
        widths += table.columnWidth(column);
    table.resizeColumnsToContents();
    QList<int> fittingWidths;
    for (int column = 0; column < table.columnCount(); ++column)
        fittingWidths += table.columnWidth(column);
    return widths == fittingWidths;
}

} // namespace

class TestWindowRuns : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { forgetSettings(); }

    void convertsTheExamplePlant();
    void opensTheChangeLogOfTheRun();
    void replacesNothingWithoutAChoice();
    void replacesOnlyWhatWasChosen();
    void showsThatItRuns();
    void emptiesTheTables();
    void remembersNothingOfThePathTypedMeanwhile();
    void dialogMayStayOpenWhileTheRunEnds();
    void canBeStartedAgain();
    void keepsAsManyRunsAsTheSettingsSay();
    void runsOverNoFile();
    void runsOverAMissingProject();
    void writesNoChangeLogWithoutItsFolder();

    void showsAtOnceWhatItIsTold();
    void showsAllThatWasToldBeforeACancel();
    void showsAllThatWasToldBeforeTheEnd();
    void nextStartEmptiesTheTablesOfWhatCameLate();

    void runWaitsForTheWindow_data();
    void runWaitsForTheWindow();
    void logOfAnotherThreadWaitsForTheWindow();
    void runThatWaitsGoesOnBehindADialog();
    void runThatWaitsIsCancelledAtOnce();

    void cancelStopsBeforeTheNextFile();
    void cancelWinsOverAStartThatHasNotBegun();
    void cancelComesTooLateForTheCopyBack();
    void startAfterCancelRunsOnce();
    void endOfAnEarlierRunLeavesTheNewOneAlone();
    void endsOfCancelledRunsClearWhatCameLate();
    void endThatIsCalledDirectlyAlwaysEnds();
    void cancelAndStartManyTimes();

    void watchesTheNewFolderAfterARun();
    void watchesTheNewFolderAfterARunWithoutMoreSignals();

    void leavesIdle_data();
    void leavesIdle();
    void leavesDuringAFile_data();
    void leavesDuringAFile();
    void leavesBeforeTheRunHasBegun();
    void leavesDuringTheCopyBack();
    void leavesAfterCancel();
    void leavesWhileTheRunWaits_data();
    void leavesWhileTheRunWaits();
    void leavesWithADialogOpen();
    void exitButtonQuits();

    void takesTenThousandReports();
};

void TestWindowRuns::convertsTheExamplePlant()
{
    const TestProject project;
    copyExamplePlant(project);
    TestWindow window;
    window.show();
    window.ui.lnProjectPath->setText(project.dir());
    chooseAllNames(window);

    QList<std::pair<int, int>> progress;
    connect(window.ui.progressBar, &QProgressBar::valueChanged, &window, [&](int value) {
        if (value > 0)
            progress += {window.ui.progressBar->maximum(), value};
    });
    WorkerGate gate(WorkerGate::BeforeFile, *window.converter);
    press(window.ui.btnStart);
    QVERIFY(gate.isReached());
    QTRY_COMPARE_WITH_TIMEOUT(window.ui.FileName->text(),
                              u"Searching in %1/scr/00_overview.psc..."_s.arg(project.dir()), patience);
    QVERIFY(window.isRunning());
    QCOMPARE(window.ui.progressBar->maximum(), plantFiles);
    QCOMPARE(window.ui.progressBar->value(), 0);
    gate.open();
    QTRY_VERIFY_WITH_TIMEOUT(window.isIdle(), patience);

    const QTableWidget &table = *window.ui.rplShapeTable;
    QCOMPARE(countInColumn(table, 0, u"REPLACE"_s), plantReplaced);
    QCOMPARE(countInColumn(table, 0, u"NO REPLACE"_s), plantNotReplaced);
    QCOMPARE(countInColumn(table, 0, u"ERROR"_s), plantErrors);
    QVERIFY(fitsColumns(*window.ui.rplShapeTable));
    QCOMPARE(progress.size(), plantFiles);
    for (int file = 1; file <= plantFiles; ++file)
        QCOMPARE(progress.at(file - 1), std::pair(plantFiles, file));

    // Milestones first and last, the errors between them.
    const QStringList log = window.logMessages();
    QCOMPARE(log.first(), u"End"_s);
    QCOMPARE(log.last(), u"Start"_s);
    QCOMPARE(log.size(), plantErrors + 2);
}

void TestWindowRuns::opensTheChangeLogOfTheRun()
{
    const TestProject project;
    copyExamplePlant(project);
    const DesktopRecorder desktop;
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    chooseAllNames(window);
    press(window.ui.btnStart);
    QTRY_VERIFY_WITH_TIMEOUT(window.isIdle(), patience);

    // It has the rows of the table, the oldest first.
    press(window.ui.btnChangedFiles);
    QCOMPARE(desktop.opened.size(), 1);
    const QList<QByteArray> rows = readFile(desktop.opened.first().toLocalFile()).split('\n');
    QCOMPARE(rows.size(), 1 + plantReports + 1);
    QCOMPARE(rows.last(), QByteArray());
    const QTableWidget &table = *window.ui.rplShapeTable;
    for (int report = 0; report < plantReports; ++report) {
        const int row = plantReports - 1 - report;
        const QList<QByteArray> fields = rows.at(1 + report).split(';');
        QCOMPARE(fields.at(0), table.item(row, 0)->text().toLatin1());
        QCOMPARE(fields.at(1), table.item(row, 1)->text().replace("<proj>"_L1, project.dir()).toLatin1());
        QCOMPARE(fields.at(2), table.item(row, 2)->text().toLatin1());
    }

    // And if it is gone, the window says so.
    QVERIFY(QFile::remove(window.converter->logFileName()));
    int answered = 0;
    whenAsked<QMessageBox>(&window, answered, [&](QMessageBox *box) {
        QCOMPARE(box->text(), u"File %1 does not exist anymore in the project folder %2"_s.arg(
                                  window.converter->logFileName(), project.dir()));
        box->accept();
    });
    press(window.ui.btnChangedFiles);
    QCOMPARE(answered, 1);
}

void TestWindowRuns::replacesNothingWithoutAChoice()
{
    const TestProject project;
    copyExamplePlant(project);
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    chooseAllNames(window);
    window.ui.lnProjectPath->setText(project.dir() + u'/'); // forgets the choice
    press(window.ui.btnStart);
    QTRY_VERIFY_WITH_TIMEOUT(window.isIdle(), patience);
    QCOMPARE(countInColumn(*window.ui.rplShapeTable, 0, u"REPLACE"_s), 0);
    QCOMPARE(countInColumn(*window.ui.rplShapeTable, 0, u"NO REPLACE"_s), plantNotReplaced);
}

void TestWindowRuns::replacesOnlyWhatWasChosen()
{
    const TestProject project;
    copyExamplePlant(project);
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    int answered = 0;
    whenAsked<Filters_UI>(&window, answered, [](Filters_UI *dialog) {
        dialog->onClearAll();
        dialog->findChild<QListWidget *>()
            ->findItems(u"tank.plb"_s, Qt::MatchExactly)
            .first()
            ->setSelected(true);
        dialog->onOkPressed();
    });
    press(window.ui.btnFilters);
    QCOMPARE(answered, 1);
    press(window.ui.btnStart);
    QTRY_VERIFY_WITH_TIMEOUT(window.isIdle(), patience);
    const QTableWidget &table = *window.ui.rplShapeTable;
    QVERIFY(countInColumn(table, 0, u"REPLACE"_s) > 0);
    QCOMPARE(countInColumn(table, 2, u"tank.plb"_s), countInColumn(table, 0, u"REPLACE"_s));
}

void TestWindowRuns::showsThatItRuns()
{
    const TestProject project;
    makeSmallProject(project);
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    const WorkerGate gate(WorkerGate::BeforeFile, *window.converter);
    press(window.ui.btnStart);
    QVERIFY(window.isRunning());
    QCOMPARE(window.logMessages(), QStringList{u"Start"_s});
    window.converter->cancel();
}

void TestWindowRuns::emptiesTheTables()
{
    const TestProject project;
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    for (int row = 0; row < 20; ++row) {
        window.onConvertInfo({});
        window.handleMessage(u"info"_s, u"today"_s, u"before the run"_s);
    }
    QList<int> removedLogRows;
    QList<int> removedShapeRows;
    connect(window.ui.logTable->model(), &QAbstractItemModel::rowsRemoved, &window,
            [&](const QModelIndex &, int first) {
                QVERIFY(removedShapeRows.isEmpty());
                removedLogRows += first;
            });
    connect(window.ui.rplShapeTable->model(), &QAbstractItemModel::rowsRemoved, &window,
            [&](const QModelIndex &, int first) { removedShapeRows += first; });
    press(window.ui.btnStart);
    QCOMPARE(window.logMessages(), QStringList{u"Start"_s});
    QCOMPARE(window.ui.rplShapeTable->rowCount(), 0);
    QCOMPARE(removedLogRows.size(), 21);
    QCOMPARE(removedLogRows.first(), 20); // from the last row on
    QCOMPARE(removedShapeRows.size(), 20);
    QCOMPARE(removedShapeRows.first(), 19);
    QTRY_VERIFY_WITH_TIMEOUT(window.isIdle(), patience);
}

void TestWindowRuns::remembersNothingOfThePathTypedMeanwhile()
{
    const TestProject project;
    copyExamplePlant(project);
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    chooseAllNames(window);
    WorkerGate gate(WorkerGate::BeforeFile, *window.converter);
    press(window.ui.btnStart);
    QVERIFY(gate.isReached());
    window.ui.lnProjectPath->setText(u"/elsewhere"_s);
    QVERIFY(window.isRunning());
    QVERIFY(window.selectedFilterNames.isEmpty());
    gate.open();
    QTRY_VERIFY_WITH_TIMEOUT(window.isIdle(), patience);
    QCOMPARE(window.ui.rplShapeTable->rowCount(),
             plantReports); // the run went on with the old path and choice
    QVERIFY(window.converter->logFileName().startsWith(project.dir()));
}

void TestWindowRuns::dialogMayStayOpenWhileTheRunEnds()
{
    const TestProject project;
    copyExamplePlant(project);
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    chooseAllNames(window);
    WorkerGate gate(WorkerGate::BeforeFile, *window.converter);
    press(window.ui.btnStart);
    QVERIFY(gate.isReached());
    int answered = 0;
    whenAsked<Filters_UI>(&window, answered, [&](Filters_UI *dialog) {
        gate.open();
        QTRY_VERIFY_WITH_TIMEOUT(window.isIdle(), patience);
        dialog->onClearAll();
        dialog->onOkPressed();
    });
    press(window.ui.btnFilters);
    QCOMPARE(answered, 1);
    QVERIFY(window.selectedFilterNames.isEmpty());
    QCOMPARE(window.ui.rplShapeTable->rowCount(), plantReports);
}

void TestWindowRuns::keepsAsManyRunsAsTheSettingsSay()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, "ID;1;Rect;a\n");
    const auto run = [&project] {
        TestWindow window;
        window.ui.lnProjectPath->setText(project.dir());
        press(window.ui.btnStart);
        QTRY_VERIFY_WITH_TIMEOUT(window.isIdle(), patience);
    };
    const auto keptRuns = [&project] { return RunHistory(project.dir()).entries().size(); };
    for (int kept = 1; kept <= RunHistory::usualRuns; ++kept) {
        run();
        QCOMPARE(keptRuns(), kept);
    }
    run();
    QCOMPARE(keptRuns(), RunHistory::usualRuns);
    UserSettings().setValue("history"_L1, 1);
    run();
    QCOMPARE(keptRuns(), 1);
    UserSettings().setValue("history"_L1, -5);
    run();
    QCOMPARE(keptRuns(), 0);
}

void TestWindowRuns::canBeStartedAgain()
{
    const TestProject project;
    copyExamplePlant(project);
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    chooseAllNames(window);
    press(window.ui.btnStart);
    QTRY_VERIFY_WITH_TIMEOUT(window.isIdle(), patience);
    const QStringList after = project.files(u"scr"_s);
    press(window.ui.btnStart);
    QVERIFY(window.isRunning());
    QCOMPARE(window.ui.rplShapeTable->rowCount(), 0);
    QTRY_VERIFY_WITH_TIMEOUT(window.isIdle(), patience);
    QVERIFY(window.ui.rplShapeTable->rowCount() >= plantReports);
    QCOMPARE(project.files(u"scr"_s), after);
    QCOMPARE(project.files(u"scr_bak"_s), after);
}

void TestWindowRuns::runsOverNoFile()
{
    const TestProject project;
    project.makeFolder(u"scr"_s);
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    press(window.ui.btnStart);
    QTRY_VERIFY_WITH_TIMEOUT(window.isIdle(), patience);
    QVERIFY(window.ui.progressBar->maximum() > window.ui.progressBar->minimum()); // not for ever busy
    window.onProgressChanged(4, 2);
    QCOMPARE(window.ui.progressBar->value(), 2);
}

void TestWindowRuns::runsOverAMissingProject()
{
    const TestProject project;
    TestWindow window;
    window.ui.lnProjectPath->setText(project.path(u"missing"_s));
    press(window.ui.btnStart);
    QTRY_VERIFY_WITH_TIMEOUT(window.isIdle(), patience);
    QVERIFY(!project.exists(u"missing"_s));
    QCOMPARE(window.logMessages(), QStringList({u"End"_s, u"Start"_s}));
}

void TestWindowRuns::writesNoChangeLogWithoutItsFolder()
{
    const TestProject project;
    makeSmallProject(project);
    project.remove(u"log"_s);
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    press(window.ui.btnStart);
    QTRY_VERIFY_WITH_TIMEOUT(window.isIdle(), patience);
    QCOMPARE(window.ui.rplShapeTable->rowCount(), 3);
    QVERIFY(!project.exists(u"log"_s));
    int answered = 0;
    whenAsked<QMessageBox>(&window, answered, [](QMessageBox *box) { box->accept(); });
    press(window.ui.btnChangedFiles);
    QCOMPARE(answered, 1);
}

namespace {

constexpr int toldReports = 50;

/// As many reports and log entries, numbered, as a run may tell while nothing is shown.
void tellMany(TestWindow &window)
{
    for (int number = 0; number < toldReports; ++number) {
        Converter::STBlock report;
        report.shapeFile = u"shape %1"_s.arg(number);
        window.onConvertInfo(report);
        window.handleMessage(u"error"_s, u"today"_s, u"entry %1"_s.arg(number));
    }
}

QStringList newestFirst(const QString &name)
{
    QStringList texts;
    for (int number = toldReports - 1; number >= 0; --number)
        texts += name.arg(number);
    return texts;
}

QStringList shapeNames(const QTableWidget &table)
{
    QStringList names;
    for (int row = 0; row < table.rowCount(); ++row)
        names += table.item(row, 2)->text();
    return names;
}

QStringList shapeNamesInChangeLog(const TestWindow &window)
{
    QStringList names;
    const QList<QByteArray> rows = readFile(window.converter->logFileName()).split('\n');
    for (const QByteArray &row : rows.sliced(1)) {
        if (!row.isEmpty())
            names.prepend(QString::fromLatin1(row.split(';').at(2)));
    }
    return names;
}

} // namespace

void TestWindowRuns::showsAtOnceWhatItIsTold()
{
    const TestProject project;
    makeSmallProject(project);
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    WorkerGate gate(WorkerGate::BeforeFile, *window.converter);
    press(window.ui.btnStart);
    QVERIFY(gate.isReached());
    tellMany(window);
    QCOMPARE(window.logMessages(), newestFirst(u"entry %1"_s) + QStringList{u"Start"_s});
    QCOMPARE(shapeNames(*window.ui.rplShapeTable), newestFirst(u"shape %1"_s));
    QCOMPARE(shapeNamesInChangeLog(window), newestFirst(u"shape %1"_s));
    QVERIFY(window.isRunning());
    window.converter->cancel();
}

void TestWindowRuns::showsAllThatWasToldBeforeACancel()
{
    const TestProject project;
    makeSmallProject(project);
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    WorkerGate gate(WorkerGate::BeforeFile, *window.converter);
    press(window.ui.btnStart);
    QVERIFY(gate.isReached());
    tellMany(window);
    Converter::STBlock wideReport;
    wideReport.error = QString(100, u'w');
    window.onConvertInfo(wideReport);
    press(window.ui.btnStart);
    QVERIFY(fitsColumns(*window.ui.rplShapeTable));
    window.ui.rplShapeTable->removeRow(0);
    QCOMPARE(window.logMessages(),
             QStringList{u"End"_s} + newestFirst(u"entry %1"_s) + QStringList{u"Start"_s});
    QCOMPARE(shapeNames(*window.ui.rplShapeTable), newestFirst(u"shape %1"_s));
    QCOMPARE(shapeNamesInChangeLog(window), QStringList{QString()} + newestFirst(u"shape %1"_s));
}

void TestWindowRuns::showsAllThatWasToldBeforeTheEnd()
{
    const TestProject project;
    makeSmallProject(project);
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    WorkerGate gate(WorkerGate::AfterCopyBack, *window.converter);
    press(window.ui.btnStart);
    QVERIFY(gate.isReached());
    tellMany(window);
    int rowsAtEnd = -1;
    connect(window.ui.logTable->model(), &QAbstractItemModel::dataChanged, &window,
            [&](const QModelIndex &index) {
                if (index.data() == u"End"_s)
                    rowsAtEnd = window.ui.rplShapeTable->rowCount();
            });
    gate.open();
    QTRY_VERIFY_WITH_TIMEOUT(window.isIdle(), patience);
    QCOMPARE(rowsAtEnd, toldReports + 3);
    QCOMPARE(window.logMessages().first(), u"End"_s);
    QCOMPARE(window.logMessages().size(), toldReports + 2);
}

void TestWindowRuns::nextStartEmptiesTheTablesOfWhatCameLate()
{
    const TestProject project;
    makeSmallProject(project);
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    WorkerGate gate(WorkerGate::BeforeFile, *window.converter);
    press(window.ui.btnStart);
    QVERIFY(gate.isReached());
    press(window.ui.btnStart); // cancelled, but still at its first file
    tellMany(window);
    press(window.ui.btnStart);
    QCOMPARE(window.logMessages(), QStringList{u"Start"_s});
    QCOMPARE(window.ui.rplShapeTable->rowCount(), 0);
    QCOMPARE(shapeNamesInChangeLog(window), newestFirst(u"shape %1"_s));
    window.converter->cancel();
}

namespace {

constexpr int manyObjects = 2000;

/// A project with one image file, of which a run tells more than the window lets it tell before
/// something is shown: reports, or errors with a log entry each.
void makeTalkativeProject(const TestProject &project, const QByteArray &shapeFile)
{
    project.write(u"scr/a.psc"_s, imageWithObjects(manyObjects, shapeFile));
    project.write(u"mac/plain.plb"_s, imageWithObjects(1, "plain.plb"));
    project.makeFolder(u"log"_s);
}

void addTalkativeProjects()
{
    QTest::addColumn<QByteArray>("shapeFile");
    QTest::newRow("reports") << "plain.plb"_ba;
    QTest::newRow("errors") << "missing.plb"_ba;
}

/// The number at which another thread stands still, without handling events.
int whereItStops(const std::atomic<int> &number)
{
    constexpr int turns = 200'000;
    int seen = -1;
    for (int quietTurns = 0; seen <= 0 || quietTurns < turns; ++quietTurns) {
        if (seen != number) {
            seen = number;
            quietTurns = 0;
        }
        std::this_thread::yield();
    }
    return seen;
}

/// Counts on the worker's thread what a run tells.
class ToldReports final
{
public:
    explicit ToldReports(const Converter &converter)
    {
        QObject::connect(
            &converter, &Converter::sigConvertInfo, &converter, [count = m_count] { ++*count; },
            Qt::DirectConnection);
    }

    int whenTheyStop() const { return whereItStops(*m_count); }

private:
    std::shared_ptr<std::atomic<int>> m_count = std::make_shared<std::atomic<int>>(0);
};

} // namespace

void TestWindowRuns::runWaitsForTheWindow_data()
{
    addTalkativeProjects();
}

void TestWindowRuns::runWaitsForTheWindow()
{
    QFETCH(const QByteArray, shapeFile);
    const TestProject project;
    makeTalkativeProject(project, shapeFile);
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    chooseAllNames(window);
    const ToldReports told(*window.converter);
    press(window.ui.btnStart);
    QVERIFY(told.whenTheyStop() < manyObjects / 2);
    QTRY_VERIFY_WITH_TIMEOUT(window.isIdle(), patience);
    QCOMPARE(window.ui.rplShapeTable->rowCount(), manyObjects);
    QCOMPARE(readFile(window.converter->logFileName()).count('\n'), 1 + manyObjects);
}

void TestWindowRuns::logOfAnotherThreadWaitsForTheWindow()
{
    auto window = std::make_unique<TestWindow>();
    std::atomic<int> written = 0;
    std::thread writer([&written] {
        for (; written < manyObjects; ++written)
            Qel::Logger::instance()->out(7, u"entry"_s, __FILE__, __LINE__).endl();
    });
    const int stopped = whereItStops(written);
    window.reset(); // nobody shows them any more
    writer.join();
    QVERIFY(stopped < manyObjects / 2);
    QCOMPARE(written, manyObjects);
}

void TestWindowRuns::runThatWaitsGoesOnBehindADialog()
{
    const TestProject project;
    makeTalkativeProject(project, "missing.plb");
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    chooseAllNames(window);
    const ToldReports told(*window.converter);
    press(window.ui.btnStart);
    QVERIFY(told.whenTheyStop() < manyObjects / 2);
    int answered = 0;
    whenAsked<Filters_UI>(&window, answered, [&](Filters_UI *dialog) {
        QTRY_VERIFY_WITH_TIMEOUT(window.isIdle(), patience);
        dialog->onOkPressed();
    });
    window.filterNamesStale = true; // so that the names are collected first
    press(window.ui.btnFilters);
    QCOMPARE(answered, 1);
    QCOMPARE(window.ui.rplShapeTable->rowCount(), manyObjects);
    QCOMPARE(window.ui.logTable->rowCount(), manyObjects + 2);
}

void TestWindowRuns::runThatWaitsIsCancelledAtOnce()
{
    const TestProject project;
    makeTalkativeProject(project, "missing.plb");
    project.write(u"scr/b.psc"_s, "ID;1;Rect;b\n");
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    chooseAllNames(window);
    const ToldReports told(*window.converter);
    press(window.ui.btnStart);
    QVERIFY(told.whenTheyStop() < manyObjects / 2);
    press(window.ui.btnStart);
    QVERIFY(window.isIdle());
    QVERIFY(window.ui.rplShapeTable->rowCount() < manyObjects / 2);
    press(window.ui.btnStart); // what the first one still tells does not disturb this one
    for (int turn = 0; turn < 10; ++turn) {
        QVERIFY(window.isRunning());
        QCoreApplication::processEvents();
    }
    press(window.ui.btnStart);
    QVERIFY(window.isIdle());
    QTRY_COMPARE_WITH_TIMEOUT(countOf(window.logMessages(), u"End"_s), 3, patience);
    QVERIFY(window.isIdle());
    QCOMPARE(project.files(u"scr"_s).size(), 2);
}

void TestWindowRuns::cancelStopsBeforeTheNextFile()
{
    const TestProject project;
    makeSmallProject(project);
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    WorkerGate gate(WorkerGate::BeforeFile, *window.converter);
    press(window.ui.btnStart);
    QVERIFY(gate.isReached());
    gate.letThrough();
    QVERIFY(gate.isReached()); // at the second file
    press(window.ui.btnStart);
    QVERIFY(window.isIdle()); // at once, while the worker is still at it
    QCOMPARE(window.logMessages(), QStringList({u"End"_s, u"Start"_s}));
    gate.open();
    QTRY_COMPARE_WITH_TIMEOUT(countOf(window.logMessages(), u"End"_s), 2, patience);
    QVERIFY(window.isIdle());
    QCOMPARE(gate.arrivals(), 2);
    QCOMPARE(window.ui.rplShapeTable->rowCount(), 2);
    QCOMPARE(project.files(u"scr_temp"_s), QStringList({u"a.psc"_s, u"b.psc"_s}));
    QCOMPARE(project.files(u"scr"_s).size(), 3);
    QVERIFY(!project.exists(u"scr_bak"_s));
}

void TestWindowRuns::cancelWinsOverAStartThatHasNotBegun()
{
    const TestProject project;
    makeSmallProject(project);
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    BusyThread busy(*window.converter);
    press(window.ui.btnStart);
    QVERIFY(window.isRunning());
    press(window.ui.btnStart);
    QVERIFY(window.isIdle());
    busy.release();
    QTRY_COMPARE_WITH_TIMEOUT(countOf(window.logMessages(), u"End"_s), 2,
                              patience); // its end is told all the same
    QVERIFY(window.isIdle());
    QVERIFY(!project.exists(u"scr_bak"_s));
    QVERIFY(!project.exists(u"scr_temp"_s));
    QCOMPARE(window.ui.rplShapeTable->rowCount(), 0);
}

void TestWindowRuns::cancelComesTooLateForTheCopyBack()
{
    const TestProject project;
    makeSmallProject(project);
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    WorkerGate gate(WorkerGate::AfterCopyBack, *window.converter);
    press(window.ui.btnStart);
    QVERIFY(gate.isReached());
    press(window.ui.btnStart);
    QVERIFY(window.isIdle());
    gate.open();
    QTRY_COMPARE_WITH_TIMEOUT(countOf(window.logMessages(), u"End"_s), 2, patience);
    QVERIFY(window.isIdle());
    QCOMPARE(project.files(u"scr_bak"_s).size(), 3);
    QCOMPARE(window.ui.rplShapeTable->rowCount(), 3);
}

void TestWindowRuns::startAfterCancelRunsOnce()
{
    const TestProject project;
    makeSmallProject(project);
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    {
        const BusyThread busy(*window.converter);
        press(window.ui.btnStart);
        press(window.ui.btnStart);
        press(window.ui.btnStart);
        QVERIFY(window.isRunning());
    }
    QTRY_VERIFY_WITH_TIMEOUT(window.isIdle(), patience);
    QCOMPARE(window.ui.rplShapeTable->rowCount(), 3); // of one run, not two
    QVERIFY(project.exists(u"scr_bak"_s));
    QCOMPARE(window.logMessages(), QStringList({u"End"_s, u"End"_s, u"Start"_s}));
}

void TestWindowRuns::endOfAnEarlierRunLeavesTheNewOneAlone()
{
    const TestProject project;
    makeSmallProject(project);
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    WorkerGate gate(WorkerGate::BeforeFile, *window.converter);
    press(window.ui.btnStart);
    QVERIFY(gate.isReached());
    press(window.ui.btnStart); // cancelled, but still at its first file
    press(window.ui.btnStart); // the new run
    QVERIFY(window.isRunning());
    gate.letThrough();
    QVERIFY(gate.isReached()); // the new run is at its first file, so the earlier one has ended
    QTRY_COMPARE_WITH_TIMEOUT(window.logMessages(), QStringList({u"End"_s, u"Start"_s}), patience);
    QVERIFY(window.isRunning());
    QTRY_VERIFY_WITH_TIMEOUT(window.ui.FileName->text().startsWith(u"Searching"_s), patience);
    gate.open();
    QTRY_VERIFY_WITH_TIMEOUT(window.isIdle(), patience);
    QCOMPARE(countOf(window.logMessages(), u"End"_s), 2);
    QVERIFY(project.exists(u"scr_bak"_s));
}

void TestWindowRuns::endsOfCancelledRunsClearWhatCameLate()
{
    const TestProject project;
    makeSmallProject(project);
    QStringList shownAtEnd; // outlives the window, which logs its own end
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    WorkerGate gate(WorkerGate::BeforeFile, *window.converter);
    press(window.ui.btnStart);
    QVERIFY(gate.isReached());
    for (int time = 0; time < 3; ++time) // cancel it, then start and cancel another
        press(window.ui.btnStart);
    QVERIFY(window.isIdle());
    connect(window.ui.logTable->model(), &QAbstractItemModel::rowsInserted, &window,
            [&] { shownAtEnd += window.ui.FileName->text(); });
    window.onUpdFileName(u"came late"_s);
    gate.open();
    QTRY_COMPARE_WITH_TIMEOUT(shownAtEnd, QStringList({QString(), QString()}), patience);
    QVERIFY(window.isIdle());
}

void TestWindowRuns::endThatIsCalledDirectlyAlwaysEnds()
{
    const TestProject project;
    makeSmallProject(project);
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    WorkerGate gate(WorkerGate::BeforeFile, *window.converter);
    press(window.ui.btnStart);
    QVERIFY(gate.isReached());
    press(window.ui.btnStart);
    press(window.ui.btnStart);
    QVERIFY(window.isRunning());
    window.onConvertEnd(); // though an earlier run has still to tell its end
    QVERIFY(window.isIdle());
    window.onConvertEnd();
    QVERIFY(window.isIdle());
    QMetaObject::invokeMethod(&window, "onConvertEnd", Qt::DirectConnection);
    QVERIFY(window.isIdle());
    QCOMPARE(window.logMessages(), QStringList({u"End"_s, u"End"_s, u"End"_s, u"Start"_s}));
    gate.open();
    QTRY_COMPARE_WITH_TIMEOUT(countOf(window.logMessages(), u"End"_s), 5, patience);
    QVERIFY(window.isIdle());
}

void TestWindowRuns::cancelAndStartManyTimes()
{
    const TestProject project;
    makeSmallProject(project);
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    for (int time = 0; time < 100; ++time) {
        press(window.ui.btnStart);
        QVERIFY(window.isRunning());
        if (time % 3 == 0)
            QCoreApplication::processEvents();
        if (window.running)
            press(window.ui.btnStart);
        QVERIFY(window.isIdle());
        QCOMPARE(project.files(u"scr"_s).size() + project.files(u"scr_bak"_s).size() >= 3, true);
    }
    press(window.ui.btnStart);
    QTRY_VERIFY_WITH_TIMEOUT(window.isIdle(), patience);
    waitForQueuedCalls(*window.converter);
    QCoreApplication::processEvents();
    QVERIFY(window.isIdle());
    QCOMPARE(project.files(u"scr"_s), QStringList({u"a.psc"_s, u"b.psc"_s, u"c.psc"_s}));
    QCOMPARE(project.read(u"scr/b.psc"_s), "ID;1;Rect;b\n"_ba);
}

void TestWindowRuns::watchesTheNewFolderAfterARun()
{
    const TestProject project;
    makeSmallProject(project);
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    press(window.ui.btnStart);
    QTRY_VERIFY_WITH_TIMEOUT(window.isIdle(), patience);
    waitForQueuedCalls(*window.watcher);
    QCoreApplication::processEvents();
    window.filterNamesStale = false;
    project.write(u"scr/new.psc"_s, "LIB;a\n");
    QTRY_VERIFY_WITH_TIMEOUT(window.filterNamesStale, patience);
}

void TestWindowRuns::watchesTheNewFolderAfterARunWithoutMoreSignals()
{
    const TestProject project;
    makeSmallProject(project);
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    waitForQueuedCalls(*window.watcher);
    window.filterNamesStale = false;
    window.onConvertEnd(); // of no run, so nothing has changed
    waitForQueuedCalls(*window.watcher);
    QCoreApplication::processEvents();
    QVERIFY(!window.filterNamesStale);
}

namespace {

/// How a window goes away: the application leaves its event loop and destroys it.
void leave(std::unique_ptr<TestWindow> &window, const QString &way)
{
    if (way == "the close button"_L1) {
        QTimer::singleShot(0, window.get(), &QWidget::close);
        QApplication::exec(); // ends with the last window
    } else if (way == "the end of the session"_L1) {
        QTimer::singleShot(0, window.get(), [] {
            QEvent quit(QEvent::Quit);
            QCoreApplication::sendEvent(qApp, &quit);
        });
        QApplication::exec();
    }
    window.reset();
}

void addWaysToLeave()
{
    QTest::addColumn<QString>("way");
    for (const char *way : {"the close button", "the end of the session", "destruction"})
        QTest::newRow(way) << QString::fromLatin1(way);
}

} // namespace

void TestWindowRuns::leavesIdle_data()
{
    addWaysToLeave();
}

void TestWindowRuns::leavesIdle()
{
    QFETCH(const QString, way);
    const WarningRecorder recorder;
    auto window = std::make_unique<TestWindow>();
    window->show();
    window->ui.lnProjectPath->setText(u"/plants/idle"_s);
    leave(window, way);
    QCOMPARE(QSettings(u"QEL"_s, u"Vantrel"_s).value("projDir"_L1).toString(), u"/plants/idle"_s);
    QCOMPARE(WarningRecorder::warnings().filter(u"QThread"_s), QStringList());
}

void TestWindowRuns::leavesDuringAFile_data()
{
    addWaysToLeave();
}

void TestWindowRuns::leavesDuringAFile()
{
    QFETCH(const QString, way);
    const TestProject project;
    makeSmallProject(project);
    const WarningRecorder recorder;
    auto window = std::make_unique<TestWindow>();
    window->show();
    window->ui.lnProjectPath->setText(project.dir());
    QStringList endLog;
    connect(window->ui.logTable->model(), &QAbstractItemModel::dataChanged, this,
            [&](const QModelIndex &index) {
                if (index.column() == 2)
                    endLog += index.data().toString();
            });
    WorkerGate gate(WorkerGate::BeforeFile, *window->converter);
    press(window->ui.btnStart);
    QVERIFY(gate.isReached());
    gate.openWhenStopped(*window->converter);
    leave(window, way);

    QCOMPARE(gate.arrivals(), 1);
    QCOMPARE(project.files(u"scr"_s).size(), 3);
    QCOMPARE(project.files(u"scr_temp"_s), QStringList{u"a.psc"_s});
    QVERIFY(!project.exists(u"scr_bak"_s));
    QCOMPARE(project.files(u"log"_s).size(), 1); // the file's report
    QCOMPARE(endLog, QStringList({u"Start"_s, u"End"_s, u"====== Vantrel end ======"_s}));
    QCOMPARE(QSettings(u"QEL"_s, u"Vantrel"_s).value("projDir"_L1).toString(), project.dir());
    QCOMPARE(WarningRecorder::warnings().filter(u"QThread"_s), QStringList());
}

void TestWindowRuns::leavesBeforeTheRunHasBegun()
{
    const TestProject project;
    makeSmallProject(project);
    {
        TestWindow window;
        window.ui.lnProjectPath->setText(project.dir());
        auto busy = std::make_unique<BusyThread>(*window.converter);
        press(window.ui.btnStart);
        window.close(); // must win, whether or not the worker picks the start up
        busy.reset();
        waitForQueuedCalls(*window.converter);
    }
    QVERIFY(!project.exists(u"scr_bak"_s));
    QVERIFY(!project.exists(u"scr_temp"_s));
}

void TestWindowRuns::leavesDuringTheCopyBack()
{
    const TestProject project;
    copyExamplePlant(project);
    auto window = std::make_unique<TestWindow>();
    window->ui.lnProjectPath->setText(project.dir());
    chooseAllNames(*window);
    WorkerGate gate(WorkerGate::AfterCopyBack, *window->converter);
    press(window->ui.btnStart);
    QVERIFY(gate.isReached()); // no event was handled: every report is still queued
    QCOMPARE(window->ui.rplShapeTable->rowCount(), 0);
    const QString changeLog = window->converter->logFileName();
    gate.openWhenStopped(*window->converter);
    window->close();
    window.reset();
    QCOMPARE(readFile(changeLog).count('\n'), 1 + plantReports);
    QVERIFY(project.exists(u"scr_bak"_s));
    QVERIFY(!project.exists(u"scr_temp"_s));
}

void TestWindowRuns::leavesAfterCancel()
{
    const TestProject project;
    makeSmallProject(project);
    auto window = std::make_unique<TestWindow>();
    window->ui.lnProjectPath->setText(project.dir());
    WorkerGate gate(WorkerGate::BeforeFile, *window->converter);
    press(window->ui.btnStart);
    QVERIFY(gate.isReached());
    press(window->ui.btnStart);
    gate.open();
    window.reset();
    QVERIFY(!project.exists(u"scr_bak"_s));
    QCOMPARE(gate.arrivals(), 1);
}

void TestWindowRuns::leavesWhileTheRunWaits_data()
{
    addTalkativeProjects();
}

void TestWindowRuns::leavesWhileTheRunWaits()
{
    QFETCH(const QByteArray, shapeFile);
    const TestProject project;
    makeTalkativeProject(project, shapeFile);
    auto window = std::make_unique<TestWindow>();
    window->ui.lnProjectPath->setText(project.dir());
    chooseAllNames(*window);
    const ToldReports told(*window->converter);
    press(window->ui.btnStart);
    QVERIFY(told.whenTheyStop() < manyObjects / 2);
    const QString changeLog = window->converter->logFileName();
    window->close();
    window.reset();
    QCOMPARE(readFile(changeLog).count('\n'), 1 + manyObjects); // of the file that was begun
}

void TestWindowRuns::leavesWithADialogOpen()
{
    const TestProject project;
    makeSmallProject(project);
    auto window = std::make_unique<TestWindow>();
    window->show();
    window->ui.lnProjectPath->setText(project.dir());
    int answered = 0;
    whenAsked<Filters_UI>(window.get(), answered, [](Filters_UI *) { QCoreApplication::quit(); });
    QTimer::singleShot(0, window.get(), &Vantrel::onBtnFiltersPressed);
    QApplication::exec();
    window.reset();
    QCOMPARE(answered, 1);
}

void TestWindowRuns::exitButtonQuits()
{
    auto window = std::make_unique<TestWindow>();
    window->show();
    QTimer::singleShot(0, window.get(), [&] { press(window->ui.btnClose); });
    QCOMPARE(QApplication::exec(), 0);
    QVERIFY(!window->isVisible());
}

void TestWindowRuns::takesTenThousandReports()
{
    constexpr int replaced = 8000;
    constexpr int failed = 2000;
    const TestProject project;
    project.write(u"scr/errors.psc"_s, imageWithObjects(failed, "missing.plb"));
    project.write(u"scr/replaced.psc"_s, imageWithObjects(replaced, "plain.plb"));
    project.write(u"mac/plain.plb"_s, imageWithObjects(1, "plain.plb"));
    project.makeFolder(u"log"_s);
    TestWindow window;
    window.show();
    window.ui.lnProjectPath->setText(project.dir());
    chooseAllNames(window);
    const std::size_t usedBefore = mallinfo2().uordblks;

    press(window.ui.btnStart);
    QTRY_VERIFY_WITH_TIMEOUT(window.isIdle(), 4 * patience);
    QCOMPARE(window.ui.rplShapeTable->rowCount(), replaced + failed);
    QCOMPARE(countInColumn(*window.ui.rplShapeTable, 0, u"ERROR"_s), failed);
    QCOMPARE(window.ui.logTable->rowCount(), failed + 2);
    QCOMPARE(readFile(window.converter->logFileName()).count('\n'), 1 + replaced + failed);

    // Another run empties the tables; this one over nothing at all.
    const std::size_t usedFull = mallinfo2().uordblks;
    window.ui.lnProjectPath->setText(project.path(u"missing"_s));
    press(window.ui.btnStart);
    QTRY_VERIFY_WITH_TIMEOUT(window.isIdle(), patience);
    QCOMPARE(window.ui.rplShapeTable->rowCount(), 0);
    const std::size_t usedAfter = mallinfo2().uordblks;
    if (usedFull <= usedBefore)
        QSKIP("the allocator in use does not tell what is in use");
    QVERIFY(usedAfter < usedBefore + (usedFull - usedBefore) / 5);
}

VANTREL_TEST(QApplication, TestWindowRuns)
#include "tst_windowruns.moc"
