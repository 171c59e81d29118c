// The table of replaced shapes.
#include "CGuiFunc.h"
#include "Converter.h"
#include "TestProject.h"
#include "TestSuite.h"

#include <QApplication>
#include <QHeaderView>
#include <QProxyStyle>
#include <QRandomGenerator>
#include <QStyledItemDelegate>
#include <QTest>
#include <QWidget>

#include <memory>
#include <type_traits>

using namespace Qt::StringLiterals;

namespace {

/// A form with its table of replaced shapes.
struct Form
{
    Form()
    {
        ui.setupUi(&window);
        guiFunc = std::make_unique<CGuiFunc>(ui);
    }

    QTableWidget &table() const { return *ui.rplShapeTable; }
    QString text(int row, int column) const
    {
        const QTableWidgetItem *item = table().item(row, column);
        return item != nullptr ? item->text() : u"(no cell)"_s;
    }
    QStringList texts(int row) const
    {
        QStringList texts;
        for (int column = 0; column < table().columnCount(); ++column)
            texts += text(row, column);
        return texts;
    }

    QWidget window;
    Ui_VantrelClass ui;
    std::unique_ptr<CGuiFunc> guiFunc;
};

Converter::STBlock report()
{
    Converter::STBlock block;
    block.imageFile = u"/home/u/proj/scr/a/b.psc"_s;
    block.shapeFile = u"pump.plb"_s;
    block.initText = u"Intake/P101"_s;
    block.imageObject = u"LIB;P101"_s;
    block.shapeObject = u"LIB;Pump"_s;
    return block;
}

/// A report whose cells all tell its number, so that a cell in another row is found out.
Converter::STBlock numberedReport(int number)
{
    // Neither growing nor falling, as texts: sorting has something to do.
    const QString mark = QString::number(number * 7919 % 1000) + u'-' + QString::number(number);
    Converter::STBlock block;
    block.status = number % 3;
    block.imageFile = u"/p/scr/%1.psc"_s.arg(mark);
    block.shapeFile = mark + ".plb"_L1;
    block.imageObject = "LIB;"_L1 + mark;
    block.shapeObject = u"LIB;shape "_s + mark;
    block.initText = u"prefix "_s + mark;
    block.error = u"error "_s + mark;
    block.rect3 = QRect(QPoint(number, -number), QPoint(number + 1, number + 2));
    return block;
}

QStringList numberedTexts(int number)
{
    const Converter::STBlock block = numberedReport(number);
    return {statusText(block.status),
            "<proj>"_L1 + block.imageFile.sliced(2),
            block.shapeFile,
            u"%1, %2, %3, %4"_s.arg(number).arg(-number).arg(number + 1).arg(number + 2),
            block.imageObject.sliced(4),
            block.shapeObject.sliced(4),
            block.initText,
            block.error};
}

/// Counts how often a cell is measured.
class CountingStyle final : public QProxyStyle
{
public:
    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &size,
                           const QWidget *widget) const override
    {
        measuredCells += type == CT_ItemViewItem ? 1 : 0;
        return QProxyStyle::sizeFromContents(type, option, size, widget);
    }

    mutable int measuredCells = 0;
};

/// The sizes of columns and rows that fit their contents.
QList<int> fittingSizes(QTableWidget &table)
{
    table.resizeColumnsToContents();
    table.resizeRowsToContents();
    QList<int> sizes;
    for (int column = 0; column < table.columnCount(); ++column)
        sizes += table.columnWidth(column);
    for (int row = 0; row < table.rowCount(); ++row)
        sizes += table.rowHeight(row);
    return sizes;
}

/// The same, with every cell measured.
QList<int> fittingSizesWithoutMemory(QTableWidget &table)
{
    QAbstractItemDelegate *delegate = table.itemDelegate();
    QStyledItemDelegate plain;
    table.setItemDelegate(&plain);
    const QList<int> sizes = fittingSizes(table);
    table.setItemDelegate(delegate);
    return sizes;
}

} // namespace

