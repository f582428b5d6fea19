#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>

#include <optional>

/// Registers this connection's item with the desktop's `org.kde.StatusNotifierWatcher`, again with each new
/// watcher, and knows whether a panel shows the items. Works by the bus's signals alone: nothing is polled,
/// nothing waited for, and no service is started by asking.
///
/// A registration that the watcher refuses and a bus that goes away print one line. GUI thread; owned by the
/// status item, which must be on the bus before this is made.
class StatusNotifierWatcherClient : public QObject {
    Q_OBJECT

public:
    enum class Host { Unknown, Absent, Present };

    explicit StatusNotifierWatcherClient(QDBusConnection bus, QObject *parent = nullptr);

    /// Unknown until the first answer.
    [[nodiscard]] Host host() const { return m_host; }

    /// The watcher's process, which most panels run within the one that shows the items.
    [[nodiscard]] std::optional<uint> watcherProcess() const { return m_watcherProcess; }

Q_SIGNALS:
    void hostChanged();

private Q_SLOTS:
    void askForHost();
    void busDisconnected();

private:
    void setWatcher(const QString &owner);
    void setHost(Host host);
    void askForWatcher();
    void askForWatcherProcess();
    void registerItem();

    QDBusConnection m_bus;
    /// The watcher's unique name; empty while there is none.
    QString m_watcher;
    std::optional<uint> m_watcherProcess;
    Host m_host = Host::Unknown;
};
