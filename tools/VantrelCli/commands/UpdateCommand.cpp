// The command that replaces placed objects by their current shapes.
#include "UpdateCommand.h"

#include "FindingCode.h"
#include "HiddenIcons.h"
#include "Interruption.h"
#include "LeftOverFinding.h"
#include "LoggedErrors.h"
#include "Presenter.h"
#include "ProjectLock.h"
#include "ProjectPath.h"
#include "ProjectSurvey.h"
#include "ScratchProject.h"
#include "ScreenPlaces.h"
#include "ShapeNames.h"
#include "ShownDiffs.h"
#include "StopSignals.h"
#include "UpdateRun.h"
#include "UsableShapes.h"
#include "WrongUsage.h"
#include "updUtils.h"

#include <QElapsedTimer>
#include <QFileInfo>

#include <algorithm>
#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

/// A run that was refused has not even a name for its change log.
bool hasBegun(const RunResult &result)
{
    return !result.changeLogPath.isEmpty();
}

/// Whether there is nothing to run over.
bool hasNoProject(const QList<Finding> &obstacles)
{
    return std::any_of(obstacles.cbegin(), obstacles.cend(),
                       [](const Finding &obstacle) { return obstacle.kind == FindingKind::FolderMissing; });
}

/// Whether objects may refer to more shapes than those that were read.
bool hidesNames(const Finding &finding)
{
    return finding.kind == FindingKind::FolderUnreadable || finding.kind == FindingKind::ScreenUnreadable;
}

QString complaintAbout(const QString &name, const ShapeNames &known)
{
    const QString nearest = known.nearestTo(name);
    return u"no object refers to the shape \"%1\"%2"_s.arg(
        name, nearest.isEmpty() ? u" (\"vantrel-cli shapes\" shows the names)"_s
                                : u", did you mean \"%1\"?"_s.arg(nearest));
}

/// Whether what was found is put back by a run that keeps others.
bool staysInPlace(const Finding &finding)
{
    constexpr std::array kinds{FindingKind::HiddenFile, FindingKind::LeftOverFile, FindingKind::OtherFile,
                               FindingKind::ScreenUnreadable, FindingKind::ScreenInvalid};
    return std::find(kinds.begin(), kinds.end(), finding.kind) != kinds.end();
}

class UpdateCommand final
{
public:
    UpdateCommand(const UpdateOptions &options, Presenter &presenter)
        : m_options(options)
        , m_presenter(presenter)
    {
        m_timer.start();
    }

    ExitCode execute();

private:
    std::optional<ExitCode> refuseOrPrepare();
    QList<Finding> keepOthersAway();
    QList<Finding> findOtherBesideDryRun() const;
    ExitCode refuseBesideAnotherRun(const QList<Finding> &findings);
    void tellObstacles(const QList<Finding> &obstacles);
    void requireKnownNames() const;
    void chooseShapes();
    ExitCode changeProject();
    ExitCode tryOnStandIn();
    RunResult convert(const QString &projectDir, const QString &scratchRoot);
    void showChanges(const ScratchProject &standIn, ScreenDiffs &diffs);
    QList<LostScreen> lostScreens(const RunResult &result, const QString &root) const;
    CommandEnd describeEnd(const RunResult &result, const QString &root) const;
    ExitCode exitCodeOfRun(const RunResult &result, const QList<LostScreen> &lost) const;
    ExitCode endWith(ExitCode code, const QString &message = {});
    ExitCode finish(const CommandEnd &end);

    const UpdateOptions &m_options;
    Presenter &m_presenter;
    QElapsedTimer m_timer;
    StopSignals m_stopSignals;
    std::unique_ptr<ProjectLock> m_lock; ///< null for a dry run, which writes nothing
    ProjectSurvey m_survey;
    QSet<QString> m_chosenShapes;        ///< by the names that objects refer to
    ExitCode m_refusal = ExitCode::Done; ///< of a run, which a dry run does not share
    bool m_hasLoggedErrors = false;
};

