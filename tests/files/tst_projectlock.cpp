// Keeping a second run away from a project.
#include "Limits.h"
#include "ProjectLock.h"
#include "TestProject.h"
#include "TestSuite.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QSysInfo>
#include <QTest>

#include <memory>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

const QString lockFile = u".vantrel.lock"_s;

/// What a process writes into its lock.
QByteArray lockOf(qint64 process, const QString &program, const QString &host)
{
    return u"%1\n%2\n%3\n"_s.arg(process).arg(program, host).toUtf8();
}

void makeOld(const TestProject &project)
{
    QFile file(project.path(lockFile));
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(QDateTime(QDate(2020, 1, 1), QTime(0, 0)), QFileDevice::FileModificationTime));
}

/// The number of a process that has ended.
qint64 endedProcess()
{
    QProcess process;
    process.start(u"true"_s, QStringList());
    process.waitForStarted();
    const qint64 number = process.processId();
    process.waitForFinished();
    return number;
}

} // namespace

class TestProjectLock final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void liesInTheProjectWhileItIsHeld();
    void namesItsHolder();
    void isNotTakenFromALiveProcessHoweverOld();
    void isTakenOverFromADeadProcess();
    void isTakenOverFromAProcessThatDiedBeforeItWroteItsName();
    void isTakenOverWhereTakingItOverWasInterrupted();
    void isTakenOverWhereNoSecondFileCanBeMade();
    void isNotTakenFromSomethingElseOfItsName_data();
    void isNotTakenFromSomethingElseOfItsName();
    void namesHoldersThatLookLikePlaceholders();
    void isLeftToAnotherHostHoweverOld();
    void isNotMissedWhereItCannotBeMade();
};

void TestProjectLock::liesInTheProjectWhileItIsHeld()
{
    const TestProject project;
    {
        const ProjectLock lock(project.dir());
        QVERIFY(!lock.isHeldByOther());
        QCOMPARE(project.files(u""_s), QStringList{lockFile});
    }
    QCOMPARE(project.files(u""_s), QStringList());
}

void TestProjectLock::namesItsHolder()
{
    const TestProject project;
    const ProjectLock lock(project.dir());
    const ProjectLock second(project.dir());
    QVERIFY(second.isHeldByOther());
    QCOMPARE(second.holder(),
             u"tests_files, process %1 on %2"_s.arg(QString::number(QCoreApplication::applicationPid()),
                                                    QSysInfo::machineHostName()));
    QCOMPARE(project.files(u""_s), QStringList{lockFile});
}

void TestProjectLock::isNotTakenFromALiveProcessHoweverOld()
{
    const TestProject project;
    const ProjectLock lock(project.dir());
    makeOld(project);
    QVERIFY(ProjectLock(project.dir()).isHeldByOther());
}

void TestProjectLock::isTakenOverFromADeadProcess()
{
    const TestProject project;
    project.write(lockFile, lockOf(endedProcess(), u"vantrel-cli"_s, QSysInfo::machineHostName()));
    const ProjectLock lock(project.dir());
    QVERIFY(!lock.isHeldByOther());
    QVERIFY(project.read(lockFile).startsWith(QByteArray::number(QCoreApplication::applicationPid()) + '\n'));
}

void TestProjectLock::isTakenOverFromAProcessThatDiedBeforeItWroteItsName()
{
    const TestProject project;
    project.write(lockFile, QByteArray());
    const ProjectLock lock(project.dir());
    QVERIFY(!lock.isHeldByOther());
    QVERIFY(!project.read(lockFile).isEmpty());
}

void TestProjectLock::isTakenOverWhereTakingItOverWasInterrupted()
{
    const TestProject project;
    project.write(lockFile, lockOf(endedProcess(), u"vantrel-cli"_s, QSysInfo::machineHostName()));
    project.write(lockFile + ".rmlock"_L1, QByteArray());
    {
        const ProjectLock lock(project.dir());
        QVERIFY(!lock.isHeldByOther());
    }
    QCOMPARE(project.files(u""_s), QStringList());
}

