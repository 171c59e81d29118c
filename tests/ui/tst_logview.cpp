// The table of log entries.
#include "Surroundings.h"
#include "TestSuite.h"
#include "TestWindow.h"

#include <QApplication>
#include <QFont>
#include <QHeaderView>
#include <QRandomGenerator>
#include <QStyledItemDelegate>
#include <QTest>
#include <QThread>

#include <thread>

using namespace Qt::StringLiterals;

namespace {

/// Counts how often a table measures a cell of its own.
class CountingDelegate final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        ++measuredCells;
        measuredBelowTop += index.row() > 0 ? 1 : 0;
        return QStyledItemDelegate::sizeHint(option, index);
    }

    mutable int measuredCells = 0;
    mutable int measuredBelowTop = 0;
};

/// A window that writes down which threads bring it log entries.
class ThreadNotingWindow final : public Vantrel
{
public:
    void handleMessage(QString level, QString time, QString message) override
    {
        callers += QThread::currentThread();
        Vantrel::handleMessage(level, time, message);
    }

    QSet<QThread *> callers;
};

QList<int> sizes(const QTableWidget &table)
{
    QList<int> sizes;
    for (int column = 0; column < table.columnCount(); ++column)
        sizes += table.columnWidth(column);
    for (int row = 0; row < table.rowCount(); ++row)
        sizes += table.rowHeight(row);
    return sizes;
}

/// The sizes after everything was resized anew; the table keeps them.
QList<int> fullyResized(QTableWidget &table)
{
    table.resizeColumnsToContents();
    table.resizeRowsToContents();
    return sizes(table);
}

/// Messages of very different sizes, always the same ones.
QString message(QRandomGenerator &random)
{
    QString text;
    const int words = random.bounded(1, random.bounded(10) == 0 ? 120 : 12);
    for (int word = 0; word < words; ++word) {
        text += QString(random.bounded(1, 14), QChar(random.bounded(u'a', u'z')));
        text += random.bounded(25) == 0 ? u'\n' : u' ';
    }
    if (random.bounded(8) == 0)
        text += u" \u00e4\u6f22\u5b57\u0416 <b>%1</b>\t|"_s;
    return random.bounded(20) == 0 ? QString() : text;
}

const QStringList levels{u"error"_s, u"alert"_s, u"system"_s, u"a level of its own"_s, u"emergency"_s};

void addEntry(TestWindow &window, QRandomGenerator &random)
{
    window.handleMessage(levels.at(random.bounded(int(levels.size()))), u"2024-03-05 14:07:09.123"_s,
                         message(random));
}

void emptyTable(QTableWidget &table)
{
    while (table.rowCount() > 0)
        table.removeRow(table.rowCount() - 1);
}

} // namespace

class TestLogView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { forgetSettings(); }

    void isSetUp();
    void showsTheStartFirst();
    void showsAnEntryInThreeCells();
    void stylesEntriesByLevel_data();
    void stylesEntriesByLevel();
    void usesTheTablesFont();
    void putsTheNewestOnTop();
    void putsTheNewestAtTheEndWhereAsked();
    void keepsTheNewestEntryInTheTopRow_data();
    void keepsTheNewestEntryInTheTopRow();
    void fitsTheContentsAfterEachEntry_data();
    void fitsTheContentsAfterEachEntry();
    void fitsAfterTheTableWasEmptied();
    void fitsAfterTheUserDraggedAColumn();
    void fitsAfterTheUserSorted();
    void fitsAfterTheFontChanged();
    void fitsWhereLinesWrap();
    void measuresOnlyTheNewRow();
    void measuresAllRowsOnceAfterTheUserSorted();
    void holdsThousandsOfEntries();
    void showsEntriesOfOtherThreadsInOrder();
    void takesEntriesOnItsOwnThread();
    void stopsListeningWhenDestroyed();
};

void TestLogView::isSetUp()
{
    const TestWindow window;
    const QTableWidget &table = *window.ui.logTable;
    QCOMPARE(table.columnCount(), 3);
    QCOMPARE(table.horizontalHeaderItem(0)->text(), u"Level"_s);
    QCOMPARE(table.horizontalHeaderItem(1)->text(), u"Date/Time"_s);
    QCOMPARE(table.horizontalHeaderItem(2)->text(), u"Message"_s);
    QVERIFY(table.verticalHeader()->isHidden());
    QVERIFY(!table.showGrid());
    QCOMPARE(table.editTriggers(), QAbstractItemView::NoEditTriggers);
    QCOMPARE(table.selectionBehavior(), QAbstractItemView::SelectRows);
    QVERIFY(table.isSortingEnabled());
    QVERIFY(table.horizontalHeader()->isSortIndicatorShown());
}

