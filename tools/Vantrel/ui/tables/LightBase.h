// Tables that stay readable in a dark theme.
#pragma once

#include <QObject>

class QTableWidget;

/// Keeps the ground of a table light where the theme's is dark, by its palette: the colours of
/// its rows are made for a light one. Follows the theme. Belongs to the table; GUI thread.
class LightBase final : public QObject
{
public:
    explicit LightBase(QTableWidget &table);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void adapt();

    QTableWidget &m_table;
};
