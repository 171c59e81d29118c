// Names that come from files, fit to be shown.
#include "EscapedText.h"

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// Whether a character turns the direction of the text behind it, so that a name reads as another.
bool turnsText(QChar character)
{
    constexpr std::array directions{QChar::DirLRE, QChar::DirLRO, QChar::DirRLE, QChar::DirRLO, QChar::DirPDF,
                                    QChar::DirLRI, QChar::DirRLI, QChar::DirFSI, QChar::DirPDI};
    return std::find(directions.begin(), directions.end(), character.direction()) != directions.end();
}

/// Whether a character would act on a terminal instead of being shown there.
bool actsOnTerminal(QChar character)
{
    const QChar::Category category = character.category();
    return category == QChar::Other_Control || category == QChar::Separator_Line ||
           category == QChar::Separator_Paragraph || turnsText(character);
}

QString escapedCharacter(QChar character)
{
    static constexpr std::array<std::pair<char16_t, char16_t>, 3> shortForms{
        {{u'\n', u'n'}, {u'\r', u'r'}, {u'\t', u't'}}};
    for (const auto &[control, letter] : shortForms) {
        if (character == control)
            return u"\\"_s + QChar(letter);
    }
    constexpr char16_t lastByte = 0xff;
    if (character > lastByte)
        return u"\\u%1"_s.arg(character.unicode(), 4, 16, '0'_L1);
    return u"\\x%1"_s.arg(character.unicode(), 2, 16, '0'_L1);
}

bool isAsciiControl(QChar character)
{
    constexpr char16_t firstPrintable = 0x20;
    constexpr char16_t deletion = 0x7f;
    return character < firstPrintable || character == deletion;
}

template <typename Predicate>
QString withEscaped(QStringView text, Predicate isToBeEscaped)
{
    QString shown;
    shown.reserve(text.size());
    for (const QChar character : text) {
        if (isToBeEscaped(character))
            shown += escapedCharacter(character);
        else
            shown += character;
    }
    return shown;
}

} // namespace

QString escaped(QStringView text)
{
    return withEscaped(text, actsOnTerminal);
}

QString withAsciiControlsEscaped(const QString &text)
{
    // Nearly no name holds any.
    return std::any_of(text.begin(), text.end(), isAsciiControl) ? withEscaped(text, isAsciiControl) : text;
}
