// Fields of a record line.
#include "RecordFields.h"

#include "RecordGrammar.h"
#include "WrapArithmetic.h"

#include <QStringTokenizer>

#include <array>
#include <charconv>

using namespace Qt::StringLiterals;

namespace {

template <typename Fields>
void joinInto(const Fields &fields, QString &line)
{
    qsizetype size = 0;
    for (const auto &field : fields)
        size += field.size() + 1;

    line.clear();
    line.reserve(size);
    for (const auto &field : fields) {
        line += field;
        line += fieldSeparator;
    }
    line.chop(1);
}

template <typename Fields>
void shiftNumbers(Fields &fields, int shift)
{
    for (const qsizetype index : RecordGrammar::axisNumbers) {
        if (index < fields.size())
            fields.replace(index, QString::number(Wrap::add(toNumber(fields.at(index)), shift)));
    }
}

/// Numbers as nearly all of them are spelt: a few digits, perhaps a minus sign before them.
std::optional<int> plainNumber(QStringView field)
{
    const bool negative = field.startsWith(u'-');
    const QStringView digits = field.sliced(negative ? 1 : 0);
    constexpr qsizetype alwaysFits = 9;
    if (digits.isEmpty() || digits.size() > alwaysFits)
        return std::nullopt;

    int value = 0;
    for (const QChar digit : digits) {
        if (digit < u'0' || digit > u'9')
            return std::nullopt;
        value = 10 * value + (digit.unicode() - u'0');
    }
    return negative ? -value : value;
}

} // namespace

RecordLine::RecordLine(QStringView line)
{
    for (const QStringView field : qTokenize(line, fieldSeparator))
        m_fields.append(field);
}

int RecordLine::number(qsizetype index) const
{
    return toNumber(at(index));
}

void RecordLine::replace(qsizetype index, const QString &text)
{
    if (index >= size())
        return;
    m_exchanged.append(text);
    m_fields[index] = m_exchanged.last();
}

void RecordLine::append(const QString &text)
{
    m_exchanged.append(text);
    m_fields.append(m_exchanged.last());
}

void RecordLine::truncate(qsizetype count)
{
    m_fields.resize(std::min(count, size()));
}

QString RecordLine::joined() const
{
    QString line;
    joinInto(m_fields, line);
    return line;
}

qsizetype fieldCount(QStringView line)
{
    return 1 + std::count(line.utf16(), line.utf16() + line.size(), fieldSeparator);
}

QStringView fieldsFrom(QStringView line, qsizetype first)
{
    for (; first > 0; --first) {
        const qsizetype separator = line.indexOf(fieldSeparator);
        if (separator < 0)
            return {};
        line = line.sliced(separator + 1);
    }
    return line;
}

QStringView fieldAt(QStringView line, qsizetype index)
{
    const QStringView rest = fieldsFrom(line, index);
    const qsizetype separator = rest.indexOf(fieldSeparator);
    return separator < 0 ? rest : rest.first(separator);
}

int toNumber(QStringView field)
{
    if (const auto number = plainNumber(field))
        return *number;
    return field.toInt();
}

void appendNumber(QString &text, int number)
{
    std::array<char, 11> digits{};
    const auto end = std::to_chars(digits.begin(), digits.end(), number).ptr;
    text += QLatin1StringView(digits.data(), end);
}

void joinFields(const QStringList &fields, QString &line)
{
    joinInto(fields, line);
}

std::optional<QString> rebasedReference(QStringView reference, QStringView fromPrefix, QStringView toPrefix)
{
    if (reference.startsWith("System:"_L1) || !reference.startsWith(fromPrefix))
        return std::nullopt;
    const QStringView rest = reference.sliced(fromPrefix.size());
    QString moved;
    moved.reserve(toPrefix.size() + rest.size());
    moved += toPrefix;
    moved += rest;
    return moved;
}

void replacePathPrefix(QString &field, const QString &fromPrefix, const QString &toPrefix)
{
    if (const auto moved = rebasedReference(field, fromPrefix, toPrefix))
        field = *moved;
}

void shiftReferenceFields(QStringList &fields, QString &line, int shift)
{
    shiftNumbers(fields, shift);
    joinFields(fields, line);
}

void shiftReferenceFields(RecordLine &line, int shift)
{
    shiftNumbers(line, shift);
}
