// The projects that the user worked with last.
#include "RecentProjects.h"

#include "ProjectFolder.h"

#include <QDir>
#include <QSettings>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype mostProjects = 10;
constexpr QLatin1StringView key = "recent/projects"_L1;

} // namespace

QStringList recentProjects()
{
    const QSettings settings(u"QEL"_s, u"Vantrel"_s);
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
    QSettings(u"QEL"_s, u"Vantrel"_s).setValue(key, projects.mid(0, mostProjects));
}
