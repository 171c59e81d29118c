// The lines that `--json` prints, and their fields.
#pragma once

#include <QLatin1StringView>

#include <array>

/// Changes when a line may no longer be read as before. New kinds and fields do not change it.
inline constexpr int jsonVersion = 1;

enum class JsonType {
    Text,
    TextOrNull,
    CheckName,    ///< a text out of findingRows
    CommandName,  ///< a text out of commandRows
    CodeNumber,   ///< an integer out of exitCodes
    NumberOrNull, ///< with decimals
    Integer,
    IntegerOrNull,
    Flag,
    TextList,
    Rectangle, ///< an object of the integers left, top, right and bottom, corners inclusive
    Hunks,     ///< a list of objects, see jsonHunkFields
    Counts,    ///< an object of integers, see countRows
};

struct JsonField
{
    QLatin1StringView name;
    JsonType type;
    QLatin1StringView meaning;
};

enum class JsonKind { Progress, File, Report, Finding, Shape, Diff, Run, Log, End };

struct JsonKindRow
{
    JsonKind kind;
    QLatin1StringView name;
    QLatin1StringView meaning;
};

/// The kinds of lines as documentation shows them, in the order of their numbers.
inline constexpr std::array jsonKinds{
    JsonKindRow{JsonKind::Progress, QLatin1StringView("progress"),
                QLatin1StringView("a file is about to be read or converted, or all have been")},
    JsonKindRow{JsonKind::File, QLatin1StringView("file"), QLatin1StringView("which file that is")},
    JsonKindRow{JsonKind::Report, QLatin1StringView("report"),
                QLatin1StringView("what a run did with an object or a file")},
    JsonKindRow{JsonKind::Finding, QLatin1StringView("finding"),
                QLatin1StringView("something that a user should look at")},
    JsonKindRow{JsonKind::Shape, QLatin1StringView("shape"),
                QLatin1StringView("a shape name that objects refer to")},
    JsonKindRow{JsonKind::Diff, QLatin1StringView("diff"),
                QLatin1StringView("how two versions of a file differ")},
    JsonKindRow{JsonKind::Run, QLatin1StringView("run"),
                QLatin1StringView("an entry of the history, the newest first")},
    JsonKindRow{JsonKind::Log, QLatin1StringView("log"),
                QLatin1StringView("a log entry of a run; all follow behind its reports")},
    JsonKindRow{JsonKind::End, QLatin1StringView("end"),
                QLatin1StringView("the last line: how the command ended")},
};

struct JsonFieldRow
{
    JsonKind kind;
    JsonField field;
};

