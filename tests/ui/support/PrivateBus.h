// A message bus of a test's own, and a desktop on it.
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QVariantMap>

/// A bus that nothing else is on, and that starts no services. Ends with this object.
class PrivateBus final
{
public:
    PrivateBus();
    ~PrivateBus();
    Q_DISABLE_COPY_MOVE(PrivateBus)

    QString address() const { return m_address; }
    /// Another connection to it.
    QDBusConnection connection(const QString &name) const;

private:
    QTemporaryDir m_folder;
    QProcess m_daemon;
    QString m_address;
};

/// What a desktop is told on a bus while it lives: notifications, and progress for its task bar.
class DesktopService final : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    struct Notification
    {
        QString program;
        QString icon;
        QString summary;
        QString body;
        QVariantMap hints;
        int timeout;
    };
    struct Progress
    {
        QString program;
        double progress;
        bool isVisible;
    };

    enum Offer { Everything, TaskBarOnly };
    DesktopService(const PrivateBus &bus, Offer offer);
    ~DesktopService() override;

    QList<Notification> notifications;
    QList<Progress> progress;

public Q_SLOTS: // NOLINT(readability-redundant-access-specifiers)
    uint Notify(const QString &program, uint replaced, const QString &icon, const QString &summary,
                const QString &body, const QStringList &actions, const QVariantMap &hints, int timeout);
    void update(const QString &program, const QVariantMap &properties);

private:
    QDBusConnection m_connection;
};
