// What commands tell, as text for people.
#pragma once

#include "Output.h"
#include "Presenter.h"
#include "ProgressLine.h"
#include "TextTable.h"

#include <QString>

/// Tables, diffs, findings and totals go to the standard output; the log, refusals and the
/// progress to the error output.
class TextPresenter final : public Presenter
{
public:
    TextPresenter(Output &output, Output &errorOutput, QString projectDir, Verbosity verbosity);

    void showProgress(int count, int index) override;
    void showFile(const QString &path) override;
    void showFinding(const Finding &finding) override;
    void showHints(const QList<Finding> &hints) override;
    void showObstacles(const QList<Finding> &obstacles) override;
    void showRefusal(const QList<Finding> &obstacles, Refusal refusal) override;
    void showReport(const STBlock &report) override;
    void showShape(const ShapeReport &shape) override;
    void showDiff(const FileDiff &diff) override;
    void showRun(const KeptRun &run) override;
    void showLogEntry(const LogEntry &entry) override;
    void showEnd(const CommandEnd &end) override;

private:
    bool isQuiet() const { return m_verbosity == Verbosity::Quiet; }
    void printTable(const TextTable &table);
    void printReports();
    void printHint(const Finding &first, qsizetype count);
    void printDiffLine(const QByteArray &line);
    void printLosses(const QList<LostScreen> &screens);
    void printTotals(const CommandEnd &end);

    Output &m_output;
    Output &m_errorOutput;
    QString m_projectDir;
    Verbosity m_verbosity;
    ProgressLine m_progress;
    TextTable m_reports;
    TextTable m_shapes;
    TextTable m_runs;
    int m_count = 0;
    int m_index = 0;
    bool m_isSeparated = true; ///< nothing stands on the output that an empty line must follow
};
