// Checking the lines of image and shape files.
#include "LineCheck.h"

#include "FileLines.h"
#include "WrapArithmetic.h"

using namespace Qt::StringLiterals;
using RecordGrammar::CheckRule;
using RecordGrammar::FieldRule;

namespace {

QString tooFewParameters(FileKind kind, bool exact)
{
    if (kind == FileKind::Image) {
        return exact ? u"Image File [line %1]: %2... not enough parameters (must be == %3)"_s
                     : u"Image File [line %1]: %2... not enough parameters (must be >= %3)"_s;
    }
    return exact ? u"Shape File [line %1]: %2... not enough parameters (must be == %3)"_s
                 : u"Shape File [line %1]: %2... not enough parameters (must be >= %3)"_s;
}

template <RecordView View>
bool checkLine(const CheckRule &rule, View line, QString &errorText, int index, const CheckedFile &file)
{
    // The tags live as long as the program.
    const QString tag = QString::fromRawData(rule.messageTag.data(), rule.messageTag.size());
    const int fixedFields = file.kind == FileKind::Image ? rule.imageFields : rule.shapeFields;
    const auto fields = static_cast<int>(fieldCount(line));
    const auto countedRecords = [line] { return toNumber(fieldAt(line, RecordGrammar::counter)); };

    switch (rule.rule) {
    case FieldRule::AtLeast:
        return checkFieldCount(tag, fields, fixedFields, errorText, index, file);
    case FieldRule::Points:
        return checkFieldCount(tag, fields - fixedFields, Wrap::multiply(2, countedRecords()), errorText,
                               index, file);
    case FieldRule::Entries:
        return checkFieldCount(tag, fields, fixedFields, errorText, index, file) &&
               checkFieldCount(
                   tag, fields,
                   Wrap::multiply(RecordGrammar::Entries::fieldsOfEntry, Wrap::add(countedRecords(), 1)),
                   errorText, index, file);
    }
    return true;
}

} // namespace

bool checkFieldCount(const QString &tag, int present, int required, QString &errorText, int lineIndex,
                     const CheckedFile &file)
{
    if (!errorText.isEmpty())
        errorText.clear();
    const bool exact = tag == "PNT"_L1;
    if (exact ? present == required : present >= required)
        return true;

    const int offset = file.kind == FileKind::Image ? 0 : file.lineOffset;
    const int line = Wrap::add(Wrap::add(offset, lineIndex), 1);
    const bool tooMany = present > required;
    const bool tooFewPoints = exact && !tooMany;
    // With too few points the line is counted from the one already counted.
    const int shownLine = tooFewPoints ? Wrap::add(Wrap::add(offset, line), 1) : line;
    errorText = tooFewParameters(file.kind, tooMany).arg(shownLine).arg(tag).arg(required);
    return tooMany;
}

template <typename Lines>
bool checkLines(const Lines &lines, const CheckedFile &file, QString &errorText)
{
    const auto rules =
        file.kind == FileKind::Image ? RecordGrammar::imageCheckRules : RecordGrammar::shapeCheckRules;
    for (int index = 0; index < lines.size(); ++index) {
        if (file.kind == FileKind::Image && kindAt(lines, index) == RecordGrammar::LineKind::Other)
            continue;
        const auto line = lineAt(lines, index);
        const CheckRule *rule = RecordGrammar::ruleFor(line, rules);
        if (rule != nullptr && !checkLine(*rule, line, errorText, index, file))
            return false;
    }
    return true;
}

template bool checkLines(const QStringList &lines, const CheckedFile &file, QString &errorText);
template bool checkLines(const FileLines &lines, const CheckedFile &file, QString &errorText);
