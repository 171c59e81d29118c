// What a project holds, and what a run over it would lose or could not convert.
#include "ProjectSurvey.h"

#include "CancelledRun.h"
#include "FileIo.h"
#include "FolderTree.h"
#include "ImageFileSearch.h"
#include "Interruption.h"
#include "LineCheck.h"
#include "ProjectPath.h"
#include "RunHistory.h"
#include "ScreensOnlyInBackup.h"
#include "StageFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <future>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr auto mendPath = "move or rename the project"_L1;

/// What a part of the project's path does to a run.
struct PathEffect
{
    FindingKind kind;
    QLatin1StringView part;
    QLatin1StringView effect;
};

constexpr std::array pathEffects{
    PathEffect{FindingKind::PathSendsCopiesAstray, "/scr"_L1, "so that copies would go to other folders"_L1},
    PathEffect{FindingKind::PathMakesAllScreens, ".psc"_L1,
               "so that every file in \"scr\" counts as an image file"_L1},
    PathEffect{FindingKind::PathRefusesShapes, ".cat"_L1,
               "so that every shape file is refused as a catalogue"_L1},
    PathEffect{FindingKind::PathWidensIconSearch, "/bmp"_L1,
               "so that icons are looked for in all folders of the project"_L1},
};

/// What a run that was interrupted may leave behind, and what recovers it puts right: advice of
/// another kind would contradict that.
constexpr std::array leftByInterruptedRuns{FindingKind::FolderMissing,      FindingKind::TempFolderLeft,
                                           FindingKind::NoScreens,          FindingKind::ScreenOnlyInBackup,
                                           FindingKind::LevelWithoutScreen, FindingKind::FolderBeforeScreens};

bool mayBeLeftByInterruptedRun(const Finding &finding)
{
    return std::find(leftByInterruptedRuns.begin(), leftByInterruptedRuns.end(), finding.kind) !=
           leftByInterruptedRuns.end();
}

struct FoundEntry
{
    QByteArray path; ///< as the file system has it
    EntryKind kind = EntryKind::Other;
};

/// Folder by folder: one goes before the files whose names begin with its own.
bool goesBefore(const FoundEntry &first, const FoundEntry &second)
{
    const auto isBefore = [](char a, char b) {
        const auto rank = [](char letter) { return letter == '/' ? 0 : static_cast<unsigned char>(letter); };
        return rank(a) < rank(b);
    };
    return std::lexicographical_compare(first.path.cbegin(), first.path.cend(), second.path.cbegin(),
                                        second.path.cend(), isBefore);
}

class Surveyor final
{
public:
    Surveyor(const QString &projectDir, bool makesFolders, SurveyListener *listener)
        : m_projectDir(projectDir)
        , m_imageFolder(projectDir + "/scr"_L1)
        , m_makesFolders(makesFolders)
        , m_listener(listener)
    {
    }

    ProjectSurvey survey();

private:
    /// What some of the image files have to tell.
    struct Reading
    {
        QList<Finding> findings;
        QSet<QString> shapeNames;
        qint64 bytes = 0;
    };

    void lookAtFolders();
    void lookAtPath();
    void lookAtTempFolder();
    void lookAtHistory();
    void lookAtName(const QString &name);
    void lookAtAccess(const QString &path);
    void lookAtLogFolder();
    void listImageFiles();
    void lookAtImageFile(const QFileInfo &imageFile);
    void lookAtTargetFolder(const QFileInfo &imageFile);
    void lookAtBackupFolder(const QFileInfo &imageFile);
    void lookForRoom(qint64 imageBytes);
    void lookForLosses();
    void lookAtEntry(const FoundEntry &entry);
    void lookAtOtherFile(const QString &path);
    bool isKnownScreen(const FoundEntry &entry) const;
    Reading readImageFiles() const;
    std::future<Reading> startReading(qsizetype begin, qsizetype end) const;
    Reading readImageFiles(qsizetype begin, qsizetype end) const;
    void readImageFile(const QString &path, Reading &reading) const;
    static int firstInvalidLine(const FileLines &lines);

    void note(FindingKind kind, const QString &path, const QString &text, const QString &advice,
              int line = 0);

    QString m_projectDir;
    QString m_imageFolder;
    bool m_makesFolders;
    SurveyListener *m_listener;
    QSet<QByteArray> m_knownFiles; ///< as the file system names them
    QSet<QString> m_madeFolders;
    QSet<QString> m_foldersWithScreens;
    QSet<QString> m_foldersToRename;
    QList<ListingFailure> m_unlisted;
    ProjectSurvey m_survey;
};

