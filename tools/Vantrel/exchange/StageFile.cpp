// The file that says how far a run came.
#include "StageFile.h"

#include "FileIo.h"
#include "Limits.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// Where a stage is written until it is whole.
QByteArray besideOf(const QByteArray &path)
{
    return path + ".new";
}

/// Whether an errno says that the project is protected, or is not there, which no waiting and no
/// room changes.
bool isProtection(int error)
{
    return error == EACCES || error == EPERM || error == EROFS || error == ENOENT || error == ENOTDIR;
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

bool writeToDisk(const QByteArray &path, const QByteArray &bytes)
{
    constexpr mode_t forAll = 0666;
    // Whatever lies there was left: a pipe, opened, would be waited for.
    if (unlink(path.constData()) != 0 && errno != ENOENT)
        return false;
    const int file = open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, forAll);
    if (file < 0)
        return false;
    const bool isWritten = writeAll(file, bytes) && fsync(file) == 0;
    return close(file) == 0 && isWritten;
}

/// The most bytes that may be written for a stage.
qint64 largestTextOf(RunStage stage)
{
    return stage == RunStage::Converting ? largestFirstStage : largestStageFile;
}

/// Makes a change of a folder's entries last.
bool syncFolder(const QByteArray &path)
{
    const int folder = open(path.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0)
        return false;
    const bool isSynced = fsync(folder) == 0;
    close(folder);
    return isSynced;
}

} // namespace

StageFile::StageFile(const QString &projectDir, const RunFacts &facts, IfUnwritable ifUnwritable)
    : m_folder(QFile::encodeName(projectDir))
    , m_path(QFile::encodeName(path(projectDir)))
    , m_factLines(toLines(facts))
    , m_ifUnwritable(ifUnwritable)
{
}

bool StageFile::enter(const RunState &state)
{
    m_entered.append({QString::fromLatin1(rowOf(state.stage).name), QDateTime::currentDateTime()});
    const QByteArray text = m_isUsable ? toText(state, m_factLines) : QByteArray();
    if (text.size() > largestTextOf(state.stage)) {
        m_error = EFBIG;
        return false;
    }
    if (!m_isUsable || write(text))
        return true;
    const int error = errno;
    if (m_ifUnwritable == IfUnwritable::Stop || !isProtection(error)) {
        m_error = error;
        return false;
    }
    // None is better than one that tells of an earlier stage.
    m_isUsable = false;
    remove();
    return true;
}

QString StageFile::errorText() const
{
    return u"%1 could not be written: %2"_s.arg(QFile::decodeName(m_path), qt_error_string(m_error));
}

/// Writes beside the file and exchanges it, so that it is whole at any time.
bool StageFile::write(const QByteArray &text) const
{
    const QByteArray beside = besideOf(m_path);
    const bool isWritten = writeToDisk(beside, text) && rename(beside.constData(), m_path.constData()) == 0;
    if (!isWritten) {
        const int error = errno;
        unlink(beside.constData());
        errno = error;
    }
    return isWritten && syncFolder(m_folder);
}

bool StageFile::remove()
{
    unlink(besideOf(m_path).constData());
    const bool isGone = unlink(m_path.constData()) == 0 || errno == ENOENT;
    m_error = isGone ? 0 : errno;
    syncFolder(m_folder);
    return isGone;
}

QString StageFile::path(const QString &projectDir)
{
    return projectDir + "/.vantrel.run"_L1;
}

bool StageFile::exists(const QString &projectDir)
{
    return mayExist(path(projectDir));
}

bool StageFile::tellsOfInterruption(const QString &projectDir)
{
    if (!exists(projectDir))
        return false;
    const std::optional<RunRecord> record = read(projectDir);
    return !record || (record->state.stage != RunStage::Done && record->state.stage != RunStage::Cancelled);
}

void StageFile::removeUnfinished(const QString &projectDir)
{
    unlink(besideOf(QFile::encodeName(path(projectDir))).constData());
}

std::optional<RunRecord> StageFile::read(const QString &projectDir)
{
    if (QFileInfo(path(projectDir)).size() > largestStageFile)
        return std::nullopt;
    const std::optional<FileContent> content = readFile(path(projectDir));
    return content ? readRunRecord(content->bytes) : std::nullopt;
}
