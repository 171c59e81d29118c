// Comparing the bytes of files.
#pragma once

#include <QString>

/// Whether both files can be read and hold the same bytes.
bool haveSameContent(const QString &first, const QString &second);

/// Whether both files can be read, and the second one begins with all bytes of the first one.
bool isBeginningOf(const QString &first, const QString &second);
