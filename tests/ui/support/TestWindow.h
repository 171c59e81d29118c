// A main window whose inside a test may look at.
#pragma once

#include "Vantrel.h"

#include <QStringList>

/// The main window with its members in the open.
class TestWindow final : public Vantrel
{
public:
    using Vantrel::allFilterNames;
    using Vantrel::converter;
    using Vantrel::filterNamesStale;
    using Vantrel::guiFunc;
    using Vantrel::logRowsOnTop;
    using Vantrel::notifier;
    using Vantrel::running;
    using Vantrel::selectedFilterNames;
    using Vantrel::ui;
    using Vantrel::watcher;

    /// The messages of the log table, the newest first.
    QStringList logMessages() const
    {
        QStringList messages;
        for (int row = 0; row < ui.logTable->rowCount(); ++row)
            messages += ui.logTable->item(row, 2)->text();
        return messages;
    }

    QStringList rowTexts(const QTableWidget *table, int row) const
    {
        QStringList texts;
        for (int column = 0; column < table->columnCount(); ++column) {
            const QTableWidgetItem *item = table->item(row, column);
            texts += item != nullptr ? item->text() : QStringLiteral("(no cell)");
        }
        return texts;
    }

    /// Whether the window is as it is between runs, once there was one.
    bool isIdle() const
    {
        return !running && ui.btnStart->text() == QLatin1String("Start Update") &&
               ui.btnBrowse->isEnabled() && ui.btnClose->isEnabled() && ui.btnChangedFiles->isEnabled() &&
               ui.btnLog->isEnabled() && ui.btnFilters->isEnabled() && ui.lnProjectPath->isEnabled() &&
               ui.progressBar->value() == 0 && ui.FileName->text().isEmpty();
    }

    bool isRunning() const
    {
        return running && ui.btnStart->text() == QLatin1String("Cancel") && !ui.btnBrowse->isEnabled() &&
               !ui.btnClose->isEnabled() && !ui.btnChangedFiles->isEnabled() && !ui.btnLog->isEnabled() &&
               ui.btnFilters->isEnabled() && ui.lnProjectPath->isEnabled();
    }
};
