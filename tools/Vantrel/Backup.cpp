// Completing the backup of a project's image files.
#include "Backup.h"

#include "FileIo.h"

#include <QDir>
#include <QFile>

#include <algorithm>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

bool backUp(const QString &original, const QString &place)
{
    if (haveSameContent(original, place))
        return true;
    // What lies there is no copy of the original: a partial one, or that of an earlier run.
    QFile::remove(place);
    QDir().mkpath(QFileInfo(place).path());
    return copyFile(original, place) == 0 && haveSameContent(original, place);
}

/// Opens what is, for all that the disk tells, a file: a pipe would be waited for, and a device might
/// never end.
bool openFile(QFile &file)
{
    struct stat status = {};
    const bool isKnown = stat(QFile::encodeName(file.fileName()).constData(), &status) == 0;
    return (!isKnown || S_ISREG(status.st_mode)) && file.open(QIODevice::ReadOnly);
}

/// Whether `a` can be read to its end, and `b` holds the same bytes as far.
bool goesOnLike(QFile &a, QFile &b)
{
    constexpr qint64 blockSize = 1 << 16;
    while (true) {
        const QByteArray block = a.read(blockSize);
        if (block.isEmpty())
            return a.error() == QFile::NoError;
        if (block != b.read(block.size()))
            return false;
    }
}

} // namespace

bool haveSameContent(const QString &first, const QString &second)
{
    QFile a(first);
    QFile b(second);
    if (!openFile(a) || !openFile(b) || a.size() != b.size())
        return false;
    // Not as far as the size tells: where it cannot be asked for, every file seems to be empty.
    return goesOnLike(a, b) && b.read(1).isEmpty() && b.error() == QFile::NoError;
}

bool isBeginningOf(const QString &first, const QString &second)
{
    QFile a(first);
    QFile b(second);
    return openFile(a) && openFile(b) && goesOnLike(a, b);
}

bool completeBackup(const QList<QFileInfo> &originals, const QString &projectDir)
{
    return std::all_of(originals.begin(), originals.end(), [&](const QFileInfo &original) {
        QString place = original.filePath().sliced(projectDir.size());
        place.replace("/scr"_L1, "/scr_bak"_L1);
        return backUp(original.filePath(), projectDir + place);
    });
}