ProjectSurvey Surveyor::survey()
{
    lookAtFolders();
    listImageFiles();
    const Reading reading = readImageFiles();
    lookAtHistory();
    lookForRoom(reading.bytes);
    lookForLosses();
    m_survey.findings += findScreensOnlyInBackup(m_projectDir, m_survey.imageFiles);
    m_survey.findings += reading.findings;
    m_survey.shapeNames = reading.shapeNames;
    if (StageFile::tellsOfInterruption(m_projectDir))
        m_survey.findings.removeIf(mayBeLeftByInterruptedRun);
    return m_survey;
}

void Surveyor::note(FindingKind kind, const QString &path, const QString &text, const QString &advice,
                    int line)
{
    m_survey.findings.append({kind, relativeTo(m_projectDir, path), text, advice, line});
}

void Surveyor::lookAtFolders()
{
    if (!QFileInfo(m_imageFolder).isDir()) {
        note(FindingKind::FolderMissing, m_imageFolder, u"there is no such folder"_s,
             u"choose a project directory, which holds \"scr\""_s);
    }
    lookAtPath();
    lookAtTempFolder();
    lookAtName(u"scr_temp"_s);
    lookAtName(u"scr_bak"_s);
    lookAtAccess(m_projectDir);
    lookAtAccess(m_imageFolder);
    lookAtLogFolder();
}

void Surveyor::lookAtTempFolder()
{
    const QString tempFolder = m_projectDir + "/scr_temp"_L1;
    if (!QFileInfo(tempFolder).isDir())
        return;
    if (hasCancelledRun(m_projectDir)) {
        note(FindingKind::RunCancelled, tempFolder,
             u"the last run was cancelled and has left what it had converted; \"scr\" is untouched"_s,
             u"nothing needs to be done: the next run puts it into the history"_s);
        return;
    }
    note(FindingKind::TempFolderLeft, tempFolder,
         u"a run that did not end has left it; old files in it would reach \"scr\""_s,
         u"look whether \"scr\" is whole, then remove it"_s);
}

/// A run makes a folder of this name. Where one is left over, that is another matter.
void Surveyor::lookAtName(const QString &name)
{
    const QFileInfo folder(m_projectDir + u'/' + name);
    if (folder.isSymLink()) {
        note(FindingKind::Link, folder.filePath(), u"a run would take this link away, and make a folder"_s,
             u"move it away"_s);
        return;
    }
    if (folder.isDir() || !folder.exists())
        return;
    note(FindingKind::NoFolder, folder.filePath(), u"it is no folder, so that a run could not make one"_s,
         u"move it away"_s);
}

void Surveyor::lookAtAccess(const QString &path)
{
    const QFileInfo folder(path);
    const bool isSpokenOfElsewhere = !folder.isDir() || !folder.isReadable();
    if (isSpokenOfElsewhere || folder.isWritable())
        return;
    note(FindingKind::FolderProtected, path, u"it cannot be written to, so that a run could not change it"_s,
         u"make it writable"_s);
}

void Surveyor::lookAtPath()
{
    for (const PathEffect &effect : pathEffects) {
        if (m_projectDir.contains(effect.part)) {
            note(effect.kind, m_projectDir,
                 u"the project's path holds \"%1\", %2"_s.arg(effect.part, effect.effect), mendPath);
        }
    }
}

void Surveyor::lookAtLogFolder()
{
    const QFileInfo logFolder(m_projectDir + "/log"_L1);
    if (logFolder.isSymLink()) {
        note(FindingKind::LogFolderMissing, logFolder.filePath(),
             u"it is a link, so that a run writes no change log"_s, u"make a folder in its place"_s);
    } else if (!logFolder.isDir()) {
        note(FindingKind::LogFolderMissing, logFolder.filePath(),
             u"there is no such folder, so that a run writes no change log"_s, u"make it"_s);
    } else if (!logFolder.isWritable()) {
        note(FindingKind::LogFolderMissing, logFolder.filePath(),
             u"it cannot be written to, so that a run writes no change log"_s, u"make it writable"_s);
    }
}

void Surveyor::listImageFiles()
{
    const FoundImageFiles found = searchImageFiles(m_imageFolder);
    m_unlisted = found.failures;
    for (const QFileInfo &file : found.files)
        m_foldersWithScreens.insert(file.path());
    for (const QFileInfo &file : found.files)
        lookAtImageFile(file);
    if (found.files.isEmpty() && QFileInfo(m_imageFolder).isDir()) {
        note(FindingKind::NoScreens, m_imageFolder,
             u"it holds no screen: a run would convert nothing, and take \"scr\" and the last backup away"_s,
             u"put the screens into it"_s);
    }
}

