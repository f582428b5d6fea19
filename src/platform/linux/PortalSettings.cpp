#include "PortalSettings.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>

namespace {

using Settings = QMap<QString, QVariantMap>;

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString objectPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");

} // namespace

PortalSettings::PortalSettings(QObject *parent) : QObject(parent)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return;
    }
    qDBusRegisterMetaType<Settings>();
    // A change is only a hint to read again, so it doesn't matter who sent it. Naming the sender here would
    // make the toolkit ask the bus for its owner, and wait.
    bus.connect(
        QString(), objectPath, settingsInterface, QStringLiteral("SettingChanged"), this, SLOT(readAll()));
    auto *const watcher =
        new QDBusServiceWatcher(service, bus, QDBusServiceWatcher::WatchForRegistration, this);
    connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, &PortalSettings::readAll);
    readAll();
}

QVariant PortalSettings::value(const QString &settingsNamespace, const QString &key) const
{
    return m_values.value(settingsNamespace).value(key);
}

void PortalSettings::readAll()
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(service, objectPath, settingsInterface, QStringLiteral("ReadAll"));
    message << QStringList{
        QStringLiteral("org.freedesktop.appearance"), QStringLiteral("org.gnome.desktop.interface")};
    m_call = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(message), this);
    connect(m_call, &QDBusPendingCallWatcher::finished, this, &PortalSettings::takeAnswer);
}

void PortalSettings::takeAnswer(QDBusPendingCallWatcher *call)
{
    call->deleteLater();
    if (call != m_call) {
        return;
    }
    m_call = nullptr;
    const QDBusPendingReply<Settings> reply = *call;
    if (reply.isValid()) {
        m_values = reply.value();
        Q_EMIT changed();
    }
}
