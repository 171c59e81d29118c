// The words for what was found of an interrupted run, and for what was done about it.
#include "LeftOverTexts.h"

#include "ProjectPath.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

/// Where a run ended, what lies where then, and what the two ways out of it do.
struct StageText
{
    RunStage stage;
    const char *ended;
    const char *putBack;
    const char *complete;
};

constexpr const char *tidiesUp =
    QT_TRANSLATE_NOOP("Story", "Put Back removes \"scr_temp\"; \"scr\" stays as it is.");
constexpr const char *bringsBack = QT_TRANSLATE_NOOP(
    "Story", "Put Back copies the screens from \"scr_bak\" back to \"scr\" and removes \"scr_temp\".");
constexpr const char *runsAnew =
    QT_TRANSLATE_NOOP("Story", "Complete takes the run back, then performs it anew.");

constexpr std::array runTexts{
    StageText{RunStage::Converting,
              QT_TRANSLATE_NOOP("Story", "It ended while it was converting: \"scr\" is untouched."), tidiesUp,
              QT_TRANSLATE_NOOP("Story", "Complete converts all screens again and goes on.")},
    StageText{RunStage::Discarding,
              QT_TRANSLATE_NOOP("Story",
                                "It ended while it was removing the last backup: \"scr\" is untouched, "
                                "and \"scr_temp\" holds all converted screens."),
              tidiesUp, QT_TRANSLATE_NOOP("Story", "Complete backs up and copies back.")},
    StageText{RunStage::BackingUp,
              QT_TRANSLATE_NOOP("Story",
                                "It ended while it was backing up: each screen lies in \"scr\" or in "
                                "\"scr_bak\", and \"scr_temp\" holds all converted screens."),
              bringsBack, QT_TRANSLATE_NOOP("Story", "Complete backs up the rest and copies back.")},
    StageText{RunStage::Removing,
              QT_TRANSLATE_NOOP("Story",
                                "It ended while it was removing the screens that are backed up: "
                                "\"scr_bak\" holds all screens from before the run, and \"scr_temp\" all "
                                "converted ones."),
              bringsBack, QT_TRANSLATE_NOOP("Story", "Complete copies back.")},
    StageText{RunStage::CopyingBack,
              QT_TRANSLATE_NOOP("Story",
                                "It ended while it was copying back: \"scr_bak\" holds the screens from "
                                "before the run, \"scr\" and \"scr_temp\" hold the converted ones."),
              bringsBack, QT_TRANSLATE_NOOP("Story", "Complete copies the rest back.")},
    StageText{RunStage::RollingBack,
              QT_TRANSLATE_NOOP("Story", "It was being taken back: each screen from before the run lies in "
                                         "\"scr_bak\" or in \"scr\"."),
              bringsBack, runsAnew},
    StageText{RunStage::RolledBack,
              QT_TRANSLATE_NOOP("Story",
                                "It was taken back, but for what is left of it: \"scr\" is as it was "
                                "before the run."),
              tidiesUp, runsAnew},
};

const StageText &textOf(RunStage stage)
{
    const auto *const row = std::find_if(runTexts.begin(), runTexts.end(),
                                         [stage](const StageText &text) { return text.stage == stage; });
    return row == runTexts.end() ? runTexts.back() : *row;
}

/// Files of which nobody can tell what is right, and what the user can do about them.
struct UndecidedText
{
    QStringList RecoveryPlan::*files;
    const char *reason;
};

constexpr std::array undecidedTexts{
    UndecidedText{&RecoveryPlan::missing,
                  QT_TRANSLATE_NOOP("Story",
                                    "These lie neither in \"scr\" nor in \"scr_bak\", where the run had "
                                    "left them; put them back:")},
    UndecidedText{&RecoveryPlan::contradictory,
                  QT_TRANSLATE_NOOP("Story",
                                    "The versions of these in \"scr\" and \"scr_bak\" differ, but should "
                                    "be one; move the wrong ones away:")},
    UndecidedText{&RecoveryPlan::linked,
                  QT_TRANSLATE_NOOP("Story",
                                    "Over a link, these are the same files in \"scr\" and in \"scr_bak\"; "
                                    "put copies in place of the links:")},
    UndecidedText{&RecoveryPlan::unreadable,
                  QT_TRANSLATE_NOOP("Story", "These folders cannot be listed; make them readable:")},
    UndecidedText{&RecoveryPlan::unnamable,
                  QT_TRANSLATE_NOOP("Story", "The names of these are not valid UTF-8; rename them:")},
};

QStringList namesIn(const QString &projectDir, const QStringList &paths)
{
    QStringList names;
    std::transform(paths.cbegin(), paths.cend(), std::back_inserter(names),
                   [&](const QString &path) { return relativeTo(projectDir, path); });
    return names;
}

