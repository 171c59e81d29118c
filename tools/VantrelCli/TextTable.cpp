// Rows of text in aligned columns.
#include "TextTable.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Columns that a text takes on a terminal; names outside the common scripts may take more.
qsizetype widthOf(const QString &text)
{
    return std::count_if(text.begin(), text.end(), [](QChar unit) { return !unit.isLowSurrogate(); });
}

} // namespace

void TextTable::addRow(const QStringList &cells, Color color)
{
    QStringList shown;
    for (const QString &cell : cells)
        shown.append(escaped(cell));
    m_rows.append({shown, color});
}

void TextTable::print(Output &output) const
{
    QList<qsizetype> widths(m_header.size(), 0);
    for (const Row &row : m_rows) {
        for (qsizetype column = 0; column < widths.size(); ++column)
            widths[column] = std::max(widths.at(column), widthOf(row.cells.at(column)));
    }
    for (qsizetype column = 0; column < widths.size(); ++column) {
        if (widths.at(column) > 0)
            widths[column] = std::max(widths.at(column), widthOf(m_header.at(column)));
    }

    output.printLine(output.colored(alignedLine(m_header, widths), Color::Bold));
    for (const Row &row : m_rows) {
        const QString line = alignedLine(row.cells, widths);
        output.printLine(row.color == Color::Plain ? line : output.colored(line, row.color));
    }
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
