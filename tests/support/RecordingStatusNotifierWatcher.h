#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QObject>
#include <QPoint>
#include <QStringList>
#include <QVariant>

/// A panel for tests: the watcher that status items register with, and the host that shows them, on a
/// connection of its own to the session bus. It records who registers, and can click and ask as a panel does.
/// While it waits for an answer the event loop runs, since the item usually lives in the same process.
class RecordingStatusNotifierWatcher : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ registeredItems)
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ isHostRegistered)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion)

public:
    enum class Host { Here, Missing };

    /// Owns `org.kde.StatusNotifierWatcher` from now until it is destroyed.
    explicit RecordingStatusNotifierWatcher(Host host = Host::Here);
    /// The same on a bus of the caller's choice; closes the connection at its end.
    explicit RecordingStatusNotifierWatcher(QDBusConnection bus, Host host = Host::Here);
    ~RecordingStatusNotifierWatcher() override;
    Q_DISABLE_COPY_MOVE(RecordingStatusNotifierWatcher)

    void setHost(Host host);

    /// The unique bus names of the items, in the order of their registration.
    [[nodiscard]] QStringList registeredItems() const { return m_items; }

    [[nodiscard]] bool isHostRegistered() const { return m_host == Host::Here; }

    [[nodiscard]] int protocolVersion() const { return 0; }

    /// A property of the item that registered last; invalid after an error.
    [[nodiscard]] QVariant itemProperty(const QString &name) const;

    /// A click as a panel reports it.
    void activate(QPoint place) const;

    /// The answer to a call to the item that registered last.
    [[nodiscard]] QDBusMessage callItem(const QString &method, const QVariantList &arguments) const;

    /// The answer to a call to that item's menu.
    [[nodiscard]] QDBusMessage callMenu(const QString &method, const QVariantList &arguments) const;

    /// The names of the signals of items and menus that have arrived.
    [[nodiscard]] QStringList receivedSignals() const { return m_receivedSignals; }

    Q_SCRIPTABLE void RegisterStatusNotifierItem(const QString &service);

Q_SIGNALS:
    Q_SCRIPTABLE void StatusNotifierItemRegistered(const QString &service);
    Q_SCRIPTABLE void StatusNotifierHostRegistered();
    Q_SCRIPTABLE void StatusNotifierHostUnregistered();

private Q_SLOTS:
    void recordSignal(const QDBusMessage &signal);

private:
    [[nodiscard]] QDBusMessage call(QDBusMessage message, const QVariantList &arguments) const;

    QDBusConnection m_bus;
    Host m_host;
    QStringList m_items;
    QStringList m_receivedSignals;
};
