// What the window's tables have in common.
#pragma once

class QTableWidget;

/// Lets the user sort the table's rows and arrange its columns, tells rows in full, and keeps them
/// readable in a dark theme. The columns must be there. What it makes belongs to the table.
void setUpTable(QTableWidget &table);
