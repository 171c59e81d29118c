// Reading what image objects and shapes say of themselves into their records.
#pragma once

#include "STBlock.h"

class ShapeLibrary;

/// See Converter::readShapeReferences(). The lines are a QStringList or FileLines.
template <typename Lines>
void readReferences(const Lines &lines, QList<STBlock> &objects);

/// See Converter::parseShapeLines(). The lines are a QStringList or FileLines.
template <typename Lines>
void parseShape(const Lines &lines, ShapeLibrary &library, STBlock &shape);
