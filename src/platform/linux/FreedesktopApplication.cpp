#include "FreedesktopApplication.h"

#include <QDBusConnection>
#include <QDBusError>

namespace {

const QString tokenKey = QStringLiteral("activation-token");
const QString startupIdKey = QStringLiteral("desktop-startup-id");

} // namespace

QVariantMap FreedesktopApplication::platformData()
{
    QVariantMap data;
    const QString token = qEnvironmentVariable("XDG_ACTIVATION_TOKEN");
    // The X11 platform plugin may have taken it from the environment; launchers give both the same value.
    const QString startupId = qEnvironmentVariable("DESKTOP_STARTUP_ID", token);
    if (!token.isEmpty()) {
        data.insert(tokenKey, token);
    }
    if (!startupId.isEmpty()) {
        data.insert(startupIdKey, startupId);
    }
    return data;
}

void FreedesktopApplication::Activate(const QVariantMap &platform_data)
{
    // The toolkit hands this to the compositor with the next request to activate a window.
    const QString token = platform_data.value(tokenKey, platform_data.value(startupIdKey)).toString();
    if (!token.isEmpty()) {
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
    }
    Q_EMIT activated();
}

void FreedesktopApplication::Open(const QStringList &, const QVariantMap &platform_data)
{
    Activate(platform_data);
}

void FreedesktopApplication::ActivateAction(
    const QString &action_name, const QVariantList &, const QVariantMap &, const QDBusMessage &message)
{
    message.setDelayedReply(true);
    QDBusConnection::sessionBus().send(message.createErrorReply(
        QDBusError::InvalidArgs, QStringLiteral("There is no action named ") + action_name));
}
