#include "NotificationServer.h"

#include "NotificationSwitch.h"
#include "UserNotificationCenter.h"
#include "notificationCall.h"
#include "runInBackground.h"

#include <QCoreApplication>
#include <QDBusServiceWatcher>
#include <QGuiApplication>

#include <utility>

namespace {

const QString service = QStringLiteral("org.freedesktop.Notifications");
const QString objectPath = QStringLiteral("/org/freedesktop/Notifications");
const QString interfaceName = QStringLiteral("org.freedesktop.Notifications");
const QString actionInvoked = QStringLiteral("ActionInvoked");
const QString notificationClosed = QStringLiteral("NotificationClosed");
const QString activationToken = QStringLiteral("ActivationToken");
const QString desktopEntry = QStringLiteral("org.deskbroom.Deskbroom");

bool isUniqueName(const QString &name)
{
    return name.startsWith(u':');
}

QDBusMessage methodOf(const QString &address, const QString &method)
{
    return QDBusMessage::createMethodCall(address, objectPath, interfaceName, method);
}

/// In the order of the method's parameters.
QVariantList notifyArguments(uint replacedNumber, const UserNotificationContent &content, BodyFormat format)
{
    constexpr uchar normalUrgency = 1;
    constexpr int expiresAsTheServerLikes = -1;
    const QStringList actions{
        QStringLiteral("default"), QCoreApplication::translate("UserNotificationCenter", "Open")};
    const QVariantMap hints{
        {QStringLiteral("desktop-entry"), desktopEntry},
        {QStringLiteral("urgency"), QVariant::fromValue(normalUrgency)}};
    return {
        QStringLiteral("Deskbroom"),
        replacedNumber,
        desktopEntry,
        notificationText::title(content.title),
        notificationText::body(content.body, format),
        actions,
        hints,
        expiresAsTheServerLikes};
}

/// The number that a signal about a notification begins with; 0, which is none, if it doesn't.
ShownNotifications::Key notificationOf(const QDBusMessage &signal)
{
    const QVariant number = signal.arguments().value(0);
    return {.server = signal.service(), .number = number.typeId() == QMetaType::UInt ? number.toUInt() : 0};
}

} // namespace

NotificationServer::NotificationServer(QDBusConnection bus, QObject *parent)
    : NotificationServer(std::move(bus), Patience(), parent)
{
}

