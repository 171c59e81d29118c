// What a list of runs shows of each.
#include "RunSummary.h"

#include "FileIo.h"
#include "FileWriter.h"
#include "RootFolder.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr int format = 1;
constexpr auto fileName = "/run.json"_L1;

struct KindRow
{
    HistoryKind kind;
    QLatin1StringView name;
};

constexpr std::array kindRows{
    KindRow{HistoryKind::Run, "run"_L1},
    KindRow{HistoryKind::Undo, "undo"_L1},
    KindRow{HistoryKind::Restore, "restore"_L1},
    KindRow{HistoryKind::Cancelled, "cancelled"_L1},
};

struct CountRow
{
    QLatin1StringView name;
    qsizetype RunSummary::*count;
};

constexpr std::array countRows{
    CountRow{"screens"_L1, &RunSummary::screens},
    CountRow{"replaced"_L1, &RunSummary::replaced},
    CountRow{"notReplaced"_L1, &RunSummary::notReplaced},
    CountRow{"errors"_L1, &RunSummary::errors},
};

struct TextRow
{
    QLatin1StringView name;
    QString RunSummary::*text;
};

constexpr std::array textRows{
    TextRow{"program"_L1, &RunSummary::program},
    TextRow{"project"_L1, &RunSummary::projectDir},
    TextRow{"changeLog"_L1, &RunSummary::changeLog},
    TextRow{"about"_L1, &RunSummary::about},
};

struct TimeRow
{
    QLatin1StringView name;
    QDateTime RunSummary::*time;
};

constexpr std::array timeRows{
    TimeRow{"started"_L1, &RunSummary::started},
    TimeRow{"ended"_L1, &RunSummary::ended},
};

QString toText(const QDateTime &time)
{
    return time.toOffsetFromUtc(time.offsetFromUtc()).toString(Qt::ISODateWithMs);
}

QDateTime toTime(const QJsonValue &value)
{
    return QDateTime::fromString(value.toString(), Qt::ISODateWithMs).toLocalTime();
}

QJsonObject toJson(const RunSummary &summary)
{
    QJsonObject object{{"format"_L1, format}};
    for (const KindRow &row : kindRows) {
        if (row.kind == summary.kind)
            object.insert("kind"_L1, row.name);
    }
    for (const TextRow &row : textRows) {
        if (const QString &text = summary.*row.text; !text.isEmpty())
            object.insert(row.name, text);
    }
    for (const TimeRow &row : timeRows) {
        if (const QDateTime &time = summary.*row.time; time.isValid())
            object.insert(row.name, toText(time));
    }
    for (const CountRow &row : countRows)
        object.insert(row.name, static_cast<qint64>(summary.*row.count));
    object.insert("shapes"_L1, QJsonArray::fromStringList(summary.shapeNames));
    QJsonArray stages;
    for (const StageTime &stage : summary.stages)
        stages.append(QJsonObject{{"stage"_L1, stage.stage}, {"begun"_L1, toText(stage.begun)}});
    object.insert("stages"_L1, stages);
    return object;
}

} // namespace

QString writeSummary(const RootFolder &root, const QString &entryPath, const RunSummary &summary)
{
    constexpr unsigned readableByAll = 0644;
    const QByteArray text = QJsonDocument(toJson(summary)).toJson();
    const QString path = entryPath + fileName;
    FileWriter writer(root, path, readableByAll, IfThere::Replace);
    if (writer.isOpen() && writer.write(text.constData(), text.size()))
        return {};
    return u"%1 could not be written: %2"_s.arg(path, qt_error_string(writer.error()));
}

std::optional<RunSummary> readSummary(const QString &entryPath)
{
    const std::optional<FileContent> content = readFile(entryPath + fileName);
    const QJsonObject object = content ? QJsonDocument::fromJson(content->bytes).object() : QJsonObject();
    const auto kind = std::find_if(kindRows.begin(), kindRows.end(), [&object](const KindRow &row) {
        return object.value("kind"_L1).toString() == row.name;
    });
    if (object.value("format"_L1).toInt() != format || kind == kindRows.end())
        return std::nullopt;
    RunSummary summary;
    summary.kind = kind->kind;
    for (const TextRow &row : textRows)
        summary.*row.text = object.value(row.name).toString();
    for (const TimeRow &row : timeRows)
        summary.*row.time = toTime(object.value(row.name));
    for (const CountRow &row : countRows)
        summary.*row.count = static_cast<qsizetype>(object.value(row.name).toInteger());
    const QJsonArray shapeNames = object.value("shapes"_L1).toArray();
    for (const auto &name : shapeNames)
        summary.shapeNames.append(name.toString());
    const QJsonArray stages = object.value("stages"_L1).toArray();
    for (const auto &stage : stages)
        summary.stages.append({stage["stage"_L1].toString(), toTime(stage["begun"_L1])});
    return summary;
}
