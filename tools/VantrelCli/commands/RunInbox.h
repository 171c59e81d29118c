// What a run tells, on its way from the run's thread.
#pragma once

#include "Limits.h"
#include "STBlock.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <span>
#include <variant>
#include <vector>

struct RunProgress
{
    int count = 0;
    int index = 0;
};

struct FileBegun
{
    QString path;
};

using RunNews = std::variant<RunProgress, FileBegun, STBlock>;

/// Takes news from a run's thread and hands them over on its own, in their order and all that wait
/// at once: an event for each report takes the run longer than what it reports.
class RunInbox final : public QObject
{
public:
    using Receiver = std::function<void(std::span<const RunNews>)>;

    static constexpr std::size_t mostWaiting = mostNewsWaiting;

    explicit RunInbox(Receiver receiver);

    /// Called on the run's thread, which waits while as many news wait as may.
    void add(RunNews news);
    /// From now on the run's thread does not wait: nobody hands over any more.
    void stopWaiting();
    /// Hands over what waits, without the pause that otherwise lets news gather.
    void handOver();

private:
    QTimer m_pause;
    Receiver m_receiver;
    std::mutex m_mutex;
    std::condition_variable m_hasRoom;
    bool m_isOpen = false; ///< for any number of news
    std::vector<RunNews> m_waiting;
    /// Handed over already. The run's thread destroys them, since it made them: memory that another
    /// thread frees makes the two wait for each other.
    std::vector<RunNews> m_spent;
};
