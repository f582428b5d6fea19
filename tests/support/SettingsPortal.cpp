#include "SettingsPortal.h"

#include <QDBusMessage>
#include <QDBusMetaType>

namespace {

const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString connectionName = QStringLiteral("settings-portal");

} // namespace

SettingsPortal::SettingsPortal()
    : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName))
{
    qDBusRegisterMetaType<Settings>();
    m_bus.registerObject(path, this, QDBusConnection::ExportScriptableInvokables);
    m_bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
}

SettingsPortal::~SettingsPortal()
{
    QDBusConnection::disconnectFromBus(connectionName);
}

void SettingsPortal::set(const QString &settingsNamespace, const QString &key, const QVariant &value)
{
    m_settings[settingsNamespace][key] = value;
    QDBusMessage message = QDBusMessage::createSignal(
        path, QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("SettingChanged"));
    message << settingsNamespace << key << QVariant::fromValue(QDBusVariant(value));
    m_bus.send(message);
}

void SettingsPortal::setAppearance(const QString &key, const QVariant &value)
{
    set(QStringLiteral("org.freedesktop.appearance"), key, value);
}

SettingsPortal::Settings SettingsPortal::ReadAll(const QStringList &namespaces)
{
    Settings chosen;
    for (const QString &name : namespaces) {
        if (m_settings.contains(name)) {
            chosen.insert(name, m_settings.value(name));
        }
    }
    return chosen;
}
