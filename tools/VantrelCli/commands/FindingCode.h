// What findings make of a command's exit code.
#pragma once

#include "ExitCode.h"
#include "Finding.h"

#include <QList>

inline ExitCode exitCodeOf(const Finding &finding)
{
    if (finding.kind == FindingKind::RunInterrupted)
        return ExitCode::FilesMissing;
    return finding.severity() == Severity::Obstacle ? ExitCode::Refused : ExitCode::DoneWithFindings;
}

inline ExitCode exitCodeOf(const QList<Finding> &findings)
{
    ExitCode code = ExitCode::Done;
    for (const Finding &finding : findings)
        code = weightier(code, exitCodeOf(finding));
    return code;
}
