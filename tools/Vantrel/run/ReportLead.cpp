// How far a run may be ahead of whoever shows its reports.
#include "ReportLead.h"

void ReportLead::limit(std::size_t most)
{
    {
        const std::lock_guard lock(m_mutex);
        m_most = most;
        m_taken = 0; // whether those before it are given back, nobody knows
        m_showingThread = std::this_thread::get_id();
    }
    m_roomWasMade.notify_all();
}

bool ReportLead::hasRoom() const
{
    return m_most == 0 || m_taken < m_most || m_showingThread == std::this_thread::get_id();
}

void ReportLead::takeOne()
{
    std::unique_lock lock(m_mutex);
    m_roomWasMade.wait(lock, [this] { return hasRoom(); });
    m_taken += m_most > 0 ? 1 : 0;
}

void ReportLead::giveOneBack()
{
    std::size_t taken = 0;
    std::size_t most = 0;
    {
        const std::lock_guard lock(m_mutex);
        m_taken -= m_taken > 0 ? 1 : 0;
        taken = m_taken;
        most = m_most;
    }
    // Woken for each report, the two threads would take turns.
    if (taken == most / 2)
        m_roomWasMade.notify_all();
}
