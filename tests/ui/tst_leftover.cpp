// The window over a project in which a run was interrupted.
#include "Gates.h"
#include "HeldFile.h"
#include "LeftOverRun.h"
#include "LeftOverTexts.h"
#include "MessageBar.h"
#include "ProjectLock.h"
#include "RunHistory.h"
#include "StageFile.h"
#include "StartedWindow.h"
#include "Story.h"
#include "Surroundings.h"
#include "TestSuite.h"
#include "Translations.h"
#include "UserSettings.h"

#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QMap>
#include <QPointer>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

#include <thread>

using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 60'000; // milliseconds

using Interruption = void (*)(const TestProject &project);

const QStringList screens{u"00.psc"_s, u"a.psc"_s, u"b.psc"_s};

QByteArray original(const QString &screen)
{
    return "ID;1;Rect;" + screen.toUtf8() + "\nLIB;pump.plb;1;Plant/1;Obj/1\nPSDV;1;2;3;4;2;1;15;8;1;0;1;0\n";
}

QByteArray converted(const QString &screen)
{
    return "ID;1;Ellipse;" + screen.toUtf8() + '\n';
}

void put(const TestProject &project, const QString &folder, QByteArray (*bytesOf)(const QString &),
         const QStringList &some = screens)
{
    for (const QString &screen : some)
        project.write(folder + u'/' + screen, bytesOf(screen));
}

RunFacts facts()
{
    RunFacts facts;
    facts.program = u"vantrel 1.2.3"_s;
    facts.started = QDateTime(QDate(2024, 3, 5), QTime(14, 7, 9));
    facts.shapeNames = QStringList{u"pump.plb"_s};
    facts.screens = screens;
    return facts;
}

void writeStage(const TestProject &project, RunStage stage, RunStage endedAt, const RunFacts &ofRun = facts())
{
    StageFile(project.dir(), ofRun).enter({.stage = stage, .unsaved = {}, .endedAt = endedAt});
}

void endWhileConverting(const TestProject &project)
{
    put(project, u"scr"_s, original);
    project.write(u"scr_temp/00.psc"_s, "half a scr");
    project.makeFolder(u"log"_s);
    writeStage(project, RunStage::Converting, RunStage::Converting);
}

void endWhileBackingUp(const TestProject &project)
{
    put(project, u"scr"_s, original, screens.sliced(1));
    put(project, u"scr_bak"_s, original, screens.first(1));
    put(project, u"scr_temp"_s, converted);
    writeStage(project, RunStage::BackingUp, RunStage::BackingUp);
}

void endWhileCopyingBack(const TestProject &project)
{
    put(project, u"scr"_s, converted, screens.first(1));
    put(project, u"scr_bak"_s, original);
    put(project, u"scr_temp"_s, converted, screens.sliced(1));
    writeStage(project, RunStage::CopyingBack, RunStage::CopyingBack);
}

void endWhileUndoing(const TestProject &project)
{
    put(project, u"scr"_s, converted);
    put(project, u"scr_bak"_s, original);
    writeStage(project, RunStage::SettingAside, RunStage::Done);
}

void leaveUnreadable(const TestProject &project)
{
    put(project, u"scr"_s, original);
    project.write(u".vantrel.run"_s, "no stage file\n");
}

QMap<QString, QByteArray> below(const TestProject &project, const QString &folder)
{
    QMap<QString, QByteArray> bytes;
    for (const QString &file : project.files(folder))
        bytes.insert(file, project.read(folder + u'/' + file));
    return bytes;
}

/// What the last undoing has set aside.
QMap<QString, QByteArray> setAsideIn(const TestProject &project)
{
    return below(project, u".vantrel.history/%1/scr"_s.arg(RunHistory(project.dir()).entries().value(0)));
}

QMap<QString, QByteArray> all(QByteArray (*bytesOf)(const QString &screen))
{
    QMap<QString, QByteArray> bytes;
    for (const QString &screen : screens)
        bytes.insert(screen, bytesOf(screen));
    return bytes;
}

/// A message box's text without the places at which it may break a path.
QString textOf(const QMessageBox *box)
{
    return box->text().remove(QChar(0x200b));
}

MessageBar &barOf(const StartedWindow &window)
{
    return *window->findChild<MessageBar *>(u"messageBar"_s);
}

QString messageIn(const StartedWindow &window)
{
    return barOf(window).isHidden() ? QString() : barOf(window).findChild<QLabel *>(u"messageText"_s)->text();
}

/// Cancels a run before its second screen, and waits for the worker.
std::unique_ptr<StartedWindow> cancelledWindow(const TestProject &project)
{
    put(project, u"scr"_s, original);
    project.makeFolder(u"log"_s);
    auto window = std::make_unique<StartedWindow>(project.dir(), QSet<QString>());
    {
        WorkerGate gate(WorkerGate::BeforeFile, *(*window)->converter);
        if (!gate.isReached())
            qFatal("the run does not begin");
        StartedWindow::press((*window)->ui.btnStart);
        gate.openWhenStopped(*(*window)->converter);
        waitForQueuedCalls(*(*window)->converter);
    }
    return window;
}

LeftOver leftOverIn(const TestProject &project)
{
    return LeftOverRun(project.dir()).kind();
}

