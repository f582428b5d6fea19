#include "NotificationServerFixture.h"

/// What a server is told to show, and what its answers mean.
class NotificationServerTest final : public NotificationServerFixture {
    Q_OBJECT

private Q_SLOTS:

    void init() { connectToNewBus(); }

    void cleanup() { leaveBus(); }

    void sendsAllThatTheProtocolWants();
    void asksNobodyAnythingBeforeTheFirstRequest();
    void asksForTheCapabilitiesOnceForEachServer();
    void aNewerRequestReplacesTheNotification();
    void takesANumberThatTheServerMadeAnew();
    void requestsWaitForTheAnswerToTheFirst();
    void requestsOfOtherIdentifiersDoNotWait();
    void escapesTheTextOnlyForServersThatReadTags_data();
    void escapesTheTextOnlyForServersThatReadTags();
    void hostileTextReachesTheServer();
    void failuresCarryACode_data();
    void failuresCarryACode();
    void goesOnAfterAFailure();
};

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

QTEST_GUILESS_MAIN(NotificationServerTest)

#include "NotificationServerTest.moc"
