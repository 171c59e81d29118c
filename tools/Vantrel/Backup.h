// Completing the backup of a project's image files.
#pragma once

#include <QFileInfo>
#include <QList>
#include <QString>

/// Whether both files can be read and hold the same bytes.
bool haveSameContent(const QString &first, const QString &second);

/// Whether both files can be read, and the second one begins with all bytes of the first one.
bool isBeginningOf(const QString &first, const QString &second);

/// Copies each of these image files, which lie below "scr" of the project, to its place below
/// "scr_bak", unless it lies there byte for byte. Folders are made with their parents. Stops at
/// the first file that cannot be copied whole and returns false.
bool completeBackup(const QList<QFileInfo> &originals, const QString &projectDir);
