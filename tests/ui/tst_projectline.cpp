// Ways to choose a project: dropped, remembered, proposed.
#include "ProjectCompleter.h"
#include "ProjectFolder.h"
#include "RecentProjects.h"
#include "Surroundings.h"
#include "TestSuite.h"
#include "TestWindow.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QDir>
#include <QDropEvent>
#include <QFileDialog>
#include <QMimeData>
#include <QSettings>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// A project with one screen and a shape, beside a folder that is none.
std::unique_ptr<TestProject> plant()
{
    auto project = std::make_unique<TestProject>();
    project->write(u"scr/north/a.psc"_s, "LIB;a\n");
    project->write(u"mac/pump.plb"_s, "");
    project->write(u"../other/deep/b.txt"_s, "");
    return project;
}

std::unique_ptr<QMimeData> files(const QList<QUrl> &urls)
{
    auto data = std::make_unique<QMimeData>();
    data->setUrls(urls);
    return data;
}

std::unique_ptr<QMimeData> file(const QString &path)
{
    return files({QUrl::fromLocalFile(path)});
}

/// Drags data over a widget and drops it. Returns whether the widget would have it.
bool drop(QWidget &widget, const QMimeData &data, Qt::DropActions offered = Qt::CopyAction | Qt::MoveAction,
          Qt::DropAction *taken = nullptr)
{
    QDragEnterEvent enter({5, 5}, offered, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QCoreApplication::sendEvent(&widget, &enter);
    if (!enter.isAccepted())
        return false;
    QDragMoveEvent move({5, 5}, offered, &data, Qt::LeftButton, Qt::NoModifier);
    move.ignore();
    QCoreApplication::sendEvent(&widget, &move);
    if (!move.isAccepted())
        return false;
    QDropEvent event({5, 5}, offered, &data, Qt::LeftButton, Qt::NoModifier);
    event.ignore();
    QCoreApplication::sendEvent(&widget, &event);
    if (taken != nullptr)
        *taken = event.dropAction();
    return event.isAccepted();
}

/// Types a text into an empty line, and returns the list of what is proposed for it.
QAbstractItemView *proposalsFor(TestWindow &window, const QString &text)
{
    window.ui.lnProjectPath->setFocus();
    window.ui.lnProjectPath->clear();
    QTest::keyClicks(window.ui.lnProjectPath, text);
    return window.ui.lnProjectPath->completer()->popup();
}

/// Shows the window, and returns the list when it is seen; nothing where it does not come.
QAbstractItemView *openProposals(TestWindow &window, const QString &text)
{
    window.show();
    if (!QTest::qWaitForWindowActive(&window))
        return nullptr;
    QAbstractItemView *popup = proposalsFor(window, text);
    return QTest::qWaitFor([popup] { return popup->isVisible(); }) ? popup : nullptr;
}

/// A plant that the window remembers.
auto knownPlant()
{
    auto project = plant();
    rememberProject(project->dir());
    return project;
}

QStringList proposals(const TestWindow &window)
{
    const QAbstractItemModel &model = *window.ui.lnProjectPath->completer()->completionModel();
    QStringList texts;
    for (int row = 0; row < model.rowCount(); ++row)
        texts += model.index(row, 0).data().toString();
    return texts;
}

} // namespace

class TestProjectLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { forgetSettings(); }

    void findsTheProjectOfAPath_data();
    void findsTheProjectOfAPath();

    void takesADroppedProject_data();
    void takesADroppedProject();
    void takesNothingThatIsOnlyDraggedOverIt();
    void leavesOtherDropsAlone_data();
    void leavesOtherDropsAlone();
    void neverMovesWhatIsDropped();
    void stillTakesDroppedText();
    void takesNoDropWhileItIsBusy();
    void droppedProjectForgetsTheChoice();

    void remembersProjectsOfRuns();
    void remembersChosenProjects();
    void remembersOnlyProjects_data();
    void remembersOnlyProjects();
    void keepsTenProjectsNewestFirst();
    void opensTheProjectThatItIsGiven();

    void proposesFoldersAndRecentProjects_data();
    void proposesFoldersAndRecentProjects();
    void proposesRecentProjectsFirstAndOnce();
    void proposesWhileTheUserTypes();
    void proposesNothingUnseen();
    void takesTheChosenProposal();
    void takesTheProposalThatIsClicked();
    void typedTextStaysAsItIs();
    void keysThatStartSomethingCloseTheProposals();
    void clickBesideTheProposalsCounts();
    void clickBesideTheWindowClosesTheProposals();
};

