#include "StatusNotifierWatcherClient.h"

#include "print.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

#include <utility>

namespace {

const QString watcherService = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");
const QString watcherInterface = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString busService = QStringLiteral("org.freedesktop.DBus");
const QString busPath = QStringLiteral("/org/freedesktop/DBus");
const QString busInterface = QStringLiteral("org.freedesktop.DBus");

/// `done` gets the finished reply, unless `context` is gone by then.
template <typename... Types, typename Done>
void call(
    const QDBusConnection &bus, QDBusMessage message, const QVariantList &arguments, QObject *context,
    Done done)
{
    message.setArguments(arguments);
    message.setAutoStartService(false);
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(message), context);
    QObject::connect(
        watcher, &QDBusPendingCallWatcher::finished, context,
        [done = std::move(done)](QDBusPendingCallWatcher *finished) {
            finished->deleteLater();
            done(QDBusPendingReply<Types...>(*finished));
        });
}

QDBusMessage busMethod(const QString &method)
{
    return QDBusMessage::createMethodCall(busService, busPath, busInterface, method);
}

} // namespace

StatusNotifierWatcherClient::StatusNotifierWatcherClient(QDBusConnection bus, QObject *parent)
    : QObject(parent),
      m_bus(std::move(bus))
{
    const auto *owners =
        new QDBusServiceWatcher(watcherService, m_bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(
        owners, &QDBusServiceWatcher::serviceOwnerChanged, this,
        [this](const QString &, const QString &, const QString &owner) { setWatcher(owner); });
    // Without a sender's name, because the toolkit would wait for that name's owner here.
    for (const QString &signal :
         {QStringLiteral("StatusNotifierHostRegistered"), QStringLiteral("StatusNotifierHostUnregistered")}) {
        m_bus.connect(QString(), watcherPath, watcherInterface, signal, this, SLOT(askForHost()));
    }
    m_bus.connect(
        QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
        QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
        SLOT(busDisconnected()));
    askForWatcher();
}

void StatusNotifierWatcherClient::askForWatcher()
{
    call<QString>(
        m_bus, busMethod(QStringLiteral("GetNameOwner")), {watcherService}, this,
        [this](const QDBusPendingReply<QString> &reply) {
            // A watcher that came while the question was under way has announced itself.
            if (m_watcher.isEmpty()) {
                setWatcher(reply.isValid() ? reply.value() : QString());
            }
        });
}

void StatusNotifierWatcherClient::setWatcher(const QString &owner)
{
    if (owner == m_watcher && m_host != Host::Unknown) {
        return;
    }
    m_watcher = owner;
    m_watcherProcess.reset();
    if (m_watcher.isEmpty()) {
        setHost(Host::Absent);
        return;
    }
    registerItem();
    askForWatcherProcess();
    askForHost();
}

void StatusNotifierWatcherClient::registerItem()
{
    const QDBusMessage message = QDBusMessage::createMethodCall(
        m_watcher, watcherPath, watcherInterface, QStringLiteral("RegisterStatusNotifierItem"));
    call(
        m_bus, message, {m_bus.baseService()}, this,
        [this, asked = m_watcher](const QDBusPendingReply<> &reply) {
            if (reply.isError() && asked == m_watcher) {
                print(QStringLiteral("The panel refused the status item: ") + reply.error().message());
            }
        });
}

void StatusNotifierWatcherClient::askForWatcherProcess()
{
    call<uint>(
        m_bus, busMethod(QStringLiteral("GetConnectionUnixProcessID")), {m_watcher}, this,
        [this, asked = m_watcher](const QDBusPendingReply<uint> &reply) {
            if (reply.isValid() && asked == m_watcher) {
                m_watcherProcess = reply.value();
            }
        });
}

void StatusNotifierWatcherClient::askForHost()
{
    if (m_watcher.isEmpty()) {
        return;
    }
    const QDBusMessage message = QDBusMessage::createMethodCall(
        m_watcher, watcherPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    call<QDBusVariant>(
        m_bus, message, {watcherInterface, QStringLiteral("IsStatusNotifierHostRegistered")}, this,
        [this, asked = m_watcher](const QDBusPendingReply<QDBusVariant> &reply) {
            if (asked == m_watcher) {
                const bool isThere = reply.isValid() && reply.value().variant().toBool();
                setHost(isThere ? Host::Present : Host::Absent);
            }
        });
}

void StatusNotifierWatcherClient::busDisconnected()
{
    print(QStringLiteral("The session bus went away"));
    setWatcher(QString());
}

void StatusNotifierWatcherClient::setHost(Host host)
{
    if (m_host != host) {
        m_host = host;
        Q_EMIT hostChanged();
    }
}
