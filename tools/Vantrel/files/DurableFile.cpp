// Small files that tell what is under way.
#include "DurableFile.h"

#include "FolderListing.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace {

QByteArray besideOf(const QByteArray &name)
{
    return name + ".new";
}

bool writeAll(int file, const QByteArray &bytes)
{
    qsizetype written = 0;
    while (written < bytes.size()) {
        const ssize_t count =
            write(file, bytes.constData() + written, static_cast<std::size_t>(bytes.size() - written));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        written += count;
    }
    return true;
}

bool writeNew(int folder, const QByteArray &name, const QByteArray &bytes)
{
    constexpr mode_t forAll = 0666;
    // Whatever lies there was left: a pipe, opened, would be waited for.
    if (unlinkat(folder, name.constData(), 0) != 0 && errno != ENOENT)
        return false;
    const int file =
        openat(folder, name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, forAll);
    if (file < 0)
        return false;
    const bool isWritten = writeAll(file, bytes) && fsync(file) == 0;
    return close(file) == 0 && isWritten;
}

} // namespace

int writeToDisk(const OpenFolder &folder, const QByteArray &name, const QByteArray &bytes)
{
    if (!folder.isOpen())
        return folder.error();
    const int place = folder.descriptor();
    const QByteArray beside = besideOf(name);
    const bool isWritten =
        writeNew(place, beside, bytes) && renameat(place, beside.constData(), place, name.constData()) == 0;
    if (!isWritten) {
        const int error = errno;
        removeBeginning(folder, name);
        return error;
    }
    // The change of the names must last, too.
    return fsync(place) == 0 ? 0 : errno;
}

int removeFromDisk(const OpenFolder &folder, const QByteArray &name)
{
    if (!folder.isOpen())
        return folder.error() == ENOENT ? 0 : folder.error();
    removeBeginning(folder, name);
    const bool isGone = unlinkat(folder.descriptor(), name.constData(), 0) == 0 || errno == ENOENT;
    const int error = isGone ? 0 : errno;
    fsync(folder.descriptor());
    return error;
}

void removeBeginning(const OpenFolder &folder, const QByteArray &name)
{
    unlinkat(folder.descriptor(), besideOf(name).constData(), 0);
}
