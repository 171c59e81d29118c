// Moving files by renaming them, and when that is not safe.
#include "FileMove.h"

#include "FileComparison.h"
#include "RootFolder.h"
#include "TestProject.h"
#include "TestSuite.h"
#include "updUtils.h"

#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// Prepares one case.
using SetUp = void (*)(const TestProject &project);

ino_t fileNumber(const QString &path)
{
    struct stat file = {};
    return lstat(QFile::encodeName(path).constData(), &file) == 0 ? file.st_ino : 0;
}

QList<FileMove> movesOf(const TestProject &project, const QStringList &names)
{
    QList<FileMove> moves;
    for (const QString &name : names)
        moves.append({project.path(u"from/"_s + name), project.path(u"to/"_s + name)});
    return moves;
}

} // namespace

class TestFileMove final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void comparesFilesWhoseSizeIsNotTold();
    void renamesEveryFile();
    void leavesAllWhereOneIsNotSafe_data();
    void leavesAllWhereOneIsNotSafe();
    void movesNothingForAnEmptyList();
    void copiesInstead_data();
    void copiesInstead();
};

/// As the system's own files, which hold something and have no size.
void TestFileMove::comparesFilesWhoseSizeIsNotTold()
{
    QVERIFY(!haveSameContent(u"/proc/version"_s, u"/proc/filesystems"_s));
    QVERIFY(haveSameContent(u"/proc/version"_s, u"/proc/version"_s));
}

void TestFileMove::renamesEveryFile()
{
    const TestProject project;
    project.write(u"from/a.psc"_s, "a");
    project.write(u"from/sub/b.psc"_s, "b");
    project.makeFolder(u"to/sub"_s);
    const ino_t number = fileNumber(project.path(u"from/sub/b.psc"_s));

    QVERIFY(renameAll(movesOf(project, {u"a.psc"_s, u"sub/b.psc"_s}), RootFolder(project.dir()),
                      project.path(u"from"_s)));
    QCOMPARE(project.files(u"from"_s), QStringList());
    QCOMPARE(project.files(u"to"_s), QStringList({u"a.psc"_s, u"sub/b.psc"_s}));
    QCOMPARE(fileNumber(project.path(u"to/sub/b.psc"_s)), number);
}

void TestFileMove::leavesAllWhereOneIsNotSafe_data()
{
    QTest::addColumn<SetUp>("setUp");

    QTest::newRow("the target exists") << SetUp([](const TestProject &project) {
        project.write(u"from/z.psc"_s, "z");
        project.write(u"to/z.psc"_s, "older");
    });
    QTest::newRow("the target is a dangling link") << SetUp([](const TestProject &project) {
        project.write(u"from/z.psc"_s, "z");
        project.link(u"nowhere"_s, u"to/z.psc"_s);
    });
    QTest::newRow("the file has a second name") << SetUp([](const TestProject &project) {
        project.write(u"from/z.psc"_s, "z");
        QCOMPARE(::link(QFile::encodeName(project.path(u"from/z.psc"_s)).constData(),
                        QFile::encodeName(project.path(u"second"_s)).constData()),
                 0);
    });
    QTest::newRow("the file is a link") << SetUp([](const TestProject &project) {
        project.write(u"outside"_s, "z");
        project.link(project.path(u"outside"_s), u"from/z.psc"_s);
    });
    QTest::newRow("the file is missing") << SetUp([](const TestProject &) {});
    QTest::newRow("the file is a folder")
        << SetUp([](const TestProject &project) { project.makeFolder(u"from/z.psc"_s); });
    QTest::newRow("the target's folder is a link") << SetUp([](const TestProject &project) {
        project.write(u"from/z.psc"_s, "z");
        project.remove(u"to"_s);
        project.makeFolder(u"../outside"_s);
        project.link(project.beside(u"outside"_s), u"to"_s);
    });
    QTest::newRow("the target's folder is a file") << SetUp([](const TestProject &project) {
        project.write(u"from/z.psc"_s, "z");
        project.remove(u"to"_s);
        project.write(u"to"_s, "");
    });
}

void TestFileMove::leavesAllWhereOneIsNotSafe()
{
    QFETCH(const SetUp, setUp);
    const TestProject project;
    project.write(u"from/a.psc"_s, "a");
    project.makeFolder(u"to"_s);
    setUp(project);
    const QStringList before = project.files(QString());

    QVERIFY(!renameAll(movesOf(project, {u"a.psc"_s, u"z.psc"_s}), RootFolder(project.dir()),
                       project.path(u"from"_s)));
    QCOMPARE(project.files(QString()), before);
    QCOMPARE(project.read(u"from/a.psc"_s), "a");
}

void TestFileMove::movesNothingForAnEmptyList()
{
    const TestProject project;
    QVERIFY(renameAll({}, RootFolder(project.dir()), project.path(u"from"_s)));
}

void TestFileMove::copiesInstead_data()
{
    QTest::addColumn<QString>("linkedFile");
    QTest::newRow("what lies behind a link to a file") << u"scr/a.psc"_s;
    QTest::newRow("what lies behind a link to a folder") << u"scr/sub"_s;
}

void TestFileMove::copiesInstead()
{
    QFETCH(const QString, linkedFile);
    const bool isFolder = !linkedFile.endsWith(u".psc");
    const TestProject project;
    project.write(isFolder ? u"outside/b.psc"_s : u"outside"_s, "outside");
    project.write(u"scr/000.psc"_s, "first");
    project.link(project.path(u"outside"_s), linkedFile);

    QVERIFY(updUtils::moveImageFiles(u"/scr"_s, u"/scr_bak"_s, project.dir()));
    QVERIFY(!project.exists(u"scr"_s));
    QCOMPARE(project.read(isFolder ? u"outside/b.psc"_s : u"outside"_s), "outside");
    QCOMPARE(project.read(isFolder ? u"scr_bak/sub/b.psc"_s : u"scr_bak/a.psc"_s), "outside");
    QVERIFY(!QFileInfo(project.path(u"scr_bak/a.psc"_s)).isSymLink());
}

VANTREL_TEST(QCoreApplication, TestFileMove)
#include "tst_filemove.moc"
