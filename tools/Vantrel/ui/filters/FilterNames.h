// The names of the shape files that a project's screens refer to.
#pragma once

#include <QSet>
#include <QString>

/// Adds the names of the shape files that an image file refers to, as they stand in its library
/// lines. A file that cannot be opened adds nothing.
///     "LIB;Pump1;x"  ->  "Pump1"
void collectFilterNames(const QString &path, QSet<QString> *names);
