// What several threads do at once with the log, with converters and with what these tell. Built with the
// thread sanitizer it shows that nothing of it races; built without, that nothing of it gets lost.
#include "ChangeLog.h"
#include "Converter.h"
#include "Logger.h"
#include "ProjectSurvey.h"
#include "RunInbox.h"
#include "TestProject.h"

#include <QtTest>

#include <atomic>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr int threadCount = 4;
constexpr int rounds = 50;

/// Runs a step with each thread's number on threads of their own, all at once.
void onThreads(const std::function<void(int)> &step)
{
    std::atomic<int> ready{0};
    std::vector<std::thread> threads;
    threads.reserve(threadCount);
    for (int number = 0; number < threadCount; ++number) {
        threads.emplace_back([&, number] {
            ++ready;
            while (ready < threadCount)
                std::this_thread::yield();
            step(number);
        });
    }
    for (std::thread &thread : threads)
        thread.join();
}

void log(const QString &message)
{
    Qel::Logger::instance()->out(7, message, "tst_threads", 1).endl();
}

/// Counts entries; without an application object it is called on the threads that log.
class Counter final : public Qel::Logger::LogListener
{
public:
    void handleMessage(QString /*level*/, QString /*time*/, QString message) override
    {
        const std::lock_guard lock(m_mutex);
        m_messages.append(message);
    }
    QStringList messages()
    {
        const std::lock_guard lock(m_mutex);
        return m_messages;
    }

private:
    std::mutex m_mutex;
    QStringList m_messages;
};

void fillPlant(const TestProject &project)
{
    for (const QString &name : {u"scr/a.psc"_s, u"scr/b.psc"_s, u"scr/area/c.psc"_s})
        project.write(name, "ID;1;O\nLIB;pump.plb;1;p;OBJ:a\nPSDV;0;0;9;9;0;1;0;0;0;0;1\n");
    project.write(u"scr/missing.psc"_s, "ID;1;O\nLIB;tank.plb;1;p;OBJ:a\nPSDV;0;0;9;9;0;1;0;0;0;0;1\n");
    project.write(u"mac/pump.plb"_s, "ID;1;S\nLIB;x;1;q;OBJ:n\nPSDV;0;0;9;9;0;1;0;0;0;0;0;z\n");
    project.makeFolder(u"log"_s);
}

/// Without an application no timer hands news over, and a test does.
void expectNoTimer()
{
    QTest::ignoreMessage(QtWarningMsg,
                         "QObject::startTimer: Timers can only be used with threads started with QThread");
}

void addProgress(RunInbox &inbox, std::size_t count, std::atomic<std::size_t> &added)
{
    for (; added < count; ++added)
        inbox.add(RunProgress{});
}

} // namespace

class TestThreads : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void losesNoEntryOfAnyThread();
    void letsListenersComeAndGoWhileOthersLog();
    void convertsSeveralProjectsAtOnce();
    void takesSettingsAndCancelsDuringARun();
    void writesSeveralChangeLogsAtOnce();
    void surveysWithAllProcessors();
    void losesNoNewsWhileOthersTellThem();
    void waitsWhileManyNewsWait();
    void waitsNoLongerWhenNobodyHandsOver();
    void runWaitsWhileManyReportsAreNotShown();
    void runWaitsNoLongerWhenNobodyShows();
    void runNeverWaitsForItsOwnThread();
    void runStartsOnceWhereSeveralStartIt();
    void logWaitsWhileManyEntriesWait();
    void logWaitsNoLongerWhenNobodyAsksForIt();
    void logWaitsForNoListenerThatIsGone();
    void logOfAListenerDoesNotWait();
};

void TestThreads::losesNoEntryOfAnyThread()
{
    Counter counter;
    Qel::Logger::registerLogListener(&counter);
    onThreads([](int number) {
        for (int round = 0; round < rounds; ++round)
            log(u"%1.%2"_s.arg(number).arg(round));
    });
    Qel::Logger::unregisterLogListener(&counter);

    const QStringList messages = counter.messages();
    QCOMPARE(messages.size(), threadCount * rounds);
    for (int number = 0; number < threadCount; ++number) {
        QStringList expected;
        for (int round = 0; round < rounds; ++round)
            expected.append(u"%1.%2"_s.arg(number).arg(round));
        QCOMPARE(messages.filter(QRegularExpression(u"^%1\\."_s.arg(number))), expected);
    }
}

