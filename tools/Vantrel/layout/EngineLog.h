// What the engine writes into the log, and the places that its entries name.
#pragma once

#include <QString>

/// The source line that an entry names. Those who read the logs know it, so it stays as it is,
/// wherever the code goes that writes the entry.
enum class LogPlace : int {
    ImageFile = 1460, ///< one that cannot be converted
    TempFile = 1575,  ///< one that cannot be written
    ShapeFile = 1620, ///< one that cannot be used, or its icons
    CopyBack = 1688,  ///< screens that are not back in their place
    Run = 1700,       ///< one that was ended
    Lock = 1710,      ///< a project that is in use
    LeftOver = 1715,  ///< a project in which a run was interrupted
    Files = 1720,     ///< what the file system refuses
    History = 1730,   ///< what displaced files are kept in
    ChangeLog = 1740, ///< rows that are not as they should be
};

/// Logs what somebody has to put right by hand.
void logAlert(const QString &message, LogPlace place);
/// Logs what was done otherwise than a user might expect.
void logWarning(const QString &message, LogPlace place);
/// Logs what was not done.
void logError(const QString &message, LogPlace place = LogPlace::Files);
