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

QTEST_APPLESS_MAIN(TestThreads)
#include "tst_threads.moc"
