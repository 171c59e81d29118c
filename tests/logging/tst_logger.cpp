// Tests the logger. It is one per process, so cases that need a process of their own (no application object,
// another state folder, a file that cannot be written) run in child processes: this same executable, started
// with the name of a child case.
#include "Logger.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using Qel::Logger;

namespace {

struct Received
{
    QString level;
    QString time;
    QString message;
    QString line;
    QThread *thread = nullptr;
};

/// Keeps what it is called with; `onMessage` runs inside handleMessage().
class Recorder final : public Logger::LogListener
{
public:
    Recorder() { Logger::registerLogListener(this); }
    ~Recorder() override { Logger::unregisterLogListener(this); }

    void handleMessage(QString level, QString time, QString message) override
    {
        received.push_back({level, time, message, {}, QThread::currentThread()});
        if (onMessage)
            onMessage(message);
    }
    void handleFormatedMessage(QString line) override
    {
        ++lineCount;
        received.back().line = line;
    }

    QStringList messages() const
    {
        QStringList texts;
        for (const Received &entry : received)
            texts << entry.message;
        return texts;
    }
    QStringList lines() const
    {
        QStringList texts;
        for (const Received &entry : received)
            texts << entry.line;
        return texts;
    }

    std::vector<Received> received;
    int lineCount = 0;
    std::function<void(const QString &)> onMessage;
};

void log(const QString &message, unsigned char level = 7)
{
    Logger::instance()->out(level, message, "tools/Vantrel/Converter", 42).endl();
}

void logOnOtherThread(const QString &message)
{
    std::thread([&] { log(message); }).join();
}

/// Logs "<thread>:<count>" from several threads at once.
void logOnManyThreads(int threadCount, int entryCount, const std::function<void()> &meanwhile = {})
{
    std::vector<std::thread> threads;
    threads.reserve(static_cast<std::size_t>(threadCount));
    std::atomic<int> ready = 0;
    for (int thread = 0; thread < threadCount; ++thread) {
        threads.emplace_back([=, &ready] {
            ++ready;
            while (ready < threadCount)
                std::this_thread::yield();
            for (int entry = 0; entry < entryCount; ++entry)
                log(u"%1:%2"_s.arg(thread).arg(entry));
        });
    }
    if (meanwhile)
        meanwhile();
    for (std::thread &thread : threads)
        thread.join();
}

/// Whether the messages of logOnManyThreads() are all there and those of each thread in their order.
bool areCompleteAndOrdered(const QStringList &messages, int threadCount, int entryCount)
{
    std::vector<int> next(static_cast<std::size_t>(threadCount), 0);
    for (const QString &message : messages) {
        const auto thread = message.section(u':', 0, 0).toUInt();
        if (thread >= next.size() || message != u"%1:%2"_s.arg(thread).arg(next[thread]++))
            return false;
    }
    return messages.size() == qsizetype{threadCount} * entryCount;
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList linesOf(const QString &path)
{
    QStringList lines = QString::fromUtf8(contentOf(path)).split(u'\n');
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

/// The message of a line of the log file whose messages have no spaces.
QString messageOf(const QString &line)
{
    return line.section(u' ', -1);
}

QStringList messagesOf(const QString &path)
{
    QStringList messages;
    for (const QString &line : linesOf(path))
        messages << messageOf(line);
    return messages;
}

QString fileBelow(const QString &stateFolder)
{
    return stateFolder + "/QEL/Vantrel/Vantrel.log"_L1;
}

// ---- Child cases: what they find out goes to stdout, for the test to judge.

void say(const QString &text)
{
    std::puts(qUtf8Printable(text));
    std::fflush(stdout);
}

/// Says each message; never unregistered, as a listener of a process that ends.
class Speaker final : public Logger::LogListener
{
public:
    void handleMessage(QString level, QString, QString message) override
    {
        say(level + u' ' + message);
        if (onMessage)
            onMessage(message);
    }
    std::function<void(const QString &)> onMessage;
};

Speaker *registeredSpeaker()
{
    static auto *const speaker = new Speaker;
    Logger::registerLogListener(speaker);
    return speaker;
}

struct Application
{
    int argumentCount = 1;
    char name[8] = "child";
    char *arguments[2] = {name, nullptr};
    QCoreApplication object{argumentCount, arguments};
};

int sayPath()
{
    say(Logger::getLogFilePath());
    say(QFileInfo::exists(Logger::getLogFilePath()) ? u"exists"_s : u"absent"_s);
    log(u"entry"_s);
    return 0;
}

int logOneEntry()
{
    registeredSpeaker();
    say(Logger::getLogFilePath());
    log(u"first"_s);
    log(u"second"_s);
    return 0;
}

int logWithoutApplication()
{
    const auto *const caller = QThread::currentThread();
    Recorder recorder;
    log(u"here"_s);
    say(recorder.messages().join(u' '));
    say(recorder.received.back().thread == caller ? u"same thread"_s : u"other thread"_s);
    QThread *worker = nullptr;
    std::thread([&] {
        worker = QThread::currentThread();
        log(u"there"_s);
        say(recorder.messages().join(u' '));
        say(recorder.received.back().thread == worker ? u"same thread"_s : u"other thread"_s);
    }).join();
    return 0;
}

int logOnManyThreadsWithoutApplication()
{
    Recorder recorder;
    logOnManyThreads(4, 500);
    for (const QString &line : recorder.lines())
        say(line);
    return 0;
}

int endApplicationWithWaitingEntries()
{
    auto application = std::make_unique<Application>();
    registeredSpeaker()->onMessage = [thread = QThread::currentThread()](const QString &) {
        say(thread == QThread::currentThread() ? u"main thread"_s : u"other thread"_s);
    };
    logOnOtherThread(u"waiting"_s);
    say(u"application ends"_s);
    application.reset();
    say(u"application ended"_s);
    log(u"after"_s);

    application = std::make_unique<Application>();
    logOnOtherThread(u"again"_s);
    say(u"second application runs"_s);
    QCoreApplication::processEvents();
    say(u"events processed"_s);
    return 0;
}

int exitWithWaitingEntries()
{
    [[maybe_unused]] static const auto *const application = new Application;
    registeredSpeaker();
    logOnOtherThread(u"waiting"_s);
    std::exit(0);
}

int endWhileOtherThreadsLog(std::size_t mostWaiting)
{
    Logger::setMostWaiting(mostWaiting);
    std::atomic<bool> stop = false;
    std::atomic<int> logged = 0;
    std::thread worker([&] {
        while (!stop) {
            log(u"entry"_s);
            ++logged;
        }
    });
    class : public Logger::LogListener
    {
        void handleMessage(QString, QString, QString) override {}
    } silent;
    Logger::registerLogListener(&silent);
    for (int round = 0; round < 50; ++round) {
        const Application application;
        for (const int before = logged; logged < before + 10;)
            QCoreApplication::processEvents();
    }
    stop = true;
    worker.join();
    Logger::unregisterLogListener(&silent);
    say(u"done"_s);
    return 0;
}

int endWhileOtherThreadsLog()
{
    return endWhileOtherThreadsLog(0);
}

int endWhileOtherThreadsWait()
{
    return endWhileOtherThreadsLog(3);
}

struct LogsWhenDestroyed
{
    QString message;
    ~LogsWhenDestroyed() { log(message); }
};

int logInDestructorsOfThreadAndProcess()
{
    static const LogsWhenDestroyed atProcessEnd{u"static"_s};
    registeredSpeaker();
    std::thread([] {
        static thread_local const LogsWhenDestroyed atThreadEnd{u"thread"_s};
        Logger::instance()->out(7, u"never completed"_s, "", 1);
    }).join();
    static thread_local const LogsWhenDestroyed atMainThreadEnd{u"main"_s};
    log(u"body"_s);
    return 0;
}

int logPastTheFileSizeLimit()
{
    registeredSpeaker();
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    const rlim_t unlimited = limit.rlim_cur;

    log(u"before"_s);
    limit.rlim_cur = static_cast<rlim_t>(QFileInfo(Logger::getLogFilePath()).size()) + 40;
    setrlimit(RLIMIT_FSIZE, &limit);
    log(u"cut"_s);
    log(u"lost"_s);
    limit.rlim_cur = unlimited;
    setrlimit(RLIMIT_FSIZE, &limit);
    log(u"after"_s);
    return 0;
}

constexpr int rotationEntryCount = 300;
constexpr int rotationEntrySize = 100'000;

int logManyLargeEntries()
{
    for (int entry = 0; entry < rotationEntryCount; ++entry)
        log(QString::number(entry).rightJustified(rotationEntrySize, u'0'));
    say(u"done"_s);
    return 0;
}

int loseTheFolderBeforeRotation()
{
    log(u"begin"_s);
    const QString folder = QFileInfo(Logger::getLogFilePath()).path();
    QDir().rename(folder, folder + u".moved"_s);
    QFile inTheWay(folder);
    if (!inTheWay.open(QIODevice::WriteOnly))
        return 1;
    for (int entry = 0; entry < 60; ++entry)
        log(QString(rotationEntrySize, u'x'));
    log(u"short"_s);
    say(u"done"_s);
    return 0;
}

struct ChildCase
{
    const char *name;
    int (*run)();
};
constexpr ChildCase childCases[] = {
    {"sayPath", sayPath},
    {"logOneEntry", logOneEntry},
    {"logWithoutApplication", logWithoutApplication},
    {"logOnManyThreadsWithoutApplication", logOnManyThreadsWithoutApplication},
    {"endApplicationWithWaitingEntries", endApplicationWithWaitingEntries},
    {"exitWithWaitingEntries", exitWithWaitingEntries},
    {"endWhileOtherThreadsLog", endWhileOtherThreadsLog},
    {"endWhileOtherThreadsWait", endWhileOtherThreadsWait},
    {"logInDestructorsOfThreadAndProcess", logInDestructorsOfThreadAndProcess},
    {"logPastTheFileSizeLimit", logPastTheFileSizeLimit},
    {"logManyLargeEntries", logManyLargeEntries},
    {"loseTheFolderBeforeRotation", loseTheFolderBeforeRotation},
};

/// One run of a child case with a home and a state folder of its own.
class Child final
{
public:
    Child()
    {
        environment.insert(u"XDG_STATE_HOME"_s, stateFolder());
        environment.insert(u"HOME"_s, homeFolder());
    }

    /// Takes the home away, or gives another. Returns where state lies then.
    QString makeHomeless(const QString &home)
    {
        environment.remove(u"XDG_STATE_HOME"_s);
        environment.insert(u"TMPDIR"_s, folder());
        if (home.isNull())
            environment.remove(u"HOME"_s);
        else
            environment.insert(u"HOME"_s, home);
        return u"%1/vantrel-%2"_s.arg(folder(), QString::number(geteuid()));
    }

    void run(const QString &caseName)
    {
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(m_folder.path());
        if (permissionsHold) {
            process.setChildProcessModifier([] {
                ::prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE);
                ::prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH);
            });
        }
        process.start(QCoreApplication::applicationFilePath(), {u"--child"_s, caseName});
        QVERIFY2(process.waitForFinished(120'000), qUtf8Printable(process.errorString()));
        output = QString::fromUtf8(process.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
        errors = QString::fromUtf8(process.readAllStandardError()).split(u'\n', Qt::SkipEmptyParts);
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QVERIFY2(process.exitCode() == 0, qUtf8Printable(errors.join(u'\n')));
    }

    QString folder() const { return m_folder.path(); }
    QString homeFolder() const { return m_folder.filePath(u"home"_s); }
    QString stateFolder() const { return m_folder.filePath(u"state"_s); }
    QString logFile() const { return fileBelow(stateFolder()); }
    QString logFolder() const { return QFileInfo(logFile()).path(); }

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    bool permissionsHold = false; ///< where the superuser runs the test, too
    QStringList output;
    QStringList errors;

private:
    QTemporaryDir m_folder;
};

} // namespace

class TestLogger final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void namesLevels_data();
    void namesLevels();
    void namesAllOtherLevelsDebug();
    void handsOverTheMessageUnchanged();
    void writesEachEntryOnOneLine_data();
    void writesEachEntryOnOneLine();
    void writesAllPartsOfAnEntry_data();
    void writesAllPartsOfAnEntry();
    void handsOverTheTimeAndLineOfTheFile();

    void dropsAnEntryThatIsReplacedUnfinished();
    void ignoresASecondEnd();
    void keepsTheUnfinishedEntriesOfThreadsApart();
    void copiesWhatAnEntryIsBegunWith();

    void deliversAtOnceOnTheApplicationThread();
    void deliversEntriesOfOtherThreadsFromTheEventLoop();
    void deliversWaitingEntriesFirst();
    void givesTheEventLoopItsTurnWhileOtherThreadsLog();
    void keepsOneOrderForFileAndListeners();

    void callsAListenerRegisteredTwiceOnce();
    void ignoresNoListener();
    void sparesALaterListenerTheWaitingEntries();
    void forgetsWaitingEntriesOfAnUnregisteredListener();
    void forgetsWaitingEntriesOfAListenerRegisteredAnew();
    void waitsForARunningCallWhenUnregistering();

    void letsOtherThreadsWait();
    void letsThreadsGoOn_data();
    void letsThreadsGoOn();
    void neverLetsTheApplicationThreadWait();

    void acceptsEntriesInsideAListener();
    void letsAListenerUnregisterItself();
    void letsAListenerUnregisterAnother();
    void letsAListenerRegisterAnother();
    void letsAListenerBeDestroyedInItsOwnCall();
    void survivesAListenerThatThrows();
    void hasOneInstanceForAllThreads();

    void keepsTheFileBelowTheStateFolder_data();
    void keepsTheFileBelowTheStateFolder();
    void createsNothingWhenAskedForThePath();
    void appendsToTheFileOfAnEarlierRun();
    void goesOnWithoutItsFile_data();
    void goesOnWithoutItsFile();
    void keepsTheFileForTheUserAloneWithoutAHome_data();
    void keepsTheFileForTheUserAloneWithoutAHome();
    void keepsTheFileAndItsFoldersForTheUserAlone();
    void writesNothingWhereOthersMay_data();
    void writesNothingWhereOthersMay();
    void goesOnOnNewLineAfterAWriteError();
    void keepsThreeOlderFiles();
    void goesOnWhenAnOlderFileCannotBeReplaced();
    void goesOnWhenTheFolderIsLost();

    void deliversOnTheCallingThreadWithoutApplication();
    void keepsOneOrderWithoutApplication();
    void deliversWaitingEntriesBeforeTheApplicationEnds();
    void endsCalmlyWithWaitingEntries();
    void survivesApplicationsThatComeAndGo_data();
    void survivesApplicationsThatComeAndGo();
    void takesEntriesUntilTheProcessEnds();
};

void TestLogger::init()
{
    QCoreApplication::processEvents();
}

void TestLogger::namesLevels_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("name");
    const char *const names[] = {"emergency", "alert",  "critical", "error",
                                 "warning",   "notice", "system",   "info"};
    int number = 0;
    for (const char *name : names)
        QTest::newRow(name) << number++ << QString::fromLatin1(name);
    QTest::newRow("first unnamed") << 8 << u"debug"_s;
    QTest::newRow("last unnamed") << 255 << u"debug"_s;
}

void TestLogger::namesLevels()
{
    QFETCH(int, number);
    QFETCH(QString, name);
    Recorder recorder;
    log(u"text"_s, static_cast<unsigned char>(number));
    QCOMPARE(recorder.received.back().level, name);
    QVERIFY(recorder.received.back().line.contains(u" [%1] "_s.arg(name)));
}

void TestLogger::namesAllOtherLevelsDebug()
{
    Recorder recorder;
    for (int number = 8; number <= 255; ++number)
        log(u"text"_s, static_cast<unsigned char>(number));
    QCOMPARE(recorder.received.size(), std::size_t{248});
    for (const Received &entry : recorder.received)
        QCOMPARE(entry.level, u"debug"_s);
}

void TestLogger::handsOverTheMessageUnchanged()
{
    const QString message = u"!!! from \\scr_temp {} {0} %v %1\nline two\t\u00e4\U0001F600"_s + QChar(0);
    Recorder recorder;
    log(message);
    QCOMPARE(recorder.received.back().message, message);
}

void TestLogger::writesEachEntryOnOneLine_data()
{
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("written");
    QTest::newRow("plain") << u"plain text"_s << u"plain text"_s;
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("spaces at the ends") << u"  x  "_s << u"  x  "_s;
    QTest::newRow("line feed") << u"a\nb"_s << u"a\\nb"_s;
    QTest::newRow("carriage return") << u"a\r\nb"_s << u"a\\r\\nb"_s;
    QTest::newRow("tab") << u"a\tb"_s << u"a\\tb"_s;
    QTest::newRow("escape character") << u"\u001b[31m"_s << u"\\u001b[31m"_s;
    QTest::newRow("zero character") << u"a"_s + QChar(0) + u"b"_s << u"a\\u0000b"_s;
    QTest::newRow("delete character") << u"a\u007fb"_s << u"a\\u007fb"_s;
    QTest::newRow("next line character") << u"a"_s + QChar(0x85) << u"a\\u0085"_s;
    QTest::newRow("line separator") << u"a\u2028b"_s << u"a\\u2028b"_s;
    QTest::newRow("paragraph separator") << u"a\u2029b"_s << u"a\\u2029b"_s;
    QTest::newRow("backslash") << u"from \\scr_temp"_s << u"from \\scr_temp"_s;
    QTest::newRow("format characters") << u"{} {0} %v %%"_s << u"{} {0} %v %%"_s;
    QTest::newRow("beyond Latin-1") << u"\u00e4\u20ac\U0001F600"_s << u"\u00e4\u20ac\U0001F600"_s;
    QTest::newRow("long") << QString(100'000, u'x') << QString(100'000, u'x');
}

void TestLogger::writesEachEntryOnOneLine()
{
    QFETCH(QString, message);
    QFETCH(QString, written);
    const auto before = linesOf(Logger::getLogFilePath()).size();
    log(message);
    const QStringList lines = linesOf(Logger::getLogFilePath());
    QCOMPARE(lines.size(), before + 1);
    QCOMPARE(lines.last().section(u") "_s, 1), written);
}

void TestLogger::writesAllPartsOfAnEntry_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("place");
    QTest::newRow("usual") << QByteArray("tools/Vantrel/Vantrel") << 17 << u"tools/Vantrel/Vantrel:17"_s;
    QTest::newRow("no line") << QByteArray("a.cpp") << 0 << u"a.cpp:0"_s;
    QTest::newRow("negative line") << QByteArray("a.cpp") << -1 << u"a.cpp:-1"_s;
    QTest::newRow("no file") << QByteArray() << 5 << u":5"_s;
    QTest::newRow("line break in the file name") << QByteArray("a\nb") << 5 << u"a\\nb:5"_s;
}

