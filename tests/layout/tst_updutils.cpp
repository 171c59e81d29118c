// Finding, moving and removing the files of a project.
#include "BitmapFolders.h"
#include "DeepFolders.h"
#include "ImageFileSearch.h"
#include "Limits.h"
#include "Recorders.h"
#include "TestProject.h"
#include "TestSuite.h"
#include "updUtils.h"

#include <QtTest>

#include <cstdio>
#include <type_traits>

#include <array>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

QStringList found(const TestProject &project, const QString &folder)
{
    QList<QFileInfo> files;
    updUtils::findImageFiles(project.path(folder), files);
    QStringList paths;
    for (const QFileInfo &file : files)
        paths += file.filePath().mid(project.dir().size() + 1);
    return paths;
}

/// Writes a file whose name is not valid text.
void writeOddly(const QString &folder, const char *name)
{
    const QByteArray path = QFile::encodeName(folder) + '/' + name;
    std::FILE *const file = std::fopen(path.constData(), "w");
    QVERIFY(file != nullptr);
    std::fclose(file);
}

} // namespace

class TestUpdUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isPolymorphic();

    void removesAFolderWithAllInIt();
    void countsAMissingFolderAsRemoved();
    void stopsAtTheFirstEntryThatCannotBeRemoved();
    void removesLinksWithoutFollowingThem();
    void removesNamesThatAreNotText();
    void removesAnEmptyFolderThatCannotBeListed();
    void removesARootThatIsALinkAndNotWhatItLeadsTo();

    void findsImageFilesDepthFirstByNameIgnoringCase();
    void findsByAnyPartOfThePath_data();
    void findsByAnyPartOfThePath();
    void appendsToTheList();
    void findsNothingWhereThereIsNoFolder();
    void ordersNamesThatDifferInCaseOnly();
    void findsNothingHidden();
    void findsNoPipesAndNoDanglingLinks();
    void followsLinksToFolders();
    void neverEntersAFolderThatItIsInsideOf();
    void findsAllThatAThousandLinksLeadTo();
    void leavesOutWhatMoreLinksLeadTo();
    void findsItsWayOutOfAMaze();

    void movesImageFilesToTheMappedPlace();
    void removesAllOfTheSourceOnlyWhenEveryFileWasCopied();
    void leavesWhatCannotBeRemovedFromTheSource();
    void mapsEveryOccurrenceInThePath();
    void mapsTheProjectDirectoryToo();
    void triesEveryFileAlsoAfterAFailure();
    void doesNotOverwrite();
    void makesOneLevelOfFoldersOnly();
    void makesFoldersWithTheirParentsWhenAskedTo();
    void leavesASourceThatCouldNotBeListed();
    void saysNothingOfALinkInTheWay();
    void leavesASourceWithANameThatIsNotText();
    void leavesASourceWithTooManyLinks();
    void countsNothingToMoveAsMoved_data();
    void countsNothingToMoveAsMoved();
    void movesBetweenPathsOfAnyForm_data();
    void movesBetweenPathsOfAnyForm();
    void copiesEveryByte();
    void makesFolders();
    void givesCopiesOfFoldersTheirRights();
    void makesAFolderAgainUntilItIsThere();
    void removesFoldersOfAnyDepth();
    void searchesFoldersOfAnyDepth();
    void looksForBitmapsAtAnyDepth();
};

void TestUpdUtils::isPolymorphic()
{
    static_assert(std::has_virtual_destructor_v<updUtils>);
    static_assert(sizeof(updUtils) == sizeof(void *));
}

void TestUpdUtils::removesAFolderWithAllInIt()
{
    const TestProject project;
    project.write(u"tree/a.txt"_s, "a"_ba);
    project.write(u"tree/.hidden"_s, "a"_ba);
    project.write(u"tree/sub/.hidden folder/b.psc"_s, "a"_ba);
    project.write(u"tree/read-only"_s, "a"_ba);
    QFile::setPermissions(project.path(u"tree/read-only"_s), QFile::ReadOwner);
    project.makeFolder(u"tree/empty/empty"_s);

    QVERIFY(updUtils::removeDir(project.path(u"tree"_s)));
    QVERIFY(!project.exists(u"tree"_s));
    QVERIFY(project.exists(u""_s));
}

