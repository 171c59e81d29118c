// Tells when something changes in a folder.
#include "WatchFolderThread.h"

#include "EngineLog.h"
#include "Failures.h"

#include <QFileInfo>
#include <QFileSystemWatcher>

#include <utility>

using namespace Qt::StringLiterals;

WatchFolderThread::WatchFolderThread(QString folder)
    : m_path(std::move(folder))
{
    moveToThread(this);
    start(QThread::InheritPriority);
}

WatchFolderThread::~WatchFolderThread()
{
    if (isRunning()) {
        quit();
        wait();
    }
}

void WatchFolderThread::changeFolder(const QString &folder)
{
    QMetaObject::invokeMethod(this, "onUpdateFolder", Qt::QueuedConnection, Q_ARG(QString, folder));
}

/// The window goes on without a watcher. Exceptions of its slots do not come here.
void WatchFolderThread::run()
try {
    QFileSystemWatcher watcher;
    m_watcher = &watcher;
    watch();
    connect(&watcher, &QFileSystemWatcher::directoryChanged, this, &WatchFolderThread::onDirChanged);
    connect(&watcher, &QFileSystemWatcher::fileChanged, this, &WatchFolderThread::onFileChanged);
    exec();
    m_watcher = nullptr;
} catch (...) {
    m_watcher = nullptr;
    logError(u"The folder of the screens is not watched: %1"_s.arg(handledFailure()));
}

void WatchFolderThread::onUpdateFolder(QString updFolder)
{
    if (!m_path.isEmpty())
        m_watcher->removePath(m_path);
    m_path = updFolder;
    watch();
}

void WatchFolderThread::onDirChanged(QString /*path*/)
{
    Q_EMIT sigFolderChanged();
}

void WatchFolderThread::onFileChanged(QString /*path*/)
{
    Q_EMIT sigFolderChanged();
}

void WatchFolderThread::watch()
{
    // The path follows the user's typing: most of what is asked for is not there, and Qt would
    // complain about each part of a path on stderr.
    const QFileInfo folder(m_path);
    if (folder.exists() && folder.isReadable())
        m_watcher->addPath(m_path);
}
