// What the window's tables have in common.
#include "TableSetUp.h"

#include "LightBase.h"
#include "RowToolTips.h"
#include "TableLayout.h"

#include <QHeaderView>
#include <QTableWidget>

void setUpTable(QTableWidget &table)
{
    // No column is marked as sorted before the user sorts one.
    constexpr int noColumn = -1;
    table.horizontalHeader()->setSortIndicator(noColumn, Qt::AscendingOrder);
    table.setSortingEnabled(true);
    new TableLayout(table);
    new RowToolTips(table);
    new LightBase(table);
}
