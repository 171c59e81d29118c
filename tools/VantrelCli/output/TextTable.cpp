// Rows of text in aligned columns.
#include "TextTable.h"

#include "EscapedText.h"

#include <algorithm>
#include <cstring>

using namespace Qt::StringLiterals;

namespace {

/// No shown cell holds a control character.
constexpr char cellEnd = '\n';

/// Columns that a text takes on a terminal; names outside the common scripts may take more.
qsizetype widthOf(const QString &text)
{
    return std::count_if(text.begin(), text.end(), [](QChar unit) { return !unit.isLowSurrogate(); });
}

} // namespace

void TextTable::addRow(const QStringList &cells, Color color)
{
    for (qsizetype column = 0; column < m_widths.size(); ++column) {
        const QString shown = escaped(cells.at(column));
        m_widths[column] = std::max(m_widths.at(column), widthOf(shown));
        m_cells += shown.toUtf8();
        m_cells += cellEnd;
    }
    m_colors.append(color);
}

void TextTable::print(Output &output) const
{
    QList<qsizetype> widths = m_widths;
    for (qsizetype column = 0; column < widths.size(); ++column) {
        if (widths.at(column) > 0)
            widths[column] = std::max(widths.at(column), widthOf(m_header.at(column)));
    }

    output.printLine(output.colored(alignedLine(m_header, widths), Color::Bold));
    const char *cell = m_cells.constData();
    for (const Color color : m_colors) {
        const QString line = alignedLine(takeRow(cell), widths);
        output.printLine(color == Color::Plain ? line : output.colored(line, color));
    }
}

/// The cells of the row that begins there; `cell` moves on to the next row.
QStringList TextTable::takeRow(const char *&cell) const
{
    QStringList cells;
    while (cells.size() < m_header.size()) {
        const char *const end = std::strchr(cell, cellEnd);
        cells.append(QString::fromUtf8(cell, end - cell));
        cell = end + 1;
    }
    return cells;
}

QString TextTable::alignedLine(const QStringList &cells, const QList<qsizetype> &widths) const
{
    QString line;
    qsizetype missing = 0;
    for (qsizetype column = 0; column < widths.size(); ++column) {
        if (widths.at(column) == 0)
            continue;
        if (!line.isEmpty() || missing > 0)
            missing += 2;
        if (const QString &cell = cells.at(column); m_rightColumns.contains(column)) {
            line += QString(missing + widths.at(column) - widthOf(cell), u' ') + cell;
            missing = 0;
        } else if (!cell.isEmpty()) {
            line += QString(missing, u' ') + cell;
            missing = 0;
            missing += widths.at(column) - widthOf(cell);
        } else {
            missing += widths.at(column);
        }
    }
    return line;
}
