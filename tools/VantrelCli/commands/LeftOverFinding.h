// What commands say about a run of somebody else: it is under way, or did not come to its end.
#pragma once

#include "Finding.h"

#include <QList>
#include <QString>

/// The finding about a run that is under way; `holder` is who holds the project's lock.
Finding runUnderWay(const QString &holder);
/// The same for whoever looks at the lock and does not take it; none where nobody holds it. What
/// lies in the folders of such a project follows from how far the run is.
QList<Finding> findRunUnderWay(const QString &projectDir);

/// The finding about a stage file in a project that nobody works on; none where there is no such
/// file. Every command that needs a whole project tells it.
QList<Finding> findLeftOverRun(const QString &projectDir);

/// How a command to recover the project begins.
QString recoverCommandFor(const QString &projectDir);
