// Fields of a record line: cutting, counting, reading as numbers, joining, and the small
// rewrites that single fields undergo. A record line is a tag and its fields, separated by ';'.
#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>
#include <QVarLengthArray>

#include <algorithm>
#include <array>
#include <optional>

inline constexpr char16_t fieldSeparator = u';';

/// The most characters that a number takes.
inline constexpr std::size_t longestNumber = 11;

/// A record line cut into its fields, which can be exchanged; empty fields are kept.
///     "PNT;2;;10"  ->  {"PNT", "2", "", "10"}
/// Only looks at the line, which must outlive it.
class RecordLine final
{
public:
    explicit RecordLine(QStringView line);
    // Fields may lie in the object itself.
    RecordLine(const RecordLine &) = delete;
    RecordLine &operator=(const RecordLine &) = delete;

    qsizetype size() const { return m_fields.size(); }
    /// The field, or an empty one where the line has no such field.
    QStringView at(qsizetype index) const { return index < size() ? m_fields.at(index) : QStringView(); }
    /// The field as a number, see toNumber().
    int number(qsizetype index) const;

    /// Exchanges a field; a field that the line does not have is left alone.
    void replace(qsizetype index, const QString &text);
    void replace(qsizetype index, int number);
    void append(const QString &text);
    /// Drops the fields from `count` on.
    void truncate(qsizetype count);

    /// The line again, in its present fields.
    QString joined() const;

private:
    QVarLengthArray<QStringView, 40> m_fields;
    QVarLengthArray<QString, 10> m_exchanged;
    std::array<char16_t, 6 * longestNumber> m_digits;
    std::size_t m_usedDigits = 0;
};

/// Whether a line is of the kind that `prefix` names. Record tags are case-sensitive prefixes.
constexpr bool hasTag(QStringView line, QStringView prefix)
{
    return line.size() >= prefix.size() && std::equal(prefix.begin(), prefix.end(), line.begin());
}

/// How many fields a line has, its tag included: "ID;1;" has 3, an empty line has 1.
qsizetype fieldCount(QStringView line);

/// One field of a line; empty where the line has no such field.
QStringView fieldAt(QStringView line, qsizetype index);

/// The fields from `first` on, with their separators; empty where the line has no such field.
QStringView fieldsFrom(QStringView line, qsizetype first);

/// Reads a field as a signed 32-bit decimal number, as QString::toInt does (blanks around and
/// a leading '+' are accepted); what does not parse or does not fit counts as 0.
int toNumber(QStringView field);

/// Write a text, or a number in plain decimal, to a place that has room for it; return its end.
char16_t *writeText(char16_t *out, QStringView text);
char16_t *writeNumber(char16_t *out, int number);

/// Puts fields together again; the inverse of cutting a line.
///     {"IVG", "a", ""}  ->  "IVG;a;"
void joinFields(const QStringList &fields, QString &line);

/// A file reference moved from one prefix to another; nothing for one that stays where it is,
/// because it begins with "System:" or does not begin with `fromPrefix`. Texts are compared, not
/// folders; an empty prefix is the beginning of every reference.
///     "C:/lib/pic.bmp" from "C:/lib" to "D:/proj"  ->  "D:/proj/pic.bmp"
std::optional<QString> rebasedReference(QStringView reference, QStringView fromPrefix, QStringView toPrefix);

/// Moves a file reference in place, see rebasedReference().
void replacePathPrefix(QString &field, const QString &fromPrefix, const QString &toPrefix);

/// Adds `shift` to the two numbers (fields 4 and 5) of an axis line and joins it into `line`.
void shiftReferenceFields(QStringList &fields, QString &line, int shift);
/// The same for a line that is still to be joined.
void shiftReferenceFields(RecordLine &line, int shift);
