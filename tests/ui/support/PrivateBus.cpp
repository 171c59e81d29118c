// A message bus of a test's own, and a desktop on it.
#include "PrivateBus.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView configuration = R"(<!DOCTYPE busconfig PUBLIC
 "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:dir=%1</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)"_L1;

} // namespace

PrivateBus::PrivateBus()
{
    const QString file = m_folder.filePath(u"bus.conf"_s);
    QFile config(file);
    if (!config.open(QIODevice::WriteOnly) ||
        config.write(QString(configuration).arg(m_folder.path()).toUtf8()) < 0)
        qFatal("the bus cannot be configured");
    config.close();

    m_daemon.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_daemon.start(u"dbus-daemon"_s, {"--config-file="_L1 + file, u"--nofork"_s, u"--print-address"_s});
    while (!m_daemon.canReadLine()) {
        if (!m_daemon.waitForReadyRead())
            qFatal("the bus does not start: %s", qPrintable(m_daemon.errorString()));
    }
    m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
}

PrivateBus::~PrivateBus()
{
    m_daemon.terminate();
    m_daemon.waitForFinished();
}

QDBusConnection PrivateBus::connection(const QString &name) const
{
    return QDBusConnection::connectToBus(m_address, name);
}

DesktopService::DesktopService(const PrivateBus &bus, Offer offer)
    : m_connection(bus.connection(u"desktop"_s))
{
    m_connection.connect(QString(), QString(), u"com.canonical.Unity.LauncherEntry"_s, u"Update"_s, this,
                         SLOT(update(QString, QVariantMap)));
    if (offer == TaskBarOnly)
        return;
    m_connection.registerObject(u"/org/freedesktop/Notifications"_s, this, QDBusConnection::ExportAllSlots);
    if (!m_connection.registerService(u"org.freedesktop.Notifications"_s))
        qFatal("there are notifications on the bus already");
}

DesktopService::~DesktopService()
{
    QDBusConnection::disconnectFromBus(u"desktop"_s);
}

uint DesktopService::Notify(const QString &program, uint, const QString &icon, const QString &summary,
                            const QString &body, const QStringList &, const QVariantMap &hints, int timeout)
{
    notifications += {program, icon, summary, body, hints, timeout};
    return 1;
}

void DesktopService::update(const QString &program, const QVariantMap &properties)
{
    progress += {program, properties.value(u"progress"_s).toDouble(),
                 properties.value(u"progress-visible"_s).toBool()};
}
