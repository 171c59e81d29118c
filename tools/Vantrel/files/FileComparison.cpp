// Comparing the bytes of files.
#include "FileComparison.h"

#include "FileIo.h"
#include "Interruption.h"

#include <QFile>

#include <sys/stat.h>

namespace {

/// Opens what is, for all that the disk tells, a file: a pipe would be waited for, and a device might
/// never end. Asked once more when it is open: something else may have taken its place.
bool openFile(QFile &file)
{
    struct stat status = {};
    const QByteArray name = QFile::encodeName(file.fileName());
    if (stat(name.constData(), &status) == 0 && !S_ISREG(status.st_mode))
        return false;
    const int descriptor = openWhenFree(name);
    if (descriptor < 0 || !file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return false;
    return fstat(descriptor, &status) != 0 || S_ISREG(status.st_mode);
}

enum class Ending { BetweenBlocks, Never };

/// Whether `a` can be read to its end, and `b` holds the same bytes as far.
bool goesOnLike(QFile &a, QFile &b, Ending ending)
{
    constexpr qint64 blockSize = 1 << 16;
    while (true) {
        const QByteArray block = a.read(blockSize);
        if (block.isEmpty())
            return a.error() == QFile::NoError;
        if (block != b.read(block.size()))
            return false;
        if (ending == Ending::BetweenBlocks && block.size() == blockSize)
            endIfInterrupted();
    }
}

bool areAlike(const QString &first, const QString &second, Ending ending)
{
    QFile a(first);
    QFile b(second);
    if (!openFile(a) || !openFile(b) || a.size() != b.size())
        return false;
    // Not as far as the size tells: where it cannot be asked for, every file seems to be empty.
    return goesOnLike(a, b, ending) && b.read(1).isEmpty() && b.error() == QFile::NoError;
}

} // namespace

bool haveSameContent(const QString &first, const QString &second)
{
    endIfInterrupted();
    return areAlike(first, second, Ending::BetweenBlocks);
}

bool isWholeCopy(const QString &file, const QString &copy)
{
    return areAlike(file, copy, Ending::Never);
}

bool isBeginningOf(const QString &first, const QString &second)
{
    endIfInterrupted();
    QFile a(first);
    QFile b(second);
    return openFile(a) && openFile(b) && goesOnLike(a, b, Ending::BetweenBlocks);
}