void press(QPushButton *button)
{
    StartedWindow::press(button);
}

} // namespace

Q_DECLARE_METATYPE(Interruption)

#define AWAIT(what) QTRY_VERIFY_WITH_TIMEOUT((what), patience)

class TestLeftOver final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { forgetSettings(); }

    void asksWhatIsToBecomeOfARun();
    void cancelChangesNothing_data();
    void cancelChangesNothing();
    void asksAgainAtTheNextStart();
    void namesItsControls();

    void putsBack_data();
    void putsBack();
    void completes_data();
    void completes();
    void completesByConvertingAgain();
    void convertingAgainCanBeCancelled();
    void startsAsSetUpAfterConvertingAgain();
    void goesOnWithAnUndoing();

    void onlyTellsWhatCannotBeDecided();
    void namesTenFilesAtMost();
    void onlyTellsWhatCannotBeRead();
    void startsWhereNothingIsLeft_data();
    void startsWhereNothingIsLeft();
    void startsNoRunOverAnotherProject();
    void tellsThatOthersWereFaster();
    void tellsWhoIsAtWork();
    void tellsWhyItFailed();
    void tellsOfChangedFiles();
    void tellsOfScreensThatWereNotConverted();

    void offersToPutAwayWhatACancelledRunHasLeft();
    void putsAwayInto_data();
    void putsAwayInto();
    void offersNothingWhereTheCancelCameTooLate();
    void takesTheOfferBack_data();
    void takesTheOfferBack();
    void tellsWhyNothingWasPutAway_data();
    void tellsWhyNothingWasPutAway();

    void stopsBeforeTheNextScreen();
    void showsWhatIsUnderWayInsteadOfStarting();
    void closesBeforeTheNextScreen_data();
    void closesBeforeTheNextScreen();
    void closesWhileItAsks();

    void saysWhatIsLeftToDo_data();
    void saysWhatIsLeftToDo();
    void namesEachKindOfUndecidedFiles();
    void hasWordsForEveryStage();
    void showsHostileNamesAsText();
    void speaksGerman();
    void fitsASmallScreen();
};

void TestLeftOver::asksWhatIsToBecomeOfARun()
{
    const TestProject project;
    endWhileBackingUp(project);
    const StartedWindow window(project);
    AWAIT(window.question());
    QVERIFY(!window->running);
    QCOMPARE(window.question()->windowTitle(), u"Vantrel Info"_s);
    QCOMPARE(window.question()->textFormat(), Qt::PlainText);
    QCOMPARE(
        textOf(window.question()),
        u"A run over %1 was interrupted. It ended while it was backing up: each screen lies in \"scr\" or "
        "in \"scr_bak\", and \"scr_temp\" holds all converted screens. It was begun by vantrel 1.2.3 at "
        "2024-03-05 14:07:09.\n\n"
        "Screens from before the run that lie in \"scr\": 2, in \"scr_bak\" only: 1.\n\n"
        "Put Back copies the screens from \"scr_bak\" back to \"scr\" and removes \"scr_temp\".\n"
        "Complete backs up the rest and copies back.\n"
        "Cancel changes nothing."_s.arg(project.dir()));
    QCOMPARE(window.button(u"btnPutBack"_s)->text(), u"&Put Back"_s);
    QCOMPARE(window.button(u"btnComplete"_s)->text(), u"C&omplete"_s);
    QCOMPARE(window.button(u"btnCancel"_s)->text(), u"&Cancel"_s);
    QCOMPARE(window.question()->defaultButton(), window.button(u"btnCancel"_s));
    QCOMPARE(window.question()->escapeButton(), window.button(u"btnCancel"_s));
    QCOMPARE(
        window->logMessages().first(),
        u"A run over %1 was interrupted. It ended while it was backing up: each screen lies in \"scr\" or "
        "in \"scr_bak\", and \"scr_temp\" holds all converted screens."_s.arg(project.dir()));
}

void TestLeftOver::cancelChangesNothing_data()
{
    using Cancel = void (*)(LeftOverDialog * dialog);
    QTest::addColumn<Cancel>("cancel");
    QTest::newRow("button") << Cancel(
        [](LeftOverDialog *dialog) { press(dialog->findChild<QPushButton *>(u"btnCancel"_s)); });
    QTest::newRow("Escape") << Cancel(
        [](LeftOverDialog *dialog) { QTest::keyClick(dialog, Qt::Key_Escape); });
    QTest::newRow("Enter") << Cancel([](LeftOverDialog *dialog) { QTest::keyClick(dialog, Qt::Key_Return); });
    QTest::newRow("closing") << Cancel([](LeftOverDialog *dialog) { dialog->close(); });
}

void TestLeftOver::cancelChangesNothing()
{
    using Cancel = void (*)(LeftOverDialog * dialog);
    QFETCH(const Cancel, cancel);
    const TestProject project;
    endWhileCopyingBack(project);
    const QMap<QString, QByteArray> before = below(project, u""_s);
    const StartedWindow window(project);
    AWAIT(window.question());
    const QPointer<LeftOverDialog> question = window.question();
    cancel(question);
    AWAIT(!question);
    QVERIFY(!window->running);
    QVERIFY(window.end() == nullptr);
    QCOMPARE(window->ui.btnStart->text(), u"Start Update"_s);
    QVERIFY(window->ui.btnBrowse->isEnabled());
    QCOMPARE(below(project, u""_s), before);
}

