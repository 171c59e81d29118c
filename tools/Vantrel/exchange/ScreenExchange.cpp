// Putting the converted screens of a project into the place of the original ones.
#include "ScreenExchange.h"

#include "Backup.h"
#include "ImageFileSearch.h"
#include "StageFile.h"

#include <algorithm>

using namespace Qt::StringLiterals;

ScreenExchange::ScreenExchange(QString projectDir, FolderCreation creation, QStringList screens,
                               StageFile &stageFile)
    : m_projectDir(std::move(projectDir))
    , m_creation(creation)
    , m_screens(std::move(screens))
    , m_stageFile(stageFile)
{
}

bool ScreenExchange::discardLastBackup()
{
    return enter(RunStage::Discarding) && updUtils::removeDirOrLog(folder("/scr_bak"_L1));
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
    updUtils::removeDirOrLog(folder("/scr"_L1));
    return copyBack();
}

bool ScreenExchange::copyBack(const QStringList &unsaved)
{
    m_unsaved = unsaved;
    if (!enter(RunStage::CopyingBack))
        return false;
    // Still there only where not all of them could be backed up, or where one resists removal.
    const FoundImageFiles originals = searchImageFiles(folder("/scr"_L1));
    logFailures(originals);
    return updUtils::moveImageFiles(u"/scr_temp"_s, u"/scr"_s, m_projectDir, m_creation) ||
           retryCopyBack(originals);
}

/// Copies back into an empty image folder. It is emptied only when its originals lie in the backup.
bool ScreenExchange::retryCopyBack(const FoundImageFiles &originals)
{
    if (!originals.isWhole() || !completeBackup(originals.files, m_projectDir))
        return false;
    m_unsaved.clear();
    if (!enter(RunStage::Removing))
        return false;
    updUtils::removeDirOrLog(folder("/scr"_L1));
    if (!enter(RunStage::CopyingBack))
        return false;
    return updUtils::moveImageFiles(u"/scr_temp"_s, u"/scr"_s, m_projectDir, m_creation);
}

bool ScreenExchange::enter(RunStage stage) const
{
    return m_stageFile.enter({.stage = stage, .unsaved = m_unsaved, .endedAt = stage});
}

QStringList ScreenExchange::screensInPlace() const
{
    const QString imageFolder = folder("/scr/"_L1);
    QStringList inPlace;
    std::copy_if(m_screens.cbegin(), m_screens.cend(), std::back_inserter(inPlace),
                 [&](const QString &screen) { return QFileInfo(imageFolder + screen).isFile(); });
    return inPlace;
}

QString ScreenExchange::folder(QLatin1StringView name) const
{
    return m_projectDir + name;
}
