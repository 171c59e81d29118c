// Names of shapes as users give them, among those that objects refer to.
#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

/// Those of the names that objects refer to which a user has given, in any letter case.
QSet<QString> matchingNames(const QSet<QString> &shapeNames, const QStringList &givenNames);
