// Times a run that is started in the window, and how long the window is deaf to its user meanwhile.
#include "Figures.h"
#include "FilterNames.h"
#include "Vantrel.h"
#include "updUtils.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <ctime>

using namespace Qt::StringLiterals;

namespace {

QSet<QString> namesOf(const QString &projectDir)
{
    QList<QFileInfo> imageFiles;
    updUtils::findImageFiles(projectDir + "/scr"_L1, imageFiles);
    QSet<QString> names;
    for (const QFileInfo &imageFile : std::as_const(imageFiles))
        collectFilterNames(imageFile.filePath(), &names);
    return names;
}

/// The main window with what a run needs in reach.
class MeasuredWindow final : public Vantrel
{
public:
    void start(const QString &projectDir)
    {
        ui.lnProjectPath->setText(projectDir);
        selectedFilterNames = namesOf(projectDir);
        show();
        QCoreApplication::processEvents();
        ui.btnStart->click();
    }

    bool isRunning() const { return running; }

    int reports(const QString &status) const
    {
        int count = 0;
        for (int row = 0; row < ui.rplShapeTable->rowCount(); ++row)
            count += ui.rplShapeTable->item(row, 0)->text() == status ? 1 : 0;
        return count;
    }

    int logEntries() const { return ui.logTable->rowCount(); }
};

/// The processor time of the calling thread.
qint64 processorNanoseconds()
{
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return time.tv_sec * 1'000'000'000LL + time.tv_nsec;
}

double milliseconds(qint64 nanoseconds)
{
    return static_cast<double>(nanoseconds) * 1e-6;
}

/// Ticks like the input of a user, who is heard only when the event loop comes round.
class StallWatch final
{
public:
    StallWatch()
    {
        m_clock.start();
        m_ticks.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_ticks, &QTimer::timeout, [this] { tick(); });
        m_ticks.start(1);
    }

    void tick()
    {
        m_longest = std::max(m_longest, m_clock.nsecsElapsed());
        m_clock.start();
        const qint64 processor = processorNanoseconds();
        m_busiest = std::max(m_busiest, processor - m_processorBefore);
        m_processorBefore = processor;
    }

    qint64 longest() const { return m_longest; }
    /// The longest stall on a machine that has nothing else to do.
    qint64 busiest() const { return m_busiest; }

private:
    QElapsedTimer m_clock;
    QTimer m_ticks;
    qint64 m_longest = 0;
    qint64 m_busiest = 0;
    qint64 m_processorBefore = processorNanoseconds();
};

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    const QString projectDir = projectDirOf(argc, argv);
    MeasuredWindow window;

    StallWatch stalls;
    QElapsedTimer clock;
    clock.start();
    window.start(projectDir);
    while (window.isRunning())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    stalls.tick();

    printFigures({{"seconds"_L1, static_cast<double>(clock.nsecsElapsed()) * 1e-9},
                  {"stall_ms"_L1, milliseconds(stalls.longest())},
                  {"stall_processor_ms"_L1, milliseconds(stalls.busiest())},
                  {"window_processor_ms"_L1, milliseconds(processorNanoseconds())},
                  {"replaced"_L1, window.reports(u"REPLACE"_s)},
                  {"errors"_L1, window.reports(u"ERROR"_s)},
                  {"log_entries"_L1, window.logEntries()}});
    return 0;
}