/// As on a full disk, which may be what the run was killed for.
void TestProjectLock::isTakenOverWhereNoSecondFileCanBeMade()
{
    const TestProject project;
    project.write(lockFile, lockOf(endedProcess(), u"vantrel-cli"_s, QSysInfo::machineHostName()));
    project.makeFolder(lockFile + ".rmlock"_L1);
    const ProjectLock lock(project.dir());
    QVERIFY(!lock.isHeldByOther());
    QVERIFY(project.read(lockFile).startsWith(QByteArray::number(QCoreApplication::applicationPid()) + '\n'));
}

void TestProjectLock::isNotTakenFromSomethingElseOfItsName_data()
{
    using Make = void (*)(const TestProject &, const QString &);
    QTest::addColumn<QString>("name");
    QTest::addColumn<Make>("make");
    const auto row = [](const char *name, Make make) {
        QTest::addRow("%s as the lock", name) << lockFile << make;
        QTest::addRow("%s as its guard", name) << lockFile + ".rmlock"_L1 << make;
    };
    const Make makeFolder = [](const TestProject &project, const QString &name) { project.makeFolder(name); };
    QTest::newRow("folder as the lock") << lockFile << makeFolder;
    row("pipe", [](const TestProject &project, const QString &name) {
        constexpr mode_t forOwner = 0600;
        QCOMPARE(mkfifo(QFile::encodeName(project.path(name)).constData(), forOwner), 0);
    });
    row("link to what never ends",
        [](const TestProject &project, const QString &name) { project.link(u"/dev/zero"_s, name); });
    // A whole lock, but for its size.
    row("large file", [](const TestProject &project, const QString &name) {
        const QByteArray lock = lockOf(endedProcess(), u"vantrel-cli"_s, QSysInfo::machineHostName());
        project.write(name, lock + QByteArray(largestLock, '\n'));
    });
}

void TestProjectLock::isNotTakenFromSomethingElseOfItsName()
{
    QFETCH(const QString, name);
    using Make = void (*)(const TestProject &, const QString &);
    QFETCH(const Make, make);
    const TestProject project;
    make(project, name);
    const ProjectLock lock(project.dir());
    QVERIFY(lock.isHeldByOther());
    QCOMPARE(lock.holder(), u"nobody knows whom: %1 is no lock"_s.arg(project.path(name)));
}

void TestProjectLock::namesHoldersThatLookLikePlaceholders()
{
    const TestProject project;
    const QString host = u"%1.plant"_s;
    project.write(lockFile, lockOf(QCoreApplication::applicationPid(), u"vantrel%2"_s, host));
    const ProjectLock lock(project.dir());
    QCOMPARE(lock.holder(), u"vantrel%2, process "_s + QString::number(QCoreApplication::applicationPid()) +
                                " on "_L1 + host);
}

void TestProjectLock::isLeftToAnotherHostHoweverOld()
{
    const TestProject project;
    project.write(lockFile, lockOf(endedProcess(), u"vantrel"_s, u"another-host"_s));
    makeOld(project);
    const ProjectLock lock(project.dir());
    QVERIFY(lock.isHeldByOther());
    QVERIFY2(lock.holder().endsWith(" on another-host"_L1), qPrintable(lock.holder()));
}

void TestProjectLock::isNotMissedWhereItCannotBeMade()
{
    const TestProject project;
    QVERIFY(!ProjectLock(project.path(u"gone"_s)).isHeldByOther());
    QFile::setPermissions(project.dir(), QFile::Permissions::fromInt(0x5555));
    const OrdinaryUser user;
    const ProjectLock lock(project.dir());
    QVERIFY(!lock.isHeldByOther());
    QVERIFY(!project.exists(lockFile));
}

VANTREL_TEST(QCoreApplication, TestProjectLock)
#include "tst_projectlock.moc"