void TestLeftOver::asksAgainAtTheNextStart()
{
    const TestProject project;
    endWhileConverting(project);
    const StartedWindow window(project);
    for (int start = 0; start < 2; ++start) {
        AWAIT(window.question());
        press(window.button(u"btnCancel"_s));
        AWAIT(!window.question());
        press(window->ui.btnStart);
    }
    AWAIT(window.question());
}

void TestLeftOver::namesItsControls()
{
    const TestProject project;
    endWhileConverting(project);
    const StartedWindow window(project);
    AWAIT(window.question());
    QCOMPARE(QAccessible::queryAccessibleInterface(window.question())->text(QAccessible::Name),
             u"Vantrel Info"_s);
    const RecoveryProgress progress(u"Putting back"_s, nullptr);
    QCOMPARE(progress.findChild<QProgressBar *>()->accessibleName(), u"Progress"_s);
    for (const QPushButton *button :
         window.question()->findChildren<QPushButton *>() + progress.findChildren<QPushButton *>()) {
        QVERIFY2(!button->toolTip().isEmpty(), qPrintable(button->objectName()));
        QVERIFY2(button->text().contains(u'&'), qPrintable(button->objectName()));
    }
}

void TestLeftOver::putsBack_data()
{
    QTest::addColumn<Interruption>("interruption");
    QTest::addColumn<int>("copied");
    QTest::newRow("converting") << Interruption(endWhileConverting) << 0;
    QTest::newRow("backing up") << Interruption(endWhileBackingUp) << 1;
    QTest::newRow("copying back") << Interruption(endWhileCopyingBack) << 3;
}

void TestLeftOver::putsBack()
{
    QFETCH(const Interruption, interruption);
    QFETCH(const int, copied);
    const TestProject project;
    interruption(project);
    const StartedWindow window(project);
    AWAIT(window.question());
    press(window.button(u"btnPutBack"_s));
    AWAIT(window.end());
    const QString told = u"All 3 screens are back as they were before the run. Copied from \"scr_bak\": %1. "
                         "To run now, press Start Update again."_s.arg(copied);
    QCOMPARE(textOf(window.end()), told);
    QCOMPARE(window.end()->textFormat(), Qt::PlainText);
    QCOMPARE(window.end()->windowTitle(), u"Vantrel Info"_s);
    QCOMPARE(window->logMessages().first(), told);
    QCOMPARE(window->ui.logTable->item(0, 0)->text(), u"system"_s);
    QCOMPARE(below(project, u"scr"_s), all(original));
    QVERIFY(!project.exists(u"scr_temp"_s));
    QCOMPARE(leftOverIn(project), LeftOver::Nothing);
    QVERIFY(!window->running);
}

void TestLeftOver::completes_data()
{
    QTest::addColumn<Interruption>("interruption");
    QTest::newRow("backing up") << Interruption(endWhileBackingUp);
    QTest::newRow("copying back") << Interruption(endWhileCopyingBack);
}

void TestLeftOver::completes()
{
    QFETCH(const Interruption, interruption);
    const TestProject project;
    interruption(project);
    const StartedWindow window(project);
    AWAIT(window.question());
    press(window.button(u"btnComplete"_s));
    AWAIT(window.end());
    const QString told =
        u"The run is complete: \"scr\" holds the converted screens, \"scr_bak\" those from before it."_s;
    QCOMPARE(textOf(window.end()), told);
    QCOMPARE(window->logMessages().first(), told);
    QCOMPARE(below(project, u"scr"_s), all(converted));
    QCOMPARE(below(project, u"scr_bak"_s), all(original));
    QCOMPARE(leftOverIn(project), LeftOver::Nothing);
}

/// With the shapes and the way to make folders of the interrupted run.
void TestLeftOver::completesByConvertingAgain()
{
    const TestProject project;
    put(project, u"scr"_s, original);
    project.write(u"scr/hall/cellar/deep.psc"_s, original(u"deep"_s));
    RunFacts deeper = facts();
    deeper.screens += u"hall/cellar/deep.psc"_s;
    deeper.makesFolders = true;
    writeStage(project, RunStage::Converting, RunStage::Converting, deeper);
    const StartedWindow window(project);
    WorkerGate gate(WorkerGate::BeforeFile, *window->converter);
    AWAIT(window.question());
    press(window.button(u"btnComplete"_s));
    AWAIT(window->running);
    QVERIFY(gate.isReached());
    QVERIFY(window->isRunning());
    gate.open();
    AWAIT(window->isIdle());
    // Its shape is missing, which only an object tells whose shape was chosen.
    QCOMPARE(window->ui.rplShapeTable->rowCount(), 4);
    QCOMPARE(window->ui.rplShapeTable->item(0, 0)->text(), u"ERROR"_s);
    QCOMPARE(project.read(u"scr/hall/cellar/deep.psc"_s), original(u"deep"_s));
    QCOMPARE(project.files(u"scr_bak"_s).size(), 4);
    QCOMPARE(window->logMessages().first(), u"End"_s);
    QVERIFY(window.end() == nullptr);
    QCOMPARE(leftOverIn(project), LeftOver::Nothing);
}

