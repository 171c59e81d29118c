// Fields of a record line.
#include "RecordFields.h"

#include "RecordGrammar.h"
#include "WrapArithmetic.h"

#include <array>
#include <charconv>

using namespace Qt::StringLiterals;

namespace {

template <typename Fields>
void joinInto(const Fields &fields, QString &line)
{
    qsizetype size = -1;
    for (const auto &field : fields)
        size += field.size() + 1;
    if (size < 0) {
        line.clear();
        return;
    }

    line = QString(size, Qt::Uninitialized);
    auto *out = reinterpret_cast<char16_t *>(line.data());
    for (qsizetype index = 0; index < fields.size(); ++index) {
        if (index > 0)
            *out++ = fieldSeparator;
        out = writeText(out, fields.at(index));
    }
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
    auto field = line.begin();
    auto separator = std::find(field, line.end(), fieldSeparator);
    while (separator != line.end()) {
        m_fields.append(QStringView(field, separator));
        field = separator + 1;
        separator = std::find(field, line.end(), fieldSeparator);
    }
    m_fields.append(QStringView(field, line.end()));
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

void RecordLine::replace(qsizetype index, int number)
{
    if (m_usedDigits + longestNumber > m_digits.size()) {
        replace(index, QString::number(number));
        return;
    }
    if (index >= size())
        return;
    char16_t *const begin = m_digits.data() + m_usedDigits;
    char16_t *const end = writeNumber(begin, number);
    m_fields[index] = QStringView(begin, end);
    m_usedDigits += static_cast<std::size_t>(end - begin);
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
    auto field = line.begin();
    for (; first > 0; --first) {
        field = std::find(field, line.end(), fieldSeparator);
        if (field == line.end())
            return {};
        ++field;
    }
    return {field, line.end()};
}

QStringView fieldAt(QStringView line, qsizetype index)
{
    const QStringView rest = fieldsFrom(line, index);
    return {rest.begin(), std::find(rest.begin(), rest.end(), fieldSeparator)};
}

int toNumber(QStringView field)
{
    if (const auto number = plainNumber(field))
        return *number;
    return field.toInt();
}

char16_t *writeText(char16_t *out, QStringView text)
{
    return std::copy(text.utf16(), text.utf16() + text.size(), out);
}

char16_t *writeNumber(char16_t *out, int number)
{
    std::array<char, longestNumber> digits{};
    const auto end = std::to_chars(digits.begin(), digits.end(), number).ptr;
    return std::copy(digits.begin(), end, out);
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
