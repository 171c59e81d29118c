// The program itself, as a process.
#include "Surroundings.h"
#include "TestSuite.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QSettings>
#include <QTest>

#include <csignal>

#include <sys/resource.h>
#include <unistd.h>

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

/// In the process that is about to become the program: only what is safe there.
void limit(int resource, rlim_t most)
{
    struct rlimit limits = {};
    getrlimit(static_cast<__rlimit_resource>(resource), &limits);
    limits.rlim_cur = most;
    setrlimit(static_cast<__rlimit_resource>(resource), &limits);
}

void endInGoodOrder(QProcess &program)
{
    QCOMPARE(::kill(static_cast<pid_t>(program.processId()), SIGTERM), 0);
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 0);
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
    void endsWithAMessageWhereItCannotStart_data();
    void endsWithAMessageWhereItCannotStart();
    void goesOnWhereItsFilesCannotGrow();
    void goesOnWithoutStandardStreams();
    void keepsNoSettingsWithoutAHome_data();
    void keepsNoSettingsWithoutAHome();
    void removesWhatAKilledDryRunHasLeft();
};

void TestProgram::init()
{
    forgetSettings();
    QFile::remove(logFile());
    // The program leaves a signal alone that it is started with ignored, as by nohup.
    for (const int signal : {SIGTERM, SIGHUP, SIGINT, SIGXFSZ})
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

void TestProgram::endsWithAMessageWhereItCannotStart_data()
{
    QTest::addColumn<int>("resource");
    QTest::addColumn<qulonglong>("most");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("error");
    QTest::newRow("few open files")
        << int{RLIMIT_NOFILE} << qulonglong{20} << QStringList()
        << QByteArray("vantrel: too few files may be open at once; nothing was touched\n");
    // A stack for which no thread has room.
    QTest::newRow("no thread") << int{RLIMIT_STACK} << (qulonglong{1} << 50) << QStringList()
                               << QByteArray(
                                      "vantrel: too few threads may run at once; nothing was touched\n");
    QTest::newRow("no display") << int{RLIMIT_CORE} << qulonglong{0}
                                << QStringList{u"-platform"_s, u"no\u001b[31m"_s}
                                << QByteArray("vantrel: the program could not go on\n");
}

void TestProgram::endsWithAMessageWhereItCannotStart()
{
    QFETCH(const int, resource);
    QFETCH(const qulonglong, most);
    QFETCH(const QStringList, arguments);
    QFETCH(const QByteArray, error);
    QProcess program;
    program.setChildProcessModifier([=] { limit(resource, most); });
    program.start(QStringLiteral(VANTREL_PROGRAM), arguments);
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 1);
    const QByteArray told = program.readAllStandardError();
    QVERIFY2(told.endsWith(error), told.constData());
    QVERIFY2(!told.contains('\x1b'), told.constData());
    QVERIFY(!log().contains("====== Vantrel start ======"));
}

void TestProgram::goesOnWhereItsFilesCannotGrow()
{
    QSettings(u"QEL"_s, u"Vantrel"_s).setValue("projDir"_L1, u"/plants/kept"_s);
    const QByteArray formerLog(1024, '\n');
    QVERIFY(QDir().mkpath(QFileInfo(logFile()).path()));
    QFile file(logFile());
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(formerLog), formerLog.size());
    file.close();
    QProcess program;
    program.setChildProcessModifier([] { limit(RLIMIT_FSIZE, 1024); });
    program.start(QStringLiteral(VANTREL_PROGRAM), QStringList());
    QByteArray told;
    QTRY_VERIFY((told += program.readAllStandardError()).contains("The log file cannot be written"));
    endInGoodOrder(program);
    QCOMPARE(log(), formerLog);
}

void TestProgram::goesOnWithoutStandardStreams()
{
    QProcess program;
    program.setChildProcessModifier([] {
        for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
            close(stream);
    });
    program.start(QStringLiteral(VANTREL_PROGRAM), QStringList());
    QTRY_VERIFY(log().contains("====== Vantrel start ======"));
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        const QString path = u"/proc/%1/fd/%2"_s.arg(program.processId()).arg(stream);
        QCOMPARE(QFile::symLinkTarget(path), u"/dev/null"_s);
    }
    endInGoodOrder(program);
}

void TestProgram::keepsNoSettingsWithoutAHome_data()
{
    QTest::addColumn<QString>("home");
    QTest::newRow("unset") << QString();
    QTest::newRow("the root folder") << u"/"_s;
    QTest::newRow("relative") << u"home"_s;
    QTest::newRow("missing in the root folder") << u"/vantrel-nonexistent"_s;
}

void TestProgram::keepsNoSettingsWithoutAHome()
{
    QFETCH(const QString, home);
    const QDir root(u"/"_s);
    constexpr auto all = QDir::AllEntries | QDir::Hidden | QDir::System;
    const QStringList rootBefore = root.entryList(all);
    const QDateTime configBefore = QFileInfo(u"/.config"_s).lastModified();
    const TestProject place;
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString &name : {u"XDG_CONFIG_HOME"_s, u"XDG_STATE_HOME"_s, u"HOME"_s})
        environment.remove(name);
    if (!home.isNull())
        environment.insert(u"HOME"_s, home);
    environment.insert(u"TMPDIR"_s, place.dir());
    program.setProcessEnvironment(environment);
    program.setWorkingDirectory(place.dir());
    program.start(QStringLiteral(VANTREL_PROGRAM), QStringList());
    const QString logOfHomeless = u"vantrel-%1/QEL/Vantrel/Vantrel.log"_s.arg(QString::number(geteuid()));
    QTRY_VERIFY(place.exists(logOfHomeless) &&
                place.read(logOfHomeless).contains("====== Vantrel start ======"));
    endInGoodOrder(program);
    QVERIFY(place.read(logOfHomeless).contains("====== Vantrel end ======"));
    QCOMPARE(place.files(u""_s), QStringList{logOfHomeless});
    QCOMPARE(root.entryList(all), rootBefore);
    QCOMPARE(QFileInfo(u"/.config"_s).lastModified(), configBefore);
}

void TestProgram::removesWhatAKilledDryRunHasLeft()
{
    const TestProject place;
    place.write(u"vantrel-dry-run-1/plant/scr/a.psc"_s, "a");
    QVERIFY(QFile::setPermissions(place.path(u"vantrel-dry-run-1"_s), QFile::Permissions::fromInt(0x0700)));
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"TMPDIR"_s, place.dir());
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral(VANTREL_PROGRAM), QStringList());
    QTRY_VERIFY(log().contains("====== Vantrel start ======"));
    QTRY_VERIFY(!place.exists(u"vantrel-dry-run-1"_s));
    endInGoodOrder(program);
}

VANTREL_TEST(QCoreApplication, TestProgram)
#include "tst_program.moc"
