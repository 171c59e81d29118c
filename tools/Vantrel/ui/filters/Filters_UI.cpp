// The dialog in which the user chooses shape files.
#include "Filters_UI.h"

#include <QShortcut>

Filters_UI::Filters_UI(const QSet<QString> *allNames, const QSet<QString> *selectedNames, QWidget *parent)
    : QDialog(parent)
    , m_allNames(*allNames)
    , m_selectedNames(*selectedNames)
{
    ui.setupUi(this);
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    connectSignals();
    ui.btnOkCancel->button(QDialogButtonBox::Ok)
        ->setToolTip(
            tr("Chooses the selected names for the next run; not those that the search text hides."));
    ui.btnOkCancel->button(QDialogButtonBox::Cancel)
        ->setToolTip(tr("Leaves the choice as it was when this dialog opened."));

    ui.listWidget->addItems(m_allNames.values());
    ui.listWidget->sortItems(Qt::AscendingOrder);
    selectChosenNames();
}

void Filters_UI::connectSignals()
{
    connect(ui.btnOkCancel, &QDialogButtonBox::accepted, this, &Filters_UI::onOkPressed);
    connect(ui.btnOkCancel, &QDialogButtonBox::rejected, this, &Filters_UI::reject);
    connect(ui.btnSelectAll, &QPushButton::clicked, this, &Filters_UI::onSelectAll);
    connect(ui.btnClearAll, &QPushButton::clicked, this, &Filters_UI::onClearAll);
    connect(ui.lineFilter, &QLineEdit::textEdited, this, &Filters_UI::onFilter);

    const auto *searchKey = new QShortcut(QKeySequence::Find, this);
    connect(searchKey, &QShortcut::activated, ui.lineFilter, [this] {
        ui.lineFilter->setFocus(Qt::ShortcutFocusReason);
        ui.lineFilter->selectAll();
    });
}

/// All at once: items that are selected one by one take quadratic time.
void Filters_UI::selectChosenNames()
{
    const QAbstractItemModel &model = *ui.listWidget->model();
    QItemSelection chosen;
    for (int row = 0; row < ui.listWidget->count(); ++row) {
        if (!m_selectedNames.contains(ui.listWidget->item(row)->text()))
            continue;
        const QModelIndex index = model.index(row, 0);
        if (!chosen.isEmpty() && chosen.last().bottom() == row - 1)
            chosen.last() = QItemSelectionRange(chosen.last().topLeft(), index);
        else
            chosen.append(QItemSelectionRange(index));
    }
    ui.listWidget->selectionModel()->select(chosen, QItemSelectionModel::Select);
}

void Filters_UI::onOkPressed()
{
    m_selectedNames.clear();
    const QList<QListWidgetItem *> selectedItems = ui.listWidget->selectedItems();
    for (const QListWidgetItem *item : selectedItems)
        m_selectedNames.insert(item->text());
    accept();
}

void Filters_UI::onSelectAll()
{
    ui.listWidget->selectAll();
}

void Filters_UI::onClearAll()
{
    ui.listWidget->clearSelection();
}

void Filters_UI::onFilter(QString text)
{
    ui.listWidget->clear();
    for (const QString &name : std::as_const(m_allNames)) {
        if (name.contains(text, Qt::CaseInsensitive))
            ui.listWidget->addItem(name);
    }
    ui.listWidget->sortItems(Qt::AscendingOrder);
}