void TestLogger::writesAllPartsOfAnEntry()
{
    QFETCH(QByteArray, file);
    QFETCH(int, line);
    QFETCH(QString, place);
    Logger::instance()->out(1, u"text"_s, file.isNull() ? nullptr : file.constData(), line).endl();
    const QString written = linesOf(Logger::getLogFilePath()).last();
    QCOMPARE(written.mid(23), u" [alert] %1 (thread %2) text"_s.arg(place).arg(gettid()));
}

void TestLogger::handsOverTheTimeAndLineOfTheFile()
{
    Recorder recorder;
    log(u"text"_s);
    const Received &entry = recorder.received.back();
    static const QRegularExpression timeFormat(uR"(^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3}$)"_s);
    QVERIFY2(timeFormat.match(entry.time).hasMatch(), qUtf8Printable(entry.time));
    QCOMPARE(entry.line, linesOf(Logger::getLogFilePath()).last());
    QVERIFY(entry.line.startsWith(entry.time + u' '));
}

void TestLogger::dropsAnEntryThatIsReplacedUnfinished()
{
    Recorder recorder;
    Logger::instance()->out(7, u"first"_s, "a.cpp", 1);
    Logger::instance()->out(7, u"second"_s, "a.cpp", 2).endl();
    QCOMPARE(recorder.messages(), QStringList{u"second"_s});
}

