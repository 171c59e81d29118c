// A file that makes its readers wait.
#include "HeldFile.h"

#include <QFile>
#include <QTest>

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

HeldFile::HeldFile(const QString &path)
{
    // The system tells by this signal that somebody waits; we ask.
    std::signal(SIGIO, SIG_IGN);
    m_descriptor = ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CLOEXEC);
    if (m_descriptor < 0 || fcntl(m_descriptor, F_SETLEASE, F_WRLCK) != 0)
        qFatal("%s could not be held", qPrintable(path));
}

HeldFile::~HeldFile()
{
    release();
}

bool HeldFile::hasReader() const
{
    // The lease turns into what is asked for.
    return fcntl(m_descriptor, F_GETLEASE) != F_WRLCK;
}

bool HeldFile::waitForReader() const
{
    constexpr int longestWait = 20'000;
    return QTest::qWaitFor([this] { return hasReader(); }, longestWait);
}

void HeldFile::release()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
    m_descriptor = -1;
}
