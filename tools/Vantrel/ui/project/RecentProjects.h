// The projects that the user worked with last.
#pragma once

#include <QString>
#include <QStringList>

/// The last ten projects that the user worked with, the newest first, kept in the user's settings.
/// Empty where the settings cannot be read.
QStringList recentProjects();

/// Puts a project at the head of the recent ones, at once. A folder without screens is no project
/// and is not remembered.
void rememberProject(const QString &folder);
