// What a cancelled run leaves.
#pragma once

#include <QString>

/// Whether the last run on a project was cancelled, so that "scr_temp" is what it had converted.
bool hasCancelledRun(const QString &projectDir);

/// Moves "scr_temp" of a cancelled run into the history, into an entry of its own, or removes it where
/// nothing is to be kept. Does nothing where no run was cancelled. Whoever calls it holds the
/// project's lock.
void putCancelledRunAway(const QString &projectDir, int keptRuns);
