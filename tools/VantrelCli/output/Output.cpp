// Text for a terminal, a file or a pipe.
#include "Output.h"

#include <cerrno>

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
