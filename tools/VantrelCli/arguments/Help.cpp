// Help and documentation, printed from the tables of commands, options, exit codes and fields.
#include "Help.h"

#include "ExitCode.h"
#include "Finding.h"
#include "JsonFields.h"
#include "Output.h"
#include "Presenter.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

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

void printRow(const QStringList &cells, Output &output)
{
    output.printLine(u"| %1 |"_s.arg(cells.join(u" | ")));
}

void printTableHead(const QString &title, const QStringList &columns, Output &output)
{
    output.printLine(u"\n### %1\n"_s.arg(title));
    printRow(columns, output);
    output.printLine(u'|' + u"---|"_s.repeated(columns.size()));
}

QString code(const QString &text)
{
    return u"`%1`"_s.arg(text);
}

void printOptionDocs(const QString &title, std::span<const OptionRow> options, Output &output)
{
    printTableHead(title, {u"Option"_s, u"Meaning"_s}, output);
    for (const OptionRow &option : options) {
        const QString spelling = u"--%1 %2"_s.arg(option.name, option.value).trimmed();
        printRow({code(spelling), option.meaning}, output);
    }
}

void printCommandDocs(Output &output)
{
    printTableHead(u"Commands"_s, {u"Command"_s, u"Does"_s}, output);
    for (const CommandRow &command : commandRows)
        printRow({code(command.name), command.meaning}, output);
    printOptionDocs(u"Options without a command"_s, generalOptions, output);
    for (const CommandRow &command : commandRows)
        printOptionDocs(u"Options of `%1`"_s.arg(command.name), command.options, output);
}

void printExitCodeDocs(Output &output)
{
    printTableHead(u"Exit codes"_s, {u"Code"_s, u"Meaning"_s}, output);
    for (const ExitCodeRow &row : exitCodes)
        printRow({QString::number(static_cast<int>(row.code)), row.meaning}, output);
}

QString typeName(JsonType type)
{
    switch (type) {
    case JsonType::Text:
    case JsonType::CheckName:
    case JsonType::CommandName:
        return u"text"_s;
    case JsonType::TextOrNull:
        return u"text or null"_s;
    case JsonType::NumberOrNull:
        return u"number or null"_s;
    case JsonType::Integer:
    case JsonType::CodeNumber:
        return u"integer"_s;
    case JsonType::IntegerOrNull:
        return u"integer or null"_s;
    case JsonType::Flag:
        return u"true or false"_s;
    case JsonType::TextList:
        return u"list of texts"_s;
    case JsonType::Rectangle:
        return u"rectangle"_s;
    case JsonType::Hunks:
        return u"list of hunks"_s;
    case JsonType::Counts:
        return u"counts"_s;
    }
    return {};
}

void printFieldRow(const JsonField &field, Output &output)
{
    printRow({code(field.name), typeName(field.type), field.meaning}, output);
}

void printJsonDocs(Output &output)
{
    const QStringList columns{u"Field"_s, u"Type"_s, u"Meaning"_s};
    for (const JsonKindRow &kind : jsonKinds) {
        printTableHead(u"Lines of the kind `%1`: %2"_s.arg(kind.name, kind.meaning), columns, output);
        for (const JsonFieldRow &row : jsonFields) {
            if (row.kind == kind.kind)
                printFieldRow(row.field, output);
        }
    }
    printTableHead(u"Hunks of a `diff` line"_s, columns, output);
    for (const JsonField &field : jsonHunkFields)
        printFieldRow(field, output);
}

void printCountDocs(Output &output)
{
    printTableHead(u"Counts of an `end` line"_s, {u"Count"_s, u"In text"_s, u"Meaning"_s}, output);
    for (const CountRow &row : countRows)
        printRow({code(row.name), row.label, row.meaning}, output);
}

void printFindingDocs(Output &output)
{
    printTableHead(u"Findings"_s, {u"Check"_s, u"Severity"_s, u"Meaning"_s}, output);
    for (const FindingRow &row : findingRows)
        printRow({code(row.name), severityName(row.severity), row.meaning}, output);
}

// --- Schema ---

QJsonObject ofType(const QString &type)
{
    return {{u"type"_s, type}};
}

QJsonObject orNull(const QString &type)
{
    return {{u"type"_s, QJsonArray{type, u"null"_s}}};
}

/// An object that has all of these properties and no other.
QJsonObject closedObject(const QJsonObject &properties)
{
    return {{u"type"_s, u"object"_s},
            {u"properties"_s, properties},
            {u"required"_s, QJsonArray::fromStringList(properties.keys())},
            {u"additionalProperties"_s, false}};
}

