// Reading and writing whole files.
#include "FileIo.h"

#include "Interruption.h"
#include "Limits.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <cerrno>
#include <limits>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace {

constexpr unsigned permissionBits = 0777;
constexpr unsigned usualPermissions = 0666;
constexpr qsizetype largestBlock = 1 << 18;
constexpr const char *openFiles = "/proc/self/fd";

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
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    int get() const { return m_descriptor; }

private:
    int m_descriptor;
};

/// Opens a regular file and tells its status. No other is opened: a pipe would wait for its writer,
/// and so would one that takes the file's place meanwhile.
Descriptor openFile(const QString &path, struct stat &status)
{
    constexpr int none = -1;
    const QByteArray name = QFile::encodeName(path);
    if (stat(name.constData(), &status) != 0 || !S_ISREG(status.st_mode))
        return Descriptor(none);
    Descriptor file(uninterrupted(
        [&] { return ::open(name.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
    const bool isRegular = file.get() >= 0 && fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode);
    return isRegular ? std::move(file) : Descriptor(none);
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
        const ssize_t count = readBlock(file, bytes.data() + size, bytes.size() - size);
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

int copyFile(const QString &from, const QString &to)
{
    endIfInterrupted();
    errno = 0;
    struct stat status = {};
    const Descriptor source = openFile(from, status);
    if (source.get() < 0)
        return errno == 0 ? EIO : errno;
    FileWriter file = FileWriter::appearing(to, status.st_mode & permissionBits);
    QByteArray block(largestBlock, Qt::Uninitialized);
    while (file.isOpen()) {
        const ssize_t count = readBlock(source, block.data(), block.size());
        if (count == 0)
            return file.finish() ? 0 : file.error();
        if (count < 0)
            file.discard(errno);
        else
            file.append(block.constData(), count);
    }
    return file.error();
}

FileWriter::FileWriter(const QString &path, int flags, unsigned mode)
    : m_path(QFile::encodeName(path))
    , m_descriptor(uninterrupted([&] {
        // A pipe that lies there is not waited for.
        return ::open(m_path.constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC | flags, mode);
    }))
    , m_error(m_descriptor < 0 ? errno : 0)
{
}

FileWriter::FileWriter(FileWriter &&other) noexcept
    : m_path(std::move(other.m_path))
    , m_descriptor(std::exchange(other.m_descriptor, -1))
    , m_error(other.m_error)
    , m_isThere(other.m_isThere)
{
}

FileWriter::~FileWriter()
{
    if (isOpen())
        ::close(m_descriptor);
}

FileWriter FileWriter::overwriting(const QString &path)
{
    return {path, O_CREAT | O_TRUNC, usualPermissions};
}

FileWriter FileWriter::creating(const QString &path, unsigned mode)
{
    FileWriter file(path, O_CREAT | O_EXCL, mode);
    if (file.isOpen() && !file.setMode(mode)) {
        file.close();
        ::unlink(file.m_path.constData());
    }
    return file;
}

FileWriter FileWriter::appearing(const QString &path, unsigned mode)
{
    // There a file that has no name yet is found to be given one.
    static const bool canBeNamed = access(openFiles, X_OK) == 0;
    if (!canBeNamed)
        return creating(path, mode);
    FileWriter file(QFileInfo(path).path(), O_TMPFILE, mode);
    if (!file.isOpen() && (file.m_error == EOPNOTSUPP || file.m_error == EISDIR))
        return creating(path, mode);
    file.m_path = QFile::encodeName(path);
    file.m_isThere = false;
    if (file.isOpen() && !file.setMode(mode))
        file.close();
    return file;
}

/// Gives a file without a name its name.
bool FileWriter::appear()
{
    const QByteArray nameless = QByteArray(openFiles) + '/' + QByteArray::number(m_descriptor);
    m_isThere = linkat(AT_FDCWD, nameless.constData(), AT_FDCWD, m_path.constData(), AT_SYMLINK_FOLLOW) == 0;
    if (!m_isThere)
        m_error = errno;
    return m_isThere;
}

/// The process's mask may have taken some of the permissions away.
bool FileWriter::setMode(unsigned mode)
{
    if (fchmod(m_descriptor, mode) == 0)
        return true;
    m_error = errno;
    return false;
}

bool FileWriter::write(const char *bytes, qsizetype size)
{
    return append(bytes, size) && finish();
}

bool FileWriter::append(const char *bytes, qsizetype size)
{
    while (size > 0) {
        const ssize_t count =
            uninterrupted([&] { return ::write(m_descriptor, bytes, static_cast<std::size_t>(size)); });
        if (count <= 0) {
            // Nothing that is taken without an error would be offered for ever.
            discard(count < 0 ? errno : EIO);
            return false;
        }
        bytes += count;
        size -= count;
    }
    return true;
}

bool FileWriter::finish()
{
    const bool hasAppeared = m_isThere || appear();
    if (close() && hasAppeared)
        return true;
    if (m_isThere)
        ::unlink(m_path.constData());
    return false;
}

void FileWriter::discard(int error)
{
    m_error = error;
    close();
    if (m_isThere)
        ::unlink(m_path.constData());
}

bool FileWriter::close()
{
    const int result = ::close(m_descriptor);
    m_descriptor = -1;
    if (result == 0)
        return true;
    if (m_error == 0)
        m_error = errno;
    return false;
}
