// What a cancelled run leaves.
#include "CancelledRun.h"

#include "FileIo.h"
#include "RunArchive.h"
#include "RunSummary.h"
#include "StageFile.h"

using namespace Qt::StringLiterals;

namespace {

std::optional<RunRecord> cancelledRun(const QString &projectDir)
{
    std::optional<RunRecord> record = StageFile::read(projectDir);
    return record && record->state.stage == RunStage::Cancelled ? record : std::nullopt;
}

} // namespace

bool hasCancelledRun(const QString &projectDir)
{
    return cancelledRun(projectDir).has_value();
}

void putCancelledRunAway(const QString &projectDir, int keptRuns, WithoutHistory withoutHistory)
{
    const std::optional<RunRecord> record = cancelledRun(projectDir);
    if (!record || !mayExist(projectDir + "/scr_temp"_L1))
        return;
    const QDateTime now = QDateTime::currentDateTime();
    RunArchive archive(projectDir, keptRuns > 0 ? RunHistory(projectDir).nameFor(now) : QString());
    archive.open();
    RunSummary summary;
    summary.kind = HistoryKind::Cancelled;
    summary.program = record->facts.program;
    summary.projectDir = projectDir;
    summary.started = record->facts.started;
    summary.ended = now;
    summary.shapeNames = record->facts.shapeNames;
    archive.write(summary);
    if (keptRuns > 0 && withoutHistory == WithoutHistory::Keep)
        archive.keep(u"scr_temp"_s);
    else
        archive.putAway(u"scr_temp"_s);
}
