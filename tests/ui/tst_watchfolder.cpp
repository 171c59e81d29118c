// The thread that watches a folder.
#include "Gates.h"
#include "Surroundings.h"
#include "TestSuite.h"
#include "WatchFolderThread.h"

#include <QFile>
#include <QPointer>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// A watcher with the number of changes that it has told.
struct Watch
{
    explicit Watch(const QString &folder)
        : watcher(std::make_unique<WatchFolderThread>(folder))
    {
        QObject::connect(
            watcher.get(), &WatchFolderThread::sigFolderChanged, &receiver, [this] { ++changes; },
            Qt::QueuedConnection);
        waitForQueuedCalls(*watcher);
    }

    void changeFolder(const QString &folder) const
    {
        watcher->changeFolder(folder);
        waitForQueuedCalls(*watcher);
    }

    /// Takes what was told until now.
    void settle() const
    {
        waitForQueuedCalls(*watcher);
        QCoreApplication::processEvents();
    }

    QObject receiver;
    int changes = 0;
    std::unique_ptr<WatchFolderThread> watcher;
};

} // namespace

class TestWatchFolder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasItsSignalAndSlotsInOrder();
    void tellsThatAFileWasAdded();
    void tellsThatAFileWasRemoved();
    void tellsThatAFileWasRenamed();
    void tellsEachNotificationOnce();
    void tellsNothingWhileNothingChanges();
    void followsToAnotherFolder();
    void takesTheSameFolderAgain();
    void followsAFolderThatWasMadeAgain();
    void watchesAFolderThatIsMadeLater();
    void followsTypingWithoutWarnings();
    void livesOnItsOwnThread();
    void endsItsThreadWhenDestroyed();
    void canBeDestroyedAtOnce();
    void canBeDestroyedWhileFoldersAreQueued();
};

void TestWatchFolder::hasItsSignalAndSlotsInOrder()
{
    QCOMPARE(ownMethods(WatchFolderThread::staticMetaObject),
             QStringList({u"signal sigFolderChanged()"_s, u"slot onUpdateFolder(QString)"_s,
                          u"slot onDirChanged(QString)"_s, u"slot onFileChanged(QString)"_s}));
}

void TestWatchFolder::tellsThatAFileWasAdded()
{
    const TestProject project;
    project.makeFolder(u"scr"_s);
    Watch watch(project.path(u"scr"_s));
    project.write(u"scr/a.psc"_s, "ID;1");
    QTRY_VERIFY(watch.changes > 0);
}

void TestWatchFolder::tellsThatAFileWasRemoved()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, "ID;1");
    Watch watch(project.path(u"scr"_s));
    project.remove(u"scr/a.psc"_s);
    QTRY_VERIFY(watch.changes > 0);
}

void TestWatchFolder::tellsThatAFileWasRenamed()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, "ID;1");
    Watch watch(project.path(u"scr"_s));
    QVERIFY(QFile::rename(project.path(u"scr/a.psc"_s), project.path(u"scr/b.psc"_s)));
    QTRY_VERIFY(watch.changes > 0);
}

void TestWatchFolder::tellsEachNotificationOnce()
{
    const TestProject project;
    Watch watch(project.path(u"scr"_s));
    QMetaObject::invokeMethod(watch.watcher.get(), "onDirChanged", Qt::QueuedConnection,
                              Q_ARG(QString, u"/anywhere"_s));
    watch.settle();
    QCOMPARE(watch.changes, 1);
    QMetaObject::invokeMethod(watch.watcher.get(), "onFileChanged", Qt::QueuedConnection,
                              Q_ARG(QString, u"/anywhere/file"_s));
    watch.settle();
    QCOMPARE(watch.changes, 2);
}

void TestWatchFolder::tellsNothingWhileNothingChanges()
{
    const TestProject project;
    project.write(u"scr/deep/a.psc"_s, "ID;1");
    Watch watch(project.path(u"scr"_s));
    project.write(u"beside.txt"_s, "not in the folder");
    project.write(u"scr/deep/b.psc"_s, "a level deeper");
    project.write(u"scr/now.psc"_s, "in the folder");
    QTRY_VERIFY(watch.changes > 0);
    watch.settle();
    QCOMPARE(watch.changes, 1);
}

void TestWatchFolder::followsToAnotherFolder()
{
    const TestProject project;
    project.makeFolder(u"old"_s);
    project.makeFolder(u"new"_s);
    Watch watch(project.path(u"old"_s));
    watch.changeFolder(project.path(u"new"_s));
    project.makeFolder(u"old/one"_s);
    project.makeFolder(u"new/one"_s);
    QTRY_VERIFY(watch.changes > 0);
    watch.settle();
    QCOMPARE(watch.changes, 1); // not for the old folder, which changed first
}

