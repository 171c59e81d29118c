// How far a run may be ahead of whoever shows its reports.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <thread>

/// Lets a run's thread wait while as many reports are told and not shown as their receiver wants
/// to have before it. Nobody waits before a limit is set. Any thread.
class ReportLead final
{
public:
    /// Sets the most reports that are told and not shown; 0 lets every thread go on from now on.
    /// Called on the thread that shows them: it never waits for itself.
    void limit(std::size_t most);
    /// Called before a report is told; waits while as many as may be are not shown.
    void takeOne();
    /// Called when a report was shown. Others than those counted by takeOne() do not count.
    void giveOneBack();

private:
    bool hasRoom() const;

    std::mutex m_mutex;
    std::condition_variable m_roomWasMade;
    std::size_t m_most = 0;
    std::size_t m_taken = 0;
    std::thread::id m_showingThread;
};
