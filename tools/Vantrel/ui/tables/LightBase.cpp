// Tables that stay readable in a dark theme.
#include "LightBase.h"

#include <QApplication>
#include <QPalette>
#include <QTableWidget>

namespace {

bool isDark(const QColor &colour)
{
    constexpr float middle = 0.5F;
    return colour.lightnessF() < middle;
}

/// Only what rows are drawn with; the rest follows the theme.
QPalette lightRows()
{
    QPalette palette;
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::AlternateBase, QColor(Qt::lightGray).lighter());
    palette.setColor(QPalette::Text, Qt::black);
    return palette;
}

} // namespace

LightBase::LightBase(QTableWidget &table)
    : QObject(&table)
    , m_table(table)
{
    table.installEventFilter(this);
    adapt();
}

bool LightBase::eventFilter(QObject *watched, QEvent *event)
{
    // Comes once more for what is set here; then nothing changes any more.
    if (event->type() == QEvent::PaletteChange)
        adapt();
    return QObject::eventFilter(watched, event);
}

void LightBase::adapt()
{
    const bool isNeeded = isDark(QApplication::palette(&m_table).color(QPalette::Base));
    m_table.setPalette(isNeeded ? lightRows() : QPalette());
}
