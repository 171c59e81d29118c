// Reaching what lies below a project, and nothing else.
#include "RootFolder.h"
#include "TestProject.h"
#include "TestSuite.h"
#include "updUtils.h"

#include <QtTest>

#include <cerrno>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(FolderCreation)

namespace {

/// A project with every kind of entry, and a folder beside it that is not the project's.
class StrangeProject final
{
public:
    StrangeProject()
    {
        m_project.write(u"scr/hall/a.psc"_s, "a");
        m_project.write(u"../outside/kept.psc"_s, "kept");
        m_project.makeFolder(u"../outside/folder"_s);
        m_project.link(u"hall"_s, u"scr/inward"_s);
        m_project.link(m_project.beside(u"outside"_s), u"scr/outward"_s);
        m_project.link(u"nowhere"_s, u"scr/dangling"_s);
        m_project.link(u"loop"_s, u"scr/loop"_s);
        if (mkfifo(QFile::encodeName(m_project.path(u"scr/pipe"_s)).constData(), S_IRWXU) != 0)
            qFatal("no pipe");
    }

    const TestProject &operator*() const { return m_project; }
    QString path(const QString &name) const { return m_project.path(name); }
    QStringList outside() const { return filesBelow(m_project.beside(u"outside"_s)); }

private:
    TestProject m_project;
};

} // namespace

class TestRootFolder final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void opensFoldersWithoutLinks_data();
    void opensFoldersWithoutLinks();
    void makesFoldersWithoutLinks_data();
    void makesFoldersWithoutLinks();
    void followsPathsBesideTheProject();
    void knowsItsPathInBothForms();
    void tellsThatItIsMissing();
    void removesNoFolderOverALink_data();
    void removesNoFolderOverALink();
    void removesNothingBehindLinks();
    void splitsPaths();
};

void TestRootFolder::opensFoldersWithoutLinks_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QList<int>>("errors"); // one of them; none where it is opened
    QTest::newRow("folder") << u"scr/hall"_s << QList<int>();
    QTest::newRow("the project") << u"."_s << QList<int>();
    QTest::newRow("link to a folder") << u"scr/inward"_s << QList{ELOOP, ENOTDIR};
    QTest::newRow("below a link") << u"scr/outward/folder"_s << QList{ELOOP, ENOTDIR};
    QTest::newRow("link to nothing") << u"scr/dangling"_s << QList{ELOOP, ENOTDIR};
    QTest::newRow("link to itself") << u"scr/loop"_s << QList{ELOOP, ENOTDIR};
    QTest::newRow("upwards") << u"scr/../../outside"_s << QList{EXDEV};
    QTest::newRow("pipe") << u"scr/pipe"_s << QList{ENOTDIR};
    QTest::newRow("file") << u"scr/hall/a.psc"_s << QList{ENOTDIR};
    QTest::newRow("missing") << u"scr/missing/folder"_s << QList{ENOENT};
}

void TestRootFolder::opensFoldersWithoutLinks()
{
    QFETCH(const QString, name);
    QFETCH(const QList<int>, errors);
    const StrangeProject project;
    const RootFolder root((*project).dir());
    const OpenFolder folder = root.folder(project.path(name));
    QCOMPARE(folder.isOpen(), errors.isEmpty());
    QVERIFY2(folder.isOpen() || errors.contains(folder.error()), qPrintable(qt_error_string(folder.error())));
}

void TestRootFolder::makesFoldersWithoutLinks_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<FolderCreation>("creation");
    QTest::addColumn<bool>("isThere");
    constexpr auto one = FolderCreation::OneLevel;
    constexpr auto all = FolderCreation::WithParents;
    QTest::newRow("new") << u"scr/new"_s << one << true;
    QTest::newRow("there") << u"scr/hall"_s << one << true;
    QTest::newRow("two levels") << u"scr/new/newer"_s << one << false;
    QTest::newRow("two levels, both") << u"scr/new/newer"_s << all << true;
    QTest::newRow("link to a folder") << u"scr/inward"_s << all << false;
    QTest::newRow("below a link") << u"scr/outward/new"_s << one << false;
    QTest::newRow("far below a link") << u"scr/outward/new/newer"_s << all << false;
    QTest::newRow("link to nothing") << u"scr/dangling"_s << all << false;
    QTest::newRow("below a link to nothing") << u"scr/dangling/new"_s << all << false;
    QTest::newRow("upwards") << u"scr/../../outside/new"_s << all << false;
    QTest::newRow("pipe") << u"scr/pipe"_s << all << false;
    QTest::newRow("below a pipe") << u"scr/pipe/new"_s << all << false;
    QTest::newRow("file") << u"scr/hall/a.psc"_s << all << false;
}