void TestLeftOver::convertingAgainCanBeCancelled()
{
    const TestProject project;
    endWhileConverting(project);
    const StartedWindow window(project);
    WorkerGate gate(WorkerGate::BeforeFile, *window->converter);
    AWAIT(window.question());
    press(window.button(u"btnComplete"_s));
    AWAIT(window->running);
    QVERIFY(gate.isReached());
    press(window->ui.btnStart);
    QVERIFY(window->isIdle());
    gate.open();
    AWAIT(window->logMessages().count(u"End"_s) == 2);
    QCOMPARE(below(project, u"scr"_s), all(original));
    QVERIFY(!project.exists(u"scr_bak"_s));
    QCOMPARE(leftOverIn(project), LeftOver::Cancelled);
}

void TestLeftOver::startsAsSetUpAfterConvertingAgain()
{
    const TestProject project;
    endWhileConverting(project);
    const StartedWindow window(project);
    AWAIT(window.question());
    press(window.button(u"btnComplete"_s));
    AWAIT(window->logMessages().contains(u"End"_s));
    QCOMPARE(window->ui.rplShapeTable->rowCount(), 3);

    press(window->ui.btnStart); // without a choice of shapes
    QVERIFY(window->isRunning());
    AWAIT(window->isIdle());
    QCOMPARE(window->ui.rplShapeTable->rowCount(), 0);

    // The project is in use when the window looks, and an interrupted run's when its run begins.
    endWhileBackingUp(project);
    const QMap<QString, QByteArray> before = below(project, u""_s);
    {
        const BusyThread busy(*window->converter);
        const ProjectLock lock(project.dir());
        press(window->ui.btnStart);
        AWAIT(window->running);
    }
    AWAIT(window->isIdle());
    QCOMPARE(window->logMessages().filter(u" was interrupted"_s).size(), 1);
    QCOMPARE(below(project, u""_s), before);
}

void TestLeftOver::goesOnWithAnUndoing()
{
    const TestProject project;
    endWhileUndoing(project);
    const StartedWindow window(project);
    AWAIT(window.question());
    QVERIFY(textOf(window.question()).startsWith(u"The undoing of a run over "_s));
    QVERIFY(window.button(u"btnComplete"_s) == nullptr);
    press(window.button(u"btnPutBack"_s));
    AWAIT(window.end());
    QCOMPARE(textOf(window.end()), u"The last run was undone: \"scr\" holds the screens from before it, "
                                   "the history those that it had made."_s);
    QCOMPARE(below(project, u"scr"_s), all(original));
    QCOMPARE(setAsideIn(project), all(converted));
}

void TestLeftOver::onlyTellsWhatCannotBeDecided()
{
    const TestProject project;
    endWhileBackingUp(project);
    project.remove(u"scr_bak/00.psc"_s);
    const QMap<QString, QByteArray> before = below(project, u""_s);
    const StartedWindow window(project);
    AWAIT(window.question());
    QCOMPARE(
        textOf(window.question()),
        u"A run over %1 was interrupted. What is right cannot be decided, so nothing is touched. Put these "
        "files in order, then press Start Update again.\n\n"
        "These lie neither in \"scr\" nor in \"scr_bak\", where the run had left them; put them back:\n"
        "00.psc"_s.arg(project.dir()));
    QVERIFY(window.button(u"btnPutBack"_s) == nullptr);
    QVERIFY(window.button(u"btnComplete"_s) == nullptr);
    QCOMPARE(window.button(u"btnCancel"_s)->text(), u"&Close"_s);
    QCOMPARE(window->ui.logTable->item(0, 0)->text(), u"error"_s);
    QVERIFY(window->logMessages().first().endsWith(u"put them back: 00.psc"_s));
    press(window.button(u"btnCancel"_s));
    AWAIT(!window.question());
    QCOMPARE(below(project, u""_s), before);
}

void TestLeftOver::namesTenFilesAtMost()
{
    constexpr int moreThanTen = 13;
    const TestProject project;
    RunFacts many = facts();
    for (int number = 0; number < moreThanTen; ++number)
        many.screens += u"screen%1.psc"_s.arg(number, 2, 10, QChar(u'0'));
    put(project, u"scr"_s, original);
    writeStage(project, RunStage::Removing, RunStage::Removing, many);
    const StartedWindow window(project);
    AWAIT(window.question());
    const QString text = textOf(window.question());
    QCOMPARE(text.count(u".psc"_s), 10);
    QVERIFY2(text.endsWith(u"\nscreen06.psc\nand 6 more"_s), qPrintable(text));
}

void TestLeftOver::onlyTellsWhatCannotBeRead()
{
    const TestProject project;
    leaveUnreadable(project);
    const QMap<QString, QByteArray> before = below(project, u""_s);
    const StartedWindow window(project);
    AWAIT(window.question());
    QVERIFY2(textOf(window.question()).contains(u"\".vantrel.run\" in the project cannot be read"_s),
             qPrintable(textOf(window.question())));
    QVERIFY(window.button(u"btnPutBack"_s) == nullptr);
    QTest::keyClick(window.question(), Qt::Key_Escape);
    AWAIT(!window.question());
    QCOMPARE(below(project, u""_s), before);
}

