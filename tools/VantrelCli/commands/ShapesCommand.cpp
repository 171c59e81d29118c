// The command that lists the shapes that a project's screens use.
#include "ShapesCommand.h"

#include "FindingCode.h"
#include "LeftOverFinding.h"
#include "Presenter.h"
#include "ReadingListener.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Whether objects may be left out of the list for what was found.
bool hidesObjects(const Finding &finding)
{
    constexpr std::array kinds{FindingKind::FolderMissing, FindingKind::FolderUnreadable,
                               FindingKind::NameNotUtf8, FindingKind::ScreenUnreadable,
                               FindingKind::ScreenInvalid};
    return std::find(kinds.begin(), kinds.end(), finding.kind) != kinds.end();
}

int countObjects(const QList<ShapeReport> &shapes)
{
    int count = 0;
    for (const ShapeReport &shape : shapes)
        count += shape.objectCount;
    return count;
}

struct UsedShapes
{
    QList<Finding> findings;
    QList<ShapeReport> shapes;
    qsizetype files = 0;
};

UsedShapes lookAtShapes(const QString &projectDir, Presenter &presenter)
{
    ShapeUsage usage(projectDir, ShapeUsage::States::Compared);
    ReadingListener listener(usage, presenter);
    // Folders do not matter here: nothing is to be converted.
    const ProjectSurvey survey = surveyProject(projectDir, true, &listener);
    const auto fileCount = static_cast<int>(survey.imageFiles.size());
    presenter.showProgress(fileCount, fileCount);

    QList<Finding> findings = findLeftOverRun(projectDir);
    std::copy_if(survey.findings.cbegin(), survey.findings.cend(), std::back_inserter(findings),
                 hidesObjects);
    return {.findings = findings, .shapes = usage.reports(), .files = fileCount};
}

/// Looks at the shapes of a project, unless a run is under way: it moves the screens.
UsedShapes shapesOf(const QString &projectDir, Presenter &presenter)
{
    if (const QList<Finding> underWay = findRunUnderWay(projectDir); !underWay.isEmpty())
        return {.findings = underWay, .shapes = {}};
    const UsedShapes used = lookAtShapes(projectDir, presenter);
    // One may have begun meanwhile.
    const QList<Finding> underWay = findRunUnderWay(projectDir);
    return underWay.isEmpty() ? used : UsedShapes{.findings = underWay, .shapes = {}};
}

} // namespace

ExitCode runShapes(const QString &projectDir, Presenter &presenter)
{
    const auto [findings, shapes, files] = shapesOf(projectDir, presenter);
    for (const Finding &finding : findings)
        presenter.showFinding(finding);
    for (const ShapeReport &shape : shapes)
        presenter.showShape(shape);

    const auto outdated = std::count_if(shapes.cbegin(), shapes.cend(),
                                        [](const ShapeReport &shape) { return shape.isOutdated; });
    const auto unusable = std::count_if(shapes.cbegin(), shapes.cend(),
                                        [](const ShapeReport &shape) { return !shape.isUsable(); });
    CommandEnd end;
    end.command = "shapes"_L1;
    end.projectDir = projectDir;
    end.exitCode = exitCodeOf(findings);
    if (outdated > 0)
        end.exitCode = weightier(end.exitCode, ExitCode::Different);
    if (unusable > 0)
        end.exitCode = weightier(end.exitCode, ExitCode::DoneWithFindings);
    end.counts = {{Count::Files, files},
                  {Count::Shapes, shapes.size()},
                  {Count::Objects, countObjects(shapes)},
                  {Count::Outdated, outdated},
                  {Count::Unusable, unusable}};
    presenter.showEnd(end);
    return end.exitCode;
}