class TestReplacedShapes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isPolymorphic();
    void fillsTheColumns();
    void namesTheStatus_data();
    void namesTheStatus();
    void showsPathsFromTheProjectOn_data();
    void showsPathsFromTheProjectOn();
    void showsThePositionOfErrorsOnly();
    void leavesOutTheTagOfNames_data();
    void leavesOutTheTagOfNames();
    void showsTextsAsTheyAre();
    void coloursRowsByStatus();
    void usesTheApplicationsFont();
    void stylesByStatus();
    void setsCells_data();
    void setsCells();
    void setsCellsWhereTheTableIsSorted();
    void keepsTheNewestReportInTheTopRow_data();
    void keepsTheNewestReportInTheTopRow();
    void sortsWhenAskedTo();
    void fitsColumnsOnlyNowAndThen();
    void clearsTheSelectionWhenItFitsColumns();
    void measuresEachTextOnce();
    void fitsAsIfEachCellWasMeasured();
    void measuresAnewInAnotherFont();
    void writesTheChangeLog();
};

void TestReplacedShapes::isPolymorphic()
{
    QVERIFY(std::has_virtual_destructor_v<CGuiFunc>);
    QVERIFY(!(std::is_base_of_v<QObject, CGuiFunc>));
}

void TestReplacedShapes::fillsTheColumns()
{
    const Form form;
    form.guiFunc->addShapeRow(report());
    QCOMPARE(form.table().rowCount(), 1);
    QCOMPARE(form.texts(0), QStringList({u"REPLACE"_s, u"<proj>/scr/a/b.psc"_s, u"pump.plb"_s, u""_s,
                                         u"P101"_s, u"Pump"_s, u"Intake/P101"_s, u""_s}));
}

void TestReplacedShapes::namesTheStatus_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("word");
    QTest::newRow("0") << 0 << u"REPLACE"_s;
    QTest::newRow("1") << 1 << u"NO REPLACE"_s;
    QTest::newRow("2") << 2 << u"ERROR"_s;
    QTest::newRow("3") << 3 << u"REPLACE"_s;
    QTest::newRow("-1") << -1 << u"REPLACE"_s;
}

void TestReplacedShapes::namesTheStatus()
{
    QFETCH(const int, status);
    QFETCH(const QString, word);
    const Form form;
    Converter::STBlock block = report();
    block.status = status;
    form.guiFunc->addShapeRow(block);
    QCOMPARE(form.text(0, 0), word);
    QCOMPARE(form.guiFunc->statusText(status), word);
}

void TestReplacedShapes::showsPathsFromTheProjectOn_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("shown");
    QTest::newRow("in a project") << u"/home/u/proj/scr/a/b.psc"_s << u"<proj>/scr/a/b.psc"_s;
    QTest::newRow("no image folder") << u"/home/u/a.psc"_s << u"/home/u/a.psc"_s;
    QTest::newRow("upper case") << u"/home/u/SCR/a.psc"_s << u"/home/u/SCR/a.psc"_s;
    QTest::newRow("the first of two") << u"/p/scr/q/scr/a.psc"_s << u"<proj>/scr/q/scr/a.psc"_s;
    QTest::newRow("longer folder name") << u"/p/scripts/a.psc"_s << u"/p/scripts/a.psc"_s;
    QTest::newRow("at the beginning") << u"/scr/a.psc"_s << u"<proj>/scr/a.psc"_s;
    QTest::newRow("empty") << u""_s << u""_s;
}

void TestReplacedShapes::showsPathsFromTheProjectOn()
{
    QFETCH(const QString, path);
    QFETCH(const QString, shown);
    const Form form;
    Converter::STBlock block = report();
    block.imageFile = path;
    form.guiFunc->addShapeRow(block);
    QCOMPARE(form.text(0, 1), shown);
}

void TestReplacedShapes::showsThePositionOfErrorsOnly()
{
    const Form form;
    Converter::STBlock block = report();
    block.rect3 = QRect(QPoint(-5, 7), QPoint(20, -30));
    form.guiFunc->addShapeRow(block);
    QCOMPARE(form.text(0, 3), u""_s);

    block.status = 2; // the text decides, not the status
    form.guiFunc->addShapeRow(block);
    QCOMPARE(form.text(0, 3), u""_s);

    block.status = 0;
    block.error = u"x"_s;
    form.guiFunc->addShapeRow(block);
    QCOMPARE(form.text(0, 3), u"-5, 7, 20, -30"_s);

    Converter::clearBlock(block);
    block.error = u"x"_s;
    form.guiFunc->addShapeRow(block);
    QCOMPARE(form.text(0, 3), u"-99999, -99999, 0, 0"_s);

    block.rect3 = QRect();
    form.guiFunc->addShapeRow(block);
    QCOMPARE(form.text(0, 3), u"0, 0, -1, -1"_s);
}

