// A conversion run over a project.
#include "ConversionRun.h"

#include "CancelledRun.h"
#include "EngineLog.h"
#include "FileIo.h"
#include "ImageFileSearch.h"
#include "Interruption.h"
#include "ProjectLock.h"
#include "ProjectPath.h"
#include "RootFolder.h"
#include "RunArchive.h"
#include "ScreenExchange.h"
#include "StageFile.h"

#include <QFile>

#include <numeric>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// What a link leads to is not the project's: a run makes a folder of its own in its place.
void takeAwayLink(const RootFolder &root, const QString &path)
{
    if (QFileInfo(path).isSymLink() && root.removeFile(path))
        logError(u"Link %1 was taken away"_s.arg(path));
}

} // namespace

ConversionRun::ConversionRun(ConversionSettings settings, RunListener &listener)
    : m_settings(std::move(settings))
    , m_listener(listener)
    , m_reports([this](const STBlock &report) { takeReport(report); })
    , m_conversion(m_settings, m_reports)
    , m_lock(m_settings.isLocked || !complaintAboutProject(m_settings.projectDir).isEmpty()
                 ? nullptr
                 : std::make_unique<ProjectLock>(m_settings.projectDir))
{
}

ConversionRun::~ConversionRun() = default;

void ConversionRun::perform()
{
    // Under the lock: the run that is waited for may be killed meanwhile.
    if (isNoProject() || isInUse() || isLeftOver())
        return;
    if (m_settings.putsAwayTempFolder)
        putCancelledRunAway(m_settings.projectDir, m_settings.keptRuns, WithoutHistory::Remove);

    const FoundImageFiles found = search();
    if (m_isStoppedEarly)
        return;
    m_summary.changeLog = relativeTo(m_settings.projectDir, m_listener.onFound());

    makeRoom(found);
    if (!enterConversion(found))
        return;
    takeAwayLink(RootFolder(m_settings.projectDir), m_settings.projectDir + "/scr_temp"_L1);
    reportHiddenFiles(found);
    if (!convertImageFiles(found.files)) {
        leaveCancelled();
        return;
    }
    if (backUpAndCopyBack()) {
        const auto count = static_cast<int>(found.files.size());
        m_listener.onProgress(count, count);
    }
    end();
}

/// A search may take long, so that it ends where the run is stopped meanwhile: nothing is begun yet. One that
/// was stopped before comes to its first file, as it would have without the search.
FoundImageFiles ConversionRun::search()
{
    const bool isStopped = m_listener.isStopWanted();
    const InterruptionScope scope([this, isStopped] { return !isStopped && m_listener.isStopWanted(); });
    try {
        return searchImageFiles(m_settings.projectDir + "/scr"_L1);
    } catch (const WorkInterrupted &) {
        m_isStoppedEarly = true;
    }
    return {};
}

/// Tells that "scr_temp" is what this run has left, and that nothing else is to be done about it.
void ConversionRun::leaveCancelled()
{
    m_facts.screens.clear();
    StageFile file(m_settings.projectDir, m_facts, IfUnwritable::Stop);
    if (!file.enter({.stage = RunStage::Cancelled, .unsaved = {}, .endedAt = RunStage::Cancelled}))
        removeStageFile();
}

/// Where a stage could not be written down, nothing of it was begun, and what the file tells of is
/// left to be completed or taken back.
void ConversionRun::end()
{
    if (m_stageFile->error() == 0) {
        removeStageFile();
        return;
    }
    logError(u"The run was broken off: %1. No screen is lost: \"vantrel-cli recover\" completes the run, or "
             "puts the screens back"_s.arg(m_stageFile->errorText()),
             LogPlace::Run);
}

void ConversionRun::removeStageFile()
{
    if (m_stageFile->remove())
        return;
    logError(
        u"%1 could not be removed: %2. It tells of a run that came to its end, and the next run replaces it"_s
            .arg(StageFile::path(m_settings.projectDir), qt_error_string(m_stageFile->error())),
        LogPlace::Run);
}

void ConversionRun::takeReport(const STBlock &report)
{
    ++(report.status == ReportStatus::Replaced      ? m_summary.replaced
       : report.status == ReportStatus::NotReplaced ? m_summary.notReplaced
                                                    : m_summary.errors);
    m_listener.onReport(report);
}

bool ConversionRun::isNoProject() const
{
    const QString complaint = complaintAboutProject(m_settings.projectDir);
    if (!complaint.isEmpty())
        logError(u"The run was not started, and nothing was touched: %1"_s.arg(complaint), LogPlace::Run);
    return !complaint.isEmpty();
}

bool ConversionRun::isInUse() const
{
    if (!m_lock || !m_lock->isHeldByOther())
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
    if (m_settings.goesOnFromLeftOver || !StageFile::tellsOfInterruption(projectDir))
        return false;
    const std::optional<RunRecord> record = StageFile::read(projectDir);
    const QString stage =
        record ? QString::fromLatin1(rowOf(record->state.stage).name) : u"its stage file cannot be read"_s;
    logError(u"A run on project %1 was interrupted (%2). No other run was started, and nothing was touched: "
             "\"vantrel-cli recover\" puts the screens back, or completes the interrupted run"_s.arg(
                 projectDir, stage),
             LogPlace::LeftOver);
    return true;
}

