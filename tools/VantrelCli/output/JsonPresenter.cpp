// What commands tell, as one JSON object a line.
#include "JsonPresenter.h"

#include "EscapedText.h"
#include "ProjectPath.h"

#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace {

QJsonObject rectangle(const QRect &rect)
{
    return {{u"left"_s, rect.left()},
            {u"top"_s, rect.top()},
            {u"right"_s, rect.right()},
            {u"bottom"_s, rect.bottom()}};
}

QJsonObject hunkObject(const DiffHunk &hunk)
{
    QJsonArray lines;
    for (const QByteArray &line : hunk.lines)
        lines.append(QString::fromLatin1(line));
    return {{u"beforeStart"_s, hunk.before.start},
            {u"beforeCount"_s, hunk.before.count},
            {u"afterStart"_s, hunk.after.start},
            {u"afterCount"_s, hunk.after.count},
            {u"lines"_s, lines}};
}

QString stateOf(const ShapeReport &shape)
{
    if (!shape.isUsable())
        return u"unusable"_s;
    return shape.isOutdated ? u"outdated"_s : u"up-to-date"_s;
}

QJsonObject countsObject(const QList<CountValue> &counts)
{
    QJsonObject object;
    for (const CountValue &count : counts)
        object.insert(rowOf(count.count).name, count.value);
    return object;
}

QJsonValue textOrNull(const QString &text)
{
    return text.isEmpty() ? QJsonValue() : QJsonValue(text);
}

} // namespace

void JsonPresenter::printLine(JsonKind kind, QJsonObject fields)
{
    fields.insert("version"_L1, jsonVersion);
    fields.insert("kind"_L1, rowOf(kind).name);
    m_output.printUtf8Line(escapedJson(QJsonDocument(fields).toJson(QJsonDocument::Compact)));
    m_output.flush();
}

void JsonPresenter::showProgress(int count, int index)
{
    if (m_verbosity == Verbosity::Everything)
        printLine(JsonKind::Progress, {{u"count"_s, count}, {u"index"_s, index}});
}

void JsonPresenter::showFile(const QString &path)
{
    if (m_verbosity == Verbosity::Everything)
        printLine(JsonKind::File, {{u"path"_s, relativeTo(m_projectDir, path)}});
}

void JsonPresenter::showFinding(const Finding &finding)
{
    printLine(JsonKind::Finding, {{u"check"_s, rowOf(finding.kind).name},
                                  {u"severity"_s, severityName(finding.severity())},
                                  {u"path"_s, finding.path},
                                  {u"line"_s, finding.line > 0 ? QJsonValue(finding.line) : QJsonValue()},
                                  {u"text"_s, finding.text},
                                  {u"advice"_s, finding.advice}});
}

void JsonPresenter::showHints(const QList<Finding> &hints)
{
    for (const Finding &hint : hints)
        showFinding(hint);
}

void JsonPresenter::showObstacles(const QList<Finding> &obstacles)
{
    for (const Finding &obstacle : obstacles)
        showFinding(obstacle);
}

void JsonPresenter::showRefusal(const QList<Finding> &obstacles, Refusal /*refusal*/)
{
    showObstacles(obstacles);
}

void JsonPresenter::showReport(const STBlock &report)
{
    printLine(JsonKind::Report, {{u"status"_s, statusText(report.status)},
                                 {u"imageFile"_s, report.imageFile},
                                 {u"shapeFile"_s, report.shapeFile},
                                 {u"imageObject"_s, report.imageObject},
                                 {u"shapeObject"_s, report.shapeObject},
                                 {u"initText"_s, report.initText},
                                 {u"error"_s, report.error},
                                 {u"level"_s, report.extraNumber},
                                 {u"rect"_s, rectangle(report.rect)},
                                 {u"iconRect"_s, rectangle(report.rect2)},
                                 {u"position"_s, rectangle(report.rect3)}});
}

void JsonPresenter::showShape(const ShapeReport &shape)
{
    printLine(JsonKind::Shape, {{u"name"_s, shape.name},
                                {u"objects"_s, shape.objectCount},
                                {u"screens"_s, shape.screenCount},
                                {u"place"_s, shape.place},
                                {u"state"_s, stateOf(shape)},
                                {u"error"_s, shape.error}});
}

void JsonPresenter::showDiff(const FileDiff &diff)
{
    QJsonArray hunks;
    for (const DiffHunk &hunk : diff.hunks)
        hunks.append(hunkObject(hunk));
    printLine(JsonKind::Diff, {{u"path"_s, diff.path},
                               {u"change"_s, changeName(diff.change)},
                               {u"before"_s, diff.beforeName},
                               {u"after"_s, diff.afterName},
                               {u"linesAdded"_s, diff.addedLines},
                               {u"linesRemoved"_s, diff.removedLines},
                               {u"hunks"_s, hunks}});
}

void JsonPresenter::showRun(const KeptRun &run)
{
    printLine(JsonKind::Run, {{u"name"_s, run.name},
                              {u"what"_s, run.kind},
                              {u"about"_s, textOrNull(run.about)},
                              {u"ended"_s, textOrNull(run.ended)},
                              {u"changeLog"_s, textOrNull(run.changeLog)},
                              {u"screens"_s, run.screens},
                              {u"replaced"_s, run.replaced},
                              {u"errors"_s, run.errors},
                              {u"files"_s, run.files},
                              {u"bytes"_s, run.bytes}});
}

void JsonPresenter::showLogEntry(const LogEntry &entry)
{
    m_logEntries.append(entry);
}

void JsonPresenter::showEnd(const CommandEnd &end)
{
    for (const LogEntry &entry : std::as_const(m_logEntries)) {
        printLine(JsonKind::Log,
                  {{u"level"_s, entry.level}, {u"time"_s, entry.time}, {u"message"_s, entry.message}});
    }
    for (const LostScreen &screen : end.lostScreens) {
        showFinding({FindingKind::ScreenLost, screen.path, u"it is not in \"scr\" after the run"_s,
                     screen.backup.isEmpty()
                         ? u"look for it elsewhere: its version from before the run is not in \"scr_bak\""_s
                         : u"its version from before the run lies in %1"_s.arg(screen.backup)});
    }
    printLine(JsonKind::End, {{u"command"_s, end.command},
                              {u"project"_s, end.projectDir},
                              {u"dryRun"_s, end.isDryRun},
                              {u"exitCode"_s, static_cast<int>(end.exitCode)},
                              {u"counts"_s, countsObject(end.counts)},
                              {u"seconds"_s, end.seconds ? QJsonValue(*end.seconds) : QJsonValue()},
                              {u"changeLog"_s, textOrNull(end.changeLogPath)},
                              {u"message"_s, textOrNull(end.message)}});
}
