// The folder in which a project keeps what its last runs have displaced.
#include "RunHistory.h"

#include "FileIo.h"
#include "FileWriter.h"
#include "FolderTree.h"
#include "RootFolder.h"
#include "RunSummary.h"

#include <QFile>
#include <QRegularExpression>

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr auto timeFormat = "yyyy-MM-dd_hh-mm-ss"_L1;
/// Of runs that begin in one second.
constexpr int mostOfOneName = 999;

/// What is about to be removed has a name that no entry has.
constexpr auto removedFolder = "removed"_L1;

bool isEntryName(const QString &name)
{
    static const QRegularExpression form(u"^\\d{4}-\\d\\d-\\d\\d_\\d\\d-\\d\\d-\\d\\d(\\.\\d{3})?$"_s);
    return form.match(name).hasMatch();
}

bool isFolder(const QString &path)
{
    struct stat status = {};
    return lstat(QFile::encodeName(path).constData(), &status) == 0 && S_ISDIR(status.st_mode);
}

QString notMade(const QString &path, int error)
{
    return u"%1 could not be made: %2"_s.arg(path, qt_error_string(error));
}

} // namespace

RunHistory::RunHistory(QString projectDir)
    : m_projectDir(std::move(projectDir))
    , m_root(m_projectDir + "/.vantrel.history"_L1)
{
}

QStringList RunHistory::entries() const
{
    bool isWhole = true;
    return entries(isWhole);
}

QStringList RunHistory::entries(bool &isWhole) const
{
    if (!isFolder(m_root)) {
        isWhole = isWhole && !mayExist(m_root);
        return {};
    }
    const FolderListing listing = RootFolder(m_projectDir).folder(m_root).list();
    isWhole = isWhole && listing.error == 0;
    QStringList names;
    for (const FolderEntry &entry : listing.entries) {
        const QString name = QFile::decodeName(entry.name);
        if (entry.kind == EntryKind::Folder && isEntryName(name))
            names.append(name);
    }
    std::sort(names.begin(), names.end(), std::greater<>());
    return names;
}

QString RunHistory::newestRun() const
{
    bool isWhole = true;
    return newestRun(isWhole);
}

QString RunHistory::newestRun(bool &isWhole) const
{
    const QStringList names = entries(isWhole);
    const auto run =
        std::find_if(names.cbegin(), names.cend(), [this](const QString &name) { return isRun(name); });
    return run == names.cend() ? QString() : *run;
}

QString RunHistory::nameFor(const QDateTime &begin) const
{
    const QString ofTime = begin.toString(timeFormat);
    const QString newest = entries().value(0);
    if (ofTime > newest)
        return ofTime;
    const QString stem = newest.section(u'.', 0, 0);
    const int number = std::min(newest.section(u'.', 1).toInt() + 1, mostOfOneName);
    return u"%1.%2"_s.arg(stem, QString::number(number).rightJustified(3, u'0'));
}

QString RunHistory::make(const QString &entry) const
{
    const RootFolder root(m_projectDir);
    const unsigned rights = rightsLike(m_projectDir + "/scr"_L1);
    for (const QString &path : {m_root, pathOf(entry)}) {
        if (!root.makeFolder(path, rights))
            return notMade(path, errno);
    }
    return {};
}

QString RunHistory::obstacle() const
{
    const QByteArray root = QFile::encodeName(m_root);
    struct stat status = {};
    if (lstat(root.constData(), &status) == 0) {
        if (!S_ISDIR(status.st_mode))
            return u"it is no folder"_s;
        if (faccessat(AT_FDCWD, root.constData(), W_OK | X_OK, AT_EACCESS) != 0)
            return u"it cannot be written to"_s;
    }
    struct stat project = {};
    if (stat(QFile::encodeName(m_projectDir).constData(), &project) != 0)
        return {};
    for (const QString &name : {u"scr"_s, u"scr_bak"_s}) {
        const bool isThere = lstat(QFile::encodeName(m_projectDir + u'/' + name).constData(), &status) == 0;
        if (isThere && status.st_dev != project.st_dev)
            return u"\"%1\" is on another disk"_s.arg(name);
    }
    return {};
}

QString RunHistory::remove(const QString &entry) const
{
    const RootFolder root(m_projectDir);
    const QString going = pathOf(removedFolder);
    const auto failure = [](const QString &path) {
        return u"%1 could not be removed: %2"_s.arg(path, qt_error_string(errno));
    };
    if (!root.removeTree(going))
        return failure(going);
    if (!root.moveToNothing(pathOf(entry), going))
        return failure(pathOf(entry));
    return root.removeTree(going) ? QString() : failure(going);
}

QString RunHistory::keepNewest(int mostRuns) const
{
    QString firstFailure;
    int runs = 0;
    for (const QString &entry : entries()) {
        if (runs < mostRuns) {
            runs += isRun(entry) ? 1 : 0;
            continue;
        }
        if (const QString failure = remove(entry); firstFailure.isEmpty())
            firstFailure = failure;
    }
    return firstFailure;
}

bool RunHistory::isRun(const QString &entry) const
{
    const std::optional<RunSummary> summary = readSummary(pathOf(entry));
    return summary ? summary->kind == HistoryKind::Run && (summary->ended.isValid() || !isHollow(entry))
                   : !isHollow(entry);
}

/// Whether a run, or what wrote the entry, was killed before it put anything into it.
bool RunHistory::isHollow(const QString &entry) const
{
    const FolderListing listing = RootFolder(m_projectDir).folder(pathOf(entry)).list();
    return listing.error == 0 &&
           std::all_of(listing.entries.cbegin(), listing.entries.cend(), [](const FolderEntry &held) {
               return held.name == "run.json" || held.name == unfinishedFile;
           });
}

HistorySize RunHistory::sizeOf(const QString &entry) const
{
    HistorySize size;
    const RootFolder root(m_projectDir);
    visitTree(root.folder(pathOf(entry)), [&size](const TreeEntry &found) {
        if (found.kind != EntryKind::File)
            return;
        ++size.files;
        size.bytes += found.size();
    });
    return size;
}

QString RunHistory::pathOf(const QString &entry, const QString &name) const
{
    const QString path = m_root + u'/' + entry;
    return name.isEmpty() ? path : path + u'/' + name;
}