void TestUpdUtils::countsAMissingFolderAsRemoved()
{
    const TestProject project;
    project.write(u"file"_s, "a"_ba);
    QVERIFY(updUtils::removeDir(project.path(u"gone"_s)));
    QVERIFY(updUtils::removeDir(project.path(u"gone/too"_s)));
    // No folder is there, so nothing has to be removed.
    QVERIFY(updUtils::removeDir(project.path(u"file"_s)));
    QVERIFY(project.exists(u"file"_s));
}

void TestUpdUtils::stopsAtTheFirstEntryThatCannotBeRemoved()
{
    const TestProject project;
    project.write(u"tree/a/first.txt"_s, "a"_ba);
    project.write(u"tree/b/kept.txt"_s, "a"_ba);
    project.write(u"tree/c/later.txt"_s, "a"_ba);
    project.write(u"tree/a file.txt"_s, "a"_ba);
    // Anyone may write everywhere but in the folder b.
    constexpr auto anyone = QFile::Permissions::fromInt(0x7777);
    constexpr auto nobodyWrites = QFile::Permissions::fromInt(0x5555);
    for (const QString &folder : {u"tree"_s, u"tree/a"_s, u"tree/c"_s})
        QFile::setPermissions(project.path(folder), anyone);
    QFile::setPermissions(project.path(u"tree/b"_s), nobodyWrites);
    {
        const OrdinaryUser user;
        QVERIFY(!updUtils::removeDir(project.path(u"tree"_s)));
    }
    QFile::setPermissions(project.path(u"tree/b"_s), anyone);

    // Folders come first, so the file beside them is still there too.
    QCOMPARE(project.files(u"tree"_s), (QStringList{u"a file.txt"_s, u"b/kept.txt"_s, u"c/later.txt"_s}));
    QVERIFY(!project.exists(u"tree/a"_s));
}

void TestUpdUtils::removesLinksWithoutFollowingThem()
{
    const TestProject project;
    project.write(u"outside/kept.psc"_s, "a"_ba);
    project.write(u"tree/a.txt"_s, "a"_ba);
    project.link(project.path(u"outside"_s), u"tree/to a folder"_s);
    project.link(u"../outside/kept.psc"_s, u"tree/to a file"_s);
    project.link(u"nowhere"_s, u"tree/to nothing"_s);
    project.link(u"."_s, u"tree/to itself"_s);

    QVERIFY(updUtils::removeDir(project.path(u"tree"_s)));
    QVERIFY(!project.exists(u"tree"_s));
    QCOMPARE(project.files(u"outside"_s), QStringList{u"kept.psc"_s});
}

void TestUpdUtils::removesNamesThatAreNotText()
{
    const TestProject project;
    project.write(u"tree/a.txt"_s, "a"_ba);
    writeOddly(project.path(u"tree"_s), "f\xe4.psc");
    QCOMPARE(::mkdir(QFile::encodeName(project.path(u"tree"_s)).append("/d\xe4"), 0777), 0);
    writeOddly(project.path(u"tree"_s), "d\xe4/\xff.txt");
    QVERIFY(updUtils::removeDir(project.path(u"tree"_s)));
    QVERIFY(!project.exists(u"tree"_s));
}

void TestUpdUtils::removesAnEmptyFolderThatCannotBeListed()
{
    const TestProject project;
    project.makeFolder(u"tree/empty"_s);
    QFile::setPermissions(project.path(u"tree/empty"_s), QFile::Permissions::fromInt(0));
    for (const QString &folder : {u""_s, u"tree"_s})
        QFile::setPermissions(project.path(folder), QFile::Permissions::fromInt(0x7777));
    const OrdinaryUser user;
    QVERIFY(updUtils::removeDir(project.path(u"tree"_s)));
}

void TestUpdUtils::removesARootThatIsALinkAndNotWhatItLeadsTo()
{
    const TestProject project;
    project.write(u"elsewhere/a.psc"_s, "a"_ba);
    project.write(u"elsewhere/sub/b.txt"_s, "a"_ba);
    project.link(u"elsewhere"_s, u"scr"_s);

    QVERIFY(updUtils::removeDir(project.path(u"scr"_s)));
    QVERIFY(!QFileInfo(project.path(u"scr"_s)).isSymLink());
    QVERIFY(project.exists(u"elsewhere/a.psc"_s));
    QVERIFY(project.exists(u"elsewhere/sub/b.txt"_s));
}