void TestLogger::ignoresASecondEnd()
{
    Recorder recorder;
    Qel::LogMessage &entry = Logger::instance()->out(7, u"once"_s, "a.cpp", 1);
    entry.endl();
    entry.endl();
    QCOMPARE(recorder.messages(), QStringList{u"once"_s});
}

void TestLogger::keepsTheUnfinishedEntriesOfThreadsApart()
{
    Recorder recorder;
    Qel::LogMessage &entry = Logger::instance()->out(7, u"main"_s, "a.cpp", 1);
    logOnOtherThread(u"worker"_s);
    entry.endl();
    QCOMPARE(recorder.messages(), (QStringList{u"worker"_s, u"main"_s}));
}

void TestLogger::copiesWhatAnEntryIsBegunWith()
{
    QString message = u"before"_s;
    QByteArray file = "before.cpp";
    Qel::LogMessage &entry = Logger::instance()->out(7, message, file.constData(), 1);
    message[0] = u'X';
    file.data()[0] = 'X';
    entry.endl();
    const QString line = linesOf(Logger::getLogFilePath()).last();
    QVERIFY(line.contains(u" before.cpp:1 "_s));
    QCOMPARE(messageOf(line), u"before"_s);
}

void TestLogger::deliversAtOnceOnTheApplicationThread()
{
    Recorder recorder;
    log(u"at once"_s);
    QCOMPARE(recorder.messages(), QStringList{u"at once"_s});
    QCOMPARE(recorder.received.back().thread, qApp->thread());
}

