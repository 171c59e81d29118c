// Running the headless companion as its users do, and what comes of it.
#include "CliRun.h"

#include <QFile>
#include <QRegularExpression>
#include <QTest>

#include <csignal>

#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int longestRun = 120'000; // milliseconds

QProcessEnvironment cleanEnvironment(const TestProject &home)
{
    const QProcessEnvironment outer = QProcessEnvironment::systemEnvironment();
    QProcessEnvironment environment;
    // What the program, or a tool that it was built with, needs to run at all.
    for (const QString &name : {u"PATH"_s, u"LD_LIBRARY_PATH"_s, u"ASAN_OPTIONS"_s, u"LSAN_OPTIONS"_s,
                                u"UBSAN_OPTIONS"_s, u"TSAN_OPTIONS"_s}) {
        if (outer.contains(name))
            environment.insert(name, outer.value(name));
    }
    environment.insert(u"HOME"_s, home.dir());
    environment.insert(u"XDG_CONFIG_HOME"_s, home.path(u"config"_s));
    environment.insert(u"XDG_STATE_HOME"_s, home.path(u"state"_s));
    environment.insert(u"LC_ALL"_s, u"C"_s);
    environment.insert(u"TERM"_s, u"xterm"_s);
    return environment;
}

QByteArray processFile(qint64 processId, const QString &name)
{
    QFile file(u"/proc/%1/%2"_s.arg(processId).arg(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The state letter of a process's first thread, as the system shows it: 'S' while it rests.
char stateOf(qint64 processId)
{
    const QByteArray text = processFile(processId, u"task/%1/stat"_s.arg(processId));
    const qsizetype nameEnd = text.lastIndexOf(')');
    return nameEnd >= 0 && nameEnd + 2 < text.size() ? text.at(nameEnd + 2) : '\0';
}

/// Whether a process's first thread rests in a call that waits for room in its output. The event loop waits
/// with another call.
bool waitsForRoom(qint64 processId)
{
    return processFile(processId, u"task/%1/syscall"_s.arg(processId))
        .startsWith(QByteArray::number(SYS_poll) + ' ');
}

} // namespace

CliRun::CliRun()
    : m_home(u"home"_s)
{
    m_process.setProgram(QStringLiteral(VANTREL_CLI));
    m_process.setProcessEnvironment(cleanEnvironment(m_home));
    m_process.setWorkingDirectory(m_home.dir());
}

CliRun::~CliRun()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.kill();
    m_process.waitForFinished(longestRun);
}

void CliRun::setVariable(const QString &name, const QString &value)
{
    QProcessEnvironment environment = m_process.processEnvironment();
    environment.insert(name, value);
    m_process.setProcessEnvironment(environment);
}

void CliRun::setWorkingFolder(const QString &path)
{
    m_process.setWorkingDirectory(path);
}

CliResult CliRun::execute(const QStringList &arguments)
{
    start(arguments);
    return finish();
}

void CliRun::exchangeStream(int descriptor, int stream)
{
    if (descriptor == closedStream)
        ::close(stream);
    else if (descriptor != captured)
        ::dup2(descriptor, stream);
}

void CliRun::start(const QStringList &arguments)
{
    // Runs in the new process, where little else than these calls is safe.
    m_process.setChildProcessModifier([this] {
        // Whatever the tests were started with: the program leaves ignored signals alone.
        for (const int number : {SIGINT, SIGTERM, SIGHUP})
            ::signal(number, number == m_ignoredSignal ? SIG_IGN : SIG_DFL);
        exchangeStream(m_isInputClosed ? closedStream : captured, STDIN_FILENO);
        exchangeStream(m_outputDescriptor, STDOUT_FILENO);
        exchangeStream(m_errorDescriptor, STDERR_FILENO);
        if (m_permissionsHold) {
            ::prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE);
            ::prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH);
        }
    });
    m_process.setArguments(arguments);
    m_process.start(QIODevice::ReadOnly);
    if (!m_process.waitForStarted(longestRun))
        qFatal("cannot start %s", qUtf8Printable(m_process.program()));
}

CliResult CliRun::finish()
{
    const bool ended = m_process.state() == QProcess::NotRunning || m_process.waitForFinished(longestRun);
    const bool exited = ended && m_process.exitStatus() == QProcess::NormalExit;
    return {exited ? m_process.exitCode() : CliResult::noExitCode, m_process.readAllStandardOutput(),
            m_process.readAllStandardError()};
}

void CliRun::sendSignalAtOnce(int number)
{
    ::kill(static_cast<pid_t>(m_process.processId()), number);
}

bool CliRun::sendSignal(int number)
{
    // The signal makes the thread ready to run before kill() returns, so that a thread that is
    // seen to rest has dealt with it.
    sendSignalAtOnce(number);
    return QTest::qWaitFor([this] { return stateOf(m_process.processId()) == 'S'; }, longestRun);
}

bool CliRun::waitUntilOutputBlocks() const
{
    return QTest::qWaitFor([this] { return waitsForRoom(m_process.processId()); }, longestRun);
}

QString CliRun::logFile() const
{
    return m_home.path(u"state/QEL/Vantrel/Vantrel.log"_s);
}

QByteArray withPlaceholders(QByteArray text, const QString &projectDir)
{
    text.replace(projectDir.toUtf8(), "<project>");
    QString result = QString::fromUtf8(text);
    static const QRegularExpression time(u"Vantrel_\\d{4}-\\d\\d-\\d\\d_\\d\\d-\\d\\d-\\d\\d\\.csv"_s);
    static const QRegularExpression seconds(u"^Seconds( +)\\d+\\.\\d\\d$"_s,
                                            QRegularExpression::MultilineOption);
    result.replace(time, u"Vantrel_<time>.csv"_s);
    result.replace(seconds, u"Seconds\\1<seconds>"_s);
    return result.toUtf8();
}
