// Filling a row of a table that the user may have sorted.
#include "SortingPause.h"

#include <QHeaderView>
#include <QTableWidget>

SortingPause::SortingPause(const QTableWidget &table)
    : m_header(*table.horizontalHeader())
    , m_signalBlocker(m_header)
    , m_sortedColumn(m_header.sortIndicatorSection())
    , m_order(m_header.sortIndicatorOrder())
{
    // Switching sorting off instead would sort the whole table anew when it is switched on.
    constexpr int noColumn = -1;
    m_header.setSortIndicator(noColumn, m_order);
}

SortingPause::~SortingPause()
{
    m_header.setSortIndicator(m_sortedColumn, m_order);
}