ExitCode UpdateCommand::execute()
{
    try {
        const InterruptionScope scope([this] { return m_stopSignals.received() != 0; });
        if (const std::optional<ExitCode> refused = refuseOrPrepare())
            return *refused;
        if (m_options.dryRun)
            return tryOnStandIn();
    } catch (const WorkInterrupted &) {
        return endWith(stoppedBy(m_stopSignals.received()), stoppedUnchanged);
    }
    return changeProject();
}

/// Reads the project and tells what should be known before a run. Returns how the command ends
/// where there is none.
std::optional<ExitCode> UpdateCommand::refuseOrPrepare()
{
    // Before anything is read: another run makes and moves folders.
    if (const QList<Finding> inUse = keepOthersAway(); !inUse.isEmpty())
        return refuseBesideAnotherRun(inUse);
    const QList<Finding> leftOver = findLeftOverRun(m_options.projectDir);
    if (!leftOver.isEmpty() && !m_options.dryRun)
        return refuseBesideAnotherRun(leftOver);
    m_survey = surveyProject(m_options.projectDir, m_options.makeFolders);
    if (const QList<Finding> inUse = findOtherBesideDryRun(); !inUse.isEmpty())
        return refuseBesideAnotherRun(inUse);
    requireKnownNames();
    chooseShapes();
    QList<Finding> findings = m_survey.findings + findHiddenIcons(m_options.projectDir, m_chosenShapes);
    if (m_options.keepOthers)
        findings.removeIf(staysInPlace);
    else if (m_options.keptRuns == 0)
        findings.removeIf(
            [](const Finding &finding) { return finding.kind == FindingKind::HistoryUnusable; });
    const QList<Finding> obstacles = leftOver + findingsOf(findings, Severity::Obstacle);
    if (!hasNoProject(obstacles))
        m_presenter.showHints(findingsOf(findings, Severity::Hint));
    tellObstacles(obstacles);
    if (m_refusal != ExitCode::Done && (!m_options.dryRun || hasNoProject(obstacles)))
        return endWith(m_refusal);
    endIfInterrupted();
    return std::nullopt;
}

/// Takes the project's lock, which is held to the end; a dry run only looks at it. Returns who
/// has it already.
QList<Finding> UpdateCommand::keepOthersAway()
{
    if (m_options.dryRun)
        return findRunUnderWay(m_options.projectDir);
    m_lock = std::make_unique<ProjectLock>(m_options.projectDir);
    if (!m_lock->isHeldByOther())
        return {};
    return {runUnderWay(m_lock->holder())};
}

/// Who has begun a run while a dry run read the project: what it has read is not to last.
QList<Finding> UpdateCommand::findOtherBesideDryRun() const
{
    return m_options.dryRun ? findRunUnderWay(m_options.projectDir) : QList<Finding>();
}

/// Refuses whatever was asked for: a run would replace the backup, which may hold the screens.
ExitCode UpdateCommand::refuseBesideAnotherRun(const QList<Finding> &findings)
{
    m_presenter.showObstacles(findings);
    return endWith(exitCodeOf(findings));
}

/// Tells what keeps a run from starting, and takes down with which code it is refused.
void UpdateCommand::tellObstacles(const QList<Finding> &obstacles)
{
    const bool isLeftOver = exitCodeOf(obstacles) == ExitCode::FilesMissing;
    const bool isForced = m_options.force && !isLeftOver && !hasNoProject(obstacles);
    if (obstacles.isEmpty() || isForced) {
        m_presenter.showObstacles(obstacles);
        return;
    }
    m_refusal = exitCodeOf(obstacles);
    if (hasNoProject(obstacles))
        m_presenter.showRefusal(obstacles, Refusal::NoProject);
    else if (isLeftOver)
        m_presenter.showRefusal(obstacles, Refusal::ForeseenOverLeftOver);
    else
        m_presenter.showRefusal(obstacles,
                                m_options.dryRun ? Refusal::ForeseenUnlessForced : Refusal::UnlessForced);
}