void TestProjectLine::findsTheProjectOfAPath_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("project");
    QTest::newRow("project") << u"plant"_s << u"plant"_s;
    QTest::newRow("project, slash") << u"plant/"_s << u"plant"_s;
    QTest::newRow("folder of screens") << u"plant/scr"_s << u"plant"_s;
    QTest::newRow("folder deep in it") << u"plant/scr/north"_s << u"plant"_s;
    QTest::newRow("screen") << u"plant/scr/north/a.psc"_s << u"plant"_s;
    QTest::newRow("shape") << u"plant/mac/pump.plb"_s << u"plant"_s;
    QTest::newRow("folder in no project") << u"other/deep"_s << u"other/deep"_s;
    QTest::newRow("file in no project") << u"other/deep/b.txt"_s << QString();
    QTest::newRow("file in the place of screens") << u"other/scr"_s << QString();
    QTest::newRow("nothing") << u"missing"_s << QString();
    QTest::newRow("folder below one with screens only") << u"odd/new"_s << u"odd/new"_s;
    QTest::newRow("screen of a project without shapes") << u"odd/scr/c.psc"_s << u"odd"_s;
    QTest::newRow("project in a project") << u"plant/copy"_s << u"plant/copy"_s;
}

void TestProjectLine::findsTheProjectOfAPath()
{
    QFETCH(const QString, path);
    QFETCH(const QString, project);
    const auto plants = plant();
    plants->write(u"../odd/scr/c.psc"_s, "");
    plants->makeFolder(u"../odd/new"_s);
    plants->write(u"../other/scr"_s, "");
    plants->makeFolder(u"copy/scr"_s);
    const QString expected = project.isEmpty() ? QString() : plants->beside(project);
    QCOMPARE(projectFolderOf(plants->beside(path)).value_or(QString()), expected);
}

void TestProjectLine::takesADroppedProject_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("project") << QString();
    QTest::newRow("folder of screens") << u"scr"_s;
    QTest::newRow("screen") << u"scr/north/a.psc"_s;
    QTest::newRow("shape") << u"mac/pump.plb"_s;
}

void TestProjectLine::takesADroppedProject()
{
    QFETCH(const QString, path);
    const auto project = plant();
    TestWindow window;
    for (QWidget *target :
         {static_cast<QWidget *>(&window), static_cast<QWidget *>(window.ui.lnProjectPath)}) {
        window.ui.lnProjectPath->setText(u"/elsewhere"_s);
        QVERIFY(drop(*target, *file(project->path(path))));
        QCOMPARE(window.ui.lnProjectPath->text(), project->dir());
    }
}

