// What the user can do with a table's rows.
#pragma once

#include <QObject>
#include <QString>

#include <functional>

class QAction;
class QMenu;
class QPoint;
class QTableWidget;

/// Gives a table a context menu that copies and saves it, and Ctrl+C. Copies are tab-separated,
/// with a line for the header; of a single cell only its text is copied. With `fileOfRow`, rows
/// offer to open their file and its folder: `open` is called with the path of either. Belongs to
/// the table; GUI thread.
class TableActions final : public QObject
{
    Q_OBJECT

public:
    /// Gives the path of the file that a row is about; empty if there is none.
    using FileOfRow = std::function<QString(int row)>;
    using Open = std::function<void(const QString &path)>;

    explicit TableActions(QTableWidget &table);
    TableActions(QTableWidget &table, FileOfRow fileOfRow, Open open);

    void copySelection() const;
    void copyRow(int row) const;
    void copyAll() const;
    /// Writes the table as it is shown; UTF-8. Returns an error text, empty for none; then what
    /// was in the file before is still there.
    QString writeTo(const QString &path) const;

    /// The menu for a row; -1 for the place below the rows. It belongs to the table.
    QMenu *menuFor(int row);

private:
    void setUpKeys();
    void showMenu(QPoint place);
    void addFileActions(QMenu &menu, int row);
    void saveAs();

    QTableWidget &m_table;
    FileOfRow m_fileOfRow;
    Open m_open;
};
