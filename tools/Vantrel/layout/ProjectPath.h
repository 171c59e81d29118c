// Paths of a project, and as a user reads them.
#pragma once

#include <QFileInfo>
#include <QString>

/// A path below the project directory without that directory; any other path as it is.
inline QString relativeTo(const QString &projectDir, const QString &path)
{
    return path.startsWith(projectDir + u'/') ? path.sliced(projectDir.size() + 1) : path;
}

/// Why nothing may be done in a folder as in a project, as a sentence without a capital and a full stop;
/// empty where it may. Without a name, and by any name of the root folder, its "scr" would be the system's.
inline QString complaintAboutProject(const QString &projectDir)
{
    if (projectDir.isEmpty())
        return QStringLiteral("no project directory was named");
    if (QFileInfo(projectDir).canonicalFilePath() == QStringLiteral("/"))
        return QStringLiteral("the root folder is no project directory");
    return {};
}
