// Rows of text in aligned columns.
#pragma once

#include "Output.h"

#include <QByteArray>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

/// Collects rows and prints them under their header, each column as wide as its widest cell.
/// Columns that are empty in every row are left out.
class TextTable final
{
public:
    explicit TextTable(QStringList header)
        : m_header(std::move(header))
        , m_widths(m_header.size(), 0)
    {
    }

    /// Columns that hold numbers.
    void alignRight(const QSet<qsizetype> &columns) { m_rightColumns = columns; }
    /// As many cells as the header has.
    void addRow(const QStringList &cells, Color color = Color::Plain);
    bool isEmpty() const { return m_colors.isEmpty(); }
    void print(Output &output) const;

private:
    QString alignedLine(const QStringList &cells, const QList<qsizetype> &widths) const;
    QStringList takeRow(const char *&cell) const;

    QStringList m_header;
    QSet<qsizetype> m_rightColumns;
    QList<qsizetype> m_widths; ///< of each column's widest cell
    /// All rows' cells in UTF-8, each with a separator behind it: there may be a million rows.
    QByteArray m_cells;
    QList<Color> m_colors; ///< of the rows
};
