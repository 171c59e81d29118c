// The main window.
#include "Vantrel.h"

#include "BusySign.h"
#include "CGuiFunc.h"
#include "FilterNames.h"
#include "Filters_UI.h"
#include "ImageFileSearch.h"
#include "Interruption.h"
#include "Limits.h"
#include "LogView.h"
#include "MessageBar.h"
#include "PlainToolTip.h"
#include "ProjectCompleter.h"
#include "ProjectDrop.h"
#include "RecentProjects.h"
#include "RecoveryFlow.h"
#include "ReportedFile.h"
#include "RunHistory.h"
#include "RunNotifier.h"
#include "RunRecord.h"
#include "StopSignals.h"
#include "TableActions.h"
#include "TableSetUp.h"
#include "UserSettings.h"
#include "WatchFolderThread.h"
#include "updUtils.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCompleter>
#include <QDesktopServices>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QMetaMethod>
#include <QShortcut>
#include <QThread>
#include <QUrl>

#include <algorithm>
#include <chrono>
#include <future>

using namespace Qt::StringLiterals;

namespace {

/// A milestone of the program in the log.
void logMilestone(const QString &text, int line)
{
    constexpr unsigned char systemLevel = 6;
    Qel::Logger::instance()->out(systemLevel, text, "tools/Vantrel/Vantrel", line).endl();
}

void removeRows(QTableWidget &table)
{
    for (int row = table.rowCount() - 1; row >= 0; --row)
        table.removeRow(row);
}

QSet<QString> toSet(const QStringList &names)
{
    return {names.cbegin(), names.cend()};
}

/// How many runs the user wants a project's history to keep.
int keptRunsOfUser()
{
    return std::max(0, UserSettings().value("history"_L1, RunHistory::usualRuns).toInt());
}

/// The names of the shape files that the screens below a folder refer to. Ends between two files, see
/// endIfInterrupted().
QSet<QString> namesBelow(const QString &folder)
{
    QSet<QString> names;
    for (const QFileInfo &imageFile : searchImageFiles(folder).files) {
        endIfInterrupted();
        collectFilterNames(imageFile.filePath(), &names);
    }
    return names;
}

QUrl fileUrl(const QString &path)
{
    const QString encodedPath = QString::fromLatin1(QUrl::toPercentEncoding(path, "/"));
    return {u"file:///%1"_s.arg(encodedPath), QUrl::StrictMode};
}

} // namespace

Vantrel::Vantrel(QWidget *parent)
    : QWidget(parent)
{
    ui.setupUi(this);
    setUpWidgets();
    restoreSettings();

    guiFunc = std::make_unique<CGuiFunc>(ui);
    converter = std::make_unique<Converter>();
    watcher = std::make_unique<WatchFolderThread>(imageFolder());
    notifier = std::make_unique<RunNotifier>(*this);
    setUpMessageBar();
    recovery = std::make_unique<RecoveryFlow>(*this, *messageBar);
    connectSignals();
    connectRecovery();
    keepWorkerNear();
    setUpProjectLine();
    setUpKeys();

    setUpShapeTable();
    logView = std::make_unique<LogView>(*ui.logTable);
    Qel::Logger::registerLogListener(this);
    logMilestone(u"====== Vantrel start ======"_s, __LINE__);
}

Vantrel::~Vantrel()
{
    stopWorker();
    watcher.reset();
    logMilestone(u"====== Vantrel end ======"_s, __LINE__);
    Qel::Logger::unregisterLogListener(this);
    saveSettings();
    guiFunc.reset();
    converter.reset();
}

void Vantrel::setUpWidgets()
{
    setWindowIcon(QIcon(u":/icons/vantrel.svg"_s));
    // Desktops that show no window icons take the one of this desktop file.
    QGuiApplication::setDesktopFileName(u"vantrel"_s);
    ui.FileName->clear();
    ui.FileName->setTextFormat(Qt::PlainText);
    ui.progressBar->setRange(0, 100);
    ui.progressBar->setValue(0);
    // There is nothing to open before a run.
    ui.btnChangedFiles->setEnabled(false);
    ui.btnLog->setEnabled(false);
}

void Vantrel::setUpShapeTable()
{
    const auto fileOfRow = [this](int row) {
        constexpr int fileColumn = 1;
        const QTableWidgetItem *item = ui.rplShapeTable->item(row, fileColumn);
        return item != nullptr ? reportedFile(item->text(), run.projectDir()) : QString();
    };
    ui.rplShapeTable->resizeColumnsToContents();
    setUpTable(*ui.rplShapeTable);
    new TableActions(*ui.rplShapeTable, fileOfRow, [this](const QString &path) { openReported(path); });
}

void Vantrel::setUpProjectLine()
{
    new ProjectCompleter(*ui.lnProjectPath);
    new ProjectDrop(*this, *ui.lnProjectPath, [this](const QString &project) { openProject(project); });
}

