// Rows of text in aligned columns.
#pragma once

#include "Output.h"

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
    {
    }

    /// Columns that hold numbers.
    void alignRight(const QSet<qsizetype> &columns) { m_rightColumns = columns; }
    void addRow(const QStringList &cells, Color color = Color::Plain);
    bool isEmpty() const { return m_rows.isEmpty(); }
    void print(Output &output) const;

private:
    struct Row
    {
        QStringList cells;
        Color color;
    };

    QString alignedLine(const QStringList &cells, const QList<qsizetype> &widths) const;

    QStringList m_header;
    QSet<qsizetype> m_rightColumns;
    QList<Row> m_rows;
};
