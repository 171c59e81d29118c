// The command that reads a project and tells what a user should look at before a run.
#include "CheckCommand.h"

#include "FindingCode.h"
#include "HiddenIcons.h"
#include "LeftOverFinding.h"
#include "Presenter.h"
#include "ProjectPath.h"
#include "ReadingListener.h"
#include "ShapeLibrary.h"
#include "ShapeNames.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

QString objectsRefer(int count)
{
    return count == 1 ? u"1 object refers to it"_s : u"%1 objects refer to it"_s.arg(count);
}

/// Looks at the shapes that screens use, and at the rest of the library.
class LibraryCheck final
{
public:
    LibraryCheck(QString projectDir, ShapeUsage &usage)
        : m_projectDir(std::move(projectDir))
        , m_usage(usage)
        , m_catalogue(usage.catalogue())
    {
    }

    QList<Finding> findings()
    {
        for (auto use = m_usage.uses().cbegin(); use != m_usage.uses().cend(); ++use)
            lookAtUse(use.key(), *use);
        for (const QString &folder : {u"/mac"_s, u"/mac/vlo"_s})
            lookAtFolder(m_projectDir + folder);
        return m_findings;
    }

private:
    void lookAtUse(const QString &name, const ShapeUse &use);
    void lookAtReference(const QString &name, const QString &spelling, const ShapeUse::Reference &reference,
                         ShapeUsability usability);
    void lookAtFolder(const QString &folder);
    void lookAtFile(const CatalogueShape &shape);
    void lookAtIcons(const CatalogueShape &shape);
    void note(FindingKind kind, const QString &path, const QString &text, const QString &advice,
              int line = 0);

    QString m_projectDir;
    ShapeUsage &m_usage;
    ShapeCatalogue &m_catalogue;
    QSet<QString> m_seenFiles;
    QList<Finding> m_findings;
};

void LibraryCheck::note(FindingKind kind, const QString &path, const QString &text, const QString &advice,
                        int line)
{
    m_findings.append({kind, relativeTo(m_projectDir, path), text, advice, line});
}

void LibraryCheck::lookAtUse(const QString &name, const ShapeUse &use)
{
    const CatalogueShape &shape = m_catalogue.shape(name);
    if (shape.usability == ShapeUsability::Missing || shape.usability == ShapeUsability::Refused) {
        for (auto reference = use.references.cbegin(); reference != use.references.cend(); ++reference)
            lookAtReference(name, reference.key(), *reference, shape.usability);
        return;
    }
    lookAtFile(shape);
    if (shape.usability == ShapeUsability::Valid && shape.lines.isEmpty()) {
        note(FindingKind::ShapeEmpty, shape.path,
             u"it holds no object, so that a run would replace objects by nothing: %1"_s.arg(
                 objectsRefer(use.objectCount)),
             u"mend the shape file"_s);
    }
}

void LibraryCheck::lookAtReference(const QString &name, const QString &spelling,
                                   const ShapeUse::Reference &reference, ShapeUsability usability)
{
    const QString refer = objectsRefer(reference.objectCount);
    if (usability == ShapeUsability::Refused) {
        note(FindingKind::ShapeRefused, reference.path,
             u"\"%1\" is refused, since its path holds \".cat\"; %2"_s.arg(name, refer),
             u"refer to a shape file that is no catalogue"_s, reference.line);
    } else if (spelling != name) {
        note(FindingKind::LibWithoutPlb, reference.path,
             u"\"%1\" stands for \"%2\", which is missing in \"mac\" and \"mac/vlo\"; %3"_s.arg(spelling,
                                                                                                name, refer),
             u"put \"%1\" into \"mac\""_s.arg(name), reference.line);
    } else {
        note(FindingKind::ShapeMissing, reference.path,
             u"\"%1\" is missing in \"mac\" and \"mac/vlo\"; %2"_s.arg(name, refer), u"put it into \"mac\""_s,
             reference.line);
    }
}

void LibraryCheck::lookAtFolder(const QString &folder)
{
    for (const QString &path : shapeFilesIn(folder))
        lookAtFile(m_catalogue.shapeAt(path));
}

