#include "PortalNotifications.h"

#include "PrivateBus.h"
#include "RecordingNotificationPortal.h"
#include "UserNotificationCenter.h"

#include <QSignalSpy>
#include <QTest>

#include <memory>

using Permission = NotificationService::Permission;
using Portal = RecordingNotificationPortal;

namespace {

const UserNotificationRequest copied{
    .identifier = QStringLiteral("copied"),
    .content = {
        .title = QStringLiteral("two\nlines"),
        .body = QStringLiteral("<b>&</b>"),
        .categoryIdentifier = QStringLiteral("label")}};

} // namespace

class PortalNotificationsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void sendsAllThatThePortalWants();
    void aClickTellsTheRequestOnce();
    void otherClicksAreIgnored();
    void failsWithoutAPortal();
    void isPermittedWhereThereIsAPortal();
    void permissionCannotBeAskedWithoutABus();

private:
    using Outcomes = QList<std::optional<Error>>;

    void show(PortalNotifications &client, const UserNotificationRequest &wanted) const
    {
        Outcomes outcomes;
        client.show(wanted, [&](const std::optional<Error> &error) { outcomes.append(error); });
        QTRY_COMPARE(outcomes, Outcomes(1));
    }

    [[nodiscard]] static std::optional<Result<Permission>> permission(PortalNotifications &client)
    {
        std::optional<Result<Permission>> answer;
        client.askPermission([&](const Result<Permission> &permission) { answer = permission; });
        return QTest::qWaitFor([&] { return answer.has_value(); }) ? answer : std::nullopt;
    }

    std::unique_ptr<PrivateBus> m_bus;
    QDBusConnection m_client = QDBusConnection(QString());
    int m_clients = 0;
};

void PortalNotificationsTest::init()
{
    m_bus = std::make_unique<PrivateBus>();
    m_client = QDBusConnection::connectToBus(m_bus->address(), QStringLiteral("client-%1").arg(++m_clients));
    QVERIFY(m_client.isConnected());
}

void PortalNotificationsTest::cleanup()
{
    QDBusConnection::disconnectFromBus(m_client.name());
    m_bus.reset();
}

void PortalNotificationsTest::sendsAllThatThePortalWants()
{
    const Portal portal(m_bus->address());
    PortalNotifications client(m_client);
    show(client, copied);

    QCOMPARE(portal.notifications().size(), 1);
    QCOMPARE(portal.notifications().constFirst().first, copied.identifier);
    QCOMPARE(
        portal.notifications().constFirst().second,
        (QVariantMap{
            {QStringLiteral("title"), QStringLiteral("two lines")},
            {QStringLiteral("body"), QStringLiteral("<b>&</b>")},
            {QStringLiteral("priority"), QStringLiteral("normal")},
            {QStringLiteral("default-action"), QStringLiteral("default")}}));
}

void PortalNotificationsTest::aClickTellsTheRequestOnce()
{
    Portal portal(m_bus->address());
    PortalNotifications client(m_client);
    QList<UserNotificationRequest> clicks;
    connect(&client, &NotificationService::clicked, this, [&](const UserNotificationRequest &clicked) {
        clicks.append(clicked);
    });
    show(client, copied);
    UserNotificationRequest newer = copied;
    newer.content.body = QStringLiteral("newer");
    show(client, newer);

    portal.click(copied.identifier);
    portal.click(copied.identifier);

    QTRY_COMPARE(clicks, QList{newer});
    QCOMPARE(permission(client), Permission::Granted);
    QCOMPARE(clicks.size(), 1);
}

void PortalNotificationsTest::otherClicksAreIgnored()
{
    auto portal = std::make_unique<Portal>(m_bus->address());
    PortalNotifications client(m_client);
    const QSignalSpy clicks(&client, &NotificationService::clicked);
    show(client, copied);

    portal->click(QStringLiteral("another program's"));
    portal.reset();
    portal = std::make_unique<Portal>(m_bus->address());
    portal->click(copied.identifier);

    QCOMPARE(permission(client), Permission::Granted);
    QCOMPARE(clicks.size(), 0);
}

void PortalNotificationsTest::failsWithoutAPortal()
{
    PortalNotifications client(m_client);
    Outcomes outcomes;
    client.show(copied, [&](const std::optional<Error> &error) { outcomes.append(error); });

    QTRY_COMPARE(outcomes.size(), 1);
    QCOMPARE(outcomes.constFirst().value().code, int(UserNotificationCenter::NotAllowed));
}

void PortalNotificationsTest::isPermittedWhereThereIsAPortal()
{
    PortalNotifications client(m_client);
    QCOMPARE(permission(client), Permission::Denied);

    const Portal portal(m_bus->address());
    QCOMPARE(permission(client), Permission::Granted);
}

void PortalNotificationsTest::permissionCannotBeAskedWithoutABus()
{
    PortalNotifications client{QDBusConnection(QStringLiteral("none"))};
    const std::optional<Result<Permission>> answer = permission(client);

    QVERIFY(answer && !*answer);
}

QTEST_GUILESS_MAIN(PortalNotificationsTest)

#include "PortalNotificationsTest.moc"
