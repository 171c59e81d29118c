// The files from before a run are found wherever they lie, and come back as they were.
#include "EarlierFiles.h"
#include "Interruption.h"
#include "RootFolder.h"
#include "RunSummary.h"
#include "TestProject.h"
#include "TestSuite.h"

#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

const QString first = u"2026-03-01_00-00-00"_s;
const QString second = u"2026-03-02_00-00-00"_s;
const QString undone = u"2026-03-03_00-00-00"_s;

/// Two runs, each of which changed both screens, and an undoing between and behind them.
void makeHistory(const TestProject &project)
{
    const auto keep = [&project](const QString &entry, HistoryKind kind) {
        const RunHistory history(project.dir());
        QCOMPARE(history.make(entry), QString());
        RunSummary summary;
        summary.kind = kind;
        QCOMPARE(writeSummary(RootFolder(project.dir()), history.pathOf(entry), summary), QString());
    };
    keep(first, HistoryKind::Run);
    keep(second, HistoryKind::Run);
    keep(undone, HistoryKind::Undo);
    const QString root = u".vantrel.history/"_s;
    project.write(root + first + u"/scr/notes.txt"_s, "notes");
    project.write(root + second + u"/scr_bak/a.psc"_s, "a1");
    project.write(root + second + u"/scr_bak/scr_bakipt/b.psc"_s, "b1");
    project.write(root + undone + u"/scr/a.psc"_s, "made");
    project.write(u"scr_bak/a.psc"_s, "a2");
    project.write(u"scr_bak/scr_bakipt/b.psc"_s, "b2");
    project.write(u"scr/a.psc"_s, "a3");
    project.write(u"scr/script/b.psc"_s, "b3");
}

QStringList namesIn(const EarlierFiles &earlier)
{
    QStringList names;
    for (const EarlierFile &file : earlier.files())
        names.append(file.name);
    return names;
}