void TestLogger::deliversEntriesOfOtherThreadsFromTheEventLoop()
{
    Recorder recorder;
    logOnOtherThread(u"first"_s);
    logOnOtherThread(u"second"_s);
    QCOMPARE(recorder.messages(), QStringList{});
    QCoreApplication::processEvents();
    QCOMPARE(recorder.messages(), (QStringList{u"first"_s, u"second"_s}));
    QCOMPARE(recorder.received.back().thread, qApp->thread());

    logOnOtherThread(u"third"_s);
    QCoreApplication::processEvents();
    QCOMPARE(recorder.messages().last(), u"third"_s);
}

void TestLogger::deliversWaitingEntriesFirst()
{
    Recorder recorder;
    logOnOtherThread(u"waiting"_s);
    log(u"own"_s);
    QCOMPARE(recorder.messages(), (QStringList{u"waiting"_s, u"own"_s}));
    QCoreApplication::processEvents();
    QCOMPARE(recorder.received.size(), std::size_t{2});
}

void TestLogger::givesTheEventLoopItsTurnWhileOtherThreadsLog()
{
    constexpr std::size_t entryCount = 50;
    Recorder recorder;
    recorder.onMessage = [&](const QString &) {
        if (recorder.received.size() < entryCount)
            logOnOtherThread(u"meanwhile"_s);
    };
    logOnOtherThread(u"first"_s);
    QCoreApplication::processEvents();
    QVERIFY(recorder.received.size() < entryCount);
    QTRY_COMPARE(recorder.received.size(), entryCount);
}

