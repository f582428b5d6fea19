#include "NotificationServerFixture.h"
#include "TemporaryHome.h"
#include "files.h"

#include <QSignalSpy>

/// Whether there is a server, another than before or none, and what is permitted therefore.
class NotificationServerPresenceTest final : public NotificationServerFixture {
    Q_OBJECT

private Q_SLOTS:

    void init() { connectToNewBus(); }

    void cleanup() { leaveBus(); }

    void failsWithoutAServer();
    void failsIfTheServerCannotBeStarted();
    void failsWhenTheBusIsGone();
    void failsWithoutABus();
    void aServerThatComesLaterServesLaterRequests();
    void theNumbersOfAnEarlierServerMeanNothingToTheNext();
    void aServerThatGoesInMidCallFailsTheRequestAlone();
    void permissionNeedsAServer();
    void permissionIsGrantedWhereTheBusWouldStartAServer();
    void permissionFollowsTheDesktopsSwitch();
    void permissionCannotBeAskedWithoutABus();

private:
    [[nodiscard]] static std::optional<Result<Permission>> permission(NotificationServer &client)
    {
        std::optional<Result<Permission>> answer;
        client.askPermission([&](const Result<Permission> &permission) { answer = permission; });
        return QTest::qWaitFor([&] { return answer.has_value(); }) ? answer : std::nullopt;
    }
};

void NotificationServerPresenceTest::failsWithoutAServer()
{
    const auto client = newClient();
    Outcomes outcomes;
    client->show(copied, recordIn(outcomes));

    QTRY_COMPARE(outcomes.size(), 1);
    QCOMPARE(outcomes.constFirst().value().code, int(UserNotificationCenter::NotAllowed));
}

void NotificationServerPresenceTest::failsIfTheServerCannotBeStarted()
{
    QDBusConnection::disconnectFromBus(m_client.name());
    connectTo(std::make_unique<PrivateBus>(QStringList{service}));
    const NotificationServer::Patience patience;
    NotificationServer client(m_client, patience);
    Outcomes outcomes;
    client.show(copied, recordIn(outcomes));

    QTRY_COMPARE(outcomes.size(), 1);
    QCOMPARE(outcomes.constFirst().value().code, int(UserNotificationCenter::NotAllowed));
}

void NotificationServerPresenceTest::failsWhenTheBusIsGone()
{
    const auto client = newClient();
    {
        const Server server(m_bus->address());
        show(*client, copied);
        m_bus->kill();
    }
    Outcomes outcomes;
    client->show(copied, recordIn(outcomes));
    client->show(request(QStringLiteral("other")), recordIn(outcomes));

    QTRY_COMPARE(outcomes.size(), 2);
    QCOMPARE(outcomes.at(0).value().code, int(UserNotificationCenter::NotAllowed));
    QCOMPARE(outcomes.at(1).value().code, int(UserNotificationCenter::NotAllowed));
}

void NotificationServerPresenceTest::failsWithoutABus()
{
    NotificationServer client{QDBusConnection(QStringLiteral("none"))};
    Outcomes outcomes;
    client.show(copied, recordIn(outcomes));
    QVERIFY(outcomes.isEmpty());

    QTRY_COMPARE(outcomes.size(), 1);
    QCOMPARE(outcomes.constFirst().value().code, int(UserNotificationCenter::NotAllowed));
}

void NotificationServerPresenceTest::aServerThatComesLaterServesLaterRequests()
{
    const auto client = newClient();
    Outcomes outcomes;
    client->show(copied, recordIn(outcomes));
    QTRY_COMPARE(outcomes.size(), 1);

    const Server server(m_bus->address());
    show(*client, copied);

    QCOMPARE(server.shown().size(), 1);
}

void NotificationServerPresenceTest::theNumbersOfAnEarlierServerMeanNothingToTheNext()
{
    auto server = std::make_unique<Server>(m_bus->address());
    const auto client = newClient();
    const QSignalSpy clicks(client.get(), &NotificationService::clicked);
    show(*client, copied);

    server.reset();
    server = std::make_unique<Server>(m_bus->address());
    // Another program's, under the number that ours had.
    server->Notify({}, 0, {}, QStringLiteral("another program's"), {}, {}, {}, -1);
    server->click(1);
    server->Notify({}, 0, {}, QStringLiteral("another program's"), {}, {}, {}, -1);
    show(*client, copied);

    QCOMPARE(server->notifications().constLast().replacedNumber, 0U);
    QCOMPARE(server->shown().size(), 2);
    QCOMPARE(clicks.size(), 0);
}

void NotificationServerPresenceTest::aServerThatGoesInMidCallFailsTheRequestAlone()
{
    auto server = std::make_unique<Server>(m_bus->address());
    server->setAnswer(Answer::Never);
    const auto client = newClient();
    Outcomes outcomes;
    client->show(copied, recordIn(outcomes));
    QTRY_COMPARE(server->notifications().size(), 1);

    server = nullptr;
    QTRY_COMPARE(outcomes.size(), 1);
    QCOMPARE(outcomes.constFirst().value().code, int(UserNotificationCenter::NoAnswer));

    server = std::make_unique<Server>(m_bus->address());
    show(*client, copied);
}

void NotificationServerPresenceTest::permissionNeedsAServer()
{
    const auto client = newClient();
    QCOMPARE(permission(*client), Permission::Denied);
    auto server = std::make_unique<Server>(m_bus->address());
    QCOMPARE(permission(*client), Permission::Granted);
    server.reset();
    QCOMPARE(permission(*client), Permission::Denied);
}

void NotificationServerPresenceTest::permissionIsGrantedWhereTheBusWouldStartAServer()
{
    QDBusConnection::disconnectFromBus(m_client.name());
    connectTo(std::make_unique<PrivateBus>(QStringList{service}));
    const auto client = newClient();

    QCOMPARE(permission(*client), Permission::Granted);
}

void NotificationServerPresenceTest::permissionFollowsTheDesktopsSwitch()
{
    const TemporaryHome home;
    qputenv("XDG_CURRENT_DESKTOP", "KDE");
    const Server server(m_bus->address());
    const auto client = newClient();
    QCOMPARE(permission(*client), Permission::Granted);

    const QString settings = home.path() + QStringLiteral("/.config/plasmanotifyrc");
    files::write(
        settings, "[Applications][org.deskbroom.Deskbroom]\nShowInHistory=false\nShowPopups=false\n");
    QCOMPARE(permission(*client), Permission::Denied);

    files::remove(settings);
    QCOMPARE(permission(*client), Permission::Granted);
}

void NotificationServerPresenceTest::permissionCannotBeAskedWithoutABus()
{
    NotificationServer client{QDBusConnection(QStringLiteral("none"))};
    const std::optional<Result<Permission>> answer = permission(client);

    QVERIFY(answer && !*answer);
    QCOMPARE(answer->error().domain, UserNotificationCenter::errorDomain);
}

QTEST_GUILESS_MAIN(NotificationServerPresenceTest)

#include "NotificationServerPresenceTest.moc"
