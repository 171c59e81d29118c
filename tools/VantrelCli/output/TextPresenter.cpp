// What commands tell, as text for people.
#include "TextPresenter.h"

#include "EscapedText.h"
#include "ProjectPath.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

struct RefusalText
{
    QLatin1StringView heading;
    QLatin1StringView wayOut; ///< behind the number of obstacles
};

/// In the order of the enumeration.
constexpr std::array refusalTexts{
    RefusalText{"Refused, nothing was touched: a run would lose or not convert the following."_L1,
                "; --force runs all the same."_L1},
    RefusalText{"Refused, nothing was touched: there is no such project."_L1, "."_L1},
    RefusalText{"A run would be refused: it would lose or not convert the following."_L1,
                "; --force runs all the same."_L1},
    RefusalText{"A run would be refused: an earlier one was interrupted."_L1, "."_L1},
};

QString counted(qsizetype count, const QString &one, const QString &many)
{
    return u"%1 %2"_s.arg(count).arg(count == 1 ? one : many);
}

Color colorOf(Severity severity)
{
    return severity == Severity::Obstacle ? Color::Red : Color::Yellow;
}

QString placeOf(const Finding &finding)
{
    const QString path = escaped(finding.path);
    return finding.line > 0 ? u"%1:%2"_s.arg(path, QString::number(finding.line)) : path;
}

QString stateOf(const ShapeReport &shape)
{
    if (!shape.isUsable())
        return u"unusable"_s;
    return shape.isOutdated ? u"outdated"_s : u"up to date"_s;
}

Color colorOf(const ShapeReport &shape)
{
    if (!shape.isUsable())
        return Color::Red;
    return shape.isOutdated ? Color::Yellow : Color::Plain;
}

Color colorOfDiffLine(const QByteArray &line)
{
    switch (line.at(0)) {
    case '+':
        return Color::Green;
    case '-':
        return Color::Red;
    case '\\':
        return Color::Dim;
    default:
        return Color::Plain;
    }
}

QString changeLogText(const CommandEnd &end)
{
    if (end.isDryRun)
        return u"none: a dry run writes none"_s;
    const bool isWritten = !end.changeLogPath.isEmpty();
    return isWritten ? escaped(end.changeLogPath)
                     : u"none: it could not be written, or nothing was reported"_s;
}

TextTable reportTable()
{
    return TextTable({u"Status"_s, u"Image File"_s, u"Shape File"_s, u"Image-Object"_s, u"Shape-Object"_s,
                      u"Prefix"_s, u"Error"_s});
}

TextTable shapeTable()
{
    TextTable table({u"Shape"_s, u"Objects"_s, u"Screens"_s, u"Place"_s, u"State"_s, u"Check"_s});
    table.alignRight({1, 2});
    return table;
}

TextTable runTable()
{
    TextTable table({u"Run"_s, u"What"_s, u"Screens"_s, u"Replaced"_s, u"Errors"_s, u"Kept files"_s,
                     u"Bytes"_s, u"Change log"_s});
    table.alignRight({2, 3, 4, 5, 6});
    return table;
}

QString whatOf(const KeptRun &run)
{
    if (!run.about.isEmpty())
        return u"%1 of %2"_s.arg(run.kind, run.about);
    return run.ended.isEmpty() ? u"%1, not ended"_s.arg(run.kind) : QString(run.kind);
}

} // namespace

TextPresenter::TextPresenter(Output &output, Output &errorOutput, QString projectDir, Verbosity verbosity)
    : m_output(output)
    , m_errorOutput(errorOutput)
    , m_projectDir(std::move(projectDir))
    , m_verbosity(verbosity)
    , m_progress(errorOutput, verbosity == Verbosity::Everything)
    , m_reports(reportTable())
    , m_shapes(shapeTable())
    , m_runs(runTable())
{
}

void TextPresenter::showProgress(int count, int index)
{
    m_count = count;
    m_index = index;
    if (index == count)
        m_progress.clear();
}

void TextPresenter::showFile(const QString &path)
{
    m_progress.show(m_count, m_index, path);
}

void TextPresenter::showFinding(const Finding &finding)
{
    m_progress.clear();
    const QString severity = m_output.colored(severityName(finding.severity()), colorOf(finding.severity()));
    m_output.printLine(
        u"%1: %2: %3; %4"_s.arg(placeOf(finding), severity, escaped(finding.text), escaped(finding.advice)));
    m_isSeparated = false;
}

/// One line for each kind: a project may have hundreds of findings that say the same.
void TextPresenter::showHints(const QList<Finding> &hints)
{
    if (isQuiet())
        return;
    QList<FindingKind> shown;
    for (const Finding &hint : hints) {
        if (shown.contains(hint.kind))
            continue;
        shown.append(hint.kind);
        printHint(hint, std::count_if(hints.cbegin(), hints.cend(),
                                      [&hint](const Finding &other) { return other.kind == hint.kind; }));
    }
}

