// A sign that the program is at work on its GUI thread.
#include "BusySign.h"

#include <QApplication>
#include <QProgressBar>

namespace {

/// Leaves what the user clicks meanwhile: it must not act on half-finished work.
void handleAllButInput()
{
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

} // namespace

BusySign::BusySign(QProgressBar &bar, BarUse use)
    : m_bar(bar)
    , m_use(use)
    , m_maximum(bar.maximum())
    , m_value(bar.value())
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    if (m_use == BarIsFree)
        m_bar.setMaximum(0); // its way to show that the end is not known
    m_sincePainted.start();
    handleAllButInput();
}

BusySign::~BusySign()
{
    if (m_use == BarIsFree) {
        m_bar.setMaximum(m_maximum);
        m_bar.setValue(m_value);
    }
    QApplication::restoreOverrideCursor();
    handleAllButInput();
}

void BusySign::keepRepainted()
{
    constexpr qint64 interval = 40; // ms
    if (m_sincePainted.elapsed() < interval)
        return;
    handleAllButInput();
    m_sincePainted.start();
}
