#include "startupId.h"

#include "X11Server.h"

#include <QCoreApplication>

QString startupId()
{
    const bool isShownByX11 = x11::connection() != nullptr && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    const std::optional<xcb_timestamp_t> now = isShownByX11 ? x11::serverTime() : std::nullopt;
    if (!now) {
        return {};
    }
    static int count = 0;
    return QStringLiteral("deskbroom-%1-%2_TIME%3")
        .arg(QString::number(QCoreApplication::applicationPid()), QString::number(++count))
        .arg(*now);
}
