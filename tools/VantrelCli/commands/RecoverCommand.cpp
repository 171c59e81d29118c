// The command that tells what an interrupted run has left, and completes it or takes it back.
#include "RecoverCommand.h"

#include "CancelledRun.h"
#include "FileIo.h"
#include "Interruption.h"
#include "LeftOverFinding.h"
#include "LeftOverRun.h"
#include "LoggedErrors.h"
#include "Presenter.h"
#include "ProjectPath.h"
#include "RecoveryPlan.h"
#include "RollBack.h"
#include "StageFile.h"
#include "StopSignals.h"
#include "UpdateRun.h"

#include <QFileInfo>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// What lies where at a stage, in plain words, and what the two ways out of it do.
struct StageText
{
    RunStage stage;
    QLatin1StringView whole;
    QLatin1StringView rollBack;
    QLatin1StringView finish;
};

constexpr QLatin1StringView nothingToRestore("removes \"scr_temp\"; \"scr\" stays as it is");
constexpr QLatin1StringView
    restoresScreens("copies the screens from \"scr_bak\" to \"scr\" and removes \"scr_temp\"");
constexpr QLatin1StringView convertsAgain("takes the run back, then performs it anew");

constexpr std::array stageTexts{
    StageText{RunStage::Converting, "\"scr\" is untouched"_L1, nothingToRestore,
              "converts all screens again and goes on"_L1},
    StageText{
        RunStage::Discarding,
        "\"scr\" is untouched, and \"scr_temp\" holds all converted screens; the last backup is partly gone"_L1,
        nothingToRestore, "backs up and copies back"_L1},
    StageText{
        RunStage::BackingUp,
        "each screen lies in \"scr\" or in \"scr_bak\", and \"scr_temp\" holds all converted screens"_L1,
        restoresScreens, "backs up the rest and copies back"_L1},
    StageText{RunStage::Removing,
              "\"scr_bak\" holds all screens from before the run, and \"scr_temp\" all converted ones"_L1,
              restoresScreens, "copies back"_L1},
    StageText{
        RunStage::CopyingBack,
        "\"scr_bak\" holds the screens from before the run; \"scr\" and \"scr_temp\" hold the converted ones"_L1,
        restoresScreens, "copies the rest back"_L1},
    StageText{RunStage::Done, "the run is complete"_L1, restoresScreens, "removes what tells of the run"_L1},
    StageText{RunStage::RollingBack, "each screen from before the run lies in \"scr_bak\" or in \"scr\""_L1,
              restoresScreens, convertsAgain},
    StageText{RunStage::RolledBack, "\"scr\" is as it was before the run"_L1, nothingToRestore,
              convertsAgain},
};

const StageText &textOf(RunStage stage)
{
    const auto *const row = std::find_if(stageTexts.begin(), stageTexts.end(),
                                         [stage](const StageText &text) { return text.stage == stage; });
    return row == stageTexts.end() ? stageTexts.back() : *row;
}

ExitCode codeOf(const LoggedErrors &errors)
{
    return errors.hasAny() ? ExitCode::DoneWithErrors : ExitCode::Done;
}

QString screensText(qsizetype count)
{
    return count == 1 ? u"1 screen"_s : u"%1 screens"_s.arg(count);
}

class RecoverCommand final
{
public:
    RecoverCommand(const RecoverOptions &options, Presenter &presenter)
        : m_options(options)
        , m_presenter(presenter)
        , m_places(options.projectDir)
        , m_leftOver(std::make_unique<LeftOverRun>(options.projectDir))
    {
    }

    ExitCode execute();

private:
    ExitCode recover();
    ExitCode endStopped();
    ExitCode findNothing();
    ExitCode recoverRun();
    ExitCode recoverUndoing(const RunRecord &record);
    ExitCode tell(const RecoveryPlan &plan);
    ExitCode rollBack();
    ExitCode finish();
    ExitCode convertAgain();
    bool tellUnconverted(const QStringList &screens);
    ExitCode findCancelled();
    ExitCode undo();
    ExitCode takeBack(const RecoveryPlan &plan);

    ExitCode endRun(const RecoveryPlan &plan, ExitCode code, const QString &message);
    ExitCode endUnfinished(const QString &error);
    ExitCode endFailed(const RecoveryResult &result);
    ExitCode refuse(const QString &message);
    ExitCode refuseUndecided(const RecoveryPlan &plan);
    ExitCode refuseChanged(const QStringList &paths);
    ExitCode endWith(ExitCode code, const QString &message, qsizetype files);
    void tellFact(const QString &path, const QString &text, const QString &advice);

    const RecoverOptions &m_options;
    Presenter &m_presenter;
    StopSignals m_stopSignals;
    ScreenPlaces m_places;
    std::unique_ptr<LeftOverRun> m_leftOver; ///< holds the lock
};