void TestLeftOver::startsWhereNothingIsLeft_data()
{
    QTest::addColumn<Interruption>("interruption");
    QTest::newRow("no stage file") << Interruption(
        [](const TestProject &project) { put(project, u"scr"_s, original); });
    QTest::newRow("a run that is done but for its file") << Interruption([](const TestProject &project) {
        put(project, u"scr"_s, original);
        put(project, u"scr_bak"_s, original);
        writeStage(project, RunStage::Done, RunStage::Done);
    });
}

void TestLeftOver::startsWhereNothingIsLeft()
{
    QFETCH(const Interruption, interruption);
    const TestProject project;
    interruption(project);
    const StartedWindow window(project);
    AWAIT(window->logMessages().contains(u"End"_s));
    QCOMPARE(window->logMessages(), (QStringList{u"End"_s, u"Start"_s}));
    QVERIFY(window.question() == nullptr);
    QCOMPARE(below(project, u"scr_bak"_s), all(original));
    QCOMPARE(leftOverIn(project), LeftOver::Nothing);
}

void TestLeftOver::startsNoRunOverAnotherProject()
{
    const TestProject project;
    put(project, u"scr"_s, original);
    writeStage(project, RunStage::Converting, RunStage::Converting);
    const ProjectLock lock(project.dir()); // of somebody who recovers it
    const TestProject other(u"other"_s);
    put(other, u"scr"_s, original);
    const StartedWindow window(project);
    window->ui.lnProjectPath->setText(other.dir()); // before the look can be answered
    const auto hasLooked = [&] { return window->findChildren<RecoveryProgress *>().isEmpty(); };
    AWAIT(hasLooked());
    QVERIFY(!window->running);
    QVERIFY(!other.exists(u"scr_bak"_s));
    QVERIFY(!project.exists(u"scr_bak"_s));
}

void TestLeftOver::tellsThatOthersWereFaster()
{
    const TestProject project;
    endWhileBackingUp(project);
    const StartedWindow window(project);
    AWAIT(window.question());
    QCOMPARE(LeftOverRun(project.dir()).putBack().outcome, RecoveryOutcome::Done);
    press(window.button(u"btnComplete"_s));
    AWAIT(window.end());
    QCOMPARE(textOf(window.end()), u"Nothing is left to be done: somebody else has recovered the project."_s);
    QCOMPARE(below(project, u"scr"_s), all(original));
}

void TestLeftOver::tellsWhoIsAtWork()
{
    const TestProject project;
    endWhileBackingUp(project);
    {
        // Before it asks: the run says so itself.
        const ProjectLock lock(project.dir());
        const StartedWindow window(project);
        AWAIT(window->logMessages().contains(u"End"_s));
        QCOMPARE(window->logMessages().filter(u" is in use by "_s).size(), 1);
        QVERIFY(window.question() == nullptr);
    }
    const StartedWindow window(project);
    AWAIT(window.question());
    const ProjectLock lock(project.dir());
    press(window.button(u"btnPutBack"_s));
    AWAIT(window.end());
    QVERIFY2(textOf(window.end()).startsWith(u"Nothing was touched: the project is in use by "_s),
             qPrintable(textOf(window.end())));
    QCOMPARE(project.files(u"scr"_s).size(), 2);
}

void TestLeftOver::tellsWhyItFailed()
{
    const TestProject project;
    endWhileBackingUp(project);
    project.makeFolder(u".vantrel.run.new"_s);
    const StartedWindow window(project);
    AWAIT(window.question());
    press(window.button(u"btnPutBack"_s));
    AWAIT(window.end());
    QCOMPARE(
        textOf(window.end()),
        u"%1/.vantrel.run could not be written: Is a directory. No screen is lost. Put right what is in the "
        "way, then press Start Update again."_s.arg(project.dir()));
    QCOMPARE(window.end()->icon(), QMessageBox::Warning);
    QCOMPARE(window->ui.logTable->item(0, 0)->text(), u"error"_s);
    QCOMPARE(window->logMessages().first(), textOf(window.end()));
}

void TestLeftOver::tellsOfChangedFiles()
{
    const TestProject project;
    endWhileCopyingBack(project);
    project.write(u"scr_temp/00.psc"_s, converted(u"00.psc"_s));
    project.write(u"scr/00.psc"_s, "written since");
    const StartedWindow window(project);
    AWAIT(window.question());
    press(window.button(u"btnPutBack"_s));
    AWAIT(window.end());
    QVERIFY2(textOf(window.end()).startsWith(u"Nothing was touched: files were changed"_s),
             qPrintable(textOf(window.end())));
    QVERIFY2(textOf(window.end()).endsWith(u"\nscr/00.psc"_s), qPrintable(textOf(window.end())));
    QCOMPARE(project.read(u"scr/00.psc"_s), "written since");
}

