// The command that lists the last runs and brings back what they have displaced.
#include "HistoryCommand.h"

#include "EarlierFiles.h"
#include "Interruption.h"
#include "LeftOverFinding.h"
#include "NearestWord.h"
#include "Presenter.h"
#include "ProjectLock.h"
#include "RunHistory.h"
#include "RunSummary.h"
#include "ShownDiffs.h"
#include "StopSignals.h"

#include <QFileInfo>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

struct KindWord
{
    HistoryKind kind;
    QLatin1StringView word;
};

constexpr std::array kindWords{
    KindWord{HistoryKind::Run, "run"_L1},
    KindWord{HistoryKind::Undo, "undo"_L1},
    KindWord{HistoryKind::Restore, "restore"_L1},
    KindWord{HistoryKind::Cancelled, "cancelled"_L1},
};

QLatin1StringView wordOf(HistoryKind kind)
{
    const auto *const row = std::find_if(kindWords.begin(), kindWords.end(),
                                         [kind](const KindWord &word) { return word.kind == kind; });
    return row->word;
}

QString filesText(qsizetype count)
{
    return count == 1 ? u"1 file"_s : u"%1 files"_s.arg(count);
}

class HistoryCommand final
{
public:
    HistoryCommand(const HistoryOptions &options, Presenter &presenter)
        : m_options(options)
        , m_presenter(presenter)
        , m_history(options.projectDir)
        , m_entries(m_history.entries())
    {
    }

    ExitCode execute();

private:
    ExitCode perform();
    ExitCode endStopped();
    ExitCode list();
    ExitCode compare();
    ExitCode restore();
    ExitCode prune();
    KeptRun describe(const QString &entry) const;
    ExitCode refuseUnknownRun();
    ExitCode refuseUnknownFiles(const EarlierFiles &earlier, const QStringList &unknown);
    QString whyNotNow(const ProjectLock &lock) const;
    void tellUnreadable(const EarlierFiles &earlier);
    ExitCode endWith(ExitCode code, const QString &message, const QList<CountValue> &counts = {});

    const HistoryOptions &m_options;
    Presenter &m_presenter;
    StopSignals m_stopSignals;
    RunHistory m_history;
    QStringList m_entries;
};

ExitCode HistoryCommand::execute()
{
    const InterruptionScope scope([this] { return m_stopSignals.received() != 0; });
    try {
        return perform();
    } catch (const WorkInterrupted &) {
        return endStopped();
    }
}

ExitCode HistoryCommand::endStopped()
{
    const bool changesNothing =
        m_options.action == HistoryAction::List || m_options.action == HistoryAction::Diff;
    return endWith(stoppedBy(m_stopSignals.received()),
                   changesNothing ? QString(stoppedUnchanged)
                                  : u"Stopped. No file is lost; repeat the command."_s);
}

ExitCode HistoryCommand::perform()
{
    if (!QFileInfo(m_options.projectDir).isDir())
        return endWith(ExitCode::Refused, u"There is no folder %1."_s.arg(m_options.projectDir));
    switch (m_options.action) {
    case HistoryAction::Diff:
        return m_entries.contains(m_options.run) ? compare() : refuseUnknownRun();
    case HistoryAction::Restore:
        return m_entries.contains(m_options.run) ? restore() : refuseUnknownRun();
    case HistoryAction::Prune:
        return prune();
    case HistoryAction::List:
        break;
    }
    return list();
}

ExitCode HistoryCommand::list()
{
    for (const QString &entry : std::as_const(m_entries))
        m_presenter.showRun(describe(entry));
    return endWith(ExitCode::Done, m_entries.isEmpty() ? u"No run is kept."_s : QString(),
                   {{Count::Runs, m_entries.size()}});
}

KeptRun HistoryCommand::describe(const QString &entry) const
{
    const QString path = m_history.pathOf(entry);
    const RunSummary summary = readSummary(path).value_or(RunSummary());
    KeptRun run;
    run.name = entry;
    run.kind = wordOf(summary.kind);
    run.about = summary.about;
    run.ended = summary.ended.isValid()
                    ? summary.ended.toOffsetFromUtc(summary.ended.offsetFromUtc()).toString(Qt::ISODate)
                    : QString();
    run.changeLog = summary.changeLog;
    run.screens = summary.screens;
    run.replaced = summary.replaced;
    run.errors = summary.errors;
    const HistorySize size = m_history.sizeOf(entry);
    run.files = size.files;
    run.bytes = size.bytes;
    return run;
}

ExitCode HistoryCommand::compare()
{
    const EarlierFiles earlier(m_options.projectDir, m_options.run);
    tellUnreadable(earlier);
    ScreenDiffs diffs;
    qsizetype screens = 0;
    for (const EarlierFile &file : earlier.files()) {
        if (!file.isScreen && !file.name.contains(".psc"_L1))
            continue;
        ++screens;
        const QString place = u"scr/"_s + file.name;
        show(diffs.compare(place, {file.path, m_options.run + u'/' + file.name},
                           {m_options.projectDir + u'/' + place, place}),
             m_presenter);
    }
    ExitCode code = diffs.changedFiles() > 0 ? ExitCode::Different : ExitCode::Done;
    if (diffs.unreadableFiles() > 0)
        code = weightier(code, ExitCode::Refused);
    return endWith(code, {}, QList<CountValue>{{Count::Files, screens}} + countsOf(diffs));
}