template <typename Rows, typename ValueOf>
QJsonObject oneOf(const Rows &rows, ValueOf valueOf)
{
    QJsonArray values;
    for (const auto &row : rows)
        values.append(valueOf(row));
    return {{u"enum"_s, values}};
}

template <typename Rows>
QJsonObject oneOfNames(const Rows &rows)
{
    return oneOf(rows, [](const auto &row) { return QJsonValue(row.name); });
}

QJsonObject rectangleSchema()
{
    QJsonObject sides;
    for (const QString &side : {u"left"_s, u"top"_s, u"right"_s, u"bottom"_s})
        sides.insert(side, ofType(u"integer"_s));
    return closedObject(sides);
}

QJsonObject countsSchema()
{
    QJsonObject counts;
    for (const CountRow &row : countRows)
        counts.insert(row.name, QJsonObject{{u"type"_s, u"integer"_s}, {u"minimum"_s, 0}});
    return {{u"type"_s, u"object"_s}, {u"properties"_s, counts}, {u"additionalProperties"_s, false}};
}

QJsonObject listOf(const QJsonObject &items)
{
    return {{u"type"_s, u"array"_s}, {u"items"_s, items}};
}

QJsonObject typeSchema(JsonType type);

QJsonObject hunkSchema()
{
    QJsonObject fields;
    for (const JsonField &field : jsonHunkFields)
        fields.insert(field.name, typeSchema(field.type));
    return closedObject(fields);
}

QJsonObject typeSchema(JsonType type)
{
    switch (type) {
    case JsonType::Text:
        return ofType(u"string"_s);
    case JsonType::TextOrNull:
        return orNull(u"string"_s);
    case JsonType::CheckName:
        return oneOfNames(findingRows);
    case JsonType::CommandName:
        return oneOfNames(commandRows);
    case JsonType::CodeNumber:
        return oneOf(exitCodes, [](const ExitCodeRow &row) { return static_cast<int>(row.code); });
    case JsonType::NumberOrNull:
        return orNull(u"number"_s);
    case JsonType::Integer:
        return ofType(u"integer"_s);
    case JsonType::IntegerOrNull:
        return orNull(u"integer"_s);
    case JsonType::Flag:
        return ofType(u"boolean"_s);
    case JsonType::TextList:
        return listOf(ofType(u"string"_s));
    case JsonType::Rectangle:
        return rectangleSchema();
    case JsonType::Hunks:
        return listOf(hunkSchema());
    case JsonType::Counts:
        return countsSchema();
    }
    return {};
}

QJsonObject kindSchema(const JsonKindRow &kind)
{
    QJsonObject fields{{u"version"_s, QJsonObject{{u"const"_s, jsonVersion}}},
                       {u"kind"_s, QJsonObject{{u"const"_s, kind.name}}}};
    for (const JsonFieldRow &row : jsonFields) {
        if (row.kind != kind.kind)
            continue;
        QJsonObject schema = typeSchema(row.field.type);
        schema.insert("description"_L1, row.field.meaning);
        fields.insert(row.field.name, schema);
    }
    QJsonObject schema = closedObject(fields);
    schema.insert("description"_L1, kind.meaning);
    return schema;
}

} // namespace

void printHelp(Output &output)
{
    output.printLine(u"Usage: %1 COMMAND [options]\n\nCommands:"_s.arg(programName));
    for (const CommandRow &command : commandRows)
        output.printLine(u"  %1 %2"_s.arg(command.name, -20).arg(command.meaning));
    printOptions(generalOptions, output);
    printExitCodes(output);
}

void printHelp(const CommandRow &command, Output &output)
{
    QString meaning = command.meaning;
    meaning.replace(0, 1, meaning.at(0).toUpper());
    const QString words = command.words.isEmpty() ? QString() : u' ' + command.words;
    output.printLine(u"Usage: %1 %2 [options]%3\n\n%4."_s.arg(programName, command.name, words, meaning));
    printOptions(command.options, output);
    printExitCodes(output);
}

void printDocs(Output &output)
{
    printCommandDocs(output);
    printExitCodeDocs(output);
    printFindingDocs(output);
    printJsonDocs(output);
    printCountDocs(output);
}

void printSchema(Output &output)
{
    QJsonArray kinds;
    for (const JsonKindRow &kind : jsonKinds)
        kinds.append(kindSchema(kind));
    const QJsonObject schema{{u"$schema"_s, u"https://json-schema.org/draft/2020-12/schema"_s},
                             {u"title"_s, u"A line that %1 prints with --json"_s.arg(programName)},
                             {u"oneOf"_s, kinds}};
    output.print(QString::fromUtf8(QJsonDocument(schema).toJson()));
}
