#include "NotificationServerFixture.h"

#include <QSignalSpy>

/// What a server reports of the notifications that it shows.
class NotificationServerSignalsTest final : public NotificationServerFixture {
    Q_OBJECT

private Q_SLOTS:

    void init() { connectToNewBus(); }

    void cleanup() { leaveBus(); }

    void aClickTellsTheRequestOnce();
    void aClickOnAReplacedNotificationTellsTheNewerRequest();
    void anyActionCountsAsTheClick();
    void aClickThatIsToldBeforeTheAnswerCounts();
    void clicksOnOtherProgramsNotificationsAreIgnored();
    void clicksThatOthersThanTheServerReportAreIgnored();
    void signalsWithNonsenseAreIgnored();
    void aClickCountsWhenTheServerClosesFirst();
    void whatIsGoneIsNotReplaced();
    void theClickBringsItsActivationToken();
    void theTokenOfAnotherNotificationIsNotTaken();
};

void NotificationServerSignalsTest::aClickTellsTheRequestOnce()
{
    Server server(m_bus->address());
    const auto client = newClient();
    QList<UserNotificationRequest> clicks;
    connect(client.get(), &NotificationService::clicked, this, [&](const UserNotificationRequest &clicked) {
        clicks.append(clicked);
    });
    show(*client, request(QStringLiteral("other")));
    show(*client, copied);

    server.click(2);
    server.close(2);
    server.click(2);

    QTRY_COMPARE(clicks, QList{copied});
    settle(*client);
    QCOMPARE(clicks, QList{copied});
}

void NotificationServerSignalsTest::aClickOnAReplacedNotificationTellsTheNewerRequest()
{
    Server server(m_bus->address());
    const auto client = newClient();
    QList<UserNotificationRequest> clicks;
    connect(client.get(), &NotificationService::clicked, this, [&](const UserNotificationRequest &clicked) {
        clicks.append(clicked);
    });
    const UserNotificationRequest newer = request(copied.identifier, QStringLiteral("newer"));
    show(*client, copied);
    show(*client, newer);

    server.click(1);

    QTRY_COMPARE(clicks, QList{newer});
}

void NotificationServerSignalsTest::anyActionCountsAsTheClick()
{
    Server server(m_bus->address());
    const auto client = newClient();
    const QSignalSpy clicks(client.get(), &NotificationService::clicked);
    show(*client, copied);

    server.click(1, QStringLiteral("view"));

    QTRY_COMPARE(clicks.size(), 1);
}

void NotificationServerSignalsTest::clicksOnOtherProgramsNotificationsAreIgnored()
{
    Server server(m_bus->address());
    const auto client = newClient();
    const QSignalSpy clicks(client.get(), &NotificationService::clicked);
    server.click(1);
    show(*client, copied);

    server.click(2);
    server.click(0);
    settle(*client);

    QCOMPARE(clicks.size(), 0);
}

void NotificationServerSignalsTest::aClickThatIsToldBeforeTheAnswerCounts()
{
    Server server(m_bus->address());
    server.setAnswer(Answer::WhenReleased);
    const auto client = newClient();
    QList<UserNotificationRequest> clicks;
    connect(client.get(), &NotificationService::clicked, this, [&](const UserNotificationRequest &clicked) {
        clicks.append(clicked);
    });
    client->show(copied, [](const std::optional<Error> &) {});
    QTRY_COMPARE(server.notifications().size(), 1);
    server.click(1);
    server.click(2); // another program's
    settle(*client);
    QVERIFY(clicks.isEmpty());

    server.release();
    QTRY_COMPARE(clicks, QList{copied});
}

void NotificationServerSignalsTest::clicksThatOthersThanTheServerReportAreIgnored()
{
    const Server server(m_bus->address());
    const auto client = newClient();
    const QSignalSpy clicks(client.get(), &NotificationService::clicked);
    show(*client, copied);

    const QString name = QStringLiteral("stranger");
    QDBusMessage click = QDBusMessage::createSignal(
        QStringLiteral("/org/freedesktop/Notifications"), service, QStringLiteral("ActionInvoked"));
    click << 1U << QStringLiteral("default");
    QDBusConnection::connectToBus(m_bus->address(), name).send(click);
    settle(*client);
    QDBusConnection::disconnectFromBus(name);

    QCOMPARE(clicks.size(), 0);
}

void NotificationServerSignalsTest::signalsWithNonsenseAreIgnored()
{
    Server server(m_bus->address());
    const auto client = newClient();
    const QSignalSpy clicks(client.get(), &NotificationService::clicked);
    show(*client, copied);

    for (const QString &signal :
         {QStringLiteral("ActionInvoked"), QStringLiteral("NotificationClosed"),
          QStringLiteral("ActivationToken")}) {
        server.sendSignal(signal, {});
        server.sendSignal(signal, {QStringLiteral("1"), QStringLiteral("default")});
        server.sendSignal(signal, {QStringList{QStringLiteral("1")}});
    }
    settle(*client);
    QCOMPARE(clicks.size(), 0);

    server.click(1);
    QTRY_COMPARE(clicks.size(), 1);
}

void NotificationServerSignalsTest::aClickCountsWhenTheServerClosesFirst()
{
    Server server(m_bus->address());
    const auto client = newClient();
    const QSignalSpy clicks(client.get(), &NotificationService::clicked);
    show(*client, copied);

    server.close(1);
    server.click(1);
    server.click(1);

    QTRY_COMPARE(clicks.size(), 1);
    settle(*client);
    QCOMPARE(clicks.size(), 1);
}

void NotificationServerSignalsTest::whatIsGoneIsNotReplaced()
{
    Server server(m_bus->address());
    const auto client = newClient();
    show(*client, copied);
    server.close(1);
    settle(*client);
    show(*client, copied);
    QCOMPARE(server.notifications().at(1).replacedNumber, 0U);

    server.click(2);
    settle(*client);
    show(*client, copied);
    QCOMPARE(server.notifications().at(2).replacedNumber, 0U);
}

void NotificationServerSignalsTest::theClickBringsItsActivationToken()
{
    Server server(m_bus->address());
    const auto client = newClient();
    QByteArray tokenAtClick;
    connect(client.get(), &NotificationService::clicked, this, [&] {
        tokenAtClick = qgetenv("XDG_ACTIVATION_TOKEN");
    });
    show(*client, copied);

    server.giveActivationToken(1, QStringLiteral("token"));
    settle(*client);
    QVERIFY(!qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"));
    server.click(1);

    QTRY_COMPARE(tokenAtClick, QByteArray("token"));
}

void NotificationServerSignalsTest::theTokenOfAnotherNotificationIsNotTaken()
{
    Server server(m_bus->address());
    const auto client = newClient();
    const QSignalSpy clicks(client.get(), &NotificationService::clicked);
    show(*client, copied);

    server.giveActivationToken(2, QStringLiteral("another program's"));
    server.click(1);

    QTRY_COMPARE(clicks.size(), 1);
    QVERIFY(!qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"));
}

QTEST_GUILESS_MAIN(NotificationServerSignalsTest)

#include "NotificationServerSignalsTest.moc"
