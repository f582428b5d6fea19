#pragma once

#include <QFlags>

#include <functional>

struct UserNotificationRequest;

/// How a notification is shown while the program itself is in front.
enum class PresentationOption { Banner = 1, Sound = 2 };
Q_DECLARE_FLAGS(PresentationOptions, PresentationOption)
Q_DECLARE_OPERATORS_FOR_FLAGS(PresentationOptions)

/// Decides about notifications while the program is in front, and acts on clicks. Main thread.
class UserNotificationCenterDelegate {
public:
    UserNotificationCenterDelegate() = default;
    virtual ~UserNotificationCenterDelegate() = default;
    UserNotificationCenterDelegate(const UserNotificationCenterDelegate &) = delete;
    UserNotificationCenterDelegate &operator=(const UserNotificationCenterDelegate &) = delete;
    UserNotificationCenterDelegate(UserNotificationCenterDelegate &&) = delete;
    UserNotificationCenterDelegate &operator=(UserNotificationCenterDelegate &&) = delete;

    /// The request has been added while the program is in front; it is sent only if the answer has Banner.
    [[nodiscard]] virtual PresentationOptions willPresent(const UserNotificationRequest &request) = 0;

    /// The user has clicked the notification, which is gone from then on. Called once for each notification
    /// that was shown; calls `completionHandler` once, after the action.
    virtual void
    didReceive(const UserNotificationRequest &request, const std::function<void()> &completionHandler) = 0;
};
