// The file that says how far a run came.
#include "StageFile.h"

#include "DurableFile.h"
#include "FileIo.h"
#include "FolderListing.h"
#include "Limits.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr const char *fileName = ".vantrel.run";

OpenFolder folderOf(const QString &projectDir)
{
    return OpenFolder(QFile::encodeName(projectDir));
}

/// Whether an errno says that the project is protected, or is not there, which no waiting and no
/// room changes.
bool isProtection(int error)
{
    return error == EACCES || error == EPERM || error == EROFS || error == ENOENT || error == ENOTDIR;
}

/// The most bytes that may be written for a stage.
qint64 largestTextOf(RunStage stage)
{
    return stage == RunStage::Converting ? largestFirstStage : largestStageFile;
}

} // namespace

StageFile::StageFile(QString projectDir, const RunFacts &facts, IfUnwritable ifUnwritable)
    : m_projectDir(std::move(projectDir))
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
    const int error = m_isUsable ? writeToDisk(folderOf(m_projectDir), fileName, text) : 0;
    if (error == 0)
        return true;
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
    return u"%1 could not be written: %2"_s.arg(path(m_projectDir), qt_error_string(m_error));
}

bool StageFile::remove()
{
    m_error = removeFromDisk(folderOf(m_projectDir), fileName);
    return m_error == 0;
}

QString StageFile::path(const QString &projectDir)
{
    return projectDir + u'/' + QLatin1StringView(fileName);
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
    removeBeginning(folderOf(projectDir), fileName);
}

std::optional<RunRecord> StageFile::read(const QString &projectDir)
{
    if (QFileInfo(path(projectDir)).size() > largestStageFile)
        return std::nullopt;
    const std::optional<FileContent> content = readFile(path(projectDir));
    return content ? readRunRecord(content->bytes) : std::nullopt;
}
