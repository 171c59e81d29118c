// Completing the backup of a project's image files.
#pragma once

#include <QFileInfo>
#include <QList>
#include <QString>

/// Copies each of these image files, which lie below "scr" of the project, to its place below
/// "scr_bak", unless it lies there byte for byte. Folders are made with their parents. Stops at
/// the first file that cannot be copied whole and returns false.
bool completeBackup(const QList<QFileInfo> &originals, const QString &projectDir);