void TestWatchFolder::takesTheSameFolderAgain()
{
    const TestProject project;
    project.makeFolder(u"scr"_s);
    Watch watch(project.path(u"scr"_s));
    for (int time = 0; time < 3; ++time)
        watch.changeFolder(project.path(u"scr"_s));
    watch.settle();
    QCOMPARE(watch.changes, 0);
    project.makeFolder(u"scr/one"_s);
    QTRY_COMPARE(watch.changes, 1);
}

void TestWatchFolder::followsAFolderThatWasMadeAgain()
{
    const TestProject project;
    project.makeFolder(u"scr"_s);
    Watch watch(project.path(u"scr"_s));
    project.remove(u"scr"_s);
    QTRY_VERIFY(watch.changes > 0);
    project.makeFolder(u"scr"_s);
    watch.changeFolder(project.path(u"scr"_s));
    watch.settle();
    const int before = watch.changes;
    project.makeFolder(u"scr/one"_s);
    QTRY_COMPARE(watch.changes, before + 1);
}

void TestWatchFolder::watchesAFolderThatIsMadeLater()
{
    const TestProject project;
    Watch watch(project.path(u"scr"_s));
    project.makeFolder(u"scr"_s);
    watch.changeFolder(project.path(u"scr"_s));
    project.makeFolder(u"scr/one"_s);
    QTRY_COMPARE(watch.changes, 1);
}

void TestWatchFolder::followsTypingWithoutWarnings()
{
    const WarningRecorder recorder;
    const TestProject project;
    project.write(u"file"_s, "no folder");
    {
        Watch watch(QString{});
        const QString typed = project.path(u"file/scr"_s); // below a file, of all places
        for (qsizetype length = 0; length <= typed.size(); ++length) {
            watch.changeFolder(typed.first(length));
            watch.changeFolder(typed.first(length) + "/scr"_L1);
        }
        watch.changeFolder(QString(300, u'x'));
        watch.changeFolder({});
        project.makeFolder(u"scr"_s);
        watch.changeFolder(project.path(u"scr"_s));
        project.makeFolder(u"scr/one"_s);
        QTRY_VERIFY(watch.changes > 0);
    }
    QCOMPARE(WarningRecorder::warnings(), QStringList());
}

void TestWatchFolder::livesOnItsOwnThread()
{
    const TestProject project;
    project.makeFolder(u"scr"_s);
    Watch watch(project.path(u"scr"_s));
    QCOMPARE(watch.watcher->thread(), watch.watcher.get());

    std::atomic<QThread *> signalThread = nullptr;
    connect(
        watch.watcher.get(), &WatchFolderThread::sigFolderChanged, watch.watcher.get(),
        [&] { signalThread = QThread::currentThread(); }, Qt::DirectConnection);
    project.makeFolder(u"scr/one"_s);
    QTRY_COMPARE(signalThread.load(), watch.watcher.get());
}

void TestWatchFolder::endsItsThreadWhenDestroyed()
{
    const WarningRecorder recorder;
    const TestProject project;
    std::atomic<bool> finished = false;
    auto watcher = std::make_unique<WatchFolderThread>(project.dir());
    connect(
        watcher.get(), &QThread::finished, watcher.get(), [&] { finished = true; }, Qt::DirectConnection);
    waitForQueuedCalls(*watcher);
    QVERIFY(watcher->isRunning());
    watcher.reset();
    QVERIFY(finished);
    QCOMPARE(WarningRecorder::warnings(), QStringList());
}

void TestWatchFolder::canBeDestroyedAtOnce()
{
    const WarningRecorder recorder;
    const TestProject project;
    for (int time = 0; time < 50; ++time)
        delete new WatchFolderThread(project.dir());
    QCOMPARE(WarningRecorder::warnings(), QStringList());
}

void TestWatchFolder::canBeDestroyedWhileFoldersAreQueued()
{
    const WarningRecorder recorder;
    const TestProject project;
    for (int time = 0; time < 50; ++time) {
        WatchFolderThread watcher(project.dir());
        for (int call = 0; call < 20; ++call)
            watcher.changeFolder(project.dir());
    }
    QCOMPARE(WarningRecorder::warnings(), QStringList());
}

VANTREL_TEST(QCoreApplication, TestWatchFolder)
#include "tst_watchfolder.moc"
