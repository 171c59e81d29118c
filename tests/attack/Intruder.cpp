// Somebody who changes a project between two calls of a program on it.
#include "Intruder.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr mode_t usualRights = 0755;

// Own calls are not counted.
thread_local bool isActing = false;

/// The path of a name in an open folder, as far as the system can tell it.
std::string pathOf(int folder, const char *name)
{
    if (*name == '/')
        return name;
    if (folder == AT_FDCWD)
        return {};
    std::string path(PATH_MAX, '\0');
    const std::string link = "/proc/self/fd/" + std::to_string(folder);
    const ssize_t size = readlink(link.c_str(), path.data(), path.size());
    path.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
    return *name == '\0' ? path : path + '/' + name;
}

bool isAtOrBelow(const std::string &path, const std::string &folder)
{
    return path == folder || path.compare(0, folder.size() + 1, folder + '/') == 0;
}

std::string parentOf(const std::string &path)
{
    return path.substr(0, path.rfind('/'));
}

std::string lastNameOf(const std::string &path)
{
    return path.substr(path.rfind('/') + 1);
}

/// Opens a folder of the project over no link, so that the intruder itself never leaves it.
int openBelow(const std::string &project, const std::string &folder)
{
    const int root = open(project.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (folder == project)
        return root;
    open_how how = {};
    how.flags = O_PATH | O_DIRECTORY | O_CLOEXEC;
    how.resolve = RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS;
    const std::string relative = folder.substr(project.size() + 1);
    const int opened = static_cast<int>(syscall(SYS_openat2, root, relative.c_str(), &how, sizeof how));
    close(root);
    return opened;
}

} // namespace

Intruder &Intruder::instance()
{
    // Lives as long as the process: calls are made until its very end.
    static auto *const intruder = new Intruder; // NOLINT(cppcoreguidelines-owning-memory)
    return *intruder;
}

Intruder::Intruder()
{
    const char *const folder = std::getenv("VANTREL_INTRUDER"); // NOLINT(concurrency-mt-unsafe)
    if (folder == nullptr)
        return;
    m_report = std::string(folder) + "/done";
    const int count = open((std::string(folder) + "/count").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    if (ftruncate(count, sizeof *m_count) == 0) {
        void *const memory = mmap(nullptr, sizeof *m_count, PROT_READ | PROT_WRITE, MAP_SHARED, count, 0);
        if (memory != MAP_FAILED)
            m_count = static_cast<std::atomic<std::uint64_t> *>(memory);
    }
    close(count);
    readPlan(std::string(folder) + "/plan");
}

void Intruder::readPlan(const std::string &file)
{
    std::ifstream plan(file);
    std::getline(plan, m_project);
    for (std::string line; std::getline(plan, line);) {
        std::istringstream fields(line);
        Deed deed;
        std::string number;
        std::getline(fields, number, '\t');
        std::getline(fields, deed.kind, '\t');
        std::getline(fields, deed.place, '\t');
        std::getline(fields, deed.target, '\t');
        deed.call = std::strtoull(number.c_str(), nullptr, 10);
        m_deeds.push_back(deed);
    }
}

void Intruder::meet(const char *function, int folder, const char *name)
{
    if (isActing || name == nullptr)
        return;
    isActing = true;
    const int error = errno;
    instance().count({function, pathOf(folder, name)});
    errno = error;
    isActing = false;
}

void Intruder::count(const Call &call)
{
    // Before it names the project, the program loads its libraries.
    const bool isCounted = m_count != nullptr && (*m_count > 0 || isAtOrBelow(call.path, m_project));
    const std::uint64_t number = isCounted ? ++*m_count : 0;
    for (const Deed &deed : m_deeds) {
        if (isCounted && deed.call == number)
            act(deed, call);
    }
}

void Intruder::act(const Deed &deed, const Call &call)
{
    if (deed.kind == "kill")
        kill(getpid(), SIGKILL);
    const std::lock_guard lock(m_mutex);
    const std::string place = placeOf(deed, call.path);
    const bool isAllowed =
        isAtOrBelow(place, m_project) && place != m_project && !isSpared(deed, place, call);
    tell(deed, place, call, isAllowed && exchange(deed, place));
}

bool Intruder::isSpared(const Deed &deed, const std::string &place, const Call &call) const
{
    return std::any_of(m_deeds.begin(), m_deeds.end(), [&](const Deed &spared) {
        const std::string spot = m_project + '/' + spared.place;
        return spared.call == 0 && (spared.kind == "all" || spared.kind == deed.kind) &&
               (spared.target.empty() || spared.target == call.function) &&
               (place == spot || (spot.back() == '/' && place.compare(0, spot.size(), spot) == 0));
    });
}

std::string Intruder::placeOf(const Deed &deed, const std::string &calledPath) const
{
    if (deed.place == "@name")
        return calledPath;
    return deed.place == "@folder" ? parentOf(calledPath) : m_project + '/' + deed.place;
}

/// Puts something else where an entry is, in one step, or where nothing is. Nothing is lost by it.
bool Intruder::exchange(const Deed &deed, const std::string &place)
{
    const int folder = openBelow(m_project, parentOf(place));
    if (folder < 0)
        return false;
    const std::string name = lastNameOf(place);
    const std::string aside =
        parentOf(m_project) + "/taken/" + std::to_string(getpid()) + '.' + std::to_string(++m_taken);
    bool isDone = false;
    if (deed.kind == "remove")
        isDone = renameat(folder, name.c_str(), AT_FDCWD, aside.c_str()) == 0;
    else if (make(deed, aside))
        isDone = renameat2(AT_FDCWD, aside.c_str(), folder, name.c_str(), RENAME_EXCHANGE) == 0 ||
                 renameat2(AT_FDCWD, aside.c_str(), folder, name.c_str(), RENAME_NOREPLACE) == 0;
    close(folder);
    return isDone;
}

bool Intruder::make(const Deed &deed, const std::string &path) const
{
    if (deed.kind == "link")
        return symlink(deed.target.c_str(), path.c_str()) == 0;
    if (deed.kind == "second name")
        return link(deed.target.c_str(), path.c_str()) == 0;
    if (deed.kind == "pipe")
        return mkfifo(path.c_str(), usualRights) == 0;
    return deed.kind == "folder" && mkdir(path.c_str(), usualRights) == 0;
}

void Intruder::tell(const Deed &deed, const std::string &place, const Call &call, bool isDone) const
{
    std::ofstream report(m_report, std::ios::app);
    report << deed.call << '\t' << call.function << '\t' << deed.kind << '\t' << place << '\t'
           << (isDone ? "done" : "impossible") << '\n';
}
