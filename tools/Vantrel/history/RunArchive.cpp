// Where one run puts what it displaces.
#include "RunArchive.h"

#include "EngineLog.h"
#include "FileIo.h"
#include "RootFolder.h"
#include "RunSummary.h"
#include "updUtils.h"

#include <algorithm>
#include <array>
#include <cerrno>

using namespace Qt::StringLiterals;

RunArchive::RunArchive(QString projectDir, QString entry)
    : m_projectDir(std::move(projectDir))
    , m_history(m_projectDir)
    , m_entry(std::move(entry))
{
}

void RunArchive::open()
{
    if (isKeeping() && !hasSomethingToKeep())
        m_entry.clear();
    if (!isKeeping())
        return;
    const QString failure = m_history.make(m_entry);
    if (failure.isEmpty())
        return;
    logError(
        u"The history cannot be written, so that this run cannot be taken back further than \"scr_bak\": "
        "%1"_s.arg(failure),
        LogPlace::History);
    m_entry.clear();
}

bool RunArchive::hasSomethingToKeep() const
{
    constexpr std::array folders{"/scr"_L1, "/scr_bak"_L1, "/scr_temp"_L1};
    return std::any_of(folders.begin(), folders.end(),
                       [this](QLatin1StringView folder) { return mayExist(m_projectDir + folder); });
}

bool RunArchive::putAway(const QString &folder, const QString &name) const
{
    const QString path = m_projectDir + u'/' + folder;
    if (!isKeeping())
        return updUtils::removeDirOrLog(path);
    const int error = moveAway(folder, name);
    if (error == 0)
        return true;
    logError(u"Folder %1 cannot be moved to %2, and is removed: %3"_s.arg(path, m_history.pathOf(m_entry),
                                                                          qt_error_string(error)),
             LogPlace::History);
    return updUtils::removeDirOrLog(path);
}

bool RunArchive::keep(const QString &folder) const
{
    if (!isKeeping())
        return false;
    const int error = moveAway(folder, folder);
    if (error == 0)
        return true;
    logError(u"Folder %1/%2 cannot be moved to %3, and stays: %4"_s.arg(
                 m_projectDir, folder, m_history.pathOf(m_entry), qt_error_string(error)),
             LogPlace::History);
    return false;
}

void RunArchive::write(const RunSummary &summary) const
{
    if (!isKeeping())
        return;
    if (const QString failure = writeSummary(RootFolder(m_projectDir), m_history.pathOf(m_entry), summary);
        !failure.isEmpty())
        logError(failure, LogPlace::History);
}

/// Returns 0, or an errno. What lies there already is not replaced.
int RunArchive::moveAway(const QString &folder, const QString &name) const
{
    const RootFolder root(m_projectDir);
    const QString path = m_projectDir + u'/' + folder;
    QString place = m_history.pathOf(m_entry, name);
    for (int number = 2; !root.moveToNothing(path, place); ++number) {
        // Whatever else the system says, it has not said that nothing lies there.
        if (errno != EEXIST)
            return errno == ENOENT && !mayExist(path) ? 0 : errno;
        place = m_history.pathOf(m_entry, u"%1.%2"_s.arg(name).arg(number));
    }
    return 0;
}
