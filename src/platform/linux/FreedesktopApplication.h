#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusMessage>
#include <QVariantMap>

/// `org.freedesktop.Application` of the Desktop Entry Specification ("D-Bus Activation"): how the desktop,
/// and a second start of the program, reach the running one. Exported with the object that it is given to.
class FreedesktopApplication final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit FreedesktopApplication(QObject *exported) : QDBusAbstractAdaptor(exported) {}

    static inline const QString busName = QStringLiteral("org.deskbroom.Deskbroom");
    static inline const QString objectPath = QStringLiteral("/org/deskbroom/Deskbroom");
    static inline const QString interfaceName = QStringLiteral("org.freedesktop.Application");

    /// What a start hands on about itself, so that the desktop lets the running program come to the front.
    [[nodiscard]] static QVariantMap platformData();

public Q_SLOTS:
    // Methods and parameters are named as introspection is to show them.
    void Activate(const QVariantMap &platform_data);
    /// The program opens no files; asked to, it shows itself.
    void Open(const QStringList &uris, const QVariantMap &platform_data);
    /// The desktop entry has no actions, so every one is refused.
    void ActivateAction(
        const QString &action_name, const QVariantList &parameter, const QVariantMap &platform_data,
        const QDBusMessage &message);

Q_SIGNALS:
    void activated();
};
