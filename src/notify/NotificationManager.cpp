#include "NotificationManager.h"

#include "Preferences.h"
#include "UserDefaults.h"
#include "UserNotificationCenter.h"
#include "Workspace.h"
#include "print.h"

#include <utility>

namespace {

const QString accessFailedIdentifier = QStringLiteral("access-failed");
const QString desktopAccessIdentifier = QStringLiteral("desktop-access");
const QString accessGrantedIdentifier = QStringLiteral("access-granted");

/// A user who has gone through the first-run pages has been asked there.
UserNotificationCenter::AuthorizationRequester authorizationRequester()
{
    const bool wasAsked = UserDefaults::standard().boolean(preferences::hasCompletedOnboarding);
    return wasAsked ? UserNotificationCenter::AuthorizationRequester::User
                    : UserNotificationCenter::AuthorizationRequester::Launch;
}

void add(
    const QString &identifier, UserNotificationContent content,
    std::function<void(const std::optional<Error> &error)> done = {})
{
    UserNotificationCenter::current().add(
        {.identifier = identifier, .content = std::move(content)}, std::move(done));
}

} // namespace

NotificationManager &NotificationManager::shared()
{
    // Never destroyed: it may be called to the end from whatever runs in the background.
    static auto *const manager = new NotificationManager;
    return *manager;
}

NotificationManager::NotificationManager()
{
    UserNotificationCenter &center = UserNotificationCenter::current();
    center.setDelegate(this);
    center.requestAuthorization(
        {UserNotificationCenter::AuthorizationOption::Alert,
         UserNotificationCenter::AuthorizationOption::Sound},
        authorizationRequester(), [](bool /*isGranted*/, const std::optional<Error> &error) {
            if (error) {
                print(QStringLiteral("Notification authorization error: ") + error->description());
            }
        });
}

void NotificationManager::showAccessFailed(const QString &message)
{
    add(accessFailedIdentifier, {
                                    .title = tr("Access Failed"),
                                    .body = tr("Could not access the selected folder. ") + message,
                                    .categoryIdentifier = QStringLiteral("ACCESS_FAILED"),
                                });
}

void NotificationManager::showDesktopAccessRequired()
{
    add(desktopAccessIdentifier,
        {
            .title = tr("Desktop Folder Access Required"),
            .body = tr("Deskbroom needs access to your Desktop folder. Click to open System Settings."),
            .categoryIdentifier = QStringLiteral("DESKTOP_ACCESS"),
        },
        [](const std::optional<Error> &error) {
            if (error) {
                print(QStringLiteral("Error showing notification: ") + error->description());
            }
        });
}

void NotificationManager::showAccessGranted(const QString &folderName)
{
    add(accessGrantedIdentifier,
        {
            .title = tr("Access Granted"),
            .body = tr("Deskbroom now has access to detect screenshots in ") + folderName + u'.',
            .categoryIdentifier = {},
        });
}

void NotificationManager::setFolderAccessRequest(std::function<void()> request)
{
    m_folderAccessRequest = std::move(request);
}

QUrl NotificationManager::fileAccessSettings()
{
    return QUrl(QStringLiteral("x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles"));
}

PresentationOptions NotificationManager::willPresent(const UserNotificationRequest & /*request*/)
{
    return {PresentationOption::Banner, PresentationOption::Sound};
}

void NotificationManager::didReceive(
    const UserNotificationRequest &request, const std::function<void()> &completionHandler)
{
    if (request.identifier == desktopAccessIdentifier) {
        if (const QUrl settings = fileAccessSettings(); settings.isValid()) {
            Workspace::shared().open(settings);
        }
    } else if (request.identifier == accessFailedIdentifier && m_folderAccessRequest) {
        m_folderAccessRequest();
    }
    completionHandler();
}
