// Taking a run back, whether it was interrupted or completed.
#include "RollBack.h"

#include "FileComparison.h"
#include "FileIo.h"
#include "FolderMerge.h"
#include "FolderTree.h"
#include "RunArchive.h"
#include "RunSummary.h"
#include "SafeCopy.h"
#include "StageFile.h"

#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <cerrno>

using namespace Qt::StringLiterals;

namespace {

QSet<QString> toSet(const QStringList &names)
{
    return {names.cbegin(), names.cend()};
}

/// A path below "scr_temp" as it is below "scr".
QString copiedBack(const QString &name)
{
    QString path = "/scr_temp/"_L1 + name;
    return path.replace("/scr_temp"_L1, "/scr"_L1).sliced(QStringView(u"/scr/").size());
}

QString notRemoved(const QString &path)
{
    return u"%1 could not be removed: %2"_s.arg(path, qt_error_string(errno));
}

void addMissing(QStringList &names, const QStringList &others)
{
    const QSet<QString> known = toSet(names);
    std::copy_if(others.cbegin(), others.cend(), std::back_inserter(names),
                 [&known](const QString &name) { return !known.contains(name); });
}

/// Whether a link leads there, so that it need not be the project's.
bool isBehindLink(const ScreenPlaces &places, const QString &screen)
{
    for (qsizetype end = screen.size(); end > 0; end = screen.lastIndexOf(u'/', end - 1)) {
        if (QFileInfo(places.inPlace(screen.first(end))).isSymLink())
            return true;
    }
    return false;
}

bool isImageFile(const ScreenPlaces &places, const QString &screen)
{
    return places.inPlace(screen).contains(".psc"_L1);
}

} // namespace

RollBack::RollBack(const ScreenPlaces &places, const RecoveryPlan &plan)
    : m_places(places)
    , m_plan(plan)
    , m_history(places.projectDir())
    , m_facts(plan.record.facts)
{
    if (m_facts.setAsideEntry.isEmpty())
        m_facts.setAsideEntry = m_history.nameFor(QDateTime::currentDateTime());
    if (isUndoing() && !m_facts.historyEntry.isEmpty())
        m_runEnded = readSummary(kept({})).value_or(RunSummary()).ended;
}

/// What the run has put into the history.
QString RollBack::kept(const QString &name) const
{
    return m_history.pathOf(m_facts.historyEntry, name);
}

QStringList RollBack::changedScreens() const
{
    QStringList changed;
    if (m_plan.lastStage() != RunStage::Removing && m_plan.lastStage() != RunStage::CopyingBack)
        return changed;
    for (const QString &screen : m_plan.inBackup) {
        const QString place = m_places.inPlace(screen);
        const QString converted = m_places.converted(screen);
        if (!mayExist(place) || haveSameContent(place, m_plan.original(m_places, screen)))
            continue;
        // Copying may have been broken off in the middle of a file. A file that was renamed is as old
        // as its conversion.
        const bool isOfRun = mayExist(converted) ? isBeginningOf(place, converted)
                                                 : m_plan.lastStage() == RunStage::CopyingBack &&
                                                       isOlderThanStage(m_places, place);
        if (!isOfRun)
            changed.append(place);
    }
    return changed;
}

QString RollBack::perform()
{
    // The entry was named by a file that anybody may have written.
    if (const QString obstacle = m_places.obstacleTo(m_facts.historyEntry); !obstacle.isEmpty())
        return obstacle;
    const RunStage stage = m_plan.record.state.stage;
    const bool isUntouched = !m_plan.hasBackup();
    if (stage != RunStage::RolledBack && !isUntouched) {
        if (isUndoing() && stage != RunStage::RollingBack) {
            if (const QString error = enter(RunStage::SettingAside); !error.isEmpty())
                return error;
            if (const QString error = setScreensAside(); !error.isEmpty())
                return error;
        }
        if (const QString error = enter(RunStage::RollingBack); !error.isEmpty())
            return error;
        if (const QString error = returnOtherFiles(); !error.isEmpty())
            return error;
        if (const QString error = restoreScreens(); !error.isEmpty())
            return error;
    }
    if (const QString error = isUndoing() ? QString() : returnOlderFiles(); !error.isEmpty())
        return error;
    // A run that was still converting is taken back in the same way again, and that makes room.
    if (const QString error = enter(RunStage::RolledBack); !error.isEmpty() && stage > RunStage::Converting)
        return error;
    if (isUndoing())
        removeSetAside();
    else if (const QString error = restoreTempFolder(m_places, m_plan.record.facts); !error.isEmpty())
        return error;
    if (!isUntouched && !isLastBackupBack())
        removeBackup();
    return m_facts.historyEntry.isEmpty() ? QString() : endEntry();
}

