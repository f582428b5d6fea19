#include "NotificationManager.h"

#include "CapturedOutput.h"
#include "RecordingNotificationServer.h"
#include "TemporaryHome.h"
#include "UserNotificationRequest.h"
#include "files.h"

#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include <memory>
#include <thread>

namespace {

QString sessionBus()
{
    return qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
}

NotificationManager &manager()
{
    return NotificationManager::shared();
}

} // namespace

/// The one manager, with a notification server that records. Each test leaves the server without
/// notifications for the next one.
class NotificationManagerTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void saysWhatTheMatterIs_data();
    void saysWhatTheMatterIs();
    void anEmptyMessageLeavesTheTrailingBlank();
    void theFolderNameIsDirectlyFollowedByTheFullStop();
    void twoFailuresInARowShowOneNotificationWithTheNewerMessage();
    void theThreeKindsStandSideBySide();
    void mayBeCalledFromAnyThread();
    void clickingAccessFailedAsksForTheFolder();
    void clickingAccessRequiredOpensTheSystemSettings();
    void clickingAccessGrantedDoesNothing();
    void theClicksActionDoesNotMatter();
    void everyClickIsCompletedOnceAfterItsAction_data();
    void everyClickIsCompletedOnceAfterItsAction();
    void isShownAsABannerWhileTheProgramIsInFront();
    void onlyTheFailureOfAccessRequiredIsPrinted();

private:
    [[nodiscard]] RecordingNotificationServer::Notification shownOne() const;

    [[nodiscard]] bool isOneShown() const { return m_server->shown().size() == 1; }

    TemporaryHome m_home;
    std::unique_ptr<RecordingNotificationServer> m_server;
    int m_folderRequests = 0;
};

void NotificationManagerTest::initTestCase()
{
    manager().setFolderAccessRequest([this] { ++m_folderRequests; });
}

void NotificationManagerTest::init()
{
    m_server = std::make_unique<RecordingNotificationServer>(sessionBus());
    m_folderRequests = 0;
}

void NotificationManagerTest::cleanup()
{
    m_server.reset();
}

RecordingNotificationServer::Notification NotificationManagerTest::shownOne() const
{
    return m_server->shown().value(0);
}

void NotificationManagerTest::saysWhatTheMatterIs_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("body");
    QTest::newRow("access failed") << 0 << QStringLiteral("Access Failed")
                                   << QStringLiteral("Could not access the selected folder. Why.");
    QTest::newRow("access required")
        << 1 << QStringLiteral("Desktop Folder Access Required")
        << QStringLiteral("Deskbroom needs access to your Desktop folder. Click to open System Settings.");
    QTest::newRow("access granted") << 2 << QStringLiteral("Access Granted")
                                    << QStringLiteral(
                                           "Deskbroom now has access to detect screenshots in Archive.");
}

void NotificationManagerTest::saysWhatTheMatterIs()
{
    QFETCH(const int, kind);
    switch (kind) {
    case 0:
        manager().showAccessFailed(QStringLiteral("Why."));
        break;
    case 1:
        manager().showDesktopAccessRequired();
        break;
    default:
        manager().showAccessGranted(QStringLiteral("Archive"));
    }
    QTRY_VERIFY(isOneShown());
    QTEST(shownOne().title, "title");
    QTEST(shownOne().body, "body");
    QVERIFY(!shownOne().hints.contains(QStringLiteral("category")));
    QVERIFY(!shownOne().hints.contains(QStringLiteral("sound-name")));
}

void NotificationManagerTest::anEmptyMessageLeavesTheTrailingBlank()
{
    manager().showAccessFailed({});
    QTRY_VERIFY(isOneShown());
    QCOMPARE(shownOne().body, QStringLiteral("Could not access the selected folder. "));
}

void NotificationManagerTest::theFolderNameIsDirectlyFollowedByTheFullStop()
{
    manager().showAccessGranted(QStringLiteral("Desktop"));
    QTRY_VERIFY(isOneShown());
    QVERIFY(shownOne().body.endsWith(QStringLiteral(" Desktop.")));
}

void NotificationManagerTest::twoFailuresInARowShowOneNotificationWithTheNewerMessage()
{
    manager().showAccessFailed(QStringLiteral("First."));
    manager().showAccessFailed(QStringLiteral("Second."));
    QTRY_COMPARE(m_server->notifications().size(), 2);
    QVERIFY(isOneShown());
    QVERIFY(shownOne().body.endsWith(QStringLiteral("Second.")));
}

