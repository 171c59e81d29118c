// A folder for temporary files that outlives its process only until the next one comes.
#include "ScratchFolder.h"

#include "FolderListing.h"
#include "Interruption.h"
#include "updUtils.h"

#include <QFile>
#include <QUuid>

#include <cstdio>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr mode_t forOwnerOnly = 0700;
constexpr char namePrefix[] = "vantrel-dry-run-";

/// Opens a folder that no link leads to; -1 where that is not possible.
int openFolder(const QByteArray &path)
{
    return open(path.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
}

bool lock(int folder)
{
    return flock(folder, LOCK_EX | LOCK_NB) == 0;
}

/// Whether it is one that ScratchFolder has made for this user; anybody may use the name.
bool isOwn(const OpenFolder &folder)
{
    constexpr mode_t rights = 0777;
    struct stat status = {};
    return fstat(folder.descriptor(), &status) == 0 && status.st_uid == geteuid() &&
           (status.st_mode & rights) == forOwnerOnly;
}

} // namespace

void ScratchFolder::removeLeftOversIn(const QString &place)
{
    const OpenFolder folder(QFile::encodeName(place));
    if (!folder.isOpen())
        return;
    for (const FolderEntry &entry : folder.list().entries) {
        if (entry.kind != EntryKind::Folder || !entry.name.startsWith(namePrefix))
            continue;
        const OpenFolder leftOver(folder, entry.name);
        if (leftOver.isOpen() && isOwn(leftOver) && lock(leftOver.descriptor()))
            updUtils::removeDir(place + u'/' + QFile::decodeName(entry.name));
    }
}

ScratchFolder::~ScratchFolder()
{
    // To the end: what is broken off would be left over.
    const InterruptionScope scope([] { return false; });
    if (!m_path.isEmpty())
        updUtils::removeDir(m_path);
    if (m_lock >= 0)
        close(m_lock);
}

bool ScratchFolder::makeIn(const QString &place)
{
    removeLeftOversIn(place);
    const QByteArray folder = QFile::encodeName(place);
    const QByteArray id = QUuid::createUuid().toByteArray(QUuid::Id128);
    // It has its name only once it is locked: another process would take it for left over.
    const QByteArray unlocked = folder + "/vantrel-new-" + id;
    const QByteArray path = folder + '/' + namePrefix + id;
    if (mkdir(unlocked.constData(), forOwnerOnly) != 0)
        return false;
    const int opened = openFolder(unlocked);
    // Where folders cannot be locked, none of them is taken for left over.
    if (opened >= 0)
        lock(opened);
    if (opened >= 0 && rename(unlocked.constData(), path.constData()) == 0) {
        m_lock = opened;
        m_path = QFile::decodeName(path);
        return true;
    }
    if (opened >= 0)
        close(opened);
    rmdir(unlocked.constData());
    return false;
}
