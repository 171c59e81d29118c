// The command that compares a project's screens with their backup.
#pragma once

#include "ExitCode.h"

#include <QString>

class Presenter;

/// `projectDir` is absolute and clean.
ExitCode runDiff(const QString &projectDir, Presenter &presenter);
