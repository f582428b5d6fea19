#pragma once

#include "Error.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>

#include <chrono>
#include <optional>
#include <utility>

/// Calls over the bus as the notification services make them: sent at once, never waited for.
namespace notificationCall {

[[nodiscard]] QDBusError noBus();

/// `done` gets the answer, which is an error when none came in time, unless `context` is gone by then.
template <typename Done>
void send(
    const QDBusConnection &bus, const QDBusMessage &message, std::chrono::milliseconds timeout,
    QObject *context, Done done)
{
    // The toolkit's call over a bus that there never was would have no answer at all.
    const QDBusPendingCall call = bus.isConnected()
                                      ? bus.asyncCall(message, static_cast<int>(timeout.count()))
                                      : QDBusPendingCall::fromError(noBus());
    auto *watcher = new QDBusPendingCallWatcher(call, context);
    QObject::connect(
        watcher, &QDBusPendingCallWatcher::finished, context,
        [done = std::move(done)](QDBusPendingCallWatcher *finished) {
            finished->deleteLater();
            done(finished->reply());
        });
}

[[nodiscard]] QDBusMessage busMethod(const QString &method, const QVariantList &arguments = {});

/// Nobody has the name that was called, and nobody could be started for it.
[[nodiscard]] bool isNobodyThere(const QDBusMessage &answer);

/// The connection was closed, or never was.
[[nodiscard]] bool isBusGone(const QDBusMessage &answer);

/// Empty for an answer that isn't an error; else in UserNotificationCenter's domain, with the bus's words.
[[nodiscard]] std::optional<Error> error(const QDBusMessage &answer);

} // namespace notificationCall
