// Shapes whose icons a run would not find.
#pragma once

#include "Finding.h"

#include <QList>
#include <QSet>
#include <QString>

/// Bitmaps are looked for in lower-case folders. So where the project's own path holds upper-case
/// letters, a run finds none: the finding about that, if any of these shapes needs one. Shapes are
/// named as objects refer to them. Reads them in such a project only.
QList<Finding> findHiddenIcons(const QString &projectDir, const QSet<QString> &shapeNames);
