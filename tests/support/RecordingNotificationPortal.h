#pragma once

#include <QDBusConnection>
#include <QList>
#include <QObject>
#include <QPair>
#include <QString>
#include <QVariantMap>

/// The notification portal for tests, on a connection of its own: records what it is told to show, and
/// reports clicks as the portal does.
class RecordingNotificationPortal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Notification")
    Q_PROPERTY(uint version READ version)

public:
    /// Owns `org.freedesktop.portal.Desktop` on that bus from now until it is destroyed.
    explicit RecordingNotificationPortal(const QString &busAddress);
    ~RecordingNotificationPortal() override;
    Q_DISABLE_COPY_MOVE(RecordingNotificationPortal)

    [[nodiscard]] uint version() const { return 1; }

    /// Identifier and description of each, in their order.
    [[nodiscard]] const QList<QPair<QString, QVariantMap>> &notifications() const { return m_notifications; }

    void click(const QString &identifier);

    Q_SCRIPTABLE void AddNotification(const QString &id, const QVariantMap &notification);

private:
    QDBusConnection m_bus;
    QList<QPair<QString, QVariantMap>> m_notifications;
};
