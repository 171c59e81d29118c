// The command line: which commands and options there are, and what was asked for.
#include "CommandLine.h"

#include "NearestWord.h"
#include "Output.h"
#include "UpdateCommand.h"
#include "Version.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <QTextStream>

#include <algorithm>
#include <optional>
#include <span>

using namespace Qt::StringLiterals;

namespace {

constexpr auto programName = "vantrel-cli"_L1;

struct OptionRow
{
    QLatin1StringView name;
    QLatin1StringView value; ///< what follows the option; empty for a switch
    QLatin1StringView meaning;
};

constexpr std::array updateOptions{
    OptionRow{"project"_L1, "DIR"_L1, "the project directory, which holds \"scr\" and \"mac\""_L1},
    OptionRow{"shape"_L1, "NAME"_L1, "replace the objects of this shape file; may be repeated"_L1},
    OptionRow{"shapes-from"_L1, "FILE"_L1, "the same for every line of a file"_L1},
    OptionRow{"all-shapes"_L1, {}, "the same for every shape file that objects refer to"_L1},
    OptionRow{"make-folders"_L1, {}, "make folders with their parents, so that no level needs a screen"_L1},
    OptionRow{"force"_L1, {}, "run even where something would be lost or not converted"_L1},
    OptionRow{"quiet"_L1, {}, "print neither table nor summary nor progress"_L1},
    OptionRow{"color"_L1, "WHEN"_L1, "colour the output: auto (at a terminal), always or never"_L1},
    OptionRow{"help"_L1, {}, "show this help"_L1},
};

constexpr std::array generalOptions{
    OptionRow{"help"_L1, {}, "show this help"_L1},
    OptionRow{"version"_L1, {}, "show the version"_L1},
};

struct Streams
{
    Output output{stdout};
    Output errorOutput{stderr};
};

ExitCode update(const QCommandLineParser &parser, Streams &streams);

struct CommandRow
{
    QLatin1StringView name;
    QLatin1StringView meaning;
    std::span<const OptionRow> options;
    ExitCode (*run)(const QCommandLineParser &parser, Streams &streams);
};

constexpr std::array commands{
    CommandRow{"update"_L1, "replace placed objects on a project's screens by their current shapes"_L1,
               updateOptions, update},
};

ExitCode refuseUsage(Streams &streams, const QString &complaint, QLatin1StringView command = {})
{
    const QString help =
        command.isEmpty() ? u"%1 --help"_s.arg(programName) : u"%1 %2 --help"_s.arg(programName, command);
    streams.errorOutput.printLine(u"%1: %2; see \"%3\""_s.arg(programName, escaped(complaint), help));
    return ExitCode::WrongUsage;
}

QString didYouMean(const QString &word, const QStringList &known)
{
    const QString nearest = nearestWord(word, known);
    return nearest.isEmpty() ? QString() : u", did you mean \"%1\"?"_s.arg(nearest);
}

void printOptions(std::span<const OptionRow> options, Output &output)
{
    output.print(u"\nOptions:\n");
    for (const OptionRow &option : options) {
        const QString spelling = u"--%1 %2"_s.arg(option.name, option.value);
        output.printLine(u"  %1 %2"_s.arg(spelling, -20).arg(option.meaning));
    }
}

void printExitCodes(Output &output)
{
    output.print(u"\nExit codes:\n");
    for (const ExitCodeRow &row : exitCodes)
        output.printLine(u"  %1  %2"_s.arg(static_cast<int>(row.code), 3).arg(row.meaning));
}

void printHelp(Output &output)
{
    output.printLine(u"Usage: %1 COMMAND [options]\n\nCommands:"_s.arg(programName));
    for (const CommandRow &command : commands)
        output.printLine(u"  %1 %2"_s.arg(command.name, -20).arg(command.meaning));
    printOptions(generalOptions, output);
    printExitCodes(output);
}

void printHelp(const CommandRow &command, Output &output)
{
    QString meaning = command.meaning;
    meaning.replace(0, 1, meaning.at(0).toUpper());
    output.printLine(u"Usage: %1 %2 [options]\n\n%3."_s.arg(programName, command.name, meaning));
    printOptions(command.options, output);
    printExitCodes(output);
}

QStringList optionSpellings(std::span<const OptionRow> options)
{
    QStringList spellings;
    for (const OptionRow &option : options)
        spellings.append(u"--%1"_s.arg(option.name));
    return spellings;
}

/// What is wrong with the words behind a command; empty where nothing is.
QString complaintAbout(const QCommandLineParser &parser, const CommandRow &command)
{
    if (const QStringList unknown = parser.unknownOptionNames(); !unknown.isEmpty()) {
        const QString spelling = (unknown.first().size() > 1 ? u"--"_s : u"-"_s) + unknown.first();
        return u"unknown option \"%1\"%2"_s.arg(spelling,
                                                didYouMean(spelling, optionSpellings(command.options)));
    }
    if (const QStringList words = parser.positionalArguments(); !words.isEmpty())
        return u"\"%1\" was not expected"_s.arg(words.first());
    return {};
}

ExitCode runCommand(const CommandRow &command, const QStringList &arguments, Streams &streams)
{
    QCommandLineParser parser;
    for (const OptionRow &option : command.options)
        parser.addOption(QCommandLineOption(option.name, option.meaning, option.value));

    const bool isParsed = parser.parse(arguments);
    if (const QString complaint = complaintAbout(parser, command); !complaint.isEmpty())
        return refuseUsage(streams, complaint, command.name);
    if (!isParsed) {
        // The library's sentence: here it stands within one.
        QString complaint = parser.errorText();
        complaint.replace(0, 1, complaint.at(0).toLower());
        complaint.replace(u'\'', u'"');
        if (complaint.endsWith(u'.'))
            complaint.chop(1);
        return refuseUsage(streams, complaint, command.name);
    }
    if (parser.isSet(u"help"_s)) {
        printHelp(command, streams.output);
        return ExitCode::Done;
    }
    return command.run(parser, streams);
}

std::optional<ColorMode> colorModeOf(const QCommandLineParser &parser)
{
    const QString when = parser.isSet(u"color"_s) ? parser.value(u"color"_s) : u"auto"_s;
    if (when == "auto"_L1)
        return ColorMode::Auto;
    if (when == "always"_L1)
        return ColorMode::Always;
    if (when == "never"_L1)
        return ColorMode::Never;
    return std::nullopt;
}

/// The names in a list of shapes: UTF-8, one a line, blanks around them ignored.
std::optional<QStringList> readShapeList(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    QStringList names;
    QTextStream stream(&file);
    for (QString line; stream.readLineInto(&line);)
        names.append(line.trimmed());
    return names;
}

ExitCode update(const QCommandLineParser &parser, Streams &streams)
{
    const auto refuse = [&streams](const QString &complaint) {
        return refuseUsage(streams, complaint, "update"_L1);
    };
    const std::optional<ColorMode> colorMode = colorModeOf(parser);
    if (!colorMode)
        return refuse(u"--color takes auto, always or never, not \"%1\""_s.arg(parser.value(u"color"_s)));
    streams.output.setColorMode(*colorMode);
    streams.errorOutput.setColorMode(*colorMode);

    if (parser.value(u"project"_s).isEmpty())
        return refuse(u"no project directory was named; use --project DIR"_s);
    QStringList shapeNames = parser.values(u"shape"_s);
    if (parser.isSet(u"shapes-from"_s)) {
        const QString path = parser.value(u"shapes-from"_s);
        const std::optional<QStringList> listed = readShapeList(path);
        if (!listed)
            return refuse(u"the list of shapes \"%1\" could not be opened"_s.arg(path));
        shapeNames += *listed;
    }
    shapeNames.removeAll(QString());
    if (shapeNames.isEmpty() && !parser.isSet(u"all-shapes"_s)) {
        return refuse(u"no shape was chosen, so that nothing would be replaced; use --shape NAME, "
                      "--shapes-from FILE or --all-shapes"_s);
    }
    return runUpdate({.projectDir = QDir::cleanPath(QDir().absoluteFilePath(parser.value(u"project"_s))),
                      .shapeNames = shapeNames,
                      .allShapes = parser.isSet(u"all-shapes"_s),
                      .makeFolders = parser.isSet(u"make-folders"_s),
                      .force = parser.isSet(u"force"_s),
                      .quiet = parser.isSet(u"quiet"_s)},
                     streams.output, streams.errorOutput);
}

QStringList knownWords()
{
    QStringList words = optionSpellings(generalOptions);
    for (const CommandRow &command : commands)
        words.append(command.name);
    return words;
}

} // namespace

ExitCode runCommandLine(const QStringList &arguments)
{
    Streams streams;
    const QString word = arguments.value(1);
    if (word.isEmpty())
        return refuseUsage(streams, u"no command was given"_s);
    if (word == "--help"_L1) {
        printHelp(streams.output);
        return ExitCode::Done;
    }
    if (word == "--version"_L1) {
        streams.output.printLine(u"%1 %2"_s.arg(programName, QLatin1StringView(VANTREL_VERSION)));
        return ExitCode::Done;
    }
    const auto command = std::find_if(commands.begin(), commands.end(),
                                      [&word](const CommandRow &row) { return row.name == word; });
    if (command == commands.end()) {
        const QString kind = word.startsWith(u'-') ? u"option"_s : u"command"_s;
        return refuseUsage(streams, u"unknown %1 \"%2\"%3"_s.arg(kind, word, didYouMean(word, knownWords())));
    }
    return runCommand(*command, arguments.sliced(1), streams);
}
