// What commands say about a run of somebody else: it is under way, or did not come to its end.
#include "LeftOverFinding.h"

#include "LockHolder.h"
#include "ShellWord.h"
#include "StageFile.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto lockFileName = ".vantrel.lock"_L1;
constexpr auto stageFileName = ".vantrel.run"_L1;

QString describe(const std::optional<RunRecord> &record)
{
    if (!record)
        return u"a run was interrupted; the file that tells its stage cannot be read"_s;
    return u"a run was interrupted: %1 (%2, begun at %3)"_s.arg(
        QLatin1StringView(rowOf(record->state.stage).name), record->facts.program,
        record->facts.started.toString(u"yyyy-MM-dd hh:mm:ss"));
}

} // namespace

Finding runUnderWay(const QString &holder)
{
    return {FindingKind::RunUnderWay, lockFileName,
            u"a run is under way: the project is in use by %1"_s.arg(holder), u"wait until it has ended"_s};
}

QList<Finding> findRunUnderWay(const QString &projectDir)
{
    const std::optional<QString> holder = lockHolderOf(projectDir);
    return holder ? QList<Finding>{runUnderWay(*holder)} : QList<Finding>();
}

QList<Finding> findLeftOverRun(const QString &projectDir)
{
    if (!StageFile::tellsOfInterruption(projectDir))
        return {};
    return {{FindingKind::RunInterrupted, stageFileName, describe(StageFile::read(projectDir)),
             u"see \"%1\""_s.arg(recoverCommandFor(projectDir))}};
}

QString recoverCommandFor(const QString &projectDir)
{
    return u"vantrel-cli recover --project %1"_s.arg(quotedForShell(projectDir));
}
