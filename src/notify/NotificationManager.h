#pragma once

#include "ObservableObject.h"
#include "UserNotificationCenterDelegate.h"

#include <QUrl>

#include <functional>

struct UserNotificationContent;

/// Posts the program's user notifications, all of which are about access to the watched folder, and answers
/// the user's clicks on them. A notification replaces the earlier one of its kind.
///
/// There is one, made at launch. The operations that show something may be called from any thread;
/// everything else belongs to the main thread.
class NotificationManager final : public ObservableObject, public UserNotificationCenterDelegate {
    Q_OBJECT

public:
    /// Made on first use, which asks for authorisation. Lives as long as the process.
    static NotificationManager &shared();

    /// `message` says why, for a person.
    void showAccessFailed(const QString &message);
    void showDesktopAccessRequired();
    void showAccessGranted(const QString &folderName);

    /// What a click on "Access Failed" does: ask the user for the folder.
    void setFolderAccessRequest(std::function<void()> request);

    /// Where the desktop's settings tell who may read which files.
    [[nodiscard]] static QUrl fileAccessSettings();

    [[nodiscard]] PresentationOptions willPresent(const UserNotificationRequest &request) override;
    void didReceive(
        const UserNotificationRequest &request, const std::function<void()> &completionHandler) override;

private:
    NotificationManager();

    std::function<void()> m_folderAccessRequest;
};
