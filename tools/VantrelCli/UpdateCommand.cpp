// The command that replaces placed objects by their current shapes.
#include "UpdateCommand.h"

#include "ProjectSurvey.h"
#include "StopSignals.h"
#include "TextTable.h"
#include "UpdateRun.h"

#include <QElapsedTimer>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int errorStatus = 2;

QString counted(qsizetype count, const QString &one, const QString &many)
{
    return u"%1 %2"_s.arg(count).arg(count == 1 ? one : many);
}

void printObstacles(const QList<Finding> &obstacles, Output &errorOutput)
{
    for (const Finding &obstacle : obstacles)
        errorOutput.printLine(
            u"%1: %2; %3"_s.arg(escaped(obstacle.path), escaped(obstacle.text), obstacle.advice));
}

void printRefusal(const QList<Finding> &obstacles, Output &errorOutput)
{
    errorOutput.printLine(errorOutput.colored(
        u"Refused, nothing was touched: a run would lose or not convert the following."_s, Color::Red));
    printObstacles(obstacles, errorOutput);
    errorOutput.printLine(
        u"%1; --force runs all the same."_s.arg(counted(obstacles.size(), u"obstacle"_s, u"obstacles"_s)));
}

class UpdateSummary final
{
public:
    UpdateSummary(const UpdateOptions &options, const RunResult &result)
        : m_options(options)
        , m_result(result)
    {
    }

    qsizetype count(int status) const
    {
        return std::count_if(m_result.reports.cbegin(), m_result.reports.cend(),
                             [status](const Converter::STBlock &report) { return report.status == status; });
    }

    void printReports(Output &output) const;
    void printTotals(Output &output, double seconds) const;

private:
    QString relative(const QString &path) const
    {
        return path.startsWith(m_options.projectDir + u'/') ? path.sliced(m_options.projectDir.size() + 1)
                                                            : path;
    }

    const UpdateOptions &m_options;
    const RunResult &m_result;
};

void UpdateSummary::printReports(Output &output) const
{
    TextTable table({u"Status"_s, u"Image File"_s, u"Shape File"_s, u"Image-Object"_s, u"Shape-Object"_s,
                     u"Prefix"_s, u"Error"_s});
    for (const Converter::STBlock &report : m_result.reports) {
        table.addRow({statusText(report.status), relative(report.imageFile), report.shapeFile,
                      report.imageObject, report.shapeObject, report.initText, report.error},
                     report.status == errorStatus ? Color::Red : Color::Plain);
    }
    if (!table.isEmpty()) {
        table.print(output);
        output.print(u"\n");
    }
}

void UpdateSummary::printTotals(Output &output, double seconds) const
{
    const auto printRow = [&output](QLatin1StringView name, const QString &value) {
        output.printLine(u"%1 %2"_s.arg(name, -13).arg(value));
    };
    printRow("Files"_L1, QString::number(m_result.fileCount));
    printRow("Replaced"_L1, QString::number(count(0)));
    printRow("Not replaced"_L1, QString::number(count(1)));
    printRow("Errors"_L1, QString::number(count(errorStatus)));
    printRow("Seconds"_L1, QString::number(seconds, 'f', 2));
    printRow("Change log"_L1, QFileInfo::exists(m_result.changeLogPath)
                                  ? escaped(m_result.changeLogPath)
                                  : u"none: it could not be written, or nothing was reported"_s);
}

/// Image files from before the run that are neither in "scr" nor reported as not converted.
QStringList missingFiles(const QStringList &imageFiles, const QList<Converter::STBlock> &reports)
{
    QSet<QString> failedFiles;
    for (const Converter::STBlock &report : reports) {
        const bool isAboutWholeFile = report.firstLine < 0;
        if (report.status == errorStatus && isAboutWholeFile)
            failedFiles.insert(report.imageFile);
    }
    QStringList missing;
    std::copy_if(
        imageFiles.cbegin(), imageFiles.cend(), std::back_inserter(missing),
        [&](const QString &file) { return !failedFiles.contains(file) && !QFileInfo::exists(file); });
    return missing;
}

ExitCode exitCodeOf(const RunResult &result, const QStringList &missing, bool hasErrors, int signalNumber)
{
    if (!result.isCompleted && signalNumber != 0)
        return stoppedBy(signalNumber);
    if (!result.isCompleted || !result.isCopiedBack || !missing.isEmpty())
        return ExitCode::FilesMissing;
    return hasErrors ? ExitCode::DoneWithErrors : ExitCode::Done;
}

} // namespace

ExitCode runUpdate(const UpdateOptions &options, Output &output, Output &errorOutput)
{
    QElapsedTimer timer;
    timer.start();
    StopSignals stopSignals;
    const ProjectSurvey survey = surveyProject(options.projectDir, options.makeFolders);
    if (!survey.obstacles.isEmpty() && !options.force) {
        printRefusal(survey.obstacles, errorOutput);
        return ExitCode::Refused;
    }
    printObstacles(survey.obstacles, errorOutput);
    if (stopSignals.received() != 0)
        return stoppedBy(stopSignals.received());

    QSet<QString> shapeNames(options.shapeNames.cbegin(), options.shapeNames.cend());
    if (options.allShapes)
        shapeNames.unite(survey.shapeNames);
    UpdateRun run({options.projectDir, shapeNames, options.makeFolders, options.quiet}, errorOutput);
    QObject::connect(&stopSignals, &StopSignals::sigStopWanted, &run, &UpdateRun::stop);
    const RunResult result = run.execute();

    const UpdateSummary summary(options, result);
    const QStringList missing = missingFiles(survey.imageFiles, result.reports);
    if (!options.quiet) {
        summary.printReports(output);
        summary.printTotals(output, static_cast<double>(timer.elapsed()) / 1000.0);
    }
    if (!result.isCompleted)
        errorOutput.printLine(
            u"Stopped. \"scr\" is untouched; \"scr_temp\" keeps the files converted so far."_s);
    for (const QString &file : missing) {
        errorOutput.printLine(
            u"Missing: %1 is neither in \"scr\" nor reported; look for it in \"scr_bak\"."_s.arg(
                escaped(file)));
    }
    return exitCodeOf(result, result.isCompleted ? missing : QStringList(), summary.count(errorStatus) > 0,
                      stopSignals.received());
}
