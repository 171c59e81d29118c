// What the programs of the benchmark have in common.
#pragma once

#include <QJsonObject>
#include <QSet>
#include <QString>

/// The project directory that the program was given as its only argument; without one, says how
/// to call it and ends the program.
QString projectDirOf(int argc, char **argv);

/// The names of the shape files in the project's library.
QSet<QString> libraryNames(const QString &projectDir);

/// Prints what was measured as one line, for the driver.
///     {"files":10000,"seconds":1.5}
void printFigures(const QJsonObject &figures);
