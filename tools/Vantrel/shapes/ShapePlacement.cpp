// Rewriting the lines of a shape.
#include "ShapePlacement.h"

#include "WrapArithmetic.h"

#include <array>

using namespace RecordGrammar;

namespace {

template <RecordView View>
bool hasAllPoints(View line)
{
    const qsizetype coordinates = fieldCount(line) - Points::first;
    return coordinates > 0 && coordinates == Wrap::multiply(2, toNumber(fieldAt(line, counter)));
}

/// A rectangle line's fields: the fixed ones, the others taken together.
template <RecordView View>
struct RectangleFields
{
    std::array<View, Rectangle::extra> fixed;
    qsizetype count = 0; ///< of the fixed ones that the line has
    View rest;
    bool hasRest = false;

    explicit RectangleFields(View line)
    {
        FieldReader<View> reader(line);
        while (reader.hasNext() && count < Rectangle::extra)
            fixed[static_cast<std::size_t>(count++)] = reader.next();
        hasRest = reader.hasNext();
        rest = reader.rest();
    }
    int number(qsizetype index) const { return toNumber(fixed[static_cast<std::size_t>(index)]); }
};

/// Which fields of a line of a rule are file references.
class References final
{
public:
    References(const RebaseRule &rule, int countedEntries)
    {
        for (const int position : rule.references)
            m_positions |= quint64{1} << position;
        if (rule.kind == Rebase::EachEntry && countedEntries > 0)
            m_endOfEntries = Entries::firstReference + qint64{Entries::fieldsOfEntry} * countedEntries;
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

constexpr bool isAxis(Rebase kind)
{
    return kind == Rebase::ShiftAcross || kind == Rebase::ShiftDown;
}

constexpr bool isAxisReference(qsizetype index)
{
    return std::find(axisReferences.begin(), axisReferences.end(), index) != axisReferences.end();
}

constexpr bool isAxisNumber(qsizetype index)
{
    return std::find(axisNumbers.begin(), axisNumbers.end(), index) != axisNumbers.end();
}

/// A reference is moved before it is read as a number.
template <RecordView View>
int numberBehind(View prefix, View rest)
{
    TextBuffer<CharOf<View>> reference;
    reference.append(prefix);
    reference.append(rest);
    return toNumber(View(reference.data(), reference.size()));
}

} // namespace

Displacement displacementOf(const QRect &target, const QRect &shape)
{
    return {.corner = Wrap::subtract(target.topLeft(), shape.topLeft()),
            .centre = Wrap::subtract(Wrap::centre(target), Wrap::centre(shape))};
}

template <RecordView View>
void ShapePattern<View>::clear()
{
    m_text.clear();
    m_gaps.clear();
    m_textBeforeGaps = 0;
}

template <RecordView View>
void ShapePattern<View>::addPlaced(View line, LineKind kind, View extraText)
{
    m_isLineBegin = true;
    if (kind == LineKind::Rectangle)
        addRectangle(line, extraText);
    else if (hasAllPoints(line))
        addPoints(line);
    else
        addText(line);
}

template <RecordView View>
void ShapePattern<View>::addPoints(View line)
{
    FieldReader<View> fields(line);
    for (qsizetype index = 0; index < Points::first; ++index)
        addField(fields.next());
    while (fields.hasNext()) {
        addNumber(Filling::PointAcross, toNumber(fields.next()));
        addNumber(Filling::PointDown, toNumber(fields.next()));
    }
}

template <RecordView View>
void ShapePattern<View>::addRectangle(View line, View extraText)
{
    RectangleFields<View> fields(line);
    TextBuffer<CharOf<View>> whole;
    const bool lacksFields = fields.count < Rectangle::extra && !extraText.isEmpty();
    if (lacksFields) {
        whole.append(line);
        whole.append(fieldSeparator);
        whole.append(extraText);
        fields = RectangleFields<View>(View(whole.data(), whole.size()));
    }

    const bool isMoved = fields.count > Rectangle::level;
    for (qsizetype index = 0; index < fields.count; ++index) {
        if (isMoved && index == Rectangle::x1)
            addNumber(Filling::Left, fields.number(index));
        else if (isMoved && index == Rectangle::y1)
            addNumber(Filling::Top, fields.number(index));
        else if (isMoved && index == Rectangle::x2)
            addNumber(Filling::Right, Wrap::subtract(fields.number(index), fields.number(Rectangle::x1)));
        else if (isMoved && index == Rectangle::y2)
            addNumber(Filling::Bottom, Wrap::subtract(fields.number(index), fields.number(Rectangle::y1)));
        else if (isMoved && index == Rectangle::level)
            addNumber(Filling::Level, 0);
        else
            addField(fields.fixed[static_cast<std::size_t>(index)]);
    }
    if (!lacksFields)
        addGap(Filling::ExtraText);
    else if (fields.hasRest)
        addField(fields.rest);
}

template <RecordView View>
void ShapePattern<View>::addRebased(View line, const RebaseRule &rule, View fromPrefix)
{
    m_isLineBegin = true;
    const int countedEntries = rule.kind == Rebase::EachEntry ? toNumber(fieldAt(line, counter)) : 0;
    const References references(rule, countedEntries);
    FieldReader<View> fields(line);
    for (qsizetype index = 0; fields.hasNext(); ++index) {
        const View field = fields.next();
        if (rule.kind == Rebase::Initialise && index == Library::initText) {
            addField(View());
            addGap(Filling::Prefix);
        } else if (isAxis(rule.kind) && isAxisNumber(index)) {
            addAxisNumber(field, fromPrefix, rule.kind);
        } else if (references.contains(index) ||
                   (isAxis(rule.kind) && isAxisReference(index) && field.contains(u':'))) {
            addReference(field, fromPrefix);
        } else {
            addField(field);
        }
    }
}

template <RecordView View>
void ShapePattern<View>::addReference(View field, View fromPrefix)
{
    if (!isBelowPrefix(field, fromPrefix)) {
        addField(field);
        return;
    }
    addField(View());
    addGap(Filling::Prefix);
    addText(field.sliced(fromPrefix.size()));
}

template <RecordView View>
void ShapePattern<View>::addAxisNumber(View field, View fromPrefix, Rebase axis)
{
    const bool isAcross = axis == Rebase::ShiftAcross;
    if (!field.contains(u':') || !isBelowPrefix(field, fromPrefix)) {
        addNumber(isAcross ? Filling::Across : Filling::Down, toNumber(field));
        return;
    }
    const View rest = field.sliced(fromPrefix.size());
    addField(View());
    addGap(isAcross ? Filling::ReferenceAcross : Filling::ReferenceDown).referenceSize =
        static_cast<int>(rest.size());
    addText(rest);
    m_textBeforeGaps += rest.size();
}

template <RecordView View>
void ShapePattern<View>::addField(View field)
{
    if (!m_isLineBegin)
        m_text.append(fieldSeparator);
    m_isLineBegin = false;
    m_text.append(field);
}

template <RecordView View>
void ShapePattern<View>::addNumber(Filling filling, int number)
{
    addField(View());
    addGap(filling).number = number;
}

template <RecordView View>
typename ShapePattern<View>::Gap &ShapePattern<View>::addGap(Filling filling)
{
    const qsizetype textSize = m_text.size() - std::exchange(m_textBeforeGaps, m_text.size());
    return m_gaps.emplace_back(Gap{.textSize = textSize, .number = 0, .filling = filling});
}

template <RecordView View>
void ShapePattern<View>::appendFilled(const Fitting<View> &fitting, TextBuffer<CharOf<View>> &out) const
{
    const QPoint corner = fitting.displacement.corner;
    const QPoint centre = fitting.displacement.centre;
    const CharOf<View> *text = m_text.data();
    const auto takeText = [&text](qsizetype size) { return View(std::exchange(text, text + size), size); };
    int left = 0;
    int top = 0;
    for (const Gap &gap : m_gaps) {
        out.append(takeText(gap.textSize));
        switch (gap.filling) {
        case Filling::PointAcross:
            out.appendNumber(Wrap::add(gap.number, corner.x()));
            break;
        case Filling::PointDown:
            out.appendNumber(Wrap::add(gap.number, corner.y()));
            break;
        case Filling::Left:
            // Only the left edge is kept on the screen; a shape may reach beyond the top.
            left = std::max(0, Wrap::add(centre.x(), gap.number));
            out.appendNumber(left);
            break;
        case Filling::Top:
            top = Wrap::add(centre.y(), gap.number);
            out.appendNumber(top);
            break;
        case Filling::Right:
            out.appendNumber(Wrap::add(left, gap.number));
            break;
        case Filling::Bottom:
            out.appendNumber(Wrap::add(top, gap.number));
            break;
        case Filling::Level:
            out.appendNumber(fitting.level);
            break;
        case Filling::ExtraText:
            if (!fitting.extraText.isEmpty())
                out.append(fieldSeparator);
            out.append(fitting.extraText);
            break;
        case Filling::Prefix:
            out.append(fitting.toPrefix);
            break;
        case Filling::Across:
            out.appendNumber(Wrap::add(gap.number, centre.x()));
            break;
        case Filling::Down:
            out.appendNumber(Wrap::add(gap.number, centre.y()));
            break;
        case Filling::ReferenceAcross:
            out.appendNumber(
                Wrap::add(numberBehind(fitting.toPrefix, takeText(gap.referenceSize)), centre.x()));
            break;
        case Filling::ReferenceDown:
            out.appendNumber(
                Wrap::add(numberBehind(fitting.toPrefix, takeText(gap.referenceSize)), centre.y()));
            break;
        }
    }
    out.append(takeText(m_text.data() + m_text.size() - text));
}

template class ShapePattern<QStringView>;
template class ShapePattern<QLatin1StringView>;
