// Reading the rectangles of an object or shape into its record.
#include "RectangleReader.h"

#include "RecordGrammar.h"
#include "WrapArithmetic.h"

using namespace Qt::StringLiterals;
namespace Field = RecordGrammar::Rectangle;

template <RecordView View>
void RectangleReader::enterSection(View line)
{
    const View kind = fieldAt(line, RecordGrammar::Section::kind);
    m_section = kind == "Icon"_L1 ? Section::Icon : kind == "Text"_L1 ? Section::Text : Section::Other;
}

template <RecordView View>
QRect RectangleReader::readRectangle(View line)
{
    FieldReader<View> fields(line);
    std::array<View, Field::counts + 1> texts;
    for (View &text : texts)
        text = fields.hasNext() ? fields.next() : View();

    const QRect rect = QRect(QPoint(toNumber(texts[Field::x1]), toNumber(texts[Field::y1])),
                             QPoint(toNumber(texts[Field::x2]), toNumber(texts[Field::y2])))
                           .normalized();
    take(rect, toNumber(texts[Field::counts]) != 0);
    return rect;
}

void RectangleReader::take(const QRect &rect, bool counts)
{
    if (inIconSection()) {
        // Only every second rectangle is the icon's own, counted across sections.
        if (!m_record.iconToggle)
            m_record.rect2 = rect;
        m_record.iconToggle = !m_record.iconToggle;
    }

    const qint64 area = Wrap::area(rect);
    if (counts && area > m_largestArea && m_section != Section::Text) {
        m_record.rect = rect;
        m_largestArea = area;
    }
}

template void RectangleReader::enterSection(QStringView line);
template void RectangleReader::enterSection(QLatin1StringView line);
template QRect RectangleReader::readRectangle(QStringView line);
template QRect RectangleReader::readRectangle(QLatin1StringView line);
