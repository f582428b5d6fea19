#include "PortalNotifications.h"

#include "notificationCall.h"
#include "notificationText.h"

#include <utility>

namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString objectPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString interfaceName = QStringLiteral("org.freedesktop.portal.Notification");

QVariantMap described(const UserNotificationContent &content)
{
    return {
        {QStringLiteral("title"), notificationText::title(content.title)},
        {QStringLiteral("body"), notificationText::body(content.body, BodyFormat::Plain)},
        {QStringLiteral("priority"), QStringLiteral("normal")},
        {QStringLiteral("default-action"), QStringLiteral("default")}};
}

} // namespace

PortalNotifications::PortalNotifications(
    QDBusConnection bus, std::chrono::milliseconds patience, QObject *parent)
    : NotificationService(parent),
      m_bus(std::move(bus)),
      m_patience(patience)
{
    // Without a sender's name, because the toolkit would wait for that name's owner here.
    m_bus.connect(
        QString(), objectPath, interfaceName, QStringLiteral("ActionInvoked"), this,
        SLOT(takeClick(QDBusMessage)));
}

void PortalNotifications::show(const UserNotificationRequest &request, Shown done)
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(service, objectPath, interfaceName, QStringLiteral("AddNotification"));
    message << request.identifier << described(request.content);
    notificationCall::send(
        m_bus, message, m_patience, this,
        [this, request, done = std::move(done)](const QDBusMessage &answer) {
            const std::optional<Error> error = notificationCall::error(answer);
            if (!error) {
                m_shown.insert(request.identifier, {.request = request, .portal = answer.service()});
            }
            done(error);
        });
}

void PortalNotifications::askPermission(std::function<void(const Result<Permission> &)> done)
{
    QDBusMessage message = QDBusMessage::createMethodCall(
        service, objectPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    message << interfaceName << QStringLiteral("version");
    notificationCall::send(
        m_bus, message, m_patience, this, [done = std::move(done)](const QDBusMessage &answer) {
            if (notificationCall::isBusGone(answer)) {
                done(std::unexpected(*notificationCall::error(answer)));
            } else {
                done(notificationCall::error(answer) ? Permission::Denied : Permission::Granted);
            }
        });
}

void PortalNotifications::takeClick(const QDBusMessage &signal)
{
    const QString identifier = signal.arguments().value(0).toString();
    if (m_shown.contains(identifier) && m_shown.value(identifier).portal == signal.service()) {
        const UserNotificationRequest request = m_shown.take(identifier).request;
        Q_EMIT clicked(request);
    }
}
