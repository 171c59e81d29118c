// Showing how screens differ.
#pragma once

#include "Presenter.h"
#include "ScreenDiffs.h"

/// Shows how two versions of a screen differ, or why that cannot be told.
inline void show(const ScreenDifference &difference, Presenter &presenter)
{
    if (difference.finding)
        presenter.showFinding(*difference.finding);
    if (difference.diff)
        presenter.showDiff(*difference.diff);
}

inline QList<CountValue> countsOf(const ScreenDiffs &diffs)
{
    return {{Count::Changed, diffs.changedFiles()},
            {Count::LinesAdded, diffs.addedLines()},
            {Count::LinesRemoved, diffs.removedLines()}};
}