/// In rows of the form that are empty: without a message it is as it was.
void Vantrel::setUpMessageBar()
{
    constexpr int row = 3;
    messageBar = new MessageBar(this);
    ui.gridLayout->addWidget(messageBar, row, 0, 1, ui.gridLayout->columnCount());
    messageBar->follow(*ui.btnBrowse);
}

/// Keys click their buttons: what is disabled does nothing, and a button's own key would be lost
/// with its text.
void Vantrel::setUpKeys()
{
    const auto addKey = [this](const QKeySequence &keys, auto *receiver, auto action) {
        auto *shortcut = new QShortcut(keys, this);
        shortcut->setAutoRepeat(false);
        connect(shortcut, &QShortcut::activated, this, &Vantrel::closeProposals);
        connect(shortcut, &QShortcut::activated, receiver, action);
    };
    addKey(Qt::Key_F5, ui.btnStart, &QPushButton::click);
    addKey(Qt::CTRL | Qt::Key_O, ui.btnBrowse, &QPushButton::click);
    addKey(Qt::CTRL | Qt::Key_L, ui.lnProjectPath, [this] {
        ui.lnProjectPath->setFocus(Qt::ShortcutFocusReason);
        ui.lnProjectPath->selectAll();
    });
}

void Vantrel::closeProposals()
{
    ui.lnProjectPath->completer()->popup()->hide();
}

void Vantrel::connectSignals()
{
    connect(ui.btnStart, &QPushButton::clicked, this, &Vantrel::onBtnStartPressed);
    connect(ui.btnBrowse, &QPushButton::clicked, this, &Vantrel::onBtnBrowsePressed);
    connect(ui.btnClose, &QPushButton::clicked, qApp, &QCoreApplication::quit);
    connect(ui.btnChangedFiles, &QPushButton::clicked, this, &Vantrel::onBtnChangedFilesPressed);
    connect(ui.btnLog, &QPushButton::clicked, this, &Vantrel::onBtnLogPressed);
    connect(ui.btnFilters, &QPushButton::clicked, this, &Vantrel::onBtnFiltersPressed);
    connect(ui.lnProjectPath, &QLineEdit::textChanged, this, &Vantrel::onFolderPathChanged);

    const Converter *worker = converter.get();
    connect(worker, &Converter::sigProgressChanged, this, &Vantrel::onProgressChanged, Qt::QueuedConnection);
    connect(worker, &Converter::sigConvertInfo, this, &Vantrel::onConvertInfo, Qt::QueuedConnection);
    connect(worker, &Converter::sigConvertEnd, this, &Vantrel::onConvertEnd, Qt::QueuedConnection);
    connect(worker, &Converter::sigUpdFileName, this, &Vantrel::onUpdFileName, Qt::QueuedConnection);
    connect(this, &Vantrel::sigStartConvert, worker, &Converter::onStartConvert, Qt::QueuedConnection);
    connect(this, &Vantrel::sigStopConvert, worker, &Converter::onStopConvert, Qt::QueuedConnection);
    connect(watcher.get(), &WatchFolderThread::sigFolderChanged, this, &Vantrel::onFolderChanged,
            Qt::QueuedConnection);
}

/// A run may tell in a moment more than can be shown in it. It waits for the window from time to
/// time, so that the event loop hears the user, and so that what is told is soon shown.
void Vantrel::keepWorkerNear()
{
    const auto tellThatOneIsShown = [this] { converter->reportShown(); };
    // Made after the one that shows it, so that it comes after it.
    connect(converter.get(), &Converter::sigConvertInfo, this, tellThatOneIsShown, Qt::QueuedConnection);
    converter->limitLead(mostReportsAhead);
    Qel::Logger::setMostWaiting(mostLogEntriesAhead);
}

void Vantrel::connectRecovery()
{
    connect(recovery.get(), &RecoveryFlow::sigMayStart, this, [this](const QString &projectDir) {
        // The user may have turned to another project meanwhile.
        if (projectDir == ui.lnProjectPath->text())
            startRun(projectDir);
    });
    connect(recovery.get(), &RecoveryFlow::sigConvertAgain, this,
            [this](const QString &projectDir, const RunFacts &facts) { startRun(projectDir, &facts); });
}

// --- Settings and leaving ---

void Vantrel::restoreSettings()
{
    const UserSettings settings;
    resize(settings.value("size"_L1, QSize(800, 600)).toSize());
    move(settings.value("pos"_L1, QPoint(200, 200)).toPoint());
    ui.lnProjectPath->setText(settings.value("projDir"_L1, u"c:/velmorant/proj/velmora"_s).toString());
}

