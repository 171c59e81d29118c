// Tells when something changes in a folder.
#pragma once

#include <QString>
#include <QThread>

class QFileSystemWatcher;

/// Watches one folder, not what lies deeper, on the thread that it manages: it starts that thread
/// itself and moves onto it, so its slots run there. Delete it from the thread that made it.
class WatchFolderThread final : public QThread
{
    Q_OBJECT

public:
    /// Starts watching. A folder that is missing is not watched.
    explicit WatchFolderThread(QString folder);
    /// Ends the thread, then returns.
    ~WatchFolderThread() override;

    /// Watches another folder, or the same one after it was removed and made again. Callable from
    /// any thread; takes effect on the watcher's own.
    void changeFolder(const QString &folder);

Q_SIGNALS:
    /// An entry of the folder was added, removed or renamed, or the folder itself went away.
    void sigFolderChanged();

public Q_SLOTS:
    void onUpdateFolder(QString updFolder);
    void onDirChanged(QString path);
    void onFileChanged(QString path);

protected:
    void run() override;

private:
    void watch();

    QFileSystemWatcher *m_watcher = nullptr; ///< made and deleted on the watcher's thread
    QString m_path;
};
