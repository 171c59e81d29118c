// The signals by which a user or a system asks the process to end.
#include "StopSignals.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::array stopSignals{SIGINT, SIGTERM, SIGHUP};

std::atomic<int> receivedSignal{0};
std::array<int, 2> wakeUpPipe{-1, -1};
std::array<struct sigaction, stopSignals.size()> formerActions{};

static_assert(std::atomic<int>::is_always_lock_free, "set in a signal handler");

/// Runs in the interrupted thread: nothing but what is safe there.
void takeSignal(int number)
{
    const int formerError = errno;
    int none = 0;
    receivedSignal.compare_exchange_strong(none, number);
    const char wakeUp = 0;
    // A full pipe has woken the receiver already.
    [[maybe_unused]] const auto written = write(wakeUpPipe[1], &wakeUp, 1);
    errno = formerError;
}

} // namespace

StopSignals::StopSignals()
{
    receivedSignal = 0;
    if (pipe2(wakeUpPipe.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_notifier = std::make_unique<QSocketNotifier>(wakeUpPipe[0], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] {
        m_notifier->setEnabled(false);
        Q_EMIT sigStopWanted();
    });

    struct sigaction action = {};
    action.sa_handler = takeSignal;
    action.sa_flags = SA_RESTART;
    for (std::size_t index = 0; index < stopSignals.size(); ++index)
        sigaction(stopSignals[index], &action, &formerActions[index]);
}

StopSignals::~StopSignals()
{
    if (!m_notifier)
        return;
    for (std::size_t index = 0; index < stopSignals.size(); ++index)
        sigaction(stopSignals[index], &formerActions[index], nullptr);
    m_notifier.reset();
    close(wakeUpPipe[0]);
    close(wakeUpPipe[1]);
}

int StopSignals::received() const
{
    return receivedSignal;
}
