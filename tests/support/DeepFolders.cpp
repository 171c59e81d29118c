// Folders in folders, more than a small stack has room for.
#include "DeepFolders.h"

#include <QFile>
#include <QThread>

#include <memory>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

void makeDeepFolders(const QString &folder, int depth)
{
    constexpr mode_t usualRights = 0755;
    int here = open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (; depth > 0 && here >= 0; --depth) {
        mkdirat(here, "d", usualRights);
        const int inner = openat(here, "d", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        close(here);
        here = inner;
    }
    if (here < 0)
        qFatal("%s could not be made so deep", qPrintable(folder));
    close(here);
}

void onSmallStack(const std::function<void()> &work)
{
    constexpr uint smallStack = 256 * 1024;
    const std::unique_ptr<QThread> thread(QThread::create(work));
    thread->setStackSize(smallStack);
    thread->start();
    thread->wait();
}
