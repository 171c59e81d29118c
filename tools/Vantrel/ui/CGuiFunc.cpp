// The table of replaced shapes.
#include "CGuiFunc.h"

#include "SortingPause.h"
#include "TextSizeDelegate.h"

#include <QStringList>

#include <chrono>

using namespace Qt::StringLiterals;

namespace {

/// A path from the project's image folder on.
///     "/plants/north/scr/a/b.psc"  ->  "<proj>/scr/a/b.psc"
QString withoutProjectDir(const QString &imageFile)
{
    const qsizetype imageFolder = imageFile.indexOf("/scr/"_L1);
    return imageFolder < 0 ? imageFile : "<proj>"_L1 + imageFile.sliced(imageFolder);
}

QString cornersOf(const QRect &rect)
{
    return u"%1, %2, %3, %4"_s.arg(rect.left()).arg(rect.top()).arg(rect.right()).arg(rect.bottom());
}

/// The texts of a report's cells, in the order of the columns.
QStringList cellTexts(const STBlock &block, const QString &status)
{
    const QString imageObject = withoutTag(block.imageObject);
    const QString shapeObject = withoutTag(block.shapeObject);
    return {status,          withoutProjectDir(block.imageFile),
            block.shapeFile, block.error.isEmpty() ? QString() : cornersOf(block.rect3),
            imageObject,     shapeObject == imageObject ? QString() : shapeObject,
            block.initText,  block.error};
}

} // namespace

CGuiFunc::CGuiFunc(const Ui_VantrelClass &widgets)
    : ui(widgets)
{
    ui.rplShapeTable->setItemDelegate(new TextSizeDelegate(ui.rplShapeTable));
}

CGuiFunc::~CGuiFunc()
{
    timer.stop();
}

void CGuiFunc::addShapeRow(const STBlock &block)
{
    RowStyle style;
    statusStyle(block.status, style);

    const QStringList texts = cellTexts(block, statusText(block.status));
    for (int column = 0; column < texts.size(); ++column)
        setCell(column, style, texts.at(column), column == 0, true);

    if (!timer.isActive())
        resizeColumns();
}

void CGuiFunc::setCell(int column, const RowStyle &style, const QString &text, bool insertRow, bool onTop)
{
    auto *item = new QTableWidgetItem(text);
    item->setFont(style.font);
    item->setForeground(style.brush);

    QTableWidget &table = *ui.rplShapeTable;
    const SortingPause pause(table);
    if (insertRow)
        table.insertRow(onTop ? 0 : table.rowCount());
    table.setItem(onTop ? 0 : table.rowCount() - 1, column, item);
}

void CGuiFunc::statusStyle(int status, RowStyle &style)
{
    style.isError = status == ReportStatus::Error;
    style.brush = QBrush(style.isError ? Qt::magenta : Qt::black);
}

QString CGuiFunc::statusText(int status)
{
    return ::statusText(status);
}

void CGuiFunc::writeChangeLog(const STBlock &block, const QString &path)
{
    changeLog.append(block, path);
}

void CGuiFunc::resizeColumns()
{
    using namespace std::chrono_literals;
    ui.rplShapeTable->clearSelection();
    ui.rplShapeTable->resizeColumnsToContents();
    timer.setSingleShot(true);
    timer.start(200ms);
}
