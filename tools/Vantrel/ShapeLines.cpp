// The lines of a shape.
#include "ShapeLines.h"

#include "ShapePlacement.h"

ShapeLines::ShapeLines(const FileLines &lines)
    : m_lines(lines)
{
    m_rules.reserve(static_cast<std::size_t>(lines.size()));
    for (qsizetype index = 0; index < lines.size(); ++index)
        m_rules.push_back(RecordGrammar::ruleFor(lines.at(index), RecordGrammar::rebaseRules));
}

void ShapeLines::appendFitted(const Converter::STBlock &object, const Converter::STBlock &shape,
                              TextBuffer<char> &out) const
{
    const QByteArray extraText = object.extraText.toLatin1();
    const QByteArray fromPrefix = shape.imageObject.toLatin1();
    const QByteArray toPrefix = object.initText.toLatin1();
    const Displacement displacement = displacementOf(object.rect, shape.rect);
    const PlacedObject<QLatin1StringView> placed{.level = object.extraNumber,
                                                 .extraText = QLatin1StringView(extraText)};
    const Rebasing<QLatin1StringView> rebasing{.fromPrefix = QLatin1StringView(fromPrefix),
                                               .toPrefix = QLatin1StringView(toPrefix),
                                               .xShift = displacement.centre.x(),
                                               .yShift = displacement.centre.y()};
    for (qsizetype index = 0; index < m_lines.size(); ++index) {
        const QLatin1StringView line = m_lines.at(index);
        const RecordGrammar::LineKind kind = m_lines.kindAt(index);
        const RecordGrammar::RebaseRule *const rule = m_rules[static_cast<std::size_t>(index)];
        if (isPlaced(kind))
            appendPlaced(line, kind, displacement, placed, out);
        else if (rule != nullptr)
            appendRebased(line, *rule, rebasing, out);
        else
            out.append(line);
        out.append('\n');
    }
}