ExitCode UpdateCommand::changeProject()
{
    const RunResult result = convert(m_options.projectDir, {});
    if (!hasBegun(result)) {
        const int signal = m_stopSignals.received();
        return endWith(signal == 0 ? ExitCode::Refused : stoppedBy(signal));
    }
    CommandEnd end = describeEnd(result, {});
    end.changeLogPath = isChangeLog(result.changeLogPath) ? result.changeLogPath : QString();
    if (!findLeftOverRun(m_options.projectDir).isEmpty()) {
        end.exitCode = ExitCode::FilesMissing;
        end.message =
            u"The run did not come to its end; see \"%1\"."_s.arg(recoverCommandFor(m_options.projectDir));
    } else if (!result.isCompleted) {
        end.message =
            u"Stopped. \"scr\" is untouched; \"scr_temp\" keeps the files converted so far, and the next "
            "run puts it into the history."_s;
    }
    return finish(end);
}

ExitCode UpdateCommand::tryOnStandIn()
{
    const ScratchProject standIn(m_options.projectDir);
    if (!standIn.isReady()) {
        m_presenter.showFinding({FindingKind::ScratchFailed, standIn.root(), standIn.error(),
                                 u"name another folder for temporary files in TMPDIR, or make room"_s});
        return endWith(ExitCode::Refused);
    }
    endIfInterrupted();
    const RunResult result = convert(standIn.dir(), standIn.root());
    CommandEnd end = describeEnd(result, standIn.root());
    if (!result.isCompleted) {
        end.message = stoppedUnchanged;
        return finish(end);
    }
    ScreenDiffs diffs;
    showChanges(standIn, diffs);
    end.counts += countsOf(diffs);
    if (m_refusal != ExitCode::Done) {
        // What it would lose is told already, and is not lost.
        end.lostScreens.clear();
        end.exitCode = m_refusal;
    } else if (m_options.failOnChanges && diffs.changedFiles() > 0) {
        end.exitCode = weightier(end.exitCode, ExitCode::WouldChange);
        end.message = u"A run would change %1; to have it do so: %2"_s.arg(
            diffs.changedFiles() == 1 ? u"1 screen"_s : u"%1 screens"_s.arg(diffs.changedFiles()),
            m_options.realCommand);
    }
    if (const QList<Finding> inUse = findOtherBesideDryRun(); !inUse.isEmpty()) {
        m_presenter.showObstacles(inUse);
        end.exitCode = ExitCode::Refused;
    }
    return finish(end);
}

/// A run for a name that nothing refers to would replace nothing, and still set the last backup aside.
void UpdateCommand::requireKnownNames() const
{
    const QList<Finding> &findings = m_survey.findings;
    if (m_survey.imageFiles.isEmpty() || std::any_of(findings.cbegin(), findings.cend(), hidesNames))
        return;
    const ShapeNames known(m_survey.shapeNames);
    const QStringList unknown = known.unmatched(m_options.shapeNames);
    if (unknown.isEmpty())
        return;
    constexpr qsizetype mostComplaints = 10;
    QStringList complaints;
    for (const QString &name : unknown.first(std::min(unknown.size(), mostComplaints)))
        complaints.append(complaintAbout(name, known));
    if (const qsizetype more = unknown.size() - mostComplaints; more > 0)
        complaints.append(u"the same holds for %1 more of the names that were given"_s.arg(more));
    throw WrongUsage{complaints};
}

/// Tells which shapes are left out, each by its name.
void UpdateCommand::chooseShapes()
{
    m_chosenShapes = m_options.allShapes ? m_survey.shapeNames
                                         : ShapeNames(m_survey.shapeNames).matching(m_options.shapeNames);
    if (!m_options.usableShapes)
        return;
    const UsableShapes shapes = usableShapesAmong(m_options.projectDir, m_survey.shapeNames - m_chosenShapes);
    m_chosenShapes.unite(shapes.names);
    for (const Finding &finding : shapes.leftOut)
        m_presenter.showHints({finding});
}

