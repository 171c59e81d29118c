// A user who presses what comes to hand, in any order and at any moment.
#include "Filters_UI.h"
#include "Gates.h"
#include "Logger.h"
#include "Surroundings.h"
#include "TestSuite.h"
#include "TestWindow.h"

#include <QApplication>
#include <QRandomGenerator>
#include <QTest>

#include <array>
#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr int stepsOfAWalk = 300;
constexpr int patience = 60'000;

/// Counts the milestones of runs.
class Milestones final : public Qel::Logger::LogListener
{
public:
    Milestones() { Qel::Logger::registerLogListener(this); }
    ~Milestones() override { Qel::Logger::unregisterLogListener(this); }
    Q_DISABLE_COPY_MOVE(Milestones)

    void handleMessage(QString level, QString /*time*/, QString message) override
    {
        if (level != "system"_L1)
            return;
        starts += message == "Start"_L1 ? 1 : 0;
        ends += message == "End"_L1 ? 1 : 0;
    }

    int starts = 0;
    int ends = 0;
};

/// Three screens, one of them with an object whose shape is missing.
void makeProject(const TestProject &project)
{
    for (const QString &name : {u"scr/a.psc"_s, u"scr/b.psc"_s})
        project.write(name, "ID;1;Rect;a\n");
    project.write(u"scr/c.psc"_s, "ID;1;O\nLIB;gone.plb;1;p;OBJ:a\nPSDV;0;0;9;9;0;1;0;0;0;0;1\n");
    project.makeFolder(u"log"_s);
}

/// One user at one window, and what is to be expected of it.
class Walk final
{
public:
    explicit Walk(quint32 seed)
        : m_random(seed)
    {
        for (const TestProject &project : m_projects)
            makeProject(project);
        m_window.ui.lnProjectPath->setText(m_projects.front().dir());
        // In every other walk runs stand still until they are let through.
        if (seed % 2 == 1)
            m_gate.emplace(WorkerGate::BeforeFile, *m_window.converter);
    }

    void step()
    {
        const quint32 choice = m_random.bounded(100U);
        if (choice < 45)
            pressStart();
        else if (choice < 65)
            QCoreApplication::processEvents();
        else if (choice < 85)
            waitForTheWorker();
        else if (choice < 97)
            m_window.ui.lnProjectPath->setText(m_projects.at(m_random.bounded(2U)).dir());
        else
            openFilters();
    }

    /// Empty where the window shows what it should.
    QString complaint() const
    {
        const bool isShown = m_isWanted && toldEnds() < m_starts;
        if (m_window.running != isShown)
            return isShown ? u"a run is under way and not shown"_s : u"a run is shown that is none"_s;
        if (m_window.ui.btnStart->text() != (isShown ? "Cancel"_L1 : "Start Update"_L1))
            return u"the button reads "_s + m_window.ui.btnStart->text();
        for (const QPushButton *button : {m_window.ui.btnBrowse, m_window.ui.btnClose}) {
            if (button->isEnabled() == isShown)
                return button->objectName();
        }
        for (const QPushButton *button : {m_window.ui.btnChangedFiles, m_window.ui.btnLog}) {
            if (button->isEnabled() != (!isShown && m_starts > 0))
                return button->objectName();
        }
        return m_milestones.starts == m_starts ? QString() : u"a start was not logged once"_s;
    }

    /// Lets every run come to its end. Returns whether each has told it once.
    bool comesToRest()
    {
        m_gate.reset();
        if (!QTest::qWaitFor([this] { return toldEnds() >= m_starts; }, patience))
            return false;
        waitForQueuedCalls(*m_window.converter);
        QCoreApplication::processEvents();
        return toldEnds() == m_starts && complaint().isEmpty();
    }

private:
    /// A cancel logs an end of its own.
    int toldEnds() const { return m_milestones.ends - m_cancels; }

    void pressStart()
    {
        // What the button reads is what the user wants.
        if (m_window.ui.btnStart->text() == "Cancel"_L1) {
            ++m_cancels;
            m_isWanted = false;
        } else {
            ++m_starts;
            m_isWanted = true;
        }
        m_window.ui.btnStart->click();
    }

    void waitForTheWorker()
    {
        constexpr int shortly = 20;
        const int endsBefore = m_milestones.ends;
        if (m_gate)
            m_gate->letThrough();
        (void)QTest::qWaitFor([&] { return m_milestones.ends > endsBefore; }, shortly);
    }

    void openFilters()
    {
        int answered = 0;
        const bool isAccepted = m_random.bounded(2U) == 0;
        QObject context;
        whenAsked<Filters_UI>(&context, answered, [isAccepted](Filters_UI *dialog) {
            if (isAccepted)
                dialog->onOkPressed();
            else
                dialog->reject();
        });
        m_window.onBtnFiltersPressed();
    }

    QRandomGenerator m_random;
    std::array<TestProject, 2> m_projects;
    Milestones m_milestones;
    TestWindow m_window;
    std::optional<WorkerGate> m_gate; ///< opens before the window waits for its worker
    int m_starts = 0;
    int m_cancels = 0;
    bool m_isWanted = false; ///< the run that was started last
};

} // namespace

class TestWindowWalk : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { forgetSettings(); }

    void showsWhatIsUnderWay_data();
    void showsWhatIsUnderWay();
};

/// VANTREL_WALK_SEEDS says how many walks there are.
void TestWindowWalk::showsWhatIsUnderWay_data()
{
    QTest::addColumn<quint32>("seed");
    constexpr int fewWalks = 6;
    const int asked = qEnvironmentVariableIntValue("VANTREL_WALK_SEEDS");
    const int walks = asked > 0 ? asked : fewWalks;
    for (int seed = 0; seed < walks; ++seed)
        QTest::addRow("seed %d", seed) << static_cast<quint32>(seed);
}

void TestWindowWalk::showsWhatIsUnderWay()
{
    QFETCH(const quint32, seed);
    Walk walk(seed);
    for (int step = 0; step < stepsOfAWalk; ++step) {
        walk.step();
        const QString complaint = walk.complaint();
        QVERIFY2(complaint.isEmpty(), qPrintable(u"step %1: %2"_s.arg(step).arg(complaint)));
    }
    QVERIFY(walk.comesToRest());
}

VANTREL_TEST(QApplication, TestWindowWalk)
#include "tst_windowwalk.moc"
