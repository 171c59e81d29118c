// Whole shapes as they take the places of objects.
#include "ShapeRewriting.h"

#include "TextBuffer.h"

namespace {

/// Exchanges a line for the one line of a pattern.
void fill(const ShapePattern<QStringView> &pattern, const Fitting<QStringView> &fitting, QString &line)
{
    TextBuffer<char16_t> text;
    pattern.appendFilled(fitting, text);
    line = QString::fromUtf16(text.data(), text.size());
}

} // namespace

ShapePattern<QLatin1StringView> patternOf(const FileLines &lines, const STBlock &shape)
{
    const QByteArray fromPrefix = shape.imageObject.toLatin1();
    ShapePattern<QLatin1StringView> pattern;
    for (qsizetype index = 0; index < lines.size(); ++index) {
        const QLatin1StringView line = lines.at(index);
        const auto *const rule = RecordGrammar::ruleFor(line, RecordGrammar::rebaseRules);
        if (isPlaced(lines.kindAt(index)))
            pattern.addPlaced(line, lines.kindAt(index));
        else if (rule != nullptr)
            pattern.addRebased(line, *rule, QLatin1StringView(fromPrefix));
        else
            pattern.addText(line);
        pattern.addLineEnd();
    }
    return pattern;
}

void placeLines(QStringList &lines, const STBlock &target, const STBlock &shape)
{
    const Fitting<QStringView> fitting{.displacement = displacementOf(target.rect, shape.rect),
                                       .level = target.extraNumber,
                                       .extraText = target.extraText,
                                       .toPrefix = {}};
    ShapePattern<QStringView> pattern;
    for (QString &line : lines) {
        const RecordGrammar::LineKind kind = RecordGrammar::kindOf(line);
        if (!isPlaced(kind))
            continue;
        pattern.clear();
        pattern.addPlaced(line, kind, fitting.extraText);
        fill(pattern, fitting, line);
    }
}

void rebaseLines(QStringList &lines, QString fromPrefix, QString toPrefix, QPoint shift)
{
    const Fitting<QStringView> fitting{
        .displacement = {.corner = {}, .centre = shift}, .extraText = {}, .toPrefix = toPrefix};
    ShapePattern<QStringView> pattern;
    for (QString &line : lines) {
        const auto *const rule = RecordGrammar::ruleFor(line, RecordGrammar::rebaseRules);
        if (rule == nullptr)
            continue;
        pattern.clear();
        pattern.addRebased(line, *rule, fromPrefix);
        fill(pattern, fitting, line);
    }
}
