// What each operation does over what may lie in its way.
#include "AppendedFile.h"
#include "DurableFile.h"
#include "FileIo.h"
#include "FileWriter.h"
#include "RootFolder.h"
#include "TestProject.h"
#include "TestSuite.h"

#include <QFile>
#include <QtTest>

#include <array>
#include <cerrno>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr unsigned usualMode = 0644;
constexpr int done = 0;

/// Each is asked to work on "scr/x" of a project. Returns `done`, or an errno.
using Operation = int (*)(const TestProject &project, const RootFolder &root, const QString &path);

int resultOf(bool isDone)
{
    return isDone ? done : errno;
}

int write(const RootFolder &root, const QString &path, IfThere ifThere)
{
    FileWriter file(root, path, usualMode, ifThere);
    return file.isOpen() && file.write("new", 3) ? done : file.error();
}

int read(const TestProject & /*project*/, const RootFolder & /*root*/, const QString &path)
{
    const bool isRead = readFile(path).has_value();
    return isRead || errno != 0 ? resultOf(isRead) : EIO;
}

int copyFrom(const TestProject &project, const RootFolder &root, const QString &path)
{
    return copyFile(path, root, project.path(u"copy"_s));
}

int list(const TestProject & /*project*/, const RootFolder &root, const QString &path)
{
    return root.folder(path).error();
}

int writeNew(const TestProject & /*project*/, const RootFolder &root, const QString &path)
{
    return write(root, path, IfThere::Fail);
}

int writeInPlace(const TestProject & /*project*/, const RootFolder &root, const QString &path)
{
    return write(root, path, IfThere::Replace);
}

int writeStage(const TestProject & /*project*/, const RootFolder &root, const QString &path)
{
    return writeToDisk(root.parentOf(path), lastNameOf(path), "new");
}

int append(const TestProject & /*project*/, const RootFolder & /*root*/, const QString &path)
{
    AppendedFile file;
    file.open(QFile::encodeName(path));
    file.append("new", 3);
    return file.isOpen() ? done : EIO;
}

int makeFolder(const TestProject & /*project*/, const RootFolder &root, const QString &path)
{
    return resultOf(root.makeFolder(path, FolderCreation::OneLevel));
}

int removeFile(const TestProject & /*project*/, const RootFolder &root, const QString &path)
{
    return resultOf(root.removeFile(path));
}

int removeTree(const TestProject & /*project*/, const RootFolder &root, const QString &path)
{
    return resultOf(root.removeTree(path));
}

int moveAway(const TestProject &project, const RootFolder &root, const QString &path)
{
    return resultOf(root.moveToNothing(path, project.path(u"moved"_s)));
}

int moveThere(const TestProject &project, const RootFolder &root, const QString &path)
{
    project.write(u"other"_s, "other");
    return resultOf(root.moveToNothing(project.path(u"other"_s), path));
}

struct Obstacle
{
    const char *name;
    void (*lay)(const TestProject &project, const QString &path, const QString &outside);
};

constexpr std::array obstacles{
    Obstacle{"a link",
             [](const TestProject &project, const QString & /*path*/, const QString &outside) {
                 project.makeFolder(u"scr"_s);
                 project.link(outside + "/file"_L1, u"scr/x"_s);
             }},
    Obstacle{"a link to a folder",
             [](const TestProject &project, const QString & /*path*/, const QString &outside) {
                 project.makeFolder(u"scr"_s);
                 project.link(outside, u"scr/x"_s);
             }},
    Obstacle{"a link on the way",
             [](const TestProject &project, const QString & /*path*/, const QString &outside) {
                 project.link(outside + "/folder"_L1, u"scr"_s);
             }},
    Obstacle{"a pipe",
             [](const TestProject &project, const QString &path, const QString & /*outside*/) {
                 project.makeFolder(u"scr"_s);
                 QCOMPARE(mkfifo(QFile::encodeName(path).constData(), usualMode), 0);
             }},
    Obstacle{"a mount point",
             [](const TestProject &project, const QString &path, const QString & /*outside*/) {
                 project.makeFolder(u"scr/x"_s);
                 QCOMPARE(mount("none", QFile::encodeName(path).constData(), "tmpfs", 0, nullptr), 0);
                 project.write(u"scr/x/inner"_s, "inner");
             }},
    Obstacle{"a vanished folder", [](const TestProject &, const QString &, const QString &) {}},
};

