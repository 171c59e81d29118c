// Reading a project, and trying a run on a stand-in, may end between any two files.
#include "EditScript.h"
#include "FileDiff.h"
#include "Interruption.h"
#include "ProjectSurvey.h"
#include "ScratchProject.h"
#include "ShapeCatalogue.h"
#include "TestProject.h"
#include "TestSuite.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <atomic>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

using Work = std::function<void(const TestProject &project)>;

void makePlant(const TestProject &project)
{
    for (const QString &screen : {u"a.psc"_s, u"x/b.psc"_s, u"x/c.psc"_s, u"y/d.psc"_s}) {
        project.write("scr/"_L1 + screen, "ID;1;Rect;Frame\nPSDV;0;0;99;49;2;1;15;8;1;0;0\n");
        project.write("scr_temp/"_L1 + screen, "old");
    }
}

/// Does the work again and again, each time ended one question later, until it comes to its end.
/// Returns how often it was ended.
int endAtEachQuestion(const Work &work, const TestProject &project, const std::function<void()> &look)
{
    for (int ended = 0;; ++ended) {
        std::atomic<int> left = ended;
        const InterruptionScope scope([&left] { return left-- <= 0; });
        try {
            work(project);
            return ended;
        } catch (const WorkInterrupted &) {
            look();
        }
    }
}

} // namespace

Q_DECLARE_METATYPE(Work)

class TestReviewStop final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void endsBetweenFiles_data();
    void endsBetweenFiles();
};

void TestReviewStop::endsBetweenFiles_data()
{
    QTest::addColumn<Work>("work");
    QTest::addColumn<int>("questions");
    const auto row = [](const char *name, int questions, const Work &work) {
        QTest::newRow(name) << work << questions;
    };
    constexpr int screens = 4;
    constexpr int folders = 3;
    constexpr int missingBackup = 1;
    // Folders are searched for screens, all in them is looked at, and screens are read.
    row("surveying", folders + (screens + folders - 1) + missingBackup + screens,
        [](const TestProject &project) { surveyProject(project.dir(), true); });
    // What an older "scr_temp" holds is copied.
    row("making a stand-in", 2 * (screens + folders - 1) + screens,
        [](const TestProject &project) { const ScratchProject standIn(project.dir()); });
    row("comparing two versions", 1, [](const TestProject &project) {
        compareFiles(u"a.psc"_s, {project.path(u"scr/a.psc"_s), u"a"_s},
                     {project.path(u"scr/a.psc"_s), u"b"_s});
    });
    row("comparing lines", 4, [](const TestProject & /*project*/) { hunksBetween("a\nb\n", "a\nc\n"); });
    row("comparing many lines", 5, [](const TestProject & /*project*/) {
        // Each piece covers somewhat more than a thousand of them.
        constexpr int lines = 6000;
        editScript(std::vector<int>(lines, 1), std::vector<int>(lines, 2));
    });
    row("reading a shape", 1,
        [](const TestProject &project) { ShapeCatalogue(project.dir()).shape(u"pump.plb"_s); });
}

void TestReviewStop::endsBetweenFiles()
{
    QFETCH(const Work, work);
    QFETCH(const int, questions);
    const TestProject project;
    makePlant(project);
    project.makeFolder(u"../temporary"_s);
    qputenv("TMPDIR", QFile::encodeName(project.beside(u"temporary"_s)));
    const QStringList before = filesBelow(project.beside(QString()));
    const auto look = [&] {
        QCOMPARE(filesBelow(project.beside(QString())), before);
        QVERIFY(QDir(project.beside(u"temporary"_s)).isEmpty());
    };
    QCOMPARE(endAtEachQuestion(work, project, look), questions);
    qunsetenv("TMPDIR");
}

VANTREL_TEST(TestSuite::NoApplication, TestReviewStop)
#include "tst_reviewstop.moc"
