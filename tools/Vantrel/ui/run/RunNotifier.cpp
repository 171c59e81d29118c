// A run, told to a user who looks elsewhere.
#include "RunNotifier.h"

#include "DesktopBus.h"
#include "STBlock.h"

#include <QDir>
#include <QFileInfo>
#include <QWidget>

namespace {

/// A user waits for a shorter run.
constexpr std::chrono::seconds longRun{10};

std::chrono::milliseconds steadyTime()
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now().time_since_epoch());
}

} // namespace

RunNotifier::RunNotifier(const QWidget &window)
    : RunNotifier(window, {QDBusConnection::sessionBus, steadyTime})
{
}

RunNotifier::RunNotifier(const QWidget &window, Surroundings surroundings)
    : m_window(window)
    , m_surroundings(std::move(surroundings))
{
}

void RunNotifier::runBegins(const QString &projectDir)
{
    m_projectDir = projectDir;
    m_begin = m_surroundings.clock();
    m_replaced = 0;
    m_errors = 0;
    m_isRunning = true;
}

void RunNotifier::countReport(int status)
{
    m_replaced += status == ReportStatus::Replaced ? 1 : 0;
    m_errors += status == ReportStatus::Error ? 1 : 0;
}

void RunNotifier::showProgress(int count, int done)
{
    if (!m_isRunning || count <= 0)
        return;
    constexpr int all = 100;
    const int percent = static_cast<int>(qint64{all} * done / count);
    if (percent == m_shownPercent)
        return;
    m_shownPercent = percent;
    sendTaskBarProgress(m_surroundings.bus(), static_cast<double>(percent) / all);
}

void RunNotifier::runEnds()
{
    const bool isLong = m_isRunning && m_surroundings.clock() - m_begin > longRun;
    runIsCancelled();
    if (isLong && !m_window.isActiveWindow())
        sendSummary();
}

void RunNotifier::runIsCancelled()
{
    m_isRunning = false;
    if (m_shownPercent >= 0)
        removeTaskBarProgress(m_surroundings.bus());
    m_shownPercent = -1;
}

/// The summary is plain text everywhere; desktops may take the body for markup, so that only
/// numbers stand in it.
void RunNotifier::sendSummary() const
{
    const QString project = QFileInfo(QDir::cleanPath(m_projectDir)).fileName();
    sendNotification(m_surroundings.bus(), tr("The update of %1 has ended").arg(project),
                     tr("Objects replaced: %1, errors: %2").arg(m_replaced).arg(m_errors));
}
