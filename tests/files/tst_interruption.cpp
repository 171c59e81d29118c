// Work on files on a thread that was asked to end it.
#include "BitmapFolders.h"
#include "FileComparison.h"
#include "FileIo.h"
#include "ImageFileSearch.h"
#include "Interruption.h"
#include "RootFolder.h"
#include "SafeCopy.h"
#include "TestProject.h"
#include "TestSuite.h"
#include "updUtils.h"

#include <QFile>
#include <QTest>
#include <QThread>

#include <algorithm>
#include <functional>
#include <memory>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

using Work = std::function<void(const TestProject &project)>;

/// Whether the work was broken off, on a thread that was asked to end, or on one that was not.
enum class Asked { ToEnd, Nothing };
bool isBrokenOff(const Work &work, const TestProject &project, Asked asked)
{
    bool isInterrupted = false;
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        if (asked == Asked::ToEnd)
            QThread::currentThread()->requestInterruption();
        try {
            work(project);
        } catch (const WorkInterrupted &) {
            isInterrupted = true;
        }
    }));
    thread->start();
    thread->wait();
    return isInterrupted;
}

} // namespace

Q_DECLARE_METATYPE(Work)

class TestInterruption final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void beginsNoFile_data();
    void beginsNoFile();
    void endsWithinALargeFile_data();
    void endsWithinALargeFile();
    void checksACopyThatIsMade();
    void endsWhereItsScopeSaysSo();
    void hasScopesInEachOther();
    void endsWhatItHasOthersDo();
};

void TestInterruption::beginsNoFile_data()
{
    QTest::addColumn<Work>("work");
    const auto row = [](const char *name, const Work &work) { QTest::newRow(name) << work; };
    row("copying", [](const TestProject &project) {
        copyFile(project.path(u"scr/a.psc"_s), RootFolder(project.dir()), project.path(u"b.psc"_s));
    });
    row("comparing", [](const TestProject &project) {
        haveSameContent(project.path(u"scr/a.psc"_s), project.path(u"scr/a.psc"_s));
    });
    row("comparing a beginning", [](const TestProject &project) {
        isBeginningOf(project.path(u"scr/a.psc"_s), project.path(u"scr/a.psc"_s));
    });
    row("putting a copy in place", [](const TestProject &project) {
        putCopy(project.path(u"scr/a.psc"_s), RootFolder(project.dir()), project.path(u"scr/c.psc"_s));
    });
    row("searching", [](const TestProject &project) { searchImageFiles(project.path(u"scr"_s)); });
    row("looking for bitmaps",
        [](const TestProject &project) { const BitmapFolders folders(project.dir()); });
    row("removing a folder", [](const TestProject &project) { updUtils::removeDir(project.path(u"scr"_s)); });
}

void TestInterruption::beginsNoFile()
{
    QFETCH(const Work, work);
    const TestProject project;
    project.write(u"scr/a.psc"_s, "a");
    QVERIFY(isBrokenOff(work, project, Asked::ToEnd));
    QCOMPARE(project.files(u""_s), QStringList{u"scr/a.psc"_s});
    QVERIFY(!isBrokenOff(work, project, Asked::Nothing));
}

void TestInterruption::endsWithinALargeFile_data()
{
    QTest::addColumn<Work>("work");
    const auto row = [](const char *name, const Work &work) { QTest::newRow(name) << work; };
    row("reading", [](const TestProject &project) { readFile(project.path(u"large.psc"_s)); });
    row("copying", [](const TestProject &project) {
        copyFile(project.path(u"large.psc"_s), RootFolder(project.dir()), project.path(u"copy.psc"_s));
    });
    row("comparing", [](const TestProject &project) {
        haveSameContent(project.path(u"large.psc"_s), project.path(u"large.psc"_s));
    });
}

/// Neither at the first question, before the file is opened, nor at its end.
void TestInterruption::endsWithinALargeFile()
{
    QFETCH(const Work, work);
    const TestProject project;
    project.write(u"large.psc"_s, QByteArray(40'000'000, 'x'));
    int questions = 0;
    {
        const InterruptionScope scope([&questions] { return ++questions == 0; });
        work(project);
    }
    QVERIFY(questions >= 2);
    QFile::remove(project.path(u"copy.psc"_s));
    const InterruptionScope scope([asked = 0]() mutable { return ++asked == 2; });
    QVERIFY_THROWS_EXCEPTION(WorkInterrupted, work(project));
    QCOMPARE(project.files(u""_s), QStringList{u"large.psc"_s});
}

void TestInterruption::checksACopyThatIsMade()
{
    const TestProject project;
    project.write(u"a.psc"_s, "a");
    project.write(u"b.psc"_s, "b");
    bool isCopy = true;
    const Work check = [&isCopy](const TestProject &there) {
        isCopy = isWholeCopy(there.path(u"a.psc"_s), there.path(u"b.psc"_s));
    };
    QVERIFY(!isBrokenOff(check, project, Asked::ToEnd));
    QVERIFY(!isCopy);
}

/// A search asks before each folder, and ends at the first answer.
void TestInterruption::endsWhereItsScopeSaysSo()
{
    const TestProject project;
    for (const QString &screen : {u"a.psc"_s, u"x/b.psc"_s, u"x/y/c.psc"_s, u"z/d.psc"_s})
        project.write("scr/"_L1 + screen, "x");
    constexpr int folders = 4;
    for (int last = 1; last <= folders + 1; ++last) {
        int asked = 0;
        const InterruptionScope scope([&asked, last] { return ++asked == last; });
        bool isInterrupted = false;
        try {
            QVERIFY(searchImageFiles(project.path(u"scr"_s)).isWhole());
        } catch (const WorkInterrupted &) {
            isInterrupted = true;
        }
        QCOMPARE(isInterrupted, last <= folders);
        QCOMPARE(asked, std::min(last, folders));
    }
}

void TestInterruption::hasScopesInEachOther()
{
    const InterruptionScope outer([] { return true; });
    {
        const InterruptionScope inner([] { return false; });
        endIfInterrupted();
    }
    QVERIFY_THROWS_EXCEPTION(WorkInterrupted, endIfInterrupted());
}

void TestInterruption::endsWhatItHasOthersDo()
{
    const auto isEndedElsewhere = [] {
        bool isEnded = false;
        std::thread([&isEnded, isEndWanted = interruptionOfThisThread()] { isEnded = isEndWanted(); }).join();
        return isEnded;
    };
    QVERIFY(!isEndedElsewhere());
    {
        const InterruptionScope scope([] { return true; });
        QVERIFY(isEndedElsewhere());
    }
    bool isEnded = false;
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        QThread::currentThread()->requestInterruption();
        isEnded = isEndedElsewhere();
    }));
    thread->start();
    thread->wait();
    QVERIFY(isEnded);
}

VANTREL_TEST(QCoreApplication, TestInterruption)
#include "tst_interruption.moc"
