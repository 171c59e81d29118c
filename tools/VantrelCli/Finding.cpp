// What a user should look at before a run, and after it.
#include "Finding.h"

using namespace Qt::StringLiterals;

qsizetype countOf(const QList<Finding> &findings, Severity severity)
{
    return std::count_if(findings.cbegin(), findings.cend(),
                         [severity](const Finding &finding) { return finding.severity() == severity; });
}

QLatin1StringView severityName(Severity severity)
{
    return severity == Severity::Obstacle ? "obstacle"_L1 : "hint"_L1;
}
