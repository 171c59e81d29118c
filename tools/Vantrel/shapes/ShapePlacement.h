// Rewriting the lines of a shape for the place and the prefix of the object that it replaces.
#pragma once

#include "RecordGrammar.h"
#include "TextBuffer.h"

#include <QPoint>
#include <QRect>

#include <utility>
#include <vector>

/// How a shape is moved onto the object that it replaces. Points move by the corner of the main
/// rectangles, rectangles and axes by their centre.
struct Displacement
{
    QPoint corner;
    QPoint centre;
};

/// The way from a shape's main rectangle to that of the object whose place it takes.
Displacement displacementOf(const QRect &target, const QRect &shape);

/// What differs from one object to another where a shape takes their places.
template <RecordView View>
struct Fitting
{
    Displacement displacement;
    int level = 0;
    View extraText; ///< takes the place of what follows a rectangle line's fixed fields
    View toPrefix;  ///< takes the place of the prefix of file references
};

/// Whether placing changes lines of this kind. Rebasing leaves these alone.
constexpr bool isPlaced(RecordGrammar::LineKind kind)
{
    return kind == RecordGrammar::LineKind::Rectangle || kind == RecordGrammar::LineKind::Points;
}

/// Lines of a shape with gaps for what differs from object to object. Lines are taken apart when
/// they are added, so that filling the gaps costs little however often it is done.
template <RecordView View>
class ShapePattern final
{
public:
    void clear();

    /// Adds a "PNT;" or "PSDV" line that moves to its place; `extraText` is that of the object, as
    /// it supplies the fixed fields that a rectangle line lacks. Points that are not as many as
    /// their line says stay where they are.
    void addPlaced(View line, RecordGrammar::LineKind kind, View extraText = View());
    /// Adds a line of this rule, whose file references below a prefix and axis numbers move.
    void addRebased(View line, const RecordGrammar::RebaseRule &rule, View fromPrefix);
    /// Adds what stays as it is.
    void addText(View text) { m_text.append(text); }
    void addLineEnd() { m_text.append('\n'); }

    void appendFilled(const Fitting<View> &fitting, TextBuffer<CharOf<View>> &out) const;

private:
    enum class Filling : quint8 {
        PointAcross,
        PointDown, ///< a coordinate, moved
        Left,
        Top,
        Right,
        Bottom, ///< of a rectangle; the latter two by width and height
        Level,
        ExtraText, ///< with its separator; nothing where there is none
        Prefix,
        Across,
        Down, ///< an axis number, moved
        ReferenceAcross,
        ReferenceDown, ///< an axis number that is read behind the new prefix
    };

    /// A gap behind some text. A shape may be all points, each with two of them, so that a gap takes
    /// little room: only one kind of filling needs the size, and none needs both.
    struct Gap
    {
        qsizetype textSize;
        union {
            int number = 0;    ///< that is moved
            int referenceSize; ///< of the text behind it, which is read behind the new prefix
        };
        Filling filling;
    };
    static_assert(sizeof(Gap) == 2 * sizeof(qsizetype));

    Gap &addGap(Filling filling);
    void addField(View field);
    void addNumber(Filling filling, int number);
    void addReference(View field, View fromPrefix);
    void addAxisNumber(View field, View fromPrefix, RecordGrammar::Rebase axis);
    void addPoints(View line);
    void addRectangle(View line, View extraText);

    TextBuffer<CharOf<View>> m_text; ///< what lies between the gaps
    std::vector<Gap> m_gaps;
    qsizetype m_textBeforeGaps = 0; ///< how much of the text lies before the last gap
    bool m_isLineBegin = true;
};
