// Streams for the program to write to: a pipe that a test reads when it likes, and a terminal.
#include "Streams.h"

#include <QTest>

#include <array>
#include <cerrno>
#include <cstdlib>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace {

constexpr int longestWait = 120'000;

void require(bool done, const char *what)
{
    if (!done)
        qFatal("cannot %s", what);
}

void closeEnd(int &descriptor)
{
    if (descriptor >= 0)
        ::close(descriptor);
    descriptor = -1;
}

} // namespace

Stream::~Stream()
{
    closeReadEnd();
    closeWriteEnd();
}

void Stream::closeReadEnd()
{
    closeEnd(m_readEnd);
}

void Stream::closeWriteEnd()
{
    closeEnd(m_writeEnd);
}

bool Stream::hasArrivals() const
{
    int size = 0;
    return ::ioctl(m_readEnd, FIONREAD, &size) == 0 && size > 0;
}

QByteArray Stream::readToEnd() const
{
    QByteArray text;
    const bool ended = QTest::qWaitFor(
        [&] {
            std::array<char, Pipe::capacity> bytes{};
            const ssize_t count = ::read(m_readEnd, bytes.data(), bytes.size());
            if (count > 0)
                text.append(bytes.data(), count);
            const bool nothingYet = count < 0 && (errno == EAGAIN || errno == EINTR);
            return count <= 0 && !nothingYet;
        },
        longestWait);
    return ended ? text : text + "(the writer did not go away)";
}

Pipe::Pipe()
{
    std::array<int, 2> ends{};
    require(::pipe2(ends.data(), O_CLOEXEC) == 0, "make a pipe");
    m_readEnd = ends[0];
    m_writeEnd = ends[1];
    require(::fcntl(m_readEnd, F_SETFL, O_NONBLOCK) == 0, "read without waiting");
    require(::fcntl(m_writeEnd, F_SETPIPE_SZ, capacity) == capacity, "make a small pipe");
}

void Pipe::fill()
{
    const QByteArray bytes(capacity, '.');
    require(::write(m_writeEnd, bytes.constData(), capacity) == capacity, "fill a pipe");
}

Terminal::Terminal(int columns)
{
    m_readEnd = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
    require(m_readEnd >= 0 && ::grantpt(m_readEnd) == 0 && ::unlockpt(m_readEnd) == 0, "make a terminal");
    m_writeEnd = ::open(::ptsname(m_readEnd), O_RDWR | O_NOCTTY | O_CLOEXEC);
    termios settings{};
    require(::tcgetattr(m_writeEnd, &settings) == 0, "read the terminal's settings");
    ::cfmakeraw(&settings);
    require(::tcsetattr(m_writeEnd, TCSANOW, &settings) == 0, "change the terminal's settings");
    winsize size{};
    size.ws_row = 24;
    size.ws_col = static_cast<unsigned short>(columns);
    require(::ioctl(m_writeEnd, TIOCSWINSZ, &size) == 0, "set the terminal's size");
}
