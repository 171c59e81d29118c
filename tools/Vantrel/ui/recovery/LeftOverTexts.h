// The words for what was found of an interrupted run, and for what was done about it.
#pragma once

#include "RecoveryThread.h"
#include "Story.h"

/// That a run was interrupted, and where it ended. For one that cannot be decided, why; for one that
/// cannot be read, what to look at.
Story summaryOf(const QString &projectDir, const RecoveryAnswer &answer);

/// The same, with what lies where, and what each way out of it does.
Story questionAbout(const QString &projectDir, const RecoveryAnswer &answer);

/// That a run was cancelled, after so many of all screens, and what it has left.
Story summaryOfCancelled(int screens, int allScreens);

/// What is being done.
Story nameOf(RecoveryTask task, const QString &projectDir);

struct RecoveryEnd
{
    Story story;
    bool isGood = false; ///< otherwise there is something left to do
};

/// What was done, or why not, and what to do next.
RecoveryEnd endOf(const QString &projectDir, const RecoveryAnswer &answer);
