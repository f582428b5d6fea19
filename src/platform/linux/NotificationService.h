#pragma once

#include "Error.h"
#include "UserNotificationRequest.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>

/// Who shows notifications in this session: the desktop's notification server, or in a sandbox the portal.
///
/// Main thread. Every answer comes later, from the event loop; none comes once the object is gone.
class NotificationService : public QObject {
    Q_OBJECT

public:
    enum class Permission { Denied, Granted };
    using Shown = std::function<void(const std::optional<Error> &error)>;

    using QObject::QObject;

    /// That of the session, on the session bus.
    [[nodiscard]] static std::unique_ptr<NotificationService> forSession();

    /// Replaces what is still shown under the same identifier. Errors are in UserNotificationCenter's domain.
    virtual void show(const UserNotificationRequest &request, Shown done) = 0;

    /// Whether notifications of this program reach the user, asked afresh; an error if nobody could be asked.
    virtual void askPermission(std::function<void(const Result<Permission> &)> done) = 0;

Q_SIGNALS:
    /// The user has clicked the notification that this request showed, and it is gone. Once for each.
    void clicked(const UserNotificationRequest &request);

    /// Whoever shows notifications has come, gone, or given way to another one.
    void availabilityChanged();
};
