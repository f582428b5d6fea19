#include "openThroughPortal.h"

#include "FileDescriptor.h"
#include "print.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>
#include <QFile>
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

/// Empty, with the reason in `errno`, if the file can't be opened.
std::optional<QDBusMessage> question(const QUrl &url)
{
    if (!url.isLocalFile()) {
        QDBusMessage message = portalMethod(QStringLiteral("OpenURI"));
        message << QString() << QString::fromLatin1(url.toEncoded()) << QVariantMap();
        return message;
    }
    // The path alone, so that a pipe or a device isn't touched.
    const FileDescriptor file(::open(QFile::encodeName(url.toLocalFile()).constData(), O_PATH | O_CLOEXEC));
    if (!file.isValid()) {
        return std::nullopt;
    }
    QDBusMessage message = portalMethod(QStringLiteral("OpenFile"));
    message << QString() << QVariant::fromValue(QDBusUnixFileDescriptor(file.get())) << QVariantMap();
    return message;
}

} // namespace

bool openThroughPortal(const QUrl &url, const QString &reason)
{
    const std::optional<QDBusMessage> message = question(url);
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
