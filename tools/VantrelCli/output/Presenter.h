// What commands have to tell, without the form in which it is told.
#pragma once

#include "ExitCode.h"
#include "FileDiff.h"
#include "Finding.h"
#include "STBlock.h"
#include "ShapeUsage.h"

#include <QLatin1StringView>
#include <QList>
#include <QString>
#include <QStringList>

#include <array>
#include <optional>

/// What a command counts.
enum class Count {
    Files,
    Replaced,
    NotReplaced,
    Errors,
    Shapes,
    Objects,
    Outdated,
    Unusable,
    Changed,
    LinesAdded,
    LinesRemoved,
    Obstacles,
    Hints,
    Runs,
    Restored,
};

struct CountRow
{
    Count count;
    QLatin1StringView name;  ///< in JSON
    QLatin1StringView label; ///< in text
    QLatin1StringView meaning;
};

/// The counts as documentation shows them, in the order of their numbers.
inline constexpr std::array countRows{
    CountRow{Count::Files, QLatin1StringView("files"), QLatin1StringView("Files"),
             QLatin1StringView("image files")},
    CountRow{Count::Replaced, QLatin1StringView("replaced"), QLatin1StringView("Replaced"),
             QLatin1StringView("reports \"REPLACE\"")},
    CountRow{Count::NotReplaced, QLatin1StringView("notReplaced"), QLatin1StringView("Not replaced"),
             QLatin1StringView("reports \"NO REPLACE\"")},
    CountRow{Count::Errors, QLatin1StringView("errors"), QLatin1StringView("Errors"),
             QLatin1StringView("reports \"ERROR\"")},
    CountRow{Count::Shapes, QLatin1StringView("shapes"), QLatin1StringView("Shapes"),
             QLatin1StringView("shape names that objects refer to")},
    CountRow{Count::Objects, QLatin1StringView("objects"), QLatin1StringView("Objects"),
             QLatin1StringView("objects that refer to them")},
    CountRow{Count::Outdated, QLatin1StringView("outdated"), QLatin1StringView("Outdated"),
             QLatin1StringView("shapes for which a run would write something else")},
    CountRow{Count::Unusable, QLatin1StringView("unusable"), QLatin1StringView("Unusable"),
             QLatin1StringView("shapes that are missing, refused, unreadable or invalid")},
    CountRow{Count::Changed, QLatin1StringView("changed"), QLatin1StringView("Changed"),
             QLatin1StringView("image files that differ")},
    CountRow{Count::LinesAdded, QLatin1StringView("linesAdded"), QLatin1StringView("Lines added"),
             QLatin1StringView("lines that only the later version has")},
    CountRow{Count::LinesRemoved, QLatin1StringView("linesRemoved"), QLatin1StringView("Lines removed"),
             QLatin1StringView("lines that only the earlier version has")},
    CountRow{Count::Obstacles, QLatin1StringView("obstacles"), QLatin1StringView("Obstacles"),
             QLatin1StringView("findings for which `update` refuses to start")},
    CountRow{Count::Hints, QLatin1StringView("hints"), QLatin1StringView("Hints"),
             QLatin1StringView("other findings")},
    CountRow{Count::Runs, QLatin1StringView("runs"), QLatin1StringView("Runs"),
             QLatin1StringView("entries of the history")},
    CountRow{Count::Restored, QLatin1StringView("restored"), QLatin1StringView("Restored"),
             QLatin1StringView("files that were brought back")},
};

constexpr const CountRow &rowOf(Count count)
{
    return countRows[static_cast<std::size_t>(count)];
}

static_assert(std::all_of(countRows.begin(), countRows.end(),
                          [](const CountRow &row) { return &row == &rowOf(row.count); }),
              "rowOf() needs the order of the enumeration");

struct CountValue
{
    Count count;
    qsizetype value;
};

struct LogEntry
{
    QString level;
    QString time;
    QString message;
};

/// An entry of the history, as a list of runs shows it.
struct KeptRun
{
    QString name;
    QLatin1StringView kind; ///< "run", "undo", "restore" or "cancelled"
    QString about;          ///< of the latter two: which entry
    QString ended;          ///< ISO 8601; empty where it is not known
    QString changeLog;      ///< below the project; empty where none is known
    qsizetype screens = 0;
    qsizetype replaced = 0;
    qsizetype errors = 0;
    qsizetype files = 0; ///< that the entry keeps
    qint64 bytes = 0;    ///< that they take
};

enum class Verbosity { Everything, Quiet };

/// A screen from before a run that is not in "scr" after it.
struct LostScreen
{
    QString path;   ///< relative to the project
    QString backup; ///< where its version from before the run lies; empty where nothing does
};

/// What a command tells that a signal has stopped while it was reading.
inline constexpr QLatin1StringView stoppedUnchanged("Stopped. Nothing was changed.");

/// How a command ended.
struct CommandEnd
{
    QLatin1StringView command;
    QString projectDir;
    ExitCode exitCode = ExitCode::Done;
    QList<CountValue> counts;
    std::optional<double> seconds; ///< of a run
    QString changeLogPath;         ///< empty where none was written
    bool isDryRun = false;
    QList<LostScreen> lostScreens;
    QString message; ///< what else a user must know; mostly empty
};

/// Why a run does not start, or, where a dry run goes on, would not.
enum class Refusal {
    UnlessForced,
    NoProject,
    ForeseenUnlessForced,
    ForeseenOverLeftOver, ///< an earlier run was interrupted
};

/// Shows what commands tell, in the order in which they tell it. Paths are relative to the
/// project where they lie in it.
class Presenter
{
public:
    virtual ~Presenter() = default;

    /// A file is about to be read or converted; the number of files as `index` at the end.
    virtual void showProgress(int count, int index) = 0;
    virtual void showFile(const QString &path) = 0;

    virtual void showFinding(const Finding &finding) = 0;
    /// What a user should know of before a run, and what keeps none from starting.
    virtual void showHints(const QList<Finding> &hints) = 0;
    /// What a run would lose or fail to convert, where it runs all the same.
    virtual void showObstacles(const QList<Finding> &obstacles) = 0;
    /// The same where it does not run.
    virtual void showRefusal(const QList<Finding> &obstacles, Refusal refusal) = 0;

    virtual void showReport(const STBlock &report) = 0;
    virtual void showShape(const ShapeReport &shape) = 0;
    virtual void showDiff(const FileDiff &diff) = 0;
    virtual void showRun(const KeptRun &run) = 0;
    virtual void showLogEntry(const LogEntry &entry) = 0;
    virtual void showEnd(const CommandEnd &end) = 0;
};