void TestThreads::letsListenersComeAndGoWhileOthersLog()
{
    std::atomic<int> received{0};
    onThreads([&received](int number) {
        for (int round = 0; round < rounds; ++round) {
            if (number % 2 == 0) {
                log(u"message"_s);
                continue;
            }
            Counter counter;
            Qel::Logger::registerLogListener(&counter);
            log(u"own message"_s);
            Qel::Logger::unregisterLogListener(&counter);
            received += counter.messages().isEmpty() ? 0 : 1;
            QVERIFY(!Qel::Logger::getLogFilePath().isEmpty());
        }
    });
    QVERIFY(received > 0);
}

void TestThreads::convertsSeveralProjectsAtOnce()
{
    std::array<TestProject, threadCount> projects;
    for (const TestProject &project : projects)
        fillPlant(project);
    std::atomic<int> replaced{0};
    onThreads([&](int number) {
        Converter converter(projects.at(static_cast<std::size_t>(number)).dir());
        QObject::connect(&converter, &Converter::sigConvertInfo, &converter,
                         [&](const Converter::STBlock &report) {
                             writeChangeLog(report, converter.logFileName());
                             replaced += report.status == 0 ? 1 : 0;
                         });
        converter.setFilterNames({u"pump.plb"_s, u"tank.plb"_s});
        converter.convert();
    });
    QCOMPARE(replaced, 3 * threadCount);
}

void TestThreads::takesSettingsAndCancelsDuringARun()
{
    const TestProject project;
    fillPlant(project);
    Converter converter(project.dir());
    std::atomic<int> ends{0};
    QObject::connect(
        &converter, &Converter::sigConvertEnd, &converter, [&ends] { ++ends; }, Qt::DirectConnection);
    onThreads([&](int number) {
        for (int round = 0; round < rounds; ++round) {
            switch (number) {
            case 0:
                converter.onStartConvert();
                break;
            case 1:
                converter.announceStart();
                converter.cancel();
                break;
            case 2:
                converter.setFilterNames({u"pump.plb"_s});
                converter.setProjectDir(project.dir());
                break;
            default:
                QVERIFY(converter.logFileName().isEmpty() || converter.logFileName().contains("/log/"_L1));
            }
        }
    });
    QCOMPARE(ends, rounds);
    QCOMPARE(project.files(u"scr"_s).size(), 4);
}

void TestThreads::writesSeveralChangeLogsAtOnce()
{
    const TestProject project;
    onThreads([&](int number) {
        ChangeLog log;
        Converter::STBlock report;
        for (int round = 0; round < rounds; ++round) {
            report.error = QString::number(round);
            log.append(report, project.path(u"own%1.csv"_s.arg(number)));
            writeChangeLog(report, project.path(u"shared.csv"_s));
        }
    });
    for (int number = 0; number < threadCount; ++number)
        QCOMPARE(project.read(u"own%1.csv"_s.arg(number)).count('\n'), rounds + 1);
    QVERIFY(project.read(u"shared.csv"_s).count('\n') > qsizetype{threadCount} * rounds);
}

void TestThreads::surveysWithAllProcessors()
{
    const TestProject project;
    constexpr int screens = 200;
    for (int index = 0; index < screens; ++index) {
        const QByteArray shape = "s" + QByteArray::number(index % threadCount) + ".plb";
        project.write(u"scr/%1.psc"_s.arg(index),
                      "ID;1;O\nLIB;" + shape + ";1;p;OBJ:a\nPSDV;0;0;9;9;0;1;0;0;0;0;1\n");
    }
    project.write(u"scr/invalid.psc"_s, "PSDV\n");
    project.makeFolder(u"log"_s);
    project.makeFolder(u"mac"_s);
    const ProjectSurvey survey = surveyProject(project.dir(), false);
    QCOMPARE(survey.imageFiles.size(), screens + 1);
    QCOMPARE(survey.shapeNames, (QSet<QString>{u"s0.plb"_s, u"s1.plb"_s, u"s2.plb"_s, u"s3.plb"_s}));
    QCOMPARE(survey.findings.size(), 1);
    QCOMPARE(survey.findings.first().path, u"scr/invalid.psc"_s);
}