void TestProjectLine::takesNothingThatIsOnlyDraggedOverIt()
{
    const auto project = plant();
    TestWindow window;
    window.ui.lnProjectPath->setText(u"/elsewhere"_s);
    const auto data = file(project->dir());
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QDragMoveEvent move({6, 6}, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QDragLeaveEvent leave;
    for (QEvent *event :
         {static_cast<QEvent *>(&enter), static_cast<QEvent *>(&move), static_cast<QEvent *>(&leave)})
        QCoreApplication::sendEvent(&window, event);
    QCOMPARE(window.ui.lnProjectPath->text(), u"/elsewhere"_s);
}

void TestProjectLine::leavesOtherDropsAlone_data()
{
    QTest::addColumn<QList<QUrl>>("urls");
    QTest::newRow("missing file") << QList{QUrl(u"file:///no/such"_s)};
    QTest::newRow("file in no project") << QList{QUrl(u"file:///dev/null"_s)};
    QTest::newRow("place in the network") << QList{QUrl(u"https://example.org/scr"_s)};
    QTest::newRow("nothing") << QList<QUrl>();
}

void TestProjectLine::leavesOtherDropsAlone()
{
    QFETCH(const QList<QUrl>, urls);
    TestWindow window;
    window.ui.lnProjectPath->setText(u"/elsewhere"_s);
    QVERIFY(!drop(window, *files(urls)));
    QCOMPARE(window.ui.lnProjectPath->text(), u"/elsewhere"_s);
}

void TestProjectLine::neverMovesWhatIsDropped()
{
    const auto project = plant();
    TestWindow window;
    QVERIFY(!drop(window, *file(project->dir()), Qt::MoveAction));
    Qt::DropAction taken = Qt::IgnoreAction;
    QVERIFY(drop(window, *file(project->dir()), Qt::MoveAction | Qt::CopyAction, &taken));
    QCOMPARE(taken, Qt::CopyAction);
    QVERIFY(drop(window, *file(project->dir()), Qt::MoveAction | Qt::LinkAction, &taken));
    QCOMPARE(taken, Qt::LinkAction);
}

void TestProjectLine::stillTakesDroppedText()
{
    TestWindow window;
    window.ui.lnProjectPath->clear();
    QMimeData text;
    text.setText(u"/plants/typed"_s);
    QVERIFY(drop(*window.ui.lnProjectPath, text));
    QCOMPARE(window.ui.lnProjectPath->text(), u"/plants/typed"_s);
    QVERIFY(!drop(window, text));
}

void TestProjectLine::takesNoDropWhileItIsBusy()
{
    const auto project = plant();
    TestWindow window;
    window.ui.lnProjectPath->setText(u"/elsewhere"_s);
    QMimeData text;
    text.setText(u"/plants/typed"_s);
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const bool isTaken = drop(window, *file(project->dir())) || drop(*window.ui.lnProjectPath, text);
    QApplication::restoreOverrideCursor();
    QVERIFY(!isTaken);
    QCOMPARE(window.ui.lnProjectPath->text(), u"/elsewhere"_s);
}

void TestProjectLine::droppedProjectForgetsTheChoice()
{
    const auto project = plant();
    TestWindow window;
    window.selectedFilterNames = {u"a"_s};
    window.filterNamesStale = false;
    QVERIFY(drop(window, *file(project->dir())));
    QVERIFY(window.selectedFilterNames.isEmpty());
    QVERIFY(window.filterNamesStale);
}

void TestProjectLine::remembersProjectsOfRuns()
{
    const auto project = plant();
    TestWindow window;
    window.ui.lnProjectPath->setText(project->dir());
    QCOMPARE(recentProjects(), QStringList());
    window.onBtnStartPressed();
    QCOMPARE(recentProjects(), QStringList{project->dir()});
    QTRY_VERIFY(window.isIdle());
}

void TestProjectLine::remembersChosenProjects()
{
    const auto dropped = plant();
    const auto browsed = plant();
    TestWindow window;
    QVERIFY(drop(window, *file(dropped->dir())));
    QCOMPARE(recentProjects(), QStringList{dropped->dir()});

    int answered = 0;
    whenAsked<QFileDialog>(this, answered, [&](QFileDialog *browser) {
        browser->selectFile(browsed->dir());
        QTest::keyClick(browser, Qt::Key_Return);
    });
    window.onBtnBrowsePressed();
    QCOMPARE(answered, 1);
    QCOMPARE(recentProjects(), QStringList({browsed->dir(), dropped->dir()}));
}

void TestProjectLine::remembersOnlyProjects_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("folder without screens") << u"/tmp"_s;
    QTest::newRow("no folder") << u"/no/such"_s;
    QTest::newRow("empty") << QString();
    QTest::newRow("relative") << u"."_s;
}

void TestProjectLine::remembersOnlyProjects()
{
    QFETCH(const QString, path);
    const auto project = plant();
    QVERIFY(QDir::setCurrent(project->dir()));
    rememberProject(path);
    QVERIFY(QDir::setCurrent(u"/"_s));
    QCOMPARE(recentProjects(), QStringList());
}

