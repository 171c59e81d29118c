// A sign that the program is at work on its GUI thread.
#pragma once

#include <QElapsedTimer>
#include <QtGlobal>

class QProgressBar;

/// While it lives, the cursor is the wait cursor and a progress bar shows that the program is
/// busy, unless the bar shows a run's progress. What the user does meanwhile is for later. GUI
/// thread.
class BusySign final
{
public:
    enum BarUse { BarIsFree, BarShowsRun };

    BusySign(QProgressBar &bar, BarUse use);
    ~BusySign();
    Q_DISABLE_COPY_MOVE(BusySign)

    /// To be called often: repaints what needs it, but not more often than an eye can see.
    void keepRepainted();

private:
    QProgressBar &m_bar;
    const BarUse m_use;
    const int m_maximum;
    const int m_value;
    QElapsedTimer m_sincePainted;
};