void TestLogger::keepsOneOrderForFileAndListeners()
{
    constexpr int threadCount = 4;
    constexpr int entryCount = 500;
    Recorder first;
    Recorder second;
    const auto before = linesOf(Logger::getLogFilePath()).size();
    logOnManyThreads(threadCount, entryCount, [] {
        for (int entry = 0; entry < entryCount; ++entry)
            log(u"%1:%2"_s.arg(threadCount).arg(entry));
    });
    QTRY_COMPARE(first.received.size(), std::size_t{threadCount + 1} * entryCount);

    QVERIFY(areCompleteAndOrdered(first.messages(), threadCount + 1, entryCount));
    QCOMPARE(first.lines(), linesOf(Logger::getLogFilePath()).mid(before));
    QCOMPARE(second.lines(), first.lines());
    for (const Received &entry : first.received) {
        QCOMPARE(entry.thread, qApp->thread());
        QCOMPARE(messageOf(entry.line), entry.message);
    }
}

void TestLogger::callsAListenerRegisteredTwiceOnce()
{
    Recorder recorder;
    Logger::registerLogListener(&recorder);
    log(u"once"_s);
    QCOMPARE(recorder.messages(), QStringList{u"once"_s});
    QCOMPARE(recorder.lineCount, 1);

    Logger::unregisterLogListener(&recorder);
    log(u"never"_s);
    QCOMPARE(recorder.messages(), QStringList{u"once"_s});
}

void TestLogger::ignoresNoListener()
{
    Recorder recorder;
    Logger::registerLogListener(nullptr);
    log(u"text"_s);
    Logger::unregisterLogListener(nullptr);
    QCOMPARE(recorder.messages(), QStringList{u"text"_s});
}

void TestLogger::sparesALaterListenerTheWaitingEntries()
{
    Recorder early;
    logOnOtherThread(u"before"_s);
    Recorder late;
    logOnOtherThread(u"after"_s);
    QCoreApplication::processEvents();
    QCOMPARE(early.messages(), (QStringList{u"before"_s, u"after"_s}));
    QCOMPARE(late.messages(), QStringList{u"after"_s});
}

void TestLogger::forgetsWaitingEntriesOfAnUnregisteredListener()
{
    Recorder leaving;
    Recorder staying;
    logOnOtherThread(u"waiting"_s);
    Logger::unregisterLogListener(&leaving);
    QCoreApplication::processEvents();
    QCOMPARE(leaving.messages(), QStringList{});
    QCOMPARE(staying.messages(), QStringList{u"waiting"_s});
}

void TestLogger::forgetsWaitingEntriesOfAListenerRegisteredAnew()
{
    Recorder recorder;
    logOnOtherThread(u"waiting"_s);
    Logger::unregisterLogListener(&recorder);
    Logger::registerLogListener(&recorder);
    log(u"new"_s);
    QCOMPARE(recorder.messages(), QStringList{u"new"_s});
}

