// One conversion run as the window would start it, without a window.
#pragma once

#include "ChangeLog.h"
#include "Converter.h"
#include "Logger.h"
#include "Presenter.h"
#include "RunHistory.h"
#include "RunInbox.h"

#include <QObject>
#include <QSet>
#include <QString>

struct RunSettings
{
    QString projectDir; ///< the directory that is converted
    QSet<QString> shapeNames;
    bool makeFolders = false;
    int keptRuns = RunHistory::usualRuns;
    bool keepsOthers = false;
    bool goesOnFromLeftOver = false; ///< of an interrupted run, which is performed again
    /// The folder below which a dry run has made the project directory again; empty in a real
    /// run. It is taken out of every text that is shown, and no change log is written.
    QString scratchRoot;
    bool isLocked = false; ///< by the caller, who keeps the lock until the run has ended
};

struct RunResult
{
    qsizetype replaced = 0; ///< reports of each status
    qsizetype notReplaced = 0;
    qsizetype errors = 0;
    int fileCount = 0;
    bool isCompleted = false; ///< not stopped before its last file
    bool isCopiedBack = true; ///< as far as the run itself noticed
    QString changeLogPath;
};

/// Starts a run on the converter's own thread, writes its change log and shows its progress,
/// reports and log entries, until it has ended. Lives on the main thread.
class UpdateRun final : public QObject, private Qel::Logger::LogListener
{
    Q_OBJECT

public:
    UpdateRun(const RunSettings &settings, Presenter &presenter);
    ~UpdateRun() override;

    /// Performs the run; needs no event loop of the caller. Throws std::system_error where the
    /// system has no thread for it.
    RunResult execute();
    /// Stops the run before its next file.
    void stop();

private:
    void receive(std::span<const RunNews> news);
    void show(const RunProgress &progress);
    void show(const FileBegun &file);
    void show(STBlock report);
    void count(const STBlock &block);
    void handleMessage(QString level, QString time, QString message) override;
    QString shown(QString text) const;

    RunSettings m_settings;
    Presenter &m_presenter;
    RunInbox m_inbox;
    Converter m_converter;
    ChangeLog m_changeLog;
    RunResult m_result;
};
