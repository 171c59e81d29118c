// The table of replaced shapes.
#pragma once

#include "ChangeLog.h"
#include "STBlock.h"
#include "ui_Vantrel.h"

#include <QBrush>
#include <QFont>
#include <QString>
#include <QTimer>

/// Shows the reports of a run in the table of replaced shapes, the newest on top, and appends
/// them to the change log. Only looks at the window's widgets, which must outlive it. GUI thread.
class CGuiFunc
{
public:
    /// How the cells of one report look.
    struct RowStyle
    {
        bool isError = false;
        QBrush brush{Qt::black};
        QFont font;
    };

    explicit CGuiFunc(const Ui_VantrelClass &widgets);
    virtual ~CGuiFunc();
    Q_DISABLE_COPY_MOVE(CGuiFunc)

    /// Adds a report as row 0. Columns are fitted to their contents, but not more often than the
    /// timer allows: a run reports thousands of objects.
    void addShapeRow(const STBlock &block);
    /// Makes one cell in row 0, or else in the last row; `insertRow` adds that row first.
    void setCell(int column, const RowStyle &style, const QString &text, bool insertRow, bool onTop);
    /// Errors are magenta, all else is black.
    void statusStyle(int status, RowStyle &style);

    QString statusText(int status);
    void writeChangeLog(const STBlock &block, const QString &path);

private:
    void resizeColumns();

    Ui_VantrelClass ui;
    QTimer timer; ///< runs while the columns were fitted a moment ago
    ChangeLog changeLog;
};