void TestUpdUtils::findsImageFilesDepthFirstByNameIgnoringCase()
{
    const TestProject project;
    for (const QString &file : {u"scr/b.psc"_s, u"scr/A.psc"_s, u"scr/Area/2.psc"_s, u"scr/Area/1.psc"_s,
                                u"scr/C.psc"_s, u"scr/bb/deep/er/x.psc"_s, u"scr/a.txt"_s})
        project.write(file, QByteArray());
    QCOMPARE(found(project, u"scr"_s),
             (QStringList{u"scr/A.psc"_s, u"scr/Area/1.psc"_s, u"scr/Area/2.psc"_s, u"scr/b.psc"_s,
                          u"scr/bb/deep/er/x.psc"_s, u"scr/C.psc"_s}));
}

void TestUpdUtils::findsByAnyPartOfThePath_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<bool>("isFound");
    QTest::newRow("by its suffix") << u"scr/a.psc"_s << true;
    QTest::newRow("with a further suffix") << u"scr/a.psc.bak"_s << true;
    QTest::newRow("with a longer suffix") << u"scr/a.pscx"_s << true;
    QTest::newRow("by a folder's name") << u"scr/old.psc/readme.txt"_s << true;
    QTest::newRow("in upper case") << u"scr/A.PSC"_s << false;
    QTest::newRow("without a dot") << u"scr/apsc"_s << false;
    QTest::newRow("of another kind") << u"scr/a.plb"_s << false;
    QTest::newRow("a dot inside") << u"scr/a.ps.c"_s << false;
}

void TestUpdUtils::findsByAnyPartOfThePath()
{
    QFETCH(const QString, file);
    QFETCH(const bool, isFound);
    const TestProject project;
    project.write(file, QByteArray());
    QCOMPARE(found(project, u"scr"_s), isFound ? QStringList{file} : QStringList());
}

void TestUpdUtils::appendsToTheList()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, QByteArray());
    QList<QFileInfo> files{QFileInfo(u"before"_s)};
    updUtils::findImageFiles(project.path(u"scr"_s), files);
    QCOMPARE(files.size(), 2);
    QCOMPARE(files.at(0).filePath(), u"before"_s);
    QCOMPARE(files.at(1).filePath(), project.path(u"scr/a.psc"_s));
}

void TestUpdUtils::findsNothingWhereThereIsNoFolder()
{
    const TestProject project;
    project.write(u"file.psc"_s, QByteArray());
    QCOMPARE(found(project, u"gone"_s), QStringList());
    QCOMPARE(found(project, u"file.psc"_s), QStringList());
}

void TestUpdUtils::ordersNamesThatDifferInCaseOnly()
{
    const TestProject project;
    for (const QString &file :
         {u"scr/b.psc"_s, u"scr/a.psc"_s, u"scr/B.psc"_s, u"scr/A.psc"_s, u"scr/_.psc"_s, u"scr/\u00c4.psc"_s,
          u"scr/\u00e4.psc"_s, u"scr/z.psc"_s, u"scr/Z/1.psc"_s})
        project.write(file, QByteArray());
    QCOMPARE(found(project, u"scr"_s),
             (QStringList{u"scr/_.psc"_s, u"scr/A.psc"_s, u"scr/a.psc"_s, u"scr/B.psc"_s, u"scr/b.psc"_s,
                          u"scr/Z/1.psc"_s, u"scr/z.psc"_s, u"scr/\u00c4.psc"_s, u"scr/\u00e4.psc"_s}));
}

void TestUpdUtils::findsNoPipesAndNoDanglingLinks()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, QByteArray());
    project.link(u"nowhere"_s, u"scr/b.psc"_s);
    project.link(u"c.psc"_s, u"scr/c.psc"_s);
    QCOMPARE(::mkfifo(QFile::encodeName(project.path(u"scr/d.psc"_s)).constData(), 0666), 0);
    QCOMPARE(found(project, u"scr"_s), QStringList{u"scr/a.psc"_s});
    QVERIFY(searchImageFiles(project.path(u"scr"_s)).isWhole());
}

void TestUpdUtils::findsNothingHidden()
{
    const TestProject project;
    project.write(u"scr/.hidden.psc"_s, QByteArray());
    project.write(u"scr/.folder/a.psc"_s, QByteArray());
    project.write(u"scr/..psc"_s, QByteArray());
    project.write(u"scr/seen.psc"_s, QByteArray());
    QCOMPARE(found(project, u"scr"_s), QStringList{u"scr/seen.psc"_s});
}

