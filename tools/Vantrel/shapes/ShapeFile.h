// Reading shape files.
#pragma once

#include "FileLines.h"

#include <QString>

#include <optional>

/// The lines of a shape file from its first "ID;" line on.
struct ShapeFile
{
    FileLines lines;
    int lineOffset = -1; ///< index of that line in the file, -1 where there is none
};

/// Reads a shape file. Where it is a catalogue or cannot be opened, says so in `errorText` and
/// returns nothing.
std::optional<ShapeFile> readShapeFile(const QString &path, QString &errorText);
