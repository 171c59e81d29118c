// What a cancelled run leaves.
#pragma once

#include <QString>

/// Whether the last run on a project was cancelled, so that "scr_temp" is what it had converted.
bool hasCancelledRun(const QString &projectDir);

/// What becomes of "scr_temp" where the history is to keep it and cannot be written.
enum class WithoutHistory {
    Remove, ///< a run does not fail for want of a history, and must not mix older screens in
    Keep,
};

/// Moves "scr_temp" of a cancelled run into the history, into an entry of its own, or removes it where
/// nothing is to be kept. Does nothing where no run was cancelled. What fails is logged. Whoever calls
/// it holds the project's lock.
void putCancelledRunAway(const QString &projectDir, int keptRuns, WithoutHistory withoutHistory);
