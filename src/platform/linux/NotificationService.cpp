#include "NotificationService.h"

#include "NotificationServer.h"
#include "PortalNotifications.h"

#include <QFile>

std::unique_ptr<NotificationService> NotificationService::forSession()
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    // Flatpak's mark inside its sandboxes.
    if (QFile::exists(QStringLiteral("/.flatpak-info"))) {
        return std::make_unique<PortalNotifications>(bus);
    }
    return std::make_unique<NotificationServer>(bus);
}
