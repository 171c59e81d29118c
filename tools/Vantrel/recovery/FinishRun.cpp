// Completing a run that was interrupted after its last screen was converted.
#include "FinishRun.h"

#include "FileComparison.h"
#include "FileIo.h"
#include "RunSummary.h"
#include "SafeCopy.h"

#include <QFile>
#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

FinishRun::FinishRun(const ScreenPlaces &places, const RecoveryPlan &plan)
    : m_places(places)
    , m_plan(plan)
    , m_stageFile(places.projectDir(), plan.record.facts, IfUnwritable::Stop)
    , m_archive(places.projectDir(), plan.record.facts.historyEntry)
    , m_exchange(places.projectDir(), plan.record.facts, m_archive, m_stageFile)
{
}

FinishResult FinishRun::perform()
{
    m_archive.open();
    const FinishResult result = performRest();
    if (result == FinishResult::Finished && m_archive.isKeeping()) {
        const QString path = RunHistory(m_places.projectDir()).pathOf(m_archive.entry());
        if (std::optional<RunSummary> summary = readSummary(path)) {
            summary->ended = QDateTime::currentDateTime();
            m_archive.write(*summary);
        }
    }
    return result;
}

FinishResult FinishRun::performRest()
{
    switch (m_plan.record.state.stage) {
    case RunStage::Discarding:
        return backUpAnew(m_exchange.discardLastBackup());
    case RunStage::BackingUp:
        return finishBackup();
    case RunStage::Removing:
        return finishRemoval();
    case RunStage::CopyingBack:
        return finishCopyBack();
    default:
        return FinishResult::Finished;
    }
}

FinishResult FinishRun::resultOf(bool isCopiedBack)
{
    if (isCopiedBack)
        return FinishResult::Finished;
    return m_stageFile.error() == 0 ? FinishResult::NotAllCopiedBack : unwritableStage();
}

FinishResult FinishRun::unwritableStage()
{
    m_error = m_stageFile.errorText();
    return FinishResult::Failed;
}

/// A run goes on beside what it cannot remove of the last backup. This can be repeated instead.
FinishResult FinishRun::backUpAnew(bool isLastBackupGone)
{
    if (isLastBackupGone)
        return resultOf(m_exchange.backUpAndGoOn());
    if (m_stageFile.error() != 0)
        return unwritableStage();
    m_error = u"The last backup could not be removed"_s;
    return FinishResult::Failed;
}

FinishResult FinishRun::finishBackup()
{
    // As long as all screens lie in "scr", the backup holds nothing else: it is made anew.
    if (m_plan.inBackup.isEmpty())
        return backUpAnew(m_exchange.discardUnfinishedBackup());
    for (const QString &screen : m_plan.inPlace)
        removeContained(m_places.root(), m_places.backup(screen), m_places.inPlace(screen));
    return resultOf(m_exchange.backUpAndGoOn());
}

FinishResult FinishRun::finishRemoval()
{
    return isContradictory() ? FinishResult::Contradictory : resultOf(m_exchange.removeAndGoOn());
}

/// Where the run was copying, all lies still in "scr_temp", and is copied from the start. Where it
/// was renaming, each screen lies in one of the two folders.
FinishResult FinishRun::finishCopyBack()
{
    bool isWhole = true;
    const QStringList converted = m_places.screensConverted(isWhole);
    const QStringList present = m_places.screensInPlace(isWhole);
    if (!isWhole || isContradictory())
        return FinishResult::Contradictory;

    const QSet<QString> unsaved(m_plan.inPlace.cbegin(), m_plan.inPlace.cend());
    const bool isCopying = std::all_of(present.cbegin(), present.cend(), [&](const QString &screen) {
        return unsaved.contains(screen) || mayExist(m_places.converted(screen));
    });
    if (!isCopying)
        return arriveRest(converted);
    if (unsaved.isEmpty())
        return resultOf(m_exchange.removeAndGoOn());
    for (const QString &screen : present) {
        if (!unsaved.contains(screen))
            removeContained(m_places.root(), m_places.inPlace(screen), m_places.converted(screen));
    }
    return resultOf(m_exchange.copyBack(m_plan.inPlace));
}

FinishResult FinishRun::arriveRest(const QStringList &converted)
{
    for (const QString &screen : converted) {
        const QString place = m_places.inPlace(screen);
        if (mayExist(place) && !haveSameContent(place, m_places.converted(screen)))
            m_contradictoryFiles.append(place);
    }
    if (!m_contradictoryFiles.isEmpty())
        return FinishResult::Contradictory;
    for (const QString &screen : converted) {
        m_error = putCopy(m_places.converted(screen), m_places.root(), m_places.inPlace(screen));
        if (!m_error.isEmpty())
            return FinishResult::Failed;
    }
    m_archive.putAway(u"scr_temp"_s);
    m_exchange.putOthersBack();
    return FinishResult::Finished;
}

/// Whether a file in "scr" may go away: another one holds the same bytes.
bool FinishRun::isAccountedFor(const QString &screen) const
{
    const QString place = m_places.inPlace(screen);
    const QString converted = m_places.converted(screen);
    return haveSameContent(place, m_plan.original(m_places, screen)) || isBeginningOf(place, converted);
}

/// Whether "scr" holds a screen that was changed since the run ended.
bool FinishRun::isContradictory()
{
    bool isWhole = true;
    const QSet<QString> unsaved(m_plan.inPlace.cbegin(), m_plan.inPlace.cend());
    for (const QString &screen : m_places.screensInPlace(isWhole)) {
        const bool mayHaveBeenRenamed =
            m_plan.record.state.stage == RunStage::CopyingBack && !mayExist(m_places.converted(screen));
        if (!unsaved.contains(screen) && !mayHaveBeenRenamed && !isAccountedFor(screen))
            m_contradictoryFiles.append(m_places.inPlace(screen));
    }
    return !isWhole || !m_contradictoryFiles.isEmpty();
}