ExitCode HistoryCommand::restore()
{
    const ProjectLock lock(m_options.projectDir);
    if (const QString reason = whyNotNow(lock); !reason.isEmpty())
        return endWith(ExitCode::Refused, reason);
    EarlierFiles earlier(m_options.projectDir, m_options.run);
    QStringList unknown;
    QList<EarlierFile> wanted;
    for (const QString &name : m_options.files) {
        if (const EarlierFile *file = earlier.find(name); file != nullptr)
            wanted.append(*file);
        else
            unknown.append(name);
    }
    if (!unknown.isEmpty())
        return refuseUnknownFiles(earlier, unknown);
    if (m_options.files.isEmpty()) {
        wanted = earlier.files();
        tellUnreadable(earlier);
    }
    for (const EarlierFile &file : std::as_const(wanted)) {
        if (const QString error = earlier.restore(file); !error.isEmpty())
            return endWith(ExitCode::FilesMissing, u"%1. No file is lost; repeat the command."_s.arg(error),
                           {{Count::Restored, earlier.restoredFiles()}});
    }
    const QString replaced = earlier.replacedEntry();
    QString message = u"\"scr\" holds %1 as before this run."_s.arg(filesText(wanted.size()));
    if (!replaced.isEmpty())
        message += u" What they replaced is kept as %1."_s.arg(replaced);
    return endWith(ExitCode::Done, message,
                   {{Count::Files, wanted.size()}, {Count::Restored, earlier.restoredFiles()}});
}

ExitCode HistoryCommand::prune()
{
    const ProjectLock lock(m_options.projectDir);
    if (const QString reason = whyNotNow(lock); !reason.isEmpty())
        return endWith(ExitCode::Refused, reason);
    const QString error = m_history.keepNewest(m_options.keptRuns);
    const QStringList left = m_history.entries();
    const QList<CountValue> counts{{Count::Runs, left.size()}};
    return error.isEmpty() ? endWith(ExitCode::Done, {}, counts)
                           : endWith(ExitCode::DoneWithErrors, error + u'.', counts);
}

/// Where a run is under way or was interrupted, its files are not the ones to be changed.
QString HistoryCommand::whyNotNow(const ProjectLock &lock) const
{
    if (lock.isHeldByOther())
        return u"A run is under way: the project is in use by %1."_s.arg(lock.holder());
    if (!findLeftOverRun(m_options.projectDir).isEmpty())
        return u"A run was interrupted; first see \"%1\"."_s.arg(recoverCommandFor(m_options.projectDir));
    return {};
}

ExitCode HistoryCommand::refuseUnknownRun()
{
    const QString nearest = nearestWord(m_options.run, m_entries);
    const QString known =
        nearest.isEmpty() ? u"\"vantrel-cli history\" lists them"_s : u"did you mean %1?"_s.arg(nearest);
    return endWith(ExitCode::WrongUsage, u"The history holds no run %1; %2"_s.arg(m_options.run, known));
}

ExitCode HistoryCommand::refuseUnknownFiles(const EarlierFiles &earlier, const QStringList &unknown)
{
    QStringList known;
    for (const EarlierFile &file : earlier.files())
        known.append(file.name);
    for (const QString &name : unknown) {
        const QString nearest = nearestWord(name, known);
        m_presenter.showFinding({FindingKind::NameMatchesNothing, name,
                                 u"\"scr\" held no such file before this run"_s,
                                 nearest.isEmpty() ? u"name a path below \"scr\", such as hall/a.psc"_s
                                                   : u"did you mean \"%1\"?"_s.arg(nearest)});
    }
    return endWith(ExitCode::WrongUsage, u"Nothing was touched."_s);
}

void HistoryCommand::tellUnreadable(const EarlierFiles &earlier)
{
    for (const QString &path : earlier.unreadable()) {
        m_presenter.showFinding({FindingKind::FileUnreadable, path,
                                 u"it cannot be read, or its name is not valid UTF-8: it stays where it is"_s,
                                 u"copy it by hand"_s});
    }
}

ExitCode HistoryCommand::endWith(ExitCode code, const QString &message, const QList<CountValue> &counts)
{
    CommandEnd end;
    end.command = "history"_L1;
    end.projectDir = m_options.projectDir;
    end.exitCode = code;
    end.counts = counts;
    end.message = message;
    m_presenter.showEnd(end);
    return code;
}

} // namespace

ExitCode runHistory(const HistoryOptions &options, Presenter &presenter)
{
    return HistoryCommand(options, presenter).execute();
}
