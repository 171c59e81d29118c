// The program itself, as a process.
#include "Surroundings.h"
#include "TestSuite.h"

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
    void answersWithoutADisplay_data();
    void answersWithoutADisplay();
    void opensWithTheGivenProject();
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

void TestProgram::answersWithoutADisplay_data()
{
    QTest::addColumn<QString>("argument");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QByteArray>("output");
    QTest::addColumn<QByteArray>("error");
    QTest::newRow("version") << u"--version"_s << 0 << QByteArray("vantrel 0.1.0\n") << QByteArray();
    QTest::newRow("unknown option") << u"--odd"_s << 2 << QByteArray()
                                    << QByteArray(
                                           "vantrel: unknown option \"--odd\"; see \"vantrel --help\"\n");
    QTest::newRow("option that is no text")
        << u"--a\u001b[31m\u202e"_s << 2 << QByteArray()
        << QByteArray("vantrel: unknown option \"--a\\x1b[31m\\u202e\"; see \"vantrel --help\"\n");
    QTest::newRow("missing project") << u"/no/such"_s << 2 << QByteArray()
                                     << QByteArray("vantrel: there is no project \"/no/such\"; "
                                                   "see \"vantrel --help\"\n");
}

void TestProgram::answersWithoutADisplay()
{
    QFETCH(const QString, argument);
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(u"DISPLAY"_s);
    environment.remove(u"WAYLAND_DISPLAY"_s);
    environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s); // would end the program if it were asked for
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral(VANTREL_PROGRAM), {argument});
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QTEST(program.exitCode(), "exitCode");
    QTEST(program.readAllStandardOutput(), "output");
    QTEST(program.readAllStandardError(), "error");
}

void TestProgram::opensWithTheGivenProject()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, "");
    QSettings(u"QEL"_s, u"Vantrel"_s).setValue("projDir"_L1, u"/plants/of/last/time"_s);
    QProcess program;
    program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    program.start(QStringLiteral(VANTREL_PROGRAM), {project.path(u"scr/a.psc"_s)});
    QTRY_VERIFY(log().contains("====== Vantrel start ======"));
    QCOMPARE(::kill(static_cast<pid_t>(program.processId()), SIGTERM), 0);
    QVERIFY(program.waitForFinished());
    QCOMPARE(QSettings(u"QEL"_s, u"Vantrel"_s).value("projDir"_L1).toString(), project.dir());
}

VANTREL_TEST(QCoreApplication, TestProgram)
#include "tst_program.moc"
