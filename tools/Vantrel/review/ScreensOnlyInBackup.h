// Screens of which the backup of the last run holds the only copy.
#pragma once

#include "Finding.h"

#include <QList>
#include <QString>
#include <QStringList>

/// The findings about screens that lie in "scr_bak" and not in "scr". `imageFiles` are the whole
/// paths of those in "scr". Lists "scr_bak" once.
QList<Finding> findScreensOnlyInBackup(const QString &projectDir, const QStringList &imageFiles);