void TestThreads::losesNoNewsWhileOthersTellThem()
{
    expectNoTimer();
    std::vector<RunProgress> received;
    RunInbox inbox([&received](std::span<const RunNews> news) {
        for (const RunNews &one : news)
            received.push_back(std::get<RunProgress>(one));
    });
    onThreads([&](int number) {
        for (int round = 0; round < rounds; ++round) {
            if (number == 0)
                inbox.handOver();
            else
                inbox.add(RunProgress{.count = number, .index = round});
        }
    });
    inbox.handOver();

    for (int number = 1; number < threadCount; ++number) {
        int next = 0;
        for (const RunProgress &progress : received)
            QVERIFY(progress.count != number || progress.index == next++);
        QCOMPARE(next, rounds);
    }
}

void TestThreads::waitsWhileManyNewsWait()
{
    expectNoTimer();
    constexpr std::size_t all = 3 * RunInbox::mostWaiting;
    std::size_t received = 0;
    std::size_t largest = 0;
    RunInbox inbox([&](std::span<const RunNews> news) {
        received += news.size();
        largest = std::max(largest, news.size());
    });
    std::atomic<std::size_t> added{0};
    std::thread run([&] { addProgress(inbox, all, added); });
    while (added < RunInbox::mostWaiting)
        std::this_thread::yield();
    // Long enough for more, if more were let in.
    constexpr int pauses = 100'000;
    for (int pause = 0; pause < pauses; ++pause)
        std::this_thread::yield();
    while (received < all)
        inbox.handOver();
    run.join();
    QCOMPARE(largest, RunInbox::mostWaiting);
}

void TestThreads::waitsNoLongerWhenNobodyHandsOver()
{
    expectNoTimer();
    constexpr std::size_t all = 2 * RunInbox::mostWaiting;
    std::size_t received = 0;
    RunInbox inbox([&received](std::span<const RunNews> news) { received += news.size(); });
    std::atomic<std::size_t> added{0};
    std::thread run([&] { addProgress(inbox, all, added); });
    while (added < RunInbox::mostWaiting)
        std::this_thread::yield();
    inbox.stopWaiting();
    run.join();
    inbox.handOver();
    QCOMPARE(received, all);
}

namespace {

constexpr int plainScreens = 40;
constexpr int lead = 8;

/// A run that tells one report for each of its screens.
struct ToldRun
{
    ToldRun()
    {
        for (int index = 0; index < plainScreens; ++index)
            project.write(u"scr/%1.psc"_s.arg(index), "ID;1;O\n");
        QObject::connect(
            &converter, &Converter::sigConvertInfo, &converter, [this] { ++told; }, Qt::DirectConnection);
        converter.limitLead(lead);
    }
    ~ToldRun() { goOnToTheEnd(); }
    Q_DISABLE_COPY_MOVE(ToldRun)

    void startOnAnotherThread()
    {
        worker = std::thread([this] { converter.convert(); });
    }
    void goOnToTheEnd()
    {
        converter.limitLead(0);
        if (worker.joinable())
            worker.join();
    }

    TestProject project;
    std::atomic<int> told{0};
    Converter converter{project.dir()};
    std::thread worker;
};

/// Waits until a number is reached, and long enough for more if it were to go on.
void waitUntilItStandsAt(const std::atomic<int> &number, int expected)
{
    while (number < expected)
        std::this_thread::yield();
    constexpr int pauses = 100'000;
    for (int pause = 0; pause < pauses; ++pause)
        std::this_thread::yield();
}

/// Stays in its first call until it is let go; until then no entry is delivered.
class HeldListener final : public Qel::Logger::LogListener
{
public:
    HeldListener() { Qel::Logger::registerLogListener(this); }
    ~HeldListener() override { Qel::Logger::unregisterLogListener(this); }
    Q_DISABLE_COPY_MOVE(HeldListener)

    void handleMessage(QString /*level*/, QString /*time*/, QString /*message*/) override
    {
        ++calls;
        while (!isLetGo)
            std::this_thread::yield();
    }