void TestLeftOver::tellsOfScreensThatWereNotConverted()
{
    const TestProject project;
    endWhileBackingUp(project);
    project.remove(u"scr_temp/b.psc"_s);
    const StartedWindow window(project);
    AWAIT(window.question());
    press(window.button(u"btnComplete"_s));
    AWAIT(window.end());
    QVERIFY2(textOf(window.end()).endsWith(u"lie in \"scr_bak\":\nb.psc"_s),
             qPrintable(textOf(window.end())));
    QCOMPARE(window.end()->icon(), QMessageBox::Warning);
}

void TestLeftOver::offersToPutAwayWhatACancelledRunHasLeft()
{
    const TestProject project;
    const auto window = cancelledWindow(project);
    AWAIT(!messageIn(*window).isEmpty());
    QCOMPARE(
        messageIn(*window),
        u"Cancelled after 1 of 3 screens. \"scr\" is untouched. What was converted lies in \"scr_temp\", "
        "and takes part in the next run."_s);
    QVERIFY((*window)->isIdle());
    QCOMPARE(leftOverIn(project), LeftOver::Cancelled);
    press(barOf(*window).findChild<QPushButton *>(u"btnPutAway"_s));
    AWAIT(messageIn(*window) == u"\"scr_temp\" was put away. The next run converts all screens anew."_s);
    QVERIFY(barOf(*window).findChildren<QPushButton *>().isEmpty());
    QCOMPARE((*window)->logMessages().first(), messageIn(*window));
    QVERIFY(!project.exists(u"scr_temp"_s));
    QCOMPARE(project.keptFiles(), QStringList{u"scr_temp/00.psc"_s});
    QCOMPARE(leftOverIn(project), LeftOver::Nothing);
    QCOMPARE(below(project, u"scr"_s), all(original));
    QVERIFY(window->question() == nullptr && window->end() == nullptr);
}

void TestLeftOver::putsAwayInto_data()
{
    QTest::addColumn<int>("keptRuns");
    QTest::addColumn<QStringList>("kept");
    QTest::newRow("the history") << 1 << QStringList{u"scr_temp/00.psc"_s};
    QTest::newRow("nothing, where the user keeps nothing") << 0 << QStringList();
}

void TestLeftOver::putsAwayInto()
{
    QFETCH(const int, keptRuns);
    QFETCH(const QStringList, kept);
    UserSettings().setValue("history"_L1, keptRuns);
    const TestProject project;
    const auto window = cancelledWindow(project);
    AWAIT(!messageIn(*window).isEmpty());
    press(barOf(*window).findChild<QPushButton *>(u"btnPutAway"_s));
    AWAIT(messageIn(*window).startsWith(u"\"scr_temp\" was put away."_s));
    QVERIFY(!project.exists(u"scr_temp"_s));
    QCOMPARE(project.keptFiles(), kept);
}

void TestLeftOver::offersNothingWhereTheCancelCameTooLate()
{
    const TestProject project;
    put(project, u"scr"_s, original);
    project.makeFolder(u"log"_s);
    const StartedWindow window(project);
    {
        WorkerGate gate(WorkerGate::AfterCopyBack, *window->converter);
        QVERIFY(gate.isReached());
        press(window->ui.btnStart);
    }
    AWAIT(window->logMessages().count(u"End"_s) == 2);
    QCOMPARE(messageIn(window), QString());
}

void TestLeftOver::takesTheOfferBack_data()
{
    QTest::addColumn<bool>("isStarted");
    QTest::newRow("when a run begins") << true;
    QTest::newRow("when the path changes") << false;
}

void TestLeftOver::takesTheOfferBack()
{
    QFETCH(const bool, isStarted);
    const TestProject project;
    const auto window = cancelledWindow(project);
    AWAIT(!messageIn(*window).isEmpty());
    if (isStarted)
        press((*window)->ui.btnStart);
    else
        (*window)->ui.lnProjectPath->setText(project.beside(u"other"_s));
    QCOMPARE(messageIn(*window), QString());
    AWAIT((*window)->isIdle());
    QCOMPARE(messageIn(*window), QString());
}

void TestLeftOver::tellsWhyNothingWasPutAway_data()
{
    QTest::addColumn<bool>("isInUse");
    QTest::addColumn<QString>("text");
    QTest::newRow("no history")
        << false
        << u"\".vantrel.history\" cannot be used: it is no folder. \"scr_temp\" stays "
           "where it is, and takes part in the next run."_s;
    QTest::newRow("in use") << true << u"Nothing was touched: the project is in use by "_s;
}

void TestLeftOver::tellsWhyNothingWasPutAway()
{
    QFETCH(const bool, isInUse);
    QFETCH(const QString, text);
    const TestProject project;
    const auto window = cancelledWindow(project);
    AWAIT(!messageIn(*window).isEmpty());
    std::unique_ptr<ProjectLock> lock;
    if (isInUse)
        lock = std::make_unique<ProjectLock>(project.dir());
    else
        project.write(u".vantrel.history"_s, "a file");
    press(barOf(*window).findChild<QPushButton *>(u"btnPutAway"_s));
    AWAIT(messageIn(*window).startsWith(text));
    QCOMPARE(project.files(u"scr_temp"_s), QStringList{u"00.psc"_s});
}