bool isDecidable(const RecoveryAnswer &answer)
{
    return answer.kind != LeftOver::Unreadable && answer.plan.isDecidable();
}

void tellBegin(Story &story, const QString &projectDir, const RecoveryAnswer &answer)
{
    story.say(answer.kind == LeftOver::Undoing
                  ? QT_TRANSLATE_NOOP("Story", "The undoing of a run over %1 was interrupted.")
                  : QT_TRANSLATE_NOOP("Story", "A run over %1 was interrupted."),
              {projectDir});
}

void tellUndecided(Story &story, const QString &projectDir, const RecoveryPlan &plan)
{
    story.say(QT_TRANSLATE_NOOP("Story",
                                "What is right cannot be decided, so nothing is touched. Put these files "
                                "in order, then press Start Update again."));
    for (const UndecidedText &text : undecidedTexts) {
        const QStringList &files = plan.*text.files;
        if (files.isEmpty())
            continue;
        story.beginParagraph();
        story.say(text.reason);
        story.list(namesIn(projectDir, files));
    }
}

void tellUnreadable(Story &story)
{
    story.say(QT_TRANSLATE_NOOP("Story",
                                "How far it came is not known: the file \".vantrel.run\" in the project "
                                "cannot be read or understood."));
    story.beginParagraph();
    story.say(QT_TRANSLATE_NOOP("Story",
                                "Make a copy of the project. Then look which of \"scr\", \"scr_bak\" and "
                                "\"scr_temp\" are whole, put them in order, and remove that file."));
}

void tellPlan(Story &story, const RecoveryAnswer &answer)
{
    const RecoveryPlan &plan = answer.plan;
    const StageText &text = textOf(plan.record.state.stage);
    story.say(QT_TRANSLATE_NOOP("Story", "It was begun by %1 at %2."),
              {plan.record.facts.program, plan.record.facts.started.toString(u"yyyy-MM-dd hh:mm:ss")});
    story.beginParagraph();
    story.say(QT_TRANSLATE_NOOP(
                  "Story", "Screens from before the run that lie in \"scr\": %1, in \"scr_bak\" only: %2."),
              {QString::number(plan.inPlace.size()), QString::number(plan.inBackup.size())});
    story.beginParagraph();
    if (answer.kind == LeftOver::Undoing) {
        story.say(QT_TRANSLATE_NOOP("Story",
                                    "Put Back goes on with it: \"scr\" gets the screens from before the run, "
                                    "and the history keeps those that it had made."));
    } else {
        story.say(text.putBack);
        story.beginLine();
        story.say(text.complete);
    }
    story.beginLine();
    story.say(QT_TRANSLATE_NOOP("Story", "Cancel changes nothing."));
}

// --- Ends ---

struct EndText
{
    RecoveryOutcome outcome;
    const char *text;
};

/// What else is to be said depends on files or on the disk.
constexpr std::array endTexts{
    EndText{RecoveryOutcome::ChangedFiles,
            QT_TRANSLATE_NOOP("Story",
                              "Nothing was touched: files were changed since the run ended. They hold "
                              "neither what the run had found nor what it had made. Move them away, then "
                              "press Start Update again:")},
    EndText{RecoveryOutcome::NothingConverted,
            QT_TRANSLATE_NOOP("Story",
                              "Nothing was touched: \"scr_temp\" is gone, and the converted screens with "
                              "it. Press Start Update again and choose Put Back.")},
    EndText{RecoveryOutcome::NotAllCopiedBack,
            QT_TRANSLATE_NOOP("Story",
                              "Not all converted screens could be copied from \"scr_temp\" to \"scr\"; the "
                              "log says why. No screen is lost. Put right what is in the way, then press "
                              "Start Update again.")},
    EndText{RecoveryOutcome::Failed,
            QT_TRANSLATE_NOOP("Story",
                              "No screen is lost. Put right what is in the way, then press Start Update "
                              "again.")},
};

void tellPutBack(Story &story, const RecoveryAnswer &answer)
{
    if (answer.kind == LeftOver::Undoing) {
        story.say(QT_TRANSLATE_NOOP("Story",
                                    "The last run was undone: \"scr\" holds the screens from before it, "
                                    "the history those that it had made."));
        return;
    }
    const qsizetype screens = answer.plan.inPlace.size() + answer.plan.inBackup.size();
    if (screens > 1) {
        story.say(QT_TRANSLATE_NOOP("Story", "All %1 screens are back as they were before the run."),
                  {QString::number(screens)});
    } else {
        story.say(QT_TRANSLATE_NOOP("Story", "\"scr\" is as it was before the run."));
    }
    story.say(QT_TRANSLATE_NOOP("Story", "Copied from \"scr_bak\": %1."),
              {QString::number(answer.result->restoredScreens)});
    story.say(QT_TRANSLATE_NOOP("Story", "To run now, press Start Update again."));
}

