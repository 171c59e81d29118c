// Which columns of a table are shown, and in which order.
#include "TableLayout.h"

#include "TableText.h"
#include "UserSettings.h"

#include <QHeaderView>
#include <QMenu>
#include <QTableWidget>

#include <algorithm>
#include <numeric>

using namespace Qt::StringLiterals;

namespace {

QString orderKey(const QTableWidget &table)
{
    return "columns/"_L1 + table.objectName() + "Order"_L1;
}

QString hiddenKey(const QTableWidget &table)
{
    return "columns/"_L1 + table.objectName() + "Hidden"_L1;
}

QStringList asTexts(const QList<int> &numbers)
{
    QStringList texts;
    for (const int number : numbers)
        texts += QString::number(number);
    return texts;
}

/// What is no number becomes -1, which is no column.
QList<int> asNumbers(const QStringList &texts)
{
    QList<int> numbers;
    for (const QString &text : texts) {
        bool isNumber = false;
        const int number = text.toInt(&isNumber);
        numbers += isNumber ? number : -1;
    }
    return numbers;
}

QList<int> columnsInOrder(int count)
{
    QList<int> columns(count);
    std::iota(columns.begin(), columns.end(), 0);
    return columns;
}

QList<int> columnOrder(const QHeaderView &header)
{
    QList<int> order;
    for (int place = 0; place < header.count(); ++place)
        order += header.logicalIndex(place);
    return order;
}

QList<int> hiddenColumns(const QHeaderView &header)
{
    QList<int> hidden;
    for (int column = 0; column < header.count(); ++column) {
        if (header.isSectionHidden(column))
            hidden += column;
    }
    return hidden;
}

/// Keeps a list, or forgets it where it is as in a table that nobody changed.
void keep(QSettings &settings, const QString &key, const QList<int> &columns, const QList<int> &unchanged)
{
    if (columns == unchanged)
        settings.remove(key);
    else
        settings.setValue(key, asTexts(columns));
}

} // namespace

TableLayout::TableLayout(QTableWidget &table)
    : QObject(&table)
    , m_table(table)
{
    restore();

    QHeaderView &header = *table.horizontalHeader();
    header.setSectionsMovable(true);
    connect(&header, &QHeaderView::sectionMoved, this, &TableLayout::save);
    header.setContextMenuPolicy(Qt::CustomContextMenu);
    connect(&header, &QWidget::customContextMenuRequested, this, [this, &header](QPoint place) {
        QMenu *menu = columnMenu();
        menu->setAttribute(Qt::WA_DeleteOnClose);
        menu->popup(header.mapToGlobal(place));
    });
}

void TableLayout::restore()
{
    QHeaderView &header = *m_table.horizontalHeader();
    const UserSettings settings;
    const QList<int> columns = columnsInOrder(header.count());

    const QList<int> order = asNumbers(settings.value(orderKey(m_table)).toStringList());
    if (std::is_permutation(order.begin(), order.end(), columns.begin(), columns.end())) {
        for (const int place : columns)
            header.moveSection(header.visualIndex(order.at(place)), place);
    }
    const QList<int> hidden = asNumbers(settings.value(hiddenKey(m_table)).toStringList());
    for (const int column : hidden) {
        if (columns.contains(column) && shownColumns(m_table).size() > 1)
            header.hideSection(column);
    }
}

void TableLayout::save() const
{
    const QHeaderView &header = *m_table.horizontalHeader();
    UserSettings settings;
    keep(settings, orderKey(m_table), columnOrder(header), columnsInOrder(header.count()));
    keep(settings, hiddenKey(m_table), hiddenColumns(header), {});
}

void TableLayout::setColumnShown(int column, bool isShown)
{
    if (!isShown && shownColumns(m_table) == QList<int>{column})
        return;
    m_table.setColumnHidden(column, !isShown);
    // While it was hidden, nothing fitted it.
    if (isShown)
        m_table.resizeColumnToContents(column);
    save();
}

QMenu *TableLayout::columnMenu()
{
    auto *menu = new QMenu(&m_table);
    const QList<int> shown = shownColumns(m_table);
    for (const int column : columnOrder(*m_table.horizontalHeader())) {
        QAction *entry = menu->addAction(m_table.horizontalHeaderItem(column)->text().trimmed());
        entry->setCheckable(true);
        entry->setChecked(shown.contains(column));
        entry->setEnabled(shown != QList<int>{column});
        connect(entry, &QAction::toggled, this,
                [this, column](bool isShown) { setColumnShown(column, isShown); });
    }
    return menu;
}
