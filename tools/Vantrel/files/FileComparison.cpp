// Comparing the bytes of files.
#include "FileComparison.h"

#include "Interruption.h"

#include <QFile>

#include <sys/stat.h>

namespace {

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
    endIfInterrupted();
    return isWholeCopy(first, second);
}

bool isWholeCopy(const QString &file, const QString &copy)
{
    QFile a(file);
    QFile b(copy);
    if (!openFile(a) || !openFile(b) || a.size() != b.size())
        return false;
    // Not as far as the size tells: where it cannot be asked for, every file seems to be empty.
    return goesOnLike(a, b) && b.read(1).isEmpty() && b.error() == QFile::NoError;
}

bool isBeginningOf(const QString &first, const QString &second)
{
    endIfInterrupted();
    QFile a(first);
    QFile b(second);
    return openFile(a) && openFile(b) && goesOnLike(a, b);
}
