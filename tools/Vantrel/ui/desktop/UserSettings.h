// Where the program keeps what the user has set up.
#pragma once

#include <QSettings>

/// To be called before any settings are made: where no home can hold them, they are neither read nor kept.
/// Qt would write them, and its own, below the root folder.
void forgetSettingsWithoutAHome();

/// The user's settings. Whoever uses them makes one for the moment.
class UserSettings final : public QSettings
{
public:
    UserSettings()
        : QSettings(QStringLiteral("QEL"), QStringLiteral("Vantrel"))
    {
    }
};
