// One conversion run as the window would start it, without a window.
#include "UpdateRun.h"

#include <QEventLoop>

using namespace Qt::StringLiterals;

UpdateRun::UpdateRun(const RunSettings &settings, Presenter &presenter)
    : m_settings(settings)
    , m_presenter(presenter)
{
    m_converter.setProjectDir(settings.projectDir);
    m_converter.setFilterNames(settings.shapeNames);
    m_converter.setMakeFolders(settings.makeFolders);

    connect(&m_converter, &Converter::sigProgressChanged, this, &UpdateRun::onProgressChanged,
            Qt::QueuedConnection);
    connect(&m_converter, &Converter::sigConvertInfo, this, &UpdateRun::onConvertInfo, Qt::QueuedConnection);
    connect(
        &m_converter, &Converter::sigUpdFileName, this,
        [this](const QString &name) { m_presenter.showFile(shown(name)); }, Qt::QueuedConnection);
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
    m_presenter.showProgress(count, index);
}

void UpdateRun::onConvertInfo(Converter::STBlock block)
{
    if (m_settings.scratchRoot.isEmpty())
        m_changeLog.append(block, m_converter.logFileName());
    block.imageFile = shown(block.imageFile);
    block.error = shown(block.error);
    m_presenter.showReport(block);
    count(block);
}

void UpdateRun::count(const Converter::STBlock &block)
{
    constexpr int notReplacedStatus = 1;
    constexpr int errorStatus = 2;
    switch (block.status) {
    case notReplacedStatus:
        ++m_result.notReplaced;
        break;
    case errorStatus:
        ++m_result.errors;
        // Reports of objects name their lines.
        if (block.firstLine < 0)
            m_result.failedFiles.insert(block.imageFile);
        break;
    default:
        ++m_result.replaced;
    }
}

void UpdateRun::handleMessage(QString level, QString time, QString message)
{
    if (level == "alert"_L1)
        m_result.isCopiedBack = false;
    m_presenter.showLogEntry({level, time, shown(message)});
}

QString UpdateRun::shown(QString text) const
{
    return m_settings.scratchRoot.isEmpty() ? text : text.remove(m_settings.scratchRoot);
}
