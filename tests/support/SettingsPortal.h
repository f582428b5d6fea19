#pragma once

#include <QDBusConnection>
#include <QMap>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

/// A desktop portal for tests that says how the user wants programs to look, on a connection of its own to
/// the session bus, which has no other portal at that time.
class SettingsPortal final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    /// By namespace and key.
    using Settings = QMap<QString, QVariantMap>;

    /// Owns `org.freedesktop.portal.Desktop` from now until it is destroyed.
    SettingsPortal();
    ~SettingsPortal() override;
    Q_DISABLE_COPY_MOVE(SettingsPortal)

    /// Sets and announces it.
    void set(const QString &settingsNamespace, const QString &key, const QVariant &value);

    /// The same in `org.freedesktop.appearance`.
    void setAppearance(const QString &key, const QVariant &value);

    Q_SCRIPTABLE Settings ReadAll(const QStringList &namespaces);

private:
    QDBusConnection m_bus;
    Settings m_settings;
};
