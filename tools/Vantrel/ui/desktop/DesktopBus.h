// What the program tells the desktop over D-Bus.
#pragma once

#include <QDBusConnection>
#include <QString>

/// Shows a notification in the desktop's own way. Where there is no bus or nobody who shows
/// notifications, nothing happens. Does not wait.
void sendNotification(const QDBusConnection &bus, const QString &summary, const QString &body);

/// Shows a progress, from 0 to 1, on the program's icon in task bars that can; the same goes for
/// removing it.
void sendTaskBarProgress(const QDBusConnection &bus, double progress);
void removeTaskBarProgress(const QDBusConnection &bus);
