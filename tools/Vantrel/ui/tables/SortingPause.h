// Filling a row of a table that the user may have sorted.
#pragma once

#include <QSignalBlocker>

class QHeaderView;
class QTableWidget;

/// While it lives, cells that are set stay in the row in which they were set. Otherwise a cell
/// in the column that the table is sorted by moves its row at once, and the cells that follow
/// land in another one. Sorting stays enabled and its indicator is as before afterwards, so the
/// rows are sorted again when the user asks for it. GUI thread.
class SortingPause final
{
public:
    explicit SortingPause(const QTableWidget &table);
    ~SortingPause();
    Q_DISABLE_COPY_MOVE(SortingPause)

private:
    QHeaderView &m_header;
    const QSignalBlocker m_signalBlocker;
    const int m_sortedColumn;
    const Qt::SortOrder m_order;
};