void Surveyor::lookAtImageFile(const QFileInfo &imageFile)
{
    const QString path = imageFile.filePath();
    m_survey.imageFiles.append(path);
    m_knownFiles.insert(QFile::encodeName(path));
    lookAtTargetFolder(imageFile);
    lookAtBackupFolder(imageFile);
    if (!path.endsWith(".psc"_L1)) {
        note(FindingKind::TakenForScreen, path,
             u"a run converts this file too, since its path holds \".psc\""_s,
             u"move it out of \"scr\" if it is no screen"_s);
    }
}

/// A run makes a missing folder when it comes to the first screen in it, one level only.
void Surveyor::lookAtTargetFolder(const QFileInfo &imageFile)
{
    const QString folder = imageFile.path();
    const QString parent = QFileInfo(folder).path();
    const bool isMade = m_makesFolders || folder == m_imageFolder || m_madeFolders.contains(folder) ||
                        m_madeFolders.contains(parent);
    if (isMade) {
        m_madeFolders.insert(folder);
        return;
    }
    note(
        m_foldersWithScreens.contains(parent) ? FindingKind::FolderBeforeScreens
                                              : FindingKind::LevelWithoutScreen,
        imageFile.filePath(),
        u"its folder could not be made in \"scr_temp\", \"scr_bak\" and \"scr\": no screen comes before it in %1"_s
            .arg(relativeTo(m_projectDir, parent)),
        u"use --make-folders"_s);
}

/// The name of the backup folder is put in wherever "/scr" stands in a path.
void Surveyor::lookAtBackupFolder(const QFileInfo &imageFile)
{
    const QString folder = imageFile.path().sliced(m_imageFolder.size());
    if (!folder.contains("/scr"_L1) || m_foldersToRename.contains(folder))
        return;
    m_foldersToRename.insert(folder);
    QString backup = "/scr"_L1 + folder;
    backup.replace("/scr"_L1, "/scr_bak"_L1);
    note(FindingKind::FolderRenamedInBackup, imageFile.path(),
         u"a run backs it up as \"%1\", since its path holds \"/scr\""_s.arg(backup.sliced(1)),
         u"look for its screens there"_s);
}

void Surveyor::lookAtHistory()
{
    const QString obstacle = RunHistory(m_projectDir).obstacle();
    if (obstacle.isEmpty())
        return;
    note(
        FindingKind::HistoryUnusable, m_projectDir + "/.vantrel.history"_L1,
        u"%1, so that a run would remove what it displaces for good: the last backup, and other files in \"scr\""_s
            .arg(obstacle),
        u"put that right, or use --keep-runs 0"_s);
}

/// Earlier runs give way to a run that needs their room.
void Surveyor::lookForRoom(qint64 imageBytes)
{
    const qint64 needed = bytesForRun(imageBytes);
    qint64 available = availableBytes(m_projectDir);
    if (available < needed)
        available += RunHistory(m_projectDir).sizeOf().bytes;
    if (available >= needed)
        return;
    note(
        FindingKind::NoRoom, m_projectDir,
        u"the copies of a run need up to %1 bytes, but the disk has room for %2"_s.arg(needed).arg(available),
        u"make room on the disk"_s);
}

void Surveyor::lookForLosses()
{
    QList<FoundEntry> entries;
    const QByteArray folder = QFile::encodeName(m_imageFolder);
    const OpenFolder opened(folder);
    const int error = visitTree(opened, [&](const TreeEntry &entry) {
        const FoundEntry found{folder + '/' + entry.path, entry.kind};
        if (!isKnownScreen(found))
            entries.append(found);
    });
    // The system lists a folder in an order of its own.
    std::sort(entries.begin(), entries.end(), goesBefore);
    for (const FoundEntry &found : std::as_const(entries))
        lookAtEntry(found);
    if (error != 0 && QFileInfo::exists(m_imageFolder)) {
        note(FindingKind::FolderUnreadable, m_imageFolder,
             u"it could not be read whole: %1"_s.arg(qt_error_string(error)),
             u"make every folder in it readable"_s);
        return;
    }
    // All that lies there without links was listed.
    for (const ListingFailure &failure : m_unlisted) {
        note(FindingKind::FolderUnreadable, failure.folder,
             u"it could not be listed: %1"_s.arg(failure.reason), u"take the links away that lead to it"_s);
    }
}

bool Surveyor::isKnownScreen(const FoundEntry &entry) const
{
    return entry.kind == EntryKind::File && m_knownFiles.contains(entry.path);
}

