// What a converter tells and logs, written down for a test.
#pragma once

#include "Converter.h"
#include "Logger.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

/// Writes down the signals of a converter, on the thread that made the recorder.
class RunRecorder final : public QObject
{
public:
    explicit RunRecorder(Converter &converter);

    /// One text for each signal, in their order: "progress 3 0", "file /p/scr/a.psc",
    /// "report ERROR", "end".
    QStringList events;
    QList<Converter::STBlock> reports;

    /// How many runs have ended.
    qsizetype endedRuns() const { return events.count(QStringLiteral("end")); }
    /// The words for the reports' status.
    QStringList statusWords() const;
};

/// Writes down log entries while it lives.
class LogRecorder final : public Qel::Logger::LogListener
{
    Q_DISABLE_COPY_MOVE(LogRecorder)

public:
    LogRecorder();
    ~LogRecorder() override;

    void handleMessage(QString level, QString time, QString message) override;
    void handleFormatedMessage(QString line) override;

    /// Level and message of each entry: "error: Could not open ..."
    QStringList entries;
    /// The whole line of each entry.
    QStringList lines;

    /// Whether the entry's line names the source file and the line in it.
    bool namesSource(qsizetype entry, const QString &source, int line) const;
};

/// All of a report that a reader of it sees, on one line.
QString toText(const Converter::STBlock &block);

/// "1 2 30 40" for a rectangle with these inclusive corners.
QString toText(const QRect &rect);
