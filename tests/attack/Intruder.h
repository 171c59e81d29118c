// Somebody who changes a project between two calls of a program on it.
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

/// Counts the calls of a program that name files, from the first one that names the project, and does what a
/// plan says in front of some of them. A folder that the environment names holds the plan; there the calls
/// are counted and what was done is told. What is taken away lies in the folder "taken" beside the project
/// afterwards.
///
/// The plan: the path of the project; then, line by line, the number of a call, what is done, the place and,
/// of a link or a second name, the target, parted by tabs. A place is a path below the project, or what the
/// call itself names: "@name", or the folder of that, "@folder". Lines of call 0 name what is spared: "all"
/// or one kind of deed, a place, or with a slash all below it, and, as the target, the one function that it
/// is spared from.
class Intruder final
{
public:
    /// A function is about to be called on a name in an open folder.
    static void meet(const char *function, int folder, const char *name);

    Intruder(const Intruder &) = delete;
    Intruder &operator=(const Intruder &) = delete;

private:
    struct Call
    {
        std::string function;
        std::string path;
    };

    struct Deed
    {
        std::uint64_t call = 0;
        std::string kind;
        std::string place;
        std::string target;
    };

    Intruder();
    ~Intruder() = default;

    static Intruder &instance();
    void readPlan(const std::string &file);
    void count(const Call &call);
    void act(const Deed &deed, const Call &call);
    bool isSpared(const Deed &deed, const std::string &place, const Call &call) const;
    bool exchange(const Deed &deed, const std::string &place);
    bool make(const Deed &deed, const std::string &path) const;
    std::string placeOf(const Deed &deed, const std::string &calledPath) const;
    void tell(const Deed &deed, const std::string &place, const Call &call, bool isDone) const;

    std::string m_project;
    std::string m_report;
    std::vector<Deed> m_deeds;
    std::mutex m_mutex;
    std::atomic<std::uint64_t> *m_count = nullptr; ///< in a file, so that it outlives the process
    int m_taken = 0;
};