/// What a recovery has done when it is stopped is written down as for one that was killed.
ExitCode RecoverCommand::execute()
{
    const InterruptionScope scope([this] { return m_stopSignals.received() != 0; });
    try {
        return recover();
    } catch (const WorkInterrupted &) {
        return endStopped();
    }
}

ExitCode RecoverCommand::endStopped()
{
    const QString message = m_options.action == RecoverAction::Tell
                                ? QString(stoppedUnchanged)
                                : u"Stopped. No screen is lost; repeat the command."_s;
    return endWith(stoppedBy(m_stopSignals.received()), message, 0);
}

ExitCode RecoverCommand::recover()
{
    if (!QFileInfo(m_options.projectDir).isDir())
        return refuse(u"There is no folder %1."_s.arg(m_options.projectDir));
    switch (m_leftOver->kind()) {
    case LeftOver::InUse:
        return refuse(u"A run is under way: the project is in use by %1."_s.arg(m_leftOver->holder()));
    case LeftOver::Nothing:
        return findNothing();
    case LeftOver::Cancelled:
        return findCancelled();
    case LeftOver::Unreadable:
        return refuse(
            u"\".vantrel.run\" cannot be read or understood. Look which of \"scr\", \"scr_bak\" and "
            "\"scr_temp\" are whole, put them in order, then remove it."_s);
    case LeftOver::Undoing:
        return recoverUndoing(m_leftOver->record());
    case LeftOver::Run:
        break;
    }
    return recoverRun();
}

ExitCode RecoverCommand::findNothing()
{
    if (m_options.action == RecoverAction::Undo)
        return undo();
    // A run that was killed before its first stage has touched nothing, but may have left
    // the beginning of a stage file.
    if (m_options.action != RecoverAction::Tell)
        StageFile::removeUnfinished(m_options.projectDir);
    bool isWhole = true;
    const qsizetype backups = m_places.screensInBackup(isWhole).size();
    if (backups > 0 && m_places.screensInPlace(isWhole).isEmpty() && isWhole) {
        return endWith(
            ExitCode::FilesMissing,
            u"Nothing tells of an interrupted run, but \"scr\" holds no screen, and \"scr_bak\" holds "
            "%1: \"%2 --undo\" copies them back."_s.arg(screensText(backups),
                                                        recoverCommandFor(m_options.projectDir)),
            0);
    }
    return endWith(ExitCode::Done, u"No run was interrupted; there is nothing to recover."_s, 0);
}

ExitCode RecoverCommand::findCancelled()
{
    if (m_options.action == RecoverAction::Undo)
        return undo();
    return endWith(ExitCode::Done,
                   u"The last run was cancelled: \"scr\" is untouched. There is nothing to recover; the next "
                   "run puts \"scr_temp\" into the history."_s,
                   0);
}

ExitCode RecoverCommand::recoverRun()
{
    const RecoveryPlan &plan = m_leftOver->plan();
    if (!plan.isDecidable())
        return refuseUndecided(plan);
    const bool isCompleted = plan.record.state.stage == RunStage::Done;
    switch (m_options.action) {
    case RecoverAction::RollBack:
        return isCompleted ? undo() : rollBack();
    case RecoverAction::Finish:
        return finish();
    case RecoverAction::Undo:
        return isCompleted ? undo() : refuse(u"The last run was interrupted; --roll-back takes it back."_s);
    case RecoverAction::Tell:
        break;
    }
    return tell(plan);
}

ExitCode RecoverCommand::recoverUndoing(const RunRecord &record)
{
    const RecoveryPlan plan = makeRecoveryPlan(m_places, record);
    if (!plan.isDecidable())
        return refuseUndecided(plan);
    if (m_options.action == RecoverAction::Undo || m_options.action == RecoverAction::RollBack)
        return takeBack(plan);
    for (const Finding &finding : findLeftOverRun(m_options.projectDir))
        m_presenter.showFinding(finding);
    const QString message = u"The undoing of a run was interrupted; --undo goes on with it."_s;
    return m_options.action == RecoverAction::Tell
               ? endWith(ExitCode::FilesMissing, message, plan.record.facts.screens.size())
               : refuse(message);
}

void RecoverCommand::tellFact(const QString &path, const QString &text, const QString &advice)
{
    m_presenter.showFinding({FindingKind::Recovery, path, text, advice});
}

