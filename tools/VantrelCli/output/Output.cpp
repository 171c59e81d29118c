// Text for a terminal, a file or a pipe.
#include "Output.h"

#include "StopSignals.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>

#include <poll.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// A pipe with room takes this much at once.
constexpr qsizetype blockSize = PIPE_BUF;

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

Output::Output(std::FILE *stream)
    : m_descriptor(fileno(stream))
    , m_writing(stream == stderr ? Writing::AtOnce
                : isTerminal()   ? Writing::ByLines
                                 : Writing::ByBlocks)
{
}

bool Output::isTerminal() const
{
    return isatty(m_descriptor) == 1;
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
    if (!isOpen())
        return;
    m_waiting += bytes;
    switch (m_writing) {
    case Writing::AtOnce:
        write(m_waiting.size());
        break;
    case Writing::ByLines:
        write(m_waiting.lastIndexOf('\n') + 1);
        break;
    case Writing::ByBlocks:
        write(m_waiting.size() / blockSize * blockSize);
        break;
    }
}

/// Writes the first of the bytes that wait, or gives all of them up.
void Output::write(qsizetype size)
{
    qsizetype done = 0;
    while (done < size && isOpen()) {
        if (!waitForReader()) {
            m_error = ECANCELED;
            break;
        }
        const auto count = static_cast<std::size_t>(std::min(size - done, blockSize));
        const ssize_t written = ::write(m_descriptor, m_waiting.constData() + done, count);
        if (written > 0)
            done += written;
        else if (written == 0 || errno != EINTR)
            m_error = written == 0 ? EIO : errno;
    }
    m_waiting.remove(0, isOpen() ? done : m_waiting.size());
}

/// Returns false where the process was asked to end and nobody reads what was written before.
bool Output::waitForReader() const
{
    // Writing says so; of none, no answer would ever come.
    if (m_descriptor < 0)
        return true;
    constexpr int forEver = -1;
    constexpr int readersLast = 100; // milliseconds
    pollfd output{.fd = m_descriptor, .events = POLLOUT, .revents = 0};
    std::array both{output, pollfd{.fd = StopSignals::descriptor(), .events = POLLIN, .revents = 0}};
    while (poll(both.data(), both.size(), forEver) < 0 && errno == EINTR) {
    }
    return both[0].revents != 0 || both[1].revents == 0 || poll(&output, 1, readersLast) != 0;
}

void Output::printLine(QStringView text)
{
    printBytes(text.toUtf8() + '\n');
}

void Output::printUtf8Line(const QByteArray &text)
{
    printBytes(text + '\n');
}

QString Output::colored(const QString &text, Color color) const
{
    return m_showsColors ? u"\x1b[%1m%2\x1b[0m"_s.arg(colorCode(color), text) : text;
}

void Output::flush()
{
    if (isOpen())
        write(m_waiting.size());
}
