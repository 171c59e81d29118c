// What a run writes down, so that another process can tell where it ended.
#pragma once

#include "RunHistory.h"

#include <QByteArray>
#include <QDateTime>
#include <QFileInfo>
#include <QList>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <array>
#include <optional>

/// What was under way. Each stage is written down before it begins.
enum class RunStage {
    Cancelled,    ///< the run was stopped: "scr" is untouched, "scr_temp" is what it had converted
    Converting,   ///< "scr" is untouched
    Discarding,   ///< the same; the backup of an earlier run is being removed
    BackingUp,    ///< each screen lies in "scr", in "scr_bak", or in both
    Removing,     ///< all screens lie in "scr_bak"; what is left of "scr" is being removed
    CopyingBack,  ///< the same, but for the unsaved ones, which lie in "scr"
    Done,         ///< nothing is left to be done
    SettingAside, ///< a run is being undone: "scr" is copied into the history
    RollingBack,  ///< the screens are being copied from "scr_bak" to "scr"
    RolledBack,   ///< "scr" is as it was; the rest is being removed
};

struct RunStageRow
{
    RunStage stage;
    const char *name; ///< "a run ended while ..."
};

/// The stages by their names, in the order of their numbers.
inline constexpr std::array runStageRows{
    RunStageRow{RunStage::Cancelled, "cancelled"},
    RunStageRow{RunStage::Converting, "converting"},
    RunStageRow{RunStage::Discarding, "removing the last backup"},
    RunStageRow{RunStage::BackingUp, "backing up"},
    RunStageRow{RunStage::Removing, "removing the screens that are backed up"},
    RunStageRow{RunStage::CopyingBack, "copying back"},
    RunStageRow{RunStage::Done, "done"},
    RunStageRow{RunStage::SettingAside, "setting the screens aside"},
    RunStageRow{RunStage::RollingBack, "rolling back"},
    RunStageRow{RunStage::RolledBack, "rolled back"},
};

constexpr const RunStageRow &rowOf(RunStage stage)
{
    return runStageRows[static_cast<std::size_t>(stage)];
}

static_assert(std::all_of(runStageRows.begin(), runStageRows.end(),
                          [](const RunStageRow &row) { return &row == &rowOf(row.stage); }),
              "rowOf() needs the order of the enumeration");

/// What holds for a run from its start to its end. Names of files and folders are paths below
/// the folder that they lie in: "boiler/burner.psc".
struct RunFacts
{
    QString program; ///< name and version
    QDateTime started;
    QStringList shapeNames;
    bool makesFolders = false;
    bool listIsWhole = true; ///< whether every folder of "scr" could be listed
    bool hadTempFolder = false;
    bool hadBackup = false; ///< "scr_bak", of an earlier run
    int keptRuns = RunHistory::usualRuns;
    bool keepsOthers = false;   ///< puts back what else lay in "scr"
    QString historyEntry = {};  ///< of the run; empty where nothing is kept
    QString setAsideEntry = {}; ///< where what a recovery replaces is kept
    QStringList screens;        ///< the image files of "scr" before the run
    QStringList olderFiles;     ///< what lay in "scr_temp" before the run
    QStringList olderFolders;   ///< the folders in it
};

/// How far a run came.
struct RunState
{
    RunStage stage = RunStage::Converting;
    /// Screens that lie in "scr" and not in "scr_bak". Valid from the copying back on.
    QStringList unsaved;
    RunStage endedAt = RunStage::Converting; ///< where a run ended that is being rolled back
};

struct RunRecord
{
    RunFacts facts;
    RunState state;
};

/// The facts of a run over these image files of "scr", as the project is now. What the run is to
/// do is left for the caller to add.
RunFacts factsOfRun(const QString &projectDir, const QList<QFileInfo> &imageFiles);

/// The lines of the facts, and all lines of a record, as they stand in a stage file.
QByteArray toLines(const RunFacts &facts);
QByteArray toText(const RunState &state, const QByteArray &factLines);

/// Reads what toText() wrote; nothing where it is not whole.
std::optional<RunRecord> readRunRecord(const QByteArray &text);

/// This program's name and version, as the facts of its runs tell them.
QString thisProgram();
