// Tells how soon a run gives its first sign, and how soon it heeds a cancel.
#include "Converter.h"
#include "Figures.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSemaphore>
#include <QThread>

#include <atomic>

using namespace Qt::StringLiterals;

namespace {

/// What the worker's thread writes down.
struct Signs
{
    QElapsedTimer clock;
    std::atomic<qint64> firstProgress{-1};
    std::atomic<int> files{0};
    std::atomic<int> begun{0};
    QSemaphore isWellUnderWay;
    QSemaphore hasEnded;
};

void follow(const Converter &converter, Signs &signs)
{
    QObject::connect(
        &converter, &Converter::sigProgressChanged, &converter,
        [&signs](int count, int index) {
            signs.files = count;
            if (index == 0)
                signs.firstProgress = signs.clock.nsecsElapsed();
            // Far enough for the run to be at its pace.
            if (++signs.begun == count / 4)
                signs.isWellUnderWay.release();
        },
        Qt::DirectConnection);
    QObject::connect(
        &converter, &Converter::sigConvertEnd, &converter, [&signs] { signs.hasEnded.release(); },
        Qt::DirectConnection);
}

double milliseconds(qint64 nanoseconds)
{
    return static_cast<double>(nanoseconds) * 1e-6;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QString projectDir = projectDirOf(argc, argv);
    Signs signs;
    Converter converter;
    converter.setProjectDir(projectDir);
    converter.setFilterNames(libraryNames(projectDir));
    follow(converter, signs);

    signs.clock.start();
    converter.announceStart();
    QMetaObject::invokeMethod(&converter, &Converter::onStartConvert, Qt::QueuedConnection);

    signs.isWellUnderWay.acquire();
    converter.cancel();
    const qint64 cancelled = signs.clock.nsecsElapsed();
    const int begunAtCancel = signs.begun;
    signs.hasEnded.acquire();
    const qint64 ended = signs.clock.nsecsElapsed();

    converter.thread()->quit();
    converter.thread()->wait();
    printFigures({{"files"_L1, signs.files.load()},
                  {"first_progress_ms"_L1, milliseconds(signs.firstProgress)},
                  {"begun_after_cancel"_L1, signs.begun - begunAtCancel},
                  {"end_after_cancel_ms"_L1, milliseconds(ended - cancelled)}});
    return 0;
}
