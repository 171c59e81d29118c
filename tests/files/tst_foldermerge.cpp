// What a folder held comes back beside what it holds now; nothing is replaced.
#include "FolderMerge.h"
#include "RootFolder.h"
#include "TestProject.h"
#include "TestSuite.h"

#include <QtTest>

#include <unistd.h>

using namespace Qt::StringLiterals;

class TestFolderMerge : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void movesAWholeFolderWhereNothingLies();
    void isContentWhereThereIsNothing();
    void movesWhatHasAFreePlace();
    void keepsNamesThatAreNoText();
    void followsNoLink();
    void saysWhatCannotBeMoved();
    void removesTwinsOnly();
    void removesEmptyFoldersOnly();
};

void TestFolderMerge::movesAWholeFolderWhereNothingLies()
{
    const TestProject project;
    project.write(u"kept/hall/notes.txt"_s, "notes");
    project.makeFolder(u"kept/empty"_s);
    QCOMPARE(mergeBack(RootFolder(project.dir()), project.path(u"kept"_s), project.path(u"scr"_s)),
             QString());
    QVERIFY(!project.exists(u"kept"_s));
    QCOMPARE(project.files(u"scr"_s), QStringList{u"hall/notes.txt"_s});
    QVERIFY(QFileInfo(project.path(u"scr/empty"_s)).isDir());
}

void TestFolderMerge::isContentWhereThereIsNothing()
{
    const TestProject project;
    QCOMPARE(mergeBack(RootFolder(project.dir()), project.path(u"kept"_s), project.path(u"scr"_s)),
             QString());
    QVERIFY(!project.exists(u"scr"_s));
    QVERIFY(removeTwins(RootFolder(project.dir()), project.path(u"kept"_s), project.path(u"scr"_s)));
}

void TestFolderMerge::movesWhatHasAFreePlace()
{
    const TestProject project;
    project.write(u"kept/hall/notes.txt"_s, "notes");
    project.write(u"kept/hall/a.psc"_s, "before");
    project.write(u"kept/b.psc/inner.txt"_s, "in a folder");
    project.makeFolder(u"kept/empty/emptier"_s);
    project.write(u"scr/hall/a.psc"_s, "after");
    project.write(u"scr/b.psc"_s, "a file");
    project.makeFolder(u"scr/empty"_s);
    QCOMPARE(mergeBack(RootFolder(project.dir()), project.path(u"kept"_s), project.path(u"scr"_s)),
             QString());
    QCOMPARE(project.read(u"scr/hall/notes.txt"_s), "notes");
    QCOMPARE(project.read(u"scr/hall/a.psc"_s), "after");
    QCOMPARE(project.read(u"scr/b.psc"_s), "a file");
    QVERIFY(QFileInfo(project.path(u"scr/empty/emptier"_s)).isDir());
    QCOMPARE(project.files(u"kept"_s), (QStringList{u"b.psc/inner.txt"_s, u"hall/a.psc"_s}));
    QVERIFY(!project.exists(u"kept/empty"_s));
}

void TestFolderMerge::keepsNamesThatAreNoText()
{
    const TestProject project;
    project.makeFolder(u"kept"_s);
    project.makeFolder(u"scr"_s);
    const QByteArray name = "/\xff\xfe.psc";
    QFile(project.path(u"kept/x"_s)).open(QIODevice::NewOnly);
    QVERIFY(rename(QFile::encodeName(project.path(u"kept/x"_s)),
                   QFile::encodeName(project.path(u"kept"_s)) + name) == 0);
    QCOMPARE(mergeBack(RootFolder(project.dir()), project.path(u"kept"_s), project.path(u"scr"_s)),
             QString());
    QVERIFY(!project.exists(u"kept"_s));
    QVERIFY(access(QFile::encodeName(project.path(u"scr"_s)) + name, F_OK) == 0);
}

void TestFolderMerge::followsNoLink()
{
    const TestProject project;
    project.write(u"kept/hall/notes.txt"_s, "notes");
    project.makeFolder(u"elsewhere"_s);
    project.makeFolder(u"scr"_s);
    project.link(project.path(u"elsewhere"_s), u"scr/hall"_s);
    QCOMPARE(mergeBack(RootFolder(project.dir()), project.path(u"kept"_s), project.path(u"scr"_s)),
             QString());
    QCOMPARE(project.files(u"elsewhere"_s), QStringList());
    QCOMPARE(project.read(u"kept/hall/notes.txt"_s), "notes");
}

void TestFolderMerge::saysWhatCannotBeMoved()
{
    const TestProject project;
    project.write(u"kept/notes.txt"_s, "notes");
    project.makeFolder(u"scr"_s);
    const OrdinaryUser user;
    QCOMPARE(mergeBack(RootFolder(project.dir()), project.path(u"kept"_s), project.path(u"scr"_s)),
             u"%1 could not be moved to %2: Permission denied"_s.arg(project.path(u"kept/notes.txt"_s),
                                                                     project.path(u"scr/notes.txt"_s)));
    QCOMPARE(project.read(u"kept/notes.txt"_s), "notes");
}

void TestFolderMerge::removesTwinsOnly()
{
    const TestProject project;
    project.write(u"kept/hall/same.psc"_s, "same");
    project.write(u"scr/hall/same.psc"_s, "same");
    project.write(u"kept/other.psc"_s, "before");
    project.write(u"scr/other.psc"_s, "after");
    project.write(u"kept/alone.txt"_s, "alone");
    project.write(u"kept/shorter.psc"_s, "the begin");
    project.write(u"scr/shorter.psc"_s, "the beginning");
    project.link(u"nowhere"_s, u"kept/link"_s);
    QVERIFY(!removeTwins(RootFolder(project.dir()), project.path(u"kept"_s), project.path(u"scr"_s)));
    QCOMPARE(project.files(u"kept"_s),
             (QStringList{u"alone.txt"_s, u"link"_s, u"other.psc"_s, u"shorter.psc"_s}));
    QVERIFY(!project.exists(u"kept/hall"_s));
    for (const QString &name : project.files(u"kept"_s))
        project.remove(u"kept/"_s + name);
    QVERIFY(removeTwins(RootFolder(project.dir()), project.path(u"kept"_s), project.path(u"scr"_s)));
    QVERIFY(!project.exists(u"kept"_s));
    QCOMPARE(project.read(u"scr/other.psc"_s), "after");
}

void TestFolderMerge::removesEmptyFoldersOnly()
{
    const TestProject project;
    QVERIFY(removeEmptyFolders(RootFolder(project.dir()), project.path(u"gone"_s)));
    project.makeFolder(u"empty/deep/deeper"_s);
    QVERIFY(removeEmptyFolders(RootFolder(project.dir()), project.path(u"empty"_s)));
    QVERIFY(!project.exists(u"empty"_s));
    project.makeFolder(u"full/deep/empty"_s);
    project.write(u"full/deep/notes.txt"_s, "");
    project.makeFolder(u"elsewhere"_s);
    project.link(project.path(u"elsewhere"_s), u"full/link"_s);
    QVERIFY(!removeEmptyFolders(RootFolder(project.dir()), project.path(u"full"_s)));
    QCOMPARE(project.files(u"full"_s), (QStringList{u"deep/notes.txt"_s, u"link"_s}));
    QVERIFY(!project.exists(u"full/deep/empty"_s));
    QVERIFY(!removeEmptyFolders(RootFolder(project.dir()), project.path(u"full/link"_s)));
    QVERIFY(project.exists(u"elsewhere"_s));
}

VANTREL_TEST(QCoreApplication, TestFolderMerge)
#include "tst_foldermerge.moc"