    std::atomic<int> calls{0};
    std::atomic<bool> isLetGo{false};
};

/// Lets other threads wait for the listeners while it lives.
struct LogLimit
{
    explicit LogLimit(std::size_t most) { Qel::Logger::setMostWaiting(most); }
    ~LogLimit() { Qel::Logger::setMostWaiting(0); }
    Q_DISABLE_COPY_MOVE(LogLimit)
};

/// One thread that is held in a listener, and one whose entries wait for it.
class HeldLog final
{
public:
    HeldLog()
        : m_holder([] { log(u"first"_s); })
    {
        while (listener.calls == 0)
            std::this_thread::yield();
        m_writer = std::thread([this] {
            for (; written < rounds; ++written)
                log(u"entry"_s);
        });
    }
    ~HeldLog()
    {
        listener.isLetGo = true;
        m_holder.join();
        m_writer.join();
    }
    Q_DISABLE_COPY_MOVE(HeldLog)

    HeldListener listener;
    std::atomic<int> written{0};

private:
    std::thread m_holder;
    std::thread m_writer;
};

} // namespace

void TestThreads::runWaitsWhileManyReportsAreNotShown()
{
    ToldRun run;
    run.startOnAnotherThread();
    waitUntilItStandsAt(run.told, lead);
    QCOMPARE(run.told, lead);
    int largest = 0;
    for (int shown = 0; shown < plainScreens; ++shown) {
        while (run.told <= shown)
            std::this_thread::yield();
        largest = std::max(largest, run.told - shown);
        run.converter.reportShown();
    }
    run.worker.join();
    QCOMPARE(run.told, plainScreens);
    QVERIFY(largest <= lead);
}

void TestThreads::runWaitsNoLongerWhenNobodyShows()
{
    ToldRun run;
    run.startOnAnotherThread();
    waitUntilItStandsAt(run.told, lead);
    QCOMPARE(run.told, lead);
    run.goOnToTheEnd();
    QCOMPARE(run.told, plainScreens);
}

void TestThreads::runNeverWaitsForItsOwnThread()
{
    ToldRun run;
    run.converter.convert();
    QCOMPARE(run.told, plainScreens);
}

void TestThreads::runStartsOnceWhereSeveralStartIt()
{
    ToldRun run;
    run.startOnAnotherThread();
    waitUntilItStandsAt(run.told, lead);
    onThreads([&](int /*number*/) { run.converter.onStartConvert(); });
    QCOMPARE(run.told, lead);
    run.goOnToTheEnd();
    QCOMPARE(run.told, plainScreens);
}

void TestThreads::logWaitsWhileManyEntriesWait()
{
    const LogLimit limit(lead);
    HeldLog held;
    waitUntilItStandsAt(held.written, lead);
    QCOMPARE(held.written, lead);
    held.listener.isLetGo = true;
    waitUntilItStandsAt(held.written, rounds);
    while (held.listener.calls < 1 + rounds)
        std::this_thread::yield();
}

void TestThreads::logWaitsNoLongerWhenNobodyAsksForIt()
{
    const LogLimit limit(lead);
    HeldLog held;
    waitUntilItStandsAt(held.written, lead);
    QCOMPARE(held.written, lead);
    Qel::Logger::setMostWaiting(0);
    waitUntilItStandsAt(held.written, rounds);
    QCOMPARE(held.listener.calls, 1);
}

void TestThreads::logWaitsForNoListenerThatIsGone()
{
    const LogLimit limit(lead);
    HeldLog held;
    waitUntilItStandsAt(held.written, lead);
    QCOMPARE(held.written, lead);
    std::thread leaving([&] { Qel::Logger::unregisterLogListener(&held.listener); });
    while (held.written < rounds) // though the listener is still held
        std::this_thread::yield();
    held.listener.isLetGo = true;
    leaving.join();
    QCOMPARE(held.listener.calls, 1);
}

void TestThreads::logOfAListenerDoesNotWait()
{
    /// Answers the first entry with more than may wait.
    class Talker final : public Qel::Logger::LogListener
    {
    public:
        void handleMessage(QString /*level*/, QString /*time*/, QString /*message*/) override
        {
            if (++calls == 1) {
                for (int round = 0; round < rounds; ++round)
                    log(u"answer"_s);
            }
        }
        int calls = 0;
    };
    const LogLimit limit(lead);
    Talker talker;
    Qel::Logger::registerLogListener(&talker);
    log(u"first"_s);
    Qel::Logger::unregisterLogListener(&talker);
    QCOMPARE(talker.calls, 1 + rounds);
}

QTEST_APPLESS_MAIN(TestThreads)
#include "tst_threads.moc"
