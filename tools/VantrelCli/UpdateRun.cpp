// One conversion run as the window would start it, without a window.
#include "UpdateRun.h"

#include <QEventLoop>

using namespace Qt::StringLiterals;

UpdateRun::UpdateRun(const RunSettings &settings, Output &errorOutput)
    : m_settings(settings)
    , m_errorOutput(errorOutput)
    , m_progress(errorOutput, !settings.quiet)
{
    m_converter.setProjectDir(settings.projectDir);
    m_converter.setFilterNames(settings.shapeNames);
    m_converter.setMakeFolders(settings.makeFolders);

    connect(&m_converter, &Converter::sigProgressChanged, this, &UpdateRun::onProgressChanged,
            Qt::QueuedConnection);
    connect(&m_converter, &Converter::sigConvertInfo, this, &UpdateRun::onConvertInfo, Qt::QueuedConnection);
    connect(
        &m_converter, &Converter::sigUpdFileName, this,
        [this](const QString &name) { m_progress.show(m_result.fileCount, m_index, name); },
        Qt::QueuedConnection);
    Qel::Logger::registerLogListener(this);
}

UpdateRun::~UpdateRun()
{
    m_converter.thread()->quit();
    m_converter.thread()->wait();
    Qel::Logger::unregisterLogListener(this);
}

RunResult UpdateRun::execute()
{
    QEventLoop untilEnd;
    connect(&m_converter, &Converter::sigConvertEnd, &untilEnd, &QEventLoop::quit, Qt::QueuedConnection);
    m_converter.announceStart();
    QMetaObject::invokeMethod(&m_converter, &Converter::onStartConvert, Qt::QueuedConnection);
    untilEnd.exec();
    m_progress.clear();
    m_result.changeLogPath = m_converter.logFileName();
    return m_result;
}

void UpdateRun::stop()
{
    m_converter.cancel();
}

void UpdateRun::onProgressChanged(int count, int index)
{
    m_result.fileCount = count;
    m_result.isCompleted = index == count;
    m_index = index;
}

void UpdateRun::onConvertInfo(const Converter::STBlock &block)
{
    writeChangeLog(block, m_converter.logFileName());
    m_result.reports.append(block);
}

void UpdateRun::handleMessage(QString level, QString, QString message)
{
    const bool isAlert = level == "alert"_L1;
    if (isAlert)
        m_result.isCopiedBack = false;
    m_progress.clear();
    const QString shownLevel = m_errorOutput.colored(level, isAlert ? Color::Red : Color::Yellow);
    m_errorOutput.printLine(u"%1: %2"_s.arg(shownLevel, escaped(message)));
}