void TestReplacedShapes::leavesOutTheTagOfNames_data()
{
    QTest::addColumn<QString>("imageObject");
    QTest::addColumn<QString>("shapeObject");
    QTest::addColumn<QString>("imageText");
    QTest::addColumn<QString>("shapeText");
    QTest::newRow("different") << u"LIB;a"_s << u"LIB;b"_s << u"a"_s << u"b"_s;
    QTest::newRow("equal") << u"LIB;a"_s << u"LIB;a"_s << u"a"_s << u""_s;
    QTest::newRow("equal but for the tag") << u"ABC;a"_s << u"LIB;a"_s << u"a"_s << u""_s;
    QTest::newRow("letter case") << u"LIB;a"_s << u"LIB;A"_s << u"a"_s << u"A"_s;
    QTest::newRow("longer by one") << u"LIB;a"_s << u"LIB;ab"_s << u"a"_s << u"ab"_s;
    QTest::newRow("four characters") << u"LIB;"_s << u"LIB;x"_s << u""_s << u"x"_s;
    QTest::newRow("three characters") << u"LIB"_s << u"LIX"_s << u"LIB"_s << u"LIX"_s;
    QTest::newRow("no shape") << u"LIB;a"_s << u""_s << u"a"_s << u""_s;
    QTest::newRow("nothing") << u""_s << u""_s << u""_s << u""_s;
}

void TestReplacedShapes::leavesOutTheTagOfNames()
{
    QFETCH(const QString, imageObject);
    QFETCH(const QString, shapeObject);
    const Form form;
    Converter::STBlock block = report();
    block.imageObject = imageObject;
    block.shapeObject = shapeObject;
    form.guiFunc->addShapeRow(block);
    QTEST(form.text(0, 4), "imageText");
    QTEST(form.text(0, 5), "shapeText");
}

void TestReplacedShapes::showsTextsAsTheyAre()
{
    const Form form;
    Converter::STBlock block = report();
    block.imageFile = u"/p/scr/<b>%1</b>.psc"_s;
    block.shapeFile = u"%2 & <i>x</i>.plb"_s;
    block.initText = u" %3 "_s;
    block.error = u"%4\n<b>"_s;
    form.guiFunc->addShapeRow(block);
    QCOMPARE(form.texts(0), QStringList({u"REPLACE"_s, u"<proj>/scr/<b>%1</b>.psc"_s, block.shapeFile,
                                         u"0, 0, -1, -1"_s, u"P101"_s, u"Pump"_s, u" %3 "_s, u"%4\n<b>"_s}));
}

void TestReplacedShapes::coloursRowsByStatus()
{
    const Form form;
    for (const int status : {0, 1, 2}) {
        Converter::STBlock block = report();
        block.status = status;
        form.guiFunc->addShapeRow(block);
        const QBrush expected(status == 2 ? Qt::magenta : Qt::black);
        for (int column = 0; column < 8; ++column)
            QCOMPARE(form.table().item(0, column)->foreground(), expected);
    }
}

void TestReplacedShapes::usesTheApplicationsFont()
{
    const Form form;
    QFont tableFont = form.table().font();
    tableFont.setPointSize(tableFont.pointSize() + 7);
    tableFont.setBold(true);
    form.table().setFont(tableFont);
    form.guiFunc->addShapeRow(numberedReport(2));
    for (int column = 0; column < 8; ++column)
        QCOMPARE(form.table().item(0, column)->font(), QFont());
}

void TestReplacedShapes::stylesByStatus()
{
    const Form form;
    CGuiFunc::RowStyle style;
    form.guiFunc->statusStyle(2, style);
    QVERIFY(style.isError);
    QCOMPARE(style.brush, QBrush(Qt::magenta, Qt::SolidPattern));
    for (const int status : {0, 1, 3, -2}) { // each from a style that was an error's
        form.guiFunc->statusStyle(status, style);
        QVERIFY(!style.isError);
        QCOMPARE(style.brush, QBrush(Qt::black, Qt::SolidPattern));
        form.guiFunc->statusStyle(2, style);
    }
}

void TestReplacedShapes::setsCells_data()
{
    QTest::addColumn<bool>("insertRow");
    QTest::addColumn<bool>("onTop");
    QTest::addColumn<QStringList>("firstColumn");
    QTest::newRow("new row on top") << true << true << QStringList{u"new"_s, u"a"_s, u"b"_s};
    QTest::newRow("new row at the end") << true << false << QStringList{u"a"_s, u"b"_s, u"new"_s};
    QTest::newRow("top row") << false << true << QStringList{u"new"_s, u"b"_s};
    QTest::newRow("last row") << false << false << QStringList{u"a"_s, u"new"_s};
}

