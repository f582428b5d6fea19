#include "ShownNotifications.h"

#include <QTest>

using Key = ShownNotifications::Key;

namespace {

const QString server = QStringLiteral(":1.1");
const QString otherServer = QStringLiteral(":1.2");

const UserNotificationRequest copied{
    .identifier = QStringLiteral("copied"), .content = {.title = {}, .body = {}, .categoryIdentifier = {}}};

const UserNotificationRequest failed{
    .identifier = QStringLiteral("failed"), .content = {.title = {}, .body = {}, .categoryIdentifier = {}}};

} // namespace

class ShownNotificationsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aNumberBelongsToTheServerThatGaveIt();
    void theNewestNumberOfAnIdentifierCounts();
    void aClickIsTakenOnce();
    void aClosedOneIsTakenForAMomentAndNotReplaced();
    void aClosedOneIsForgottenAfterTheGrace();
    void aNumberThatIsUsedAgainBelongsToTheNewer();
    void theTokenBelongsToItsNotification();
    void onlyTheServerThatIsThereIsKept();
};

void ShownNotificationsTest::aNumberBelongsToTheServerThatGaveIt()
{
    ShownNotifications shown;
    shown.add({.server = server, .number = 7}, copied);

    QCOMPARE(shown.numberToReplace(copied.identifier, server), 7U);
    QCOMPARE(shown.numberToReplace(copied.identifier, otherServer), 0U);
    QCOMPARE(shown.numberToReplace(failed.identifier, server), 0U);
    QVERIFY(!shown.take({.server = otherServer, .number = 7}));
    QVERIFY(!shown.take({.server = server, .number = 8}));
}

void ShownNotificationsTest::theNewestNumberOfAnIdentifierCounts()
{
    ShownNotifications shown;
    shown.add({.server = server, .number = 1}, copied);
    shown.add({.server = server, .number = 2}, copied);

    QCOMPARE(shown.numberToReplace(copied.identifier, server), 2U);
    QVERIFY(!shown.take({.server = server, .number = 1}));
}

void ShownNotificationsTest::aClickIsTakenOnce()
{
    ShownNotifications shown;
    const Key key{.server = server, .number = 1};
    shown.add(key, copied);
    shown.add({.server = server, .number = 2}, failed);

    const auto click = shown.take(key);
    QVERIFY(click);
    QCOMPARE(click->request, copied);
    QVERIFY(!shown.take(key));
    QCOMPARE(shown.numberToReplace(copied.identifier, server), 0U);
    QCOMPARE(shown.numberToReplace(failed.identifier, server), 2U);
}

void ShownNotificationsTest::aClosedOneIsTakenForAMomentAndNotReplaced()
{
    ShownNotifications shown(std::chrono::hours(1));
    const Key key{.server = server, .number = 1};
    shown.add(key, copied);
    shown.close(key);
    QCOMPARE(shown.numberToReplace(copied.identifier, server), 0U);

    // A newer one of the same identifier doesn't take the click away.
    shown.add({.server = server, .number = 2}, copied);
    QVERIFY(shown.take(key));
    QCOMPARE(shown.numberToReplace(copied.identifier, server), 2U);
}

void ShownNotificationsTest::aClosedOneIsForgottenAfterTheGrace()
{
    ShownNotifications shown(std::chrono::milliseconds(0));
    const Key key{.server = server, .number = 1};
    shown.add(key, copied);
    shown.close(key);

    QVERIFY(!shown.take(key));
}

void ShownNotificationsTest::aNumberThatIsUsedAgainBelongsToTheNewer()
{
    ShownNotifications shown(std::chrono::hours(1));
    const Key key{.server = server, .number = 1};
    shown.add(key, copied);
    shown.close(key);
    shown.add(key, failed);

    const auto click = shown.take(key);
    QVERIFY(click);
    QCOMPARE(click->request, failed);
}

void ShownNotificationsTest::theTokenBelongsToItsNotification()
{
    ShownNotifications shown;
    shown.add({.server = server, .number = 1}, copied);
    shown.add({.server = server, .number = 2}, failed);
    shown.setActivationToken({.server = server, .number = 1}, QStringLiteral("token"));
    shown.setActivationToken({.server = server, .number = 3}, QStringLiteral("another's"));

    QCOMPARE(shown.take({.server = server, .number = 2})->activationToken, QString());
    QCOMPARE(shown.take({.server = server, .number = 1})->activationToken, QStringLiteral("token"));
}

void ShownNotificationsTest::onlyTheServerThatIsThereIsKept()
{
    ShownNotifications shown;
    shown.add({.server = server, .number = 1}, copied);
    shown.add({.server = otherServer, .number = 1}, failed);
    shown.keepOnly(otherServer);

    QVERIFY(!shown.take({.server = server, .number = 1}));
    QVERIFY(shown.take({.server = otherServer, .number = 1}));
}

QTEST_APPLESS_MAIN(ShownNotificationsTest)

#include "ShownNotificationsTest.moc"
