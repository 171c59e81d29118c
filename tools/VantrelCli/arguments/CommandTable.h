// The commands and their options, from which parsing, help and documentation are made.
#pragma once

#include <QLatin1StringView>

#include <array>
#include <span>

struct OptionRow
{
    QLatin1StringView name;
    QLatin1StringView value; ///< what follows the option; empty for a switch
    QLatin1StringView meaning;
};

enum class Command { Check, Shapes, Update, Diff, Recover, History };

struct CommandRow
{
    Command command;
    QLatin1StringView name;
    QLatin1StringView meaning;
    std::span<const OptionRow> options;
    /// What stands for the words behind the options; empty where there must be none.
    QLatin1StringView words = {};
};

namespace Options {

inline constexpr OptionRow project{
    QLatin1StringView("project"), QLatin1StringView("DIR"),
    QLatin1StringView("the project directory, which holds \"scr\" and \"mac\"")};
inline constexpr OptionRow json{
    QLatin1StringView("json"), {}, QLatin1StringView("print one JSON object a line, and nothing else")};
inline constexpr OptionRow color{
    QLatin1StringView("color"), QLatin1StringView("WHEN"),
    QLatin1StringView("colour the output: auto (at a terminal), always or never")};
inline constexpr OptionRow help{QLatin1StringView("help"), {}, QLatin1StringView("show this help")};

} // namespace Options

inline constexpr std::array checkOptions{
    Options::project,
    OptionRow{QLatin1StringView("shape"), QLatin1StringView("NAME"),
              QLatin1StringView("look whether objects refer to this shape file; may be repeated")},
    OptionRow{QLatin1StringView("shapes-from"), QLatin1StringView("FILE"),
              QLatin1StringView("the same for every line of a file but empty ones and # comments")},
    OptionRow{QLatin1StringView("make-folders"),
              {},
              QLatin1StringView("check for a run with this option: no level needs a screen")},
    Options::json,
    Options::color,
    Options::help,
};

inline constexpr std::array shapesOptions{Options::project, Options::json, Options::color, Options::help};

inline constexpr std::array updateOptions{
    Options::project,
    OptionRow{QLatin1StringView("shape"), QLatin1StringView("NAME"),
              QLatin1StringView("replace the objects of this shape file; may be repeated")},
    OptionRow{QLatin1StringView("shapes-from"), QLatin1StringView("FILE"),
              QLatin1StringView("the same for every line of a file but empty ones and # comments")},
    OptionRow{QLatin1StringView("all-shapes"),
              {},
              QLatin1StringView("the same for every shape file that objects refer to")},
    OptionRow{
        QLatin1StringView("usable-shapes"),
        {},
        QLatin1StringView("the same for those of them that are valid and have all icons; tells the others")},
    OptionRow{QLatin1StringView("make-folders"),
              {},
              QLatin1StringView("make folders with their parents, so that no level needs a screen")},
    OptionRow{QLatin1StringView("force"),
              {},
              QLatin1StringView("run even where something would be lost or not converted")},
    OptionRow{
        QLatin1StringView("keep-others"),
        {},
        QLatin1StringView("put back what a run takes out of \"scr\": other files, and screens that cannot "
                          "be converted")},
    OptionRow{
        QLatin1StringView("keep-runs"), QLatin1StringView("N"),
        QLatin1StringView("how many runs \".vantrel.history\" keeps (3); with 0, what a run displaces is "
                          "removed for good")},
    OptionRow{QLatin1StringView("dry-run"),
              {},
              QLatin1StringView("change nothing, show what a run would report and change")},
    OptionRow{QLatin1StringView("fail-on-changes"),
              {},
              QLatin1StringView("with --dry-run: exit 5 where a run would change a screen")},
    OptionRow{
        QLatin1StringView("quiet"), {}, QLatin1StringView("print neither table nor summary nor progress")},
    Options::json,
    Options::color,
    Options::help,
};

inline constexpr std::array diffOptions{Options::project, Options::json, Options::color, Options::help};

inline constexpr std::array recoverOptions{
    Options::project,
    OptionRow{QLatin1StringView("roll-back"),
              {},
              QLatin1StringView("put every screen back as it was before the interrupted run")},
    OptionRow{QLatin1StringView("finish"), {}, QLatin1StringView("complete the interrupted run")},
    OptionRow{QLatin1StringView("undo"),
              {},
              QLatin1StringView("take the last run back, then the one before, and so on; the history keeps "
                                "what they had made")},
    Options::json,
    Options::color,
    Options::help,
};

inline constexpr std::array historyOptions{
    Options::project,
    OptionRow{
        QLatin1StringView("diff"), QLatin1StringView("RUN"),
        QLatin1StringView("show what changed between the screens before this run and those in \"scr\"")},
    OptionRow{
        QLatin1StringView("restore"), QLatin1StringView("RUN"),
        QLatin1StringView("bring back the named files of \"scr\", or all, as they were before this run")},
    OptionRow{QLatin1StringView("prune"), QLatin1StringView("N"),
              QLatin1StringView("remove all but the last N runs from the history")},
    Options::json,
    Options::color,
    Options::help,
};

inline constexpr std::array generalOptions{
    Options::help,
    OptionRow{QLatin1StringView("version"), {}, QLatin1StringView("show the version")},
    OptionRow{QLatin1StringView("print-docs"), {}, QLatin1StringView("print the tables of docs/cli.md")},
    OptionRow{QLatin1StringView("print-schema"),
              {},
              QLatin1StringView("print the JSON Schema of what --json prints")},
};

inline constexpr std::array commandRows{
    CommandRow{Command::Check, QLatin1StringView("check"),
               QLatin1StringView("look for what a run would lose, leave out or report as an error"),
               checkOptions},
    CommandRow{Command::Shapes, QLatin1StringView("shapes"),
               QLatin1StringView("list the shapes that screens use, and whether their objects are current"),
               shapesOptions},
    CommandRow{Command::Update, QLatin1StringView("update"),
               QLatin1StringView("replace placed objects on a project's screens by their current shapes"),
               updateOptions},
    CommandRow{Command::Diff, QLatin1StringView("diff"),
               QLatin1StringView("show what changed between the backup of the last run and the screens"),
               diffOptions},
    CommandRow{Command::Recover, QLatin1StringView("recover"),
               QLatin1StringView("tell where an interrupted run ended, complete it or take it back"),
               recoverOptions},
    CommandRow{Command::History, QLatin1StringView("history"),
               QLatin1StringView("list the last runs, and bring back what they have displaced"),
               historyOptions, QLatin1StringView("[FILE ...]")},
};
