// Which shapes the screens of a project use, and how.
#include "ShapeUsage.h"

#include "ProjectPath.h"
#include "RecordGrammar.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Index of the line by which an object refers to its shape: the last one counts.
qsizetype referenceLine(const FileLines &lines, const STBlock &object)
{
    qsizetype line = object.lastLine;
    while (line > object.firstLine && lines.kindAt(line) != RecordGrammar::LineKind::Library)
        --line;
    return line;
}

} // namespace

ShapeUsage::ShapeUsage(const QString &projectDir, States states)
    : m_projectDir(projectDir)
    , m_states(states)
    , m_catalogue(projectDir)
{
}

void ShapeUsage::add(const ImageFile &screen)
{
    QSet<QString> namesOnScreen;
    for (const STBlock &object : screen.objects) {
        if (!refersToShape(object))
            continue;
        addObject(screen, object);
        namesOnScreen.insert(object.shapeFile);
    }
    for (const QString &name : std::as_const(namesOnScreen))
        ++m_uses[name].screenCount;
}

void ShapeUsage::addObject(const ImageFile &screen, const STBlock &object)
{
    ShapeUse &use = m_uses[object.shapeFile];
    ++use.objectCount;
    if (m_states == States::Compared && !use.isOutdated)
        use.isOutdated = isOutdated(screen, object);
    addReference(screen, object, use);
}

void ShapeUsage::addReference(const ImageFile &screen, const STBlock &object, ShapeUse &use)
{
    const qsizetype line = referenceLine(screen.lines, object);
    const QString name = fieldAt(screen.lines.at(line), RecordGrammar::Library::shapeFile).toString();
    ShapeUse::Reference &reference = use.references[name];
    if (reference.objectCount++ > 0)
        return;
    reference.path = screen.path;
    reference.line = screen.lines.numberInFile(line);
}

bool ShapeUsage::isOutdated(const ImageFile &screen, const STBlock &object)
{
    const CatalogueShape &shape = m_catalogue.shape(object.shapeFile);
    if (shape.usability != ShapeUsability::Valid)
        return false;
    // A run adds the object's own lines once more for each missing icon.
    if (!shape.record.missingIcons.isEmpty())
        return true;
    const QStringList lines = m_catalogue.replacementFor(object, shape);
    if (lines.size() != object.lastLine - object.firstLine + 1)
        return true;
    qsizetype index = object.firstLine;
    return !std::all_of(lines.cbegin(), lines.cend(),
                        [&](const QString &line) { return screen.lines.at(index++) == line; });
}

QList<ShapeReport> ShapeUsage::reports()
{
    QList<ShapeReport> reports;
    for (auto use = m_uses.cbegin(); use != m_uses.cend(); ++use) {
        const CatalogueShape &shape = m_catalogue.shape(use.key());
        reports.append({.name = use.key(),
                        .place = placeOf(use.key(), shape),
                        .objectCount = use->objectCount,
                        .screenCount = use->screenCount,
                        .usability = shape.usability,
                        .error = shape.error,
                        .isOutdated = use->isOutdated});
    }
    return reports;
}

QString ShapeUsage::placeOf(const QString &name, const CatalogueShape &shape) const
{
    switch (shape.usability) {
    case ShapeUsability::Missing:
        return u"missing"_s;
    case ShapeUsability::Refused:
        return u"refused"_s;
    default:
        return relativeTo(m_projectDir, shape.path).chopped(name.size() + 1);
    }
}
