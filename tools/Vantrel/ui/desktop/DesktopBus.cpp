// What the program tells the desktop over D-Bus.
#include "DesktopBus.h"

#include <QDBusMessage>
#include <QStringList>
#include <QVariantMap>

using namespace Qt::StringLiterals;

namespace {

void sendTaskBarUpdate(const QDBusConnection &bus, double progress, bool isVisible)
{
    if (!bus.isConnected())
        return;
    const QVariantMap properties{{u"progress"_s, progress}, {u"progress-visible"_s, isVisible}};
    QDBusMessage update = QDBusMessage::createSignal(u"/net/qel/Vantrel"_s,
                                                     u"com.canonical.Unity.LauncherEntry"_s, u"Update"_s);
    update << u"application://vantrel.desktop"_s << properties;
    bus.send(update);
}

} // namespace

void sendNotification(const QDBusConnection &bus, const QString &summary, const QString &body)
{
    if (!bus.isConnected())
        return;
    constexpr uint noEarlierOne = 0;
    constexpr int asLongAsUsual = -1;
    QDBusMessage notify = QDBusMessage::createMethodCall(u"org.freedesktop.Notifications"_s,
                                                         u"/org/freedesktop/Notifications"_s,
                                                         u"org.freedesktop.Notifications"_s, u"Notify"_s);
    const QVariantMap hints{{u"desktop-entry"_s, u"vantrel"_s}};
    notify << u"Vantrel"_s << noEarlierOne << u"vantrel"_s << summary << body << QStringList() << hints
           << asLongAsUsual;
    bus.send(notify);
}

void sendTaskBarProgress(const QDBusConnection &bus, double progress)
{
    sendTaskBarUpdate(bus, progress, true);
}

void removeTaskBarProgress(const QDBusConnection &bus)
{
    sendTaskBarUpdate(bus, 0, false);
}
