// Failures that would end the process by force.
#pragma once

#include <QString>

/// What the exception that is being handled says, in plain words; for handlers of all exceptions.
///     std::bad_alloc  ->  "there is not enough memory"
QString handledFailure();

/// From now on what Qt tells on the error output is spelt out like other text, and where it gives the process
/// up, or nobody handles an exception, the process ends with this message and exit code instead of aborting.
void endInsteadOfAborting(const char *message, int exitCode);
