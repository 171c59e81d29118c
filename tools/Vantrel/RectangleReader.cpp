// Reading the rectangles of an object or shape into its record.
#include "RectangleReader.h"

#include "RecordGrammar.h"
#include "WrapArithmetic.h"

namespace Field = RecordGrammar::Rectangle;

void RectangleReader::enterSection(QStringView line)
{
    const QStringView kind = fieldAt(line, RecordGrammar::Section::kind);
    m_section = kind == u"Icon" ? Section::Icon : kind == u"Text" ? Section::Text : Section::Other;
}

QRect RectangleReader::readRectangle(QStringView line)
{
    const RecordLine fields(line);
    const QRect rect = QRect(QPoint(fields.number(Field::x1), fields.number(Field::y1)),
                             QPoint(fields.number(Field::x2), fields.number(Field::y2)))
                           .normalized();

    if (inIconSection()) {
        // Only every second rectangle is the icon's own, counted across sections.
        if (!m_record.iconToggle)
            m_record.rect2 = rect;
        m_record.iconToggle = !m_record.iconToggle;
    }

    const qint64 area = Wrap::area(rect);
    if (fields.number(Field::counts) != 0 && area > m_largestArea && m_section != Section::Text) {
        m_record.rect = rect;
        m_largestArea = area;
    }
    return rect;
}
