// Options that make no sense for a project.
#pragma once

#include <QStringList>

/// Thrown by a command that learns from the project that its options cannot be meant as they stand,
/// before it touches anything.
struct WrongUsage
{
    QStringList complaints; ///< one for each option; never empty
};
