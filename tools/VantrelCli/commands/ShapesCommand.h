// The command that lists the shapes that a project's screens use.
#pragma once

#include "ExitCode.h"

#include <QString>

class Presenter;

/// `projectDir` is absolute and clean.
ExitCode runShapes(const QString &projectDir, Presenter &presenter);
