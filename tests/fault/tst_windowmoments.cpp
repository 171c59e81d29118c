// A window that is closed, and runs that are cancelled, at moments of chance.
#include "Gates.h"
#include "StageFile.h"
#include "Surroundings.h"
#include "TestSuite.h"
#include "TestWindow.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QMap>
#include <QTest>

#include <chrono>
#include <memory>
#include <random>

using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 60'000; // milliseconds
constexpr int closings = 50;
constexpr int cancellings = 200;
constexpr int runsBetweenLooks = 10;
constexpr int screenCount = 12;

/// Screens that a run without a choice of shapes rewrites byte by byte.
using Screens = QMap<QString, QByteArray>;

Screens makeProject(const TestProject &project)
{
    Screens screens;
    for (int number = 0; number < screenCount; ++number) {
        const QString folder = number % 2 == 0 ? u""_s : u"area/"_s;
        const QString name = u"%1%2.psc"_s.arg(folder).arg(number, 2, 10, QChar(u'0'));
        screens[name] = "ID;1;Rect;N\nLIB;pump.plb;1;Plant/" + QByteArray::number(number) +
                        ";Obj\nPSDV;1;2;3;4;2;1;15;8;1;0;1;0\n";
        project.write(u"scr/"_s + name, screens[name]);
    }
    project.makeFolder(u"log"_s);
    return screens;
}

/// The screens of which neither the image folder nor the backup holds every byte.
QStringList lostScreens(const TestProject &project, const Screens &screens)
{
    QStringList lost;
    for (auto screen = screens.cbegin(); screen != screens.cend(); ++screen) {
        if (project.read(u"scr/"_s + screen.key()) != screen.value() &&
            project.read(u"scr_bak/"_s + screen.key()) != screen.value())
            lost += screen.key();
    }
    return lost;
}

/// What only a run that is under way may have in a project.
QStringList filesOfRun(const TestProject &project)
{
    QStringList found;
    if (StageFile::tellsOfInterruption(project.dir()))
        found += StageFile::path(project.dir());
    for (const QString &name : {u".vantrel.run.new"_s, u".vantrel.lock"_s}) {
        if (project.exists(name))
            found += name;
    }
    return found;
}

/// Handles events for a while: about as long as a run takes, at most.
void letTimePass(std::mt19937 &chance)
{
    constexpr int longest = 30'000; // microseconds
    std::uniform_int_distribution<int> some(0, longest);
    const QDeadlineTimer moment(std::chrono::microseconds(some(chance)));
    while (!moment.hasExpired())
        QCoreApplication::processEvents();
}

void press(QPushButton *button)
{
    QTest::mouseClick(button, Qt::LeftButton);
}

} // namespace

class TestWindowMoments : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { forgetSettings(); }

    void closingNeverLosesAScreen();
    void cancellingNeverLosesAScreen();
};

void TestWindowMoments::closingNeverLosesAScreen()
{
    std::mt19937 chance(1); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same moments each time
    for (int closing = 0; closing < closings; ++closing) {
        const TestProject project;
        const Screens screens = makeProject(project);
        const WarningRecorder recorder;
        auto window = std::make_unique<TestWindow>();
        window->show();
        window->ui.lnProjectPath->setText(project.dir());
        press(window->ui.btnStart);
        letTimePass(chance);
        window->close();
        window.reset();

        QCOMPARE(lostScreens(project, screens), QStringList());
        QCOMPARE(filesOfRun(project), QStringList());
        QCOMPARE(WarningRecorder::warnings().filter(u"QThread"_s), QStringList());
    }
}

void TestWindowMoments::cancellingNeverLosesAScreen()
{
    std::mt19937 chance(2); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same moments each time
    const TestProject project;
    const Screens screens = makeProject(project);
    TestWindow window;
    window.ui.lnProjectPath->setText(project.dir());
    for (int cancelling = 1; cancelling <= cancellings; ++cancelling) {
        press(window.ui.btnStart);
        letTimePass(chance);
        if (window.running)
            press(window.ui.btnStart);
        if (cancelling % runsBetweenLooks != 0)
            continue;
        waitForQueuedCalls(*window.converter);
        QTRY_VERIFY_WITH_TIMEOUT(!window.running, patience);
        QCOMPARE(lostScreens(project, screens), QStringList());
        QCOMPARE(filesOfRun(project), QStringList());
    }

    press(window.ui.btnStart);
    QTRY_VERIFY_WITH_TIMEOUT(!window.running, patience);
    for (auto screen = screens.cbegin(); screen != screens.cend(); ++screen)
        QCOMPARE(project.read(u"scr/"_s + screen.key()), screen.value());
}

VANTREL_TEST(QApplication, TestWindowMoments)
#include "tst_windowmoments.moc"
