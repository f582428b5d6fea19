#include "NotificationServer.h"

#include "PrivateBus.h"
#include "RecordingNotificationServer.h"
#include "TemporaryHome.h"
#include "UserNotificationCenter.h"
#include "files.h"

#include <QSignalSpy>
#include <QTest>

#include <memory>

using Server = RecordingNotificationServer;
using Answer = RecordingNotificationServer::Answer;
using Permission = NotificationService::Permission;

namespace {

const QString service = QStringLiteral("org.freedesktop.Notifications");

UserNotificationRequest request(const QString &identifier, const QString &body = QStringLiteral("text"))
{
    return {
        .identifier = identifier,
        .content = {
            .title = QStringLiteral("title"), .body = body, .categoryIdentifier = QStringLiteral("label")}};
}

const UserNotificationRequest copied = request(QStringLiteral("copied"));

} // namespace

class NotificationServerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void sendsAllThatTheProtocolWants();
    void asksNobodyAnythingBeforeTheFirstRequest();
    void asksForTheCapabilitiesOnceForEachServer();
    void aNewerRequestReplacesTheNotification();
    void takesANumberThatTheServerMadeAnew();
    void requestsWaitForTheAnswerToTheFirst();
    void requestsOfOtherIdentifiersDoNotWait();
    void aClickTellsTheRequestOnce();
    void aClickOnAReplacedNotificationTellsTheNewerRequest();
    void anyActionCountsAsTheClick();
    void clicksOnOtherProgramsNotificationsAreIgnored();
    void clicksThatOthersThanTheServerReportAreIgnored();
    void signalsWithNonsenseAreIgnored();
    void aClickCountsWhenTheServerClosesFirst();
    void whatIsGoneIsNotReplaced();
    void theClickBringsItsActivationToken();
    void theTokenOfAnotherNotificationIsNotTaken();
    void escapesTheTextOnlyForServersThatReadTags_data();
    void escapesTheTextOnlyForServersThatReadTags();
    void hostileTextReachesTheServer();
    void failuresCarryACode_data();
    void failuresCarryACode();
    void goesOnAfterAFailure();
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
    using Outcomes = QList<std::optional<Error>>;

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

    [[nodiscard]] static std::optional<Result<Permission>> permission(NotificationServer &client)
    {
        std::optional<Result<Permission>> answer;
        client.askPermission([&](const Result<Permission> &permission) { answer = permission; });
        return QTest::qWaitFor([&] { return answer.has_value(); }) ? answer : std::nullopt;
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

void NotificationServerTest::init()
{
    qunsetenv("XDG_CURRENT_DESKTOP");
    qunsetenv("XDG_ACTIVATION_TOKEN");
    connectTo(std::make_unique<PrivateBus>());
}

void NotificationServerTest::cleanup()
{
    QDBusConnection::disconnectFromBus(m_client.name());
    m_bus.reset();
}

void NotificationServerTest::sendsAllThatTheProtocolWants()
{
    const Server server(m_bus->address());
    const auto client = newClient();
    show(*client, copied);

    const Server::Notification &sent = server.notifications().constFirst();
    QCOMPARE(sent.application, QStringLiteral("Deskbroom"));
    QCOMPARE(sent.icon, QStringLiteral("org.deskbroom.Deskbroom"));
    QCOMPARE(sent.replacedNumber, 0U);
    QCOMPARE(sent.title, QStringLiteral("title"));
    QCOMPARE(sent.body, QStringLiteral("text"));
    QCOMPARE(sent.actions, (QStringList{QStringLiteral("default"), QStringLiteral("Open")}));
    QCOMPARE(sent.expireTimeout, -1);
    QCOMPARE(sent.hints.keys(), (QStringList{QStringLiteral("desktop-entry"), QStringLiteral("urgency")}));
    QCOMPARE(
        sent.hints.value(QStringLiteral("desktop-entry")),
        QVariant(QStringLiteral("org.deskbroom.Deskbroom")));
    QCOMPARE(sent.hints.value(QStringLiteral("urgency")), QVariant::fromValue(uchar(1)));
}

void NotificationServerTest::asksNobodyAnythingBeforeTheFirstRequest()
{
    const Server server(m_bus->address());
    const auto client = newClient();
    settle(*client);

    QCOMPARE(server.capabilitiesQuestions(), 0);
    QVERIFY(server.notifications().isEmpty());
}

void NotificationServerTest::asksForTheCapabilitiesOnceForEachServer()
{
    auto server = std::make_unique<Server>(m_bus->address());
    const auto client = newClient();
    Outcomes outcomes;
    client->show(copied, recordIn(outcomes));
    client->show(request(QStringLiteral("other")), recordIn(outcomes));
    QTRY_COMPARE(outcomes, Outcomes(2));
    show(*client, copied);
    QCOMPARE(server->capabilitiesQuestions(), 1);

    server.reset();
    server = std::make_unique<Server>(m_bus->address());
    show(*client, copied);
    show(*client, copied);

    QCOMPARE(server->capabilitiesQuestions(), 1);
}

void NotificationServerTest::aNewerRequestReplacesTheNotification()
{
    const Server server(m_bus->address());
    const auto client = newClient();
    show(*client, request(QStringLiteral("other")));
    show(*client, copied);
    show(*client, request(copied.identifier, QStringLiteral("newer")));

    QCOMPARE(server.notifications().at(2).replacedNumber, 2U);
    QCOMPARE(server.shown().size(), 2);
    QCOMPARE(server.shown().at(1).body, QStringLiteral("newer"));
}

void NotificationServerTest::takesANumberThatTheServerMadeAnew()
{
    Server server(m_bus->address());
    const auto client = newClient();
    show(*client, copied);
    // The server drops it without a word, so the client still asks for it to be replaced.
    server.forget(1);
    show(*client, copied);
    QCOMPARE(server.notifications().at(1).replacedNumber, 1U);
    QCOMPARE(server.notifications().at(1).number, 2U);

    show(*client, copied);
    QCOMPARE(server.notifications().at(2).replacedNumber, 2U);
}

void NotificationServerTest::requestsWaitForTheAnswerToTheFirst()
{
    Server server(m_bus->address());
    server.setAnswer(Answer::WhenReleased);
    const auto client = newClient();
    Outcomes first;
    Outcomes overtaken;
    Outcomes newest;
    client->show(copied, recordIn(first));
    client->show(request(copied.identifier, QStringLiteral("second")), recordIn(overtaken));
    client->show(request(copied.identifier, QStringLiteral("third")), recordIn(overtaken));
    client->show(request(copied.identifier, QStringLiteral("newest")), recordIn(newest));
    QTRY_COMPARE(server.notifications().size(), 1);
    settle(*client);
    QCOMPARE(server.notifications().size(), 1);
    QCOMPARE(overtaken, Outcomes(2));
    QVERIFY(first.isEmpty());

    server.setAnswer(Answer::AtOnce);
    server.release();

    QTRY_COMPARE(newest, Outcomes(1));
    QCOMPARE(first, Outcomes(1));
    QCOMPARE(server.notifications().size(), 2);
    QCOMPARE(server.shown().size(), 1);
    QCOMPARE(server.shown().constFirst().body, QStringLiteral("newest"));
}

void NotificationServerTest::requestsOfOtherIdentifiersDoNotWait()
{
    Server server(m_bus->address());
    server.setAnswer(Answer::WhenReleased);
    const auto client = newClient();
    client->show(copied, [](const std::optional<Error> &) {});
    client->show(request(QStringLiteral("other")), [](const std::optional<Error> &) {});

    QTRY_COMPARE(server.notifications().size(), 2);
}

void NotificationServerTest::aClickTellsTheRequestOnce()
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

void NotificationServerTest::aClickOnAReplacedNotificationTellsTheNewerRequest()
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

void NotificationServerTest::anyActionCountsAsTheClick()
{
    Server server(m_bus->address());
    const auto client = newClient();
    const QSignalSpy clicks(client.get(), &NotificationService::clicked);
    show(*client, copied);

    server.click(1, QStringLiteral("view"));

    QTRY_COMPARE(clicks.size(), 1);
}

void NotificationServerTest::clicksOnOtherProgramsNotificationsAreIgnored()
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

void NotificationServerTest::clicksThatOthersThanTheServerReportAreIgnored()
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

void NotificationServerTest::signalsWithNonsenseAreIgnored()
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

void NotificationServerTest::aClickCountsWhenTheServerClosesFirst()
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

void NotificationServerTest::whatIsGoneIsNotReplaced()
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

void NotificationServerTest::theClickBringsItsActivationToken()
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

void NotificationServerTest::theTokenOfAnotherNotificationIsNotTaken()
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

void NotificationServerTest::escapesTheTextOnlyForServersThatReadTags_data()
{
    QTest::addColumn<QStringList>("capabilities");
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<QString>("expected");
    const QString plain = QStringLiteral("<b>&</b>");
    const QString escaped = QStringLiteral("&lt;b&gt;&amp;&lt;/b&gt;");
    const QStringList tags{QStringLiteral("actions"), QStringLiteral("body-markup")};
    QTest::newRow("reads tags") << tags << Answer::AtOnce << escaped;
    QTest::newRow("doesn't") << QStringList{QStringLiteral("actions")} << Answer::AtOnce << plain;
    QTest::newRow("has no capabilities") << QStringList() << Answer::AtOnce << plain;
    QTest::newRow("answers with an error") << tags << Answer::Error << escaped;
    QTest::newRow("doesn't answer") << tags << Answer::Never << escaped;
}

void NotificationServerTest::escapesTheTextOnlyForServersThatReadTags()
{
    QFETCH(const QStringList, capabilities);
    QFETCH(const Answer, answer);
    QFETCH(const QString, expected);
    Server server(m_bus->address(), capabilities);
    server.setCapabilitiesAnswer(answer);
    const auto client = newClient();
    const UserNotificationRequest tagged = request(QStringLiteral("tagged"), QStringLiteral("<b>&</b>"));
    show(*client, tagged);
    show(*client, tagged);

    QCOMPARE(server.notifications().at(0).body, expected);
    QCOMPARE(server.notifications().at(1).body, expected);
    QCOMPARE(server.notifications().at(1).replacedNumber, 1U);
    QCOMPARE(server.capabilitiesQuestions(), 1);
}

void NotificationServerTest::hostileTextReachesTheServer()
{
    const Server server(m_bus->address());
    const auto client = newClient();
    UserNotificationRequest hostile = copied;
    hostile.content.title = QStringLiteral("a\nb") + QChar(0xD800);
    hostile.content.body = QStringLiteral("a") + QChar(0) + QChar(0xDC00) + QStringLiteral("\u202Eb");
    show(*client, hostile);

    QCOMPARE(server.notifications().constFirst().title, QStringLiteral("a b\uFFFD"));
    // What would turn the rest of the text round is gone.
    QCOMPARE(server.notifications().constFirst().body, QStringLiteral("a \uFFFDb"));
    QVERIFY(m_client.isConnected());
}

void NotificationServerTest::failuresCarryACode_data()
{
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<int>("code");
    QTest::newRow("silence") << Answer::Never << int(UserNotificationCenter::NoAnswer);
    QTest::newRow("error") << Answer::Error << int(UserNotificationCenter::Refused);
    QTest::newRow("nonsense") << Answer::Nonsense << int(UserNotificationCenter::Refused);
}

void NotificationServerTest::failuresCarryACode()
{
    QFETCH(const Answer, answer);
    QFETCH(const int, code);
    Server server(m_bus->address());
    server.setAnswer(answer);
    const auto client = newClient();
    Outcomes outcomes;
    client->show(copied, recordIn(outcomes));
    QVERIFY(outcomes.isEmpty());

    QTRY_COMPARE(outcomes.size(), 1);
    QVERIFY(outcomes.constFirst());
    QCOMPARE(outcomes.constFirst()->domain, UserNotificationCenter::errorDomain);
    QCOMPARE(outcomes.constFirst()->code, code);
    QVERIFY(!outcomes.constFirst()->localizedDescription.isEmpty());
    if (answer == Answer::Error) {
        QCOMPARE(outcomes.constFirst()->localizedDescription, QStringLiteral("Too many notifications"));
    }
}

void NotificationServerTest::goesOnAfterAFailure()
{
    Server server(m_bus->address());
    server.setAnswer(Answer::Error);
    const auto client = newClient();
    Outcomes failed;
    Outcomes waiting;
    client->show(copied, recordIn(failed));
    client->show(copied, recordIn(waiting));
    QTRY_COMPARE(failed.size() + waiting.size(), 2);
    QVERIFY(waiting.constFirst());

    server.setAnswer(Answer::AtOnce);
    show(*client, copied);
    QCOMPARE(server.shown().size(), 1);
}

void NotificationServerTest::failsWithoutAServer()
{
    const auto client = newClient();
    Outcomes outcomes;
    client->show(copied, recordIn(outcomes));

    QTRY_COMPARE(outcomes.size(), 1);
    QCOMPARE(outcomes.constFirst().value().code, int(UserNotificationCenter::NotAllowed));
}

void NotificationServerTest::failsIfTheServerCannotBeStarted()
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

void NotificationServerTest::failsWhenTheBusIsGone()
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

void NotificationServerTest::failsWithoutABus()
{
    NotificationServer client{QDBusConnection(QStringLiteral("none"))};
    Outcomes outcomes;
    client.show(copied, recordIn(outcomes));
    QVERIFY(outcomes.isEmpty());

    QTRY_COMPARE(outcomes.size(), 1);
    QCOMPARE(outcomes.constFirst().value().code, int(UserNotificationCenter::NotAllowed));
}

void NotificationServerTest::aServerThatComesLaterServesLaterRequests()
{
    const auto client = newClient();
    Outcomes outcomes;
    client->show(copied, recordIn(outcomes));
    QTRY_COMPARE(outcomes.size(), 1);

    const Server server(m_bus->address());
    show(*client, copied);

    QCOMPARE(server.shown().size(), 1);
}

void NotificationServerTest::theNumbersOfAnEarlierServerMeanNothingToTheNext()
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

void NotificationServerTest::aServerThatGoesInMidCallFailsTheRequestAlone()
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

void NotificationServerTest::permissionNeedsAServer()
{
    const auto client = newClient();
    QCOMPARE(permission(*client), Permission::Denied);
    auto server = std::make_unique<Server>(m_bus->address());
    QCOMPARE(permission(*client), Permission::Granted);
    server.reset();
    QCOMPARE(permission(*client), Permission::Denied);
}

void NotificationServerTest::permissionIsGrantedWhereTheBusWouldStartAServer()
{
    QDBusConnection::disconnectFromBus(m_client.name());
    connectTo(std::make_unique<PrivateBus>(QStringList{service}));
    const auto client = newClient();

    QCOMPARE(permission(*client), Permission::Granted);
}

void NotificationServerTest::permissionFollowsTheDesktopsSwitch()
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

void NotificationServerTest::permissionCannotBeAskedWithoutABus()
{
    NotificationServer client{QDBusConnection(QStringLiteral("none"))};
    const std::optional<Result<Permission>> answer = permission(client);

    QVERIFY(answer && !*answer);
    QCOMPARE(answer->error().domain, UserNotificationCenter::errorDomain);
}

QTEST_GUILESS_MAIN(NotificationServerTest)

#include "NotificationServerTest.moc"
