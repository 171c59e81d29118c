// Where the program keeps what the user has set up.
#include "UserSettings.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// Where Qt would write the settings, its own too: below the root folder where there is no home.
QString folderOfSettings()
{
    const QString configured = qEnvironmentVariable("XDG_CONFIG_HOME");
    const QString home = qEnvironmentVariable("HOME");
    if (configured.startsWith(u'/'))
        return configured;
    return home.startsWith(u'/') && QDir::cleanPath(home) != "/"_L1 ? home + "/.config"_L1 : QString();
}

/// Whether a folder can be written to, or made below one that is there. Nothing is made in the root folder.
bool canHoldSettings(const QString &folder)
{
    QString there = QDir::cleanPath(folder);
    while (there.size() > 1 && !QFileInfo::exists(there))
        there = QFileInfo(there).path();
    return there.size() > 1 && QFileInfo(there).isDir() &&
           faccessat(AT_FDCWD, QFile::encodeName(there).constData(), W_OK | X_OK, AT_EACCESS) == 0;
}

} // namespace

void forgetSettingsWithoutAHome()
{
    const QString folder = folderOfSettings();
    // What is there can be read, even where nothing can be written.
    if (folder.isEmpty() || (!canHoldSettings(folder) && !QFileInfo::exists(folder)))
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, u"/dev/null"_s);
}
