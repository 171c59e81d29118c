// The command that replaces placed objects by their current shapes.
#pragma once

#include "ExitCode.h"
#include "RunHistory.h"

#include <QString>
#include <QStringList>

class Presenter;

struct UpdateOptions
{
    QString projectDir; ///< absolute and clean
    QStringList shapeNames;
    bool allShapes = false;    ///< besides those that are named
    bool usableShapes = false; ///< the same for all that can be used
    bool makeFolders = false;
    bool force = false;
    int keptRuns = RunHistory::usualRuns;
    bool keepOthers = false;
    bool dryRun = false;
    bool failOnChanges = false; ///< of a dry run
    QString realCommand;        ///< what a user types to have a dry run's changes made
};

/// Performs a run, unless it would lose something, and shows what it did. A dry run does the
/// same to a stand-in, and shows what would change.
ExitCode runUpdate(const UpdateOptions &options, Presenter &presenter);