/// The fields of each kind; all of them stand in every line of the kind, besides "version" and
/// "kind".
inline constexpr std::array jsonFields{
    JsonFieldRow{JsonKind::Progress,
                 {QLatin1StringView("count"), JsonType::Integer, QLatin1StringView("number of files")}},
    JsonFieldRow{JsonKind::Progress,
                 {QLatin1StringView("index"), JsonType::Integer,
                  QLatin1StringView("index of the file, from 0; the number of files "
                                    "behind the last one")}},
    JsonFieldRow{JsonKind::File, {QLatin1StringView("path"), JsonType::Text, QLatin1StringView("its path")}},
    JsonFieldRow{JsonKind::Report,
                 {QLatin1StringView("status"), JsonType::Text,
                  QLatin1StringView("\"REPLACE\", \"NO REPLACE\" or \"ERROR\"")}},
    JsonFieldRow{
        JsonKind::Report,
        {QLatin1StringView("imageFile"), JsonType::Text, QLatin1StringView("whole path of the image file")}},
    JsonFieldRow{JsonKind::Report,
                 {QLatin1StringView("shapeFile"), JsonType::Text,
                  QLatin1StringView("name of the shape file; empty for a whole file")}},
    JsonFieldRow{JsonKind::Report,
                 {QLatin1StringView("imageObject"), JsonType::Text,
                  QLatin1StringView("name of the object, with its tag")}},
    JsonFieldRow{JsonKind::Report,
                 {QLatin1StringView("shapeObject"), JsonType::Text,
                  QLatin1StringView("name of the shape object that replaced it, with "
                                    "its tag")}},
    JsonFieldRow{JsonKind::Report,
                 {QLatin1StringView("initText"), JsonType::Text,
                  QLatin1StringView("the object's initialisation prefix")}},
    JsonFieldRow{
        JsonKind::Report,
        {QLatin1StringView("error"), JsonType::Text, QLatin1StringView("the error; empty without one")}},
    JsonFieldRow{JsonKind::Report,
                 {QLatin1StringView("level"), JsonType::Integer,
                  QLatin1StringView("the object's level; -1 for a whole file")}},
    JsonFieldRow{
        JsonKind::Report,
        {QLatin1StringView("rect"), JsonType::Rectangle, QLatin1StringView("the object's main rectangle")}},
    JsonFieldRow{JsonKind::Report,
                 {QLatin1StringView("iconRect"), JsonType::Rectangle,
                  QLatin1StringView("the object's icon rectangle")}},
    JsonFieldRow{JsonKind::Report,
                 {QLatin1StringView("position"), JsonType::Rectangle,
                  QLatin1StringView("the object's position, in left and top")}},
    JsonFieldRow{JsonKind::Finding,
                 {QLatin1StringView("check"), JsonType::CheckName,
                  QLatin1StringView("kind of the finding, see below")}},
    JsonFieldRow{
        JsonKind::Finding,
        {QLatin1StringView("severity"), JsonType::Text, QLatin1StringView("\"obstacle\" or \"hint\"")}},
    JsonFieldRow{JsonKind::Finding,
                 {QLatin1StringView("path"), JsonType::Text, QLatin1StringView("file or folder")}},
    JsonFieldRow{JsonKind::Finding,
                 {QLatin1StringView("line"), JsonType::IntegerOrNull,
                  QLatin1StringView("number of the line, from 1")}},
    JsonFieldRow{JsonKind::Finding,
                 {QLatin1StringView("text"), JsonType::Text, QLatin1StringView("what is the matter")}},
    JsonFieldRow{JsonKind::Finding,
                 {QLatin1StringView("advice"), JsonType::Text, QLatin1StringView("what to do")}},
    JsonFieldRow{
        JsonKind::Shape,
        {QLatin1StringView("name"), JsonType::Text, QLatin1StringView("the name as a run compares it")}},
    JsonFieldRow{
        JsonKind::Shape,
        {QLatin1StringView("objects"), JsonType::Integer, QLatin1StringView("objects that refer to it")}},
    JsonFieldRow{JsonKind::Shape,
                 {QLatin1StringView("screens"), JsonType::Integer,
                  QLatin1StringView("image files with such objects")}},
    JsonFieldRow{JsonKind::Shape,
                 {QLatin1StringView("place"), JsonType::Text,
                  QLatin1StringView("\"mac\" or \"mac/vlo\", \"missing\" or \"refused\"")}},
    JsonFieldRow{JsonKind::Shape,
                 {QLatin1StringView("state"), JsonType::Text,
                  QLatin1StringView("\"up-to-date\", \"outdated\" or \"unusable\"")}},
    JsonFieldRow{JsonKind::Shape,
                 {QLatin1StringView("error"), JsonType::Text,
                  QLatin1StringView("the message of its check; empty where it is valid")}},
    JsonFieldRow{JsonKind::Diff,
                 {QLatin1StringView("path"), JsonType::Text, QLatin1StringView("the image file")}},
    JsonFieldRow{JsonKind::Diff,
                 {QLatin1StringView("change"), JsonType::Text,
                  QLatin1StringView("\"changed\", \"added\" or \"removed\"")}},
    JsonFieldRow{
        JsonKind::Diff,
        {QLatin1StringView("before"), JsonType::Text, QLatin1StringView("name of the earlier version")}},
    JsonFieldRow{
        JsonKind::Diff,
        {QLatin1StringView("after"), JsonType::Text, QLatin1StringView("name of the later version")}},
    JsonFieldRow{JsonKind::Diff,
                 {QLatin1StringView("linesAdded"), JsonType::Integer,
                  QLatin1StringView("lines that only the later version has")}},
    JsonFieldRow{JsonKind::Diff,
                 {QLatin1StringView("linesRemoved"), JsonType::Integer,
                  QLatin1StringView("lines that only the earlier version has")}},
    JsonFieldRow{JsonKind::Diff,
                 {QLatin1StringView("hunks"), JsonType::Hunks, QLatin1StringView("what differs, see below")}},
    JsonFieldRow{JsonKind::Run,
                 {QLatin1StringView("name"), JsonType::Text,
                  QLatin1StringView("its name: the local time at which it began")}},
    JsonFieldRow{
        JsonKind::Run,
        {QLatin1StringView("what"), JsonType::Text,
         QLatin1StringView("\"run\", or \"cancelled\": what one had converted; \"undo\" or \"restore\": "
                           "what one has replaced")}},
    JsonFieldRow{JsonKind::Run,
                 {QLatin1StringView("about"), JsonType::TextOrNull,
                  QLatin1StringView("the entry that was undone or restored from")}},
    JsonFieldRow{JsonKind::Run,
                 {QLatin1StringView("ended"), JsonType::TextOrNull,
                  QLatin1StringView("when it ended, as ISO 8601 has it")}},
    JsonFieldRow{JsonKind::Run,
                 {QLatin1StringView("changeLog"), JsonType::TextOrNull,
                  QLatin1StringView("path of its change log below the project")}},
    JsonFieldRow{
        JsonKind::Run,
        {QLatin1StringView("screens"), JsonType::Integer, QLatin1StringView("image files before the run")}},
    JsonFieldRow{
        JsonKind::Run,
        {QLatin1StringView("replaced"), JsonType::Integer, QLatin1StringView("its reports \"REPLACE\"")}},
    JsonFieldRow{
        JsonKind::Run,
        {QLatin1StringView("errors"), JsonType::Integer, QLatin1StringView("its reports \"ERROR\"")}},
    JsonFieldRow{
        JsonKind::Run,
        {QLatin1StringView("files"), JsonType::Integer, QLatin1StringView("files that the entry keeps")}},
    JsonFieldRow{JsonKind::Run,
                 {QLatin1StringView("bytes"), JsonType::Integer, QLatin1StringView("their size")}},
    JsonFieldRow{JsonKind::Log,
                 {QLatin1StringView("level"), JsonType::Text, QLatin1StringView("name of the level")}},
    JsonFieldRow{JsonKind::Log,
                 {QLatin1StringView("time"), JsonType::Text,
                  QLatin1StringView("local time, yyyy-MM-dd hh:mm:ss.zzz")}},
    JsonFieldRow{JsonKind::Log,
                 {QLatin1StringView("message"), JsonType::Text, QLatin1StringView("the message")}},
    JsonFieldRow{JsonKind::End,
                 {QLatin1StringView("command"), JsonType::CommandName, QLatin1StringView("the command")}},
    JsonFieldRow{JsonKind::End,
                 {QLatin1StringView("project"), JsonType::Text,
                  QLatin1StringView("whole path of the project directory")}},
    JsonFieldRow{JsonKind::End,
                 {QLatin1StringView("dryRun"), JsonType::Flag,
                  QLatin1StringView("whether nothing was to be changed by a run")}},
    JsonFieldRow{JsonKind::End,
                 {QLatin1StringView("exitCode"), JsonType::CodeNumber, QLatin1StringView("the exit code")}},
    JsonFieldRow{JsonKind::End,
                 {QLatin1StringView("counts"), JsonType::Counts,
                  QLatin1StringView("the command's counts, see below")}},
    JsonFieldRow{
        JsonKind::End,
        {QLatin1StringView("seconds"), JsonType::NumberOrNull, QLatin1StringView("how long a run took")}},
    JsonFieldRow{JsonKind::End,
                 {QLatin1StringView("changeLog"), JsonType::TextOrNull,
                  QLatin1StringView("whole path of the change log that was written")}},
    JsonFieldRow{JsonKind::End,
                 {QLatin1StringView("message"), JsonType::TextOrNull,
                  QLatin1StringView("what else there is to know")}},
};

/// The fields of each object in the list of hunks. A file has the line number 0 where it has no
/// line in front of the hunk.
inline constexpr std::array jsonHunkFields{
    JsonField{QLatin1StringView("beforeStart"), JsonType::Integer,
              QLatin1StringView("number of the hunk's first line in the earlier version, as a unified diff "
                                "counts")},
    JsonField{QLatin1StringView("beforeCount"), JsonType::Integer,
              QLatin1StringView("number of its lines there")},
    JsonField{QLatin1StringView("afterStart"), JsonType::Integer,
              QLatin1StringView("the same in the later version")},
    JsonField{QLatin1StringView("afterCount"), JsonType::Integer,
              QLatin1StringView("number of its lines there")},
    JsonField{QLatin1StringView("lines"), JsonType::TextList,
              QLatin1StringView("the lines as in a unified diff, control characters as they are")},
};

constexpr const JsonKindRow &rowOf(JsonKind kind)
{
    return jsonKinds[static_cast<std::size_t>(kind)];
}
