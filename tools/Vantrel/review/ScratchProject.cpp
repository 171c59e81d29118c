// A stand-in for a project, on which a run can be tried.
#include "ScratchProject.h"

#include "CancelledRun.h"
#include "FileIo.h"
#include "Interruption.h"
#include "Limits.h"
#include "RootFolder.h"

#include <QDir>
#include <QFile>
#include <QStringList>

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
namespace fs = std::filesystem;

namespace {

/// Whether a run makes or removes an entry of a project, or writes its change log there.
bool isOfRuns(std::string_view name)
{
    constexpr std::array<std::string_view, 4> folders{"scr", "scr_temp", "scr_bak", "log"};
    return name.starts_with(".vantrel.") || std::find(folders.begin(), folders.end(), name) != folders.end();
}

enum class Files { Linked, Copied };

bool hasNoMeaning(const QString &path)
{
    constexpr std::array meaningfulParts{"/scr"_L1, "/bmp"_L1, ".psc"_L1, ".cat"_L1};
    return path == path.toLower() &&
           std::none_of(meaningfulParts.begin(), meaningfulParts.end(),
                        [&path](QLatin1StringView part) { return path.contains(part); });
}

fs::path asPath(const QString &path)
{
    return {QFile::encodeName(path).toStdString()};
}

/// Makes a folder with what another one holds. Links to folders are followed as a run follows
/// them, so that no link to a folder comes of it, and as far as it follows them.
class FolderMirror final
{
public:
    explicit FolderMirror(Files files)
        : m_files(files)
    {
    }

    void mirror(const fs::path &from, const fs::path &to)
    {
        enter(from, to, 0);
        while (!m_levels.empty()) {
            Level &level = m_levels.back();
            if (level.next == level.entries.size() || isCutOff()) {
                m_linksInside -= level.links;
                m_levels.pop_back();
                continue;
            }
            // The levels move when a folder is entered.
            const fs::directory_entry entry = std::move(level.entries[level.next++]);
            mirrorEntry(entry, level.copy / entry.path().filename());
        }
    }

private:
    /// A folder that the mirror is inside of.
    struct Level
    {
        std::pair<dev_t, ino_t> place; ///< links may lead back to it
        fs::path copy;
        std::vector<fs::directory_entry> entries;
        std::size_t next = 0;
        int links = 0; ///< 1 where it was entered over a link of its own
    };

    void enter(const fs::path &from, const fs::path &to, int links)
    {
        m_linksInside += links;
        Level level{.place = {}, .copy = to, .entries = {}, .links = links};
        if (!isCutOff() && read(from, level))
            m_levels.push_back(std::move(level));
        else
            m_linksInside -= links;
    }

    /// Returns false where the folder is not to be mirrored.
    bool read(const fs::path &from, Level &level)
    {
        struct stat status = {};
        stat(from.c_str(), &status);
        level.place = {status.st_dev, status.st_ino};
        const auto isHere = [&level](const Level &other) { return other.place == level.place; };
        if (std::any_of(m_levels.begin(), m_levels.end(), isHere))
            return false;
        if (m_linksInside > 0 && ++m_foldersOverLinks > mostFoldersOverLinks)
            return false;
        fs::create_directory(level.copy);
        // A folder that cannot be listed is an empty one to a run, too.
        std::error_code ignored;
        for (const fs::directory_entry &entry : fs::directory_iterator(from, ignored))
            level.entries.push_back(entry);
        return true;
    }

    /// A file that somebody has exchanged with a pipe meanwhile is not waited for.
    static void copy(const fs::path &from, const fs::path &to)
    {
        const RootFolder folder(QFile::decodeName(to.parent_path().c_str()));
        copyFile(QFile::decodeName(from.c_str()), folder, QFile::decodeName(to.c_str()));
    }

    void mirrorEntry(const fs::directory_entry &entry, const fs::path &to)
    {
        endIfInterrupted();
        std::error_code ignored;
        if (entry.is_directory(ignored))
            enter(entry.path(), to, entry.is_symlink(ignored) ? 1 : 0);
        else if (m_files == Files::Copied && entry.is_regular_file(ignored))
            copy(entry.path(), to);
        else if (m_files == Files::Linked)
            fs::create_symlink(entry.path(), to);
    }

    bool isCutOff() const { return m_linksInside > 0 && m_foldersOverLinks > mostFoldersOverLinks; }

    Files m_files;
    std::vector<Level> m_levels;
    int m_linksInside = 0; ///< of those levels, how many were entered over a link of their own
    int m_foldersOverLinks = 0;
};

void mirrorFolder(const fs::path &from, const fs::path &to, Files files)
{
    std::error_code ignored;
    if (fs::is_directory(from, ignored))
        FolderMirror(files).mirror(from, to);
}

void linkOtherEntries(const fs::path &from, const fs::path &to)
{
    std::error_code ignored;
    for (const fs::directory_entry &entry : fs::directory_iterator(from, ignored)) {
        const fs::path name = entry.path().filename();
        if (!isOfRuns(name.native()))
            fs::create_symlink(entry.path(), to / name);
    }
}

QStringList foldersForTemporaryFiles()
{
    return {QDir::tempPath(), u"/tmp"_s, u"/var/tmp"_s};
}

} // namespace

void ScratchProject::removeLeftOvers()
{
    for (const QString &folder : foldersForTemporaryFiles())
        ScratchFolder::removeLeftOversIn(folder);
}

ScratchProject::ScratchProject(QString projectDir)
    : m_projectDir(std::move(projectDir))
{
    makeRoot();
    if (root().isEmpty()) {
        m_error = u"no folder for temporary files outside the project can be written to"_s;
        return;
    }
    try {
        fill();
    } catch (const fs::filesystem_error &failure) {
        m_error = u"%1: %2"_s.arg(QFile::decodeName(failure.path1().c_str()),
                                  QString::fromLocal8Bit(failure.code().message().c_str()));
    }
}

void ScratchProject::makeRoot()
{
    const QString project = QDir(m_projectDir).canonicalPath();
    for (const QString &candidate : foldersForTemporaryFiles()) {
        const QString folder = QDir(candidate).canonicalPath();
        const bool isInside = !project.isEmpty() && (folder + u'/').startsWith(project + u'/');
        if (folder.isEmpty() || isInside || !hasNoMeaning(folder))
            continue;
        if (m_folder.makeIn(folder))
            return;
    }
}

void ScratchProject::fill()
{
    const fs::path project = asPath(m_projectDir);
    const fs::path standIn = asPath(dir());
    fs::create_directories(standIn);
    linkOtherEntries(project, standIn);
    mirrorFolder(project / "scr", standIn / "scr", Files::Linked);
    // What a cancelled run has left takes no part in the next one.
    if (!hasCancelledRun(m_projectDir))
        mirrorFolder(project / "scr_temp", standIn / "scr_temp", Files::Copied);
}
