// Whole shapes as they take the places of objects.
#pragma once

#include "FileLines.h"
#include "STBlock.h"
#include "ShapePlacement.h"

#include <QPoint>
#include <QString>
#include <QStringList>

/// The lines of a shape, taken apart once for all objects whose places they take. `shape` is its
/// record.
ShapePattern<QLatin1StringView> patternOf(const FileLines &lines, const STBlock &shape);

/// Moves points and rectangles of a shape's lines to the place of the object `target`.
void placeLines(QStringList &lines, const STBlock &target, const STBlock &shape);

/// Moves the file references of a shape's lines to another prefix, and its axes by the shift. The
/// prefixes are taken by value, since they may be two of the lines.
void rebaseLines(QStringList &lines, QString fromPrefix, QString toPrefix, QPoint shift);