struct Row
{
    const char *name;
    Operation perform;
    std::array<int, obstacles.size()> results; ///< by obstacle
};

/// Screens, shapes and bitmaps behind links are read; nothing else goes over a link.
constexpr std::array rows{
    Row{"read", read, {done, EIO, done, EIO, EIO, ENOENT}},
    Row{"copy from there", copyFrom, {done, EIO, done, EIO, EIO, ENOENT}},
    Row{"open the folder", list, {ELOOP, ELOOP, ELOOP, ENOTDIR, done, ENOENT}},
    Row{"write a new file", writeNew, {EEXIST, EEXIST, ELOOP, EEXIST, EEXIST, ENOENT}},
    Row{"write a file in place", writeInPlace, {done, done, ELOOP, ENXIO, EISDIR, ENOENT}},
    Row{"write down a stage", writeStage, {done, done, ELOOP, done, EISDIR, ENOENT}},
    Row{"append", append, {EIO, EIO, EIO, EIO, EIO, EIO}},
    Row{"make a folder", makeFolder, {ELOOP, ELOOP, ELOOP, ENOTDIR, done, ENOENT}},
    Row{"remove a file", removeFile, {done, done, ELOOP, done, EISDIR, done}},
    Row{"remove a folder", removeTree, {done, done, ELOOP, done, EBUSY, done}},
    Row{"move it away", moveAway, {done, done, ELOOP, done, EBUSY, ENOENT}},
    Row{"move another there", moveThere, {EEXIST, EEXIST, ELOOP, EEXIST, EEXIST, ENOENT}},
};

/// Mounts of its own, so that this test's are nobody else's and go with it.
bool enterOwnMounts()
{
    const int others = geteuid() == 0 ? 0 : CLONE_NEWUSER;
    return unshare(CLONE_NEWNS | others) == 0 &&
           mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

} // namespace

class TestObstacles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(enterOwnMounts()); }
    void changesNothingOutside_data();
    void changesNothingOutside();
};

void TestObstacles::changesNothingOutside_data()
{
    QTest::addColumn<std::size_t>("row");
    QTest::addColumn<std::size_t>("obstacle");
    for (std::size_t row = 0; row < rows.size(); ++row) {
        for (std::size_t obstacle = 0; obstacle < obstacles.size(); ++obstacle)
            QTest::addRow("%s over %s", rows.at(row).name, obstacles.at(obstacle).name) << row << obstacle;
    }
}

void TestObstacles::changesNothingOutside()
{
    QFETCH(const std::size_t, row);
    QFETCH(const std::size_t, obstacle);
    const TestProject outside;
    outside.write(u"file"_s, "outside");
    outside.write(u"folder/x"_s, "outside");
    const TestProject project;
    const QString path = project.path(u"scr/x"_s);
    obstacles.at(obstacle).lay(project, path, outside.dir());

    const RootFolder root(project.dir());
    const int result = rows.at(row).perform(project, root, path);
    umount2(QFile::encodeName(path).constData(), MNT_DETACH);
    QCOMPARE(qt_error_string(result), qt_error_string(rows.at(row).results.at(obstacle)));
    QCOMPARE(outside.files(u""_s), (QStringList{u"file"_s, u"folder/x"_s}));
    QCOMPARE(outside.read(u"file"_s), "outside");
    QCOMPARE(outside.read(u"folder/x"_s), "outside");
}

VANTREL_TEST(QCoreApplication, TestObstacles)
#include "tst_obstacles.moc"