void TestProjectLine::keepsTenProjectsNewestFirst()
{
    const auto project = plant();
    QStringList expected;
    for (int number = 0; number < 12; ++number) {
        const QString name = u"p%1"_s.arg(number);
        project->makeFolder(name + "/scr"_L1);
        rememberProject(project->path(name));
        expected.prepend(project->path(name));
    }
    QCOMPARE(recentProjects(), expected.first(10));
    QSettings settings(u"QEL"_s, u"Vantrel"_s);
    QCOMPARE(settings.value("recent/projects"_L1).toStringList(), expected.first(10));
    settings.setValue("recent/projects"_L1, expected);
    settings.sync();
    QCOMPARE(recentProjects(), expected.first(10));

    expected.move(4, 0);
    rememberProject(expected.first() + u'/');
    QCOMPARE(recentProjects(), expected.first(10));
}

void TestProjectLine::opensTheProjectThatItIsGiven()
{
    const auto project = plant();
    TestWindow window;
    const QString before = window.ui.lnProjectPath->text();
    window.openProject({});
    QCOMPARE(window.ui.lnProjectPath->text(), before);
    window.openProject(project->dir());
    QCOMPARE(window.ui.lnProjectPath->text(), project->dir());
}

void TestProjectLine::proposesFoldersAndRecentProjects_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("expected");
    const QStringList recent{u"/plants/North"_s, u"/old/south"_s};
    QTest::newRow("nothing typed") << QString() << recent;
    QTest::newRow("part of a recent one") << u"SOUTH"_s << QStringList{u"/old/south"_s};
    QTest::newRow("folder") << u"%1/pl"_s << QStringList{u"%1/plant"_s};
    QTest::newRow("folder in other letters") << u"%1/PL"_s << QStringList{u"%1/plant"_s};
    QTest::newRow("all in a folder") << u"%1/plant/"_s << QStringList({u"%1/plant/mac"_s, u"%1/plant/scr"_s});
    QTest::newRow("not those that are hidden") << u"%1/"_s << QStringList({u"%1/other"_s, u"%1/plant"_s});
    QTest::newRow("hidden folder") << u"%1/."_s << QStringList{u"%1/.hidden"_s};
    QTest::newRow("typed already") << u"%1/plant/scr"_s << QStringList();
    QTest::newRow("no files") << u"%1/plant/mac/"_s << QStringList();
    QTest::newRow("relative path") << u"pl"_s << QStringList{u"/plants/North"_s};
    QTest::newRow("drive letter") << u"c:/"_s << QStringList();
}

void TestProjectLine::proposesFoldersAndRecentProjects()
{
    QFETCH(const QString, text);
    QFETCH(const QStringList, expected);
    const auto project = plant();
    project->makeFolder(u"../.hidden"_s);
    const QString root = QDir::cleanPath(project->beside(u"."_s));
    QStringList paths = expected;
    const QStringList proposed =
        projectProposals(QString(text).replace("%1"_L1, root), {u"/plants/North"_s, u"/old/south"_s});
    QCOMPARE(proposed, paths.replaceInStrings(u"%1"_s, root));
}

void TestProjectLine::proposesRecentProjectsFirstAndOnce()
{
    const auto project = plant();
    const QString root = QDir::cleanPath(project->beside(u"."_s));
    QCOMPARE(projectProposals(root + u'/', {project->dir()}),
             QStringList({project->dir(), project->beside(u"other"_s)}));
}

void TestProjectLine::proposesNothingUnseen()
{
    const auto project = plant();
    rememberProject(project->dir());
    TestWindow window;
    window.ui.lnProjectPath->clear();
    QTest::keyClicks(window.ui.lnProjectPath, project->dir().chopped(1));
    QCOMPARE(proposals(window), QStringList());
}

void TestProjectLine::proposesWhileTheUserTypes()
{
    const auto project = plant();
    rememberProject(project->dir());
    TestWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.ui.lnProjectPath->setFocus();
    window.ui.lnProjectPath->clear();
    QTest::keyClicks(window.ui.lnProjectPath, project->dir() + "/m"_L1);
    QTRY_VERIFY(window.ui.lnProjectPath->completer()->popup()->isVisible());
    QCOMPARE(proposals(window), QStringList{project->path(u"mac"_s)});

    window.ui.lnProjectPath->clear();
    QTest::keyClicks(window.ui.lnProjectPath, u"lant"_s);
    QCOMPARE(proposals(window), QStringList{project->dir()});
    QCOMPARE(window.ui.lnProjectPath->text(), u"lant"_s);
}

