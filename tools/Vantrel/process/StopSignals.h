// The signals by which a user or a system asks the process to end.
#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

/// Turns SIGINT, SIGTERM and SIGHUP into a Qt signal on the thread that made it, except those
/// that the process was started to ignore. A second one ends the process at once. From its end on they are
/// ignored: by then the process is on its way out. One may exist at a time.
class StopSignals final : public QObject
{
    Q_OBJECT

public:
    StopSignals();
    ~StopSignals() override;

    /// The first of these signals that has arrived; 0 as long as none has. From any thread.
    int received() const;

    /// The same where the object is not at hand, or gone.
    static int lastReceived();
    /// For poll(): can be read from once such a signal has arrived; -1 while none exists.
    static int descriptor();

Q_SIGNALS:
    void sigStopWanted();

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};
