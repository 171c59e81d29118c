// Taking a run back, whether it was interrupted or completed.
#include "RollBack.h"

#include "FileComparison.h"
#include "FileIo.h"
#include "SafeCopy.h"
#include "StageFile.h"
#include "updUtils.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>

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

bool isImageFile(const ScreenPlaces &places, const QString &screen)
{
    return places.inPlace(screen).contains(".psc"_L1);
}

} // namespace

RollBack::RollBack(const ScreenPlaces &places, const RecoveryPlan &plan)
    : m_places(places)
    , m_plan(plan)
{
}

QStringList RollBack::changedScreens() const
{
    QStringList changed;
    if (m_plan.lastStage() != RunStage::Removing && m_plan.lastStage() != RunStage::CopyingBack)
        return changed;
    for (const QString &screen : m_plan.inBackup) {
        const QString place = m_places.inPlace(screen);
        const QString converted = m_places.converted(screen);
        if (!mayExist(place) || haveSameContent(place, m_places.backup(screen)))
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
        if (const QString error = restoreScreens(); !error.isEmpty())
            return error;
    }
    if (const QString error = isUndoing() ? QString() : returnOlderFiles(); !error.isEmpty())
        return error;
    // A run that was still converting is taken back in the same way again, and that makes room.
    if (const QString error = enter(RunStage::RolledBack); !error.isEmpty() && stage != RunStage::Converting)
        return error;
    if (isUndoing())
        removeSetAside();
    else if (const QString error = restoreTempFolder(m_places, m_plan.record.facts); !error.isEmpty())
        return error;
    if (!isUntouched)
        removeBackup();
    return {};
}

/// Returns what went wrong. The stage before is written down still, so that all can be repeated.
QString RollBack::enter(RunStage stage) const
{
    StageFile file(m_places.projectDir(), m_plan.record.facts, IfUnwritable::Stop);
    if (file.enter({.stage = stage, .unsaved = m_plan.inPlace, .endedAt = m_plan.lastStage()}))
        return {};
    return u"%1 could not be written: %2"_s.arg(StageFile::path(m_places.projectDir()),
                                                qt_error_string(file.error()));
}

/// Keeps what the run had made.
QString RollBack::setScreensAside() const
{
    bool isWhole = true;
    const QStringList screens = m_places.screensInPlace(isWhole);
    if (!isWhole)
        return u"\"scr\" could not be read whole"_s;
    for (const QString &screen : screens) {
        const QString error = putCopy(m_places.inPlace(screen), m_places.setAside(screen));
        if (!error.isEmpty())
            return error;
    }
    return {};
}

QString RollBack::restoreScreens()
{
    for (const QString &screen : m_plan.inBackup) {
        if (haveSameContent(m_places.backup(screen), m_places.inPlace(screen)))
            continue;
        if (const QString error = putCopy(m_places.backup(screen), m_places.inPlace(screen));
            !error.isEmpty())
            return error;
        ++m_restoredScreens;
    }
    return {};
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
        if (const QString error = putCopy(inPlace, converted); !error.isEmpty())
            return error;
        removeContained(inPlace, converted);
    }
    return {};
}

/// Takes out of "scr" what a completed run had brought there and what is kept in "scr_undone".
void RollBack::removeSetAside() const
{
    for (const QString &screen : m_plan.record.facts.olderFiles)
        removeContained(m_places.inPlace(screen), m_places.setAside(screen));
}

/// Removes the backup of every screen that is back. What else lies there stays.
void RollBack::removeBackup() const
{
    for (const QString &screen : m_plan.record.facts.screens) {
        const QString inPlace = m_places.inPlace(screen);
        const QString backup = m_places.backup(screen);
        // Where somebody has changed the screen since, its original stays beside it.
        if (isOlderThanStage(m_places, inPlace) || haveSameContent(inPlace, backup))
            removeContained(backup, inPlace);
    }
    bool isWhole = true;
    if (m_places.screensInBackup(isWhole).isEmpty() && isWhole)
        updUtils::removeDir(m_places.folder(u"scr_bak"_s));
}

RunRecord recordOfCompletedRun(const ScreenPlaces &places, bool &isWhole)
{
    RunRecord record;
    record.facts.program = thisProgram();
    record.facts.started = QDateTime::currentDateTime();
    record.facts.screens = places.screensInBackup(isWhole);
    record.state = {.stage = RunStage::Done, .unsaved = {}, .endedAt = RunStage::Done};
    const QSet<QString> screens = toSet(record.facts.screens);
    const QStringList present = places.screensInPlace(isWhole);
    std::copy_if(present.cbegin(), present.cend(), std::back_inserter(record.facts.olderFiles),
                 [&screens](const QString &screen) { return !screens.contains(screen); });
    return record;
}

QString restoreTempFolder(const ScreenPlaces &places, const RunFacts &facts)
{
    const QString tempFolder = places.folder(u"scr_temp"_s);
    if (!facts.hadTempFolder)
        return updUtils::removeDir(tempFolder) ? QString() : notRemoved(tempFolder);

    namespace fs = std::filesystem;
    const QSet<QString> olderFiles = toSet(facts.olderFiles);
    const QSet<QString> olderFolders = toSet(facts.olderFolders);
    QStringList newFiles;
    QStringList newFolders;
    std::error_code error;
    fs::recursive_directory_iterator entry(QFile::encodeName(tempFolder).toStdString(), error);
    for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        const QByteArray path = QByteArray::fromStdString(entry->path().native());
        const QString text = QFile::decodeName(path);
        // A run makes no file that no text can name.
        if (QFile::encodeName(text) != path)
            continue;
        std::error_code unknownKind;
        const bool isFolder = !entry->is_symlink(unknownKind) && entry->is_directory(unknownKind);
        const QString name = text.sliced(tempFolder.size() + 1);
        if (!(isFolder ? olderFolders : olderFiles).contains(name))
            (isFolder ? newFolders : newFiles).append(text);
    }
    if (error && error != std::errc::no_such_file_or_directory)
        return u"%1 could not be listed: %2"_s.arg(tempFolder, qt_error_string(error.value()));
    for (const QString &file : std::as_const(newFiles)) {
        if (!QFile::remove(file))
            return notRemoved(file);
    }
    // The inner ones first; one that is not empty stays.
    std::sort(newFolders.begin(), newFolders.end(), std::greater<>());
    for (const QString &folder : std::as_const(newFolders))
        QDir().rmdir(folder);
    return {};
}
