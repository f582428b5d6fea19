#include "RecordingStatusNotifierWatcher.h"

#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QSignalSpy>

#include <utility>

namespace {

const QString watcherService = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");
const QString itemPath = QStringLiteral("/StatusNotifierItem");
const QString menuInterface = QStringLiteral("com.canonical.dbusmenu");
const QString itemInterface = QStringLiteral("org.kde.StatusNotifierItem");

QDBusConnection newConnection()
{
    static int number = 0;
    return QDBusConnection::connectToBus(
        QDBusConnection::SessionBus, QStringLiteral("recording-watcher-%1").arg(++number));
}

} // namespace

RecordingStatusNotifierWatcher::RecordingStatusNotifierWatcher(Host host)
    : RecordingStatusNotifierWatcher(newConnection(), host)
{
}

RecordingStatusNotifierWatcher::RecordingStatusNotifierWatcher(QDBusConnection bus, Host host)
    : m_bus(std::move(bus)),
      m_host(host)
{
    if (!m_bus.registerObject(
            watcherPath, this,
            QDBusConnection::ExportScriptableInvokables | QDBusConnection::ExportScriptableSignals |
                QDBusConnection::ExportAllProperties) ||
        !m_bus.registerService(watcherService)) {
        qFatal("There is a panel on the bus of the test already, or no bus");
    }
    for (const QString &interface : {itemInterface, menuInterface}) {
        m_bus.connect(QString(), QString(), interface, QString(), this, SLOT(recordSignal(QDBusMessage)));
    }
}

RecordingStatusNotifierWatcher::~RecordingStatusNotifierWatcher()
{
    QDBusConnection::disconnectFromBus(m_bus.name());
}

void RecordingStatusNotifierWatcher::setHost(Host host)
{
    m_host = host;
    if (m_host == Host::Here) {
        Q_EMIT StatusNotifierHostRegistered();
    } else {
        Q_EMIT StatusNotifierHostUnregistered();
    }
}

void RecordingStatusNotifierWatcher::RegisterStatusNotifierItem(const QString &service)
{
    Q_ASSERT(service == message().service());
    m_items.append(service);
    Q_EMIT StatusNotifierItemRegistered(service);
}

QVariant RecordingStatusNotifierWatcher::itemProperty(const QString &name) const
{
    const QDBusMessage get = QDBusMessage::createMethodCall(
        m_items.value(m_items.size() - 1), itemPath, QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("Get"));
    const QDBusMessage reply = call(get, {itemInterface, name});
    return reply.type() == QDBusMessage::ReplyMessage
               ? reply.arguments().constFirst().value<QDBusVariant>().variant()
               : QVariant();
}

void RecordingStatusNotifierWatcher::activate(QPoint place) const
{
    QDBusMessage message = QDBusMessage::createMethodCall(
        m_items.value(m_items.size() - 1), itemPath, itemInterface, QStringLiteral("Activate"));
    message.setArguments({place.x(), place.y()});
    m_bus.send(message);
}

void RecordingStatusNotifierWatcher::recordSignal(const QDBusMessage &signal)
{
    m_receivedSignals.append(signal.member());
}

QDBusMessage
RecordingStatusNotifierWatcher::callItem(const QString &method, const QVariantList &arguments) const
{
    return call(
        QDBusMessage::createMethodCall(m_items.value(m_items.size() - 1), itemPath, itemInterface, method),
        arguments);
}

QDBusMessage
RecordingStatusNotifierWatcher::callMenu(const QString &method, const QVariantList &arguments) const
{
    const QString menuPath = itemProperty(QStringLiteral("Menu")).value<QDBusObjectPath>().path();
    return call(
        QDBusMessage::createMethodCall(m_items.value(m_items.size() - 1), menuPath, menuInterface, method),
        arguments);
}

QDBusMessage RecordingStatusNotifierWatcher::call(QDBusMessage message, const QVariantList &arguments) const
{
    message.setArguments(arguments);
    const QDBusPendingCallWatcher watcher(m_bus.asyncCall(message));
    QSignalSpy finished(&watcher, &QDBusPendingCallWatcher::finished);
    if (!watcher.isFinished()) {
        finished.wait();
    }
    return watcher.reply();
}
