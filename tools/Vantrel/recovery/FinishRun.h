// Completing a run that was interrupted after its last screen was converted.
#pragma once

#include "RecoveryPlan.h"
#include "ScreenExchange.h"
#include "ScreenPlaces.h"
#include "StageFile.h"

#include <QStringList>

enum class FinishResult { Finished, NotAllCopiedBack, Contradictory, Failed };

/// Does what remains of a run, so that the project is as if it had not been interrupted.
class FinishRun final
{
public:
    /// `plan` is that of a run that ended between Discarding and Done, and is decidable.
    FinishRun(const ScreenPlaces &places, const RecoveryPlan &plan);

    /// Touches nothing where files contradict each other.
    FinishResult perform();

    /// Files that hold neither what the run had found nor what it had made.
    const QStringList &contradictoryFiles() const { return m_contradictoryFiles; }

    /// Why it failed half-way, with all written down that it needs to be repeated.
    const QString &error() const { return m_error; }

private:
    FinishResult performRest();
    FinishResult finishBackup();
    FinishResult finishRemoval();
    FinishResult finishCopyBack();
    FinishResult arriveRest(const QStringList &converted);
    FinishResult backUpAnew(bool isLastBackupGone);
    FinishResult resultOf(bool isCopiedBack);
    FinishResult unwritableStage();
    bool isAccountedFor(const QString &screen) const;
    bool isContradictory();

    const ScreenPlaces &m_places;
    const RecoveryPlan &m_plan;
    StageFile m_stageFile;
    RunArchive m_archive;
    ScreenExchange m_exchange;
    QStringList m_contradictoryFiles;
    QString m_error;
};
