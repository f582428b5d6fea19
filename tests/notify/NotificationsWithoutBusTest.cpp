#include "CapturedOutput.h"
#include "NotificationManager.h"
#include "TemporaryHome.h"
#include "UserNotificationCenter.h"

#include <QTest>

#include <optional>

/// The one manager in a session that has no message bus, before the first run is finished.
class NotificationsWithoutBusTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void theLaunchSaysThatNobodyCouldBeAsked();
    void theUserHasNotBeenAsked();

private:
    const TemporaryHome m_home;
};

void NotificationsWithoutBusTest::initTestCase()
{
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + m_home.path().toUtf8() + "/no-bus");
}

void NotificationsWithoutBusTest::theLaunchSaysThatNobodyCouldBeAsked()
{
    const CapturedOutput output;
    NotificationManager::shared();
    QTRY_COMPARE(output.lines().size(), 1);
    const QString line = output.lines().constFirst();
    QVERIFY2(
        line.startsWith(QStringLiteral("Notification authorization error: Error Domain=")), qPrintable(line));
}

void NotificationsWithoutBusTest::theUserHasNotBeenAsked()
{
    using Status = UserNotificationCenter::AuthorizationStatus;
    std::optional<Status> status;
    UserNotificationCenter::current().getAuthorizationStatus([&status](Status answer) { status = answer; });
    QTRY_VERIFY(status.has_value());
    QVERIFY(status == Status::NotDetermined);
}

QTEST_GUILESS_MAIN(NotificationsWithoutBusTest)
#include "NotificationsWithoutBusTest.moc"