void tellCompleted(Story &story, const QStringList &unconverted)
{
    story.say(QT_TRANSLATE_NOOP("Story",
                                "The run is complete: \"scr\" holds the converted screens, \"scr_bak\" those "
                                "from before it."));
    if (unconverted.isEmpty())
        return;
    story.beginParagraph();
    story.say(QT_TRANSLATE_NOOP("Story",
                                "These are not in \"scr\": the run could not convert them, or their copies "
                                "are gone. Their versions from before the run lie in \"scr_bak\":"));
    story.list(unconverted);
}

void tellPutAway(Story &story, const RecoveryResult &result)
{
    if (result.outcome == RecoveryOutcome::Done) {
        story.say(
            QT_TRANSLATE_NOOP("Story", "\"scr_temp\" was put away. The next run converts all screens anew."));
        return;
    }
    story.say("%1.", {result.error});
    story.say(QT_TRANSLATE_NOOP("Story", "\"scr_temp\" stays where it is, and takes part in the next run."));
}

void tellFailure(Story &story, const QString &projectDir, const RecoveryResult &result)
{
    if (!result.error.isEmpty())
        story.say("%1.", {result.error});
    for (const EndText &end : endTexts) {
        if (end.outcome == result.outcome)
            story.say(end.text);
    }
    story.list(namesIn(projectDir, result.changedFiles));
}

/// Where nothing was done.
void tellNothingDone(Story &story, const RecoveryAnswer &answer)
{
    if (answer.isStopped) {
        story.say(QT_TRANSLATE_NOOP("Story",
                                    "The recovery was stopped before it was done. No screen is lost; the "
                                    "next start asks again."));
    } else if (!answer.failure.isEmpty()) {
        story.say(QT_TRANSLATE_NOOP("Story",
                                    "What the interrupted run has left could not be found out: %1. The next "
                                    "start tries again."),
                  {answer.failure});
    } else if (answer.kind == LeftOver::InUse) {
        story.say(QT_TRANSLATE_NOOP("Story", "Nothing was touched: the project is in use by %1."),
                  {answer.holder});
    } else {
        story.say(QT_TRANSLATE_NOOP("Story",
                                    "Nothing is left to be done: somebody else has recovered the project."));
    }
}

} // namespace

Story summaryOf(const QString &projectDir, const RecoveryAnswer &answer)
{
    Story story;
    tellBegin(story, projectDir, answer);
    if (answer.kind == LeftOver::Unreadable)
        tellUnreadable(story);
    else if (!isDecidable(answer))
        tellUndecided(story, projectDir, answer.plan);
    else if (answer.kind == LeftOver::Run)
        story.say(textOf(answer.plan.record.state.stage).ended);
    return story;
}

Story questionAbout(const QString &projectDir, const RecoveryAnswer &answer)
{
    Story story = summaryOf(projectDir, answer);
    if (isDecidable(answer))
        tellPlan(story, answer);
    return story;
}

Story summaryOfCancelled(int screens, int allScreens)
{
    Story story;
    if (screens == 0) {
        story.say(QT_TRANSLATE_NOOP("Story", "Cancelled before the first screen. \"scr\" is untouched."));
        return story;
    }
    story.say(QT_TRANSLATE_NOOP("Story", "Cancelled after %1 of %2 screens. \"scr\" is untouched."),
              {QString::number(screens), QString::number(allScreens)});
    story.say(QT_TRANSLATE_NOOP("Story",
                                "What was converted lies in \"scr_temp\", and takes part in the next run."));
    return story;
}

Story nameOf(RecoveryTask task, const QString &projectDir)
{
    static constexpr std::array names{
        QT_TRANSLATE_NOOP("Story", "Looking what an interrupted run has left in %1..."),
        QT_TRANSLATE_NOOP("Story", "Putting the screens of %1 back..."),
        QT_TRANSLATE_NOOP("Story", "Completing the interrupted run over %1..."),
        QT_TRANSLATE_NOOP("Story", "Putting away what a cancelled run over %1 has left..."),
    };
    Story story;
    story.say(names[static_cast<std::size_t>(task)], {projectDir});
    return story;
}

RecoveryEnd endOf(const QString &projectDir, const RecoveryAnswer &answer)
{
    RecoveryEnd end;
    if (!answer.result) {
        tellNothingDone(end.story, answer);
        return end;
    }
    end.isGood = answer.result->outcome == RecoveryOutcome::Done && answer.result->unconverted.isEmpty();
    if (answer.task == RecoveryTask::PutAway)
        tellPutAway(end.story, *answer.result);
    else if (answer.result->outcome != RecoveryOutcome::Done)
        tellFailure(end.story, projectDir, *answer.result);
    else if (answer.task == RecoveryTask::PutBack)
        tellPutBack(end.story, answer);
    else
        tellCompleted(end.story, answer.result->unconverted);
    return end;
}
