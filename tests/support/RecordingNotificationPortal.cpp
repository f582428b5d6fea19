#include "RecordingNotificationPortal.h"

#include <QDBusMessage>

namespace {

const QString objectPath = QStringLiteral("/org/freedesktop/portal/desktop");

QDBusConnection newConnection(const QString &address)
{
    static int number = 0;
    return QDBusConnection::connectToBus(
        address, QStringLiteral("recording-notification-portal-%1").arg(++number));
}

} // namespace

RecordingNotificationPortal::RecordingNotificationPortal(const QString &busAddress)
    : m_bus(newConnection(busAddress))
{
    if (!m_bus.registerObject(
            objectPath, this,
            QDBusConnection::ExportScriptableInvokables | QDBusConnection::ExportAllProperties) ||
        !m_bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop"))) {
        qFatal("There is a portal on the bus of the test already, or no bus");
    }
}

RecordingNotificationPortal::~RecordingNotificationPortal()
{
    QDBusConnection::disconnectFromBus(m_bus.name());
}

void RecordingNotificationPortal::AddNotification(const QString &id, const QVariantMap &notification)
{
    m_notifications.append({id, notification});
}

void RecordingNotificationPortal::click(const QString &identifier)
{
    QDBusMessage signal = QDBusMessage::createSignal(
        objectPath, QStringLiteral("org.freedesktop.portal.Notification"), QStringLiteral("ActionInvoked"));
    signal << identifier << QStringLiteral("default") << QVariantList();
    m_bus.send(signal);
}
