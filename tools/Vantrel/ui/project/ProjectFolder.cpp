// Which project a file or folder belongs to.
#include "ProjectFolder.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

/// Some folder above a project may happen to have a folder of either name, hardly of both.
bool isCompleteProject(const QString &folder)
{
    return isProjectFolder(folder) && QFileInfo(folder + "/mac"_L1).isDir();
}

/// The first folder for which `isMeant` holds, on the way from `folder` to the root.
template <typename Condition>
std::optional<QString> nearestAbove(const QString &folder, Condition isMeant)
{
    QDir dir(folder);
    do {
        if (isMeant(dir.path()))
            return dir.path();
    } while (dir.cdUp());
    return std::nullopt;
}

} // namespace

std::optional<QString> projectFolderOf(const QString &path)
{
    if (path.isEmpty())
        return std::nullopt;
    const QFileInfo meant(QDir::cleanPath(QFileInfo(path).absoluteFilePath()));
    if (!meant.exists())
        return std::nullopt;

    if (!meant.isDir()) {
        const std::optional<QString> complete = nearestAbove(meant.absolutePath(), isCompleteProject);
        return complete ? complete : nearestAbove(meant.absolutePath(), isProjectFolder);
    }
    const QString folder = meant.filePath();
    return isProjectFolder(folder) ? folder : nearestAbove(folder, isCompleteProject).value_or(folder);
}

bool isProjectFolder(const QString &folder)
{
    return !folder.isEmpty() && QFileInfo(folder + "/scr"_L1).isDir();
}
