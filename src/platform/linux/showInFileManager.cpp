#include "showInFileManager.h"

#include "notificationCall.h"
#include "startupId.h"

#include <QCoreApplication>

#include <utility>

namespace {

/// A file manager that is started by the call may need some seconds. Asked for in vain, it still must not
/// answer to what the user has long forgotten.
constexpr std::chrono::seconds patience(10);

QStringList encoded(const QList<QUrl> &urls)
{
    QStringList uris;
    for (const QUrl &url : urls) {
        uris.append(QString::fromLatin1(url.toEncoded()));
    }
    return uris;
}

} // namespace

void showInFileManager(const QList<QUrl> &files, std::function<void()> otherwise)
{
    QDBusMessage message = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    message << encoded(files) << startupId();
    notificationCall::send(
        QDBusConnection::sessionBus(), message, patience, QCoreApplication::instance(),
        [otherwise = std::move(otherwise)](const QDBusMessage &answer) {
            if (answer.type() == QDBusMessage::ErrorMessage) {
                otherwise();
            }
        });
}
