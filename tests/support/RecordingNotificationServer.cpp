#include "RecordingNotificationServer.h"

#include <utility>

namespace {

const QString service = QStringLiteral("org.freedesktop.Notifications");
const QString objectPath = QStringLiteral("/org/freedesktop/Notifications");

QDBusConnection newConnection(const QString &address)
{
    static int number = 0;
    return QDBusConnection::connectToBus(
        address, QStringLiteral("recording-notification-server-%1").arg(++number));
}

} // namespace

RecordingNotificationServer::RecordingNotificationServer(const QString &busAddress, QStringList capabilities)
    : m_bus(newConnection(busAddress)),
      m_capabilities(std::move(capabilities))
{
    if (!m_bus.registerObject(objectPath, this, QDBusConnection::ExportScriptableInvokables) ||
        !m_bus.registerService(service)) {
        qFatal("There is a notification server on the bus of the test already, or no bus");
    }
}

RecordingNotificationServer::~RecordingNotificationServer()
{
    QDBusConnection::disconnectFromBus(m_bus.name());
}

QStringList RecordingNotificationServer::GetCapabilities()
{
    ++m_capabilitiesQuestions;
    answerAs(m_capabilitiesAnswer);
    return m_capabilities;
}

uint RecordingNotificationServer::Notify(
    const QString &app_name, uint replaces_id, const QString &app_icon, const QString &summary,
    const QString &body, const QStringList &actions, const QVariantMap &hints, int expire_timeout)
{
    const uint number = m_shown.contains(replaces_id) ? replaces_id : ++m_lastNumber;
    const Notification notification{
        .application = app_name,
        .replacedNumber = replaces_id,
        .icon = app_icon,
        .title = summary,
        .body = body,
        .actions = actions,
        .hints = hints,
        .expireTimeout = expire_timeout,
        .number = number};
    m_notifications.append(notification);
    if (m_answer == Answer::AtOnce || m_answer == Answer::WhenReleased) {
        m_shown.insert(number, notification);
    }
    if (m_answer == Answer::WhenReleased) {
        m_held.append(message().createReply(number));
    }
    answerAs(m_answer);
    return number;
}

void RecordingNotificationServer::answerAs(Answer answer)
{
    if (answer == Answer::AtOnce) {
        return;
    }
    setDelayedReply(true);
    if (answer == Answer::Error) {
        m_bus.send(message().createErrorReply(
            QStringLiteral("org.freedesktop.Notifications.Error.ExcessNotificationGeneration"),
            QStringLiteral("Too many notifications")));
    } else if (answer == Answer::Nonsense) {
        m_bus.send(message().createReply(QStringLiteral("a text where a number belongs")));
    }
}

void RecordingNotificationServer::release()
{
    for (const QDBusMessage &reply : std::exchange(m_held, {})) {
        m_bus.send(reply);
    }
}

void RecordingNotificationServer::click(uint number, const QString &action)
{
    m_shown.remove(number);
    sendSignal(QStringLiteral("ActionInvoked"), {number, action});
}

void RecordingNotificationServer::close(uint number)
{
    constexpr uint dismissed = 2;
    m_shown.remove(number);
    sendSignal(QStringLiteral("NotificationClosed"), {number, dismissed});
}

void RecordingNotificationServer::giveActivationToken(uint number, const QString &token)
{
    sendSignal(QStringLiteral("ActivationToken"), {number, token});
}

void RecordingNotificationServer::sendSignal(const QString &name, const QVariantList &arguments)
{
    QDBusMessage signal = QDBusMessage::createSignal(objectPath, service, name);
    signal.setArguments(arguments);
    m_bus.send(signal);
}