void TestLogView::showsTheStartFirst()
{
    const TestWindow window;
    QCOMPARE(window.logMessages(), QStringList{u"====== Vantrel start ======"_s});
    QCOMPARE(window.ui.logTable->item(0, 0)->text(), u"system"_s);
}

void TestLogView::showsAnEntryInThreeCells()
{
    TestWindow window;
    window.handleMessage(u"error"_s, u"today"_s, u"<b>%1</b> & so on"_s);
    QCOMPARE(window.ui.logTable->rowCount(), 2);
    QCOMPARE(window.rowTexts(window.ui.logTable, 0),
             QStringList({u"error"_s, u"today"_s, u"<b>%1</b> & so on"_s}));
}

void TestLogView::stylesEntriesByLevel_data()
{
    QTest::addColumn<Qt::GlobalColor>("colour");
    QTest::addColumn<int>("weight");
    QTest::newRow("emergency") << Qt::red << 700;
    QTest::newRow("alert") << Qt::red << 400;
    QTest::newRow("critical") << Qt::magenta << 700;
    QTest::newRow("error") << Qt::magenta << 400;
    QTest::newRow("warning") << Qt::blue << 700;
    QTest::newRow("notice") << Qt::blue << 400;
    QTest::newRow("system") << Qt::blue << 400;
    QTest::newRow("info") << Qt::black << 400;
    QTest::newRow("debug") << Qt::darkBlue << 400;
    QTest::newRow("Error") << Qt::darkBlue << 400;
    QTest::newRow("errors") << Qt::darkBlue << 400;
    QTest::newRow(" error") << Qt::darkBlue << 400;
    QTest::newRow("") << Qt::darkBlue << 400;
}

void TestLogView::stylesEntriesByLevel()
{
    QFETCH(const Qt::GlobalColor, colour);
    QFETCH(const int, weight);
    TestWindow window;
    window.handleMessage(QString::fromLatin1(QTest::currentDataTag()), u"today"_s, u"text"_s);
    for (int column = 0; column < 3; ++column) {
        const QTableWidgetItem *item = window.ui.logTable->item(0, column);
        QCOMPARE(item->data(Qt::ForegroundRole).value<QBrush>(), QBrush(colour, Qt::SolidPattern));
        QCOMPARE(int{item->data(Qt::FontRole).value<QFont>().weight()}, weight);
    }
}

void TestLogView::usesTheTablesFont()
{
    TestWindow window;
    QFont font = window.ui.logTable->font();
    font.setPointSize(font.pointSize() + 5);
    font.setItalic(true);
    font.setBold(true);
    window.ui.logTable->setFont(font);
    window.handleMessage(u"info"_s, u"today"_s, u"text"_s);
    QFont expected = font;
    expected.setWeight(QFont::Normal);
    QCOMPARE(window.ui.logTable->item(0, 2)->font(), expected);
    window.handleMessage(u"warning"_s, u"today"_s, u"text"_s);
    QCOMPARE(window.ui.logTable->item(0, 2)->font(), font);
}

void TestLogView::putsTheNewestOnTop()
{
    TestWindow window;
    emptyTable(*window.ui.logTable);
    for (const QString &text : {u"one"_s, u"two"_s, u"three"_s})
        window.handleMessage(u"info"_s, u"today"_s, text);
    QCOMPARE(window.logMessages(), QStringList({u"three"_s, u"two"_s, u"one"_s}));
}

void TestLogView::putsTheNewestAtTheEndWhereAsked()
{
    TestWindow window;
    emptyTable(*window.ui.logTable);
    window.logRowsOnTop = false;
    for (const QString &text : {u"one"_s, u"two\n2"_s, u"three is longer"_s}) {
        window.handleMessage(u"info"_s, u"today"_s, text);
        QCOMPARE(sizes(*window.ui.logTable), fullyResized(*window.ui.logTable));
    }
    QCOMPARE(window.logMessages(), QStringList({u"one"_s, u"two\n2"_s, u"three is longer"_s}));
    QCOMPARE(window.rowTexts(window.ui.logTable, 0), QStringList({u"info"_s, u"today"_s, u"one"_s}));
}

void TestLogView::keepsTheNewestEntryInTheTopRow_data()
{
    QTest::addColumn<int>("sortedColumn");
    QTest::addColumn<Qt::SortOrder>("order");
    for (int column = -1; column < 3; ++column) {
        QTest::addRow("column %d, ascending", column) << column << Qt::AscendingOrder;
        QTest::addRow("column %d, descending", column) << column << Qt::DescendingOrder;
    }
}

