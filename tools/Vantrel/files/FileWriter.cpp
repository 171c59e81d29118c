// Writing whole files.
#include "FileWriter.h"

#include "RootFolder.h"

#include <cerrno>
#include <cstdio>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr const char *openFiles = "/proc/self/fd";
constexpr mode_t allBits = 07777;

/// Why a file cannot be written over what lies in its place; 0 where it can.
int obstacleIn(const OpenFolder &folder, const QByteArray &name)
{
    struct stat status = {};
    if (fstatat(folder.descriptor(), name.constData(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return errno == ENOENT ? 0 : errno;
    switch (status.st_mode & S_IFMT) {
    case S_IFREG:
        return faccessat(folder.descriptor(), name.constData(), W_OK, AT_EACCESS) == 0 ? 0 : errno;
    case S_IFLNK:
        return 0;
    case S_IFDIR:
        return EISDIR;
    default:
        return ENXIO;
    }
}

/// Once more where a signal has interrupted it.
int openIn(int folder, const char *name, int flags, unsigned mode)
{
    int file = -1;
    do {
        file = openat(folder, name, flags, mode);
    } while (file < 0 && errno == EINTR);
    return file;
}

bool isWithoutNamelessFiles(int error)
{
    return error == EOPNOTSUPP || error == EISDIR;
}

} // namespace

FileWriter::FileWriter(const RootFolder &root, const QString &path, unsigned mode, IfThere ifThere)
    : FileWriter(std::make_shared<OpenFolder>(root.parentOf(path)), lastNameOf(path), mode, ifThere,
                 Appears::WhenWhole)
{
}

FileWriter::FileWriter(std::shared_ptr<const OpenFolder> folder, QByteArray name, unsigned mode,
                       IfThere ifThere, Appears appears)
    : m_folder(std::move(folder))
    , m_name(std::move(name))
    , m_mode(mode)
    , m_ifThere(ifThere)
    , m_error(m_folder->error())
{
    if (m_error == 0 && ifThere == IfThere::Replace)
        m_error = obstacleIn(*m_folder, m_name);
    if (m_error == 0)
        open(appears);
}

FileWriter::FileWriter(FileWriter &&other) noexcept
    : m_folder(std::move(other.m_folder))
    , m_name(std::move(other.m_name))
    , m_mode(other.m_mode)
    , m_ifThere(other.m_ifThere)
    , m_descriptor(std::exchange(other.m_descriptor, -1))
    , m_error(other.m_error)
    , m_nameNow(std::move(other.m_nameNow))
{
}

FileWriter::~FileWriter()
{
    // Nobody wants what was not finished.
    if (isOpen())
        discard(ECANCELED);
}

/// Without a name where the system has such files, and finds them to be given one.
void FileWriter::open(Appears appears)
{
    static const bool canBeNamed = access(openFiles, X_OK) == 0;
    constexpr int flags = O_WRONLY | O_CLOEXEC;
    const int folder = m_folder->descriptor();
    errno = EOPNOTSUPP;
    if (canBeNamed && appears == Appears::WhenWhole)
        m_descriptor = openIn(folder, ".", flags | O_TMPFILE, m_mode);
    if (!isOpen() && isWithoutNamelessFiles(errno)) {
        m_nameNow = m_ifThere == IfThere::Replace ? QByteArray(unfinishedFile) : m_name;
        if (m_ifThere == IfThere::Replace)
            unlinkat(folder, unfinishedFile, 0);
        m_descriptor = openIn(folder, m_nameNow.constData(), flags | O_CREAT | O_EXCL | O_NOFOLLOW, m_mode);
    }
    if (!isOpen())
        m_error = errno;
}

/// The process's mask may have taken some of the permissions away, and somebody the file with its folder.
bool FileWriter::isAsWanted()
{
    struct stat status = {};
    if (fstat(m_descriptor, &status) != 0) {
        m_error = errno;
        return false;
    }
    if (!m_nameNow.isEmpty() && status.st_nlink == 0) {
        m_nameNow.clear(); // another file may have it now
        m_error = ENOENT;
        return false;
    }
    if ((status.st_mode & allBits) == m_mode || fchmod(m_descriptor, m_mode) == 0)
        return true;
    m_error = errno;
    return false;
}

bool FileWriter::nameIt(const QByteArray &name)
{
    const QByteArray nameless = QByteArray(openFiles) + '/' + QByteArray::number(m_descriptor);
    const bool isNamed = linkat(AT_FDCWD, nameless.constData(), m_folder->descriptor(), name.constData(),
                                AT_SYMLINK_FOLLOW) == 0;
    if (isNamed)
        m_nameNow = name;
    return isNamed;
}

/// Gives the file its name, in place of another one where it may.
bool FileWriter::takePlace()
{
    const int folder = m_folder->descriptor();
    bool isInPlace = m_nameNow == m_name || (m_nameNow.isEmpty() && nameIt(m_name));
    if (!isInPlace && m_ifThere == IfThere::Replace) {
        if (m_nameNow.isEmpty() && errno == EEXIST) {
            unlinkat(folder, unfinishedFile, 0);
            nameIt(unfinishedFile);
        }
        isInPlace =
            !m_nameNow.isEmpty() && renameat(folder, m_nameNow.constData(), folder, m_name.constData()) == 0;
        if (isInPlace)
            m_nameNow = m_name;
    }
    if (!isInPlace)
        m_error = errno;
    return isInPlace;
}

bool FileWriter::write(const char *bytes, qsizetype size)
{
    return append(bytes, size) && finish();
}

bool FileWriter::append(const char *bytes, qsizetype size)
{
    while (size > 0) {
        const ssize_t count = ::write(m_descriptor, bytes, static_cast<std::size_t>(size));
        if (count < 0 && errno == EINTR)
            continue;
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
    const bool isInPlace = isAsWanted() && takePlace();
    if (close() && isInPlace)
        return true;
    removeNamed();
    return false;
}

void FileWriter::discard(int error)
{
    m_error = error;
    close();
    removeNamed();
}

void FileWriter::removeNamed()
{
    if (!m_nameNow.isEmpty())
        unlinkat(m_folder->descriptor(), m_nameNow.constData(), 0);
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