void NotificationManagerTest::theThreeKindsStandSideBySide()
{
    manager().showAccessFailed(QStringLiteral("Why."));
    manager().showDesktopAccessRequired();
    manager().showAccessGranted(QStringLiteral("Archive"));
    QTRY_COMPARE(m_server->shown().size(), 3);
}

void NotificationManagerTest::mayBeCalledFromAnyThread()
{
    NotificationManager &shared = manager();
    std::jthread([&shared] { shared.showAccessFailed(QStringLiteral("From afar.")); }).join();
    QTRY_VERIFY(isOneShown());
    QVERIFY(shownOne().body.endsWith(QStringLiteral("From afar.")));
}

void NotificationManagerTest::clickingAccessFailedAsksForTheFolder()
{
    manager().showAccessFailed({});
    QTRY_VERIFY(isOneShown());
    m_server->click(shownOne().number);
    QTRY_COMPARE(m_folderRequests, 1);
}

void NotificationManagerTest::clickingAccessRequiredOpensTheSystemSettings()
{
    const QString opened = m_home.path() + QStringLiteral("/opened");
    const QString settings = m_home.path() + QStringLiteral("/bin/xfce4-settings-manager");
    files::makeFolder(m_home.path() + QStringLiteral("/bin"));
    files::write(settings, "#!/bin/sh\ntouch \"$HOME/opened\"\n");
    QVERIFY(QFile(settings).setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    qputenv("PATH", QFile::encodeName(m_home.path()) + "/bin:" + qgetenv("PATH"));
    qputenv("XDG_CURRENT_DESKTOP", "XFCE");

    manager().showDesktopAccessRequired();
    QTRY_VERIFY(isOneShown());
    m_server->click(shownOne().number);
    QTRY_VERIFY(files::exists(opened));
    QCOMPARE(m_folderRequests, 0);
    qunsetenv("XDG_CURRENT_DESKTOP");
}

void NotificationManagerTest::clickingAccessGrantedDoesNothing()
{
    const CapturedOutput output;
    manager().showAccessGranted(QStringLiteral("Archive"));
    manager().showAccessFailed({});
    QTRY_COMPARE(m_server->shown().size(), 2);
    for (const auto &notification : m_server->shown()) {
        m_server->click(notification.number);
    }
    // The other's click comes after it.
    QTRY_COMPARE(m_folderRequests, 1);
    QVERIFY(output.lines().isEmpty());
}

void NotificationManagerTest::theClicksActionDoesNotMatter()
{
    manager().showAccessFailed({});
    QTRY_VERIFY(isOneShown());
    m_server->click(shownOne().number, QStringLiteral("whatever"));
    QTRY_COMPARE(m_folderRequests, 1);
}

void NotificationManagerTest::everyClickIsCompletedOnceAfterItsAction_data()
{
    QTest::addColumn<QString>("identifier");
    QTest::addColumn<int>("folderRequests");
    QTest::newRow("access failed") << QStringLiteral("access-failed") << 1;
    QTest::newRow("access granted") << QStringLiteral("access-granted") << 0;
    QTest::newRow("another program's") << QStringLiteral("other") << 0;
    QTest::newRow("access required, on a desktop without settings") << QStringLiteral("desktop-access") << 0;
}

void NotificationManagerTest::everyClickIsCompletedOnceAfterItsAction()
{
    QFETCH(const QString, identifier);
    const CapturedOutput output;
    int completions = 0;
    int requestsAtCompletion = -1;
    manager().didReceive({.identifier = identifier, .content = {}}, [&] {
        ++completions;
        requestsAtCompletion = m_folderRequests;
    });
    QCOMPARE(completions, 1);
    QTEST(requestsAtCompletion, "folderRequests");
}

void NotificationManagerTest::isShownAsABannerWhileTheProgramIsInFront()
{
    const PresentationOptions options = manager().willPresent({});
    QVERIFY(options.testFlag(PresentationOption::Banner));
    QVERIFY(options.testFlag(PresentationOption::Sound));
}

void NotificationManagerTest::onlyTheFailureOfAccessRequiredIsPrinted()
{
    const CapturedOutput output;
    m_server->setAnswer(RecordingNotificationServer::Answer::Error);
    manager().showAccessFailed({});
    manager().showAccessGranted(QStringLiteral("Archive"));
    QTRY_COMPARE(m_server->notifications().size(), 2);
    manager().showDesktopAccessRequired();
    QTRY_VERIFY(!output.lines().isEmpty());
    QCOMPARE(output.lines().size(), 1);
    QVERIFY(
        output.lines().constFirst().startsWith(QStringLiteral("Error showing notification: Error Domain=")));
}

QTEST_MAIN(NotificationManagerTest)
#include "NotificationManagerTest.moc"