void TestUpdUtils::followsLinksToFolders()
{
    const TestProject project;
    project.write(u"elsewhere/a.psc"_s, QByteArray());
    project.write(u"scr/m/b.psc"_s, QByteArray());
    project.link(u"../elsewhere"_s, u"scr/link"_s);
    project.link(u"m"_s, u"scr/same"_s);
    project.link(u"m/b.psc"_s, u"scr/z.psc"_s);
    QCOMPARE(found(project, u"scr"_s),
             (QStringList{u"scr/link/a.psc"_s, u"scr/m/b.psc"_s, u"scr/same/b.psc"_s, u"scr/z.psc"_s}));
}

void TestUpdUtils::neverEntersAFolderThatItIsInsideOf()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, QByteArray());
    project.write(u"scr/sub/b.psc"_s, QByteArray());
    project.link(u"."_s, u"scr/itself"_s);
    project.link(u"../../scr"_s, u"scr/sub/back"_s);
    project.link(project.dir(), u"scr/sub/up"_s);
    QCOMPARE(found(project, u"scr"_s), (QStringList{u"scr/a.psc"_s, u"scr/sub/b.psc"_s}));
}

void TestUpdUtils::findsAllThatAThousandLinksLeadTo()
{
    const TestProject project;
    project.write(u"elsewhere/sub/a.psc"_s, QByteArray());
    project.write(u"scr/z/b.psc"_s, QByteArray());
    // Each leads to a folder with another one in it.
    for (int link = 0; link < mostFoldersOverLinks / 2; ++link)
        project.link(u"../elsewhere"_s, u"scr/link %1"_s.arg(link, 4, 10, '0'_L1));
    const FoundImageFiles files = searchImageFiles(project.path(u"scr"_s));
    QVERIFY(files.isWhole());
    QCOMPARE(files.files.size(), mostFoldersOverLinks / 2 + 1);
}

void TestUpdUtils::leavesOutWhatMoreLinksLeadTo()
{
    const TestProject project;
    project.write(u"elsewhere/a.psc"_s, QByteArray());
    project.write(u"scr/z/b.psc"_s, QByteArray());
    for (int link = 0; link < mostFoldersOverLinks + 2; ++link)
        project.link(u"../elsewhere"_s, u"scr/link %1"_s.arg(link, 4, 10, '0'_L1));
    project.link(u"../elsewhere/a.psc"_s, u"scr/m.psc"_s);
    const FoundImageFiles files = searchImageFiles(project.path(u"scr"_s));
    QVERIFY(!files.isWhole());
    QCOMPARE(files.failures.size(), 1);
    QCOMPARE(
        messageOf(files.failures.first()),
        u"Could not list Folder %1: links lead to more than 1000 folders, of which this one and all after "
        "it are left out"_s.arg(project.path(u"scr/link 1000"_s)));
    // What no link leads to, and a link to a file, is found behind them, too.
    QCOMPARE(files.files.size(), mostFoldersOverLinks + 2);
    QCOMPARE(files.files.at(mostFoldersOverLinks - 1).filePath(), project.path(u"scr/link 0999/a.psc"_s));
    QCOMPARE(files.files.at(mostFoldersOverLinks).filePath(), project.path(u"scr/m.psc"_s));
    QCOMPARE(files.files.last().filePath(), project.path(u"scr/z/b.psc"_s));
}

void TestUpdUtils::findsItsWayOutOfAMaze()
{
    const TestProject project;
    makeMaze(project, u"scr"_s, QByteArray());
    const FoundImageFiles files = searchImageFiles(project.path(u"scr"_s));
    QVERIFY(!files.isWhole());
    QCOMPARE(files.failures.size(), 1);
    QCOMPARE(files.files.constFirst().filePath(), project.path(u"scr/1/2/3/4/5/6/7/a.psc"_s));
    // All that no link leads to, and what was found before the search turned round.
    for (int folder = 1; folder <= 7; ++folder)
        QVERIFY(files.files.contains(QFileInfo(project.path(u"scr/%1/a.psc"_s.arg(folder)))));
    // Four folders deep, in each of which a screen stands behind the links.
    QCOMPARE(files.files.size(), mostFoldersOverLinks + 7 - 4);
}

