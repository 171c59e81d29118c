// A table as text for other programs.
#pragma once

#include <QList>
#include <QString>

class QTableWidget;

/// Rows of cell texts as the user sees them: without hidden columns, in the order of the header.
using TextRows = QList<QStringList>;

/// The columns that are shown, in the order of the header.
QList<int> shownColumns(const QTableWidget &table);

/// The header's texts, then the texts of the given rows in their order; of `columns` only.
TextRows textRows(const QTableWidget &table, const QList<int> &rows, const QList<int> &columns);
/// The header's texts, then all rows as they are sorted.
TextRows allTextRows(const QTableWidget &table);

/// One line a row, cells separated by tabs. A tab or line break in a cell becomes a blank.
///     {{"a", "b"}, {"1", ""}}  ->  "a\tb\n1\t\n"
QString tabSeparated(const TextRows &rows);

/// One line a row as RFC 4180 has it: separated by commas, ended by CR LF, and a cell with a comma
/// or a quotation mark in quotation marks; so is an empty cell that is alone in its row. Names come
/// from anywhere: control characters are spelt out, and an apostrophe stands before a cell that a
/// spreadsheet would take for a formula.
///     {{"a", "1, \"2\""}}  ->  "a,\"1, \"\"2\"\"\"\r\n"
QString commaSeparated(const TextRows &rows);