void TestReplacedShapes::setsCells()
{
    QFETCH(const bool, insertRow);
    QFETCH(const bool, onTop);
    const Form form;
    CGuiFunc::RowStyle style;
    style.brush = QBrush(Qt::green);
    style.font.setItalic(true);
    form.guiFunc->setCell(0, style, u"a"_s, true, false);
    form.guiFunc->setCell(0, style, u"b"_s, true, false);

    form.guiFunc->setCell(0, style, u"new"_s, insertRow, onTop);
    QStringList firstColumn;
    for (int row = 0; row < form.table().rowCount(); ++row)
        firstColumn += form.text(row, 0);
    QTEST(firstColumn, "firstColumn");
    const QTableWidgetItem *item = form.table().item(onTop ? 0 : form.table().rowCount() - 1, 0);
    QCOMPARE(item->foreground(), QBrush(Qt::green));
    QCOMPARE(item->font(), style.font);
}

void TestReplacedShapes::setsCellsWhereTheTableIsSorted()
{
    const Form form;
    form.table().sortByColumn(0, Qt::AscendingOrder);
    const CGuiFunc::RowStyle style;
    for (const QString &text : {u"b"_s, u"c"_s, u"a"_s}) {
        form.guiFunc->setCell(0, style, text, true, true);
        form.guiFunc->setCell(1, style, text + text, false, true);
        QCOMPARE(form.text(0, 0), text);
        QCOMPARE(form.text(0, 1), text + text);
    }
}

void TestReplacedShapes::keepsTheNewestReportInTheTopRow_data()
{
    QTest::addColumn<int>("sortedColumn");
    QTest::addColumn<Qt::SortOrder>("order");
    for (int column = -1; column < 8; ++column) {
        QTest::addRow("column %d, ascending", column) << column << Qt::AscendingOrder;
        QTest::addRow("column %d, descending", column) << column << Qt::DescendingOrder;
    }
}

void TestReplacedShapes::keepsTheNewestReportInTheTopRow()
{
    QFETCH(const int, sortedColumn);
    QFETCH(const Qt::SortOrder, order);
    constexpr int count = 300;
    const Form form;
    form.table().sortByColumn(sortedColumn, order);
    for (int number = 0; number < count; ++number) {
        form.guiFunc->addShapeRow(numberedReport(number));
        QCOMPARE(form.texts(0), numberedTexts(number));
    }
    QCOMPARE(form.table().rowCount(), count);
    for (int row = 0; row < count; ++row)
        QCOMPARE(form.texts(row), numberedTexts(count - 1 - row));

    QVERIFY(form.table().isSortingEnabled());
    QVERIFY(form.table().horizontalHeader()->isSortIndicatorShown());
    QCOMPARE(form.table().horizontalHeader()->sortIndicatorSection(), sortedColumn);
    QCOMPARE(form.table().horizontalHeader()->sortIndicatorOrder(), order);
}

void TestReplacedShapes::sortsWhenAskedTo()
{
    Form form;
    form.window.resize(2000, 800);
    form.window.show();
    for (int number = 0; number < 100; ++number)
        form.guiFunc->addShapeRow(numberedReport(number));
    form.table().resizeColumnsToContents();

    QHeaderView &header = *form.table().horizontalHeader();
    const auto click = [&](int column) {
        QTest::mouseClick(header.viewport(), Qt::LeftButton, {},
                          {header.sectionViewportPosition(column) + header.sectionSize(column) / 2, 5});
    };
    const auto isSorted = [&](int column, Qt::SortOrder order) {
        for (int row = 1; row < form.table().rowCount(); ++row) {
            const int comparison = QString::compare(form.text(row - 1, column), form.text(row, column));
            if (order == Qt::AscendingOrder ? comparison > 0 : comparison < 0)
                return false;
        }
        return true;
    };
    for (int column = 0; column < 7; ++column) {
        click(column);
        QCOMPARE(header.sortIndicatorSection(), column);
        QVERIFY(isSorted(column, header.sortIndicatorOrder()));
        const Qt::SortOrder order = header.sortIndicatorOrder();
        form.guiFunc->addShapeRow(numberedReport(500 + column));
        QCOMPARE(form.texts(0), numberedTexts(500 + column));
        click(column);
        QVERIFY(header.sortIndicatorOrder() != order);
        QVERIFY(isSorted(column, header.sortIndicatorOrder()));
    }
}

