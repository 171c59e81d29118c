// Text for a terminal, a file or a pipe.
#include "Output.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

QLatin1StringView colorCode(Color color)
{
    switch (color) {
    case Color::Bold:
        return "1"_L1;
    case Color::Dim:
        return "2"_L1;
    case Color::Red:
        return "31"_L1;
    case Color::Green:
        return "32"_L1;
    case Color::Yellow:
        return "33"_L1;
    case Color::Plain:
        break;
    }
    return "0"_L1;
}

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

} // namespace

bool Output::isTerminal() const
{
    return isatty(fileno(m_stream)) == 1;
}

void Output::setColorMode(ColorMode mode)
{
    const bool isWelcome =
        isTerminal() && qEnvironmentVariableIsEmpty("NO_COLOR") && qgetenv("TERM") != "dumb";
    m_showsColors = mode == ColorMode::Always || (mode == ColorMode::Auto && isWelcome);
}

void Output::print(QStringView text)
{
    if (isOpen())
        printBytes(text.toUtf8());
}

void Output::printBytes(const QByteArray &bytes)
{
    const auto size = static_cast<std::size_t>(bytes.size());
    if (isOpen())
        note(std::fwrite(bytes.constData(), 1, size, m_stream) == size);
}

void Output::note(bool isDone)
{
    if (!isDone)
        m_error = errno;
}

void Output::printLine(QStringView text)
{
    print(text);
    print(u"\n");
}

void Output::printUtf8Line(const QByteArray &text)
{
    printBytes(text);
    print(u"\n");
}

QString Output::colored(const QString &text, Color color) const
{
    return m_showsColors ? u"\x1b[%1m%2\x1b[0m"_s.arg(colorCode(color), text) : text;
}

void Output::flush()
{
    if (isOpen())
        note(std::fflush(m_stream) == 0);
}

QString escaped(QStringView text)
{
    QString shown;
    shown.reserve(text.size());
    for (const QChar character : text) {
        if (actsOnTerminal(character))
            shown += escapedCharacter(character);
        else
            shown += character;
    }
    return shown;
}
