#pragma once

#include "NotificationServer.h"
#include "PrivateBus.h"
#include "RecordingNotificationServer.h"
#include "UserNotificationCenter.h"

#include <QTest>

#include <memory>
#include <optional>

inline const QString service = QStringLiteral("org.freedesktop.Notifications");

inline UserNotificationRequest
request(const QString &identifier, const QString &body = QStringLiteral("text"))
{
    return {
        .identifier = identifier,
        .content = {
            .title = QStringLiteral("title"), .body = body, .categoryIdentifier = QStringLiteral("label")}};
}

inline const UserNotificationRequest copied = request(QStringLiteral("copied"));

/// What the tests of the notification server's client share: a bus for each test and clients on it.
class NotificationServerFixture : public QObject {
protected:
    using Server = RecordingNotificationServer;
    using Answer = RecordingNotificationServer::Answer;
    using Permission = NotificationService::Permission;
    using Outcomes = QList<std::optional<Error>>;

    void connectToNewBus()
    {
        qunsetenv("XDG_CURRENT_DESKTOP");
        qunsetenv("XDG_ACTIVATION_TOKEN");
        connectTo(std::make_unique<PrivateBus>());
    }

    void leaveBus()
    {
        QDBusConnection::disconnectFromBus(m_client.name());
        m_bus.reset();
    }

    [[nodiscard]] std::unique_ptr<NotificationServer> newClient() const
    {
        using namespace std::chrono_literals;
        return std::make_unique<NotificationServer>(
            m_client, NotificationServer::Patience{.capabilities = 300ms, .notification = 600ms});
    }

    [[nodiscard]] NotificationService::Shown recordIn(Outcomes &outcomes) const
    {
        return [&outcomes](const std::optional<Error> &error) { outcomes.append(error); };
    }

    /// Shows it and waits until the server has answered.
    void show(NotificationServer &client, const UserNotificationRequest &wanted) const
    {
        Outcomes outcomes;
        client.show(wanted, recordIn(outcomes));
        QTRY_COMPARE(outcomes.size(), 1);
        QCOMPARE(outcomes.constFirst(), std::nullopt);
    }

    /// Whatever was on its way to the client has arrived.
    void settle(NotificationServer &client) const
    {
        bool isAnswered = false;
        client.askPermission([&](const Result<Permission> &) { isAnswered = true; });
        QTRY_VERIFY(isAnswered);
    }

    void connectTo(std::unique_ptr<PrivateBus> bus)
    {
        m_bus = std::move(bus);
        const QString name = QStringLiteral("client-%1").arg(++m_clients);
        m_client = QDBusConnection::connectToBus(m_bus->address(), name);
        QVERIFY(m_client.isConnected());
    }

    std::unique_ptr<PrivateBus> m_bus;
    QDBusConnection m_client = QDBusConnection(QString());
    int m_clients = 0;
};