void TestLeftOver::stopsBeforeTheNextScreen()
{
    const TestProject project;
    endWhileCopyingBack(project);
    const StartedWindow window(project);
    AWAIT(window.question());
    HeldFile file(project.path(u"scr_bak/a.psc"_s));
    press(window.button(u"btnPutBack"_s));
    QVERIFY(file.waitForReader());
    AWAIT(window.progress());
    QCOMPARE(window.progress()->windowModality(), Qt::NonModal);
    auto *cancel = window.progress()->findChild<QPushButton *>(u"btnCancel"_s);
    QTest::keyClick(window.progress(), Qt::Key_Escape);
    QVERIFY(!cancel->isEnabled());
    QCOMPARE(window.progress()->findChild<QLabel *>()->text(), u"Stopping after the current screen..."_s);
    file.release();
    AWAIT(window.end());
    QVERIFY(window.progress() == nullptr);
    QVERIFY2(textOf(window.end()).startsWith(u"The recovery was stopped"_s),
             qPrintable(textOf(window.end())));
    QCOMPARE(below(project, u"scr_bak"_s), all(original));
    QCOMPARE(leftOverIn(project), LeftOver::Run);

    window.end()->accept();
    press(window->ui.btnStart);
    AWAIT(window.question());
    press(window.button(u"btnPutBack"_s));
    AWAIT(window.end());
    QCOMPARE(below(project, u"scr"_s), all(original));
}

void TestLeftOver::showsWhatIsUnderWayInsteadOfStarting()
{
    const TestProject project;
    endWhileCopyingBack(project);
    const TestProject other(u"other"_s);
    put(other, u"scr"_s, original);
    const StartedWindow window(project);
    AWAIT(window.question());
    HeldFile file(project.path(u"scr_bak/a.psc"_s));
    press(window.button(u"btnPutBack"_s));
    window->ui.lnProjectPath->setText(other.dir());
    press(window->ui.btnStart);
    QVERIFY(window.progress());
    QVERIFY(!window->running);
    file.release();
    AWAIT(window.end());
    QCOMPARE(below(project, u"scr"_s), all(original));
    QVERIFY(!other.exists(u"scr_bak"_s));
}

void TestLeftOver::closesBeforeTheNextScreen_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("held");
    QTest::addColumn<bool>("isDestroyed"); // as by the end of the session, and not only closed
    QTest::newRow("putting back") << u"btnPutBack"_s << u"scr_bak/a.psc"_s << false;
    QTest::newRow("completing") << u"btnComplete"_s << u"scr/00.psc"_s << false;
    QTest::newRow("putting back, destroyed") << u"btnPutBack"_s << u"scr_bak/a.psc"_s << true;
    QTest::newRow("completing, destroyed") << u"btnComplete"_s << u"scr/00.psc"_s << true;
}

void TestLeftOver::closesBeforeTheNextScreen()
{
    QFETCH(const QString, button);
    QFETCH(const QString, held);
    QFETCH(const bool, isDestroyed);
    const TestProject project;
    endWhileCopyingBack(project);
    project.write(u"scr/00.psc"_s, original(u"00.psc"_s)); // not renamed: all is copied
    project.write(u"scr_temp/00.psc"_s, converted(u"00.psc"_s));
    const WarningRecorder recorder;
    StartedWindow window(project);
    AWAIT(window.question());
    HeldFile file(project.path(held));
    press(window.button(button));
    QVERIFY(file.waitForReader());
    if (isDestroyed) {
        std::thread releaser([&file] { file.release(); }); // this thread waits
        window.destroy();
        releaser.join();
    } else {
        window->close();
        file.release();
        const auto hasEnded = [&] { return window->findChildren<RecoveryProgress *>().isEmpty(); };
        AWAIT(hasEnded());
        QVERIFY(window.end() == nullptr);
    }
    QCOMPARE(WarningRecorder::warnings().filter(u"QThread"_s), QStringList());
    QCOMPARE(below(project, u"scr_bak"_s), all(original));
    QCOMPARE(leftOverIn(project), LeftOver::Run);
    QCOMPARE(LeftOverRun(project.dir()).putBack().outcome, RecoveryOutcome::Done);
    QCOMPARE(below(project, u"scr"_s), all(original));
}

void TestLeftOver::closesWhileItAsks()
{
    const TestProject project;
    endWhileCopyingBack(project);
    const QMap<QString, QByteArray> before = below(project, u""_s);
    StartedWindow window(project);
    AWAIT(window.question());
    window->close();
    QVERIFY(window.question() == nullptr);
    window.destroy();
    QCOMPARE(below(project, u""_s), before);
}

void TestLeftOver::saysWhatIsLeftToDo_data()
{
    QTest::addColumn<RecoveryAnswer>("answer");
    QTest::addColumn<QString>("text");
    RecoveryAnswer answer;
    answer.task = RecoveryTask::Complete;
    answer.failure = u"no memory"_s;
    QTest::newRow("nothing found out")
        << answer
        << u"What the interrupted run has left could not be found out: no memory. "
           "The next start tries again."_s;
    answer.failure.clear();
    answer.result = RecoveryResult{};
    answer.result->outcome = RecoveryOutcome::NothingConverted;
    QTest::newRow("nothing converted")
        << answer
        << u"Nothing was touched: \"scr_temp\" is gone, and the converted screens "
           "with it. Press Start Update again and choose Put Back."_s;
    answer.result->outcome = RecoveryOutcome::NotAllCopiedBack;
    QTest::newRow("not all copied back")
        << answer
        << u"Not all converted screens could be copied from \"scr_temp\" to \"scr\"; the log says why. No "
           u"screen "
           "is lost. Put right what is in the way, then press Start Update again."_s;
    answer.task = RecoveryTask::PutBack;
    answer.kind = LeftOver::Run;
    answer.result->outcome = RecoveryOutcome::Done;
    QTest::newRow("no screens")
        << answer
        << u"\"scr\" is as it was before the run. Copied from \"scr_bak\": 0. To run now, "
           "press Start Update again."_s;
}

