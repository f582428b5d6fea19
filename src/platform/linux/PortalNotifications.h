#pragma once

#include "NotificationService.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QHash>

#include <chrono>

/// `org.freedesktop.portal.Notification`, versions 1 and 2: what a sandboxed program has instead of a
/// notification server. It goes by our identifiers, replaces by itself, and reads no tags. There is no switch
/// to be read from inside a sandbox, so whoever has a portal counts as permitted.
class PortalNotifications final : public NotificationService {
    Q_OBJECT

public:
    static constexpr auto defaultPatience = std::chrono::milliseconds(5000);

    explicit PortalNotifications(
        QDBusConnection bus, std::chrono::milliseconds patience = defaultPatience, QObject *parent = nullptr);

    void show(const UserNotificationRequest &request, Shown done) override;
    void askPermission(std::function<void(const Result<Permission> &)> done) override;

private Q_SLOTS:
    void takeClick(const QDBusMessage &signal);

private:
    struct Notification {
        UserNotificationRequest request;
        /// The unique name of the portal that took it.
        QString portal;
    };

    QDBusConnection m_bus;
    std::chrono::milliseconds m_patience;
    /// By our identifier.
    QHash<QString, Notification> m_shown;
};
