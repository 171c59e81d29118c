// The command that lists the last runs and brings back what they have displaced.
#pragma once

#include "ExitCode.h"

#include <QString>
#include <QStringList>

class Presenter;

enum class HistoryAction { List, Diff, Restore, Prune };

struct HistoryOptions
{
    QString projectDir;
    HistoryAction action = HistoryAction::List;
    QString run;       ///< of Diff and Restore
    QStringList files; ///< to be restored, below "scr"; none for all
    int keptRuns = 0;  ///< of Prune
};

ExitCode runHistory(const HistoryOptions &options, Presenter &presenter);
