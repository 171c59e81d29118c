// Files that are written whole, and what they meet in their places.
#include "FileWriter.h"

#include "RootFolder.h"
#include "TestProject.h"
#include "TestSuite.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <cerrno>
#include <cstdarg>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr unsigned usualMode = 0644;

/// How often the file that is written next takes nothing, and says so without an error.
int refusedWrites = 0;
/// Whether a close fails, as that of a file system that writes no sooner.
bool isCloseRefused = false;
/// Whether files can do without a name.
bool isNamelessRefused = false;

template <typename Function>
Function next(const char *name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

} // namespace

/// These stand before the system's own.
extern "C" ssize_t write(int file, const void *bytes, std::size_t size)
{
    if (refusedWrites > 0) {
        --refusedWrites;
        return 0;
    }
    return next<ssize_t (*)(int, const void *, std::size_t)>("write")(file, bytes, size);
}

extern "C" int close(int file)
{
    const int result = next<int (*)(int)>("close")(file);
    if (!isCloseRefused)
        return result;
    isCloseRefused = false;
    errno = EIO;
    return -1;
}

extern "C" int openat(int folder, const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    if (isNamelessRefused && (flags & O_TMPFILE) == O_TMPFILE) {
        errno = EOPNOTSUPP;
        return -1;
    }
    return next<int (*)(int, const char *, int, mode_t)>("openat")(folder, path, flags, mode);
}

namespace {

mode_t permissionsOf(const QString &path)
{
    constexpr mode_t permissionBits = 0777;
    struct stat file = {};
    return lstat(QFile::encodeName(path).constData(), &file) == 0 ? file.st_mode & permissionBits : 0;
}

FileWriter writerOf(const TestProject &project, const QString &name, IfThere ifThere)
{
    return {RootFolder(project.dir()), project.path(name), usualMode, ifThere};
}

/// What lies in the place of a new file.
using Occupation = void (*)(const TestProject &project);

} // namespace

Q_DECLARE_METATYPE(IfThere)
Q_DECLARE_METATYPE(Occupation)

class TestFileWriter final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void isSeenWhenItIsWhole_data();
    void isSeenWhenItIsWhole();
    void givesPermissionsThatTheMaskTakes();
    void meetsWhatLiesThere_data();
    void meetsWhatLiesThere();
    void takesNobodyElsesPlace_data();
    void takesNobodyElsesPlace();
    void writesNothingBehindLinks();
    void replacesWhatAnInterruptionLeft();
    void leavesNothingThatIsNotWritten();
    void removesWhatCannotBeClosed_data();
    void removesWhatCannotBeClosed();
    void failsWhereNothingIsTaken();
};

void TestFileWriter::init()
{
    refusedWrites = 0;
    isCloseRefused = isNamelessRefused = false;
}

void TestFileWriter::isSeenWhenItIsWhole_data()
{
    QTest::addColumn<bool>("isSimple"); // the file system
    QTest::addColumn<IfThere>("ifThere");
    QTest::addColumn<QByteArray>("before");
    QTest::newRow("new") << false << IfThere::Fail << QByteArray();
    QTest::newRow("new, may replace") << false << IfThere::Replace << QByteArray();
    QTest::newRow("replaces") << false << IfThere::Replace << "longer than before"_ba;
    QTest::newRow("new, may replace, simple") << true << IfThere::Replace << QByteArray();
    QTest::newRow("replaces, simple") << true << IfThere::Replace << "longer than before"_ba;
}

void TestFileWriter::isSeenWhenItIsWhole()
{
    QFETCH(const bool, isSimple);
    QFETCH(const IfThere, ifThere);
    QFETCH(const QByteArray, before);
    isNamelessRefused = isSimple;
    const TestProject project;
    if (!before.isNull())
        project.write(u"file"_s, before);
    FileWriter file = writerOf(project, u"file"_s, ifThere);
    QVERIFY(file.append("sh", 2));
    QCOMPARE(project.read(u"file"_s), before);
    QVERIFY(file.append("ort", 3));
    QVERIFY(file.finish());
    QVERIFY(!file.isOpen());
    QCOMPARE(project.read(u"file"_s), "short");
    QCOMPARE(project.files(u""_s), QStringList{u"file"_s});
}

void TestFileWriter::givesPermissionsThatTheMaskTakes()
{
    const TestProject project;
    constexpr mode_t mode = 0666;
    const mode_t mask = umask(022);
    FileWriter file(RootFolder(project.dir()), project.path(u"file"_s), mode, IfThere::Fail);
    umask(mask);
    QVERIFY(file.write("x", 1));
    QCOMPARE(permissionsOf(project.path(u"file"_s)), mode);
}

