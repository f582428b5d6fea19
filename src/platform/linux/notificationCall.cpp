#include "notificationCall.h"

#include "UserNotificationCenter.h"

#include <QCoreApplication>

namespace {

UserNotificationCenter::ErrorCode codeFor(const QDBusMessage &answer)
{
    if (notificationCall::isNobodyThere(answer) || notificationCall::isBusGone(answer)) {
        return UserNotificationCenter::NotAllowed;
    }
    switch (QDBusError(answer).type()) {
    case QDBusError::NoReply:
    case QDBusError::Timeout:
    case QDBusError::TimedOut:
        return UserNotificationCenter::NoAnswer;
    default:
        return UserNotificationCenter::Refused;
    }
}

} // namespace

QDBusError notificationCall::noBus()
{
    return {
        QDBusError::Disconnected,
        QCoreApplication::translate("UserNotificationCenter", "The session has no message bus")};
}

QDBusMessage notificationCall::busMethod(const QString &method, const QVariantList &arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), method);
    message.setArguments(arguments);
    return message;
}

bool notificationCall::isNobodyThere(const QDBusMessage &answer)
{
    const QString name = answer.errorName();
    return answer.type() == QDBusMessage::ErrorMessage &&
           (name == QLatin1String("org.freedesktop.DBus.Error.ServiceUnknown") ||
            name == QLatin1String("org.freedesktop.DBus.Error.NameHasNoOwner") ||
            name.startsWith(QLatin1String("org.freedesktop.DBus.Error.Spawn.")));
}

bool notificationCall::isBusGone(const QDBusMessage &answer)
{
    return answer.type() == QDBusMessage::ErrorMessage &&
           QDBusError(answer).type() == QDBusError::Disconnected;
}

std::optional<Error> notificationCall::error(const QDBusMessage &answer)
{
    if (answer.type() != QDBusMessage::ErrorMessage) {
        return std::nullopt;
    }
    const QString words = answer.errorMessage();
    return Error{
        .domain = UserNotificationCenter::errorDomain,
        .code = codeFor(answer),
        .localizedDescription = words.isEmpty() ? answer.errorName() : words};
}
