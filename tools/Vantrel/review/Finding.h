// What a user should look at before a run, and after it.
#pragma once

#include <QLatin1StringView>
#include <QList>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <array>

enum class Severity {
    Obstacle, ///< a run would lose or fail to convert something, so that `update` refuses to start
    Hint,     ///< a run starts all the same
};

enum class FindingKind {
    FolderMissing,
    FolderUnreadable,
    PathSendsCopiesAstray,
    PathMakesAllScreens,
    PathRefusesShapes,
    PathWidensIconSearch,
    PathHidesIcons,
    TempFolderLeft,
    NoFolder,
    FolderProtected,
    LogFolderMissing,
    NoScreens,
    ScreenOnlyInBackup,
    HistoryUnusable,
    NoRoom,
    LevelWithoutScreen,
    FolderBeforeScreens,
    FolderRenamedInBackup,
    TakenForScreen,
    NameNotUtf8,
    Link,
    HiddenFile,
    LeftOverFile,
    OtherFile,
    ScreenUnreadable,
    ScreenInvalid,
    ShapeMissing,
    LibWithoutPlb,
    ShapeRefused,
    ShapeUnreadable,
    ShapeEmpty,
    ShapeInvalid,
    IconMissing,
    NameMatchesNothing,
    ShapeLeftOut,
    BackupMissing,
    FileUnreadable,
    ScratchFailed,
    ScreenLost,
    RunUnderWay,
    RunInterrupted,
    RunCancelled,
    Recovery,
    RecoveryUndecided,
};

struct FindingRow
{
    FindingKind kind;
    QLatin1StringView name; ///< in JSON
    Severity severity;
    QLatin1StringView meaning;
};