void TestFileWriter::meetsWhatLiesThere_data()
{
    QTest::addColumn<Occupation>("occupation");
    QTest::addColumn<int>("failError");    // of one that may not replace
    QTest::addColumn<int>("replaceError"); // of one that may
    const auto row = [](const char *name, Occupation occupation, int failError, int replaceError) {
        QTest::newRow(name) << occupation << failError << replaceError;
    };
    row(
        "file", [](const TestProject &project) { project.write(u"file"_s, "old"); }, EEXIST, 0);
    row(
        "link to a file",
        [](const TestProject &project) {
            project.write(u"other"_s, "other");
            project.link(u"other"_s, u"file"_s);
        },
        EEXIST, 0);
    row(
        "link to nothing", [](const TestProject &project) { project.link(u"nowhere"_s, u"file"_s); }, EEXIST,
        0);
    row(
        "folder", [](const TestProject &project) { project.makeFolder(u"file"_s); }, EEXIST, EISDIR);
    row(
        "pipe",
        [](const TestProject &project) {
            QCOMPARE(mkfifo(QFile::encodeName(project.path(u"file"_s)).constData(), S_IRWXU), 0);
        },
        EEXIST, ENXIO);
}

void TestFileWriter::meetsWhatLiesThere()
{
    QFETCH(const Occupation, occupation);
    QFETCH(const int, failError);
    QFETCH(const int, replaceError);
    for (const bool isSimple : {false, true}) {
        isNamelessRefused = isSimple;
        for (const IfThere ifThere : {IfThere::Fail, IfThere::Replace}) {
            const TestProject project;
            occupation(project);
            FileWriter file = writerOf(project, u"file"_s, ifThere);
            const bool isWritten = file.isOpen() && file.write("new", 3);
            const int error = ifThere == IfThere::Fail ? failError : replaceError;
            QCOMPARE(isWritten, error == 0);
            QCOMPARE(file.error(), error);
            QVERIFY(error != 0 || project.read(u"file"_s) == "new");
            QVERIFY(!project.exists(u"nowhere"_s));
            QVERIFY(!project.exists(u"other"_s) || project.read(u"other"_s) == "other");
            QVERIFY(!project.exists(u".vantrel.copy"_s));
        }
    }
}

void TestFileWriter::takesNobodyElsesPlace_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("error");
    QTest::newRow("a folder that is missing") << u"missing/file"_s << ENOENT;
    QTest::newRow("a file as a folder") << u"plain/file"_s << ENOTDIR;
}

void TestFileWriter::takesNobodyElsesPlace()
{
    QFETCH(const QString, name);
    QFETCH(const int, error);
    const TestProject project;
    project.write(u"plain"_s, "plain");
    const FileWriter file = writerOf(project, name, IfThere::Replace);
    QVERIFY(!file.isOpen());
    QCOMPARE(file.error(), error);
}

void TestFileWriter::writesNothingBehindLinks()
{
    const TestProject project;
    project.write(u"../outside/file"_s, "kept");
    project.link(project.beside(u"outside"_s), u"area"_s);
    for (const IfThere ifThere : {IfThere::Fail, IfThere::Replace}) {
        for (const QString &name : {u"area/file"_s, u"area/new"_s}) {
            const FileWriter file = writerOf(project, name, ifThere);
            QVERIFY(!file.isOpen());
            QVERIFY(file.error() == ELOOP || file.error() == ENOTDIR);
        }
    }
    QCOMPARE(filesBelow(project.beside(u"outside"_s)), QStringList{u"file"_s});
    QCOMPARE(project.read(u"../outside/file"_s), "kept");
}

void TestFileWriter::replacesWhatAnInterruptionLeft()
{
    for (const bool isSimple : {false, true}) {
        isNamelessRefused = isSimple;
        const TestProject project;
        project.write(u"../outside"_s, "kept");
        project.write(u"file"_s, "old");
        project.link(project.beside(u"outside"_s), u".vantrel.copy"_s);
        QVERIFY(writerOf(project, u"file"_s, IfThere::Replace).write("new", 3));
        QCOMPARE(project.read(u"file"_s), "new");
        QCOMPARE(project.files(u""_s), QStringList{u"file"_s});
        QCOMPARE(project.read(u"../outside"_s), "kept");
    }
}

void TestFileWriter::leavesNothingThatIsNotWritten()
{
    const TestProject project;
    {
        const FileWriter file = writerOf(project, u"file"_s, IfThere::Fail);
        QVERIFY(file.isOpen());
    }
    QVERIFY(!project.exists(u"file"_s));
}

void TestFileWriter::removesWhatCannotBeClosed_data()
{
    QTest::addColumn<bool>("isSimple");
    QTest::newRow("named when it is whole") << false;
    QTest::newRow("named from the beginning") << true;
}

void TestFileWriter::removesWhatCannotBeClosed()
{
    QFETCH(const bool, isSimple);
    isNamelessRefused = isSimple;
    const TestProject project;
    FileWriter file = writerOf(project, u"file"_s, IfThere::Fail);
    QVERIFY(file.append("text", 4));
    isCloseRefused = true;
    QVERIFY(!file.finish());
    QCOMPARE(file.error(), EIO);
    QVERIFY(!project.exists(u"file"_s));
}

void TestFileWriter::failsWhereNothingIsTaken()
{
    const TestProject project;
    FileWriter file = writerOf(project, u"file"_s, IfThere::Fail);
    QVERIFY(file.append("some", 4));
    refusedWrites = 10;
    const bool isTaken = file.append("text", 4);
    refusedWrites = 0;
    QVERIFY(!isTaken);
    QCOMPARE(file.error(), EIO);
    QVERIFY(!file.isOpen());
    QVERIFY(!project.exists(u"file"_s));
}

VANTREL_TEST(QCoreApplication, TestFileWriter)
#include "tst_filewriter.moc"
