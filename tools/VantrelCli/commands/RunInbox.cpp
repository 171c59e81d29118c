// What a run tells, on its way from the run's thread.
#include "RunInbox.h"

#include <chrono>
#include <utility>

RunInbox::RunInbox(Receiver receiver)
    : m_receiver(std::move(receiver))
{
    constexpr std::chrono::milliseconds longestWait{10};
    connect(&m_pause, &QTimer::timeout, this, &RunInbox::handOver);
    m_pause.start(longestWait);
}

void RunInbox::add(RunNews news)
{
    std::unique_lock lock(m_mutex);
    m_hasRoom.wait(lock, [this] { return m_waiting.size() < mostWaiting || m_isOpen; });
    m_spent.clear();
    m_waiting.push_back(std::move(news));
}

void RunInbox::stopWaiting()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isOpen = true;
    }
    m_hasRoom.notify_all();
}

void RunInbox::handOver()
{
    std::vector<RunNews> news;
    {
        const std::lock_guard lock(m_mutex);
        news.swap(m_waiting);
    }
    m_hasRoom.notify_all();
    m_receiver(news);
    const std::lock_guard lock(m_mutex);
    m_spent.swap(news);
}
