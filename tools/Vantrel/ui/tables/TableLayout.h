// Which columns of a table are shown, and in which order.
#pragma once

#include <QObject>

class QMenu;
class QTableWidget;

/// Lets the user drag columns to another place and hide them by a menu of the header, and keeps
/// both in the user's settings, below the table's object name. One column at least stays. Widths
/// are not kept: they follow the contents. Belongs to the table; GUI thread.
class TableLayout final : public QObject
{
    Q_OBJECT

public:
    /// Restores what was kept for this table, unless it is not about these columns.
    explicit TableLayout(QTableWidget &table);

    void setColumnShown(int column, bool isShown);
    /// The menu in which columns are shown and hidden. It belongs to the table.
    QMenu *columnMenu();

private:
    void restore();
    void save() const;

    QTableWidget &m_table;
};
