// Taking a run back, whether it was interrupted or completed.
#include "RollBack.h"

#include "Backup.h"
#include "SafeCopy.h"
#include "StageFile.h"
#include "updUtils.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <algorithm>

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

QString RollBack::perform()
{
    const RunStage stage = m_plan.record.state.stage;
    const bool isUntouched = !m_plan.hasBackup();
    if (stage != RunStage::RolledBack && !isUntouched) {
        if (isUndoing() && stage != RunStage::RollingBack) {
            enter(RunStage::SettingAside);
            if (const QString error = setScreensAside(); !error.isEmpty())
                return error;
        }
        enter(RunStage::RollingBack);
        if (const QString error = restoreScreens(); !error.isEmpty())
            return error;
    }
    if (const QString error = isUndoing() ? QString() : returnOlderFiles(); !error.isEmpty())
        return error;
    enter(RunStage::RolledBack);
    if (isUndoing())
        removeSetAside();
    else
        restoreTempFolder(m_places, m_plan.record.facts);
    if (!isUntouched)
        removeBackup();
    return {};
}

void RollBack::enter(RunStage stage) const
{
    StageFile(m_places.projectDir(), m_plan.record.facts)
        .enter({.stage = stage, .unsaved = m_plan.inPlace, .endedAt = m_plan.lastStage()});
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
            !isImageFile(m_places, screen) || !QFileInfo::exists(inPlace)) {
            continue;
        }
        const QString converted = m_places.converted(screen);
        if (const QString error = putCopy(inPlace, converted); !error.isEmpty())
            return error;
        removeDuplicate(inPlace, converted);
    }
    return {};
}

/// Takes out of "scr" what a completed run had brought there and what is kept in "scr_undone".
void RollBack::removeSetAside() const
{
    for (const QString &screen : m_plan.record.facts.olderFiles)
        removeDuplicate(m_places.inPlace(screen), m_places.setAside(screen));
}

/// Removes the backup of every screen that is back. What else lies there stays.
void RollBack::removeBackup() const
{
    for (const QString &screen : m_plan.record.facts.screens)
        removeDuplicate(m_places.backup(screen), m_places.inPlace(screen));
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

void restoreTempFolder(const ScreenPlaces &places, const RunFacts &facts)
{
    const QString tempFolder = places.folder(u"scr_temp"_s);
    if (!facts.hadTempFolder) {
        updUtils::removeDir(tempFolder);
        return;
    }
    const QSet<QString> olderFiles = toSet(facts.olderFiles);
    const QSet<QString> olderFolders = toSet(facts.olderFolders);
    QStringList newFolders;
    QDirIterator entries(tempFolder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QFileInfo entry = entries.nextFileInfo();
        const QString name = entry.filePath().sliced(tempFolder.size() + 1);
        if (entry.isDir() && !entry.isSymLink()) {
            if (!olderFolders.contains(name))
                newFolders.append(entry.filePath());
        } else if (!olderFiles.contains(name)) {
            QFile::remove(entry.filePath());
        }
    }
    // The inner ones first; one that is not empty stays.
    std::sort(newFolders.begin(), newFolders.end(), std::greater<>());
    for (const QString &folder : std::as_const(newFolders))
        QDir().rmdir(folder);
}
