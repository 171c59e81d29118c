// Which project a file or folder belongs to.
#pragma once

#include <QString>

#include <optional>

/// The project folder that the user means by a file or folder that exists: a folder is meant
/// itself if it holds screens or lies in no project; anything inside a project means that project.
/// Nothing for a path that does not exist and for a file outside all projects. Absolute and clean.
///     "/plants/north/mac/pump.plb"  ->  "/plants/north"
std::optional<QString> projectFolderOf(const QString &path);

/// Whether a folder holds screens.
bool isProjectFolder(const QString &folder);
