// Comparing the bytes of files.
#pragma once

#include <QString>

/// Whether both files can be read and hold the same bytes. Ends on a thread that is to end, see
/// endIfInterrupted(); so does the next one.
bool haveSameContent(const QString &first, const QString &second);

/// Whether both files can be read, and the second one begins with all bytes of the first one.
bool isBeginningOf(const QString &first, const QString &second);

/// The same as haveSameContent() for a file and the copy of it that was just made: always brought
/// to its end, so that no copy stays unchecked.
bool isWholeCopy(const QString &file, const QString &copy);