/// Returns what went wrong. The stage before is written down still, so that all can be repeated.
QString RollBack::enter(RunStage stage) const
{
    StageFile file(m_places.projectDir(), m_facts, IfUnwritable::Stop);
    if (file.enter({.stage = stage, .unsaved = m_plan.inPlace, .endedAt = m_plan.lastStage()}))
        return {};
    return file.errorText();
}

/// Keeps what the run had made.
QString RollBack::setScreensAside() const
{
    bool isWhole = true;
    const QStringList screens = m_places.screensInPlace(isWhole);
    if (!isWhole)
        return u"\"scr\" could not be read whole"_s;
    for (const QString &screen : screens) {
        // What a link leads to stays where it is.
        if (isBehindLink(m_places, screen))
            continue;
        if (const QString error = setAside(screen); !error.isEmpty())
            return error;
    }
    return {};
}

/// Makes the entry of the history for what is replaced, unless it is there.
QString RollBack::makeSetAside() const
{
    const QString path = m_history.pathOf(m_facts.setAsideEntry);
    if (const QString error = m_history.make(m_facts.setAsideEntry); !error.isEmpty() || readSummary(path))
        return error;
    RunSummary summary;
    summary.kind = HistoryKind::Undo;
    summary.program = thisProgram();
    summary.projectDir = m_places.projectDir();
    summary.started = QDateTime::currentDateTime();
    summary.about = m_facts.historyEntry;
    summary.screens = m_facts.screens.size();
    return writeSummary(m_places.root(), path, summary);
}

/// Copies a screen as it is in "scr" into the history; a link is moved there. What was set aside
/// before is not replaced.
QString RollBack::setAside(const QString &screen) const
{
    if (const QString error = makeSetAside(); !error.isEmpty())
        return error;
    const QString place = m_places.inPlace(screen);
    QString target = m_places.kept(m_facts.setAsideEntry, screen);
    for (int number = 2; mayExist(target) && !haveSameContent(place, target); ++number)
        target = m_history.pathOf(m_facts.setAsideEntry, u"scr.%1"_s.arg(number)) + u'/' + screen;
    if (!QFileInfo(place).isSymLink())
        return putCopy(place, m_places.root(), target);
    m_places.root().makeFolder(QFileInfo(target).path(), FolderCreation::WithParents);
    if (m_places.root().moveToNothing(place, target))
        return {};
    return u"%1 could not be moved to %2: %3"_s.arg(place, target, qt_error_string(errno));
}

QString RollBack::restoreScreens()
{
    for (const QString &screen : m_plan.inBackup) {
        const bool isThere = haveSameContent(m_plan.original(m_places, screen), m_places.inPlace(screen));
        if (!isThere && isEdited(screen))
            continue;
        if (const QString error = restoreScreen(screen); !error.isEmpty())
            return error;
        m_restoredScreens += isThere ? 0 : 1;
    }
    return {};
}

QString RollBack::restoreScreen(const QString &screen)
{
    const QString place = m_places.inPlace(screen);
    const bool isKnown = !mayExist(place) || haveSameContent(place, m_plan.original(m_places, screen)) ||
                         (isUndoing() ? isSetAside(screen) : isOfInterruptedRun(screen));
    if (!isKnown) {
        if (const QString error = setAside(screen); !error.isEmpty())
            return error;
    }
    return putCopy(m_plan.original(m_places, screen), m_places.root(), place);
}

/// Whether "scr_temp" holds every byte of a screen in "scr", which is a copy then, or the beginning of one.
bool RollBack::isOfInterruptedRun(const QString &screen) const
{
    const QString converted = m_places.converted(screen);
    return mayExist(converted) && isBeginningOf(m_places.inPlace(screen), converted);
}