void TestLogger::waitsForARunningCallWhenUnregistering()
{
    Recorder recorder;
    std::atomic<bool> unregistering = false;
    std::atomic<bool> unregistered = false;
    bool returnedTooEarly = false;
    std::thread other;
    recorder.onMessage = [&](const QString &) {
        other = std::thread([&] {
            unregistering = true;
            Logger::unregisterLogListener(&recorder);
            unregistered = true;
        });
        while (!unregistering)
            std::this_thread::yield();
        for (int chance = 0; chance < 10'000; ++chance)
            std::this_thread::yield();
        returnedTooEarly = unregistered;
    };
    log(u"text"_s);
    other.join();
    QVERIFY(!returnedTooEarly);
    QCOMPARE(recorder.lineCount, 0);
}

namespace {

constexpr int fewEntries = 5;
constexpr int manyEntries = 100;

/// Another thread with more to log than may wait. It comes to its end when this goes away.
class WaitingWriter final
{
public:
    WaitingWriter()
    {
        Logger::setMostWaiting(fewEntries);
        m_thread = std::thread([this] {
            for (; written < manyEntries; ++written)
                log(QString::number(written));
        });
    }
    ~WaitingWriter()
    {
        Logger::setMostWaiting(0);
        m_thread.join();
    }
    Q_DISABLE_COPY_MOVE(WaitingWriter)

    /// Waits until it does not get on, without handling events.
    bool waits() const
    {
        while (written < fewEntries)
            std::this_thread::yield();
        constexpr int turns = 100'000;
        for (int turn = 0; turn < turns; ++turn)
            std::this_thread::yield();
        return written == fewEntries;
    }

    std::atomic<int> written = 0;

private:
    std::thread m_thread;
};

} // namespace

void TestLogger::letsOtherThreadsWait()
{
    Recorder recorder;
    const WaitingWriter writer;
    QVERIFY(writer.waits());
    QCOMPARE(messagesOf(Logger::getLogFilePath()).last(), QString::number(fewEntries)); // in the file at once
    QTRY_COMPARE(recorder.received.size(), std::size_t{manyEntries});
    for (int entry = 0; entry < manyEntries; ++entry)
        QCOMPARE(recorder.messages().at(entry), QString::number(entry));
}

void TestLogger::letsThreadsGoOn_data()
{
    QTest::addColumn<int>("way");
    QTest::newRow("nobody is to wait any more") << 0;
    QTest::newRow("nobody listens any more") << 1;
}

void TestLogger::letsThreadsGoOn()
{
    QFETCH(const int, way);
    auto recorder = std::make_unique<Recorder>();
    const WaitingWriter writer;
    QVERIFY(writer.waits());
    if (way == 0)
        Logger::setMostWaiting(0);
    else
        recorder.reset();
    while (writer.written < manyEntries)
        std::this_thread::yield();
}

void TestLogger::neverLetsTheApplicationThreadWait()
{
    Recorder recorder;
    const WaitingWriter writer;
    QVERIFY(writer.waits());
    recorder.onMessage = [&](const QString &message) {
        if (message == u"own"_s) {
            for (int entry = 0; entry < manyEntries; ++entry)
                log(u"answer"_s);
        }
    };
    log(u"own"_s);
    QTRY_COMPARE(recorder.messages().count(u"answer"_s), manyEntries);
}

void TestLogger::acceptsEntriesInsideAListener()
{
    Recorder first;
    Recorder second;
    first.onMessage = [](const QString &message) {
        if (message.size() < 4) {
            log(message + u"a"_s);
            log(message + u"b"_s);
        }
    };
    const auto before = linesOf(Logger::getLogFilePath()).size();
    log(u"--"_s);
    const QStringList expected{u"--"_s, u"--a"_s, u"--b"_s, u"--aa"_s, u"--ab"_s, u"--ba"_s, u"--bb"_s};
    QCOMPARE(first.messages(), expected);
    QCOMPARE(second.messages(), expected);
    QCOMPARE(messagesOf(Logger::getLogFilePath()).mid(before), expected);
}

void TestLogger::letsAListenerUnregisterItself()
{
    Recorder first;
    Recorder second;
    first.onMessage = [&](const QString &) { Logger::unregisterLogListener(&first); };
    log(u"text"_s);
    log(u"more"_s);
    QCOMPARE(first.messages(), QStringList{u"text"_s});
    QCOMPARE(first.lineCount, 0);
    QCOMPARE(second.messages(), (QStringList{u"text"_s, u"more"_s}));
}

void TestLogger::letsAListenerUnregisterAnother()
{
    Recorder first;
    Recorder second;
    first.onMessage = [&](const QString &) { Logger::unregisterLogListener(&second); };
    log(u"text"_s);
    QCOMPARE(first.messages(), QStringList{u"text"_s});
    QCOMPARE(second.messages(), QStringList{});
}

void TestLogger::letsAListenerRegisterAnother()
{
    Recorder first;
    std::unique_ptr<Recorder> added;
    first.onMessage = [&](const QString &) {
        if (!added)
            added = std::make_unique<Recorder>();
    };
    log(u"before"_s);
    log(u"after"_s);
    QCOMPARE(added->messages(), QStringList{u"after"_s});
}

void TestLogger::letsAListenerBeDestroyedInItsOwnCall()
{
    Recorder other;
    class SelfDestroying final : public Logger::LogListener
    {
    public:
        void handleMessage(QString, QString, QString) override
        {
            Logger::unregisterLogListener(this);
            delete this;
        }
    };
    Logger::registerLogListener(new SelfDestroying);
    log(u"text"_s);
    log(u"more"_s);
    QCOMPARE(other.messages(), (QStringList{u"text"_s, u"more"_s}));
}

void TestLogger::survivesAListenerThatThrows()
{
    Recorder first;
    Recorder second;
    first.onMessage = [](const QString &) { throw std::runtime_error("listener"); };
    log(u"one"_s);
    log(u"two"_s);
    QCOMPARE(first.messages(), (QStringList{u"one"_s, u"two"_s}));
    QCOMPARE(second.messages(), (QStringList{u"one"_s, u"two"_s}));
}

void TestLogger::hasOneInstanceForAllThreads()
{
    Logger *other = nullptr;
    std::thread([&] { other = Logger::instance(); }).join();
    QVERIFY(other);
    QCOMPARE(Logger::instance(), other);
}

void TestLogger::keepsTheFileBelowTheStateFolder_data()
{
    QTest::addColumn<QString>("stateHome");
    QTest::addColumn<QString>("expectedFolder");
    QTest::newRow("absolute") << u"@/chosen"_s << u"@/chosen"_s;
    QTest::newRow("with a blank and an umlaut") << u"@/my st\u00e4te.d"_s << u"@/my st\u00e4te.d"_s;
    QTest::newRow("slash at the end") << u"@/chosen/"_s << u"@/chosen"_s;
    QTest::newRow("unset") << QString() << u"@/home/.local/state"_s;
    QTest::newRow("empty") << u""_s << u"@/home/.local/state"_s;
    QTest::newRow("relative") << u"chosen"_s << u"@/home/.local/state"_s;
    QTest::newRow("colon") << u":/chosen"_s << u"@/home/.local/state"_s;
}

void TestLogger::keepsTheFileBelowTheStateFolder()
{
    QFETCH(QString, stateHome);
    QFETCH(QString, expectedFolder);
    Child child;
    if (stateHome.isNull())
        child.environment.remove(u"XDG_STATE_HOME"_s);
    else
        child.environment.insert(u"XDG_STATE_HOME"_s, QString(stateHome).replace(u'@', child.folder()));
    child.run(u"sayPath"_s);

    const QString expected = fileBelow(QString(expectedFolder).replace(u'@', child.folder()));
    QCOMPARE(child.output.value(0), expected);
    QCOMPARE(messagesOf(expected), QStringList{u"entry"_s});
    QCOMPARE(child.errors, QStringList{});
}

void TestLogger::createsNothingWhenAskedForThePath()
{
    Child child;
    child.run(u"sayPath"_s);
    QCOMPARE(child.output, (QStringList{child.logFile(), u"absent"_s}));
}

void TestLogger::appendsToTheFileOfAnEarlierRun()
{
    Child child;
    child.run(u"logOneEntry"_s);
    child.run(u"logOneEntry"_s);
    QCOMPARE(messagesOf(child.logFile()), (QStringList{u"first"_s, u"second"_s, u"first"_s, u"second"_s}));
}

void TestLogger::goesOnWithoutItsFile_data()
{
    QTest::addColumn<QString>("obstacle");
    QTest::newRow("a file where the state folder should be") << u"file"_s;
    QTest::newRow("a folder in place of the file") << u"folder"_s;
    QTest::newRow("a link in place of the file") << u"link"_s;
    QTest::newRow("a pipe in place of the file") << u"pipe"_s;
}

void TestLogger::goesOnWithoutItsFile()
{
    QFETCH(QString, obstacle);
    Child child;
    if (obstacle == "file"_L1)
        QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), child.stateFolder()));
    else
        QVERIFY(QDir().mkpath(obstacle == "folder"_L1 ? child.logFile() : child.logFolder()));
    const QString elsewhere = child.folder() + "/elsewhere"_L1;
    if (obstacle == "link"_L1)
        QVERIFY(QFile::link(elsewhere, child.logFile()));
    constexpr mode_t forOwner = 0600;
    if (obstacle == "pipe"_L1)
        QCOMPARE(mkfifo(QFile::encodeName(child.logFile()).constData(), forOwner), 0);
    child.run(u"logOneEntry"_s);
    QCOMPARE(child.output, (QStringList{child.logFile(), u"info first"_s, u"info second"_s}));
    QCOMPARE(child.errors.size(), 1);
    QVERIFY2(child.errors.first().contains(child.logFile()), qUtf8Printable(child.errors.first()));
    QVERIFY(!QFileInfo::exists(elsewhere));
}

