// Shapes that a run can put in place of objects without leaving anything behind.
#pragma once

#include "Finding.h"

#include <QList>
#include <QSet>
#include <QString>

struct UsableShapes
{
    QSet<QString> names;
    QList<Finding> leftOut; ///< the others, by name, and why
};

/// Which of these shapes, named as objects refer to them, are present and valid, hold an object and
/// have all their icons. Reads each of them.
UsableShapes usableShapesAmong(const QString &projectDir, const QSet<QString> &shapeNames);
