// Reading what image objects and shapes say of themselves into their records.
#pragma once

#include "Converter.h"

class ShapeLibrary;

/// See Converter::readShapeReferences(). The lines are a QStringList or FileLines.
template <typename Lines>
void readReferences(const Lines &lines, QList<Converter::STBlock> &objects);

/// See Converter::parseShapeLines(). The lines are a QStringList or FileLines.
template <typename Lines>
void parseShape(const Lines &lines, ShapeLibrary &library, Converter::STBlock &shape);