void TestLogView::keepsTheNewestEntryInTheTopRow()
{
    QFETCH(const int, sortedColumn);
    QFETCH(const Qt::SortOrder, order);
    constexpr int count = 300;
    TestWindow window;
    QTableWidget *table = window.ui.logTable;
    emptyTable(*table);
    table->sortByColumn(sortedColumn, order);

    const auto texts = [](int number) {
        const QString mark = QString::number(number * 7919 % 1000) + u'-' + QString::number(number);
        return QStringList{"level "_L1 + mark, "time "_L1 + mark, "message "_L1 + mark};
    };
    for (int number = 0; number < count; ++number) {
        window.handleMessage(texts(number).at(0), texts(number).at(1), texts(number).at(2));
        QCOMPARE(window.rowTexts(table, 0), texts(number));
    }
    for (int row = 0; row < count; ++row)
        QCOMPARE(window.rowTexts(table, row), texts(count - 1 - row));
    QVERIFY(table->isSortingEnabled());
    QVERIFY(table->horizontalHeader()->isSortIndicatorShown());
    QCOMPARE(table->horizontalHeader()->sortIndicatorSection(), sortedColumn);
    QCOMPARE(table->horizontalHeader()->sortIndicatorOrder(), order);
}

void TestLogView::fitsTheContentsAfterEachEntry_data()
{
    QTest::addColumn<bool>("visible");
    QTest::newRow("shown") << true;
    QTest::newRow("not shown yet") << false;
}

void TestLogView::fitsTheContentsAfterEachEntry()
{
    QFETCH(const bool, visible);
    TestWindow window;
    window.setVisible(visible);
    QRandomGenerator random(4711);
    for (int entry = 0; entry < 100; ++entry) {
        addEntry(window, random);
        const QList<int> fitted = sizes(*window.ui.logTable);
        QCOMPARE(fitted, fullyResized(*window.ui.logTable));
    }
}

void TestLogView::fitsAfterTheTableWasEmptied()
{
    TestWindow window;
    window.handleMessage(u"error"_s, u"today"_s, QString(300, u'w'));
    const int wide = window.ui.logTable->columnWidth(2);
    emptyTable(*window.ui.logTable);
    window.handleMessage(u"error"_s, u"today"_s, u"short"_s);
    QVERIFY(window.ui.logTable->columnWidth(2) < wide);
    QCOMPARE(sizes(*window.ui.logTable), fullyResized(*window.ui.logTable));
}

void TestLogView::fitsAfterTheUserDraggedAColumn()
{
    TestWindow window;
    window.show();
    QTableWidget &table = *window.ui.logTable;
    QRandomGenerator random(5);
    for (const int width : {30, 3000, 57}) {
        for (int entry = 0; entry < 20; ++entry)
            addEntry(window, random);
        table.setColumnWidth(2, width);
        table.resizeRowsToContents(); // wrapped now
        addEntry(window, random);
        const QList<int> fitted = sizes(table);
        QCOMPARE(fitted, fullyResized(table));
    }
}

void TestLogView::fitsAfterTheUserSorted()
{
    TestWindow window;
    window.show();
    QTableWidget &table = *window.ui.logTable;
    QRandomGenerator random(6);
    for (int column = 0; column < 3; ++column) {
        for (int entry = 0; entry < 20; ++entry)
            addEntry(window, random); // some with several lines, so rows differ in height
        table.sortByColumn(column, Qt::AscendingOrder);
        addEntry(window, random);
        const QList<int> fitted = sizes(table);
        QCOMPARE(fitted, fullyResized(table));
    }
}

void TestLogView::fitsAfterTheFontChanged()
{
    TestWindow window;
    window.show();
    QTableWidget &table = *window.ui.logTable;
    for (const int pointSize : {30, 6}) {
        window.handleMessage(u"error"_s, u"today"_s, u"text"_s);
        QFont font = table.font();
        font.setPointSize(pointSize);
        table.setFont(font);
        table.horizontalHeader()->setFont(font);
        window.handleMessage(u"info"_s, u"today"_s, u"another text"_s);
        const QList<int> fitted = sizes(table);
        QCOMPARE(fitted, fullyResized(table));
    }
}

void TestLogView::fitsWhereLinesWrap()
{
    TestWindow window;
    window.show();
    QTableWidget &table = *window.ui.logTable;
    for (const int widest : {180, 420}) {
        table.horizontalHeader()->setMaximumSectionSize(widest);
        emptyTable(table);
        QRandomGenerator random(7);
        for (int entry = 0; entry < 120; ++entry) {
            addEntry(window, random);
            const QList<int> fitted = sizes(table);
            QCOMPARE(fitted, fullyResized(table));
        }
    }
}

