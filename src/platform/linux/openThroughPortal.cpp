#include "openThroughPortal.h"

#include "FileDescriptor.h"
#include "FileStatus.h"
#include "print.h"
#include "startupId.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>
#include <QVariantMap>

#include <cerrno>
#include <optional>

#include <fcntl.h>

namespace {

QDBusMessage portalMethod(const QString &method)
{
    return QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.portal.Desktop"), QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.OpenURI"), method);
}

/// Portals leave out what they don't know yet.
QVariantMap options()
{
    const QString id = startupId();
    return id.isEmpty() ? QVariantMap() : QVariantMap{{QStringLiteral("activation_token"), id}};
}

/// Empty, with the reason in `errno`, if the file can't be opened.
std::optional<QDBusMessage> question(const QUrl &url, PortalRequest request)
{
    if (!url.isLocalFile()) {
        QDBusMessage message = portalMethod(QStringLiteral("OpenURI"));
        message << QString() << QString::fromLatin1(url.toEncoded()) << options();
        return message;
    }
    // The path alone, so that a pipe or a device isn't touched.
    const FileDescriptor file(::open(nativePath(url.toLocalFile()).constData(), O_PATH | O_CLOEXEC));
    if (!file.isValid()) {
        return std::nullopt;
    }
    QDBusMessage message = portalMethod(
        request == PortalRequest::Open ? QStringLiteral("OpenFile") : QStringLiteral("OpenDirectory"));
    message << QString() << QVariant::fromValue(QDBusUnixFileDescriptor(file.get())) << options();
    return message;
}

} // namespace

bool openThroughPortal(const QUrl &url, PortalRequest request, const QString &reason)
{
    const std::optional<QDBusMessage> message = question(url, request);
    if (!message) {
        print(reason + qt_error_string(errno));
        return false;
    }
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        print(reason + QStringLiteral("there is no session bus"));
        return false;
    }
    auto *const watcher = new QDBusPendingCallWatcher(bus.asyncCall(*message), QCoreApplication::instance());
    QObject::connect(
        watcher, &QDBusPendingCallWatcher::finished, watcher, [reason](QDBusPendingCallWatcher *finished) {
            finished->deleteLater();
            if (finished->isError()) {
                print(reason + finished->error().message());
            }
        });
    return true;
}
