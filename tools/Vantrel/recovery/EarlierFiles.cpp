// The files of "scr" as they were before a run, wherever they lie now.
#include "EarlierFiles.h"

#include "FileComparison.h"
#include "FileIo.h"
#include "FolderTree.h"
#include "RunRecord.h"
#include "RunSummary.h"
#include "SafeCopy.h"

#include <QFile>

#include <algorithm>
#include <cerrno>

using namespace Qt::StringLiterals;

EarlierFiles::EarlierFiles(const QString &projectDir, const QString &entry)
    : m_projectDir(projectDir)
    , m_root(m_projectDir)
    , m_history(projectDir)
    , m_entry(entry)
{
    if (m_history.isRun(entry))
        addRun();
    addFolder(m_history.pathOf(entry, u"scr"_s), Names::AsTheyAre);
}

/// The screens from before a run are its backup, which the next run has put into its own entry.
void EarlierFiles::addRun()
{
    const QStringList entries = m_history.entries();
    const qsizetype place = entries.indexOf(m_entry);
    if (place < 0)
        return;
    const auto newer = std::find_if(entries.crbegin() + (entries.size() - place), entries.crend(),
                                    [this](const QString &entry) { return m_history.isRun(entry); });
    const bool isLast = newer == entries.crend();
    addFolder(isLast ? m_projectDir + "/scr_bak"_L1 : m_history.pathOf(*newer, u"scr_bak"_s),
              Names::AsInBackup);
}

void EarlierFiles::addFolder(const QString &folder, Names names)
{
    const auto isThere = [this](const QString &name) { return find(name) != nullptr; };
    const qsizetype before = m_files.size();
    QList<EarlierFile> found;
    const OpenFolder opened = m_root.folder(folder);
    const int error = visitTree(opened, [&](const TreeEntry &entry) {
        const QString path = folder + u'/' + QFile::decodeName(entry.path);
        if (QFile::encodeName(path) != QFile::encodeName(folder) + '/' + entry.path) {
            m_unreadable.append(path);
            return;
        }
        if (entry.kind != EntryKind::File)
            return;
        // A backup has its own name wherever "/scr" stands in a path.
        QString name = path.sliced(folder.size());
        if (names == Names::AsInBackup)
            name.replace("/scr_bak"_L1, "/scr"_L1);
        name = name.sliced(1);
        if (before == 0 || !isThere(name))
            found.append({name, path, names == Names::AsInBackup});
    });
    if (error != 0 && error != ENOENT)
        m_unreadable.append(folder);
    m_files += found;
    std::sort(m_files.begin(), m_files.end(),
              [](const EarlierFile &first, const EarlierFile &second) { return first.name < second.name; });
}

const EarlierFile *EarlierFiles::find(const QString &name) const
{
    const auto file = std::lower_bound(
        m_files.cbegin(), m_files.cend(), name,
        [](const EarlierFile &candidate, const QString &wanted) { return candidate.name < wanted; });
    return file != m_files.cend() && file->name == name ? &*file : nullptr;
}

QString EarlierFiles::restore(const EarlierFile &file)
{
    const QString place = m_projectDir + "/scr/"_L1 + file.name;
    if (haveSameContent(file.path, place))
        return {};
    if (mayExist(place)) {
        if (const QString error = setAside(place, file.name); !error.isEmpty())
            return error;
    }
    const QString error = putCopy(file.path, m_root, place);
    m_restoredFiles += error.isEmpty() ? 1 : 0;
    return error;
}

QString EarlierFiles::setAside(const QString &place, const QString &name)
{
    if (m_replacedEntry.isEmpty()) {
        const QDateTime now = QDateTime::currentDateTime();
        const QString entry = m_history.nameFor(now);
        if (const QString error = m_history.make(entry); !error.isEmpty())
            return error;
        m_replacedEntry = entry;
        RunSummary summary;
        summary.kind = HistoryKind::Restore;
        summary.program = thisProgram();
        summary.projectDir = m_projectDir;
        summary.started = now;
        summary.about = m_entry;
        if (const QString error = writeSummary(m_root, m_history.pathOf(entry), summary); !error.isEmpty())
            return error;
    }
    return putCopy(place, m_root, m_history.pathOf(m_replacedEntry, u"scr"_s) + u'/' + name);
}
