// Rewriting the lines of a shape.
#include "ShapePlacement.h"

#include "WrapArithmetic.h"

#include <array>
#include <optional>

using namespace RecordGrammar;

namespace {

/// Appends fields with their separators.
template <RecordView View>
class FieldAppender final
{
public:
    explicit FieldAppender(TextBuffer<CharOf<View>> &out)
        : m_out(out)
    {
    }

    void append(View field)
    {
        separate();
        m_out.append(field);
    }
    void append(View begin, View end)
    {
        append(begin);
        m_out.append(end);
    }
    void appendNumber(int number)
    {
        separate();
        m_out.appendNumber(number);
    }

private:
    void separate()
    {
        if (!m_isFirst)
            m_out.append(fieldSeparator);
        m_isFirst = false;
    }

    TextBuffer<CharOf<View>> &m_out;
    bool m_isFirst = true;
};

template <RecordView View>
bool hasAllPoints(View line)
{
    const qsizetype coordinates = fieldCount(line) - Points::first;
    return coordinates > 0 && coordinates == Wrap::multiply(2, toNumber(fieldAt(line, counter)));
}

template <RecordView View>
void appendPoints(View line, QPoint way, TextBuffer<CharOf<View>> &out)
{
    if (!hasAllPoints(line)) {
        out.append(line);
        return;
    }
    FieldReader<View> fields(line);
    FieldAppender<View> appender(out);
    for (qsizetype index = 0; index < Points::first; ++index)
        appender.append(fields.next());
    while (fields.hasNext()) {
        appender.appendNumber(Wrap::add(toNumber(fields.next()), way.x()));
        appender.appendNumber(Wrap::add(toNumber(fields.next()), way.y()));
    }
}

/// A rectangle line's fields: the fixed ones, the others taken together.
template <RecordView View>
struct RectangleFields
{
    std::array<View, Rectangle::extra> fixed;
    qsizetype count = 0; ///< of the fixed ones that the line has
    std::optional<View> extra;

    explicit RectangleFields(View line)
    {
        FieldReader<View> reader(line);
        while (reader.hasNext() && count < Rectangle::extra)
            fixed[static_cast<std::size_t>(count++)] = reader.next();
        if (reader.hasNext())
            extra = reader.rest();
    }
    int number(qsizetype index) const { return toNumber(fixed[static_cast<std::size_t>(index)]); }
};

template <RecordView View>
void appendMoved(const RectangleFields<View> &fields, QPoint way, int level, TextBuffer<CharOf<View>> &out)
{
    // Only the left edge is kept on the screen; a shape may reach beyond the top.
    const int x1 = std::max(0, Wrap::add(way.x(), fields.number(Rectangle::x1)));
    const int y1 = Wrap::add(way.y(), fields.number(Rectangle::y1));
    const int width = Wrap::subtract(fields.number(Rectangle::x2), fields.number(Rectangle::x1));
    const int height = Wrap::subtract(fields.number(Rectangle::y2), fields.number(Rectangle::y1));
    const bool hasLevel = fields.count > Rectangle::level;

    FieldAppender<View> appender(out);
    for (qsizetype index = 0; index < fields.count; ++index) {
        if (hasLevel && index == Rectangle::x1)
            appender.appendNumber(x1);
        else if (hasLevel && index == Rectangle::y1)
            appender.appendNumber(y1);
        else if (hasLevel && index == Rectangle::x2)
            appender.appendNumber(Wrap::add(x1, width));
        else if (hasLevel && index == Rectangle::y2)
            appender.appendNumber(Wrap::add(y1, height));
        else if (hasLevel && index == Rectangle::level)
            appender.appendNumber(level);
        else
            appender.append(fields.fixed[static_cast<std::size_t>(index)]);
    }
    if (fields.extra)
        appender.append(*fields.extra);
}

/// What follows the fixed fields is exchanged for the text of the object. In a line with too few
/// of them the text supplies the others.
template <RecordView View>
void appendRectangle(View line, QPoint way, const PlacedObject<View> &object, TextBuffer<CharOf<View>> &out)
{
    RectangleFields<View> fields(line);
    if (fields.count == Rectangle::extra || object.extraText.isEmpty()) {
        fields.extra.reset();
        if (!object.extraText.isEmpty())
            fields.extra = object.extraText;
        appendMoved(fields, way, object.level, out);
        return;
    }
    TextBuffer<CharOf<View>> whole;
    whole.append(line);
    whole.append(fieldSeparator);
    whole.append(object.extraText);
    appendMoved(RectangleFields(View(whole.data(), whole.size())), way, object.level, out);
}

/// Which fields of a line of this rule are file references.
class References final
{
public:
    References(const RebaseRule &rule, int countedEntries)
    {
        for (const int position : rule.references)
            m_positions |= quint64{1} << position;
        if (rule.kind == Rebase::EachEntry && countedEntries > 0) {
            m_endOfEntries = Entries::firstReference + qint64{Entries::fieldsOfEntry} * countedEntries;
        }
    }

