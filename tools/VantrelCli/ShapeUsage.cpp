// Which shapes the screens of a project use, and how.
#include "ShapeUsage.h"

#include "ProjectPath.h"
#include "RecordGrammar.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Index of the line by which an object refers to its shape: the last one counts.
qsizetype referenceLine(const QStringList &lines, const Converter::STBlock &object)
{
    qsizetype line = object.lastLine;
    while (line > object.firstLine &&
           RecordGrammar::kindOf(lines.at(line)) != RecordGrammar::LineKind::Library) {
        --line;
    }
    return line;
}

} // namespace

ShapeUsage::ShapeUsage(const QString &projectDir, States states)
    : m_projectDir(projectDir)
    , m_states(states)
    , m_catalogue(projectDir)
    , m_converter(projectDir)
{
}

void ShapeUsage::add(const Screen &screen)
{
    QSet<QString> namesOnScreen;
    for (const Converter::STBlock &object : screen.objects) {
        if (!refersToShape(object))
            continue;
        addObject(screen, object);
        namesOnScreen.insert(object.shapeFile);
    }
    for (const QString &name : std::as_const(namesOnScreen))
        ++m_uses[name].screenCount;
}

void ShapeUsage::addObject(const Screen &screen, const Converter::STBlock &object)
{
    ShapeUse &use = m_uses[object.shapeFile];
    ++use.objectCount;
    if (m_states == States::Compared && !use.isOutdated)
        use.isOutdated = isOutdated(screen, object);
    addReference(screen, object, use);
}

void ShapeUsage::addReference(const Screen &screen, const Converter::STBlock &object, ShapeUse &use)
{
    const qsizetype line = referenceLine(screen.lines, object);
    const QString name = fieldAt(screen.lines.at(line), RecordGrammar::Library::shapeFile).toString();
    ShapeUse::Reference &reference = use.references[name];
    if (reference.objectCount++ > 0)
        return;
    reference.path = screen.path;
    reference.line = fileLineOf(screen, line);
}

/// Where a line stands in the file: numbers go the way that the lines went.
int ShapeUsage::fileLineOf(const Screen &screen, qsizetype line)
{
    QStringList numbers;
    for (qsizetype number = 1; number <= screen.fileLines.size(); ++number)
        numbers.append(QString::number(number));
    QList<Converter::STBlock> objects;
    m_converter.splitObjects(screen.path, screen.fileLines, objects);
    m_converter.gatherScatteredParts(numbers, objects);
    return numbers.value(line).toInt();
}

bool ShapeUsage::isOutdated(const Screen &screen, const Converter::STBlock &object)
{
    const CatalogueShape &shape = m_catalogue.shape(object.shapeFile);
    if (shape.usability != ShapeUsability::Valid)
        return false;
    // A run adds the object's own lines once more for each missing icon.
    if (!shape.record.missingIcons.isEmpty())
        return true;
    const QStringList lines = m_catalogue.replacementFor(object, shape);
    return lines.size() != object.lastLine - object.firstLine + 1 ||
           !std::equal(lines.cbegin(), lines.cend(), screen.lines.cbegin() + object.firstLine);
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
