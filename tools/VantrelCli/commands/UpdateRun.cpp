// One conversion run as the window would start it, without a window.
#include "UpdateRun.h"

#include <QEventLoop>
#include <QThread>

#include <system_error>

using namespace Qt::StringLiterals;

UpdateRun::UpdateRun(const RunSettings &settings, Presenter &presenter)
    : m_settings(settings)
    , m_presenter(presenter)
    , m_inbox([this](std::span<const RunNews> news) { receive(news); })
{
    m_converter.setProjectDir(settings.projectDir);
    m_converter.setFilterNames(settings.shapeNames);
    m_converter.setMakeFolders(settings.makeFolders);
    m_converter.setKeptRuns(settings.keptRuns);
    m_converter.setKeepsOthers(settings.keepsOthers);
    m_converter.setPutsAwayTempFolder(true);
    m_converter.setGoesOnFromLeftOver(settings.goesOnFromLeftOver);
    m_converter.setLocked(settings.isLocked);

    // On the run's thread: the inbox takes them to this one.
    connect(
        &m_converter, &Converter::sigProgressChanged, &m_inbox,
        [this](int count, int index) {
            m_inbox.add(RunProgress{count, index});
        },
        Qt::DirectConnection);
    connect(
        &m_converter, &Converter::sigUpdFileName, &m_inbox,
        [this](const QString &path) { m_inbox.add(FileBegun{path}); }, Qt::DirectConnection);
    connect(
        &m_converter, &Converter::sigConvertInfo, &m_inbox,
        [this](const STBlock &report) { m_inbox.add(report); }, Qt::DirectConnection);
    Qel::Logger::registerLogListener(this);
}

UpdateRun::~UpdateRun()
{
    // Where an exception ends this before the run has ended.
    m_converter.cancel();
    m_inbox.stopWaiting();
    m_converter.thread()->quit();
    m_converter.thread()->wait();
    Qel::Logger::unregisterLogListener(this);
}

RunResult UpdateRun::execute()
{
    if (!m_converter.thread()->isRunning())
        throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again));
    QEventLoop untilEnd;
    connect(&m_converter, &Converter::sigConvertEnd, &untilEnd, &QEventLoop::quit, Qt::QueuedConnection);
    m_converter.announceStart();
    QMetaObject::invokeMethod(&m_converter, &Converter::onStartConvert, Qt::QueuedConnection);
    untilEnd.exec();
    m_inbox.handOver();
    m_result.changeLogPath = m_converter.logFileName();
    return m_result;
}

void UpdateRun::stop()
{
    m_converter.cancel();
}

void UpdateRun::receive(std::span<const RunNews> news)
{
    if (m_settings.scratchRoot.isEmpty()) {
        for (const RunNews &item : news) {
            if (const auto *const report = std::get_if<STBlock>(&item))
                m_changeLog.add(*report);
        }
        m_changeLog.write(m_converter.logFileName());
    }
    for (const RunNews &item : news)
        std::visit([this](const auto &told) { show(told); }, item);
    // What is told while this is logged is received within it.
    m_changeLog.tellUnfilledRow();
}

void UpdateRun::show(const RunProgress &progress)
{
    m_result.fileCount = progress.count;
    m_result.isCompleted = progress.index == progress.count;
    m_presenter.showProgress(progress.count, progress.index);
}

void UpdateRun::show(const FileBegun &file)
{
    m_presenter.showFile(shown(file.path));
}

void UpdateRun::show(STBlock report)
{
    report.imageFile = shown(report.imageFile);
    report.error = shown(report.error);
    m_presenter.showReport(report);
    count(report);
}

void UpdateRun::count(const STBlock &block)
{
    switch (block.status) {
    case ReportStatus::NotReplaced:
        ++m_result.notReplaced;
        break;
    case ReportStatus::Error:
        ++m_result.errors;
        break;
    default:
        ++m_result.replaced;
    }
}

void UpdateRun::handleMessage(QString level, QString time, QString message)
{
    if (level == "alert"_L1)
        m_result.isCopiedBack = false;
    m_inbox.handOver(); // what was told before
    m_presenter.showLogEntry({level, time, shown(message)});
}

QString UpdateRun::shown(QString text) const
{
    return m_settings.scratchRoot.isEmpty() ? text : text.remove(m_settings.scratchRoot);
}