ExitCode RecoverCommand::tell(const RecoveryPlan &plan)
{
    const StageText &text = textOf(plan.record.state.stage);
    const QString command = recoverCommandFor(m_options.projectDir);
    for (const Finding &finding : findLeftOverRun(m_options.projectDir))
        m_presenter.showFinding(finding);
    tellFact(u"scr"_s,
             u"%1 from before the run whole here; %2"_s.arg(screensText(plan.inPlace.size()), text.whole),
             u"\"%1 --roll-back\" %2"_s.arg(command, text.rollBack));
    tellFact(u"scr_bak"_s, u"%1 from before the run whole here only"_s.arg(screensText(plan.inBackup.size())),
             u"\"%1 --finish\" %2"_s.arg(command, text.finish));
    return endWith(ExitCode::FilesMissing, u"Nothing was changed; --roll-back or --finish does it."_s,
                   plan.record.facts.screens.size());
}

ExitCode RecoverCommand::rollBack()
{
    const RecoveryResult result = m_leftOver->putBack();
    if (result.outcome != RecoveryOutcome::Done)
        return endFailed(result);
    return endWith(
        ExitCode::Done,
        u"The run was taken back: \"scr\" is as it was before it. Copied from \"scr_bak\": %1."_s.arg(
            screensText(result.restoredScreens)),
        m_leftOver->plan().record.facts.screens.size());
}

ExitCode RecoverCommand::finish()
{
    auto errors = std::make_unique<LoggedErrors>(&m_presenter);
    const RecoveryResult result = m_leftOver->complete();
    if (result.outcome == RecoveryOutcome::ConvertAgain) {
        errors.reset(); // the run shows its log itself
        return convertAgain();
    }
    const bool isUnconverted = tellUnconverted(result.unconverted);
    if (result.outcome == RecoveryOutcome::NotAllCopiedBack && !errors->hasAny()) {
        return endRun(m_leftOver->plan(), ExitCode::FilesMissing,
                      u"Not all files could be copied from \"scr_temp\" to \"scr\"; copy them by hand."_s);
    }
    if (result.outcome != RecoveryOutcome::Done)
        return endFailed(result);
    return endWith(
        isUnconverted ? ExitCode::FilesMissing : codeOf(*errors),
        u"The run is complete: \"scr\" holds the converted screens, \"scr_bak\" those from before it."_s,
        m_leftOver->plan().record.facts.screens.size());
}

ExitCode RecoverCommand::convertAgain()
{
    // Its lock is held until the run has ended.
    const RunFacts &facts = m_leftOver->plan().record.facts;
    UpdateRun run({.projectDir = m_options.projectDir,
                   .shapeNames = QSet<QString>(facts.shapeNames.cbegin(), facts.shapeNames.cend()),
                   .makeFolders = facts.makesFolders,
                   .keptRuns = facts.keptRuns,
                   .keepsOthers = facts.keepsOthers,
                   .goesOnFromLeftOver = true,
                   .scratchRoot = {},
                   .isLocked = true},
                  m_presenter);
    QObject::connect(&m_stopSignals, &StopSignals::sigStopWanted, &run, &UpdateRun::stop);
    const LoggedErrors errors;
    const RunResult result = run.execute();
    if (!result.isCompleted && m_stopSignals.received() != 0)
        return endWith(stoppedBy(m_stopSignals.received()), u"Stopped. \"scr\" is untouched."_s,
                       result.fileCount);
    if (!result.isCompleted || !result.isCopiedBack)
        return endWith(ExitCode::FilesMissing, u"The run could not be completed."_s, result.fileCount);
    if (tellUnconverted(m_leftOver->unconverted())) {
        return endWith(ExitCode::FilesMissing,
                       u"The run is complete, but for screens that it could not convert."_s,
                       result.fileCount);
    }
    return endWith(result.errors > 0 ? ExitCode::DoneWithErrors : codeOf(errors),
                   u"The screens were converted again, and the run is complete."_s, result.fileCount);
}

/// Tells which screens a finished run has not brought to "scr", and returns whether there are any.
bool RecoverCommand::tellUnconverted(const QStringList &screens)
{
    for (const QString &screen : screens) {
        tellFact("scr/"_L1 + screen, u"it is not there: the run could not convert it, or its copy is gone"_s,
                 u"its version from before the run lies in \"scr_bak\""_s);
    }
    return !screens.isEmpty();
}

ExitCode RecoverCommand::undo()
{
    bool isWhole = true;
    const RunRecord record = recordOfCompletedRun(m_places, isWhole);
    if (!isWhole)
        return refuse(
            u"Refused: \"scr\" or \"scr_bak\" cannot be read whole, or holds a name that is no text."_s);
    if (record.facts.screens.isEmpty() && record.facts.historyEntry.isEmpty()) {
        return refuse(
            u"Refused: there is nothing to undo, neither a \"scr_bak\" with screens in it nor a run in the "
            "history."_s);
    }
    const RecoveryPlan plan = makeRecoveryPlan(m_places, record);
    if (!plan.isDecidable())
        return refuseUndecided(plan);
    putCancelledRunAway(m_options.projectDir, m_leftOver->record().facts.keptRuns, WithoutHistory::Keep);
    return takeBack(plan);
}

