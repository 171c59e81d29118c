// The table of log entries.
#include "LogView.h"

#include "ContentFit.h"
#include "SortingPause.h"
#include "TableActions.h"
#include "TableSetUp.h"

#include <QBrush>
#include <QFont>
#include <QHeaderView>
#include <QTableWidget>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

/// How entries of a level look.
struct LevelStyle
{
    QLatin1StringView level;
    Qt::GlobalColor colour;
    QFont::Weight weight;
};

constexpr std::array levelStyles{
    LevelStyle{"emergency"_L1, Qt::red, QFont::Bold},    LevelStyle{"alert"_L1, Qt::red, QFont::Normal},
    LevelStyle{"critical"_L1, Qt::magenta, QFont::Bold}, LevelStyle{"error"_L1, Qt::magenta, QFont::Normal},
    LevelStyle{"warning"_L1, Qt::blue, QFont::Bold},     LevelStyle{"notice"_L1, Qt::blue, QFont::Normal},
    LevelStyle{"system"_L1, Qt::blue, QFont::Normal},    LevelStyle{"info"_L1, Qt::black, QFont::Normal},
};

LevelStyle styleOf(const QString &level)
{
    const auto *style = std::find_if(levelStyles.begin(), levelStyles.end(),
                                     [&](const LevelStyle &known) { return known.level == level; });
    return style != levelStyles.end() ? *style : LevelStyle{{}, Qt::darkBlue, QFont::Normal};
}

} // namespace

LogView::LogView(QTableWidget &table)
    : m_table(table)
    , m_fit(*new ContentFit(table))
{
    table.setColumnCount(3);
    table.setHorizontalHeaderLabels({tr("Level"), tr("Date/Time"), tr("Message")});
    table.verticalHeader()->hide();
    table.setShowGrid(false);
    table.setEditTriggers(QAbstractItemView::NoEditTriggers);
    table.setSelectionBehavior(QAbstractItemView::SelectRows);
    setUpTable(table);
    new TableActions(table);
}

void LogView::addEntry(NewRow place, const QString &level, const QString &time, const QString &message)
{
    const LevelStyle style = styleOf(level);
    const QBrush brush(style.colour);
    QFont font = m_table.font();
    font.setWeight(style.weight);

    m_row = place == NewRow::OnTop ? 0 : m_table.rowCount();
    m_table.insertRow(m_row);
    writeCell(0, font, brush, level);
    writeCell(1, font, brush, time);
    writeCell(2, font, brush, message);
    m_fit.fitAddedRow(m_row);
}

void LogView::writeCell(int column, const QFont &font, const QBrush &brush, const QString &text)
{
    auto *item = new QTableWidgetItem(text);
    item->setFont(font);
    item->setForeground(brush);

    const SortingPause pause(m_table);
    m_table.setItem(m_row, column, item);
}
