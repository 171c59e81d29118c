// Fields of a record line.
#include "RecordFields.h"

#include "RecordGrammar.h"
#include "WrapArithmetic.h"

namespace {

/// Numbers as nearly all of them are spelt: a few digits, perhaps a minus sign before them.
template <RecordView View>
std::optional<int> plainNumber(View field)
{
    const auto *digit = charsOf(field);
    const auto *const end = digit + field.size();
    const bool isNegative = digit != end && *digit == '-';
    if (isNegative)
        ++digit;
    constexpr std::ptrdiff_t alwaysFits = 9;
    if (digit == end || end - digit > alwaysFits)
        return std::nullopt;

    int value = 0;
    for (; digit != end; ++digit) {
        if (*digit < '0' || *digit > '9')
            return std::nullopt;
        value = 10 * value + (*digit - '0');
    }
    return isNegative ? -value : value;
}

} // namespace

int toNumber(QStringView field)
{
    if (const auto number = plainNumber(field))
        return *number;
    return field.toInt();
}

int toNumber(QLatin1StringView field)
{
    if (const auto number = plainNumber(field))
        return *number;
    // Spelt in another way: as a string, so that there is one answer for both kinds of text.
    return QString(field).toInt();
}

void joinFields(const QStringList &fields, QString &line)
{
    line = fields.join(QLatin1Char(fieldSeparator));
}

void replacePathPrefix(QString &field, const QString &fromPrefix, const QString &toPrefix)
{
    if (isBelowPrefix<QStringView>(field, fromPrefix))
        field.replace(0, fromPrefix.size(), toPrefix);
}

void shiftReferenceFields(QStringList &fields, QString &line, int shift)
{
    for (const qsizetype index : RecordGrammar::axisNumbers) {
        if (index < fields.size())
            fields[index] = QString::number(Wrap::add(toNumber(fields.at(index)), shift));
    }
    joinFields(fields, line);
}
