// What an interrupted run has left, and where each screen lies whole.
#pragma once

#include "RunRecord.h"
#include "ScreenPlaces.h"

#include <QStringList>

/// A look at a project whose run did not come to its end. Changes nothing.
struct RecoveryPlan
{
    RunRecord record;
    QStringList inPlace;  ///< screens from before the run that lie whole in "scr"
    QStringList inBackup; ///< the others that lie whole in "scr_bak" or, where not, in the history
    QStringList missing;  ///< those that lie nowhere
    /// Screens of which nobody can tell which version is the right one: something has changed
    /// them since the run ended.
    QStringList contradictory;
    QStringList linked;     ///< those of which "scr" and "scr_bak" have one file between them
    QStringList unreadable; ///< folders that could not be read whole
    QStringList unnamable;  ///< files whose names are not valid UTF-8

    bool isDecidable() const
    {
        return missing.isEmpty() && contradictory.isEmpty() && linked.isEmpty() && unreadable.isEmpty() &&
               unnamable.isEmpty();
    }
    /// Whether "scr_bak" is the backup of this run, not of the one before.
    bool hasBackup() const { return lastStage() >= RunStage::BackingUp; }
    /// Whether screens may lie elsewhere than in "scr".
    bool hasMovedScreens() const { return hasBackup() && record.state.stage != RunStage::RolledBack; }
    /// Where the version of a screen from before the run lies that is not in "scr".
    QString original(const ScreenPlaces &places, const QString &screen) const;
    /// Where the run itself ended, whatever has been done to recover it.
    RunStage lastStage() const;
};

/// Whether nobody has changed a file since the stage began. No where that cannot be told.
bool isOlderThanStage(const ScreenPlaces &places, const QString &file);

RecoveryPlan makeRecoveryPlan(const ScreenPlaces &places, const RunRecord &record);
