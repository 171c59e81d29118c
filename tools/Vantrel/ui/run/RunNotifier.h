// A run, told to a user who looks elsewhere.
#pragma once

#include <QCoreApplication>
#include <QDBusConnection>
#include <QString>

#include <chrono>
#include <functional>

class QWidget;

/// Shows a run's progress on the task bar, and a notification when a long run ends while the
/// window is not active. Where the desktop offers neither, nothing happens. GUI thread.
class RunNotifier final
{
    Q_DECLARE_TR_FUNCTIONS(RunNotifier)

public:
    /// What it depends on; tests put their own in place.
    struct Surroundings
    {
        std::function<QDBusConnection()> bus;
        /// Goes forward only.
        std::function<std::chrono::milliseconds()> clock;
    };

    explicit RunNotifier(const QWidget &window);
    RunNotifier(const QWidget &window, Surroundings surroundings);

    void runBegins(const QString &projectDir);
    /// For each report, with its status.
    void countReport(int status);
    /// `done` of `count` files.
    void showProgress(int count, int done);
    /// The run has come to its end by itself.
    void runEnds();
    /// The user has cancelled it, and so knows.
    void runIsCancelled();

private:
    void sendSummary() const;

    const QWidget &m_window;
    Surroundings m_surroundings;
    QString m_projectDir;
    std::chrono::milliseconds m_begin{};
    int m_replaced = 0;
    int m_errors = 0;
    int m_shownPercent = -1; ///< on the task bar; -1 while nothing is shown
    bool m_isRunning = false;
};