void TestUpdUtils::movesImageFilesToTheMappedPlace()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, "a"_ba);
    project.write(u"scr/sub/b.psc"_s, "b"_ba);
    QVERIFY(updUtils::moveImageFiles(u"/scr"_s, u"/scr_bak"_s, project.dir()));
    QVERIFY(!project.exists(u"scr"_s));
    QCOMPARE(project.files(u""_s), (QStringList{u"scr_bak/a.psc"_s, u"scr_bak/sub/b.psc"_s}));
    QCOMPARE(project.read(u"scr_bak/sub/b.psc"_s), "b"_ba);
}

void TestUpdUtils::removesAllOfTheSourceOnlyWhenEveryFileWasCopied()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, "a"_ba);
    project.write(u"scr/notes.txt"_s, "a"_ba);
    project.write(u"scr/.hidden.psc"_s, "a"_ba);
    project.write(u"scr_bak/a.psc"_s, "old"_ba);

    QVERIFY(!updUtils::moveImageFiles(u"/scr"_s, u"/scr_bak"_s, project.dir()));
    QCOMPARE(project.files(u"scr"_s), (QStringList{u".hidden.psc"_s, u"a.psc"_s, u"notes.txt"_s}));

    // What is no image file was not copied, and goes away with the folder.
    project.remove(u"scr_bak"_s);
    QVERIFY(updUtils::moveImageFiles(u"/scr"_s, u"/scr_bak"_s, project.dir()));
    QCOMPARE(project.files(u""_s), QStringList{u"scr_bak/a.psc"_s});
}

void TestUpdUtils::leavesWhatCannotBeRemovedFromTheSource()
{
    const TestProject project;
    project.write(u"scr/locked/notes.txt"_s, "notes"_ba);
    project.write(u"scr/a.psc"_s, "a"_ba);
    for (const QString &folder : {u""_s, u"scr"_s})
        QFile::setPermissions(project.path(folder), QFile::Permissions::fromInt(0x7777));
    QFile::setPermissions(project.path(u"scr/locked"_s), QFile::Permissions::fromInt(0x5555));
    {
        const OrdinaryUser user;
        QVERIFY(updUtils::moveImageFiles(u"/scr"_s, u"/scr_bak"_s, project.dir()));
    }
    // The removal stops at the folder, which comes before the files beside it.
    QCOMPARE(project.files(u"scr_bak"_s), QStringList{u"a.psc"_s});
    QCOMPARE(project.files(u"scr"_s), (QStringList{u"a.psc"_s, u"locked/notes.txt"_s}));
}

void TestUpdUtils::mapsEveryOccurrenceInThePath()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, "a"_ba);
    project.write(u"scr/scripts/b.psc"_s, "b"_ba);
    project.write(u"scr/scr.psc"_s, "c"_ba);
    QVERIFY(updUtils::moveImageFiles(u"/scr"_s, u"/scr_bak"_s, project.dir()));
    QCOMPARE(project.files(u""_s),
             (QStringList{u"scr_bak/a.psc"_s, u"scr_bak/scr_bak.psc"_s, u"scr_bak/scr_bakipts/b.psc"_s}));
}

void TestUpdUtils::mapsTheProjectDirectoryToo()
{
    const TestProject project(u"scripts/plant"_s);
    project.write(u"scr/a.psc"_s, "a"_ba);
    QVERIFY(!updUtils::moveImageFiles(u"/scr"_s, u"/scr_bak"_s, project.dir()));
    QCOMPARE(project.files(u""_s), QStringList{u"scr/a.psc"_s});

    QVERIFY(QDir().mkpath(project.beside(u"scr_bakipts/plant"_s)));
    QVERIFY(updUtils::moveImageFiles(u"/scr"_s, u"/scr_bak"_s, project.dir()));
    QCOMPARE(project.files(u""_s), QStringList());
    QCOMPARE(filesBelow(project.beside(u"scr_bakipts"_s)), QStringList{u"plant/scr_bak/a.psc"_s});
}

void TestUpdUtils::triesEveryFileAlsoAfterAFailure()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, "a"_ba);
    project.write(u"scr/b.psc"_s, "b"_ba);
    project.write(u"scr/c.psc"_s, "c"_ba);
    project.write(u"scr_bak/a.psc"_s, "old"_ba);
    project.makeFolder(u"scr_bak/b.psc"_s);
    QVERIFY(!updUtils::moveImageFiles(u"/scr"_s, u"/scr_bak"_s, project.dir()));
    QCOMPARE(project.read(u"scr_bak/c.psc"_s), "c"_ba);
    QCOMPARE(project.files(u"scr"_s).size(), 3);
}

