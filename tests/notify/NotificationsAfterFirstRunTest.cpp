#include "NotificationManager.h"
#include "Preferences.h"
#include "RecordingNotificationServer.h"
#include "TemporaryHome.h"
#include "UserDefaults.h"
#include "UserNotificationCenter.h"

#include <QTest>

#include <optional>

/// The one manager of a user who has gone through the first-run pages at an earlier start.
class NotificationsAfterFirstRunTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theUserNeedsNotBeAskedAgain();

private:
    const TemporaryHome m_home;
};

void NotificationsAfterFirstRunTest::theUserNeedsNotBeAskedAgain()
{
    using Status = UserNotificationCenter::AuthorizationStatus;
    const RecordingNotificationServer server(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"));
    UserDefaults::standard().setBoolean(preferences::hasCompletedOnboarding, true);
    NotificationManager::shared();
    std::optional<Status> status;
    UserNotificationCenter::current().getAuthorizationStatus([&status](Status answer) { status = answer; });
    QTRY_VERIFY(status.has_value());
    QVERIFY(status == Status::Authorized);
}

QTEST_GUILESS_MAIN(NotificationsAfterFirstRunTest)
#include "NotificationsAfterFirstRunTest.moc"
