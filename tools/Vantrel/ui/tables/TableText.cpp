// A table as text for other programs.
#include "TableText.h"

#include "EscapedText.h"

#include <QHeaderView>
#include <QTableWidget>

#include <algorithm>
#include <numeric>

using namespace Qt::StringLiterals;

namespace {

bool separatesCells(QChar character)
{
    return character == u'\t' || character == u'\n' || character == u'\r';
}

QString withoutSeparators(QString cell)
{
    std::replace_if(cell.begin(), cell.end(), separatesCells, u' ');
    return cell;
}

/// Spreadsheets take a cell that begins so for a formula.
bool beginsAsFormula(QStringView cell)
{
    constexpr QStringView beginnings = u"=+-@\t";
    return !cell.isEmpty() && beginnings.contains(cell.front());
}

QString quotedIfNeeded(const QString &cell)
{
    if (!cell.contains(u',') && !cell.contains(u'"'))
        return cell;
    return u'"' + QString(cell).replace(u'"', "\"\""_L1) + u'"';
}

QString csvCell(const QString &cell)
{
    return quotedIfNeeded(beginsAsFormula(cell) ? u'\'' + escaped(cell) : escaped(cell));
}

template <typename CellText>
QString joined(const TextRows &rows, CellText cellText, QChar separator, QLatin1StringView emptyLine,
               QLatin1StringView lineEnd)
{
    QString text;
    for (const QStringList &row : rows) {
        QStringList cells;
        std::transform(row.begin(), row.end(), std::back_inserter(cells), cellText);
        const QString line = cells.join(separator);
        text += (line.isEmpty() ? QString(emptyLine) : line) + lineEnd;
    }
    return text;
}

} // namespace

QList<int> shownColumns(const QTableWidget &table)
{
    const QHeaderView &header = *table.horizontalHeader();
    QList<int> columns;
    for (int place = 0; place < header.count(); ++place) {
        const int column = header.logicalIndex(place);
        if (!header.isSectionHidden(column))
            columns += column;
    }
    return columns;
}

TextRows textRows(const QTableWidget &table, const QList<int> &rows, const QList<int> &columns)
{
    const QAbstractItemModel &model = *table.model();
    QStringList head;
    for (const int column : columns)
        head += model.headerData(column, Qt::Horizontal).toString().trimmed();

    TextRows texts{head};
    for (const int row : rows) {
        QStringList cells;
        for (const int column : columns)
            cells += model.index(row, column).data().toString();
        texts += cells;
    }
    return texts;
}

TextRows allTextRows(const QTableWidget &table)
{
    QList<int> rows(table.rowCount());
    std::iota(rows.begin(), rows.end(), 0);
    return textRows(table, rows, shownColumns(table));
}

QString tabSeparated(const TextRows &rows)
{
    return joined(rows, withoutSeparators, u'\t', ""_L1, "\n"_L1);
}

QString commaSeparated(const TextRows &rows)
{
    // Readers skip a line without anything: a row would be lost.
    return joined(rows, csvCell, u',', "\"\""_L1, "\r\n"_L1);
}