void TestLogger::keepsTheFileForTheUserAloneWithoutAHome_data()
{
    QTest::addColumn<QString>("home");
    QTest::newRow("unset") << QString();
    QTest::newRow("empty") << u""_s;
    QTest::newRow("the root folder") << u"/"_s;
    QTest::newRow("relative") << u"home"_s;
    QTest::newRow("missing in the root folder") << u"/nonexistent"_s;
    QTest::newRow("a file") << u"@/file"_s;
    QTest::newRow("protected") << u"@/protected"_s;
}

void TestLogger::keepsTheFileForTheUserAloneWithoutAHome()
{
    QFETCH(QString, home);
    Child child;
    const QString protectedHome = child.folder() + "/protected"_L1;
    QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), child.folder() + "/file"_L1));
    QVERIFY(QDir().mkdir(protectedHome));
    QVERIFY(QFile::setPermissions(protectedHome, QFile::Permissions::fromInt(0x0500)));
    child.permissionsHold = true; // for the superuser, too
    const QString folder = child.makeHomeless(home.replace(u'@', child.folder()));
    child.run(u"logOneEntry"_s);
    QCOMPARE(child.output.value(0), fileBelow(folder));
    QCOMPARE(messagesOf(fileBelow(folder)), (QStringList{u"first"_s, u"second"_s}));
    QCOMPARE(QFileInfo(folder).permissions() & QFile::Permissions::fromInt(0x0777),
             QFile::Permissions::fromInt(0x0700));
    QCOMPARE(child.errors, QStringList());
}

/// Those that are there keep their rights, but for the file of an earlier version.
void TestLogger::keepsTheFileAndItsFoldersForTheUserAlone()
{
    const auto rightsOf = [](const QString &path) {
        return QFileInfo(path).permissions() & QFile::Permissions::fromInt(0x0777);
    };
    constexpr auto folderOfOwner = QFile::Permissions::fromInt(0x0700);
    constexpr auto fileOfOwner = QFile::Permissions::fromInt(0x0600);
    Child child;
    child.run(u"logOneEntry"_s);
    QCOMPARE(rightsOf(child.stateFolder()), folderOfOwner);
    QCOMPARE(rightsOf(child.logFolder()), folderOfOwner);
    QCOMPARE(rightsOf(child.logFile()), fileOfOwner);

    QVERIFY(QFile::setPermissions(child.logFile(), QFile::Permissions::fromInt(0x0644)));
    child.run(u"logOneEntry"_s);
    QCOMPARE(rightsOf(child.logFile()), fileOfOwner);
}

void TestLogger::writesNothingWhereOthersMay_data()
{
    QTest::addColumn<QString>("obstacle");
    QTest::newRow("folder that others may enter") << u"open"_s;
    QTest::newRow("link") << u"link"_s;
}

void TestLogger::writesNothingWhereOthersMay()
{
    QFETCH(const QString, obstacle);
    Child child;
    const QString folder = child.makeHomeless(QString());
    const QString prepared = obstacle == "link"_L1 ? child.folder() + "/elsewhere"_L1 : folder;
    QVERIFY(QDir().mkdir(prepared));
    QFile::setPermissions(prepared, QFile::Permissions::fromInt(obstacle == "link"_L1 ? 0x7700 : 0x7755));
    if (obstacle == "link"_L1)
        QVERIFY(QFile::link(prepared, folder));
    child.run(u"logOneEntry"_s);
    QCOMPARE(
        child.errors,
        QStringList{u"The log file cannot be written: %1 is no folder of this user alone"_s.arg(folder)});
    QVERIFY(QDir(prepared).isEmpty());
}