void TestUpdUtils::doesNotOverwrite()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, "new"_ba);
    project.write(u"scr_bak/a.psc"_s, "old"_ba);
    QVERIFY(!updUtils::moveImageFiles(u"/scr"_s, u"/scr_bak"_s, project.dir()));
    QCOMPARE(project.read(u"scr_bak/a.psc"_s), "old"_ba);
    QCOMPARE(project.read(u"scr/a.psc"_s), "new"_ba);
}

void TestUpdUtils::makesOneLevelOfFoldersOnly()
{
    const TestProject project;
    project.write(u"scr/area/deep/a.psc"_s, "a"_ba);
    QVERIFY(!updUtils::moveImageFiles(u"/scr"_s, u"/scr_bak"_s, project.dir()));
    QCOMPARE(project.files(u""_s), QStringList{u"scr/area/deep/a.psc"_s});
    QVERIFY(!project.exists(u"scr_bak"_s));

    // A file that is found later at the top makes the folder too late for this one.
    project.write(u"scr/z.psc"_s, "z"_ba);
    QVERIFY(!updUtils::moveImageFiles(u"/scr"_s, u"/scr_bak"_s, project.dir()));
    QCOMPARE(project.files(u"scr_bak"_s), QStringList{u"z.psc"_s});
}

void TestUpdUtils::makesFoldersWithTheirParentsWhenAskedTo()
{
    const TestProject project;
    project.write(u"scr/area/deep/a.psc"_s, "a"_ba);
    QVERIFY(updUtils::moveImageFiles(u"/scr"_s, u"/scr_bak"_s, project.dir(), FolderCreation::WithParents));
    QCOMPARE(project.files(u""_s), QStringList{u"scr_bak/area/deep/a.psc"_s});
}

void TestUpdUtils::leavesASourceThatCouldNotBeListed()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, "a"_ba);
    project.write(u"scr/sub/b.psc"_s, "b"_ba);
    for (const QString &folder : {u""_s, u"scr"_s})
        QFile::setPermissions(project.path(folder), QFile::Permissions::fromInt(0x7777));
    QFile::setPermissions(project.path(u"scr/sub"_s), QFile::Permissions::fromInt(0));
    LogRecorder log;
    {
        const OrdinaryUser user;
        QVERIFY(!updUtils::moveImageFiles(u"/scr"_s, u"/scr_bak"_s, project.dir()));
    }
    QFile::setPermissions(project.path(u"scr/sub"_s), QFile::Permissions::fromInt(0x7777));
    QCOMPARE(project.files(u""_s), (QStringList{u"scr/a.psc"_s, u"scr/sub/b.psc"_s, u"scr_bak/a.psc"_s}));
    QCOMPARE(log.entries, QStringList{u"error: Could not list Folder %1: Permission denied"_s.arg(
                              project.path(u"scr/sub"_s))});
}

/// The files behind it are there: no disk is to blame.
void TestUpdUtils::saysNothingOfALinkInTheWay()
{
    const TestProject project;
    project.write(u"scr_temp/area/a.psc"_s, "new"_ba);
    project.write(u"elsewhere/a.psc"_s, "old"_ba);
    project.makeFolder(u"scr"_s);
    project.link(u"../elsewhere"_s, u"scr/area"_s);
    LogRecorder log;
    QVERIFY(!updUtils::moveImageFiles(u"/scr_temp"_s, u"/scr"_s, project.dir()));
    QCOMPARE(log.entries, QStringList());
    QCOMPARE(project.read(u"elsewhere/a.psc"_s), "old"_ba);
    QCOMPARE(project.read(u"scr_temp/area/a.psc"_s), "new"_ba);
}

