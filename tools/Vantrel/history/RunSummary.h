// What a list of runs shows of each.
#pragma once

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

class RootFolder;

/// What has put something into the history.
enum class HistoryKind {
    Run,       ///< a conversion run
    Undo,      ///< a run was taken back; the entry holds what it had made
    Restore,   ///< files were brought back; the entry holds those that they replaced
    Cancelled, ///< a run was stopped; the entry holds what it had converted
};

struct StageTime
{
    QString stage; ///< "backing up", see RunStage
    QDateTime begun;
};

/// "run.json" of an entry. What can be undone follows from the folders, never from this file.
struct RunSummary
{
    HistoryKind kind = HistoryKind::Run;
    QString program; ///< name and version
    QString projectDir;
    QDateTime started;
    QDateTime ended; ///< invalid as long as the run has not ended
    QStringList shapeNames;
    qsizetype screens = 0;
    qsizetype replaced = 0;
    qsizetype notReplaced = 0;
    qsizetype errors = 0;
    QString changeLog; ///< below the project, empty where there is none
    QString about;     ///< of an undoing or a restoring: the entry that it is about
    QList<StageTime> stages;
};

/// Writes "run.json" into the folder of an entry, whole or not at all. Returns what went wrong.
QString writeSummary(const RootFolder &root, const QString &entryPath, const RunSummary &summary);

/// Reads it; nothing where there is none, or none that can be understood.
std::optional<RunSummary> readSummary(const QString &entryPath);
