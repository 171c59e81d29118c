// Files that grow by rows.
#include "AppendedFile.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// Opens the folder that a file lies in; a link to a folder is none.
int openFolderOf(const QByteArray &path)
{
    const qsizetype slash = path.lastIndexOf('/');
    QByteArray folder = slash < 0 ? QByteArray(".") : path.first(slash + 1);
    // With a slash behind it, a link would be followed.
    while (folder.size() > 1 && folder.endsWith('/'))
        folder.chop(1);
    return ::open(folder.constData(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
}

QByteArray nameIn(const QByteArray &path)
{
    return path.sliced(path.lastIndexOf('/') + 1);
}

bool takesText(const struct stat &status)
{
    return S_ISREG(status.st_mode) && status.st_nlink == 1;
}

bool takesText(int folder, const QByteArray &name)
{
    struct stat status = {};
    return fstatat(folder, name.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0 && takesText(status);
}

} // namespace

AppendedFile::~AppendedFile()
{
    close();
}

bool AppendedFile::open(const QByteArray &path)
{
    constexpr mode_t permissions = 0666;
    constexpr int flags = O_WRONLY | O_APPEND | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    close();
    m_path = path;
    const int folder = openFolderOf(path);
    if (folder < 0)
        return false;
    const QByteArray name = nameIn(path);
    m_descriptor = openat(folder, name.constData(), flags | O_CREAT | O_EXCL, permissions);
    const bool isNew = isOpen();
    // Looked at before as well: some devices act when they are opened.
    if (!isNew && errno == EEXIST && takesText(folder, name))
        m_descriptor = openat(folder, name.constData(), flags);
    ::close(folder);

    struct stat status = {};
    if (!isOpen() || fstat(m_descriptor, &status) != 0 || !takesText(status)) {
        close();
        return false;
    }
    m_device = status.st_dev;
    m_inode = status.st_ino;
    return isNew;
}

void AppendedFile::close()
{
    if (isOpen())
        ::close(m_descriptor);
    m_descriptor = -1;
}

bool AppendedFile::isAtItsPath() const
{
    struct stat status = {};
    return lstat(m_path.constData(), &status) == 0 && status.st_dev == m_device && status.st_ino == m_inode;
}

void AppendedFile::append(const char *text, qsizetype size) const
{
    if (isOpen()) {
        [[maybe_unused]] const ssize_t written = ::write(m_descriptor, text, static_cast<std::size_t>(size));
    }
}

bool AppendedFile::isAt(const QByteArray &path)
{
    const int folder = openFolderOf(path);
    if (folder < 0)
        return false;
    const bool isThere = takesText(folder, nameIn(path));
    ::close(folder);
    return isThere;
}
