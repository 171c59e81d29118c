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

class ImageFileSearch final
{
public:
    void search(const QByteArray &path, const QString &text);

    FoundImageFiles found;

private:
    using Place = std::pair<dev_t, ino_t>;

    bool enter(const OpenFolder &folder, const QByteArray &path);
    bool mayGoOn(const QByteArray &path);
    bool isCutOff() const { return m_linksInside > 0 && m_foldersOverLinks > mostFoldersOverLinks; }
    void lookAt(const QByteArray &folder, const QString &folderText, const Candidate &candidate);
    void searchInside(EntryKind entry, const QByteArray &path, const QString &text);
    void noteFailure(const QByteArray &path, int error);

    /// The folders that the search is inside of: links may lead back into them.
    std::vector<Place> m_trail;
    int m_linksInside = 0; ///< of those folders, how many were entered over a link of their own
    int m_foldersOverLinks = 0;
};

/// `text` is the path, or empty where no text can name it.
void ImageFileSearch::search(const QByteArray &path, const QString &text)
{
    if (isCutOff())
        return;
    endIfInterrupted();
    std::vector<Candidate> candidates;
    {
        const OpenFolder folder(path);
        if (!folder.isOpen()) {
            noteFailure(path, folder.error());
            return;
        }
        if (!enter(folder, path))
            return;
        FolderListing listing = folder.list();
        noteFailure(path, listing.error);
        for (FolderEntry &entry : listing.entries) {
            if (entry.name.startsWith('.'))
                continue;
            const QString name = textOf(entry.name);
            candidates.push_back({std::move(entry), name, name.toLower()});
        }
    }
    std::sort(candidates.begin(), candidates.end(), comesBefore);
    for (auto candidate = candidates.cbegin(); candidate != candidates.cend() && !isCutOff(); ++candidate)
        lookAt(path, text, *candidate);
    m_trail.pop_back();
}

/// Returns false where the search is inside of the folder already, and where links have led to
/// too many.
bool ImageFileSearch::enter(const OpenFolder &folder, const QByteArray &path)
{
    struct stat place = {};
    if (fstat(folder.descriptor(), &place) != 0) {
        noteFailure(path, errno);
        return false;
    }
    const Place here{place.st_dev, place.st_ino};
    if (std::find(m_trail.begin(), m_trail.end(), here) != m_trail.end())
        return false;
    if (!mayGoOn(path))
        return false;
    m_trail.push_back(here);
    return true;
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

void ImageFileSearch::lookAt(const QByteArray &folder, const QString &folderText, const Candidate &candidate)
{
    const QByteArray path = joined(folder, candidate.entry.name);
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
        searchInside(candidate.entry.kind, path, text);
    else if (kind != EntryKind::File || !path.contains(".psc"))
        return;
    else if (isNamable)
        found.files.append(QFileInfo(text));
    else
        found.unnamable.append(path);
}

void ImageFileSearch::searchInside(EntryKind entry, const QByteArray &path, const QString &text)
{
    const int links = entry == EntryKind::Link ? 1 : 0;
    m_linksInside += links;
    search(path, text);
    m_linksInside -= links;
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
