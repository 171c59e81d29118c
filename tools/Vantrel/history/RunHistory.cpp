// The folder in which a project keeps what its last runs have displaced.
#include "RunHistory.h"

#include "FileIo.h"
#include "FolderListing.h"
#include "RunSummary.h"
#include "updUtils.h"

#include <QFile>
#include <QRegularExpression>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

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

/// Makes a folder, or takes the one that is there; what a link leads to is not the project's.
int makeFolder(const QString &path, mode_t mode)
{
    const QByteArray name = QFile::encodeName(path);
    if (mkdir(name.constData(), mode) == 0)
        return chmod(name.constData(), mode) == 0 ? 0 : errno;
    if (errno != EEXIST)
        return errno;
    return isFolder(path) ? 0 : ENOTDIR;
}

/// The rights of a folder. Its owner may always put something into the new one.
mode_t rightsLike(const QString &path)
{
    constexpr mode_t usualRights = 0755;
    constexpr mode_t allRights = 07777;
    struct stat status = {};
    const bool isKnown = stat(QFile::encodeName(path).constData(), &status) == 0;
    return (isKnown ? status.st_mode & allRights : usualRights) | S_IRWXU;
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
    const FolderListing listing = OpenFolder(QFile::encodeName(m_root)).list();
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
    const mode_t rights = rightsLike(m_projectDir + "/scr"_L1);
    for (const QString &path : {m_root, pathOf(entry)}) {
        if (const int error = makeFolder(path, rights); error != 0)
            return notMade(path, error);
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
    const QString going = pathOf(removedFolder);
    const auto failure = [](const QString &path) {
        return u"%1 could not be removed: %2"_s.arg(path, qt_error_string(errno));
    };
    if (!updUtils::removeDir(going))
        return failure(going);
    if (std::rename(QFile::encodeName(pathOf(entry)).constData(), QFile::encodeName(going).constData()) != 0)
        return failure(pathOf(entry));
    return updUtils::removeDir(going) ? QString() : failure(going);
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
    const FolderListing listing = OpenFolder(QFile::encodeName(pathOf(entry))).list();
    return listing.error == 0 &&
           std::all_of(listing.entries.cbegin(), listing.entries.cend(), [](const FolderEntry &held) {
               return held.name == "run.json" || held.name == "run.json.new";
           });
}

HistorySize RunHistory::sizeOf(const QString &entry) const
{
    namespace fs = std::filesystem;
    HistorySize size;
    if (!isFolder(m_root))
        return size;
    std::error_code error;
    fs::recursive_directory_iterator file(QFile::encodeName(pathOf(entry)).toStdString(), error);
    for (; !error && file != fs::recursive_directory_iterator(); file.increment(error)) {
        std::error_code unknown;
        if (file->is_symlink(unknown) || !file->is_regular_file(unknown))
            continue;
        ++size.files;
        size.bytes += static_cast<qint64>(file->file_size(unknown));
    }
    return size;
}

QString RunHistory::pathOf(const QString &entry, const QString &name) const
{
    const QString path = m_root + u'/' + entry;
    return name.isEmpty() ? path : path + u'/' + name;
}