/// The kinds of findings as documentation shows them, in the order of their numbers.
inline constexpr std::array findingRows{
    FindingRow{FindingKind::FolderMissing, QLatin1StringView("folder-missing"), Severity::Obstacle,
               QLatin1StringView("there is no folder \"scr\"")},
    FindingRow{FindingKind::FolderUnreadable, QLatin1StringView("folder-unreadable"), Severity::Obstacle,
               QLatin1StringView("a folder below \"scr\" cannot be listed")},
    FindingRow{FindingKind::PathSendsCopiesAstray, QLatin1StringView("path-scr"), Severity::Obstacle,
               QLatin1StringView("\"/scr\" in the project's path: copies go to other folders")},
    FindingRow{FindingKind::PathMakesAllScreens, QLatin1StringView("path-psc"), Severity::Hint,
               QLatin1StringView("\".psc\" in the project's path: every file counts as an image file")},
    FindingRow{FindingKind::PathRefusesShapes, QLatin1StringView("path-cat"), Severity::Hint,
               QLatin1StringView("\".cat\" in the project's path: every shape file is refused")},
    FindingRow{FindingKind::PathWidensIconSearch, QLatin1StringView("path-bmp"), Severity::Hint,
               QLatin1StringView("\"/bmp\" in the project's path: icons are looked for in all folders")},
    FindingRow{FindingKind::PathHidesIcons, QLatin1StringView("path-upper-case"), Severity::Obstacle,
               QLatin1StringView("upper-case letters in the project's path: no icon of a shape is found")},
    FindingRow{FindingKind::TempFolderLeft, QLatin1StringView("temp-folder-left"), Severity::Obstacle,
               QLatin1StringView("a run that did not end has left \"scr_temp\"")},
    FindingRow{FindingKind::NoFolder, QLatin1StringView("no-folder"), Severity::Obstacle,
               QLatin1StringView("something else has the name of \"scr_temp\" or \"scr_bak\"")},
    FindingRow{FindingKind::FolderProtected, QLatin1StringView("folder-protected"), Severity::Obstacle,
               QLatin1StringView("a folder that a run changes cannot be written to")},
    FindingRow{FindingKind::LogFolderMissing, QLatin1StringView("log-folder-missing"), Severity::Hint,
               QLatin1StringView("there is no folder \"log\" to write to: no change log")},
    FindingRow{FindingKind::NoScreens, QLatin1StringView("no-screens"), Severity::Obstacle,
               QLatin1StringView("\"scr\" holds no screen: a run takes it and the last backup away")},
    FindingRow{FindingKind::ScreenOnlyInBackup, QLatin1StringView("screen-only-in-backup"),
               Severity::Obstacle,
               QLatin1StringView("a screen is in \"scr_bak\" or the newest entry of the history, and not "
                                 "in \"scr\": runs set it aside")},
    FindingRow{FindingKind::HistoryUnusable, QLatin1StringView("history-unusable"), Severity::Obstacle,
               QLatin1StringView("what a run displaces could not be kept in \".vantrel.history\"")},
    FindingRow{FindingKind::NoRoom, QLatin1StringView("no-room"), Severity::Obstacle,
               QLatin1StringView("the disk has no room for the copies of a run")},
    FindingRow{FindingKind::LevelWithoutScreen, QLatin1StringView("level-without-screen"), Severity::Obstacle,
               QLatin1StringView("the folder above holds no screen, so that this one is not made")},
    FindingRow{FindingKind::FolderBeforeScreens, QLatin1StringView("folder-before-screens"),
               Severity::Obstacle,
               QLatin1StringView("the folder is sorted before the first screen of the folder above")},
    FindingRow{FindingKind::FolderRenamedInBackup, QLatin1StringView("folder-renamed-in-backup"),
               Severity::Hint,
               QLatin1StringView("a folder whose name begins with \"scr\" has another name in \"scr_bak\"")},
    FindingRow{FindingKind::TakenForScreen, QLatin1StringView("taken-for-screen"), Severity::Hint,
               QLatin1StringView("a file that does not end in \".psc\" is converted too")},
    FindingRow{FindingKind::NameNotUtf8, QLatin1StringView("name-not-utf8"), Severity::Obstacle,
               QLatin1StringView("a name is not valid UTF-8: a run does not see it")},
    FindingRow{FindingKind::Link, QLatin1StringView("link"), Severity::Obstacle,
               QLatin1StringView("a link is replaced by what it leads to, or lost")},
    FindingRow{FindingKind::HiddenFile, QLatin1StringView("hidden-file"), Severity::Obstacle,
               QLatin1StringView("a run takes a hidden file out of \"scr\"")},
    FindingRow{FindingKind::LeftOverFile, QLatin1StringView("left-over-file"), Severity::Obstacle,
               QLatin1StringView("a copy that was broken off has left a temp file")},
    FindingRow{FindingKind::OtherFile, QLatin1StringView("other-file"), Severity::Obstacle,
               QLatin1StringView("a run takes a file that is no image file out of \"scr\"")},
    FindingRow{FindingKind::ScreenUnreadable, QLatin1StringView("screen-unreadable"), Severity::Obstacle,
               QLatin1StringView("an image file cannot be opened, or is too large")},
    FindingRow{FindingKind::ScreenInvalid, QLatin1StringView("screen-invalid"), Severity::Obstacle,
               QLatin1StringView("an image file fails its check")},
    FindingRow{FindingKind::ShapeMissing, QLatin1StringView("shape-missing"), Severity::Hint,
               QLatin1StringView("objects refer to a shape file that does not exist")},
    FindingRow{FindingKind::LibWithoutPlb, QLatin1StringView("lib-without-plb"), Severity::Hint,
               QLatin1StringView("objects refer to a \".lib\" file whose \".plb\" file does not exist")},
    FindingRow{FindingKind::ShapeRefused, QLatin1StringView("shape-refused"), Severity::Hint,
               QLatin1StringView("objects refer to a catalogue, which is refused")},
    FindingRow{FindingKind::ShapeUnreadable, QLatin1StringView("shape-unreadable"), Severity::Hint,
               QLatin1StringView("a shape file cannot be opened, or is too large")},
    FindingRow{FindingKind::ShapeEmpty, QLatin1StringView("shape-empty"), Severity::Hint,
               QLatin1StringView("a shape file holds no object: a run replaces objects by nothing")},
    FindingRow{FindingKind::ShapeInvalid, QLatin1StringView("shape-invalid"), Severity::Hint,
               QLatin1StringView("a shape file fails its check")},
    FindingRow{FindingKind::IconMissing, QLatin1StringView("icon-missing"), Severity::Hint,
               QLatin1StringView("a shape names an icon bitmap that is not found")},
    FindingRow{FindingKind::NameMatchesNothing, QLatin1StringView("name-matches-nothing"), Severity::Hint,
               QLatin1StringView("no object refers to a shape that was chosen")},
    FindingRow{FindingKind::ShapeLeftOut, QLatin1StringView("shape-left-out"), Severity::Hint,
               QLatin1StringView("--usable-shapes leaves out a shape that objects refer to")},
    FindingRow{FindingKind::BackupMissing, QLatin1StringView("backup-missing"), Severity::Hint,
               QLatin1StringView("there is no folder \"scr_bak\" to compare with")},
    FindingRow{FindingKind::FileUnreadable, QLatin1StringView("file-unreadable"), Severity::Obstacle,
               QLatin1StringView("a file that is to be compared cannot be read")},
    FindingRow{FindingKind::ScratchFailed, QLatin1StringView("scratch-failed"), Severity::Obstacle,
               QLatin1StringView("a dry run could not set up its scratch folder")},
    FindingRow{FindingKind::ScreenLost, QLatin1StringView("screen-lost"), Severity::Obstacle,
               QLatin1StringView("after a run, a screen from before it is not in \"scr\"")},
    FindingRow{FindingKind::RunUnderWay, QLatin1StringView("run-under-way"), Severity::Obstacle,
               QLatin1StringView("somebody else works on the project")},
    FindingRow{FindingKind::RunInterrupted, QLatin1StringView("run-interrupted"), Severity::Obstacle,
               QLatin1StringView("a run did not come to its end")},
    FindingRow{
        FindingKind::RunCancelled, QLatin1StringView("run-cancelled"), Severity::Hint,
        QLatin1StringView("a cancelled run has left \"scr_temp\": the next one puts it into the history")},
    FindingRow{FindingKind::Recovery, QLatin1StringView("recovery"), Severity::Hint,
               QLatin1StringView("what an interrupted run has left, and what recovers it")},
    FindingRow{FindingKind::RecoveryUndecided, QLatin1StringView("recovery-undecided"), Severity::Obstacle,
               QLatin1StringView("a file keeps an interrupted run from being recovered")},
};

constexpr const FindingRow &rowOf(FindingKind kind)
{
    return findingRows[static_cast<std::size_t>(kind)];
}

static_assert(std::all_of(findingRows.begin(), findingRows.end(),
                          [](const FindingRow &row) { return &row == &rowOf(row.kind); }),
              "rowOf() needs the order of the enumeration");

struct Finding
{
    FindingKind kind;
    QString path;   ///< relative to the project, or whole where it lies outside
    QString text;   ///< what is the matter
    QString advice; ///< what to do
    int line = 0;   ///< number of the line in the file; 0 where it is about no line

    Severity severity() const { return rowOf(kind).severity; }
};

qsizetype countOf(const QList<Finding> &findings, Severity severity);
QList<Finding> findingsOf(const QList<Finding> &findings, Severity severity);
/// What to do about a screen or a shape, or one of two versions, that could not be read.
QString adviceForUnreadable(const QStringList &paths);
/// The word for a severity, in texts and in JSON.
QLatin1StringView severityName(Severity severity);
