// The command that replaces placed objects by their current shapes.
#pragma once

#include "ExitCode.h"

#include <QString>
#include <QStringList>

class Output;

struct UpdateOptions
{
    QString projectDir; ///< absolute and clean
    QStringList shapeNames;
    bool allShapes = false;
    bool makeFolders = false;
    bool force = false;
    bool quiet = false;
};

/// Performs a run, unless it would lose something, and prints what it did.
ExitCode runUpdate(const UpdateOptions &options, Output &output, Output &errorOutput);
