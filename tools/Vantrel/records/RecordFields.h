// Fields of a record line: cutting, counting, reading as numbers, joining, and the small
// rewrites that single fields undergo. A record line is a tag and its fields, separated by ';'.
//
// Lines come in two kinds: the bytes of a file as they are (Latin-1, QLatin1StringView), and
// strings (QStringView). Each rule stands once, for both.
#pragma once

#include <QLatin1StringView>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <QVarLengthArray>

#include <algorithm>
#include <concepts>
#include <optional>

/// A record line, or a part of one.
template <typename View>
concept RecordView = std::same_as<View, QStringView> || std::same_as<View, QLatin1StringView>;

constexpr const char16_t *charsOf(QStringView text)
{
    return text.utf16();
}

constexpr const char *charsOf(QLatin1StringView text)
{
    return text.data();
}

/// What the texts of one kind consist of.
template <RecordView View>
using CharOf = std::remove_cvref_t<decltype(*charsOf(View()))>;

inline constexpr char fieldSeparator = ';';

/// The most characters that a number takes.
inline constexpr std::size_t longestNumber = 11;

/// Hands out the fields of a line from left to right; empty fields are kept.
///     "PNT;2;;10"  ->  "PNT", "2", "", "10"
template <RecordView View>
class FieldReader final
{
public:
    explicit constexpr FieldReader(View line)
        : m_field(charsOf(line))
        , m_end(m_field + line.size())
    {
    }

    bool hasNext() const { return m_hasNext; }

    /// The next field, where there is one.
    View next()
    {
        const auto *const begin = m_field;
        const auto *end = begin;
        while (end != m_end && *end != fieldSeparator)
            ++end;
        m_hasNext = end != m_end;
        m_field = m_hasNext ? end + 1 : end;
        return View(begin, end - begin);
    }

    /// What has not been handed out yet.
    View rest() const { return View(m_field, m_end - m_field); }

private:
    const CharOf<View> *m_field;
    const CharOf<View> *m_end;
    bool m_hasNext = true;
};

/// Reads a field as a signed 32-bit decimal number, as QString::toInt does (blanks around and
/// a leading '+' are accepted); what does not parse or does not fit counts as 0.
int toNumber(QStringView field);
int toNumber(QLatin1StringView field);

/// A record line cut into its fields; empty fields are kept.
///     "PNT;2;;10"  ->  {"PNT", "2", "", "10"}
/// Only looks at the line, which must outlive it.
template <RecordView View>
class LineFields final
{
public:
    explicit LineFields(View line)
    {
        for (FieldReader<View> reader(line); reader.hasNext();)
            m_fields.append(reader.next());
    }

    qsizetype size() const { return m_fields.size(); }
    /// The field, or an empty one where the line has no such field.
    View at(qsizetype index) const { return index < size() ? m_fields.at(index) : View(); }
    /// The field as a number, see toNumber().
    int number(qsizetype index) const { return toNumber(at(index)); }

private:
    QVarLengthArray<View, 40> m_fields;
};

/// How often a character stands in a text.
template <RecordView View>
qsizetype countOf(char character, View view)
{
    // A count within a block fits into a byte, so that the compiler counts many at once.
    constexpr qsizetype blockSize = 32;
    const auto wanted = CharOf<View>(character);
    const auto *text = charsOf(view);
    const auto *const end = text + view.size();
    qsizetype count = 0;
    for (; end - text >= blockSize; text += blockSize) {
        quint8 inBlock = 0;
        for (qsizetype index = 0; index < blockSize; ++index)
            inBlock = static_cast<quint8>(inBlock + (text[index] == wanted ? 1 : 0));
        count += inBlock;
    }
    return count + std::count(text, end, wanted);
}

/// How many fields a line has, its tag included: "ID;1;" has 3, an empty line has 1.
template <RecordView View>
qsizetype fieldCount(View line)
{
    return 1 + countOf(fieldSeparator, line);
}

/// The fields from `first` on, with their separators; empty where the line has no such field.
template <RecordView View>
View fieldsFrom(View line, qsizetype first)
{
    const auto *text = charsOf(line);
    const auto *const end = text + line.size();
    for (; first > 0 && text != end; ++text)
        first -= *text == fieldSeparator ? 1 : 0;
    return first == 0 ? View(text, end - text) : View();
}

/// One field of a line; empty where the line has no such field.
template <RecordView View>
View fieldAt(View line, qsizetype index)
{
    return FieldReader<View>(fieldsFrom(line, index)).next();
}

inline QStringView fieldAt(const QString &line, qsizetype index)
{
    return fieldAt(QStringView(line), index);
}

inline QStringView fieldsFrom(const QString &line, qsizetype first)
{
    return fieldsFrom(QStringView(line), first);
}

/// Puts fields together again; the inverse of cutting a line.
///     {"IVG", "a", ""}  ->  "IVG;a;"
void joinFields(const QStringList &fields, QString &line);

/// Whether a file reference moves with its prefix: not where it begins with "System:", nor where
/// it does not begin with `fromPrefix`. Texts are compared, not folders; an empty prefix is the
/// beginning of every reference.
template <RecordView View>
bool isBelowPrefix(View reference, View fromPrefix)
{
    using namespace Qt::StringLiterals;
    return reference.startsWith(fromPrefix) && !reference.startsWith("System:"_L1);
}

/// Moves a file reference from one prefix to another, unless it stays, see isBelowPrefix().
///     "C:/lib/pic.bmp" from "C:/lib" to "D:/proj"  ->  "D:/proj/pic.bmp"
void replacePathPrefix(QString &field, const QString &fromPrefix, const QString &toPrefix);

/// Adds `shift` to the two numbers (fields 4 and 5) of an axis line and joins it into `line`.
void shiftReferenceFields(QStringList &fields, QString &line, int shift);