void TestLeftOver::saysWhatIsLeftToDo()
{
    QFETCH(const RecoveryAnswer, answer);
    QFETCH(const QString, text);
    QCOMPARE(endOf(u"/plant"_s, answer).story.shown(), text);
    QCOMPARE(endOf(u"/plant"_s, answer).isGood,
             answer.result && answer.result->outcome == RecoveryOutcome::Done);
}

void TestLeftOver::namesEachKindOfUndecidedFiles()
{
    RecoveryAnswer answer;
    answer.kind = LeftOver::Run;
    answer.plan.missing = QStringList{u"missing.psc"_s};
    answer.plan.contradictory = QStringList{u"two versions.psc"_s};
    answer.plan.linked = QStringList{u"linked.psc"_s};
    answer.plan.unreadable = QStringList{u"/plant/scr/closed"_s};
    answer.plan.unnamable = QStringList{u"/plant/scr/f\\xe4.psc"_s};
    const QStringList lines = questionAbout(u"/plant"_s, answer).shown().split(u'\n');
    for (const QString &name :
         {u"missing.psc"_s, u"two versions.psc"_s, u"linked.psc"_s, u"scr/closed"_s, u"scr/f\\xe4.psc"_s})
        QVERIFY2(lines.contains(name), qPrintable(name));
    QCOMPARE(lines.filter(QRegularExpression(u":$"_s)).size(), 5);
}

void TestLeftOver::hasWordsForEveryStage()
{
    QSet<QString> texts;
    qsizetype stages = 0;
    for (const RunStageRow &row : runStageRows) {
        // No run is interrupted there; an undoing is, in the last one.
        if (row.stage == RunStage::Done || row.stage == RunStage::Cancelled ||
            row.stage == RunStage::SettingAside)
            continue;
        RecoveryAnswer answer;
        answer.kind = LeftOver::Run;
        answer.plan.record.state.stage = row.stage;
        texts.insert(summaryOf(u"/plant"_s, answer).shown());
        ++stages;
    }
    QCOMPARE(texts.size(), stages);
}

void TestLeftOver::showsHostileNamesAsText()
{
    Story story;
    story.say("%1 and %2.", {u"%2"_s, u"a\nb\u202Ec<b>"_s});
    story.list({u"x\ny"_s});
    QCOMPARE(story.shown(), u"%2 and a\uFFFDb\uFFFDc<b>.\nx\uFFFDy"_s);
    QCOMPARE(story.logged(), u"%2 and a\uFFFDb\uFFFDc<b>. x\uFFFDy"_s);
}

void TestLeftOver::speaksGerman()
{
    const Translations translations({u"de-DE"_s});
    const TestProject project;
    endWhileBackingUp(project);
    const StartedWindow window(project);
    AWAIT(window.question());
    QCOMPARE(window.question()->windowTitle(), u"Vantrel-Info"_s);
    const QString text = textOf(window.question());
    for (const QString &english : {u"was"_s, u"Screens"_s, u"Put Back"_s, u"Cancel"_s})
        QVERIFY2(!text.contains(english), qPrintable(text));
    QVERIFY(window->logMessages().first().startsWith(u"A run over "_s)); // logs are the same everywhere
    press(window.button(u"btnPutBack"_s));
    AWAIT(window.end());
    QVERIFY2(textOf(window.end()).startsWith(u"Alle 3 Bilder sind wieder"_s),
             qPrintable(textOf(window.end())));
}

void TestLeftOver::fitsASmallScreen()
{
    const QString longName(250, u'W');
    const TestProject project(u"a_rather_long_name_of_a_folder/"_s.repeated(8) + "plant"_L1);
    RunFacts many = facts();
    for (int number = 0; number < 20; ++number)
        many.screens += longName + QString::number(number);
    put(project, u"scr"_s, original);
    writeStage(project, RunStage::Removing, RunStage::Removing, many);
    for (const QString &language : {u"en"_s, u"de"_s}) {
        const Translations translations({language});
        const StartedWindow window(project);
        AWAIT(window.question());
        const QSize size = window.question()->size();
        QVERIFY2(size.width() <= 800 && size.height() <= 600,
                 qPrintable(u"%1 x %2"_s.arg(size.width()).arg(size.height())));
        const auto *label = window.question()->findChild<QLabel *>(u"qt_msgbox_label"_s);
        QVERIFY2(label->minimumSizeHint().width() <= label->width(), "the text is cut off");
    }
}

VANTREL_TEST(QApplication, TestLeftOver)
#include "tst_leftover.moc"
