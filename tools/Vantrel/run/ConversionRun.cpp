// A conversion run over a project.
#include "ConversionRun.h"

#include "EngineLog.h"
#include "ImageFileSearch.h"
#include "ProjectLock.h"
#include "ScreenExchange.h"
#include "StageFile.h"

#include <QFile>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// What a link leads to is not the project's: a run makes a folder of its own in its place.
void takeAwayLink(const QString &path)
{
    if (QFileInfo(path).isSymLink() && QFile::remove(path))
        logError(u"Link %1 was taken away"_s.arg(path));
}

} // namespace

ConversionRun::ConversionRun(ConversionSettings settings, RunListener &listener)
    : m_settings(std::move(settings))
    , m_listener(listener)
    , m_reports([this](const STBlock &report) { m_listener.onReport(report); })
    , m_conversion(m_settings, m_reports)
    , m_lock(std::make_unique<ProjectLock>(m_settings.projectDir))
{
}

ConversionRun::~ConversionRun() = default;

void ConversionRun::perform()
{
    // Under the lock: the run that is waited for may be killed meanwhile.
    if (isInUse() || isLeftOver())
        return;

    const FoundImageFiles found = searchImageFiles(m_settings.projectDir + "/scr"_L1);
    m_listener.onFound();

    enterConversion(found);
    takeAwayLink(m_settings.projectDir + "/scr_temp"_L1);
    reportHiddenFiles(found);
    if (convertImageFiles(found.files)) {
        backUpAndCopyBack();
        const auto count = static_cast<int>(found.files.size());
        m_listener.onProgress(count, count);
    }
    m_stageFile->remove();
}

bool ConversionRun::isInUse() const
{
    if (!m_lock->isHeldByOther())
        return false;
    logError(
        u"Project %1 is in use by %2; the run was not started"_s.arg(m_settings.projectDir, m_lock->holder()),
        LogPlace::Lock);
    return true;
}

/// The only copies of screens may lie where a run would remove them. What recovers an interrupted
/// run has looked at them.
bool ConversionRun::isLeftOver() const
{
    const QString &projectDir = m_settings.projectDir;
    if (m_settings.goesOnFromLeftOver || !StageFile::exists(projectDir))
        return false;
    const std::optional<RunRecord> record = StageFile::read(projectDir);
    if (record && record->state.stage == RunStage::Done)
        return false;
    const QString stage =
        record ? QString::fromLatin1(rowOf(record->state.stage).name) : u"its stage file cannot be read"_s;
    logError(u"A run on project %1 was interrupted (%2). No other run was started, and nothing was touched: "
             "\"vantrel-cli recover\" puts the screens back, or completes the interrupted run"_s.arg(
                 projectDir, stage),
             LogPlace::LeftOver);
    return true;
}

/// Writes down what another process needs to know where this one does not come to the run's end.
void ConversionRun::enterConversion(const FoundImageFiles &found)
{
    m_facts = factsOfRun(m_settings.projectDir, found.files);
    m_facts.listIsWhole = found.isWhole();
    m_facts.shapeNames = m_settings.filterNames.values();
    m_facts.shapeNames.sort();
    m_facts.makesFolders = m_settings.folderCreation == FolderCreation::WithParents;
    m_stageFile = std::make_unique<StageFile>(m_settings.projectDir, m_facts);
    m_stageFile->enter({.stage = RunStage::Converting, .unsaved = {}, .endedAt = RunStage::Converting});
}

/// Reports what keeps image files from being converted before any of them is opened.
void ConversionRun::reportHiddenFiles(const FoundImageFiles &found) const
{
    logFailures(found);
    for (const ListingFailure &failure : found.failures)
        m_reports.tellFile(failure.folder, ReportStatus::Error, messageOf(failure));
    for (const QByteArray &path : found.unnamable) {
        QString message = u"Could not open Image File: its name is not valid UTF-8"_s;
        m_reports.tellImageFileError(shownPath(path), message);
    }
}

/// Returns false when the run was stopped.
bool ConversionRun::convertImageFiles(const QList<QFileInfo> &imageFiles)
{
    const auto count = static_cast<int>(imageFiles.size());
    for (int index = 0; index < count; ++index) {
        const QString path = imageFiles.at(index).filePath();
        // Before the flag is looked at: a stopped run leaves the folder of the file it stopped at.
        m_conversion.makeTempFolder(path);
        if (m_listener.isStopWanted()) {
            m_conversion.makeTempFolderAgain(path);
            return false;
        }
        m_listener.onProgress(count, index);
        m_listener.onFile(path);
        m_conversion.convert(path);
    }
    return true;
}

void ConversionRun::backUpAndCopyBack()
{
    ScreenExchange exchange(m_settings.projectDir, m_settings.folderCreation, m_facts.screens, *m_stageFile);
    exchange.discardLastBackup();
    if (!exchange.backUpAndGoOn()) {
        logAlert(u"!!! Could not copy all files from \\scr_temp folder to \\scr. Copy them manually !!!"_s,
                 LogPlace::CopyBack);
    }
    m_stageFile->enter({.stage = RunStage::Done, .unsaved = {}, .endedAt = RunStage::Done});
}