/// All that a completed run had made is, unless somebody has changed it in the middle of an undoing.
bool RollBack::isSetAside(const QString &screen) const
{
    return haveSameContent(m_places.inPlace(screen), m_places.kept(m_facts.setAsideEntry, screen));
}

/// What a completed run has made is older than its end, and no link.
bool RollBack::isEdited(const QString &screen) const
{
    if (isUndoing() && isBehindLink(m_places, screen))
        return true;
    const QFileInfo file(m_places.inPlace(screen));
    return m_runEnded.isValid() && file.isFile() && file.lastModified() > m_runEnded;
}

QStringList RollBack::editedScreens() const
{
    QStringList edited;
    for (const QString &screen : m_plan.inBackup) {
        if (isEdited(screen) && !haveSameContent(m_plan.original(m_places, screen), m_places.inPlace(screen)))
            edited.append(m_places.inPlace(screen));
    }
    return edited;
}

QString RollBack::setAsideEntry() const
{
    return QFileInfo::exists(m_history.pathOf(m_facts.setAsideEntry)) ? m_facts.setAsideEntry : QString();
}

/// Brings back what the run has not moved to the backup: other files, hidden ones, links, folders.
QString RollBack::returnOtherFiles() const
{
    return m_facts.historyEntry.isEmpty()
               ? QString()
               : mergeBack(m_places.root(), kept(u"scr"_s), m_places.folder(u"scr"_s));
}

/// Whether "scr_bak" is that of the run before again: this one has been taken back before.
bool RollBack::isLastBackupBack() const
{
    return !m_facts.historyEntry.isEmpty() && m_facts.hadBackup && !mayExist(kept(u"scr_bak"_s));
}

/// Puts the backup of the run before in the place of the one of this run, once that is removed.
QString RollBack::returnLastBackup() const
{
    if (!mayExist(kept(u"scr_bak"_s)))
        return {};
    // What has no twin in "scr" is the version of a screen that was changed since.
    if (mayExist(m_places.folder(u"scr_bak"_s))) {
        if (const QString error = makeSetAside(); !error.isEmpty())
            return error;
        const RunArchive archive(m_places.projectDir(), m_facts.setAsideEntry);
        if (!archive.keep(u"scr_bak"_s))
            return u"%1 could not be moved into the history"_s.arg(m_places.folder(u"scr_bak"_s));
    }
    return mergeBack(m_places.root(), kept(u"scr_bak"_s), m_places.folder(u"scr_bak"_s));
}

/// The run is taken back, and so is its entry of the history. What has no place goes to the entry
/// of what was set aside.
QString RollBack::endEntry() const
{
    if (const QString error = returnLastBackup(); !error.isEmpty())
        return error;
    for (const QString &name : {u"scr"_s, u"scr_temp"_s})
        removeTwins(m_places.root(), kept(name), m_places.folder(name));
    if (!mayExist(kept({})))
        return {};
    const FolderListing left = m_places.root().folder(kept({})).list();
    if (left.error != 0)
        return u"%1 could not be listed: %2"_s.arg(kept({}), qt_error_string(left.error));
    const bool isEmpty = std::all_of(left.entries.cbegin(), left.entries.cend(),
                                     [](const FolderEntry &entry) { return entry.name == "run.json"; });
    if (isEmpty)
        return m_history.remove(m_facts.historyEntry);
    const QString error = makeSetAside();
    return error.isEmpty()
               ? mergeBack(m_places.root(), kept({}), m_history.pathOf(m_facts.setAsideEntry, u"undone"_s))
               : error;
}

/// Takes out of "scr" what the run had copied there from an older "scr_temp".
QString RollBack::returnOlderFiles() const
{
    const QSet<QString> screens = toSet(m_plan.record.facts.screens);
    for (const QString &name : m_plan.record.facts.olderFiles) {
        const QString screen = copiedBack(name);
        const QString inPlace = m_places.inPlace(screen);
        if (m_plan.lastStage() < RunStage::CopyingBack || screens.contains(screen) ||
            !isImageFile(m_places, screen) || !mayExist(inPlace)) {
            continue;
        }
        const QString converted = m_places.converted(screen);
        if (const QString error = putCopy(inPlace, m_places.root(), converted); !error.isEmpty())
            return error;
        removeContained(m_places.root(), inPlace, converted);
    }
    return {};
}

