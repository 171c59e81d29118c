// Runs that are killed, one stage after the other, and what the window makes of what is left.
#include "LeftOverRun.h"
#include "StartedWindow.h"
#include "Surroundings.h"
#include "TestProject.h"
#include "TestSuite.h"

#include <QApplication>
#include <QMap>
#include <QProcess>
#include <QSet>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 60'000; // milliseconds

using Files = QMap<QString, QByteArray>;

const Files originals{
    {u"00.psc"_s, "ID;1;Rect;a\nLIB;pump.plb;1;Plant/1;Obj/1\nPSDV;9;9;28;28;2;1;15;8;1;0;1;0\n"},
    {u"hall/00.psc"_s, "ID;1;Rect;b\nLIB;pump.plb;1;Plant/2;Obj/2\nPSDV;5;5;24;24;2;1;15;8;1;0;1;0\n"},
    {u"hall/b.psc"_s, "ID;1;Rect;c\nPSDV;0;0;99;49;2;1;15;8;1;0;0\n"},
};

/// How a run moves screens.
enum class Moves { ByRenaming, ByCopying };

void makeProject(const TestProject &project, Moves moves)
{
    for (auto screen = originals.cbegin(); screen != originals.cend(); ++screen)
        project.write(u"scr/"_s + screen.key(), screen.value());
    project.write(u"scr_bak/older.psc"_s, "older");
    project.write(u"mac/pump.plb"_s, "ID;1;Ellipse;Body\nLIB;pump.plb;2;Lib/Pump;Lib/Pump\n"
                                     "PSDV;0;0;19;19;2;1;7;0;2;0;0;0\n");
    project.makeFolder(u"log"_s);
    // A screen of two names is not sure to arrive by renaming.
    if (moves == Moves::ByCopying)
        QProcess::execute(u"ln"_s, {project.path(u"scr/hall/b.psc"_s), project.beside(u"b.psc"_s)});
}

Files below(const TestProject &project, const QString &folder)
{
    Files files;
    for (const QString &file : project.files(folder))
        files.insert(file, project.read(folder + u'/' + file));
    return files;
}

/// Runs the companion over the project, killed at a call where one is named. Returns whether it was.
bool isKilled(const TestProject &project, const QString &call = {}, int number = 0)
{
    QStringList run{QStringLiteral(VANTREL_CLI), u"update"_s,  u"--project"_s, project.dir(),
                    u"--all-shapes"_s,           u"--quiet"_s, u"--force"_s};
    // Only where nothing is kept, anything is removed.
    if (call == "unlinkat"_L1)
        run += {u"--keep-runs"_s, u"0"_s};
    QStringList command{u"strace"_s, u"-f"_s, u"-qq"_s, u"-o"_s, u"/dev/null"_s, u"-e"_s, "trace="_L1 + call};
    command += {u"-e"_s, u"inject=%1:signal=SIGKILL:when=%2"_s.arg(call).arg(number)};
    command = call.isEmpty() ? run : command + run;
    QProcess process;
    // Leaks cannot be looked for in a process that is traced.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"ASAN_OPTIONS"_s, u"detect_leaks=0"_s);
    process.setProcessEnvironment(environment);
    process.start(command.takeFirst(), command);
    if (!process.waitForFinished(patience))
        qFatal("the run does not end: %s", qPrintable(process.errorString()));
    if (process.exitStatus() == QProcess::NormalExit && process.exitCode() != 0)
        qFatal("the run failed: %s", process.readAllStandardError().constData());
    return process.exitStatus() == QProcess::CrashExit;
}

/// What an undisturbed run makes of the screens.
const Files &conversions()
{
    static const Files files = [] {
        const TestProject project;
        makeProject(project, Moves::ByRenaming);
        if (isKilled(project))
            qFatal("nobody kills this run");
        return below(project, u"scr"_s);
    }();
    return files;
}

/// The stage at which an interrupted run has ended.
std::optional<RunStage> stageIn(const TestProject &project)
{
    const LeftOverRun run(project.dir());
    return run.kind() == LeftOver::Run ? std::optional(run.record().state.stage) : std::nullopt;
}

