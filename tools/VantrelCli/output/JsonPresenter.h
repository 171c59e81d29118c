// What commands tell, as one JSON object a line.
#pragma once

#include "JsonFields.h"
#include "Output.h"
#include "Presenter.h"

#include <QJsonObject>
#include <QString>

/// Prints everything to the standard output. Log entries reach the program by a way of their
/// own, so they are held back until the end: the lines of two equal runs have one order.
class JsonPresenter final : public Presenter
{
public:
    JsonPresenter(Output &output, QString projectDir, Verbosity verbosity)
        : m_output(output)
        , m_projectDir(std::move(projectDir))
        , m_verbosity(verbosity)
    {
    }

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
    void printLine(JsonKind kind, QJsonObject fields);

    Output &m_output;
    QString m_projectDir;
    Verbosity m_verbosity;
    QList<LogEntry> m_logEntries;
};
