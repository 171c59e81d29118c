// Where the program keeps what the user has set up.
#pragma once

#include <QSettings>

/// The user's settings. Whoever uses them makes one for the moment.
class UserSettings final : public QSettings
{
public:
    UserSettings()
        : QSettings(QStringLiteral("QEL"), QStringLiteral("Vantrel"))
    {
    }
};
