// Work on files on a thread that was asked to end it.
#include "FileComparison.h"
#include "FileIo.h"
#include "Interruption.h"
#include "RootFolder.h"
#include "SafeCopy.h"
#include "TestProject.h"
#include "TestSuite.h"
#include "updUtils.h"

#include <QTest>
#include <QThread>

#include <functional>
#include <memory>

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
    void checksACopyThatIsMade();
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

VANTREL_TEST(QCoreApplication, TestInterruption)
#include "tst_interruption.moc"