void TestRootFolder::makesFoldersWithoutLinks()
{
    QFETCH(const QString, name);
    QFETCH(const FolderCreation, creation);
    QFETCH(const bool, isThere);
    const StrangeProject project;
    const QStringList outside = project.outside();
    const RootFolder root((*project).dir());
    QCOMPARE(root.makeFolder(project.path(name), creation), isThere);
    QVERIFY(!isThere || QFileInfo(project.path(name)).isDir());
    QCOMPARE(project.outside(), outside);
    QVERIFY(!QFileInfo::exists((*project).beside(u"outside/new"_s)));
    QVERIFY(!(*project).exists(u"scr/nowhere"_s));
}

/// Names are mapped as texts, also those of folders above the project.
void TestRootFolder::followsPathsBesideTheProject()
{
    const StrangeProject project;
    const RootFolder root((*project).dir());
    const QString beside = (*project).beside(u"outside/made"_s);
    QVERIFY(root.makeFolder(beside, FolderCreation::OneLevel));
    QVERIFY(root.folder(beside).isOpen());
    QVERIFY(root.folder((*project).beside(u"missing"_s)).error() == ENOENT);
}

void TestRootFolder::knowsItsPathInBothForms()
{
    const StrangeProject project;
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent((*project).beside(QString())));
    const RootFolder root(u"plant"_s);
    QVERIFY(root.folder(u"plant/scr/hall"_s).isOpen());
    QVERIFY(!root.folder(u"plant/scr/inward"_s).isOpen());
    QVERIFY(!root.folder(QDir::current().absoluteFilePath(u"plant/scr/inward"_s)).isOpen());
    QVERIFY(QDir::setCurrent(before));
}

void TestRootFolder::tellsThatItIsMissing()
{
    const TestProject project;
    const RootFolder root(project.path(u"missing"_s));
    QCOMPARE(root.folder(project.path(u"missing/scr"_s)).error(), ENOENT);
    QVERIFY(!root.makeFolder(project.path(u"missing/scr"_s), FolderCreation::OneLevel));
    QVERIFY(!project.exists(u"missing"_s));
}

void TestRootFolder::removesNoFolderOverALink_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isGone");
    QTest::newRow("folder with links") << u"scr"_s << true;
    QTest::newRow("link to a folder") << u"scr/outward"_s << true;
    QTest::newRow("missing") << u"scr/missing/folder"_s << true;
    QTest::newRow("pipe, which is no folder") << u"scr/pipe"_s << true;
}

void TestRootFolder::removesNoFolderOverALink()
{
    QFETCH(const QString, name);
    QFETCH(const bool, isGone);
    const StrangeProject project;
    const QStringList outside = project.outside();
    QCOMPARE(updUtils::removeDir(project.path(name)), isGone);
    QCOMPARE(project.outside(), outside);
    QVERIFY(QFileInfo((*project).beside(u"outside/folder"_s)).isDir());
    QCOMPARE((*project).exists(name), name == "scr/pipe"_L1);
}

void TestRootFolder::removesNothingBehindLinks()
{
    const StrangeProject project;
    const QStringList outside = project.outside();
    const RootFolder root((*project).dir());
    QVERIFY(!root.removeFile(project.path(u"scr/outward/kept.psc"_s)));
    QVERIFY(!root.removeEmptyFolder(project.path(u"scr/outward/folder"_s)));
    QVERIFY(!root.removeFile(project.path(u"scr/../../outside/kept.psc"_s)));
    QVERIFY(!root.removeFile(project.path(u"scr/hall"_s)));
    QVERIFY(!root.removeEmptyFolder(project.path(u"scr/hall"_s)));
    QVERIFY(root.removeFile(project.path(u"scr/missing/file"_s)));
    QVERIFY(root.removeFile(project.path(u"scr/outward"_s)));
    QVERIFY(root.removeFile(project.path(u"scr/hall/a.psc"_s)));
    QVERIFY(root.removeEmptyFolder(project.path(u"scr/hall"_s)));
    QVERIFY(!(*project).exists(u"scr/hall"_s));
    QCOMPARE(project.outside(), outside);
    QVERIFY(QFileInfo((*project).beside(u"outside/folder"_s)).isDir());
}

void TestRootFolder::splitsPaths()
{
    QCOMPARE(parentPathOf(u"/a/b"_s), u"/a"_s);
    QCOMPARE(parentPathOf(u"/a"_s), u"/"_s);
    QCOMPARE(parentPathOf(u"a"_s), u"."_s);
    QCOMPARE(parentPathOf(u"/a/b//"_s), u"/a"_s);
    QCOMPARE(lastNameOf(u"/a/b"_s), "b");
    QCOMPARE(lastNameOf(u"/a/b//"_s), "b");
    QCOMPARE(lastNameOf(u"a"_s), "a");
}

VANTREL_TEST(QCoreApplication, TestRootFolder)
#include "tst_rootfolder.moc"
