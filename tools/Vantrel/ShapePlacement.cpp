// Rewriting one line of a shape.
#include "ShapePlacement.h"

#include "RecordFields.h"
#include "RecordGrammar.h"
#include "WrapArithmetic.h"

using namespace RecordGrammar;

namespace {

bool hasAllPoints(const RecordLine &line)
{
    const qsizetype coordinates = line.size() - Points::first;
    return coordinates > 0 && coordinates == Wrap::multiply(2, line.number(counter));
}

QString movedPoints(const RecordLine &line, qsizetype lineSize, QPoint way)
{
    QString moved(lineSize + line.size() * static_cast<qsizetype>(longestNumber), Qt::Uninitialized);
    auto *const begin = reinterpret_cast<char16_t *>(moved.data());
    auto *out = begin;
    for (qsizetype index = 0; index < line.size(); ++index) {
        if (index > 0)
            *out++ = fieldSeparator;
        const bool isAcross = (index - Points::first) % 2 == 0;
        out = index < Points::first
                  ? writeText(out, line.at(index))
                  : writeNumber(out, Wrap::add(line.number(index), isAcross ? way.x() : way.y()));
    }
    return moved.first(out - begin);
}

/// Moves the rectangle in the fields of its line.
QString placedFields(RecordLine &fields, QPoint way, int level)
{
    if (fields.size() <= Rectangle::level)
        return fields.joined();

    const int width = Wrap::subtract(fields.number(Rectangle::x2), fields.number(Rectangle::x1));
    const int height = Wrap::subtract(fields.number(Rectangle::y2), fields.number(Rectangle::y1));
    // Only the left edge is kept on the screen; a shape may reach beyond the top.
    const int x1 = std::max(0, Wrap::add(way.x(), fields.number(Rectangle::x1)));
    const int y1 = Wrap::add(way.y(), fields.number(Rectangle::y1));
    fields.replace(Rectangle::x1, x1);
    fields.replace(Rectangle::y1, y1);
    fields.replace(Rectangle::x2, Wrap::add(x1, width));
    fields.replace(Rectangle::y2, Wrap::add(y1, height));
    fields.replace(Rectangle::level, level);
    return fields.joined();
}

/// Exchanges what follows the fixed fields of a rectangle line for the text of the object.
QString placedRectangle(QStringView line, QPoint way, const PlacedObject &object)
{
    RecordLine fields(line);
    fields.truncate(Rectangle::extra);
    if (object.extraText.isEmpty())
        return placedFields(fields, way, object.level);

    fields.append(object.extraText);
    const QString rebuilt = fields.joined();
    RecordLine rebuiltFields(rebuilt);
    return placedFields(rebuiltFields, way, object.level);
}

/// Moves one file reference of a line.
void rebaseField(RecordLine &line, qsizetype index, const Rebasing &rebasing)
{
    if (index >= line.size())
        return;
    if (const auto moved = rebasedReference(line.at(index), rebasing.fromPrefix, rebasing.toPrefix))
        line.replace(index, *moved);
}

void rebaseEntries(RecordLine &line, const Rebasing &rebasing)
{
    qsizetype reference = Entries::firstReference;
    for (int left = line.number(counter); left > 0 && reference < line.size(); --left) {
        rebaseField(line, reference, rebasing);
        reference += Entries::fieldsOfEntry;
    }
}

void rebaseAxis(RecordLine &line, const Rebasing &rebasing, int shift)
{
    for (const qsizetype index : axisReferences) {
        if (line.at(index).contains(u':'))
            rebaseField(line, index, rebasing);
    }
    shiftReferenceFields(line, shift);
}

} // namespace

Displacement displacementOf(const QRect &target, const QRect &shape)
{
    return {.corner = Wrap::subtract(target.topLeft(), shape.topLeft()),
            .centre = Wrap::subtract(Wrap::centre(target), Wrap::centre(shape))};
}

void placeLine(QString &line, const Displacement &displacement, const PlacedObject &object)
{
    const LineKind kind = kindOf(line);
    if (kind == LineKind::Rectangle) {
        line = placedRectangle(line, displacement.centre, object);
    } else if (kind == LineKind::Points) {
        if (const RecordLine fields(line); hasAllPoints(fields))
            line = movedPoints(fields, line.size(), displacement.corner);
    }
}

void rebaseLine(QString &line, const Rebasing &rebasing)
{
    const RebaseRule *rule = ruleFor(line, rebaseRules);
    if (rule == nullptr)
        return;

    RecordLine fields(line);
    for (const int index : rule->references)
        rebaseField(fields, index, rebasing);
    switch (rule->kind) {
    case Rebase::References:
        break;
    case Rebase::Initialise:
        fields.replace(Library::initText, rebasing.toPrefix);
        break;
    case Rebase::EachEntry:
        rebaseEntries(fields, rebasing);
        break;
    case Rebase::ShiftAcross:
        rebaseAxis(fields, rebasing, rebasing.xShift);
        break;
    case Rebase::ShiftDown:
        rebaseAxis(fields, rebasing, rebasing.yShift);
        break;
    }
    line = fields.joined();
}
