// The projects that the user worked with last.
#include "RecentProjects.h"

#include "ProjectFolder.h"
#include "UserSettings.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype mostProjects = 10;
constexpr QLatin1StringView key = "recent/projects"_L1;

} // namespace

QStringList recentProjects()
{
    const UserSettings settings;
    return settings.value(key).toStringList().mid(0, mostProjects);
}

void rememberProject(const QString &folder)
{
    const QString project = QDir::cleanPath(folder);
    if (!QDir::isAbsolutePath(project) || !isProjectFolder(project))
        return;
    QStringList projects = recentProjects();
    projects.removeAll(project);
    projects.prepend(project);
    UserSettings().setValue(key, projects.mid(0, mostProjects));
}
