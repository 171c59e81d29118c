// The program itself, as a process.
#include "Surroundings.h"

#include <QProcess>
#include <QSettings>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;

namespace {

QString logFile()
{
    return qEnvironmentVariable("XDG_STATE_HOME") + "/QEL/Vantrel/Vantrel.log"_L1;
}

QByteArray log()
{
    QFile file(logFile());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class TestProgram : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void endsInGoodOrderOnSignals_data();
    void endsInGoodOrderOnSignals();
};

void TestProgram::init()
{
    forgetSettings();
    QFile::remove(logFile());
    // The program leaves a signal alone that it is started with ignored, as by nohup.
    for (const int signal : {SIGTERM, SIGHUP, SIGINT})
        std::signal(signal, SIG_DFL);
}

void TestProgram::endsInGoodOrderOnSignals_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("end of the session") << SIGTERM;
    QTest::newRow("end of the terminal") << SIGHUP;
    QTest::newRow("Ctrl+C") << SIGINT;
}

void TestProgram::endsInGoodOrderOnSignals()
{
    QFETCH(const int, signal);
    QSettings(u"QEL"_s, u"Vantrel"_s).setValue("projDir"_L1, u"/plants/kept"_s);
    QProcess program;
    program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    program.start(QStringLiteral(VANTREL_PROGRAM), QStringList());
    QVERIFY(program.waitForStarted());
    QTRY_VERIFY(log().contains("====== Vantrel start ======"));
    QVERIFY(!log().contains("====== Vantrel end ======"));

    QCOMPARE(::kill(static_cast<pid_t>(program.processId()), signal), 0);
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 0);
    QVERIFY(log().contains("====== Vantrel end ======"));
    const QSettings settings(u"QEL"_s, u"Vantrel"_s);
    QCOMPARE(settings.value("projDir"_L1).toString(), u"/plants/kept"_s);
    QVERIFY(settings.contains("pos"_L1));
}

QTEST_GUILESS_MAIN(TestProgram)
#include "tst_program.moc"
