#pragma once

#include "NotificationService.h"
#include "ShownNotifications.h"
#include "notificationText.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QHash>

#include <chrono>
#include <vector>

/// The desktop's notification server, `org.freedesktop.Notifications` of the Desktop Notifications
/// Specification 1.2, on a connection that lives as long as the process: servers drop the notifications of
/// whoever leaves the bus.
///
/// A request goes first to whoever has the name (the bus may start somebody) as the question for its
/// capabilities, once for each owner; then, as the notification, to that owner itself, so that neither its
/// numbers nor its kind of text ever reach another one.
class NotificationServer final : public NotificationService {
    Q_OBJECT

public:
    /// How long each call may take.
    struct Patience {
        std::chrono::milliseconds capabilities = std::chrono::seconds(1);
        std::chrono::milliseconds notification = std::chrono::seconds(5);
    };

    explicit NotificationServer(QDBusConnection bus, QObject *parent = nullptr);
    NotificationServer(QDBusConnection bus, Patience patience, QObject *parent = nullptr);

    /// Of several requests of one identifier, the first is sent, and the newest after the answer to it; those
    /// between are done without having been sent.
    void show(const UserNotificationRequest &request, Shown done) override;

    /// Denied without a server that runs or can be started, and where the desktop's own switch for this
    /// program is off.
    void askPermission(std::function<void(const Result<Permission> &)> done) override;

private Q_SLOTS:
    void takeSignal(const QDBusMessage &signal);

private:
    struct Request {
        UserNotificationRequest request;
        Shown done;
    };

    struct Sending {
        Request current;
        std::optional<Request> next;
    };

    struct Server {
        /// Its unique name; before it has answered anything, the name that it is known by.
        QString address;
        BodyFormat bodyFormat;
    };

    enum class Attempt { First, Second };
    using ServerKnown = std::function<void(const std::optional<Error> &error)>;

    void listen(const QString &signal);
    void takeClick(const ShownNotifications::Key &key);
    void serverChanged(const QString &owner);
    void findServer(ServerKnown done);
    void takeCapabilities(const QDBusMessage &answer);
    void send(const QString &identifier, Attempt attempt);
    void notify(const QString &identifier, Attempt attempt);
    void takeAnswer(const QString &identifier, const QDBusMessage &answer);
    void takeEarlySignals();
    void finish(const QString &identifier, const std::optional<Error> &error);
    void askForActivatable(const std::function<void(const Result<Permission> &)> &done);
    void readSwitch(const std::function<void(const Result<Permission> &)> &done);

    QDBusConnection m_bus;
    Patience m_patience;
    std::optional<Server> m_server;
    std::vector<ServerKnown> m_waitForServer;
    ShownNotifications m_shown;
    /// By our identifier: the requests on their way.
    QHash<QString, Sending> m_sending;
    int m_unansweredNotifications = 0;
    /// About notifications that aren't known, while one of ours is unanswered: the toolkit may tell a quick
    /// click before the answer, which has the notification's number.
    std::vector<QDBusMessage> m_earlySignals;
};
