// Columns and rows that fit their contents while rows are added one by one.
#pragma once

#include <QList>
#include <QObject>

class QTableWidget;

/// Fits a table's columns and rows to their contents after each added row, as
/// resizeColumnsToContents() and resizeRowsToContents() would, but measures only the added row:
/// what the other rows need is remembered. Whatever makes this unsafe (rows sorted or removed,
/// a column dragged, another font) makes it measure the whole table once with the next row.
/// Cells must not be edited. Belongs to the table; GUI thread.
class ContentFit final : public QObject
{
public:
    explicit ContentFit(QTableWidget &table);

    /// Call when all cells of the row are set.
    void fitAddedRow(int row);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// What the cells of a row need.
    struct AddedRow
    {
        QList<int> widths;
        int height = 0;         ///< with every line on one line
        bool isWrapped = false; ///< a line is longer than a column may be wide
    };

    void forget() { m_isKnown = false; }
    AddedRow measure(int row) const;
    void widenColumns(const QList<int> &widths);

    QTableWidget &m_table;
    bool m_isKnown = false;    ///< the table fits, but for the added row
    bool m_isResizing = false; ///< columns are being resized here, not by the user
};
