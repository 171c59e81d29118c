// Paths as a user reads them.
#pragma once

#include <QString>

/// A path below the project directory without that directory; any other path as it is.
inline QString relativeTo(const QString &projectDir, const QString &path)
{
    return path.startsWith(projectDir + u'/') ? path.sliced(projectDir.size() + 1) : path;
}
