#include "NotificationService.h"

#include "NotificationServer.h"
#include "PortalNotifications.h"
#include "isSandboxed.h"

std::unique_ptr<NotificationService> NotificationService::forSession()
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (isSandboxed()) {
        return std::make_unique<PortalNotifications>(bus);
    }
    return std::make_unique<NotificationServer>(bus);
}
