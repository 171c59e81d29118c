// Reading and writing whole files, and what is said where that fails.
#include "FileIo.h"

#include "Limits.h"
#include "RootFolder.h"
#include "TestProject.h"
#include "TestSuite.h"

#include <QFile>
#include <QTest>

#include <cerrno>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

mode_t permissionsOf(const QString &path)
{
    constexpr mode_t permissionBits = 0777;
    struct stat file = {};
    return lstat(QFile::encodeName(path).constData(), &file) == 0 ? file.st_mode & permissionBits : 0;
}

} // namespace

class TestFileIo final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsFilesWhoseSizeIsNotTold();
    void readsNothingThatIsNoFile_data();
    void readsNothingThatIsNoFile();
    void readsNoFileThatIsTooLarge();
    void copiesWithPermissions();
    void copiesInParts();
    void tellsWhyItCannotCopy();
    void tellsWhatMayExist_data();
    void tellsWhatMayExist();
    void takesNoAnswerForMaybe();
    void tellsFailuresOfTheDisk_data();
    void tellsFailuresOfTheDisk();
};

/// As the system's own files, which hold something and have no size.
void TestFileIo::readsFilesWhoseSizeIsNotTold()
{
    QFile file(u"/proc/filesystems"_s);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const std::optional<FileContent> content = readFile(u"/proc/filesystems"_s);
    QVERIFY(content);
    QCOMPARE(content->bytes, file.readAll());
    QVERIFY(content->bytes.size() > 1);
}

void TestFileIo::readsNothingThatIsNoFile_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"folder", "pipe", "dangling", "missing"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void TestFileIo::readsNothingThatIsNoFile()
{
    QFETCH(const QString, name);
    const TestProject project;
    project.makeFolder(u"folder"_s);
    project.link(u"nowhere"_s, u"dangling"_s);
    QCOMPARE(mkfifo(QFile::encodeName(project.path(u"pipe"_s)).constData(), 0600), 0);
    QVERIFY(!readFile(project.path(name)));
}

void TestFileIo::readsNoFileThatIsTooLarge()
{
    const TestProject project;
    QFile file(project.path(u"file"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.resize(largestFile + 1)); // takes no room
    QVERIFY(!readFile(project.path(u"file"_s)));
}

void TestFileIo::copiesWithPermissions()
{
    const TestProject project;
    project.write(u"from"_s, "some bytes");
    constexpr mode_t mode = 0754;
    QCOMPARE(chmod(QFile::encodeName(project.path(u"from"_s)).constData(), mode), 0);
    QCOMPARE(copyFile(project.path(u"from"_s), RootFolder(project.dir()), project.path(u"to"_s)), 0);
    QCOMPARE(project.read(u"to"_s), "some bytes");
    QCOMPARE(permissionsOf(project.path(u"to"_s)), mode);
}

void TestFileIo::copiesInParts()
{
    const TestProject project;
    constexpr int manyLines = 200'000;
    QByteArray text;
    for (int line = 0; line < manyLines; ++line)
        text += QByteArray::number(line) + '\n';
    project.write(u"from"_s, text);
    QCOMPARE(copyFile(project.path(u"from"_s), RootFolder(project.dir()), project.path(u"to"_s)), 0);
    QCOMPARE(project.read(u"to"_s), text);
}

void TestFileIo::tellsWhyItCannotCopy()
{
    const TestProject project;
    project.write(u"from"_s, "new");
    project.write(u"there"_s, "old");
    project.makeFolder(u"folder"_s);
    QCOMPARE(copyFile(project.path(u"from"_s), RootFolder(project.dir()), project.path(u"there"_s)), EEXIST);
    QCOMPARE(copyFile(project.path(u"from"_s), RootFolder(project.dir()), project.path(u"nowhere/to"_s)),
             ENOENT);
    QCOMPARE(copyFile(project.path(u"missing"_s), RootFolder(project.dir()), project.path(u"to"_s)), ENOENT);
    QCOMPARE(copyFile(project.path(u"folder"_s), RootFolder(project.dir()), project.path(u"to"_s)), EIO);
    QCOMPARE(project.files(u""_s), (QStringList{u"from"_s, u"there"_s}));
    QCOMPARE(project.read(u"there"_s), "old");
}

void TestFileIo::tellsWhatMayExist_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("exists");
    QTest::newRow("file") << u"file"_s << true;
    QTest::newRow("folder") << u"folder"_s << true;
    QTest::newRow("link that leads nowhere") << u"dangling"_s << true;
    QTest::newRow("nothing") << u"missing"_s << false;
    QTest::newRow("below nothing") << u"missing/file"_s << false;
    QTest::newRow("below a file") << u"file/below"_s << false;
    QTest::newRow("below a link to itself") << u"loop/file"_s << false;
    QTest::newRow("name that no file can have") << QString(300, u'n') << false;
}

void TestFileIo::tellsWhatMayExist()
{
    QFETCH(const QString, name);
    QFETCH(const bool, exists);
    const TestProject project;
    project.write(u"file"_s, "");
    project.makeFolder(u"folder"_s);
    project.link(u"nowhere"_s, u"dangling"_s);
    project.link(u"loop"_s, u"loop"_s);
    QCOMPARE(mayExist(project.path(name)), exists);
}

void TestFileIo::takesNoAnswerForMaybe()
{
    const TestProject project;
    project.makeFolder(u"closed"_s);
    QCOMPARE(chmod(QFile::encodeName(project.path(u"closed"_s)).constData(), 0), 0);
    const OrdinaryUser user;
    QVERIFY(mayExist(project.path(u"closed/missing"_s)));
}

void TestFileIo::tellsFailuresOfTheDisk_data()
{
    QTest::addColumn<int>("error");
    QTest::addColumn<bool>("isOfDisk");
    QTest::newRow("full") << ENOSPC << true;
    QTest::newRow("quota") << EDQUOT << true;
    QTest::newRow("broken") << EIO << true;
    QTest::newRow("protected") << EROFS << true;
    QTest::newRow("missing") << ENOENT << false;
    QTest::newRow("forbidden") << EACCES << false;
}

void TestFileIo::tellsFailuresOfTheDisk()
{
    QFETCH(const int, error);
    QFETCH(const bool, isOfDisk);
    QCOMPARE(isFailureOfDisk(error), isOfDisk);
}

VANTREL_TEST(QCoreApplication, TestFileIo)
#include "tst_fileio.moc"
