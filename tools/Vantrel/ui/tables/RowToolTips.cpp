// What a table's rows say in full.
#include "RowToolTips.h"

#include "PlainToolTip.h"

#include <QHelpEvent>
#include <QTableWidget>
#include <QToolTip>

using namespace Qt::StringLiterals;

RowToolTips::RowToolTips(QTableWidget &table)
    : QObject(&table)
    , m_table(table)
{
    table.viewport()->installEventFilter(this);
}

QString RowToolTips::textOf(int row) const
{
    const QAbstractItemModel &model = *m_table.model();
    QStringList lines;
    for (int column = 0; column < model.columnCount(); ++column) {
        const QString text = model.index(row, column).data().toString();
        const QString head = model.headerData(column, Qt::Horizontal).toString().trimmed();
        if (!text.isEmpty())
            lines += head + ": "_L1 + text;
    }
    return lines.join(u'\n');
}

bool RowToolTips::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QObject::eventFilter(watched, event);
    const auto &help = *static_cast<QHelpEvent *>(event);
    const QModelIndex index = m_table.indexAt(help.pos());
    const QString text = index.isValid() ? asToolTip(textOf(index.row())) : QString();
    QToolTip::showText(help.globalPos(), text, m_table.viewport(), m_table.visualRect(index));
    return true;
}