void TestProjectLine::takesTheChosenProposal()
{
    const auto project = knownPlant();
    TestWindow window;
    QAbstractItemView *popup = openProposals(window, u"plant"_s);
    QVERIFY(popup);
    QTest::keyClick(popup, Qt::Key_Down);
    QTest::keyClick(popup, Qt::Key_Return);
    QCOMPARE(window.ui.lnProjectPath->text(), project->dir());
    QVERIFY(!popup->isVisible());
}

void TestProjectLine::takesTheProposalThatIsClicked()
{
    const auto project = knownPlant();
    TestWindow window;
    QAbstractItemView *popup = openProposals(window, u"plant"_s);
    QVERIFY(popup);
    QTest::mouseMove(popup->windowHandle(), QPoint(0, 0));
    QTRY_VERIFY(popup->underMouse());
    QTest::mousePress(popup, Qt::LeftButton, {}, QPoint(0, 0)); // the frame
    QVERIFY(popup->isVisible());

    const QPoint place = popup->visualRect(popup->model()->index(0, 0)).center();
    QTest::mouseClick(popup->viewport(), Qt::LeftButton, {}, place);
    QCOMPARE(window.ui.lnProjectPath->text(), project->dir());
    QVERIFY(!popup->isVisible());
}

void TestProjectLine::typedTextStaysAsItIs()
{
    const auto project = knownPlant();
    TestWindow window;
    const QString typed = project->dir().chopped(1);
    QAbstractItemView *popup = openProposals(window, typed);
    QVERIFY(popup);
    QTest::keyClick(popup, Qt::Key_Return); // chooses nothing
    QCOMPARE(window.ui.lnProjectPath->text(), typed);
}

void TestProjectLine::keysThatStartSomethingCloseTheProposals()
{
    const auto project = knownPlant();
    TestWindow window;
    int clicks = 0;
    disconnect(window.ui.btnStart, &QPushButton::clicked, &window, nullptr);
    connect(window.ui.btnStart, &QPushButton::clicked, &window, [&] { ++clicks; });
    QAbstractItemView *popup = openProposals(window, u"plant"_s);
    QVERIFY(popup);
    QTest::keyClick(popup, Qt::Key_F5);
    QTRY_COMPARE(clicks, 1);
    QVERIFY(!popup->isVisible());
}

void TestProjectLine::clickBesideTheProposalsCounts()
{
    const auto project = knownPlant();
    TestWindow window;
    window.move(0, 0); // all of it on the screen
    int clicks = 0;
    disconnect(window.ui.btnStart, &QPushButton::clicked, &window, nullptr);
    connect(window.ui.btnStart, &QPushButton::clicked, &window, [&] { ++clicks; });
    const QAbstractItemView *popup = openProposals(window, u"plant"_s);
    QVERIFY(popup);

    const QPoint place = window.ui.btnStart->mapTo(&window, window.ui.btnStart->rect().center());
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, place);
    QTRY_VERIFY(window.ui.btnStart->isDown());
    QVERIFY(!popup->isVisible());
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, place);
    QTRY_COMPARE(clicks, 1);
    QCOMPARE(window.ui.lnProjectPath->text(), u"plant"_s);
}

void TestProjectLine::clickBesideTheWindowClosesTheProposals()
{
    const auto project = knownPlant();
    TestWindow window;
    QAbstractItemView *popup = openProposals(window, u"plant"_s);
    QVERIFY(popup);
    constexpr QPoint farAway(-5000, -5000);
    QTest::mousePress(popup, Qt::LeftButton, {}, farAway);
    QVERIFY(!popup->isVisible());
    QCOMPARE(window.ui.lnProjectPath->text(), u"plant"_s);
}

VANTREL_TEST(QApplication, TestProjectLine)
#include "tst_projectline.moc"