void TestLogView::measuresOnlyTheNewRow()
{
    constexpr int count = 1000;
    CountingDelegate delegate; // outlives the table
    TestWindow window;
    window.show();
    window.ui.logTable->setItemDelegate(&delegate);
    window.handleMessage(u"info"_s, u"today"_s, u"the first may measure all"_s);
    delegate.measuredCells = delegate.measuredBelowTop = 0;

    // Ever wider messages, so that the column grows with each.
    for (int entry = 0; entry < count; ++entry)
        window.handleMessage(u"info"_s, u"today"_s, QString(entry / 2 + 1, u'w'));
    QCOMPARE(delegate.measuredBelowTop, 0);
    QCOMPARE(delegate.measuredCells, 3 * count);
}

void TestLogView::measuresAllRowsOnceAfterTheUserSorted()
{
    constexpr int count = 200;
    CountingDelegate delegate;
    TestWindow window;
    window.ui.logTable->setItemDelegate(&delegate);
    for (int entry = 0; entry < count; ++entry)
        window.handleMessage(u"info"_s, u"today"_s, QString::number(entry));
    window.ui.logTable->sortByColumn(2, Qt::DescendingOrder);
    delegate.measuredCells = delegate.measuredBelowTop = 0;
    window.handleMessage(u"info"_s, u"today"_s, u"measures all"_s);
    QVERIFY(delegate.measuredBelowTop >= 2 * 3 * count);
    QVERIFY(delegate.measuredBelowTop <= 2 * 3 * (count + 1));
    delegate.measuredBelowTop = 0;
    for (int entry = 0; entry < count; ++entry)
        window.handleMessage(u"info"_s, u"today"_s, u"only itself"_s);
    QCOMPARE(delegate.measuredBelowTop, 0);
}

void TestLogView::holdsThousandsOfEntries()
{
    TestWindow window;
    window.show();
    // The widest lies far from those that are seen.
    window.handleMessage(u"emergency"_s, u"2024-03-05 14:07:09.123 local time"_s, QString(900, u'w'));
    QRandomGenerator random(8);
    for (int entry = 0; entry < 3000; ++entry)
        addEntry(window, random);
    QCOMPARE(window.ui.logTable->rowCount(), 3002);
    const QList<int> fitted = sizes(*window.ui.logTable);
    QCOMPARE(fitted, fullyResized(*window.ui.logTable));
}

void TestLogView::showsEntriesOfOtherThreadsInOrder()
{
    constexpr int count = 500;
    TestWindow window;
    emptyTable(*window.ui.logTable);
    std::thread other([] {
        for (int entry = 0; entry < count; ++entry)
            Qel::Logger::instance()->out(3, u"other %1"_s.arg(entry), "other", 1).endl();
    });
    int shownAtOnce = 0; // those of the window's own thread
    for (int entry = 0; entry < count; ++entry) {
        const QString text = u"window %1"_s.arg(entry);
        Qel::Logger::instance()->out(7, text, "window", 1).endl();
        shownAtOnce += window.logMessages().contains(text) ? 1 : 0;
    }
    other.join();
    QCOMPARE(shownAtOnce, count);
    QTRY_COMPARE(window.ui.logTable->rowCount(), 2 * count);

    int nextOther = count;
    int nextWindow = count;
    for (const QString &text : window.logMessages()) {
        if (text.startsWith(u'o'))
            QCOMPARE(text, u"other %1"_s.arg(--nextOther));
        else
            QCOMPARE(text, u"window %1"_s.arg(--nextWindow));
    }
}

void TestLogView::takesEntriesOnItsOwnThread()
{
    ThreadNotingWindow window;
    const auto *table = window.findChild<QTableWidget *>(u"logTable"_s);
    std::thread([] { Qel::Logger::instance()->out(3, u"from elsewhere"_s, "other", 1).endl(); }).join();
    QTRY_COMPARE(table->item(0, 2)->text(), u"from elsewhere"_s);
    QCOMPARE(window.callers, QSet<QThread *>{window.thread()});
}

void TestLogView::stopsListeningWhenDestroyed()
{
    auto window = std::make_unique<TestWindow>();
    std::thread([] { Qel::Logger::instance()->out(3, u"waiting"_s, "other", 1).endl(); }).join();
    window.reset();
    Qel::Logger::instance()->out(3, u"later"_s, "window", 1).endl();
    QCoreApplication::processEvents();
}

VANTREL_TEST(QApplication, TestLogView)
#include "tst_logview.moc"
