// What the user can do with a table's rows.
#include "TableActions.h"

#include "TableText.h"

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QMenu>
#include <QMessageBox>
#include <QSaveFile>
#include <QShortcut>
#include <QTableWidget>

#include <algorithm>
#include <set>

using namespace Qt::StringLiterals;

namespace {

void copy(const QString &text)
{
    QApplication::clipboard()->setText(text);
}

/// What of a table is selected: whole rows and columns, though some of their cells may not be.
struct Selection
{
    QList<int> rows;
    QList<int> columns;
};

Selection selectionOf(const QTableWidget &table)
{
    std::set<int> rows;
    std::set<int> columns;
    for (const QTableWidgetSelectionRange &range : table.selectedRanges()) {
        for (int row = range.topRow(); row <= range.bottomRow(); ++row)
            rows.insert(row);
        for (int column = range.leftColumn(); column <= range.rightColumn(); ++column)
            columns.insert(column);
    }
    Selection selection;
    selection.rows = QList<int>(rows.begin(), rows.end());
    for (const int column : shownColumns(table)) {
        if (columns.contains(column))
            selection.columns += column;
    }
    return selection;
}

} // namespace

TableActions::TableActions(QTableWidget &table)
    : TableActions(table, {}, {})
{
}

TableActions::TableActions(QTableWidget &table, FileOfRow fileOfRow, Open open)
    : QObject(&table)
    , m_table(table)
    , m_fileOfRow(std::move(fileOfRow))
    , m_open(std::move(open))
{
    table.setContextMenuPolicy(Qt::CustomContextMenu);
    connect(&table, &QWidget::customContextMenuRequested, this, &TableActions::showMenu);
    setUpKeys();
}

/// The table itself would copy the current cell, selected or not.
void TableActions::setUpKeys()
{
    auto *copyKey = new QShortcut(QKeySequence::Copy, &m_table);
    copyKey->setContext(Qt::WidgetShortcut);
    connect(copyKey, &QShortcut::activated, this, &TableActions::copySelection);
}

// --- Copies ---

void TableActions::copySelection() const
{
    const Selection selection = selectionOf(m_table);
    const TextRows texts = textRows(m_table, selection.rows, selection.columns);
    if (selection.rows.isEmpty() || selection.columns.isEmpty())
        return;
    const bool isOneCell = selection.rows.size() == 1 && selection.columns.size() == 1;
    copy(isOneCell ? texts.at(1).first() : tabSeparated(texts));
}

void TableActions::copyRow(int row) const
{
    if (row < 0)
        return;
    copy(tabSeparated(textRows(m_table, {row}, shownColumns(m_table))));
}

void TableActions::copyAll() const
{
    copy(tabSeparated(allTextRows(m_table)));
}

// --- Saving ---

QString TableActions::writeTo(const QString &path) const
{
    // The file is replaced, which would turn a device into a file.
    const QFileInfo before(path);
    if (before.exists() && !before.isFile())
        return tr("this is not a file");
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return file.errorString();
    file.write(commaSeparated(allTextRows(m_table)).toUtf8());
    // What is still to be written is written here: commit() would forget why it cannot be.
    if (!file.flush())
        return file.errorString();
    return file.commit() ? QString() : file.errorString();
}

void TableActions::saveAs()
{
    const QString path = QFileDialog::getSaveFileName(&m_table, tr("Save Table"), u"table.csv"_s,
                                                      tr("Comma-separated values (*.csv)"), nullptr,
                                                      QFileDialog::DontUseNativeDialog);
    if (path.isEmpty())
        return;
    const QString error = writeTo(path);
    if (error.isEmpty())
        return;
    QMessageBox box(QMessageBox::Critical, tr("Vantrel Info"),
                    tr("File %1 could not be written: %2").arg(path, error), QMessageBox::Ok, &m_table);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

// --- Menu ---

QMenu *TableActions::menuFor(int row)
{
    auto *menu = new QMenu(&m_table);
    const auto add = [&](const QString &text, auto action) {
        QAction *entry = menu->addAction(text);
        connect(entry, &QAction::triggered, this, action);
        return entry;
    };
    QAction *copyEntry = add(tr("Copy"), [this] { copySelection(); });
    copyEntry->setShortcut(QKeySequence::Copy);
    copyEntry->setEnabled(m_table.selectionModel()->hasSelection());
    // A run may put rows above this one before the user chooses.
    const QPersistentModelIndex rowStart = m_table.model()->index(row, 0);
    add(tr("Copy Row"), [this, rowStart] { copyRow(rowStart.row()); })->setEnabled(row >= 0);
    add(tr("Copy All"), [this] { copyAll(); })->setEnabled(m_table.rowCount() > 0);
    if (m_fileOfRow)
        addFileActions(*menu, row);
    menu->addSeparator();
    add(tr("Save As..."), [this] { saveAs(); })->setEnabled(m_table.rowCount() > 0);
    return menu;
}

void TableActions::addFileActions(QMenu &menu, int row)
{
    const QString file = row >= 0 ? m_fileOfRow(row) : QString();
    menu.addSeparator();
    QAction *openFile = menu.addAction(tr("Open Image File"));
    connect(openFile, &QAction::triggered, this, [this, file] { m_open(file); });
    QAction *openFolder = menu.addAction(tr("Open Containing Folder"));
    connect(openFolder, &QAction::triggered, this, [this, file] { m_open(QFileInfo(file).path()); });
    openFile->setEnabled(!file.isEmpty());
    openFolder->setEnabled(!file.isEmpty());
}

void TableActions::showMenu(QPoint place)
{
    QMenu *menu = menuFor(m_table.indexAt(place).row());
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(m_table.viewport()->mapToGlobal(place));
}
