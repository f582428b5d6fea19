#pragma once

#include "Error.h"
#include "UserNotificationCenterDelegate.h"
#include "UserNotificationRequest.h"
#include "WeakInterface.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>

class NotificationService;

/// Shows notifications to the user, outside the program's windows, and hands clicks on them to a delegate.
///
/// Main thread, except for `current` and `add`. Nothing here waits: every answer comes by a completion, later
/// and on the main thread. Nobody is asked anything before the first request or question; failures are the
/// completions' alone, nothing is printed.
class UserNotificationCenter final : public QObject {
    Q_OBJECT

public:
    enum class AuthorizationStatus { NotDetermined, Denied, Authorized, Provisional, Ephemeral };
    enum class AuthorizationOption { Alert = 1, Sound = 2 };
    Q_DECLARE_FLAGS(AuthorizationOptions, AuthorizationOption)

    /// Who asks: the program by itself when it starts, which leaves a user who has never been asked
    /// undecided; or the user, who pressed the button for it or has gone through the first-run pages in an
    /// earlier run.
    enum class AuthorizationRequester { Launch, User };

    /// The domain of the completions' errors, and its codes.
    static inline const QString errorDomain = QStringLiteral("UserNotificationErrorDomain");

    enum ErrorCode {
        /// Nobody is there to show it, and nobody could be started; or there is no bus to reach them.
        NotAllowed = 1,
        /// It was sent, and nothing came back in time. It may have been shown nevertheless.
        NoAnswer = 2,
        /// The notification server answered with an error.
        Refused = 3,
    };

    /// The process' one centre, which is never destroyed. Any thread.
    static UserNotificationCenter &current();

    /// A centre of its own, for tests. Without a service it takes that of the session when it first needs
    /// one.
    UserNotificationCenter();
    explicit UserNotificationCenter(std::unique_ptr<NotificationService> service);
    ~UserNotificationCenter() override;
    Q_DISABLE_COPY_MOVE(UserNotificationCenter)

    void setDelegate(WeakInterface<UserNotificationCenterDelegate> delegate);

    /// Linux desktops have no prompt, so the answer is what is set now: granted unless there is no
    /// notification server, or the desktop's own switch for this program is off. An error only if that
    /// couldn't be asked. The options aren't looked at: a desktop has one switch for all of them.
    void requestAuthorization(
        AuthorizationOptions options, AuthorizationRequester requester,
        std::function<void(bool isGranted, const std::optional<Error> &error)> done);

    /// Not determined until the user has asked for it in this run; from then on denied or authorized, read
    /// afresh at each call because the user can change it at any time. The last two of the enumeration don't
    /// occur on Linux.
    void getAuthorizationStatus(std::function<void(AuthorizationStatus)> done);

    /// Any thread. `done` runs on the main thread, once: an empty error if the notification was shown, if the
    /// delegate didn't want it, or if a newer request of the same identifier overtook it. While the program
    /// is in front and has no delegate, nothing is shown.
    void
    add(UserNotificationRequest request, std::function<void(const std::optional<Error> &error)> done = {});

Q_SIGNALS:
    /// Worth another question: a notification server has come or gone. The desktop's own switch doesn't tell.
    void authorizationMayHaveChanged();

private:
    using Shown = std::function<void(const std::optional<Error> &error)>;

    [[nodiscard]] NotificationService &service();
    void setService(std::unique_ptr<NotificationService> service);
    [[nodiscard]] bool isWanted(const UserNotificationRequest &request) const;
    void present(const UserNotificationRequest &request, Shown done);
    void tellDelegate(const UserNotificationRequest &request) const;

    std::unique_ptr<NotificationService> m_service;
    WeakInterface<UserNotificationCenterDelegate> m_delegate;
    bool m_isUserAsked = false;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(UserNotificationCenter::AuthorizationOptions)