void TestReplacedShapes::fitsColumnsOnlyNowAndThen()
{
    const Form form;
    constexpr int errorColumn = 7;
    Converter::STBlock block = report();
    form.guiFunc->addShapeRow(block);
    const int narrow = form.table().columnWidth(errorColumn);
    block.error = QString(200, u'x');
    form.guiFunc->addShapeRow(block);
    QCOMPARE(form.table().columnWidth(errorColumn), narrow); // a moment ago it was fitted

    // Not before the timer's time has passed, then with the first row.
    QTRY_VERIFY((form.guiFunc->addShapeRow(block), form.table().columnWidth(errorColumn) > narrow));
    const int wide = form.table().columnWidth(errorColumn);
    form.table().resizeColumnsToContents();
    QCOMPARE(form.table().columnWidth(errorColumn), wide);
}

void TestReplacedShapes::clearsTheSelectionWhenItFitsColumns()
{
    const Form form;
    form.guiFunc->addShapeRow(report());
    form.table().selectRow(0);
    form.guiFunc->addShapeRow(report());
    QCOMPARE(form.table().selectionModel()->selectedRows().size(), 1);
    QTRY_VERIFY((form.guiFunc->addShapeRow(report()), !form.table().selectionModel()->hasSelection()));
}

void TestReplacedShapes::measuresEachTextOnce()
{
    constexpr int count = 500;
    const Form form;
    CountingStyle style;
    form.table().setStyle(&style);
    for (int number = 0; number < count; ++number)
        form.guiFunc->addShapeRow(numberedReport(number % 10));
    form.table().resizeColumnsToContents();
    QVERIFY(style.measuredCells > 0);
    QVERIFY2(style.measuredCells <= 8 * 10, QByteArray::number(style.measuredCells));

    style.measuredCells = 0;
    form.guiFunc->addShapeRow(numberedReport(11));
    form.table().resizeColumnsToContents();
    QVERIFY2(style.measuredCells <= 8, QByteArray::number(style.measuredCells));
    form.table().setStyle(nullptr);
}

void TestReplacedShapes::fitsAsIfEachCellWasMeasured()
{
    const Form form;
    QRandomGenerator random(99);
    const auto randomText = [&] {
        QString text(random.bounded(40), QChar(random.bounded(u'a', u'z')));
        return random.bounded(10) == 0 ? text + u"\n\u6f22 wide and wrapped words"_s : text;
    };
    for (int number = 0; number < 100; ++number) {
        Converter::STBlock block = numberedReport(number);
        block.shapeFile = randomText();
        block.error = randomText();
        form.guiFunc->addShapeRow(block);
    }
    const QList<int> fitted = fittingSizes(form.table());
    QCOMPARE(fitted, fittingSizesWithoutMemory(form.table()));

    // Narrow enough to wrap lines.
    form.table().horizontalHeader()->setMaximumSectionSize(60);
    const QList<int> wrapped = fittingSizes(form.table());
    QVERIFY(wrapped != fitted);
    QCOMPARE(wrapped, fittingSizesWithoutMemory(form.table()));
}

void TestReplacedShapes::measuresAnewInAnotherFont()
{
    const Form form;
    CGuiFunc::RowStyle style;
    form.guiFunc->setCell(0, style, u"the same text"_s, true, true);
    const QList<int> small = fittingSizes(form.table());
    style.font.setPointSize(style.font.pointSize() * 3);
    form.guiFunc->setCell(0, style, u"the same text"_s, false, true);
    const QList<int> large = fittingSizes(form.table());
    QVERIFY(large.first() > small.first());
    QCOMPARE(large, fittingSizesWithoutMemory(form.table()));
}

void TestReplacedShapes::writesTheChangeLog()
{
    const TestProject project;
    project.makeFolder(u"log"_s);
    const Form form;
    form.guiFunc->writeChangeLog(report(), project.path(u"log/a.csv"_s));
    form.guiFunc->writeChangeLog(report(), project.path(u"log/a.csv"_s));
    const QByteArray row = "REPLACE;/home/u/proj/scr/a/b.psc;pump.plb;P101;Pump;Intake/P101;\n"_ba;
    QCOMPARE(project.read(u"log/a.csv"_s),
             "Status; Image File; Shape File; Image-Object; Replace by Shape-Object; "
             "Uminitalisation; Error\n" +
                 row + row);
}

VANTREL_TEST(QApplication, TestReplacedShapes)
#include "tst_replacedshapes.moc"
