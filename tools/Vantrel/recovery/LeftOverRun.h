// A run that did not come to its end, looked at and put right.
#pragma once

#include "RecoveryPlan.h"
#include "ScreenPlaces.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

class ProjectLock;

/// What a project has of a run that is not over.
enum class LeftOver {
    Nothing,
    Cancelled,  ///< a run was cancelled, and nothing needs to be done
    InUse,      ///< somebody else works on the project
    Unreadable, ///< a stage file that tells nothing
    Run,        ///< an interrupted run, perhaps one that was being recovered
    Undoing,    ///< a completed run that was being undone
};

enum class RecoveryOutcome {
    Done,             ///< nothing is under way any more
    ConvertAgain,     ///< "scr" is as before the run, which is to be performed anew
    ChangedFiles,     ///< nothing was touched: files were changed since the run ended
    NothingConverted, ///< nothing was touched: the converted screens are gone
    NotAllCopiedBack, ///< converted screens are left in "scr_temp"; all can be repeated
    Failed,           ///< half-way; all can be repeated
};

struct RecoveryResult
{
    RecoveryOutcome outcome = RecoveryOutcome::Done;
    QString error;            ///< why it failed
    QStringList changedFiles; ///< they hold neither what the run had found nor what it had made
    QStringList unconverted;  ///< screens that a completed run has not brought to "scr"
    int restoredScreens = 0;  ///< how many were not as they had been
};

/// Holds the project's lock as long as it lives. Says nothing to users; who asks has the words.
///
/// Its thread may be asked to end its work, see endIfInterrupted(): plan(), putBack() and complete()
/// end before the next screen then, throwing WorkInterrupted. What they have done is written down
/// as for a process that was killed, and they can be repeated.
class LeftOverRun final
{
    Q_DISABLE_COPY_MOVE(LeftOverRun)

public:
    explicit LeftOverRun(const QString &projectDir);
    ~LeftOverRun();

    LeftOver kind() const { return m_kind; }
    /// Who works on the project that is in use.
    const QString &holder() const;
    /// Of a run or an undoing.
    const RunRecord &record() const { return m_record; }
    /// Where each screen of it lies. Made when it is asked for first, which takes a while.
    const RecoveryPlan &plan();

    /// Takes a run back, or goes on with an undoing. The plan must be decidable.
    RecoveryResult putBack();
    /// Does what remains of a run or an undoing. The plan must be decidable.
    RecoveryResult complete();
    /// Moves "scr_temp" of a cancelled run into the history, or removes it where that run was to keep
    /// nothing. Where the history cannot be used, nothing is touched.
    RecoveryResult putAway();

    /// The screens from before it that are not in "scr" now.
    QStringList unconverted() { return screensNotInPlace(); }

    /// Removes what tells of the run: nothing is under way any more. Returns what went wrong.
    QString forget() const;

private:
    LeftOver look();
    RecoveryResult rollBack();
    RecoveryResult finish();
    RecoveryResult prepareConversion();
    RecoveryResult closed(RecoveryResult result) const;
    bool hasConvertedScreens();
    QStringList screensNotInPlace();

    ScreenPlaces m_places;
    std::unique_ptr<ProjectLock> m_lock;
    RunRecord m_record;
    std::optional<RecoveryPlan> m_plan;
    LeftOver m_kind;
};
