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
    const AddedRow needs = measure(row);
    widenColumns(needs.widths);
    if (needs.isWrapped)
        m_table.resizeRowToContents(row);
    else
        m_table.setRowHeight(row, std::max(needs.height, m_table.verticalHeader()->sectionSizeHint(row)));
}

/// Each cell once: that is nearly all that adding a row costs.
ContentFit::AddedRow ContentFit::measure(int row) const
{
    const int gridSize = m_table.showGrid() ? 1 : 0;
    const int widest = m_table.horizontalHeader()->maximumSectionSize();
    AddedRow needs;
    for (int column = 0; column < m_table.columnCount(); ++column) {
        const QSize need = m_table.sizeHintForIndex(m_table.model()->index(row, column));
        needs.widths.append(need.width() + gridSize);
        needs.height = std::max(needs.height, need.height() + gridSize);
        needs.isWrapped = needs.isWrapped || need.width() + gridSize > widest;
    }
    return needs;
}

/// The columns fit all rows but the added one, so they can only be too narrow for it.
void ContentFit::widenColumns(const QList<int> &widths)
{
    const QHeaderView &header = *m_table.horizontalHeader();
    for (int column = 0; column < widths.size(); ++column) {
        const int width =
            std::clamp(widths.at(column), header.minimumSectionSize(), header.maximumSectionSize());
        if (width > m_table.columnWidth(column))
            m_table.setColumnWidth(column, width);
    }
}