void LibraryCheck::lookAtFile(const CatalogueShape &shape)
{
    if (m_seenFiles.contains(shape.path))
        return;
    m_seenFiles.insert(shape.path);
    if (shape.usability == ShapeUsability::Unreadable) {
        note(FindingKind::ShapeUnreadable, shape.path, shape.error, adviceForUnreadable({shape.path}));
    } else if (shape.usability == ShapeUsability::Invalid) {
        note(FindingKind::ShapeInvalid, shape.path, shape.error, u"mend the line"_s, shape.errorLine);
    }
    lookAtIcons(shape);
}

void LibraryCheck::lookAtIcons(const CatalogueShape &shape)
{
    for (qsizetype icon = 0; icon < shape.record.missingIcons.size(); ++icon) {
        note(FindingKind::IconMissing, shape.path,
             u"Ikon %1 does not exist"_s.arg(shape.record.missingIcons.at(icon)),
             u"put it into a folder \"bmp\" of the project, whose path is all lower case"_s,
             m_catalogue.lineOfMissingIcon(shape, icon));
    }
}

/// The names that were chosen and match the shape of no object.
QList<Finding> unmatchedNames(const QStringList &chosenNames, const ShapeNames &shapeNames)
{
    QList<Finding> findings;
    for (const QString &name : shapeNames.unmatched(chosenNames)) {
        const QString nearest = shapeNames.nearestTo(name);
        findings.append({FindingKind::NameMatchesNothing, u"--shape %1"_s.arg(name),
                         u"no object refers to this shape, so that nothing would be replaced"_s,
                         nearest.isEmpty() ? u"see the names that \"vantrel-cli shapes\" shows"_s
                                           : u"did you mean \"%1\"?"_s.arg(nearest)});
    }
    return findings;
}

/// The shapes that a run replaces: the chosen ones, or all where none was chosen.
QSet<QString> chosenOf(const QSet<QString> &shapeNames, const QStringList &chosenNames)
{
    return chosenNames.isEmpty() ? shapeNames : ShapeNames(shapeNames).matching(chosenNames);
}

struct CheckResult
{
    QList<Finding> findings;
    qsizetype files = 0;
    qsizetype shapes = 0;
};

CheckResult lookAtProject(const CheckOptions &options, Presenter &presenter)
{
    ShapeUsage usage(options.projectDir, ShapeUsage::States::NotCompared);
    ReadingListener listener(usage, presenter);
    const ProjectSurvey survey = surveyProject(options.projectDir, options.makeFolders, &listener);
    const auto fileCount = static_cast<int>(survey.imageFiles.size());
    presenter.showProgress(fileCount, fileCount);

    return {.findings = findLeftOverRun(options.projectDir) + survey.findings +
                        findHiddenIcons(options.projectDir, chosenOf(survey.shapeNames, options.shapeNames)) +
                        LibraryCheck(options.projectDir, usage).findings() +
                        unmatchedNames(options.shapeNames, ShapeNames(survey.shapeNames)),
            .files = fileCount,
            .shapes = survey.shapeNames.size()};
}

/// Looks at a project, unless a run is under way: what lies in the folders then is not to last.
CheckResult check(const CheckOptions &options, Presenter &presenter)
{
    if (const QList<Finding> underWay = findRunUnderWay(options.projectDir); !underWay.isEmpty())
        return {.findings = underWay};
    const CheckResult result = lookAtProject(options, presenter);
    // One may have begun meanwhile.
    const QList<Finding> underWay = findRunUnderWay(options.projectDir);
    return underWay.isEmpty() ? result : CheckResult{.findings = underWay};
}

} // namespace

ExitCode runCheck(const CheckOptions &options, Presenter &presenter)
{
    const CheckResult result = check(options, presenter);
    for (const Finding &finding : result.findings)
        presenter.showFinding(finding);

    CommandEnd end;
    end.command = "check"_L1;
    end.projectDir = options.projectDir;
    end.exitCode = exitCodeOf(result.findings);
    end.counts = {{Count::Files, result.files},
                  {Count::Shapes, result.shapes},
                  {Count::Obstacles, countOf(result.findings, Severity::Obstacle)},
                  {Count::Hints, countOf(result.findings, Severity::Hint)}};
    presenter.showEnd(end);
    return end.exitCode;
}
