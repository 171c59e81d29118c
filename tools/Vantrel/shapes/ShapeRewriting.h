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

/// Moves the file references of a shape's lines to another prefix, and its axes by the shift.
void rebaseLines(QStringList &lines, const QString &fromPrefix, const QString &toPrefix, QPoint shift);
