// Takes from a program what simple file systems do not have, for tests: listings that tell the kind
// of an entry, and files that have no name yet. Some network file systems and older ones are such.
#include <cerrno>
#include <cstdarg>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/types.h>

namespace {

template <typename Function>
Function next(const char *name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

template <typename Entry>
Entry *withoutKind(Entry *entry)
{
    if (entry != nullptr)
        entry->d_type = DT_UNKNOWN;
    return entry;
}

/// Calls the system's own function, but for a file without a name.
int openNamed(const char *function, const char *path, int flags, mode_t mode)
{
    if ((flags & O_TMPFILE) == O_TMPFILE) {
        errno = EOPNOTSUPP;
        return -1;
    }
    return next<int (*)(const char *, int, mode_t)>(function)(path, flags, mode);
}

/// The third argument of open(), which is there only where a file may be made.
mode_t modeIn(int flags, va_list arguments)
{
    return (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
}

} // namespace

extern "C" {

dirent *readdir(DIR *folder)
{
    return withoutKind(next<dirent *(*)(DIR *)>("readdir")(folder));
}

dirent64 *readdir64(DIR *folder)
{
    return withoutKind(next<dirent64 *(*)(DIR *)>("readdir64")(folder));
}

int open(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeIn(flags, arguments);
    va_end(arguments);
    return openNamed("open", path, flags, mode);
}

int open64(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeIn(flags, arguments);
    va_end(arguments);
    return openNamed("open64", path, flags, mode);
}
}