void Vantrel::saveSettings() const
{
    UserSettings settings;
    settings.setValue("pos"_L1, pos());
    settings.setValue("size"_L1, size());
    settings.setValue("projDir"_L1, ui.lnProjectPath->text());
}

void Vantrel::closeEvent(QCloseEvent *event)
{
    isLeft = true;
    // The destructor waits for the run, or for a recovery; this lets it end meanwhile.
    converter->cancel();
    recovery->leave();
    notifier->runIsCancelled();
    QWidget::closeEvent(event);
}

/// Ends the run under way. One that is copying back already goes on to its end, and all that it
/// has reported is shown and written to its change log.
void Vantrel::stopWorker()
{
    // From here on nothing is shown before the worker has ended: it must not wait for that.
    converter->limitLead(0);
    Qel::Logger::setMostWaiting(0);
    converter->cancel();
    notifier->runIsCancelled();
    recovery.reset();
    QThread *thread = converter->thread();
    thread->quit();
    thread->wait();
    QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
}

// --- Runs ---

void Vantrel::onBtnStartPressed()
{
    const QString projectDir = ui.lnProjectPath->text();
    if (running) {
        cancelRun();
        return;
    }
    if (recovery->isUnderWay()) {
        recovery->bringUp();
        return;
    }
    // The stage file may still be that of a cancelled run.
    if (run.awaitsEndOf(projectDir) || !recovery->takesOver(projectDir))
        startRun(projectDir);
}

/// As the window is set up, or as an interrupted run was, which is performed again.
void Vantrel::startRun(const QString &projectDir, const RunFacts *interruptedRun)
{
    run.start(projectDir);
    messageBar->withdraw();
    screensBegun = allScreens = 0;
    showRunning();
    removeRows(*ui.logTable);
    removeRows(*ui.rplShapeTable);
    converter->setProjectDir(projectDir);
    converter->setFilterNames(interruptedRun != nullptr ? toSet(interruptedRun->shapeNames)
                                                        : selectedFilterNames);
    converter->setMakeFolders(interruptedRun != nullptr && interruptedRun->makesFolders);
    converter->setGoesOnFromLeftOver(interruptedRun != nullptr);
    converter->setKeptRuns(interruptedRun != nullptr ? interruptedRun->keptRuns : keptRunsOfUser());
    converter->setKeepsOthers(interruptedRun != nullptr && interruptedRun->keepsOthers);
    logMilestone(u"Start"_s, __LINE__);

    rememberProject(projectDir);
    notifier->runBegins(projectDir);
    converter->announceStart();
    Q_EMIT sigStartConvert();
}

void Vantrel::cancelRun()
{
    converter->cancel();
    notifier->runIsCancelled();
    showIdle();
}

void Vantrel::onConvertEnd()
{
    // The worker may tell the end of a cancelled run while a newer one is shown.
    const ShownRun::End end = isToldByConverter() ? run.takeEnd() : ShownRun::End::OfShownRun;
    if (end == ShownRun::End::OfEarlierRun) {
        logMilestone(u"End"_s, __LINE__);
        return;
    }
    showIdle();
    const bool isOfOpenProject = run.projectDir() == ui.lnProjectPath->text();
    // A window that is left offers nothing any more.
    if (end == ShownRun::End::OfCancelledRun && isOfOpenProject && recovery)
        recovery->offerToPutAway(run.projectDir(), screensBegun, allScreens);
    notifier->runEnds();
}

bool Vantrel::isToldByConverter() const
{
    static const int endSignal = QMetaMethod::fromSignal(&Converter::sigConvertEnd).methodIndex();
    return sender() == converter.get() && senderSignalIndex() == endSignal;
}

void Vantrel::showRunning()
{
    ui.btnStart->setText(tr("Cancel"));
    for (QPushButton *button : {ui.btnBrowse, ui.btnClose, ui.btnChangedFiles, ui.btnLog})
        button->setEnabled(false);
}

void Vantrel::showIdle()
{
    run.leave();
    ui.btnBrowse->setEnabled(true);
    ui.btnClose->setEnabled(true);
    ui.rplShapeTable->resizeColumnsToContents();
    ui.btnStart->setText(tr("Start Update"));
    // A run over no file at all leaves a range in which the bar only shows that it is busy.
    if (ui.progressBar->maximum() == 0)
        ui.progressBar->setMaximum(100);
    ui.progressBar->setValue(0);
    ui.FileName->clear();
    ui.FileName->setToolTip({});
    ui.btnChangedFiles->setEnabled(true);
    ui.btnLog->setEnabled(true);
    // A run removes the folder and makes it again: its watch has gone with it.
    watcher->changeFolder(imageFolder());
    logMilestone(u"End"_s, __LINE__);
}

