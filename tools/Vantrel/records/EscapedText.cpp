// Names that come from files, fit to be shown.
#include "EscapedText.h"

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

struct CharacterRange
{
    char32_t first;
    char32_t last;
};

/// The characters that are spelt out, by their code points.
constexpr std::array unseenCharacters{
    CharacterRange{0x0000, 0x001f},   // controls
    CharacterRange{0x007f, 0x009f},   // delete, and the controls of one byte
    CharacterRange{0x061c, 0x061c},   // a mark of direction
    CharacterRange{0x200b, 0x200f},   // blanks and joiners without a width, marks of direction
    CharacterRange{0x2028, 0x202e},   // line and paragraph ends, turns of direction
    CharacterRange{0x2060, 0x206f},   // joiners, signs of formulas, isolated turns of direction
    CharacterRange{0xfeff, 0xfeff},   // byte order mark
    CharacterRange{0xe0000, 0xe007f}, // tags: a whole text may hide in them
};

bool isUnseen(char32_t character)
{
    return std::any_of(unseenCharacters.begin(), unseenCharacters.end(),
                       [character](const CharacterRange &range) {
                           return range.first <= character && character <= range.last;
                       });
}

QString hexDigits(char32_t number, int count)
{
    return QString::number(number, 16).rightJustified(count, u'0');
}

QString spelling(char32_t character)
{
    static constexpr std::array<std::pair<char32_t, char16_t>, 3> shortForms{
        {{U'\n', u'n'}, {U'\r', u'r'}, {U'\t', u't'}}};
    for (const auto &[control, letter] : shortForms) {
        if (character == control)
            return u"\\"_s + QChar(letter);
    }
    constexpr char32_t lastByte = 0xff;
    if (character <= lastByte)
        return u"\\x"_s + hexDigits(character, 2);
    if (!QChar::requiresSurrogates(character))
        return u"\\u"_s + hexDigits(character, 4);
    return u"\\U"_s + hexDigits(character, 8);
}

QString jsonSpelling(char32_t character)
{
    if (!QChar::requiresSurrogates(character))
        return u"\\u"_s + hexDigits(character, 4);
    return u"\\u"_s + hexDigits(QChar::highSurrogate(character), 4) + u"\\u"_s +
           hexDigits(QChar::lowSurrogate(character), 4);
}

bool isAsciiControl(char32_t character)
{
    constexpr char32_t firstPrintable = 0x20;
    constexpr char32_t deletion = 0x7f;
    return character < firstPrintable || character == deletion;
}

QString spelledOut(QStringView text, QString (*spell)(char32_t), bool (*isMeant)(char32_t) = isUnseen)
{
    QString shown;
    shown.reserve(text.size());
    for (qsizetype index = 0; index < text.size();) {
        const bool isPair = index + 1 < text.size() && text.at(index).isHighSurrogate() &&
                            text.at(index + 1).isLowSurrogate();
        const QStringView units = text.sliced(index, isPair ? 2 : 1);
        const char32_t character =
            isPair ? QChar::surrogateToUcs4(units.front(), units.back()) : units.front().unicode();
        if (isMeant(character))
            shown += spell(character);
        else
            shown += units;
        index += units.size();
    }
    return shown;
}

} // namespace

QString escaped(QStringView text)
{
    return spelledOut(text, spelling);
}

QByteArray escapedJson(const QByteArray &line)
{
    return spelledOut(QString::fromUtf8(line), jsonSpelling).toUtf8();
}

QString withAsciiControlsEscaped(const QString &text)
{
    const bool hasAny = std::any_of(text.begin(), text.end(),
                                    [](QChar character) { return isAsciiControl(character.unicode()); });
    // Nearly no name holds any.
    return hasAny ? spelledOut(text, spelling, isAsciiControl) : text;
}
