#pragma once

#include "UserNotificationRequest.h"

#include <QDeadlineTimer>
#include <QString>

#include <chrono>
#include <optional>
#include <vector>

/// Which of our notifications a server shows, and under which of its numbers. A number means something only
/// together with the unique bus name of the server that gave it: a server that was started again counts from
/// the beginning, and may have given the number to another program.
///
/// A value without knowledge of the bus; owned by NotificationServer.
class ShownNotifications final {
public:
    static constexpr auto defaultGrace = std::chrono::milliseconds(2000);

    /// `grace` is how long after its closing a click on a notification still counts, because some servers
    /// close it before they report the click. It has an end so that a number that the server uses again isn't
    /// taken for ours.
    explicit ShownNotifications(std::chrono::milliseconds grace = defaultGrace) : m_grace(grace) {}

    struct Key {
        /// The server's unique name.
        QString server;
        uint number = 0;

        bool operator==(const Key &) const = default;
    };

    /// Takes the place of what was shown under the same identifier.
    void add(const Key &key, const UserNotificationRequest &request);

    /// The number to replace; 0, as the protocol has it, if that server shows nothing under the identifier.
    [[nodiscard]] uint numberToReplace(const QString &identifier, const QString &server) const;

    /// Also one that was closed, for as long as a click on it counts.
    [[nodiscard]] bool contains(const Key &key) const;

    /// It is no longer shown: nothing replaces it, but a click on it still counts for a moment.
    void close(const Key &key);

    /// Keeps the token for the click that follows.
    void setActivationToken(const Key &key, const QString &token);

    struct Clicked {
        UserNotificationRequest request;
        /// Empty if the server gave none.
        QString activationToken;
    };

    /// Forgets the notification. Empty if it isn't one of ours, or has been taken already.
    [[nodiscard]] std::optional<Clicked> take(const Key &key);

    /// Forgets what other servers than this one have shown.
    void keepOnly(const QString &server);

private:
    struct Notification {
        Key key;
        UserNotificationRequest request;
        QString activationToken;
        /// Set once it is closed.
        std::optional<QDeadlineTimer> clickableUntil;
    };

    void forgetExpired();
    [[nodiscard]] Notification *find(const Key &key);

    std::chrono::milliseconds m_grace;
    /// A handful at most: the program has few identifiers.
    std::vector<Notification> m_notifications;
};
