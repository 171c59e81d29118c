// Reading the rectangles of an object or shape into its record.
#pragma once

#include "RecordFields.h"
#include "STBlock.h"

/// Walks the lines of one object or shape in order and keeps what its sections mean for the
/// rectangles: the main one is the largest that counts outside Text sections, the icon one
/// every second of those in Icon sections.
class RectangleReader final
{
public:
    explicit RectangleReader(STBlock &record)
        : m_record(record)
    {
    }

    bool inIconSection() const { return m_section == Section::Icon; }

    /// Takes an "ID;" line, which opens a section.
    template <RecordView View>
    void enterSection(View line);
    /// Takes a "PSDV" line; returns its rectangle with left not above right, top not above bottom.
    template <RecordView View>
    QRect readRectangle(View line);

private:
    enum class Section { Icon, Text, Other };

    void take(const QRect &rect, bool counts);

    STBlock &m_record;
    Section m_section = Section::Other;
    qint64 m_largestArea = 0;
};
