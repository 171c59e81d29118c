// What a folder holds, or why that could not be read.
#include "FolderListing.h"

#include <QList>

#include <array>
#include <cerrno>
#include <string_view>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

EntryKind kindOfMode(mode_t mode)
{
    switch (mode & S_IFMT) {
    case S_IFREG:
        return EntryKind::File;
    case S_IFDIR:
        return EntryKind::Folder;
    case S_IFLNK:
        return EntryKind::Link;
    default:
        return EntryKind::Other;
    }
}

/// Few file systems do not tell the kind along with the name.
EntryKind kindOf(int folder, const dirent &entry)
{
    struct stat file = {};
    switch (entry.d_type) {
    case DT_REG:
        return EntryKind::File;
    case DT_DIR:
        return EntryKind::Folder;
    case DT_LNK:
        return EntryKind::Link;
    case DT_UNKNOWN:
        return fstatat(folder, entry.d_name, &file, AT_SYMLINK_NOFOLLOW) == 0 ? kindOfMode(file.st_mode)
                                                                              : EntryKind::Other;
    default:
        return EntryKind::Other;
    }
}

bool isDotName(std::string_view name)
{
    return name == "." || name == "..";
}

int errorUnless(bool isDone)
{
    return isDone ? 0 : errno;
}

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

/// The system follows the whole path by itself.
int openBeneath(int root, const QByteArray &path)
{
    open_how how = {};
    how.flags = folderFlags;
    how.resolve = RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS | RESOLVE_NO_MAGICLINKS;
    int folder = -1;
    do {
        folder = static_cast<int>(syscall(SYS_openat2, root, path.constData(), &how, sizeof(how)));
    } while (folder < 0 && errno == EINTR);
    return folder;
}

/// Old kernels cannot, and some sandboxes forbid it.
bool isUnknownCall(int error)
{
    return error == ENOSYS || error == EPERM;
}

int openStepByStep(int root, const QByteArray &path)
{
    int folder = fcntl(root, F_DUPFD_CLOEXEC, 0);
    const QList<QByteArray> names = path.split('/');
    for (const QByteArray &name : names) {
        if (folder < 0 || name.isEmpty() || name == ".")
            continue;
        const bool leadsUp = name == "..";
        const int inner = leadsUp ? -1 : openat(folder, name.constData(), folderFlags | O_NOFOLLOW);
        const int error = leadsUp ? EXDEV : errno;
        close(folder);
        folder = inner;
        errno = error;
    }
    return folder;
}

} // namespace

OpenFolder::OpenFolder(const QByteArray &path)
    : m_descriptor(open(path.constData(), folderFlags))
    , m_error(errorUnless(isOpen()))
{
}

OpenFolder::OpenFolder(const OpenFolder &parent, const QByteArray &name)
    : m_descriptor(openat(parent.m_descriptor, name.constData(), folderFlags | O_NOFOLLOW))
    , m_error(errorUnless(isOpen()))
{
}

OpenFolder::OpenFolder(int descriptor)
    : m_descriptor(descriptor)
    , m_error(errorUnless(isOpen()))
{
}

OpenFolder OpenFolder::beneath(const OpenFolder &root, const QByteArray &path)
{
    errno = root.m_error;
    const int folder = root.isOpen() ? openBeneath(root.m_descriptor, path) : -1;
    const bool isStepByStep = folder < 0 && isUnknownCall(errno);
    return OpenFolder(isStepByStep ? openStepByStep(root.m_descriptor, path) : folder);
}

OpenFolder::OpenFolder(OpenFolder &&other) noexcept
    : m_descriptor(std::exchange(other.m_descriptor, -1))
    , m_error(other.m_error)
{
}

OpenFolder::~OpenFolder()
{
    if (!isOpen())
        return;
    // Why something was not done in the folder is still to be told.
    const int error = errno;
    close(m_descriptor);
    errno = error;
}

FolderListing OpenFolder::list() const
{
    FolderListing listing;
    // A stream takes its descriptor with it when it is closed.
    const int descriptor = fcntl(m_descriptor, F_DUPFD_CLOEXEC, 0);
    DIR *const stream = descriptor >= 0 ? fdopendir(descriptor) : nullptr;
    if (stream == nullptr) {
        listing.error = errno;
        if (descriptor >= 0)
            close(descriptor);
        return listing;
    }
    errno = 0;
    while (const dirent *const entry = readdir(stream)) {
        if (!isDotName(entry->d_name))
            listing.entries.append({entry->d_name, kindOf(m_descriptor, *entry)});
        errno = 0;
    }
    listing.error = errno;
    closedir(stream);
    errno = listing.error;
    return listing;
}

QString joinedPath(const QString &folder, const QString &name)
{
    return folder.endsWith(u'/') ? folder + name : folder + u'/' + name;
}

bool saysMissing(int error)
{
    return error == ENOENT || error == ENOTDIR;
}