void Surveyor::lookAtEntry(const FoundEntry &entry)
{
    const QByteArray &name = entry.path;
    const QString path = QFile::decodeName(name);
    if (QFile::encodeName(path) != name) {
        note(FindingKind::NameNotUtf8, path, u"its name is not valid UTF-8, so that a run would not see it"_s,
             u"rename it"_s);
        return;
    }
    if (entry.kind == EntryKind::Link) {
        note(FindingKind::Link, path, u"a run would replace this link by what it leads to, or lose it"_s,
             u"move it out of \"scr\", or replace it by its files"_s);
    } else if (entry.kind == EntryKind::Folder) {
        lookAtAccess(path);
    } else {
        lookAtOtherFile(path);
    }
}

void Surveyor::lookAtOtherFile(const QString &path)
{
    // How the copying that a run uses names a file that is not whole yet.
    constexpr auto copyInProgress = "qt_temp."_L1;
    const QStringView fileName = QStringView(path).sliced(path.lastIndexOf(u'/') + 1);
    if (fileName.startsWith(copyInProgress)) {
        note(FindingKind::LeftOverFile, path, u"a copy that was broken off has left this temp file"_s,
             u"remove it"_s);
    } else if (fileName.startsWith(u'.')) {
        note(FindingKind::HiddenFile, path, u"a run would take this hidden file away"_s,
             u"use --keep-others, or move it out of \"scr\""_s);
    } else {
        note(FindingKind::OtherFile, path, u"a run would take this file away: it is no image file"_s,
             u"use --keep-others, or move it out of \"scr\""_s);
    }
}

Surveyor::Reading Surveyor::readImageFiles() const
{
    const qsizetype count = m_survey.imageFiles.size();
    if (m_listener != nullptr)
        return readImageFiles(0, count);
    // Nobody follows the survey from file to file, so that each processor may read a part.
    const qsizetype parts = std::max(1U, std::thread::hardware_concurrency());
    std::vector<std::future<Reading>> readings;
    for (qsizetype part = 0; part < parts; ++part)
        readings.push_back(startReading(count * part / parts, count * (part + 1) / parts));
    Reading whole;
    for (std::future<Reading> &future : readings) {
        const Reading reading = future.get();
        whole.findings += reading.findings;
        whole.shapeNames += reading.shapeNames;
        whole.bytes += reading.bytes;
    }
    return whole;
}

/// Reads on a thread of its own or, where the system has none left, when it is asked for.
std::future<Surveyor::Reading> Surveyor::startReading(qsizetype begin, qsizetype end) const
{
    const auto read = [this, begin, end, isEndWanted = interruptionOfThisThread()] {
        const InterruptionScope scope(isEndWanted);
        return readImageFiles(begin, end);
    };
    try {
        return std::async(std::launch::async, read);
    } catch (const std::system_error &) {
        return std::async(std::launch::deferred, read);
    }
}

Surveyor::Reading Surveyor::readImageFiles(qsizetype begin, qsizetype end) const
{
    Reading reading;
    for (qsizetype index = begin; index < end; ++index) {
        endIfInterrupted();
        const QString &path = m_survey.imageFiles.at(index);
        if (m_listener != nullptr)
            m_listener->onFile(static_cast<int>(m_survey.imageFiles.size()), static_cast<int>(index), path);
        readImageFile(path, reading);
    }
    return reading;
}

void Surveyor::readImageFile(const QString &path, Reading &reading) const
{
    const ImageFile screen = readImage(path);
    reading.bytes += screen.bytes.size();
    switch (screen.state) {
    case ImageFile::State::Unreadable:
        reading.findings.append({FindingKind::ScreenUnreadable, relativeTo(m_projectDir, path),
                                 screen.errorText, adviceForUnreadable({path})});
        return;
    case ImageFile::State::Invalid:
        reading.findings.append({FindingKind::ScreenInvalid, relativeTo(m_projectDir, path), screen.errorText,
                                 u"mend the line, or move the file out of \"scr\""_s,
                                 firstInvalidLine(screen.lines)});
        return;
    case ImageFile::State::Whole:
        break;
    }
    for (const STBlock &object : screen.objects) {
        if (refersToShape(object))
            reading.shapeNames.insert(object.shapeFile);
    }
    if (m_listener != nullptr)
        m_listener->onScreen(screen);
}

/// The number of the line; the one in the message counts on for lines with too few points.
int Surveyor::firstInvalidLine(const FileLines &lines)
{
    QString complaint;
    int line = 0;
    while (line < lines.size() && checkLines(lines.picked({line}), {.kind = FileKind::Image}, complaint))
        ++line;
    return line + 1;
}

} // namespace

ProjectSurvey surveyProject(const QString &projectDir, bool makesFolders, SurveyListener *listener)
{
    return Surveyor(projectDir, makesFolders, listener).survey();
}

bool refersToShape(const STBlock &object)
{
    return object.replace && !object.shapeFile.isEmpty();
}
