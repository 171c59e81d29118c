// The lines of a shape, made ready to take the places of many objects.
#pragma once

#include "Converter.h"
#include "FileLines.h"
#include "TextBuffer.h"

#include <vector>

class ShapeLines final
{
public:
    ShapeLines() = default;
    explicit ShapeLines(const FileLines &lines);

    /// Appends the lines that take the place of `object`: placed and rebased, each with its line
    /// end. `shape` is the record of these lines.
    void appendFitted(const Converter::STBlock &object, const Converter::STBlock &shape,
                      TextBuffer<char> &out) const;

private:
    FileLines m_lines;
    std::vector<const RecordGrammar::RebaseRule *> m_rules; ///< of each line; null for most kinds
};
