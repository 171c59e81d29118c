// Stands before the system's functions on names of files, for tests: lets somebody else change a project in
// front of each.
#include "Intruder.h"

#include <cstdarg>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

/// Calls the system's function of a name, after its call was met.
template <typename Result, typename... Parameters>
Result meetAndCall(const char *function, int folder, const char *name, Parameters... parameters)
{
    Intruder::meet(function, folder, name);
    return reinterpret_cast<Result (*)(Parameters...)>(dlsym(RTLD_NEXT, function))(parameters...);
}

/// The last argument of the functions that open, which is there only where a file may be made.
mode_t modeIn(int flags, va_list arguments)
{
    return (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
}

} // namespace

extern "C" {

int open(const char *name, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeIn(flags, arguments);
    va_end(arguments);
    return meetAndCall<int>("open", AT_FDCWD, name, name, flags, mode);
}

int open64(const char *name, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeIn(flags, arguments);
    va_end(arguments);
    return meetAndCall<int>("open64", AT_FDCWD, name, name, flags, mode);
}

int openat(int folder, const char *name, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeIn(flags, arguments);
    va_end(arguments);
    return meetAndCall<int>("openat", folder, name, folder, name, flags, mode);
}

int openat64(int folder, const char *name, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeIn(flags, arguments);
    va_end(arguments);
    return meetAndCall<int>("openat64", folder, name, folder, name, flags, mode);
}

DIR *opendir(const char *name)
{
    return meetAndCall<DIR *>("opendir", AT_FDCWD, name, name);
}

long syscall(long number, ...)
{
    va_list arguments;
    va_start(arguments, number);
    long values[6] = {};
    for (long &value : values)
        value = va_arg(arguments, long);
    va_end(arguments);
    if (number == SYS_openat2) {
        // NOLINTNEXTLINE(performance-no-int-to-ptr): a system call's arguments are numbers
        Intruder::meet("openat2", static_cast<int>(values[0]), reinterpret_cast<const char *>(values[1]));
    }
    return reinterpret_cast<long (*)(long, long, long, long, long, long, long)>(dlsym(RTLD_NEXT, "syscall"))(
        number, values[0], values[1], values[2], values[3], values[4], values[5]);
}

int stat(const char *name, struct stat *status)
{
    return meetAndCall<int>("stat", AT_FDCWD, name, name, status);
}

int stat64(const char *name, struct stat64 *status)
{
    return meetAndCall<int>("stat64", AT_FDCWD, name, name, status);
}

int lstat(const char *name, struct stat *status)
{
    return meetAndCall<int>("lstat", AT_FDCWD, name, name, status);
}

int lstat64(const char *name, struct stat64 *status)
{
    return meetAndCall<int>("lstat64", AT_FDCWD, name, name, status);
}

int fstatat(int folder, const char *name, struct stat *status, int flags)
{
    return meetAndCall<int>("fstatat", folder, name, folder, name, status, flags);
}

int fstatat64(int folder, const char *name, struct stat64 *status, int flags)
{
    return meetAndCall<int>("fstatat64", folder, name, folder, name, status, flags);
}

int statx(int folder, const char *name, int flags, unsigned mask, struct statx *status)
{
    return meetAndCall<int>("statx", folder, name, folder, name, flags, mask, status);
}

int access(const char *name, int kind)
{
    return meetAndCall<int>("access", AT_FDCWD, name, name, kind);
}

int faccessat(int folder, const char *name, int kind, int flags)
{
    return meetAndCall<int>("faccessat", folder, name, folder, name, kind, flags);
}

ssize_t readlink(const char *name, char *target, std::size_t size)
{
    return meetAndCall<ssize_t>("readlink", AT_FDCWD, name, name, target, size);
}

ssize_t readlinkat(int folder, const char *name, char *target, std::size_t size)
{
    return meetAndCall<ssize_t>("readlinkat", folder, name, folder, name, target, size);
}

// Of two names it is the target that the call makes.

int rename(const char *name, const char *target)
{
    return meetAndCall<int>("rename", AT_FDCWD, target, name, target);
}

int renameat(int folder, const char *name, int targetFolder, const char *target)
{
    return meetAndCall<int>("renameat", targetFolder, target, folder, name, targetFolder, target);
}

int renameat2(int folder, const char *name, int targetFolder, const char *target, unsigned flags)
{
    return meetAndCall<int>("renameat2", targetFolder, target, folder, name, targetFolder, target, flags);
}

int linkat(int folder, const char *name, int targetFolder, const char *target, int flags)
{
    return meetAndCall<int>("linkat", targetFolder, target, folder, name, targetFolder, target, flags);
}

int link(const char *name, const char *target)
{
    return meetAndCall<int>("link", AT_FDCWD, target, name, target);
}

int unlink(const char *name)
{
    return meetAndCall<int>("unlink", AT_FDCWD, name, name);
}

int unlinkat(int folder, const char *name, int flags)
{
    return meetAndCall<int>("unlinkat", folder, name, folder, name, flags);
}

int mkdir(const char *name, mode_t mode)
{
    return meetAndCall<int>("mkdir", AT_FDCWD, name, name, mode);
}

int mkdirat(int folder, const char *name, mode_t mode)
{
    return meetAndCall<int>("mkdirat", folder, name, folder, name, mode);
}

int rmdir(const char *name)
{
    return meetAndCall<int>("rmdir", AT_FDCWD, name, name);
}

int chmod(const char *name, mode_t mode)
{
    return meetAndCall<int>("chmod", AT_FDCWD, name, name, mode);
}

int utimensat(int folder, const char *name, const struct timespec *times, int flags)
{
    return meetAndCall<int>("utimensat", folder, name, folder, name, times, flags);
}
}
