// The table of log entries.
#pragma once

#include <QCoreApplication>
#include <QString>

class ContentFit;
class QBrush;
class QFont;
class QTableWidget;

/// Shows log entries in a table, one row each, coloured and weighted by their level, and fits the
/// table to its contents after each. Only looks at the table, which must outlive it. GUI thread.
class LogView final
{
    Q_DECLARE_TR_FUNCTIONS(Vantrel) // its texts are those of the window

public:
    enum class NewRow { OnTop, AtBottom };

    /// Sets the table up: columns, header, how its rows are selected.
    explicit LogView(QTableWidget &table);

    void addEntry(NewRow place, const QString &level, const QString &time, const QString &message);

private:
    void writeCell(int column, const QFont &font, const QBrush &brush, const QString &text);

    QTableWidget &m_table;
    ContentFit &m_fit; ///< belongs to the table
    int m_row = 0;     ///< the one being filled
};
