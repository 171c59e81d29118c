// Cutting an image file into objects, and gathering the scattered parts of placed ones.
#pragma once

#include "STBlock.h"

/// Walks the lines of an image file once and makes a record for each object. An object begins
/// at an "ID;" line and gets its level from the first "PSDV" line behind it; objects of one
/// level above 0 that follow each other are one object. The lines are a QStringList or FileLines.
template <typename Lines>
class ObjectCutter final
{
public:
    ObjectCutter(const QString &imageFile, const Lines &lines, QList<STBlock> &objects);

    void cut();

private:
    void enterSection(int index);
    void takeRectangle(int index);
    int firstRectangleOfSection() const;
    void openObject(int rectangleLine);
    bool belongsToOpenObject(int rectangleLine) const;
    void closeObject(int lastLine);
    void appendPlainLines(int firstLine, int lastLine);
    bool hasLibraryReference(int rectangleLine) const;

    bool isOpen() const { return m_object.firstLine >= 0; }

    const QString &m_imageFile;
    const Lines &m_lines;
    QList<STBlock> &m_objects;
    STBlock m_object; ///< the open object
    int m_firstSection = -1;
    int m_section = -1; ///< the most recent "ID;" line
};

/// See Converter::gatherScatteredParts(). The lines are a QStringList or FileLines.
template <typename Lines>
void gatherParts(Lines &lines, QList<STBlock> &objects);
