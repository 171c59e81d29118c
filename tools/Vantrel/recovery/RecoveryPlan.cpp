// What an interrupted run has left, and where each screen lies whole.
#include "RecoveryPlan.h"

#include "FileComparison.h"
#include "FileIo.h"
#include "ImageFileSearch.h"
#include "Interruption.h"
#include "SafeCopy.h"
#include "StageFile.h"

#include <QDateTime>
#include <QFileInfo>
#include <QSet>

using namespace Qt::StringLiterals;

namespace {

enum class Place {
    Untouched, ///< in "scr", where no run has moved it
    Original,  ///< in "scr"
    Backup,
};

bool isFile(const QString &path)
{
    return QFileInfo(path).isFile();
}

class Planner final
{
public:
    Planner(const ScreenPlaces &places, const RunRecord &record)
        : m_places(places)
        , m_unsaved(record.state.unsaved.cbegin(), record.state.unsaved.cend())
    {
        m_plan.record = record;
    }

    RecoveryPlan plan()
    {
        if (!m_plan.record.facts.listIsWhole && m_plan.hasBackup())
            addUnlistedScreens();
        for (const QString &screen : std::as_const(m_plan.record.facts.screens)) {
            endIfInterrupted();
            locate(screen);
        }
        // A screen may have been removed on purpose, but not all of them.
        if (!m_plan.hasMovedScreens() && m_plan.inPlace.isEmpty())
            m_plan.missing = m_plan.record.facts.screens;
        return m_plan;
    }

private:
    void addUnlistedScreens();
    void noteHidden(const QString &folder);
    void locate(const QString &screen);
    bool isCopyInProgress(const QString &inPlace, const QString &backup) const;
    Place placeOf(const QString &screen) const;

    const ScreenPlaces &m_places;
    QSet<QString> m_unsaved;
    RecoveryPlan m_plan;
};

/// A run that could not list all of "scr" at its start may have moved more than it knew of.
void Planner::addUnlistedScreens()
{
    bool isWhole = true;
    QStringList &screens = m_plan.record.facts.screens;
    QSet<QString> known(screens.cbegin(), screens.cend());
    QStringList present = m_places.screensInBackup(isWhole);
    noteHidden(m_places.folder(u"scr_bak"_s));
    if (m_plan.record.state.stage == RunStage::BackingUp) {
        present += m_places.screensInPlace(isWhole);
        noteHidden(m_places.folder(u"scr"_s));
    }
    for (const QString &screen : std::as_const(present)) {
        if (known.contains(screen))
            continue;
        known.insert(screen);
        screens.append(screen);
    }
}

void Planner::noteHidden(const QString &folder)
{
    const FoundImageFiles found = searchImageFiles(folder);
    for (const ListingFailure &failure : found.failures)
        m_plan.unreadable.append(failure.folder);
    for (const QByteArray &path : found.unnamable)
        m_plan.unnamable.append(shownPath(path));
}

void Planner::locate(const QString &screen)
{
    const bool isMoving = m_plan.record.state.stage == RunStage::BackingUp;
    const QString inPlace = m_places.inPlace(screen);
    const QString backup = m_places.backup(screen);
    // What seems to be a copy would go away with the other one.
    if (m_plan.hasBackup() && areOneFile(inPlace, backup)) {
        m_plan.linked.append(screen);
        return;
    }
    if (isMoving && mayExist(inPlace) && mayExist(backup) && !isCopyInProgress(inPlace, backup)) {
        m_plan.contradictory.append(screen);
        return;
    }
    switch (placeOf(screen)) {
    case Place::Untouched:
        // One that is gone was removed by somebody else.
        if (isFile(inPlace))
            m_plan.inPlace.append(screen);
        break;
    case Place::Original:
        // Where not all could be backed up, "scr" may have been put away as it was.
        (isFile(inPlace)                             ? m_plan.inPlace
         : isFile(m_plan.original(m_places, screen)) ? m_plan.inBackup
                                                     : m_plan.missing)
            .append(screen);
        break;
    case Place::Backup:
        (isFile(m_plan.original(m_places, screen)) ? m_plan.inBackup : m_plan.missing).append(screen);
        break;
    }
}

/// Whether the run itself left both: a copy that is whole, or that was broken off.
bool Planner::isCopyInProgress(const QString &inPlace, const QString &backup) const
{
    return haveSameContent(inPlace, backup) ||
           (isOlderThanStage(m_places, inPlace) && isBeginningOf(backup, inPlace));
}

Place Planner::placeOf(const QString &screen) const
{
    switch (m_plan.record.state.stage) {
    case RunStage::Cancelled:
    case RunStage::Converting:
    case RunStage::Discarding:
    case RunStage::RolledBack:
        return Place::Untouched;
    case RunStage::BackingUp:
        return isFile(m_places.inPlace(screen)) ? Place::Original : Place::Backup;
    case RunStage::Removing:
    case RunStage::CopyingBack:
    case RunStage::Done:
    case RunStage::SettingAside:
    case RunStage::RollingBack:
        break;
    }
    return m_unsaved.contains(screen) ? Place::Original : Place::Backup;
}

} // namespace

QString RecoveryPlan::original(const ScreenPlaces &places, const QString &screen) const
{
    const QString backup = places.backup(screen);
    return record.facts.historyEntry.isEmpty() || mayExist(backup)
               ? backup
               : places.kept(record.facts.historyEntry, screen);
}

RunStage RecoveryPlan::lastStage() const
{
    const bool isBeingRecovered = record.state.stage >= RunStage::SettingAside;
    return isBeingRecovered ? record.state.endedAt : record.state.stage;
}

bool isOlderThanStage(const ScreenPlaces &places, const QString &file)
{
    const QDateTime changed = QFileInfo(file).lastModified();
    return changed.isValid() && changed <= QFileInfo(StageFile::path(places.projectDir())).lastModified();
}

RecoveryPlan makeRecoveryPlan(const ScreenPlaces &places, const RunRecord &record)
{
    return Planner(places, record).plan();
}
