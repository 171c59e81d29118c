// One conversion run as the window would start it, without a window.
#pragma once

#include "Converter.h"
#include "Logger.h"
#include "Output.h"
#include "ProgressLine.h"

#include <QList>
#include <QObject>
#include <QSet>
#include <QString>

struct RunSettings
{
    QString projectDir;
    QSet<QString> shapeNames;
    bool makeFolders = false;
    bool quiet = false;
};

struct RunResult
{
    QList<Converter::STBlock> reports;
    int fileCount = 0;
    bool isCompleted = false; ///< not stopped before its last file
    bool isCopiedBack = true; ///< as far as the run itself noticed
    QString changeLogPath;
};

/// Starts a run on the converter's own thread, writes its change log and shows its progress
/// and log entries, until it has ended. Lives on the main thread.
class UpdateRun final : public QObject, private Qel::Logger::LogListener
{
    Q_OBJECT

public:
    UpdateRun(const RunSettings &settings, Output &errorOutput);
    ~UpdateRun() override;

    /// Performs the run; needs no event loop of the caller.
    RunResult execute();
    /// Stops the run before its next file.
    void stop();

private:
    void onProgressChanged(int count, int index);
    void onConvertInfo(const Converter::STBlock &block);
    void handleMessage(QString level, QString time, QString message) override;

    RunSettings m_settings;
    Output &m_errorOutput;
    ProgressLine m_progress;
    Converter m_converter;
    RunResult m_result;
    int m_index = 0;
};