/// Takes out of "scr" what a completed run had brought there and what is kept in the history.
void RollBack::removeSetAside() const
{
    for (const QString &screen : m_facts.olderFiles) {
        if (!isEdited(screen))
            removeContained(m_places.root(), m_places.inPlace(screen),
                            m_places.kept(m_facts.setAsideEntry, screen));
    }
}

/// Removes the backup of every screen that is back. What else lies there stays.
void RollBack::removeBackup() const
{
    for (const QString &screen : m_plan.record.facts.screens) {
        const QString inPlace = m_places.inPlace(screen);
        const QString backup = m_places.backup(screen);
        // Where somebody has changed the screen since, its original stays beside it.
        const bool isChanged = isEdited(screen) || !isOlderThanStage(m_places, inPlace);
        // Where the run was interrupted, a copy may have been broken off.
        if (haveSameContent(inPlace, backup) || (!isChanged && !isUndoing()))
            removeContained(m_places.root(), backup, inPlace);
    }
    // What else somebody has put there stays.
    removeEmptyFolders(m_places.root(), m_places.folder(u"scr_bak"_s));
}

RunRecord recordOfCompletedRun(const ScreenPlaces &places, bool &isWhole)
{
    RunRecord record;
    record.facts.program = thisProgram();
    record.facts.started = QDateTime::currentDateTime();
    record.facts.historyEntry = RunHistory(places.projectDir()).newestRun(isWhole);
    record.facts.screens = places.screensInBackup(isWhole);
    // Where they could not be backed up, they were put away as they lay in "scr".
    // What cannot be read there comes back all the same, by renaming.
    if (!record.facts.historyEntry.isEmpty())
        addMissing(record.facts.screens, places.screensKept(record.facts.historyEntry));
    record.facts.hadBackup =
        !record.facts.historyEntry.isEmpty() &&
        mayExist(RunHistory(places.projectDir()).pathOf(record.facts.historyEntry, u"scr_bak"_s));
    record.state = {.stage = RunStage::Done, .unsaved = {}, .endedAt = RunStage::Done};
    const QSet<QString> screens = toSet(record.facts.screens);
    const QStringList present = places.screensInPlace(isWhole);
    std::copy_if(
        present.cbegin(), present.cend(), std::back_inserter(record.facts.olderFiles),
        [&](const QString &screen) { return !screens.contains(screen) && !isBehindLink(places, screen); });
    return record;
}

QString restoreTempFolder(const ScreenPlaces &places, const RunFacts &facts)
{
    const QString tempFolder = places.folder(u"scr_temp"_s);
    if (!facts.hadTempFolder)
        return places.root().removeTree(tempFolder) ? QString() : notRemoved(tempFolder);

    // Nobody knows who has put a link there.
    if (QFileInfo(tempFolder).isSymLink())
        return {};
    const QSet<QString> olderFiles = toSet(facts.olderFiles);
    const QSet<QString> olderFolders = toSet(facts.olderFolders);
    QStringList newFiles;
    QStringList newFolders;
    const OpenFolder opened = places.root().folder(tempFolder);
    const int error = visitTree(opened, [&](const TreeEntry &entry) {
        const QString name = QFile::decodeName(entry.path);
        // A run makes no file that no text can name.
        if (QFile::encodeName(name) != entry.path)
            return;
        const bool isFolder = entry.kind == EntryKind::Folder;
        if (!(isFolder ? olderFolders : olderFiles).contains(name))
            (isFolder ? newFolders : newFiles).append(tempFolder + u'/' + name);
    });
    if (error != 0 && error != ENOENT)
        return u"%1 could not be listed: %2"_s.arg(tempFolder, qt_error_string(error));
    for (const QString &file : std::as_const(newFiles)) {
        if (!places.root().removeFile(file))
            return notRemoved(file);
    }
    // The inner ones first; one that is not empty stays.
    std::sort(newFolders.begin(), newFolders.end(), std::greater<>());
    for (const QString &folder : std::as_const(newFolders))
        places.root().removeEmptyFolder(folder);
    return {};
}
