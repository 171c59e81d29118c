// Finding the image files below a folder, and what hides some of them.
#include "ImageFileSearch.h"

#include "EngineLog.h"
#include "FolderListing.h"
#include "Interruption.h"
#include "Limits.h"

#include <QFile>
#include <QStringList>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <tuple>
#include <utility>
#include <vector>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

/// An entry with what it is sorted by.
struct Candidate
{
    FolderEntry entry;
    QString name; ///< empty where no text can name it
    QString sortName;
};

QString textOf(const QByteArray &name)
{
    const bool isPlain = std::none_of(name.cbegin(), name.cend(),
                                      [](char byte) { return static_cast<unsigned char>(byte) >= 0x80; });
    if (isPlain)
        return QString::fromLatin1(name);
    const QString text = QFile::decodeName(name);
    return QFile::encodeName(text) == name ? text : QString();
}

/// Every byte that is not plain as "\\xe4".
QString spelledOut(const QByteArray &name)
{
    QString text;
    for (const char byte : name) {
        const auto value = static_cast<unsigned char>(byte);
        text += value < 0x80 ? QString(QLatin1Char(byte)) : u"\\x%1"_s.arg(value, 2, 16, '0'_L1);
    }
    return text;
}

bool comesBefore(const Candidate &first, const Candidate &second)
{
    return std::tie(first.sortName, first.name, first.entry.name) <
           std::tie(second.sortName, second.name, second.entry.name);
}

QByteArray joined(const QByteArray &folder, const QByteArray &name)
{
    return folder.endsWith('/') ? folder + name : folder + '/' + name;
}

/// Whatever the depth, it takes no stack for a level: a path may lead through two thousand folders.
class ImageFileSearch final
{
public:
    void search(const QByteArray &path, const QString &text);

    FoundImageFiles found;

private:
    using Place = std::pair<dev_t, ino_t>;

    /// A folder that the search is inside of.
    struct Level
    {
        Place place; ///< links may lead back to it
        QByteArray path;
        QString text; ///< the path, or empty where no text can name it
        std::vector<Candidate> candidates;
        std::size_t next = 0;
        int links = 0; ///< 1 where it was entered over a link of its own
    };

    void enter(const QByteArray &path, const QString &text, int links);
    bool mayEnter(const OpenFolder &folder, const QByteArray &path, Place &place);
    bool mayGoOn(const QByteArray &path);
    bool isCutOff() const { return m_linksInside > 0 && m_foldersOverLinks > mostFoldersOverLinks; }
    bool read(Level &level);
    void lookAt(const Candidate &candidate);
    void noteFailure(const QByteArray &path, int error);

    std::vector<Level> m_levels;
    int m_linksInside = 0; ///< of those levels, how many were entered over a link of their own
    int m_foldersOverLinks = 0;
};

/// `text` is the path, or empty where no text can name it.
void ImageFileSearch::search(const QByteArray &path, const QString &text)
{
    enter(path, text, 0);
    while (!m_levels.empty()) {
        Level &level = m_levels.back();
        if (level.next == level.candidates.size() || isCutOff()) {
            m_linksInside -= level.links;
            m_levels.pop_back();
            continue;
        }
        // The levels move when a folder is entered.
        const Candidate candidate = std::move(level.candidates[level.next++]);
        lookAt(candidate);
    }
}

/// `links` is 1 where a link of its own leads to the folder.
void ImageFileSearch::enter(const QByteArray &path, const QString &text, int links)
{
    m_linksInside += links;
    Level level{.place = {}, .path = path, .text = text, .candidates = {}, .links = links};
    if (!isCutOff() && read(level))
        m_levels.push_back(std::move(level));
    else
        m_linksInside -= links;
}

/// Returns false where the folder is not to be searched.
bool ImageFileSearch::read(Level &level)
{
    endIfInterrupted();
    const OpenFolder folder(level.path);
    if (!folder.isOpen()) {
        noteFailure(level.path, folder.error());
        return false;
    }
    if (!mayEnter(folder, level.path, level.place))
        return false;
    FolderListing listing = folder.list();
    noteFailure(level.path, listing.error);
    for (FolderEntry &entry : listing.entries) {
        if (entry.name.startsWith('.'))
            continue;
        const QString name = textOf(entry.name);
        level.candidates.push_back({std::move(entry), name, name.toLower()});
    }
    std::sort(level.candidates.begin(), level.candidates.end(), comesBefore);
    return true;
}

/// Returns false where the search is inside of the folder already, and where links have led to
/// too many.
bool ImageFileSearch::mayEnter(const OpenFolder &folder, const QByteArray &path, Place &place)
{
    struct stat status = {};
    if (fstat(folder.descriptor(), &status) != 0) {
        noteFailure(path, errno);
        return false;
    }
    place = {status.st_dev, status.st_ino};
    const auto isHere = [&place](const Level &level) { return level.place == place; };
    return std::none_of(m_levels.begin(), m_levels.end(), isHere) && mayGoOn(path);
}

/// Counts a folder that links have led to.
bool ImageFileSearch::mayGoOn(const QByteArray &path)
{
    if (m_linksInside == 0 || ++m_foldersOverLinks <= mostFoldersOverLinks)
        return true;
    found.failures.append(
        {shownPath(path),
         u"links lead to more than %1 folders, of which this one and all after it are left out"_s.arg(
             mostFoldersOverLinks)});
    return false;
}

void ImageFileSearch::lookAt(const Candidate &candidate)
{
    const QString &folderText = m_levels.back().text;
    const QByteArray path = joined(m_levels.back().path, candidate.entry.name);
    EntryKind kind = candidate.entry.kind;
    if (kind == EntryKind::Link) {
        struct stat target = {};
        if (stat(path.constData(), &target) != 0) {
            noteFailure(path, errno);
            return;
        }
        kind = S_ISDIR(target.st_mode) ? EntryKind::Folder : EntryKind::File;
    }
    const bool isNamable = !folderText.isEmpty() && !candidate.name.isEmpty();
    const QString text = isNamable ? joinedPath(folderText, candidate.name) : QString();
    if (kind == EntryKind::Folder)
        enter(path, text, candidate.entry.kind == EntryKind::Link ? 1 : 0);
    else if (kind != EntryKind::File || !path.contains(".psc"))
        return;
    else if (isNamable)
        found.files.append(QFileInfo(text));
    else
        found.unnamable.append(path);
}

void ImageFileSearch::noteFailure(const QByteArray &path, int error)
{
    const bool isDanglingLink = error == ELOOP;
    if (error != 0 && !saysMissing(error) && !isDanglingLink)
        found.failures.append({shownPath(path), QString::fromLocal8Bit(std::strerror(error))});
}

} // namespace

FoundImageFiles searchImageFiles(const QString &folder)
{
    ImageFileSearch search;
    search.search(QFile::encodeName(folder), folder);
    return search.found;
}

QString messageOf(const ListingFailure &failure)
{
    return u"Could not list Folder %1: %2"_s.arg(failure.folder, failure.reason);
}

void logFailures(const FoundImageFiles &found)
{
    for (const ListingFailure &failure : found.failures)
        logError(messageOf(failure));
}

QString shownPath(const QByteArray &path)
{
    QStringList parts;
    for (const QByteArray &name : path.split('/')) {
        const QString text = textOf(name);
        parts.append(text.isEmpty() ? spelledOut(name) : text);
    }
    return parts.join(u'/');
}