    bool contains(qsizetype index) const
    {
        constexpr qsizetype positions = 64;
        const bool isInEntry = index >= Entries::firstReference && index < m_endOfEntries &&
                               (index - Entries::firstReference) % Entries::fieldsOfEntry == 0;
        return isInEntry || (index < positions && ((m_positions >> index) & 1) != 0);
    }

private:
    quint64 m_positions = 0;
    qint64 m_endOfEntries = 0;
};

constexpr bool isAxisReference(qsizetype index)
{
    return std::find(axisReferences.begin(), axisReferences.end(), index) != axisReferences.end();
}

constexpr bool isAxisNumber(qsizetype index)
{
    return std::find(axisNumbers.begin(), axisNumbers.end(), index) != axisNumbers.end();
}

template <RecordView View>
void appendReference(View field, const Rebasing<View> &rebasing, FieldAppender<View> &appender)
{
    if (isBelowPrefix(field, rebasing.fromPrefix))
        appender.append(rebasing.toPrefix, field.sliced(rebasing.fromPrefix.size()));
    else
        appender.append(field);
}

/// An axis reference is moved before it is read as a number, so that its number is that of the
/// moved one.
template <RecordView View>
int axisNumber(View field, const Rebasing<View> &rebasing)
{
    if (!field.contains(u':') || !isBelowPrefix(field, rebasing.fromPrefix))
        return toNumber(field);
    TextBuffer<CharOf<View>> moved;
    moved.append(rebasing.toPrefix);
    moved.append(field.sliced(rebasing.fromPrefix.size()));
    return toNumber(View(moved.data(), moved.size()));
}

template <RecordView View>
void appendAxis(View line, const References &references, int shift, const Rebasing<View> &rebasing,
                FieldAppender<View> &appender)
{
    FieldReader<View> fields(line);
    for (qsizetype index = 0; fields.hasNext(); ++index) {
        const View field = fields.next();
        if (isAxisNumber(index))
            appender.appendNumber(Wrap::add(axisNumber(field, rebasing), shift));
        else if (references.contains(index) || (isAxisReference(index) && field.contains(u':')))
            appendReference(field, rebasing, appender);
        else
            appender.append(field);
    }
}

} // namespace

Displacement displacementOf(const QRect &target, const QRect &shape)
{
    return {.corner = Wrap::subtract(target.topLeft(), shape.topLeft()),
            .centre = Wrap::subtract(Wrap::centre(target), Wrap::centre(shape))};
}

template <RecordView View>
void appendPlaced(View line, LineKind kind, const Displacement &displacement,
                  const PlacedObject<View> &object, TextBuffer<CharOf<View>> &out)
{
    if (kind == LineKind::Points)
        appendPoints(line, displacement.corner, out);
    else
        appendRectangle(line, displacement.centre, object, out);
}

template <RecordView View>
void appendRebased(View line, const RebaseRule &rule, const Rebasing<View> &rebasing,
                   TextBuffer<CharOf<View>> &out)
{
    const int countedEntries = rule.kind == Rebase::EachEntry ? toNumber(fieldAt(line, counter)) : 0;
    const References references(rule, countedEntries);
    FieldAppender<View> appender(out);
    if (rule.kind == Rebase::ShiftAcross || rule.kind == Rebase::ShiftDown) {
        const int shift = rule.kind == Rebase::ShiftAcross ? rebasing.xShift : rebasing.yShift;
        appendAxis(line, references, shift, rebasing, appender);
        return;
    }
    FieldReader<View> fields(line);
    for (qsizetype index = 0; fields.hasNext(); ++index) {
        const View field = fields.next();
        if (rule.kind == Rebase::Initialise && index == Library::initText)
            appender.append(rebasing.toPrefix);
        else if (references.contains(index))
            appendReference(field, rebasing, appender);
        else
            appender.append(field);
    }
}

template void appendPlaced(QStringView line, LineKind kind, const Displacement &displacement,
                           const PlacedObject<QStringView> &object, TextBuffer<char16_t> &out);
template void appendPlaced(QLatin1StringView line, LineKind kind, const Displacement &displacement,
                           const PlacedObject<QLatin1StringView> &object, TextBuffer<char> &out);
template void appendRebased(QStringView line, const RebaseRule &rule, const Rebasing<QStringView> &rebasing,
                            TextBuffer<char16_t> &out);
template void appendRebased(QLatin1StringView line, const RebaseRule &rule,
                            const Rebasing<QLatin1StringView> &rebasing, TextBuffer<char> &out);
