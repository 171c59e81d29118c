// Reading and writing whole files, and what is said where that fails.
#include "FileIo.h"

#include "Limits.h"
#include "TestProject.h"
#include "TestSuite.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <cerrno>

#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// How often the file that is written next takes nothing, and says so without an error.
int refusedWrites = 0;

} // namespace

/// Stands before the system's own.
extern "C" ssize_t write(int file, const void *bytes, std::size_t size)
{
    if (refusedWrites > 0) {
        --refusedWrites;
        return 0;
    }
    return reinterpret_cast<ssize_t (*)(int, const void *, std::size_t)>(dlsym(RTLD_NEXT, "write"))(
        file, bytes, size);
}

namespace {

mode_t permissionsOf(const QString &path)
{
    constexpr mode_t permissionBits = 0777;
    struct stat file = {};
    return lstat(QFile::encodeName(path).constData(), &file) == 0 ? file.st_mode & permissionBits : 0;
}

/// The descriptor under which this process has a file open, or -1.
int descriptorOf(const QString &path)
{
    const QDir openFiles(u"/proc/self/fd"_s);
    const QStringList names = openFiles.entryList(QDir::Files | QDir::System);
    for (const QString &name : names) {
        if (QFileInfo(openFiles.filePath(name)).symLinkTarget() == path)
            return name.toInt();
    }
    return -1;
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
    void givesPermissionsThatTheMaskTakes();
    void tellsWhyItCannotCopy();
    void leavesNothingThatIsNotWritten();
    void removesWhatCannotBeClosed();
    void failsWhereNothingIsTaken();
    void emptiesWhatItOverwrites();
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
    QCOMPARE(copyFile(project.path(u"from"_s), project.path(u"to"_s)), 0);
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
    QCOMPARE(copyFile(project.path(u"from"_s), project.path(u"to"_s)), 0);
    QCOMPARE(project.read(u"to"_s), text);
}

void TestFileIo::givesPermissionsThatTheMaskTakes()
{
    const TestProject project;
    constexpr mode_t mode = 0666;
    const mode_t mask = umask(022);
    FileWriter file = FileWriter::creating(project.path(u"file"_s), mode);
    umask(mask);
    QVERIFY(file.write("x", 1));
    QCOMPARE(permissionsOf(project.path(u"file"_s)), mode);
}

void TestFileIo::tellsWhyItCannotCopy()
{
    const TestProject project;
    project.write(u"from"_s, "new");
    project.write(u"there"_s, "old");
    project.makeFolder(u"folder"_s);
    QCOMPARE(copyFile(project.path(u"from"_s), project.path(u"there"_s)), EEXIST);
    QCOMPARE(copyFile(project.path(u"from"_s), project.path(u"nowhere/to"_s)), ENOENT);
    QCOMPARE(copyFile(project.path(u"missing"_s), project.path(u"to"_s)), ENOENT);
    QCOMPARE(copyFile(project.path(u"folder"_s), project.path(u"to"_s)), EIO);
    QCOMPARE(project.files(u""_s), (QStringList{u"from"_s, u"there"_s}));
    QCOMPARE(project.read(u"there"_s), "old");
}

void TestFileIo::leavesNothingThatIsNotWritten()
{
    const TestProject project;
    constexpr unsigned mode = 0644;
    {
        const FileWriter file = FileWriter::appearing(project.path(u"file"_s), mode);
        QVERIFY(file.isOpen());
    }
    QVERIFY(!project.exists(u"file"_s));
}

void TestFileIo::removesWhatCannotBeClosed()
{
    const TestProject project;
    constexpr unsigned mode = 0644;
    FileWriter file = FileWriter::creating(project.path(u"file"_s), mode);
    QVERIFY(file.append("text", 4));
    // As a file system does that writes no sooner, and fails then.
    QCOMPARE(close(descriptorOf(project.path(u"file"_s))), 0);
    QVERIFY(!file.finish());
    QCOMPARE(file.error(), EBADF);
    QVERIFY(!project.exists(u"file"_s));
}

void TestFileIo::failsWhereNothingIsTaken()
{
    const TestProject project;
    constexpr unsigned mode = 0644;
    FileWriter file = FileWriter::creating(project.path(u"file"_s), mode);
    QVERIFY(file.append("some", 4));
    refusedWrites = 10;
    const bool isTaken = file.append("text", 4);
    refusedWrites = 0;
    QVERIFY(!isTaken);
    QCOMPARE(file.error(), EIO);
    QVERIFY(!file.isOpen());
    QVERIFY(!project.exists(u"file"_s));
}

void TestFileIo::emptiesWhatItOverwrites()
{
    const TestProject project;
    project.write(u"file"_s, "longer than before");
    FileWriter file = FileWriter::overwriting(project.path(u"file"_s));
    QVERIFY(file.isOpen());
    QCOMPARE(project.read(u"file"_s), "");
    QVERIFY(file.write("short", 5));
    QVERIFY(!file.isOpen());
    QCOMPARE(project.read(u"file"_s), "short");
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