void Vantrel::onProgressChanged(int max, int pos)
{
    // The screen at this place is converted before a cancelled run ends.
    screensBegun = std::min(pos + 1, max);
    allScreens = max;
    // The bar would paint the whole window at each step; so it is painted with everything else.
    ui.progressBar->setUpdatesEnabled(false);
    ui.progressBar->setMaximum(max);
    ui.progressBar->setValue(pos);
    notifier->showProgress(max, pos);
    ui.progressBar->setUpdatesEnabled(true);
}

void Vantrel::onUpdFileName(QString sFileName)
{
    const QString text = tr("Searching in %1...").arg(sFileName);
    ui.FileName->setText(text);
    ui.FileName->setToolTip(asToolTip(text));
}

void Vantrel::onConvertInfo(const Converter::STBlock &block)
{
    guiFunc->addShapeRow(block);
    guiFunc->writeChangeLog(block, converter->logFileName());
    if (run.isLastOneTelling())
        notifier->countReport(block.status);
}

// --- Project and filters ---

QString Vantrel::imageFolder() const
{
    return ui.lnProjectPath->text() + "/scr"_L1;
}

void Vantrel::openProject(const QString &projectDir)
{
    if (projectDir.isEmpty())
        return;
    ui.lnProjectPath->setText(projectDir);
    rememberProject(projectDir);
}

void Vantrel::onBtnBrowsePressed()
{
    const QString folder =
        QFileDialog::getExistingDirectory(this, tr("Select Project"), ui.lnProjectPath->text(),
                                          QFileDialog::ShowDirsOnly | QFileDialog::DontUseNativeDialog);
    openProject(folder);
}

void Vantrel::onFolderPathChanged()
{
    watcher->changeFolder(imageFolder());
    messageBar->withdraw();
    selectedFilterNames.clear();
    filterNamesStale = true;
}

void Vantrel::onFolderChanged()
{
    filterNamesStale = true;
}

void Vantrel::onBtnFiltersPressed()
{
    if (filterNamesStale)
        collectNames();
    // Who leaves is not asked any more.
    if (filterNamesStale && isEndWanted())
        return;

    Filters_UI dialog(&allFilterNames, &selectedFilterNames, this);
    if (dialog.exec() == QDialog::Accepted)
        selectedFilterNames = dialog.selectedNames();
}

void Vantrel::collectNames()
{
    BusySign busySign(*ui.progressBar, running ? BusySign::BarShowsRun : BusySign::BarIsFree);
    // First: a change that is told meanwhile makes them stale again.
    filterNamesStale = false;
    // An earlier choice is forgotten: the names may be others than those that it was made from.
    allFilterNames.clear();
    selectedFilterNames.clear();
    // A slow disk keeps the thread waiting that lists its folders and reads its files.
    constexpr std::chrono::milliseconds betweenLooks{10};
    const auto collect = [this, folder = imageFolder()] {
        const InterruptionScope scope([this] { return isEndWanted(); });
        return namesBelow(folder);
    };
    // Here, where the system has no thread for it.
    std::future<QSet<QString>> names = std::async(std::launch::async | std::launch::deferred, collect);
    while (names.wait_for(betweenLooks) == std::future_status::timeout)
        busySign.keepRepainted();
    try {
        selectedFilterNames = allFilterNames = names.get();
    } catch (const WorkInterrupted &) {
        filterNamesStale = true;
    }
}

/// Whether the window is left, or the process is to end. From any thread.
bool Vantrel::isEndWanted() const
{
    return isLeft || StopSignals::lastReceived() != 0;
}

// --- Files for the desktop ---

void Vantrel::onBtnChangedFilesPressed()
{
    const QString path = converter->logFileName();
    openFile(
        path,
        tr("File %1 does not exist anymore in the project folder %2").arg(path, ui.lnProjectPath->text()));
}

void Vantrel::onBtnLogPressed()
{
    const QString path = Qel::Logger::getLogFilePath();
    openFile(path, tr("File %1 does not exist anymore").arg(path));
}

void Vantrel::openFile(const QString &path, const QString &missingText)
{
    if (QFileInfo(path).isFile()) {
        QDesktopServices::openUrl(fileUrl(path));
        return;
    }
    QMessageBox box(QMessageBox::Critical, tr("Vantrel Info"), missingText, QMessageBox::Ok, this);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

void Vantrel::openReported(const QString &path)
{
    // The user may have typed a relative project, which only this program can resolve.
    const QFileInfo file(QFileInfo(path).absoluteFilePath());
    if (file.isDir())
        QDesktopServices::openUrl(fileUrl(file.filePath()));
    else
        openFile(file.filePath(), tr("File %1 does not exist anymore").arg(path));
}

// --- Log view ---

void Vantrel::handleMessage(QString level, QString time, QString message)
{
    logView->addEntry(logRowsOnTop ? LogView::NewRow::OnTop : LogView::NewRow::AtBottom, level, time,
                      message);
}