NotificationServer::NotificationServer(QDBusConnection bus, Patience patience, QObject *parent)
    : NotificationService(parent),
      m_bus(std::move(bus)),
      m_patience(patience)
{
    const auto *owners =
        new QDBusServiceWatcher(service, m_bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(
        owners, &QDBusServiceWatcher::serviceOwnerChanged, this,
        [this](const QString &, const QString &, const QString &owner) { serverChanged(owner); });
    for (const QString &signal : {actionInvoked, notificationClosed, activationToken}) {
        listen(signal);
    }
}

/// Without a sender's name, because the toolkit would wait for that name's owner here; who sent a signal is
/// part of the key that it is looked up by.
void NotificationServer::listen(const QString &signal)
{
    m_bus.connect(QString(), objectPath, interfaceName, signal, this, SLOT(takeSignal(QDBusMessage)));
}

void NotificationServer::serverChanged(const QString &owner)
{
    m_shown.keepOnly(owner);
    if (m_server && m_server->address != owner) {
        m_server.reset();
    }
    Q_EMIT availabilityChanged();
}

void NotificationServer::show(const UserNotificationRequest &request, Shown done)
{
    const auto sending = m_sending.find(request.identifier);
    if (sending == m_sending.end()) {
        m_sending.insert(
            request.identifier,
            {.current = {.request = request, .done = std::move(done)}, .next = std::nullopt});
        send(request.identifier, Attempt::First);
        return;
    }
    const std::optional<Request> overtaken =
        std::exchange(sending->next, Request{.request = request, .done = std::move(done)});
    if (overtaken) {
        overtaken->done(std::nullopt);
    }
}

void NotificationServer::send(const QString &identifier, Attempt attempt)
{
    findServer([this, identifier, attempt](const std::optional<Error> &error) {
        if (error) {
            finish(identifier, error);
        } else {
            notify(identifier, attempt);
        }
    });
}

void NotificationServer::findServer(ServerKnown done)
{
    if (m_server) {
        done(std::nullopt);
        return;
    }
    m_waitForServer.push_back(std::move(done));
    if (m_waitForServer.size() == 1) {
        notificationCall::send(
            m_bus, methodOf(service, QStringLiteral("GetCapabilities")), m_patience.capabilities, this,
            [this](const QDBusMessage &answer) { takeCapabilities(answer); });
    }
}

/// A server that doesn't tell its capabilities counts as one that reads tags. Nearly all of them do, and the
/// two mistakes aren't alike: an escape too many shows `&amp;` in a file's name, one too few lets a file's
/// name make links, load pictures or hide a part of itself.
void NotificationServer::takeCapabilities(const QDBusMessage &answer)
{
    std::optional<Error> error;
    if (notificationCall::isNobodyThere(answer) || notificationCall::isBusGone(answer)) {
        error = notificationCall::error(answer);
    } else {
        const bool isAnswered = answer.type() == QDBusMessage::ReplyMessage;
        const QStringList capabilities = answer.arguments().value(0).toStringList();
        const bool isPlain = isAnswered && !capabilities.contains(QStringLiteral("body-markup"));
        m_server = {
            .address = isUniqueName(answer.service()) ? answer.service() : service,
            .bodyFormat = isPlain ? BodyFormat::Plain : BodyFormat::Markup};
    }
    for (const ServerKnown &done : std::exchange(m_waitForServer, {})) {
        done(error);
    }
}

void NotificationServer::notify(const QString &identifier, Attempt attempt)
{
    if (!m_server) {
        // It went while others were told that it is there.
        send(identifier, attempt);
        return;
    }
    const QString address = m_server->address;
    QDBusMessage message = methodOf(address, QStringLiteral("Notify"));
    message.setArguments(notifyArguments(
        m_shown.numberToReplace(identifier, address), m_sending.value(identifier).current.request.content,
        m_server->bodyFormat));
    ++m_unansweredNotifications;
    notificationCall::send(
        m_bus, message, m_patience.notification, this,
        [this, identifier, address, attempt](const QDBusMessage &answer) {
            --m_unansweredNotifications;
            const bool hasServerLeft = isUniqueName(address) && notificationCall::isNobodyThere(answer);
            if (hasServerLeft && attempt == Attempt::First) {
                // The bus hasn't told us yet; another server may have the name.
                serverChanged(QString());
                send(identifier, Attempt::Second);
            } else {
                takeAnswer(identifier, answer);
            }
            takeEarlySignals();
        });
}

void NotificationServer::takeAnswer(const QString &identifier, const QDBusMessage &answer)
{
    std::optional<Error> error = notificationCall::error(answer);
    const ShownNotifications::Key key = notificationOf(answer);
    if (!error && key.number == 0) {
        error = Error{
            .domain = UserNotificationCenter::errorDomain,
            .code = UserNotificationCenter::Refused,
            .localizedDescription = QCoreApplication::translate(
                "UserNotificationCenter", "The notification server's answer can't be read")};
    }
    if (!error) {
        // The number may be another one than was to be replaced.
        m_shown.add(key, m_sending.value(identifier).current.request);
        if (m_server && !isUniqueName(m_server->address)) {
            m_server->address = key.server;
        }
    }
    finish(identifier, error);
}

void NotificationServer::finish(const QString &identifier, const std::optional<Error> &error)
{
    Sending sent = m_sending.take(identifier);
    if (sent.next) {
        m_sending.insert(identifier, {.current = std::move(*sent.next), .next = std::nullopt});
        send(identifier, Attempt::First);
    }
    sent.current.done(error);
}

void NotificationServer::takeEarlySignals()
{
    for (const QDBusMessage &signal : std::exchange(m_earlySignals, {})) {
        takeSignal(signal);
    }
}

void NotificationServer::takeSignal(const QDBusMessage &signal)
{
    const ShownNotifications::Key key = notificationOf(signal);
    if (m_unansweredNotifications > 0 && !m_shown.contains(key)) {
        m_earlySignals.push_back(signal);
    } else if (signal.member() == actionInvoked) {
        takeClick(key);
    } else if (signal.member() == notificationClosed) {
        m_shown.close(key);
    } else {
        m_shown.setActivationToken(key, signal.arguments().value(1).toString());
    }
}

void NotificationServer::takeClick(const ShownNotifications::Key &key)
{
    // Which action it was doesn't matter: there is only one, and some servers name it otherwise.
    const std::optional<ShownNotifications::Clicked> click = m_shown.take(key);
    if (!click) {
        return;
    }
    if (!click->activationToken.isEmpty() && QGuiApplication::platformName() != u"xcb") {
        // The toolkit hands this to the compositor with the next request to activate a window, and takes it
        // out again; on X11 nobody would.
        qputenv("XDG_ACTIVATION_TOKEN", click->activationToken.toUtf8());
    }
    Q_EMIT clicked(click->request);
}

void NotificationServer::askPermission(std::function<void(const Result<Permission> &)> done)
{
    notificationCall::send(
        m_bus, notificationCall::busMethod(QStringLiteral("NameHasOwner"), {service}),
        m_patience.notification, this, [this, done = std::move(done)](const QDBusMessage &answer) {
            if (const std::optional<Error> error = notificationCall::error(answer)) {
                done(std::unexpected(*error));
            } else if (answer.arguments().value(0).toBool()) {
                readSwitch(done);
            } else {
                askForActivatable(done);
            }
        });
}

void NotificationServer::askForActivatable(const std::function<void(const Result<Permission> &)> &done)
{
    notificationCall::send(
        m_bus, notificationCall::busMethod(QStringLiteral("ListActivatableNames")), m_patience.notification,
        this, [this, done](const QDBusMessage &answer) {
            if (const std::optional<Error> error = notificationCall::error(answer)) {
                done(std::unexpected(*error));
            } else if (answer.arguments().value(0).toStringList().contains(service)) {
                readSwitch(done);
            } else {
                done(Permission::Denied);
            }
        });
}

void NotificationServer::readSwitch(const std::function<void(const Result<Permission> &)> &done)
{
    runInBackground(this, readNotificationSwitch, [done](NotificationSwitch position) {
        done(position == NotificationSwitch::On ? Permission::Granted : Permission::Denied);
    });
}
