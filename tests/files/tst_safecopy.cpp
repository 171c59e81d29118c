// Putting a copy of a file into the place of another one.
#include "RootFolder.h"
#include "SafeCopy.h"
#include "TestProject.h"
#include "TestSuite.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestSafeCopy final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void putsCopiesInPlace();
    void leavesWhatItCannotReplace();
    void makesNothingOfWhatCannotBeCopied();
};

void TestSafeCopy::putsCopiesInPlace()
{
    const TestProject project;
    project.write(u"from.psc"_s, "new");
    project.write(u"scr/to.psc"_s, "old");
    for (const QString &target : {u"scr/to.psc"_s, u"scr/area/made.psc"_s}) {
        QCOMPARE(putCopy(project.path(u"from.psc"_s), RootFolder(project.dir()), project.path(target)),
                 QString());
        QCOMPARE(project.read(target), "new");
    }
    QCOMPARE(project.files(u"scr"_s), (QStringList{u"area/made.psc"_s, u"to.psc"_s}));
}

void TestSafeCopy::leavesWhatItCannotReplace()
{
    const TestProject project;
    project.write(u"from.psc"_s, "new");
    project.write(u"scr/to.psc/kept.txt"_s, "kept");
    QCOMPARE(putCopy(project.path(u"from.psc"_s), RootFolder(project.dir()), project.path(u"scr/to.psc"_s)),
             project.path(u"scr/to.psc"_s) + " could not be put in place: Is a directory"_L1);
    QCOMPARE(project.files(u"scr"_s), QStringList{u"to.psc/kept.txt"_s});
}

void TestSafeCopy::makesNothingOfWhatCannotBeCopied()
{
    const TestProject project;
    project.write(u"scr/to.psc"_s, "old");
    const QString error =
        putCopy(project.path(u"missing.psc"_s), RootFolder(project.dir()), project.path(u"scr/to.psc"_s));
    QVERIFY2(error.endsWith(": No such file or directory"_L1), qPrintable(error));
    QCOMPARE(project.read(u"scr/to.psc"_s), "old");
    QCOMPARE(project.files(u"scr"_s), QStringList{u"to.psc"_s});
}

VANTREL_TEST(QCoreApplication, TestSafeCopy)
#include "tst_safecopy.moc"
