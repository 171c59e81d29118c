// Reading and writing whole files.
#include "FileIo.h"

#include "FileWriter.h"
#include "Interruption.h"
#include "Limits.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <limits>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace {

constexpr unsigned permissionBits = 0777;
constexpr qsizetype largestBlock = 1 << 18;
/// What a disk reads in a moment: between two of them a thread may be asked to end.
constexpr qsizetype largestRead = 1 << 24;

/// Calls once more what a signal has interrupted.
template <typename Call>
auto uninterrupted(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

/// Closes a descriptor when it goes.
class Descriptor final
{
public:
    explicit Descriptor(int descriptor)
        : m_descriptor(descriptor)
    {
    }
    ~Descriptor()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }
    Descriptor(Descriptor &&other) noexcept
        : m_descriptor(std::exchange(other.m_descriptor, -1))
    {
    }
    Descriptor &operator=(Descriptor &&other) noexcept
    {
        std::swap(m_descriptor, other.m_descriptor);
        return *this;
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    int get() const { return m_descriptor; }

private:
    int m_descriptor;
};

Descriptor openAs(const QByteArray &name, int flags)
{
    return Descriptor(
        uninterrupted([&] { return ::open(name.constData(), O_RDONLY | O_NOCTTY | O_CLOEXEC | flags); }));
}

bool isRegular(const Descriptor &file, struct stat &status)
{
    return file.get() >= 0 && fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode);
}

/// Waits for a server that holds the file for one of its users, and gives it back when it is asked.
Descriptor openHeld(const QByteArray &name)
{
    constexpr int none = -1;
    struct stat status = {};
    const Descriptor place = openAs(name, O_PATH);
    return isRegular(place, status)
               ? Descriptor(openWhenFree("/proc/self/fd/" + QByteArray::number(place.get())))
               : Descriptor(none);
}

/// Opens what a link leads to. That is looked at first: to open a device may already be to use it.
Descriptor openLinked(const QByteArray &name, struct stat &status)
{
    constexpr int none = -1;
    if (stat(name.constData(), &status) != 0)
        return Descriptor(none);
    errno = 0;
    return S_ISREG(status.st_mode) ? openAs(name, O_NONBLOCK) : Descriptor(none);
}

/// Opens a regular file and tells its status; where it is none, errno is 0. A pipe does not wait for its
/// writer.
Descriptor openFile(const QString &path, struct stat &status)
{
    constexpr int none = -1;
    const QByteArray name = QFile::encodeName(path);
    errno = 0;
    Descriptor file = openAs(name, O_NONBLOCK | O_NOFOLLOW);
    if (file.get() < 0 && errno == ELOOP)
        file = openLinked(name, status);
    if (file.get() < 0 && errno == EWOULDBLOCK)
        return openHeld(name);
    return isRegular(file, status) ? std::move(file) : Descriptor(none);
}

ssize_t readBlock(const Descriptor &file, char *block, qsizetype size)
{
    return uninterrupted([&] { return ::read(file.get(), block, static_cast<std::size_t>(size)); });
}

/// Reads to the end of the file. Returns false where that cannot be reached.
bool readToEnd(const Descriptor &file, qint64 expectedSize, QByteArray &bytes)
{
    // One byte more than is expected, so that one call sees the end too.
    bytes.resize(static_cast<qsizetype>(expectedSize) + 1);
    qsizetype size = 0;
    while (true) {
        if (size > 0)
            endIfInterrupted();
        const ssize_t count =
            readBlock(file, bytes.data() + size, std::min(bytes.size() - size, largestRead));
        if (count < 0 || size + count > largestFile)
            return false;
        size += count;
        if (count == 0 || size == expectedSize)
            break;
        if (size == bytes.size())
            bytes.resize(2 * size);
    }
    bytes.resize(size);
    return true;
}

} // namespace

int openWhenFree(const QByteArray &name)
{
    constexpr std::chrono::milliseconds pause{5};
    while (true) {
        const int file = ::open(name.constData(), O_RDONLY | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
        if (file >= 0 || (errno != EWOULDBLOCK && errno != EINTR))
            return file;
        endIfInterrupted();
        std::this_thread::sleep_for(pause);
    }
}

bool isFailureOfDisk(int error)
{
    return error == ENOSPC || error == EDQUOT || error == EIO || error == EROFS;
}

qint64 availableBytes(const QString &path)
{
    struct statvfs disk = {};
    if (statvfs(QFile::encodeName(path).constData(), &disk) != 0)
        return std::numeric_limits<qint64>::max();
    return static_cast<qint64>(disk.f_bavail) * static_cast<qint64>(disk.f_frsize);
}

bool mayExist(const QString &path)
{
    struct stat file = {};
    if (lstat(QFile::encodeName(path).constData(), &file) == 0)
        return true;
    constexpr std::array absent{ENOENT, ENOTDIR, ENAMETOOLONG, ELOOP};
    return std::find(absent.begin(), absent.end(), errno) == absent.end();
}

std::optional<FileContent> readFile(const QString &path)
{
    struct stat status = {};
    const Descriptor file = openFile(path, status);
    if (file.get() < 0 || status.st_size > largestFile)
        return std::nullopt;
    FileContent content{.bytes = {}, .mode = status.st_mode & permissionBits};
    if (!readToEnd(file, status.st_size, content.bytes))
        return std::nullopt;
    return content;
}

int copyFile(const QString &from, const RootFolder &root, const QString &to)
{
    endIfInterrupted();
    struct stat status = {};
    const Descriptor source = openFile(from, status);
    if (source.get() < 0)
        return errno == 0 ? EIO : errno;
    FileWriter file(root, to, status.st_mode & permissionBits, IfThere::Fail);
    QByteArray block(largestBlock, Qt::Uninitialized);
    while (file.isOpen()) {
        const ssize_t count = readBlock(source, block.data(), block.size());
        if (count == 0)
            return file.finish() ? 0 : file.error();
        if (count < 0)
            file.discard(errno);
        else
            file.append(block.constData(), count);
        if (count == block.size())
            endIfInterrupted();
    }
    return file.error();
}
