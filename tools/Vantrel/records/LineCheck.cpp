// Checking the lines of image and shape files.
#include "LineCheck.h"

#include "FileLines.h"
#include "WrapArithmetic.h"

using namespace Qt::StringLiterals;
using RecordGrammar::CheckRule;
using RecordGrammar::FieldRule;

namespace {

enum class Verdict { Enough, TooFewFields, TooFewPoints, TooManyPoints };

/// Points have to be as many as they are said to be; of other fields there may be more.
Verdict verdictOn(const QString &tag, int present, int required)
{
    const bool isPoints = tag == "PNT"_L1;
    if (isPoints && present > required)
        return Verdict::TooManyPoints;
    if (present >= required)
        return Verdict::Enough;
    return isPoints ? Verdict::TooFewPoints : Verdict::TooFewFields;
}

/// With places for the line, the tag and the required number. That this is an exact one is told of
/// too many points only.
QString complaintAbout(Verdict verdict, FileKind kind)
{
    const bool isExact = verdict == Verdict::TooManyPoints;
    if (kind == FileKind::Image) {
        return isExact ? u"Image File [line %1]: %2... not enough parameters (must be == %3)"_s
                       : u"Image File [line %1]: %2... not enough parameters (must be >= %3)"_s;
    }
    return isExact ? u"Shape File [line %1]: %2... not enough parameters (must be == %3)"_s
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
    const Verdict verdict = verdictOn(tag, present, required);
    if (verdict == Verdict::Enough)
        return true;

    const int offset = file.kind == FileKind::Image ? 0 : file.lineOffset;
    const int line = Wrap::add(Wrap::add(offset, lineIndex), 1);
    // With too few points the line is counted from the one already counted.
    const int shownLine = verdict == Verdict::TooFewPoints ? Wrap::add(Wrap::add(offset, line), 1) : line;
    errorText = complaintAbout(verdict, file.kind).arg(shownLine).arg(tag).arg(required);
    // Too many points pass all the same.
    return verdict == Verdict::TooManyPoints;
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
