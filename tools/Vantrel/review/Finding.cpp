// What a user should look at before a run, and after it.
#include "Finding.h"

#include "Limits.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

qsizetype countOf(const QList<Finding> &findings, Severity severity)
{
    return std::count_if(findings.cbegin(), findings.cend(),
                         [severity](const Finding &finding) { return finding.severity() == severity; });
}

QList<Finding> findingsOf(const QList<Finding> &findings, Severity severity)
{
    QList<Finding> found;
    std::copy_if(findings.cbegin(), findings.cend(), std::back_inserter(found),
                 [severity](const Finding &finding) { return finding.severity() == severity; });
    return found;
}

QString adviceForUnreadable(const QStringList &paths)
{
    constexpr qint64 mebibyte = qint64{1} << 20;
    const auto isTooLarge = [](const QString &path) { return QFileInfo(path).size() > largestFile; };
    if (std::any_of(paths.cbegin(), paths.cend(), isTooLarge))
        return u"make it smaller than %1 MiB"_s.arg((largestFile + 1) / mebibyte);
    return u"make it readable"_s;
}

QLatin1StringView severityName(Severity severity)
{
    return severity == Severity::Obstacle ? "obstacle"_L1 : "hint"_L1;
}