/// Writes down what another process needs to know where this one does not come to the run's end.
/// Returns whether the run may begin.
bool ConversionRun::enterConversion(const FoundImageFiles &found)
{
    m_facts = factsOfRun(m_settings.projectDir, found.files);
    m_facts.listIsWhole = found.isWhole();
    m_conversion.setTempFolderIsNew(!m_facts.hadTempFolder);
    m_facts.shapeNames = m_settings.filterNames.values();
    m_facts.shapeNames.sort();
    m_facts.keptRuns = m_settings.keptRuns;
    m_facts.keepsOthers = m_settings.keepsOthers;
    // They lie there until they are put back.
    if (m_facts.keptRuns > 0 || m_facts.keepsOthers)
        m_facts.historyEntry = RunHistory(m_settings.projectDir).nameFor(m_facts.started);
    m_facts.makesFolders = m_settings.folderCreation == FolderCreation::WithParents;
    m_stageFile = std::make_unique<StageFile>(m_settings.projectDir, m_facts);
    if (!m_stageFile->enter(
            {.stage = RunStage::Converting, .unsaved = {}, .endedAt = RunStage::Converting})) {
        logError(u"The run was not started, and nothing was touched: %1"_s.arg(m_stageFile->errorText()),
                 LogPlace::Run);
        return false;
    }
    if (!m_stageFile->isUsable() && QFileInfo(m_settings.projectDir).isDir()) {
        logWarning(
            u"Nobody may write into %1: where this run is interrupted, nothing will tell how far it came"_s
                .arg(m_settings.projectDir),
            LogPlace::Run);
    }
    return true;
}

/// Lets the oldest runs of the history go where the copies of this one would have no room.
void ConversionRun::makeRoom(const FoundImageFiles &found) const
{
    // No project comes near it, so that nobody has to ask for the size of each file.
    constexpr qint64 plenty = qint64(1) << 36;
    const RunHistory history(m_settings.projectDir);
    QStringList entries = history.entries();
    if (entries.isEmpty() || availableBytes(m_settings.projectDir) >= plenty)
        return;
    const qint64 imageBytes =
        std::accumulate(found.files.cbegin(), found.files.cend(), qint64(0),
                        [](qint64 sum, const QFileInfo &file) { return sum + file.size(); });
    while (!entries.isEmpty() && availableBytes(m_settings.projectDir) < bytesForRun(imageBytes)) {
        const QString oldest = entries.takeLast();
        if (const QString failure = history.remove(oldest); !failure.isEmpty()) {
            logError(failure, LogPlace::History);
            return;
        }
        logWarning(u"The disk has no room for this run: %1 was removed from the history"_s.arg(oldest),
                   LogPlace::History);
    }
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

/// Returns false when the run was broken off.
bool ConversionRun::backUpAndCopyBack()
{
    RunArchive archive(m_settings.projectDir, m_facts.historyEntry);
    archive.open();
    beginHistory(archive);
    if (m_facts.keepsOthers && !archive.isKeeping()) {
        logError(u"The run was broken off, and \"scr\" is untouched: other files would have no place"_s,
                 LogPlace::Run);
        return false;
    }
    ScreenExchange exchange(m_settings.projectDir, m_facts, archive, *m_stageFile);
    exchange.discardLastBackup();
    const auto mayGoOn = [this] { return m_stageFile->error() == 0; };
    if (mayGoOn() && !exchange.backUpAndGoOn() && mayGoOn()) {
        logAlert(u"!!! Could not copy all files from \\scr_temp folder to \\scr. Copy them manually !!!"_s,
                 LogPlace::CopyBack);
    }
    if (!mayGoOn())
        return false;
    endHistory(archive);
    m_stageFile->enter({.stage = RunStage::Done, .unsaved = {}, .endedAt = RunStage::Done});
    return true;
}

/// What an entry is told of a run that does not come to its end.
void ConversionRun::beginHistory(const RunArchive &archive)
{
    m_summary.program = m_facts.program;
    m_summary.projectDir = m_settings.projectDir;
    m_summary.started = m_facts.started;
    m_summary.shapeNames = m_facts.shapeNames;
    m_summary.screens = m_facts.screens.size();
    archive.write(m_summary);
}

/// Writes down what the run has done, and lets earlier runs go.
void ConversionRun::endHistory(const RunArchive &archive)
{
    m_summary.ended = QDateTime::currentDateTime();
    m_summary.stages = m_stageFile->entered();
    archive.write(m_summary);
    const QString failure = RunHistory(m_settings.projectDir).keepNewest(m_settings.keptRuns);
    if (!failure.isEmpty())
        logError(failure, LogPlace::History);
}
