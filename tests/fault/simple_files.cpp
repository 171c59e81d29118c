// Takes from a program what simple file systems do not have, for tests: listings that tell the kind
// of an entry, and files that have no name yet. Some network file systems and older ones are such.
// And what old kernels do not have: following a path without links in one step.
#include <cerrno>
#include <cstdarg>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/syscall.h>
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

/// Whether a file without a name is asked for.
bool isRefused(int flags)
{
    const bool isNameless = (flags & O_TMPFILE) == O_TMPFILE;
    if (isNameless)
        errno = EOPNOTSUPP;
    return isNameless;
}

int openNamed(const char *function, const char *path, int flags, mode_t mode)
{
    return isRefused(flags) ? -1 : next<int (*)(const char *, int, mode_t)>(function)(path, flags, mode);
}

int openNamedIn(const char *function, int folder, const char *path, int flags, mode_t mode)
{
    return isRefused(flags)
               ? -1
               : next<int (*)(int, const char *, int, mode_t)>(function)(folder, path, flags, mode);
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

int openat(int folder, const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeIn(flags, arguments);
    va_end(arguments);
    return openNamedIn("openat", folder, path, flags, mode);
}

int openat64(int folder, const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeIn(flags, arguments);
    va_end(arguments);
    return openNamedIn("openat64", folder, path, flags, mode);
}

long syscall(long number, ...)
{
    if (number == SYS_openat2) {
        errno = ENOSYS;
        return -1;
    }
    va_list arguments;
    va_start(arguments, number);
    long values[6] = {};
    for (long &value : values)
        value = va_arg(arguments, long);
    va_end(arguments);
    return next<long (*)(long, long, long, long, long, long, long)>("syscall")(
        number, values[0], values[1], values[2], values[3], values[4], values[5]);
}
}
