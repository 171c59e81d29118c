// What commands say about a run of somebody else: it is under way, or did not come to its end.
#pragma once

#include "Finding.h"

#include <QList>
#include <QString>

/// The finding about a run that is under way; `holder` is who holds the project's lock.
Finding runUnderWay(const QString &holder);

/// The finding about a stage file in the project; none where there is no such file. Every command
/// that needs a whole project tells it.
QList<Finding> findLeftOverRun(const QString &projectDir);

/// How a command to recover the project begins.
QString recoverCommandFor(const QString &projectDir);
