// A run that did not come to its end, looked at and put right.
#include "LeftOverRun.h"

#include "CancelledRun.h"
#include "FileIo.h"
#include "FinishRun.h"
#include "ProjectLock.h"
#include "RollBack.h"
#include "RunHistory.h"
#include "StageFile.h"

#include <QFileInfo>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

RecoveryResult failed(const QString &error)
{
    RecoveryResult result;
    result.outcome = RecoveryOutcome::Failed;
    result.error = error;
    return result;
}

RecoveryOutcome outcomeOf(FinishResult result)
{
    switch (result) {
    case FinishResult::Finished:
        return RecoveryOutcome::Done;
    case FinishResult::NotAllCopiedBack:
        return RecoveryOutcome::NotAllCopiedBack;
    case FinishResult::Contradictory:
        return RecoveryOutcome::ChangedFiles;
    case FinishResult::Failed:
        break;
    }
    return RecoveryOutcome::Failed;
}

} // namespace

LeftOverRun::LeftOverRun(const QString &projectDir)
    : m_places(projectDir)
    , m_lock(std::make_unique<ProjectLock>(projectDir))
    , m_kind(look())
{
}

LeftOverRun::~LeftOverRun() = default;

const QString &LeftOverRun::holder() const
{
    return m_lock->holder();
}

LeftOver LeftOverRun::look()
{
    if (m_lock->isHeldByOther())
        return LeftOver::InUse;
    if (!StageFile::exists(m_places.projectDir()))
        return LeftOver::Nothing;
    std::optional<RunRecord> record = StageFile::read(m_places.projectDir());
    if (!record)
        return LeftOver::Unreadable;
    m_record = *std::move(record);
    if (m_record.state.stage == RunStage::Cancelled)
        return LeftOver::Cancelled;
    const bool isUndoing =
        m_record.state.stage >= RunStage::SettingAside && m_record.state.endedAt == RunStage::Done;
    return isUndoing ? LeftOver::Undoing : LeftOver::Run;
}

const RecoveryPlan &LeftOverRun::plan()
{
    if (!m_plan)
        m_plan = makeRecoveryPlan(m_places, m_record);
    return *m_plan;
}

RecoveryResult LeftOverRun::putBack()
{
    return closed(rollBack());
}

RecoveryResult LeftOverRun::complete()
{
    if (m_kind == LeftOver::Undoing)
        return putBack();
    switch (m_record.state.stage) {
    case RunStage::Converting:
        return prepareConversion();
    case RunStage::RollingBack:
    case RunStage::RolledBack: {
        RecoveryResult result = rollBack();
        return result.outcome == RecoveryOutcome::Done ? prepareConversion() : result;
    }
    default:
        return closed(finish());
    }
}

RecoveryResult LeftOverRun::putAway()
{
    const QString &projectDir = m_places.projectDir();
    const int keptRuns = m_record.facts.keptRuns;
    const QString obstacle = keptRuns > 0 ? RunHistory(projectDir).obstacle() : QString();
    if (!obstacle.isEmpty())
        return failed(u"\".vantrel.history\" cannot be used: %1"_s.arg(obstacle));
    putCancelledRunAway(projectDir, keptRuns, WithoutHistory::Keep);
    const QString folder = m_places.folder(u"scr_temp"_s);
    return mayExist(folder) ? failed(u"%1 could not be moved"_s.arg(folder)) : closed({});
}

RecoveryResult LeftOverRun::rollBack()
{
    RollBack rollBack(m_places, plan());
    RecoveryResult result;
    result.changedFiles = rollBack.changedScreens();
    if (!result.changedFiles.isEmpty()) {
        result.outcome = RecoveryOutcome::ChangedFiles;
        return result;
    }
    if (const QString error = rollBack.perform(); !error.isEmpty())
        return failed(error);
    result.restoredScreens = rollBack.restoredScreens();
    return result;
}

/// A half-written copy would be taken for one that is there already.
RecoveryResult LeftOverRun::prepareConversion()
{
    if (const QString error = restoreTempFolder(m_places, m_record.facts); !error.isEmpty())
        return failed(error);
    RecoveryResult result;
    result.outcome = RecoveryOutcome::ConvertAgain;
    return result;
}

RecoveryResult LeftOverRun::finish()
{
    RecoveryResult result;
    if (!hasConvertedScreens()) {
        result.outcome = RecoveryOutcome::NothingConverted;
        return result;
    }
    FinishRun finishRun(m_places, plan());
    result.outcome = outcomeOf(finishRun.perform());
    result.changedFiles = finishRun.contradictoryFiles();
    result.error = finishRun.error();
    if (result.outcome == RecoveryOutcome::Done)
        result.unconverted = screensNotInPlace();
    return result;
}

/// Once they are being copied back, all of them may be in "scr" already.
bool LeftOverRun::hasConvertedScreens()
{
    return m_record.state.stage >= RunStage::CopyingBack || plan().record.facts.screens.isEmpty() ||
           QFileInfo::exists(m_places.folder(u"scr_temp"_s));
}

QStringList LeftOverRun::screensNotInPlace()
{
    const QStringList &screens = plan().record.facts.screens;
    QStringList missing;
    std::copy_if(screens.cbegin(), screens.cend(), std::back_inserter(missing),
                 [this](const QString &screen) { return !QFileInfo::exists(m_places.inPlace(screen)); });
    return missing;
}

RecoveryResult LeftOverRun::closed(RecoveryResult result) const
{
    if (result.outcome != RecoveryOutcome::Done)
        return result;
    if (const QString error = forget(); !error.isEmpty()) {
        result.outcome = RecoveryOutcome::Failed;
        result.error = error;
    }
    return result;
}

QString LeftOverRun::forget() const
{
    StageFile file(m_places.projectDir(), m_record.facts);
    if (file.remove())
        return {};
    return u"%1 could not be removed: %2"_s.arg(StageFile::path(m_places.projectDir()),
                                                qt_error_string(file.error()));
}
