// The command that tells what an interrupted run has left, and completes it or takes it back.
#pragma once

#include "ExitCode.h"

#include <QString>

class Presenter;

enum class RecoverAction { Tell, RollBack, Finish, Undo };

struct RecoverOptions
{
    QString projectDir; ///< absolute and clean
    RecoverAction action = RecoverAction::Tell;
};

ExitCode runRecover(const RecoverOptions &options, Presenter &presenter);
