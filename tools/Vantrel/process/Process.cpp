// What the process needs before anything else runs in it.
#include "Process.h"

#include <clocale>
#include <csignal>
#include <cstdlib>
#include <latch>
#include <string_view>
#include <system_error>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <langinfo.h>
#include <unistd.h>

namespace {

/// A standard stream that the caller has closed would be the next file or pipe that is opened,
/// and what is printed would go there.
void fillClosedStreams()
{
    int descriptor = open("/dev/null", O_RDWR);
    while (descriptor >= 0 && descriptor <= STDERR_FILENO)
        descriptor = open("/dev/null", O_RDWR);
    if (descriptor >= 0)
        close(descriptor);
}

bool mayOpenFiles(int count)
{
    std::vector<int> opened;
    for (; count > 0; --count) {
        const int descriptor = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0);
        if (descriptor < 0)
            break;
        opened.push_back(descriptor);
    }
    for (const int descriptor : opened)
        close(descriptor);
    return count == 0;
}

bool mayStartThreads(int count)
{
    std::latch mayEnd(1);
    std::vector<std::thread> started;
    try {
        for (; count > 0; --count)
            started.emplace_back([&mayEnd] { mayEnd.wait(); });
    } catch (const std::system_error &) {
        // The count tells.
    }
    mayEnd.count_down();
    for (std::thread &thread : started)
        thread.join();
    return count == 0;
}

} // namespace

void prepareProcess()
{
    fillClosedStreams();
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

void prepareWithoutDisplay()
{
    // The other event loop is woken by a call of the system for each of a run's many reports.
    setenv("QT_NO_GLIB", "1", 1);

    std::setlocale(LC_ALL, "");
    if (std::string_view(nl_langinfo(CODESET)) != "UTF-8")
        setenv("LC_ALL", "C.UTF-8", 1);
}

const char *lackOf(const NeededMeans &means)
{
    if (!mayOpenFiles(means.openFiles))
        return "too few files may be open at once";
    if (!mayStartThreads(means.threads))
        return "too few threads may run at once";
    return nullptr;
}
