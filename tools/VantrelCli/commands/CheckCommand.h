// The command that reads a project and tells what a user should look at before a run.
#pragma once

#include "ExitCode.h"

#include <QString>
#include <QStringList>

class Presenter;

struct CheckOptions
{
    QString projectDir;       ///< absolute and clean
    QStringList shapeNames;   ///< that a run is to be given
    bool makeFolders = false; ///< that a run is to be given
};

ExitCode runCheck(const CheckOptions &options, Presenter &presenter);
