// Columns and rows that fit their contents while rows are added one by one.
#include "ContentFit.h"

#include <QEvent>
#include <QHeaderView>
#include <QScopedValueRollback>
#include <QTableWidget>

#include <algorithm>

ContentFit::ContentFit(QTableWidget &table)
    : QObject(&table)
    , m_table(table)
{
    // Only some of the rows would be measured otherwise.
    m_table.horizontalHeader()->setResizeContentsPrecision(-1);

    connect(m_table.model(), &QAbstractItemModel::layoutChanged, this, &ContentFit::forget);
    connect(m_table.model(), &QAbstractItemModel::rowsRemoved, this, &ContentFit::forget);
    connect(m_table.model(), &QAbstractItemModel::modelReset, this, &ContentFit::forget);
    connect(m_table.model(), &QAbstractItemModel::headerDataChanged, this, &ContentFit::forget);
    connect(m_table.horizontalHeader(), &QHeaderView::sectionResized, this, [this] {
        if (!m_isResizing)
            forget();
    });
    m_table.installEventFilter(this);
}

bool ContentFit::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        forget();
    return QObject::eventFilter(watched, event);
}

void ContentFit::fitAddedRow(int row)
{
    const QScopedValueRollback resizing(m_isResizing, true);
    if (!m_isKnown) {
        m_table.resizeColumnsToContents();
        m_table.resizeRowsToContents();
        m_isKnown = true;
        return;
    }
    // A wider column changes the height of no other row: lines are wrapped only in a column that
    // is as wide as a column may be.
    widenColumns(row);
    m_table.resizeRowToContents(row);
}

/// The columns fit all rows but the added one, so they can only be too narrow for it.
void ContentFit::widenColumns(int row)
{
    const QHeaderView &header = *m_table.horizontalHeader();
    const int gridWidth = m_table.showGrid() ? 1 : 0;
    for (int column = 0; column < m_table.columnCount(); ++column) {
        const QSize need = m_table.sizeHintForIndex(m_table.model()->index(row, column));
        const int width =
            std::clamp(need.width() + gridWidth, header.minimumSectionSize(), header.maximumSectionSize());
        if (width > m_table.columnWidth(column))
            m_table.setColumnWidth(column, width);
    }
}
