// The command line: what was asked for, and by which words.
#include "CommandLine.h"

#include "CheckCommand.h"
#include "CommandTable.h"
#include "DiffCommand.h"
#include "EscapedText.h"
#include "Help.h"
#include "HistoryCommand.h"
#include "Interruption.h"
#include "JsonPresenter.h"
#include "LeftOverFinding.h"
#include "Limits.h"
#include "NearestWord.h"
#include "Output.h"
#include "ProjectPath.h"
#include "RecoverCommand.h"
#include "RunHistory.h"
#include "ShapesCommand.h"
#include "ShellWord.h"
#include "StageFile.h"
#include "StopSignals.h"
#include "TextPresenter.h"
#include "UpdateCommand.h"
#include "Version.h"
#include "WrongUsage.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <new>
#include <optional>
#include <system_error>

using namespace Qt::StringLiterals;

namespace {

struct Streams
{
    Output output{stdout};
    Output errorOutput{stderr};
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
    const QStringList words = parser.positionalArguments();
    if (!words.isEmpty() && command.words.isEmpty())
        return u"\"%1\" was not expected"_s.arg(words.first());
    return {};
}

QString withoutFullStop(QString sentence)
{
    sentence.replace(0, 1, sentence.at(0).toLower());
    sentence.replace(u'\'', u'"');
    if (sentence.endsWith(u'.'))
        sentence.chop(1);
    return sentence;
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

/// The beginning of a file or a pipe, or the whole of a shorter one; nothing where it cannot be read.
std::optional<QByteArray> readBeginning(const QString &path, qint64 mostBytes)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    QByteArray text;
    QByteArray block;
    do {
        block = file.read(mostBytes - text.size());
        text += block;
    } while (!block.isEmpty());
    return file.error() == QFileDevice::NoError ? std::optional(text) : std::nullopt;
}

/// The names in a list of shapes: UTF-8, one a line, blanks around them ignored. Empty lines and
/// those that begin with "#" hold none.
QStringList shapesIn(const QByteArray &list)
{
    QStringList names;
    QTextStream stream(list);
    for (QString line; stream.readLineInto(&line);) {
        const QString name = line.trimmed();
        if (!name.isEmpty() && !name.startsWith(u'#'))
            names.append(name);
    }
    return names;
}

bool isBlank(const QString &text)
{
    return text.trimmed().isEmpty();
}

/// The absolute path of a folder; nothing where it is relative to a folder that is gone.
std::optional<QString> wholePath(const QString &path)
{
    if (QDir::isRelativePath(path) && QDir::currentPath().isEmpty())
        return std::nullopt;
    const QString whole = QDir::cleanPath(QDir().absoluteFilePath(path));
    if (!path.split(u'/').contains(".."_L1))
        return whole;
    // Behind a link, ".." is not the folder that the link lies in.
    const QString found = QFileInfo(path).canonicalFilePath();
    return found.isEmpty() ? whole : found;
}

QString messageOf(const std::system_error &failure)
{
    return QString::fromLocal8Bit(failure.code().message().c_str());
}

/// One command as it was asked for.
class CommandRequest final
{
public:
    CommandRequest(const CommandRow &command, Streams &streams)
        : m_command(command)
        , m_streams(streams)
    {
        for (const OptionRow &option : command.options)
            m_parser.addOption(QCommandLineOption(option.name, option.meaning, option.value));
    }

    ExitCode run(const QStringList &arguments);

private:
    QString complaintAboutValues();
    QString takeShapeNames();
    QString complaintAboutUpdate() const;
    QString complaintAboutRecover() const;
    QString complaintAboutHistory() const;
    QString complaintAboutNumber(const QString &option) const;
    HistoryOptions historyOptions() const;
    RecoverAction recoverAction() const;
    void setColors(ColorMode mode);
    ExitCode perform();
    ExitCode perform(Presenter &presenter);
    ExitCode performReading(Presenter &presenter);
    int keptRuns() const;
    ExitCode performUpdate(Presenter &presenter);
    ExitCode endEarly(Presenter &presenter, const QString &reason) const;
    std::unique_ptr<Presenter> makePresenter();
    QString realCommand() const;
    bool isSet(const QString &option) const;