void TestUpdUtils::leavesASourceWithANameThatIsNotText()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, "a"_ba);
    writeOddly(project.path(u"scr"_s), "f\xe4.psc");
    const FoundImageFiles files = searchImageFiles(project.path(u"scr"_s));
    QCOMPARE(files.unnamable, QList<QByteArray>{QFile::encodeName(project.path(u"scr/f"_s)) + "\xe4.psc"});
    QCOMPARE(shownPath(files.unnamable.first()), project.path(u"scr/f\\xe4.psc"_s));

    QVERIFY(!updUtils::moveImageFiles(u"/scr"_s, u"/scr_bak"_s, project.dir()));
    QCOMPARE(::access(files.unnamable.first().constData(), F_OK), 0);
    QCOMPARE(project.read(u"scr/a.psc"_s), "a"_ba);

    // Hidden or of another kind, it counts as little as any other.
    QCOMPARE(::rename(files.unnamable.first().constData(),
                      QFile::encodeName(project.path(u"scr/f"_s)).append("\xe4.txt").constData()),
             0);
    project.remove(u"scr_bak"_s);
    QVERIFY(updUtils::moveImageFiles(u"/scr"_s, u"/scr_bak"_s, project.dir()));
    QVERIFY(!project.exists(u"scr"_s));
}

void TestUpdUtils::leavesASourceWithTooManyLinks()
{
    const TestProject project;
    makeMaze(project, u"scr"_s, "a"_ba);
    project.write(u"scr/z.psc"_s, "z"_ba);
    const QStringList before = project.files(u"scr"_s);
    QVERIFY(!updUtils::moveImageFiles(u"/scr"_s, u"/scr_bak"_s, project.dir(), FolderCreation::WithParents));
    QCOMPARE(project.files(u"scr"_s), before);
    QCOMPARE(project.read(u"scr_bak/z.psc"_s), "z"_ba);
}

void TestUpdUtils::countsNothingToMoveAsMoved_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("no source") << u"other/a.psc"_s;
    QTest::newRow("a source without image files") << u"scr/sub/a.txt"_s;
}

void TestUpdUtils::countsNothingToMoveAsMoved()
{
    QFETCH(const QString, file);
    const TestProject project;
    project.write(file, "a"_ba);
    QVERIFY(updUtils::moveImageFiles(u"/scr"_s, u"/scr_bak"_s, project.dir()));
    QVERIFY(!project.exists(u"scr"_s));
    QVERIFY(!project.exists(u"scr_bak"_s));
}

void TestUpdUtils::movesBetweenPathsOfAnyForm_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<QStringList>("files");
    const QStringList below{u"there/a.psc"_s, u"there/sub/b.psc"_s};
    QTest::newRow("relative") << u"here"_s << u"there"_s << below;
    QTest::newRow("with a separator at the end") << u"here/"_s << u"there/"_s << below;
    QTest::newRow("with two separators") << u"here//"_s << u"there/"_s << below;
    QTest::newRow("to where the program was started")
        << u"here/"_s << u""_s << QStringList{u"a.psc"_s, u"sub/b.psc"_s};
}

void TestUpdUtils::movesBetweenPathsOfAnyForm()
{
    QFETCH(const QString, from);
    QFETCH(const QString, to);
    const TestProject project;
    project.write(u"here/a.psc"_s, "a"_ba);
    project.write(u"here/sub/b.psc"_s, "b"_ba);
    // Not every form names the folders as they are mapped.
    project.makeFolder(u"there/sub"_s);
    project.makeFolder(u"sub"_s);
    const QString startFolder = QDir::currentPath();
    QVERIFY(QDir::setCurrent(project.dir()));
    const bool isMoved = updUtils::moveImageFiles(from, to, QString());
    QVERIFY(QDir::setCurrent(startFolder));
    QVERIFY(isMoved);
    QTEST(project.files(u""_s), "files");
}

void TestUpdUtils::copiesEveryByte()
{
    QByteArray bytes;
    for (int byte = 0; byte <= 0xff; ++byte)
        bytes += static_cast<char>(byte);
    bytes = bytes.repeated(300);
    const TestProject project;
    project.write(u"scr/a.psc"_s, bytes);
    project.write(u"scr/empty.psc"_s, QByteArray());
    QVERIFY(updUtils::moveImageFiles(u"/scr"_s, u"/scr_bak"_s, project.dir()));
    QCOMPARE(project.read(u"scr_bak/a.psc"_s), bytes);
    QVERIFY(project.exists(u"scr_bak/empty.psc"_s));
    QCOMPARE(project.read(u"scr_bak/empty.psc"_s), QByteArray());
}