QByteArray bytesOf(const EarlierFiles &earlier, const QString &name)
{
    const EarlierFile *found = earlier.find(name);
    QFile file(found == nullptr ? QString() : found->path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class TestEarlierFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsTheScreensBeforeTheLastRun();
    void findsTheScreensAndFilesBeforeAnEarlierRun();
    void findsWhatAnUndoingReplaced();
    void findsNothingOfAnUnknownRun();
    void prefersTheBackupToWhatWasLeftOfTheScreens();
    void bringsAFileBackAsOldAsItWas();
    void keepsWhatItReplaces();
    void leavesWhatIsThereAlready();
    void neitherFollowsLinksNorTakesNamesThatAreNoText();
    void stopsListingWhenAskedTo();
};

void TestEarlierFiles::findsTheScreensBeforeTheLastRun()
{
    const TestProject project;
    makeHistory(project);
    const EarlierFiles earlier(project.dir(), second);
    QCOMPARE(namesIn(earlier), (QStringList{u"a.psc"_s, u"script/b.psc"_s}));
    QCOMPARE(bytesOf(earlier, u"a.psc"_s), "a2");
    QCOMPARE(bytesOf(earlier, u"script/b.psc"_s), "b2");
}

void TestEarlierFiles::findsTheScreensAndFilesBeforeAnEarlierRun()
{
    const TestProject project;
    makeHistory(project);
    const EarlierFiles earlier(project.dir(), first);
    QCOMPARE(namesIn(earlier), (QStringList{u"a.psc"_s, u"notes.txt"_s, u"script/b.psc"_s}));
    QCOMPARE(bytesOf(earlier, u"a.psc"_s), "a1");
    QCOMPARE(bytesOf(earlier, u"notes.txt"_s), "notes");
    QVERIFY(earlier.find(u"a.psc"_s)->isScreen);
    QVERIFY(!earlier.find(u"notes.txt"_s)->isScreen);
    QVERIFY(earlier.find(u"b.psc"_s) == nullptr);
}

void TestEarlierFiles::findsWhatAnUndoingReplaced()
{
    const TestProject project;
    makeHistory(project);
    const EarlierFiles earlier(project.dir(), undone);
    QCOMPARE(namesIn(earlier), QStringList{u"a.psc"_s});
    QCOMPARE(bytesOf(earlier, u"a.psc"_s), "made");
}

void TestEarlierFiles::findsNothingOfAnUnknownRun()
{
    const TestProject project;
    QCOMPARE(namesIn(EarlierFiles(project.dir(), first)), QStringList());
}

void TestEarlierFiles::prefersTheBackupToWhatWasLeftOfTheScreens()
{
    const TestProject project;
    makeHistory(project);
    // A run that copies leaves its screens where they are.
    project.write(u".vantrel.history/"_s + first + u"/scr/a.psc"_s, "left");
    const EarlierFiles earlier(project.dir(), first);
    QCOMPARE(namesIn(earlier).count(u"a.psc"_s), 1);
    QCOMPARE(bytesOf(earlier, u"a.psc"_s), "a1");
}

void TestEarlierFiles::bringsAFileBackAsOldAsItWas()
{
    const TestProject project;
    makeHistory(project);
    const QString kept = project.path(u".vantrel.history/"_s + first + u"/scr/notes.txt"_s);
    const QDateTime time(QDate(2001, 2, 3), QTime(4, 5, 6));
    QFile file(kept);
    QVERIFY(file.open(QIODevice::ReadWrite) && file.setFileTime(time, QFileDevice::FileModificationTime));
    file.close();
    EarlierFiles earlier(project.dir(), first);
    QCOMPARE(earlier.restore(*earlier.find(u"notes.txt"_s)), QString());
    QCOMPARE(project.read(u"scr/notes.txt"_s), "notes");
    QCOMPARE(QFileInfo(project.path(u"scr/notes.txt"_s)).lastModified(), time);
    QCOMPARE(earlier.restoredFiles(), 1);
    QCOMPARE(earlier.replacedEntry(), QString());
    // It may be wanted once more.
    QVERIFY(QFileInfo::exists(kept));
}

void TestEarlierFiles::keepsWhatItReplaces()
{
    const TestProject project;
    makeHistory(project);
    EarlierFiles earlier(project.dir(), first);
    for (const EarlierFile &wanted : earlier.files())
        QCOMPARE(earlier.restore(wanted), QString());
    QCOMPARE(project.read(u"scr/a.psc"_s), "a1");
    QCOMPARE(project.read(u"scr/script/b.psc"_s), "b1");
    QVERIFY(!earlier.replacedEntry().isEmpty());
    const EarlierFiles replaced(project.dir(), earlier.replacedEntry());
    QCOMPARE(bytesOf(replaced, u"a.psc"_s), "a3");
    QCOMPARE(bytesOf(replaced, u"script/b.psc"_s), "b3");
    const std::optional<RunSummary> summary =
        readSummary(RunHistory(project.dir()).pathOf(earlier.replacedEntry()));
    QVERIFY(summary);
    QCOMPARE(summary->kind, HistoryKind::Restore);
    QCOMPARE(summary->about, first);
}

void TestEarlierFiles::leavesWhatIsThereAlready()
{
    const TestProject project;
    makeHistory(project);
    project.write(u"scr/a.psc"_s, "a2");
    EarlierFiles earlier(project.dir(), second);
    QCOMPARE(earlier.restore(*earlier.find(u"a.psc"_s)), QString());
    QCOMPARE(earlier.restoredFiles(), 0);
    QCOMPARE(RunHistory(project.dir()).entries().size(), 3);
}

void TestEarlierFiles::neitherFollowsLinksNorTakesNamesThatAreNoText()
{
    const TestProject project;
    makeHistory(project);
    project.write(u"elsewhere/c.psc"_s, "c");
    const QString left = u".vantrel.history/"_s + first + u"/scr/"_s;
    project.link(project.path(u"elsewhere"_s), left + u"folder"_s);
    project.link(project.path(u"elsewhere/c.psc"_s), left + u"c.psc"_s);
    const QByteArray name = QFile::encodeName(project.path(left)) + "\xff";
    QVERIFY(rename(QFile::encodeName(project.path(left + u"notes.txt"_s)), name) == 0);
    const EarlierFiles earlier(project.dir(), first);
    QCOMPARE(namesIn(earlier), (QStringList{u"a.psc"_s, u"script/b.psc"_s}));
    QCOMPARE(earlier.unreadable().size(), 1);
}

void TestEarlierFiles::stopsListingWhenAskedTo()
{
    const TestProject project;
    makeHistory(project);
    const InterruptionScope scope([] { return true; });
    QVERIFY_THROWS_EXCEPTION(WorkInterrupted, EarlierFiles(project.dir(), first));
}

VANTREL_TEST(QCoreApplication, TestEarlierFiles)
#include "tst_earlierfiles.moc"
