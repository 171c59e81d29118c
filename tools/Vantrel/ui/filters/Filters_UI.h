// The dialog in which the user chooses shape files.
#pragma once

#include "ui_Filters_UI.h"

#include <QDialog>
#include <QSet>
#include <QString>

/// Offers names in a list in which each click selects or deselects one. Only what is selected in
/// the list when the dialog is accepted is chosen: a name that the search text hides is not.
/// Lives for one exec(). GUI thread.
class Filters_UI final : public QDialog
{
    Q_OBJECT

public:
    /// Copies both sets.
    Filters_UI(const QSet<QString> *allNames, const QSet<QString> *selectedNames, QWidget *parent);

    /// The chosen names once the dialog was accepted; until then the ones that it was given.
    const QSet<QString> &selectedNames() const { return m_selectedNames; }

public Q_SLOTS: // NOLINT(readability-redundant-access-specifiers)
    void onOkPressed();
    void onSelectAll();
    void onClearAll();
    void onFilter(QString text);

private:
    void connectSignals();
    void selectChosenNames();

    Ui::Filters_UI ui;
    QSet<QString> m_allNames;
    QSet<QString> m_selectedNames;
};