void TestLogger::goesOnOnNewLineAfterAWriteError()
{
    Child child;
    child.run(u"logPastTheFileSizeLimit"_s);
    QCOMPARE(child.output, (QStringList{u"info before"_s, u"info cut"_s, u"info lost"_s, u"info after"_s}));
    QCOMPARE(child.errors.size(), 1);
    const QStringList lines = linesOf(child.logFile());
    QCOMPARE(lines.size(), 3);
    QCOMPARE(messageOf(lines.first()), u"before"_s);
    QCOMPARE(lines.at(1).size(), 40);
    QVERIFY(lines.last().contains(u" [info] tools/Vantrel/Converter:42 "_s));
    QCOMPARE(lines.last().size(), lines.first().size() - 1);
}

void TestLogger::keepsThreeOlderFiles()
{
    Child child;
    child.run(u"logManyLargeEntries"_s);
    const QStringList names{u"Vantrel.3.log"_s, u"Vantrel.2.log"_s, u"Vantrel.1.log"_s, u"Vantrel.log"_s};
    QStringList sortedNames = names;
    sortedNames.sort();
    QStringList found = QDir(child.logFolder()).entryList(QDir::Files);
    found.sort();
    QCOMPARE(found, sortedNames);

    std::vector<int> entries;
    for (const QString &name : names) {
        const QString path = child.logFolder() + u'/' + name;
        QVERIFY(QFileInfo(path).size() <= 5'000'000);
        QVERIFY(name == names.last() || QFileInfo(path).size() > 5'000'000 - 2 * rotationEntrySize);
        for (const QString &message : messagesOf(path)) {
            QCOMPARE(message.size(), rotationEntrySize);
            entries.push_back(message.toInt());
        }
    }
    QVERIFY(entries.front() > 0);
    QCOMPARE(entries.back(), rotationEntryCount - 1);
    for (std::size_t index = 1; index < entries.size(); ++index)
        QCOMPARE(entries[index], entries[index - 1] + 1);
    QCOMPARE(child.errors, QStringList{});
}

void TestLogger::goesOnWhenAnOlderFileCannotBeReplaced()
{
    Child child;
    QVERIFY(QDir().mkpath(child.logFolder() + u"/Vantrel.1.log/not empty"_s));
    QVERIFY(QDir().mkpath(child.logFolder() + u"/Vantrel.2.log/not empty"_s));
    child.run(u"logManyLargeEntries"_s);
    QCOMPARE(child.output, QStringList{u"done"_s});
    QCOMPARE(child.errors.size(), 1);
    QVERIFY(QFileInfo(child.logFile()).size() <= 5'000'000);
}

void TestLogger::goesOnWhenTheFolderIsLost()
{
    Child child;
    child.run(u"loseTheFolderBeforeRotation"_s);
    QCOMPARE(child.output, QStringList{u"done"_s});
    QCOMPARE(child.errors.size(), 1);
}

void TestLogger::deliversOnTheCallingThreadWithoutApplication()
{
    Child child;
    child.run(u"logWithoutApplication"_s);
    QCOMPARE(child.output, (QStringList{u"here"_s, u"same thread"_s, u"here there"_s, u"same thread"_s}));
}

void TestLogger::keepsOneOrderWithoutApplication()
{
    Child child;
    child.run(u"logOnManyThreadsWithoutApplication"_s);
    QCOMPARE(child.output, linesOf(child.logFile()));
    QVERIFY(areCompleteAndOrdered(messagesOf(child.logFile()), 4, 500));
}

void TestLogger::deliversWaitingEntriesBeforeTheApplicationEnds()
{
    Child child;
    child.run(u"endApplicationWithWaitingEntries"_s);
    // clang-format off
    const QStringList expected{
        u"application ends"_s, u"info waiting"_s, u"main thread"_s,
        u"application ended"_s, u"info after"_s, u"main thread"_s,
        u"second application runs"_s, u"info again"_s, u"main thread"_s,
        u"events processed"_s};
    // clang-format on
    QCOMPARE(child.output, expected);
}

void TestLogger::endsCalmlyWithWaitingEntries()
{
    Child child;
    child.run(u"exitWithWaitingEntries"_s);
    QCOMPARE(messagesOf(child.logFile()), QStringList{u"waiting"_s});
    QCOMPARE(child.errors, QStringList{});
}

void TestLogger::survivesApplicationsThatComeAndGo_data()
{
    QTest::addColumn<QString>("caseName");
    QTest::newRow("nobody waits") << u"endWhileOtherThreadsLog"_s;
    QTest::newRow("other threads wait") << u"endWhileOtherThreadsWait"_s;
}

void TestLogger::survivesApplicationsThatComeAndGo()
{
    QFETCH(const QString, caseName);
    Child child;
    child.run(caseName);
    QCOMPARE(child.output, QStringList{u"done"_s});
}

void TestLogger::takesEntriesUntilTheProcessEnds()
{
    Child child;
    child.run(u"logInDestructorsOfThreadAndProcess"_s);
    const QStringList expected{u"thread"_s, u"body"_s, u"main"_s, u"static"_s};
    QCOMPARE(child.output, (QStringList{u"info thread"_s, u"info body"_s, u"info main"_s, u"info static"_s}));
    QCOMPARE(messagesOf(child.logFile()), expected);
}

static int runChildCase(const QByteArray &name)
{
    for (const ChildCase &childCase : childCases) {
        if (name == childCase.name)
            return childCase.run();
    }
    return 99;
}

int main(int argc, char **argv)
{
    if (argc == 3 && QByteArray(argv[1]) == "--child")
        return runChildCase(argv[2]);

    const QTemporaryDir stateFolder;
    qputenv("XDG_STATE_HOME", QFile::encodeName(stateFolder.path()));
    const QCoreApplication application(argc, argv);
    TestLogger test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_logger.moc"
