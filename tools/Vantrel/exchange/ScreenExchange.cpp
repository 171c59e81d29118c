// Putting the converted screens of a project into the place of the original ones.
#include "ScreenExchange.h"

#include "Backup.h"
#include "EngineLog.h"
#include "FileIo.h"
#include "FolderMerge.h"
#include "ImageFileSearch.h"
#include "RootFolder.h"
#include "SafeCopy.h"
#include "StageFile.h"

#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

ScreenExchange::ScreenExchange(QString projectDir, const RunFacts &facts, const RunArchive &archive,
                               StageFile &stageFile)
    : m_projectDir(std::move(projectDir))
    , m_facts(facts)
    , m_creation(facts.makesFolders ? FolderCreation::WithParents : FolderCreation::OneLevel)
    , m_archive(archive)
    , m_stageFile(stageFile)
{
}

bool ScreenExchange::discardLastBackup()
{
    return enter(RunStage::Discarding) && m_archive.putAway(u"scr_bak"_s);
}

bool ScreenExchange::discardUnfinishedBackup()
{
    return enter(RunStage::Discarding) && m_archive.putAway(u"scr_bak"_s, u"scr_bak.unfinished"_s);
}

bool ScreenExchange::backUpAndGoOn()
{
    if (!enter(RunStage::BackingUp))
        return false;
    if (updUtils::transferImageFiles(u"/scr"_s, u"/scr_bak"_s, m_projectDir, m_creation))
        return removeAndGoOn();
    return copyBack(screensInPlace());
}

bool ScreenExchange::removeAndGoOn()
{
    if (!enter(RunStage::Removing))
        return false;
    m_archive.putAway(u"scr"_s);
    return copyBack();
}

bool ScreenExchange::copyBack(const QStringList &unsaved)
{
    m_unsaved = unsaved;
    const bool isCopiedBack = copyBackAll();
    if (isCopiedBack)
        putOthersBack();
    return isCopiedBack;
}

bool ScreenExchange::copyBackAll()
{
    if (!enter(RunStage::CopyingBack))
        return false;
    // Still there only where not all of them could be backed up, or where one resists removal.
    const FoundImageFiles originals = searchImageFiles(folder("/scr"_L1));
    logFailures(originals);
    if (moveToImageFolder())
        return true;
    return hasMovedScreens(originals) ? moveToImageFolder() : retryCopyBack(originals);
}

/// Whether screens were renamed from "scr_temp" to "scr", and something else kept the move from being
/// whole: they lie nowhere else then.
bool ScreenExchange::hasMovedScreens(const FoundImageFiles &originals) const
{
    QSet<QString> before;
    for (const QFileInfo &original : originals.files)
        before.insert(original.filePath());
    return std::any_of(m_facts.screens.cbegin(), m_facts.screens.cend(), [&](const QString &screen) {
        const QString place = "/scr/"_L1 + screen;
        const QString converted = QString(place).replace("/scr"_L1, "/scr_temp"_L1);
        return !before.contains(m_projectDir + place) && QFileInfo(m_projectDir + place).isFile() &&
               !mayExist(m_projectDir + converted);
    });
}

void ScreenExchange::putOthersBack() const
{
    if (!m_facts.keepsOthers)
        return;
    const QString kept = RunHistory(m_projectDir).pathOf(m_archive.entry(), u"scr"_s);
    const RootFolder root(m_projectDir);
    if (const QString error = mergeBack(root, kept, folder("/scr"_L1)); !error.isEmpty())
        logError(error, LogPlace::History);
    for (const QString &screen : m_facts.screens) {
        const QString place = folder("/scr/"_L1) + screen;
        QString backup = "/scr/"_L1 + screen;
        backup = m_projectDir + backup.replace("/scr"_L1, "/scr_bak"_L1);
        if (mayExist(place) || !QFileInfo(backup).isFile())
            continue;
        if (const QString error = putCopy(backup, root, place); !error.isEmpty())
            logError(error, LogPlace::History);
    }
}

bool ScreenExchange::moveToImageFolder() const
{
    if (!updUtils::transferImageFiles(u"/scr_temp"_s, u"/scr"_s, m_projectDir, m_creation))
        return false;
    m_archive.putAway(u"scr_temp"_s);
    return true;
}

/// Copies back into an empty image folder. Where not all of its originals can be brought to the
/// backup, the folder goes to the archive as it is, or stays.
bool ScreenExchange::retryCopyBack(const FoundImageFiles &originals)
{
    const bool isBackedUp = originals.isWhole() && completeBackup(originals.files, m_projectDir);
    if (!isBackedUp)
        return putAwayAsItIs() && moveToImageFolder();
    m_unsaved.clear();
    if (!enter(RunStage::Removing))
        return false;
    m_archive.putAway(u"scr"_s);
    return enter(RunStage::CopyingBack) && moveToImageFolder();
}

bool ScreenExchange::putAwayAsItIs() const
{
    if (!m_archive.keep(u"scr"_s))
        return false;
    logWarning(u"Folder %1 could not be backed up whole. It was moved to %2 as it was"_s.arg(
                   folder("/scr"_L1), RunHistory(m_projectDir).pathOf(m_archive.entry())),
               LogPlace::History);
    return true;
}

bool ScreenExchange::enter(RunStage stage) const
{
    return m_stageFile.enter({.stage = stage, .unsaved = m_unsaved, .endedAt = stage});
}

QStringList ScreenExchange::screensInPlace() const
{
    const QString imageFolder = folder("/scr/"_L1);
    QStringList inPlace;
    std::copy_if(m_facts.screens.cbegin(), m_facts.screens.cend(), std::back_inserter(inPlace),
                 [&](const QString &screen) { return QFileInfo(imageFolder + screen).isFile(); });
    return inPlace;
}

QString ScreenExchange::folder(QLatin1StringView name) const
{
    return m_projectDir + name;
}
