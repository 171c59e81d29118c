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

static_assert(std::atomic<int>::is_always_lock_free, "set in a signal handler");

/// Exchanges the handler of each signal that is not ignored: `nohup` means it. Safe in a handler.
void handleSignals(void (*handler)(int))
{
    for (const int number : stopSignals) {
        struct sigaction former = {};
        sigaction(number, nullptr, &former);
        if (former.sa_handler == SIG_IGN)
            continue;
        struct sigaction action = {};
        action.sa_handler = handler;
        action.sa_flags = SA_RESTART;
        sigaction(number, &action, nullptr);
    }
}

/// Runs in the interrupted thread: nothing but what is safe there.
extern "C" void takeSignal(int number)
{
    const int formerError = errno;
    // Whoever asks once more does not want to wait.
    handleSignals(SIG_DFL);
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
    handleSignals(takeSignal);
}

StopSignals::~StopSignals()
{
    if (!m_notifier)
        return;
    handleSignals(SIG_IGN);
    m_notifier.reset();
    for (int &end : wakeUpPipe) {
        close(end);
        end = -1;
    }
}

int StopSignals::received() const
{
    return receivedSignal;
}

int StopSignals::lastReceived()
{
    return receivedSignal;
}

int StopSignals::descriptor()
{
    return wakeUpPipe[0];
}