ExitCode RecoverCommand::takeBack(const RecoveryPlan &plan)
{
    RollBack rollBack(m_places, plan);
    const QStringList edited = rollBack.editedScreens();
    if (const QString error = rollBack.perform(); !error.isEmpty())
        return endUnfinished(error);
    for (const QString &screen : edited) {
        tellFact(relativeTo(m_options.projectDir, screen),
                 u"it was changed after the run, and stays as it is"_s,
                 u"its version from before the run is kept in the history, or in \"scr_bak\""_s);
    }
    const QString entry = rollBack.setAsideEntry();
    const QString kept = entry.isEmpty() ? QString() : u" What it had made is kept as %1."_s.arg(entry);
    return endRun(plan, edited.isEmpty() ? ExitCode::Done : ExitCode::DoneWithFindings,
                  u"The last run was undone: \"scr\" is as it was before it.%1"_s.arg(kept));
}

ExitCode RecoverCommand::refuseUndecided(const RecoveryPlan &plan)
{
    const auto show = [this](const QString &path, const QString &text, const QString &advice) {
        m_presenter.showFinding({FindingKind::RecoveryUndecided, path, text, advice});
    };
    for (const QString &screen : plan.missing) {
        show("scr/"_L1 + screen,
             u"it lies neither in \"scr\" nor in \"scr_bak\", where the run had left it"_s, u"put it back"_s);
    }
    for (const QString &screen : plan.contradictory) {
        show("scr/"_L1 + screen, u"its versions in \"scr\" and \"scr_bak\" differ, but should be one"_s,
             u"move the wrong one away"_s);
    }
    for (const QString &screen : plan.linked) {
        show("scr/"_L1 + screen, u"over a link, it is the same file in \"scr\" and in \"scr_bak\""_s,
             u"put a copy in place of the link"_s);
    }
    for (const QString &folder : plan.unreadable)
        show(relativeTo(m_options.projectDir, folder), u"it cannot be listed"_s, u"make it readable"_s);
    for (const QString &file : plan.unnamable)
        show(relativeTo(m_options.projectDir, file), u"its name is not valid UTF-8"_s, u"rename it"_s);
    return refuse(u"Refused, nothing was touched: what is right cannot be decided."_s);
}

ExitCode RecoverCommand::refuseChanged(const QStringList &paths)
{
    for (const QString &path : paths) {
        m_presenter.showFinding({FindingKind::RecoveryUndecided, relativeTo(m_options.projectDir, path),
                                 u"it holds neither what the run had found nor what it had made"_s,
                                 u"move it away"_s});
    }
    return refuse(u"Refused, nothing was touched: files were changed since the run ended."_s);
}

/// Nothing is under way any more.
ExitCode RecoverCommand::endRun(const RecoveryPlan &plan, ExitCode code, const QString &message)
{
    if (const QString error = m_leftOver->forget(); !error.isEmpty())
        return endUnfinished(error);
    return endWith(code, message, plan.record.facts.screens.size());
}

/// For every outcome but those in which there is nothing left to be done here.
ExitCode RecoverCommand::endFailed(const RecoveryResult &result)
{
    switch (result.outcome) {
    case RecoveryOutcome::ChangedFiles:
        return refuseChanged(result.changedFiles);
    case RecoveryOutcome::NothingConverted:
        return refuse(
            u"Refused, nothing was touched: \"scr_temp\" is gone, and the converted screens with it. "
            "--roll-back takes the run back."_s);
    case RecoveryOutcome::NotAllCopiedBack:
        return endUnfinished(u"Not all files could be copied from \"scr_temp\" to \"scr\""_s);
    default:
        return endUnfinished(result.error);
    }
}

ExitCode RecoverCommand::endUnfinished(const QString &error)
{
    return endWith(ExitCode::FilesMissing, u"%1. No screen is lost; repeat the command."_s.arg(error), 0);
}

ExitCode RecoverCommand::refuse(const QString &message)
{
    return endWith(ExitCode::Refused, message, 0);
}

ExitCode RecoverCommand::endWith(ExitCode code, const QString &message, qsizetype files)
{
    CommandEnd end;
    end.command = "recover"_L1;
    end.projectDir = m_options.projectDir;
    end.exitCode = code;
    end.counts = {{Count::Files, files}};
    end.message = message;
    m_presenter.showEnd(end);
    return code;
}

} // namespace

ExitCode runRecover(const RecoverOptions &options, Presenter &presenter)
{
    return RecoverCommand(options, presenter).execute();
}
