// What a table's rows say in full.
#pragma once

#include <QObject>

class QTableWidget;

/// Shows the full texts of a row while the mouse rests on it, one line for each column that is
/// not empty, hidden ones too, as plain text. Made when it is asked for: rows cost nothing.
/// Belongs to the table; GUI thread.
class RowToolTips final : public QObject
{
public:
    explicit RowToolTips(QTableWidget &table);

    /// The tool tip of a row.
    ///     "Status: ERROR\nImage File: <proj>/scr/a.psc"
    QString textOf(int row) const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QTableWidget &m_table;
};