RunResult UpdateCommand::convert(const QString &projectDir, const QString &scratchRoot)
{
    // All that were given: an object may come to refer to one of them before its screen is converted.
    QSet<QString> shapeNames(m_options.shapeNames.cbegin(), m_options.shapeNames.cend());
    shapeNames.unite(m_chosenShapes);
    UpdateRun run({.projectDir = projectDir,
                   .shapeNames = shapeNames,
                   .makeFolders = m_options.makeFolders,
                   .keptRuns = m_options.keptRuns,
                   .keepsOthers = m_options.keepOthers,
                   .scratchRoot = scratchRoot,
                   .isLocked = scratchRoot.isEmpty()},
                  m_presenter);
    QObject::connect(&m_stopSignals, &StopSignals::sigStopWanted, &run, &UpdateRun::stop);
    const LoggedErrors errors;
    RunResult result = run.execute();
    m_hasLoggedErrors = errors.hasAny();
    return result;
}

void UpdateCommand::showChanges(const ScratchProject &standIn, ScreenDiffs &diffs)
{
    QStringList screens = m_survey.imageFiles;
    const QSet<QString> known(screens.cbegin(), screens.cend());
    QList<QFileInfo> convertedFiles;
    updUtils::findImageFiles(standIn.dir() + "/scr"_L1, convertedFiles);
    for (const QFileInfo &file : std::as_const(convertedFiles)) {
        if (const QString path = file.filePath().sliced(standIn.root().size()); !known.contains(path))
            screens.append(path);
    }
    for (const QString &screen : std::as_const(screens)) {
        const QString name = relativeTo(m_options.projectDir, screen);
        show(diffs.compare(name, {screen, name}, {standIn.root() + screen, name}), m_presenter);
    }
}

/// Image files from before the run that are not in "scr", whether they were reported or not.
QList<LostScreen> UpdateCommand::lostScreens(const RunResult &result, const QString &root) const
{
    if (!result.isCompleted)
        return {};
    const ScreenPlaces places(root + m_options.projectDir);
    QList<LostScreen> lost;
    for (const QString &file : m_survey.imageFiles) {
        if (QFileInfo::exists(root + file))
            continue;
        const QString path = relativeTo(m_options.projectDir, file);
        const QString backup = places.backup(path.sliced(QStringView(u"scr/").size()));
        lost.append({path, QFileInfo::exists(backup) ? relativeTo(places.projectDir(), backup) : QString()});
    }
    return lost;
}

CommandEnd UpdateCommand::describeEnd(const RunResult &result, const QString &root) const
{
    CommandEnd end;
    end.counts = {{Count::Files, result.fileCount},
                  {Count::Replaced, result.replaced},
                  {Count::NotReplaced, result.notReplaced},
                  {Count::Errors, result.errors}};
    end.lostScreens = lostScreens(result, root);
    end.exitCode = exitCodeOfRun(result, end.lostScreens);
    return end;
}

ExitCode UpdateCommand::exitCodeOfRun(const RunResult &result, const QList<LostScreen> &lost) const
{
    if (!result.isCompleted && m_stopSignals.received() != 0)
        return stoppedBy(m_stopSignals.received());
    if (!result.isCompleted || !result.isCopiedBack || !lost.isEmpty())
        return ExitCode::FilesMissing;
    return result.errors > 0 || m_hasLoggedErrors ? ExitCode::DoneWithErrors : ExitCode::Done;
}

ExitCode UpdateCommand::endWith(ExitCode code, const QString &message)
{
    CommandEnd end;
    end.command = "update"_L1;
    end.projectDir = m_options.projectDir;
    end.exitCode = code;
    end.message = message;
    end.isDryRun = m_options.dryRun;
    m_presenter.showEnd(end);
    return code;
}

ExitCode UpdateCommand::finish(const CommandEnd &end)
{
    CommandEnd whole = end;
    whole.command = "update"_L1;
    whole.projectDir = m_options.projectDir;
    whole.isDryRun = m_options.dryRun;
    whole.seconds = static_cast<double>(m_timer.elapsed()) / 1000.0;
    m_presenter.showEnd(whole);
    return whole.exitCode;
}

} // namespace

ExitCode runUpdate(const UpdateOptions &options, Presenter &presenter)
{
    return UpdateCommand(options, presenter).execute();
}
