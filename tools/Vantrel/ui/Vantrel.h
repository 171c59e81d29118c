// The main window.
#pragma once

#include "Converter.h"
#include "Logger.h"
#include "ShownRun.h"
#include "ui_Vantrel.h"

#include <QSet>
#include <QString>
#include <QWidget>

#include <atomic>
#include <memory>

class CGuiFunc;
class LogView;
class MessageBar;
class RecoveryFlow;
class RunNotifier;
class WatchFolderThread;
struct RunFacts;

/// Lets the user choose a project and shape files, starts and cancels runs of the converter, and
/// shows their progress, reports and log entries. Keeps its place, size and project in the
/// user's settings. Lives on the GUI thread; converter and watcher have threads of their own and
/// speak to it by queued signals. Destroying it ends a run under way before its next file.
class Vantrel : public QWidget, public Qel::Logger::LogListener
{
    Q_OBJECT

public:
    explicit Vantrel(QWidget *parent = nullptr);
    ~Vantrel() override;

    /// Puts a project's path into its line and remembers the project; an empty path changes nothing.
    void openProject(const QString &projectDir);

    /// Adds a log entry to the log table, the newest on top, and fits the table to its contents.
    void handleMessage(QString level, QString time, QString message) override;

Q_SIGNALS:
    void sigStartConvert();
    void sigStopConvert();

public Q_SLOTS:
    void onProgressChanged(int max, int pos);
    /// Shows a report and writes it to the change log.
    void onConvertInfo(const Converter::STBlock &block);
    void onConvertEnd();
    /// Starts a run, or cancels the one under way.
    void onBtnStartPressed();
    void onBtnBrowsePressed();
    void onBtnChangedFilesPressed();
    void onBtnLogPressed();
    void onBtnFiltersPressed();
    void onUpdFileName(QString sFileName);
    void onFolderChanged();
    void onFolderPathChanged();

protected:
    void closeEvent(QCloseEvent *event) override;

    // Open to derived windows, such as those of tests.
    std::unique_ptr<Converter> converter;
    std::unique_ptr<CGuiFunc> guiFunc;
    Ui_VantrelClass ui;
    ShownRun run;
    const bool &running = run.isShown();
    bool filterNamesStale = true; ///< to be collected again before they are offered
    std::unique_ptr<WatchFolderThread> watcher;
    QSet<QString> allFilterNames;
    QSet<QString> selectedFilterNames; ///< what the converter receives at the next start
    bool logRowsOnTop = true;
    std::unique_ptr<RunNotifier> notifier;

private:
    void restoreSettings();
    void saveSettings() const;
    void setUpWidgets();
    void setUpShapeTable();
    void setUpProjectLine();
    void setUpMessageBar();
    void setUpKeys();
    void closeProposals();
    void connectSignals();
    void stopWorker();

    void keepWorkerNear();
    void connectRecovery();
    void startRun(const QString &projectDir, const RunFacts *interruptedRun = nullptr);
    void cancelRun();
    void showRunning();
    void showIdle();
    bool isToldByConverter() const;

    void collectNames();
    bool isEndWanted() const;
    void openFile(const QString &path, const QString &missingText);
    void openReported(const QString &path);
    QString imageFolder() const;

    std::unique_ptr<LogView> logView;
    MessageBar *messageBar = nullptr;
    int screensBegun = 0; ///< by the run that was started last, as far as it has told
    int allScreens = 0;
    std::unique_ptr<RecoveryFlow> recovery;
    std::atomic<bool> isLeft{false};
};