void TestUpdUtils::makesFolders()
{
    const TestProject project;
    const RootFolder root(project.dir());
    FolderMaker folders(root, FolderCreation::OneLevel);
    folders.make(project.path(u"a/b"_s), project.dir());
    QVERIFY(!project.exists(u"a"_s));
    folders.make(project.path(u"a"_s), project.dir());
    QVERIFY(project.exists(u"a"_s));
    folders.make(project.path(u"a"_s), project.dir());
    FolderMaker(root, FolderCreation::WithParents).make(project.path(u"c/d/e"_s), project.dir());
    QVERIFY(project.exists(u"c/d/e"_s));
}

void TestUpdUtils::givesCopiesOfFoldersTheirRights()
{
    const TestProject project;
    project.write(u"scr/open/closed/a.psc"_s, "a");
    project.write(u"scr/b.psc"_s, "b");
    constexpr std::array rights{mode_t(0750), mode_t(02775), mode_t(0500)};
    const QStringList names{u"scr"_s, u"scr/open"_s, u"scr/open/closed"_s};
    for (std::size_t index = 0; index < rights.size(); ++index) {
        const QByteArray folder = QFile::encodeName(project.path(names.at(static_cast<qsizetype>(index))));
        QCOMPARE(chmod(folder.constData(), rights.at(index)), 0);
    }
    QVERIFY(
        updUtils::transferImageFiles(u"/scr"_s, u"/scr_bak"_s, project.dir(), FolderCreation::WithParents));
    const auto rightsOf = [&project](const QString &name) {
        struct stat status = {};
        return stat(QFile::encodeName(project.path(name)).constData(), &status) == 0 ? status.st_mode & 07777
                                                                                     : 0;
    };
    QCOMPARE(rightsOf(u"scr_bak"_s), mode_t(0750));
    QCOMPARE(rightsOf(u"scr_bak/open"_s), mode_t(02775));
    QCOMPARE(rightsOf(u"scr_bak/open/closed"_s), mode_t(0700)); // or nobody could write into it
    project.makeFolder(u"there"_s);
    const mode_t before = rightsOf(u"there"_s);
    const RootFolder root(project.dir());
    FolderMaker(root, FolderCreation::OneLevel).make(project.path(u"there"_s), project.path(u"scr/open"_s));
    QCOMPARE(rightsOf(u"there"_s), before);
}

void TestUpdUtils::makesAFolderAgainUntilItIsThere()
{
    const TestProject project;
    const RootFolder root(project.dir());
    FolderMaker folders(root, FolderCreation::OneLevel);
    folders.make(project.path(u"a/b"_s), project.dir());
    QVERIFY(!project.exists(u"a/b"_s));
    folders.make(project.path(u"a"_s), project.dir());
    folders.make(project.path(u"a/b"_s), project.dir());
    QVERIFY(project.exists(u"a/b"_s));
}

void TestUpdUtils::removesFoldersOfAnyDepth()
{
    const TestProject project;
    project.makeFolder(u"tree"_s);
    makeDeepFolders(project.path(u"tree"_s), veryDeep);
    bool isRemoved = false;
    onSmallStack([&] { isRemoved = updUtils::removeDir(project.path(u"tree"_s)); });
    QVERIFY(isRemoved);
    QVERIFY(!project.exists(u"tree"_s));
}

/// As far as a path leads, and says that it goes no further.
void TestUpdUtils::searchesFoldersOfAnyDepth()
{
    const TestProject project;
    project.write(u"scr/a.psc"_s, "a"_ba);
    makeDeepFolders(project.path(u"scr"_s), veryDeep);
    FoundImageFiles found;
    onSmallStack([&] { found = searchImageFiles(project.path(u"scr"_s)); });
    QCOMPARE(found.files.size(), 1);
    QCOMPARE(found.failures.size(), 1);
    QCOMPARE(found.failures.first().reason, u"File name too long"_s);
    QVERIFY(updUtils::removeDir(project.path(u"scr"_s)));
}

void TestUpdUtils::looksForBitmapsAtAnyDepth()
{
    const TestProject project;
    project.write(u"lib/bmp/pump.png"_s, "a"_ba);
    makeDeepFolders(project.path(u"lib/bmp"_s), veryDeep);
    bool isFound = false;
    onSmallStack([&] { isFound = BitmapFolders(project.path(u"lib"_s)).contains(u"pump.png"_s); });
    QVERIFY(isFound);
    QVERIFY(updUtils::removeDir(project.path(u"lib"_s)));
}

VANTREL_TEST(QCoreApplication, TestUpdUtils)
#include "tst_updutils.moc"
