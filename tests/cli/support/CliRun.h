// Running the headless companion as its users do, and what comes of it.
#pragma once

#include "TestProject.h"

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>

struct CliResult
{
    int exitCode = 0; ///< noExitCode where the program crashed or did not end
    QByteArray output;
    QByteArray errorOutput;

    static constexpr int noExitCode = -1;
};

/// One run of the program in a clean environment: LC_ALL=C, home and XDG folders of its own,
/// which go away with this object, and nothing of what the test's user has set.
///     CliRun run;
///     const CliResult result = run.execute({u"--version"_s});
class CliRun final
{
    Q_DISABLE_COPY_MOVE(CliRun)

public:
    CliRun();
    ~CliRun();

    void setVariable(const QString &name, const QString &value);
    /// Where relative paths begin; the home folder otherwise.
    void setWorkingFolder(const QString &path);
    /// Give the program an open file in place of a captured stream; `closedStream` gives it none.
    void setOutput(int descriptor) { m_outputDescriptor = descriptor; }
    void setErrorOutput(int descriptor) { m_errorDescriptor = descriptor; }
    static constexpr int closedStream = -1;
    void setInputClosed() { m_isInputClosed = true; }
    /// Lets file permissions hold for the program where the superuser runs it, too.
    void setPermissionsHold() { m_permissionsHold = true; }

    /// Starts the program with this signal ignored, as nohup does with SIGHUP.
    void setSignalIgnored(int number) { m_ignoredSignal = number; }

    CliResult execute(const QStringList &arguments);

    /// The same in two steps, for tests that do something in between.
    void start(const QStringList &arguments);
    CliResult finish();

    /// Sends a signal and returns when the program has dealt with it: its main thread rests again.
    bool sendSignal(int number);
    /// The same without waiting: the main thread runs the handler before anything else.
    void sendSignalAtOnce(int number);

    /// Returns once the program waits for a reader of its standard output.
    bool waitUntilOutputBlocks() const;

    /// The path of the program's log file.
    QString logFile() const;

private:
    static constexpr int captured = -2;
    static void exchangeStream(int descriptor, int stream);

    TestProject m_home;
    QProcess m_process;
    int m_outputDescriptor = captured;
    int m_errorDescriptor = captured;
    bool m_isInputClosed = false;
    bool m_permissionsHold = false;
    int m_ignoredSignal = 0;
};

/// The text with what differs from run to run replaced: the project's path by "<project>", the
/// time in a change log's name by "<time>", the seconds of a run by "<seconds>".
QByteArray withPlaceholders(QByteArray text, const QString &projectDir);