    const CommandRow &m_command;
    Streams &m_streams;
    QCommandLineParser m_parser;
    QString m_projectDir;
    QStringList m_shapeNames;
};

ExitCode CommandRequest::run(const QStringList &arguments)
{
    const bool isParsed = m_parser.parse(arguments);
    if (const QString complaint = complaintAbout(m_parser, m_command); !complaint.isEmpty())
        return refuseUsage(m_streams, complaint, m_command.name);
    if (!isParsed)
        return refuseUsage(m_streams, withoutFullStop(m_parser.errorText()), m_command.name);
    if (isSet(u"help"_s)) {
        printHelp(m_command, m_streams.output);
        return ExitCode::Done;
    }
    if (const QString complaint = complaintAboutValues(); !complaint.isEmpty())
        return refuseUsage(m_streams, complaint, m_command.name);
    return perform();
}

/// Takes the values of the options. What is wrong with them; empty where nothing is.
QString CommandRequest::complaintAboutValues()
{
    const std::optional<ColorMode> colorMode = colorModeOf(m_parser);
    if (!colorMode)
        return u"--color takes auto, always or never, not \"%1\""_s.arg(m_parser.value(u"color"_s));
    setColors(*colorMode);

    constexpr auto wayOut = "; use --project DIR"_L1;
    const QString named = m_parser.value(u"project"_s);
    if (named.isEmpty())
        return complaintAboutProject(named) + wayOut;
    const std::optional<QString> projectDir = wholePath(named);
    if (!projectDir)
        return u"there is no folder \"%1\""_s.arg(named) + wayOut;
    m_projectDir = *projectDir;
    if (const QString complaint = complaintAboutProject(m_projectDir); !complaint.isEmpty())
        return complaint + wayOut;
    if (const QString complaint = takeShapeNames(); !complaint.isEmpty())
        return complaint;
    switch (m_command.command) {
    case Command::Recover:
        return complaintAboutRecover();
    case Command::History:
        return complaintAboutHistory();
    case Command::Update:
        return complaintAboutUpdate();
    default:
        return {};
    }
}

void CommandRequest::setColors(ColorMode mode)
{
    const ColorMode wanted = isSet(u"json"_s) ? ColorMode::Never : mode;
    m_streams.output.setColorMode(wanted);
    m_streams.errorOutput.setColorMode(wanted);
}

QString CommandRequest::takeShapeNames()
{
    if (isSet(u"shape"_s))
        m_shapeNames = m_parser.values(u"shape"_s);
    if (std::any_of(m_shapeNames.cbegin(), m_shapeNames.cend(), isBlank))
        return u"the name of a shape is empty; use --shape NAME"_s;
    if (isSet(u"shapes-from"_s)) {
        const QString path = m_parser.value(u"shapes-from"_s);
        const std::optional<QByteArray> list =
            path.isEmpty() ? std::nullopt : readBeginning(path, largestShapeList + 1);
        if (!list)
            return u"the list of shapes \"%1\" could not be read"_s.arg(path);
        if (list->size() > largestShapeList)
            return u"the list of shapes \"%1\" is longer than 16 MiB"_s.arg(path);
        m_shapeNames += shapesIn(*list);
    }
    return {};
}

QString CommandRequest::complaintAboutUpdate() const
{
    if (isSet(u"all-shapes"_s) && isSet(u"usable-shapes"_s))
        return u"--all-shapes and --usable-shapes exclude each other"_s;
    if (m_shapeNames.isEmpty() && !isSet(u"all-shapes"_s) && !isSet(u"usable-shapes"_s)) {
        return u"no shape was chosen, so that nothing would be replaced; use --shape NAME, "
               "--shapes-from FILE, --all-shapes or --usable-shapes"_s;
    }
    if (isSet(u"fail-on-changes"_s) && !isSet(u"dry-run"_s))
        return u"--fail-on-changes needs --dry-run"_s;
    return complaintAboutNumber(u"keep-runs"_s);
}

/// What is wrong with an option that takes a number of runs.
QString CommandRequest::complaintAboutNumber(const QString &option) const
{
    bool isNumber = true;
    const int number = isSet(option) ? m_parser.value(option).toInt(&isNumber) : 0;
    return isNumber && number >= 0
               ? QString()
               : u"--%1 takes a number of runs, 0 or more, not \"%2\""_s.arg(option, m_parser.value(option));
}

struct HistoryOption
{
    QLatin1StringView name;
    HistoryAction action;
};

constexpr std::array historyActions{
    HistoryOption{"diff"_L1, HistoryAction::Diff},
    HistoryOption{"restore"_L1, HistoryAction::Restore},
    HistoryOption{"prune"_L1, HistoryAction::Prune},
};

QString CommandRequest::complaintAboutHistory() const
{
    const auto chosen = std::count_if(historyActions.begin(), historyActions.end(),
                                      [this](const HistoryOption &option) { return isSet(option.name); });
    if (chosen > 1)
        return u"--diff, --restore and --prune exclude each other"_s;
    if (!m_parser.positionalArguments().isEmpty() && !isSet(u"restore"_s))
        return u"files can only be named with --restore RUN"_s;
    return complaintAboutNumber(u"prune"_s);
}

HistoryOptions CommandRequest::historyOptions() const
{
    HistoryOptions options;
    options.projectDir = m_projectDir;
    for (const HistoryOption &option : historyActions) {
        if (!isSet(option.name))
            continue;
        options.action = option.action;
        options.run = m_parser.value(option.name);
        options.keptRuns = options.run.toInt();
    }
    // As a user may take them from a list of files in the project's folder.
    for (const QString &name : m_parser.positionalArguments())
        options.files.append(name.startsWith("scr/"_L1) ? name.sliced(4) : name);
    return options;
}

struct RecoverOption
{
    QLatin1StringView name;
    RecoverAction action;
};

constexpr std::array recoverActions{
    RecoverOption{"roll-back"_L1, RecoverAction::RollBack},
    RecoverOption{"finish"_L1, RecoverAction::Finish},
    RecoverOption{"undo"_L1, RecoverAction::Undo},
};

QString CommandRequest::complaintAboutRecover() const
{
    const auto chosen = std::count_if(recoverActions.begin(), recoverActions.end(),
                                      [this](const RecoverOption &option) { return isSet(option.name); });
    return chosen > 1 ? u"--roll-back, --finish and --undo exclude each other"_s : QString();
}

RecoverAction CommandRequest::recoverAction() const
{
    const auto *const chosen =
        std::find_if(recoverActions.begin(), recoverActions.end(),
                     [this](const RecoverOption &option) { return isSet(option.name); });
    return chosen == recoverActions.end() ? RecoverAction::Tell : chosen->action;
}

/// Whether an option was given; not every command has every option.
bool CommandRequest::isSet(const QString &option) const
{
    const auto isMeant = [&option](const OptionRow &row) { return row.name == option; };
    return std::any_of(m_command.options.begin(), m_command.options.end(), isMeant) && m_parser.isSet(option);
}

std::unique_ptr<Presenter> CommandRequest::makePresenter()
{
    const Verbosity verbosity = isSet(u"quiet"_s) ? Verbosity::Quiet : Verbosity::Everything;
    if (isSet(u"json"_s))
        return std::make_unique<JsonPresenter>(m_streams.output, m_projectDir, verbosity);
    return std::make_unique<TextPresenter>(m_streams.output, m_streams.errorOutput, m_projectDir, verbosity);
}

ExitCode CommandRequest::perform()
{
    const std::unique_ptr<Presenter> presenter = makePresenter();
    try {
        return perform(*presenter);
    } catch (const WrongUsage &wrong) {
        for (const QString &complaint : wrong.complaints)
            refuseUsage(m_streams, complaint, m_command.name);
        return ExitCode::WrongUsage;
    } catch (const std::bad_alloc &) {
        return endEarly(*presenter, u"There is not enough memory for the files of the project."_s);
    } catch (const std::system_error &failure) {
        return endEarly(*presenter, u"It could not be done: %1."_s.arg(messageOf(failure)));
    }
}

ExitCode CommandRequest::perform(Presenter &presenter)
{
    switch (m_command.command) {
    case Command::Recover:
        return runRecover({m_projectDir, recoverAction()}, presenter);
    case Command::History:
        return runHistory(historyOptions(), presenter);
    case Command::Update:
        return performUpdate(presenter);
    default:
        return performReading(presenter);
    }
}

/// The commands that may end wherever they are, since they write nothing.
ExitCode CommandRequest::performReading(Presenter &presenter)
{
    const StopSignals stopSignals;
    const InterruptionScope scope([&stopSignals] { return stopSignals.received() != 0; });
    try {
        if (m_command.command == Command::Check)
            return runCheck({m_projectDir, m_shapeNames, isSet(u"make-folders"_s)}, presenter);
        return m_command.command == Command::Shapes ? runShapes(m_projectDir, presenter)
                                                    : runDiff(m_projectDir, presenter);
    } catch (const WorkInterrupted &) {
        CommandEnd end;
        end.command = m_command.name;
        end.projectDir = m_projectDir;
        end.exitCode = stoppedBy(stopSignals.received());
        end.message = stoppedUnchanged;
        presenter.showEnd(end);
        return end.exitCode;
    }
}

/// A run that had begun was stopped before its next file, as long as that was possible.
ExitCode CommandRequest::endEarly(Presenter &presenter, const QString &reason) const
{
    const bool isUnderWay = StageFile::exists(m_projectDir);
    CommandEnd end;
    end.command = m_command.name;
    end.projectDir = m_projectDir;
    end.exitCode = isUnderWay ? ExitCode::FilesMissing : ExitCode::Refused;
    end.message = isUnderWay
                      ? u"%1 A run is left over; see \"%2\"."_s.arg(reason, recoverCommandFor(m_projectDir))
                      : reason;
    presenter.showEnd(end);
    return end.exitCode;
}

int CommandRequest::keptRuns() const
{
    return isSet(u"keep-runs"_s) ? m_parser.value(u"keep-runs"_s).toInt() : RunHistory::usualRuns;
}

ExitCode CommandRequest::performUpdate(Presenter &presenter)
{
    return runUpdate({.projectDir = m_projectDir,
                      .shapeNames = m_shapeNames,
                      .allShapes = isSet(u"all-shapes"_s),
                      .usableShapes = isSet(u"usable-shapes"_s),
                      .makeFolders = isSet(u"make-folders"_s),
                      .force = isSet(u"force"_s),
                      .keptRuns = keptRuns(),
                      .keepOthers = isSet(u"keep-others"_s),
                      .dryRun = isSet(u"dry-run"_s),
                      .failOnChanges = isSet(u"fail-on-changes"_s),
                      .realCommand = realCommand()},
                     presenter);
}

/// The command without what keeps it from changing the project, and what tells how to print.
QString CommandRequest::realCommand() const
{
    constexpr std::array kept{"project"_L1,    "shape"_L1,         "shapes-from"_L1,
                              "all-shapes"_L1, "usable-shapes"_L1, "make-folders"_L1,
                              "force"_L1,      "keep-others"_L1,   "keep-runs"_L1};
    QStringList words{programName, m_command.name};
    for (const QLatin1StringView option : kept) {
        if (!isSet(option))
            continue;
        const QStringList values =
            option == "project"_L1 ? QStringList{m_projectDir} : m_parser.values(option);
        const QString spelling = u"--%1"_s.arg(option);
        if (values.isEmpty())
            words.append(spelling);
        for (const QString &value : values)
            words += {spelling, quotedForShell(value)};
    }
    return words.join(u' ');
}

QStringList knownWords()
{
    QStringList words = optionSpellings(generalOptions);
    for (const CommandRow &command : commandRows)
        words.append(command.name);
    return words;
}

struct GeneralRequest
{
    QLatin1StringView word;
    void (*print)(Output &output);
};

void printVersion(Output &output)
{
    output.printLine(u"%1 %2"_s.arg(programName, QLatin1StringView(VANTREL_VERSION)));
}

constexpr std::array generalRequests{
    GeneralRequest{"--help"_L1, printHelp},
    GeneralRequest{"--version"_L1, printVersion},
    GeneralRequest{"--print-docs"_L1, printDocs},
    GeneralRequest{"--print-schema"_L1, printSchema},
};

ExitCode obey(const QStringList &arguments, Streams &streams)
{
    const QString word = arguments.value(1);
    if (word.isEmpty())
        return refuseUsage(streams, u"no command was given"_s);
    for (const GeneralRequest &request : generalRequests) {
        if (word != request.word)
            continue;
        request.print(streams.output);
        return ExitCode::Done;
    }
    const auto command = std::find_if(commandRows.begin(), commandRows.end(),
                                      [&word](const CommandRow &row) { return row.name == word; });
    if (command == commandRows.end()) {
        const QString kind = word.startsWith(u'-') ? u"option"_s : u"command"_s;
        return refuseUsage(streams, u"unknown %1 \"%2\"%3"_s.arg(kind, word, didYouMean(word, knownWords())));
    }
    return CommandRequest(*command, streams).run(arguments.sliced(1));
}

/// Tells that not all was printed, unless it is the reader who has gone away.
ExitCode afterPrinting(Streams &streams, ExitCode exitCode)
{
    streams.output.flush();
    const int error = streams.output.error();
    if (error == 0 || error == EPIPE)
        return exitCode;
    if (error == ECANCELED)
        return exitCode == ExitCode::Done ? stoppedBy(StopSignals::lastReceived()) : exitCode;
    streams.errorOutput.printLine(
        u"%1: the output could not be written: %2"_s.arg(programName, qt_error_string(error)));
    return exitCode == ExitCode::Done ? ExitCode::DoneWithFindings : exitCode;
}

} // namespace

ExitCode runCommandLine(const QStringList &arguments)
{
    Streams streams;
    return afterPrinting(streams, obey(arguments, streams));
}
