// Rewriting the lines of a shape for the place and the prefix of the object that it replaces.
#pragma once

#include "RecordGrammar.h"
#include "TextBuffer.h"

#include <QPoint>
#include <QRect>

/// How a shape is moved onto the object that it replaces. Points move by the corner of the main
/// rectangles, rectangles and axes by their centre.
struct Displacement
{
    QPoint corner;
    QPoint centre;
};

/// The way from a shape's main rectangle to that of the object whose place it takes.
Displacement displacementOf(const QRect &target, const QRect &shape);

/// The object whose place a shape takes, as far as its lines show it.
template <RecordView View>
struct PlacedObject
{
    int level = 0;
    View extraText; ///< takes the place of what follows a rectangle line's fixed fields
};

/// The prefixes that the file references of a shape are moved between, and the way of its axes.
template <RecordView View>
struct Rebasing
{
    View fromPrefix;
    View toPrefix;
    int xShift = 0;
    int yShift = 0;
};

/// Whether placing changes lines of this kind. Rebasing leaves these alone.
constexpr bool isPlaced(RecordGrammar::LineKind kind)
{
    return kind == RecordGrammar::LineKind::Rectangle || kind == RecordGrammar::LineKind::Points;
}

/// Appends a "PNT;" or "PSDV" line at its new place. Points that are not as many as the line
/// says stay as they are.
template <RecordView View>
void appendPlaced(View line, RecordGrammar::LineKind kind, const Displacement &displacement,
                  const PlacedObject<View> &object, TextBuffer<CharOf<View>> &out);

/// Appends a line of this rule with its file references and axis numbers moved.
template <RecordView View>
void appendRebased(View line, const RecordGrammar::RebaseRule &rule, const Rebasing<View> &rebasing,
                   TextBuffer<CharOf<View>> &out);
