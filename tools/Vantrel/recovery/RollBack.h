// Taking a run back, whether it was interrupted or completed.
#pragma once

#include "RecoveryPlan.h"
#include "RunHistory.h"
#include "ScreenPlaces.h"

#include <QString>
#include <QStringList>

/// Puts every screen back as the plan knows it, and with it what the run had put into the history.
/// Copies, compares and only then removes; what it replaces goes into the history itself. Writes
/// its own stages down, so that it can be interrupted and repeated at any point.
class RollBack final
{
public:
    RollBack(const ScreenPlaces &places, const RecoveryPlan &plan);

    /// Returns what went wrong; empty where every screen is back and the rest is tidied up.
    /// The stage file is left with the stage RolledBack.
    QString perform();

    /// Screens in "scr" that hold neither what the run had found nor what it had made: putting the
    /// backup in their place would lose what somebody has written since.
    QStringList changedScreens() const;

    /// How many screens were not as they had been.
    int restoredScreens() const { return m_restoredScreens; }

    /// Screens that somebody has changed since the completed run. They stay as they are; their
    /// versions from before the run are in the history.
    QStringList editedScreens() const;

    /// The entry of the history that holds what was replaced; empty where nothing was.
    QString setAsideEntry() const;

private:
    bool isUndoing() const { return m_plan.lastStage() == RunStage::Done; }
    QString enter(RunStage stage) const;
    QString makeSetAside() const;
    QString setAside(const QString &screen) const;
    QString setScreensAside() const;
    QString restoreScreens();
    QString restoreScreen(const QString &screen);
    bool isSetAside(const QString &screen) const;
    bool isEdited(const QString &screen) const;
    bool isOfInterruptedRun(const QString &screen) const;
    QString returnOlderFiles() const;
    void removeSetAside() const;
    void removeBackup() const;
    QString returnOtherFiles() const;
    bool isLastBackupBack() const;
    QString returnLastBackup() const;
    QString endEntry() const;
    QString kept(const QString &name) const;

    const ScreenPlaces &m_places;
    const RecoveryPlan &m_plan;
    const RunHistory m_history;
    RunFacts m_facts;
    QDateTime m_runEnded; ///< invalid where that is not known
    int m_restoredScreens = 0;
};

/// The record of a completed run that is about to be taken back: made from what lies in "scr_bak"
/// and "scr" now. `isWhole` is cleared where not all of them could be read.
RunRecord recordOfCompletedRun(const ScreenPlaces &places, bool &isWhole);

/// Makes "scr_temp" what it was before the run: removes all that was not in it. Returns what went
/// wrong: what is left there may be half-written.
QString restoreTempFolder(const ScreenPlaces &places, const RunFacts &facts);