QStringList lostScreens(const TestProject &project)
{
    QStringList lost;
    for (auto screen = originals.cbegin(); screen != originals.cend(); ++screen) {
        if (project.read(u"scr/"_s + screen.key()) != screen.value() &&
            project.read(u"scr_bak/"_s + screen.key()) != screen.value())
            lost += screen.key();
    }
    return lost;
}

/// Looks at every screen.
void look(const TestProject &project, const QString &button)
{
    const bool isPutBack = button == "btnPutBack"_L1;
    QCOMPARE(below(project, u"scr"_s), isPutBack ? originals : conversions());
    if (!isPutBack)
        QCOMPARE(below(project, u"scr_bak"_s), originals);
    QVERIFY(!project.exists(u"scr_temp"_s));
    QVERIFY(!stageIn(project));
}

void recover(const TestProject &project, const QString &button)
{
    const Files before = below(project, u""_s);
    const StartedWindow window(project);
    QTRY_VERIFY_WITH_TIMEOUT(window.question(), patience);
    StartedWindow::press(window.button(button));
    if (button == "btnCancel"_L1) {
        QTRY_VERIFY_WITH_TIMEOUT(!window.question(), patience);
        QCOMPARE(below(project, u""_s), before);
        return;
    }
    // A run that is performed again ends as any run does.
    QTRY_VERIFY_WITH_TIMEOUT(window.end() || window->logMessages().contains(u"End"_s), patience);
    look(project, button);
}

} // namespace

Q_DECLARE_METATYPE(Moves)

class TestKilledRuns final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { forgetSettings(); }

    void areRecoveredInTheWindow_data();
    void areRecoveredInTheWindow();
};

void TestKilledRuns::areRecoveredInTheWindow_data()
{
    QTest::addColumn<Moves>("moves");
    QTest::addColumn<QString>("call");
    QTest::addColumn<QSet<RunStage>>("stagesMet");
    QTest::addColumn<QString>("button");
    const QSet all{RunStage::Converting, RunStage::Discarding, RunStage::BackingUp, RunStage::Removing,
                   RunStage::CopyingBack};
    for (const QString &button : {u"btnPutBack"_s, u"btnComplete"_s, u"btnCancel"_s}) {
        const QByteArray name = button.sliced(3).toLatin1();
        QTest::addRow("%s, renaming", name.constData())
            << Moves::ByRenaming << u"renameat"_s << all << button;
        QTest::addRow("%s, renaming folders only", name.constData())
            << Moves::ByCopying << u"renameat"_s << all << button;
        QTest::addRow("%s, copying", name.constData())
            << Moves::ByCopying << u"linkat"_s
            << QSet{RunStage::Converting, RunStage::BackingUp, RunStage::CopyingBack} << button;
        QTest::addRow("%s, removing", name.constData()) << Moves::ByCopying << u"unlinkat"_s << all << button;
    }
}

void TestKilledRuns::areRecoveredInTheWindow()
{
    QFETCH(const Moves, moves);
    QFETCH(const QString, call);
    QFETCH(const QString, button);
    QSet<RunStage> stages;
    int number = 0;
    for (bool wasKilled = true; wasKilled;) {
        const TestProject project;
        makeProject(project, moves);
        wasKilled = isKilled(project, call, ++number);
        QCOMPARE(lostScreens(project), QStringList());
        const std::optional<RunStage> stage = stageIn(project);
        if (!stage || stage == RunStage::Done)
            continue;
        stages.insert(*stage);
        recover(project, button);
        if (QTest::currentTestFailed())
            QFAIL(qPrintable(u"killed at %1 %2"_s.arg(call).arg(number)));
    }
    QFETCH(const QSet<RunStage>, stagesMet);
    QCOMPARE(stages, stagesMet);
}

VANTREL_TEST(QApplication, TestKilledRuns)
#include "tst_killedruns.moc"