void TextPresenter::printHint(const Finding &first, qsizetype count)
{
    const QString severity = m_errorOutput.colored(severityName(first.severity()), colorOf(first.severity()));
    if (count == 1) {
        m_errorOutput.printLine(
            u"%1: %2: %3; %4"_s.arg(placeOf(first), severity, escaped(first.text), escaped(first.advice)));
        return;
    }
    m_errorOutput.printLine(u"%1 and %2 more: %3: %4; \"vantrel-cli check\" lists them"_s.arg(
        placeOf(first), QString::number(count - 1), severity, rowOf(first.kind).meaning));
}

void TextPresenter::showObstacles(const QList<Finding> &obstacles)
{
    for (const Finding &obstacle : obstacles) {
        m_errorOutput.printLine(
            u"%1: %2; %3"_s.arg(escaped(obstacle.path), escaped(obstacle.text), escaped(obstacle.advice)));
    }
}

void TextPresenter::showRefusal(const QList<Finding> &obstacles, Refusal refusal)
{
    const RefusalText &text = refusalTexts.at(static_cast<std::size_t>(refusal));
    m_errorOutput.printLine(m_errorOutput.colored(text.heading, Color::Red));
    showObstacles(obstacles);
    m_errorOutput.printLine(counted(obstacles.size(), u"obstacle"_s, u"obstacles"_s) + text.wayOut);
}

void TextPresenter::showReport(const STBlock &report)
{
    if (isQuiet())
        return;
    m_reports.addRow({statusText(report.status), relativeTo(m_projectDir, report.imageFile), report.shapeFile,
                      report.imageObject, report.shapeObject, report.initText, report.error},
                     report.status == ReportStatus::Error ? Color::Red : Color::Plain);
}

void TextPresenter::showShape(const ShapeReport &shape)
{
    m_shapes.addRow({shape.name, QString::number(shape.objectCount), QString::number(shape.screenCount),
                     shape.place, stateOf(shape), shape.error.isEmpty() ? u"valid"_s : shape.error},
                    colorOf(shape));
}

void TextPresenter::showRun(const KeptRun &run)
{
    m_runs.addRow({run.name, whatOf(run), QString::number(run.screens), QString::number(run.replaced),
                   QString::number(run.errors), QString::number(run.files), QString::number(run.bytes),
                   run.changeLog});
}

void TextPresenter::showDiff(const FileDiff &diff)
{
    if (isQuiet())
        return;
    m_progress.clear();
    printReports();
    m_output.printLine(m_output.colored(u"--- "_s + escaped(diff.beforeName), Color::Bold));
    m_output.printLine(m_output.colored(u"+++ "_s + escaped(diff.afterName), Color::Bold));
    for (const DiffHunk &hunk : diff.hunks) {
        m_output.printLine(m_output.colored(hunkHeader(hunk), Color::Dim));
        for (const QByteArray &line : hunk.lines)
            printDiffLine(line);
    }
    m_isSeparated = false;
}

void TextPresenter::printDiffLine(const QByteArray &line)
{
    const QString text = escaped(QString::fromLatin1(line));
    const Color color = colorOfDiffLine(line);
    m_output.printLine(color == Color::Plain ? text : m_output.colored(text, color));
}

void TextPresenter::showLogEntry(const LogEntry &entry)
{
    m_progress.clear();
    const bool isAlert = entry.level == "alert"_L1;
    const QString level = m_errorOutput.colored(entry.level, isAlert ? Color::Red : Color::Yellow);
    m_errorOutput.printLine(u"%1: %2"_s.arg(level, escaped(entry.message)));
}

void TextPresenter::showEnd(const CommandEnd &end)
{
    m_progress.clear();
    if (!isQuiet()) {
        printReports();
        printTable(m_shapes);
        printTable(m_runs);
        if (!m_isSeparated)
            m_output.print(u"\n");
        printTotals(end);
    }
    if (!end.message.isEmpty())
        m_errorOutput.printLine(escaped(end.message));
    printLosses(end.lostScreens);
    // While the process still listens to those who want it to end.
    m_output.flush();
}

void TextPresenter::printLosses(const QList<LostScreen> &screens)
{
    for (const LostScreen &screen : screens) {
        const QString place =
            screen.backup.isEmpty()
                ? u"nor is its version from before the run in \"scr_bak\""_s
                : u"its version from before the run lies in %1"_s.arg(escaped(screen.backup));
        m_errorOutput.printLine(
            u"Missing: %1 is not in \"scr\" after the run; %2."_s.arg(escaped(screen.path), place));
    }
}

void TextPresenter::printReports()
{
    printTable(m_reports);
    m_reports = reportTable();
}

void TextPresenter::printTable(const TextTable &table)
{
    if (table.isEmpty())
        return;
    table.print(m_output);
    m_output.print(u"\n");
    m_isSeparated = true;
}

void TextPresenter::printTotals(const CommandEnd &end)
{
    const auto printRow = [this](QLatin1StringView name, const QString &value) {
        m_output.printLine(u"%1 %2"_s.arg(name, -13).arg(value));
    };
    qsizetype width = 0;
    for (const CountValue &count : end.counts)
        width = std::max(width, QString::number(count.value).size());
    for (const CountValue &count : end.counts)
        printRow(rowOf(count.count).label, QString::number(count.value).rightJustified(width));
    if (!end.seconds)
        return;
    printRow("Seconds"_L1, QString::number(*end.seconds, 'f', 2));
    printRow("Change log"_L1, changeLogText(end));
}
