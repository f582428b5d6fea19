#include "ShownNotifications.h"

#include <algorithm>

void ShownNotifications::add(const Key &key, const UserNotificationRequest &request)
{
    std::erase_if(m_notifications, [&](const Notification &notification) {
        return notification.key == key ||
               (notification.request.identifier == request.identifier && !notification.clickableUntil);
    });
    m_notifications.push_back(
        {.key = key, .request = request, .activationToken = {}, .clickableUntil = std::nullopt});
}

uint ShownNotifications::numberToReplace(const QString &identifier, const QString &server) const
{
    const auto found = std::ranges::find_if(m_notifications, [&](const Notification &notification) {
        return notification.request.identifier == identifier && notification.key.server == server &&
               !notification.clickableUntil;
    });
    return found == m_notifications.end() ? 0 : found->key.number;
}

bool ShownNotifications::contains(const Key &key) const
{
    return std::ranges::any_of(m_notifications, [&](const Notification &notification) {
        return notification.key == key &&
               !(notification.clickableUntil && notification.clickableUntil->hasExpired());
    });
}

void ShownNotifications::close(const Key &key)
{
    forgetExpired();
    if (Notification *const notification = find(key); notification && !notification->clickableUntil) {
        notification->clickableUntil = QDeadlineTimer(m_grace);
    }
}

void ShownNotifications::setActivationToken(const Key &key, const QString &token)
{
    forgetExpired();
    if (Notification *const notification = find(key)) {
        notification->activationToken = token;
    }
}

std::optional<ShownNotifications::Clicked> ShownNotifications::take(const Key &key)
{
    forgetExpired();
    const Notification *const notification = find(key);
    if (!notification) {
        return std::nullopt;
    }
    Clicked clicked{.request = notification->request, .activationToken = notification->activationToken};
    std::erase_if(m_notifications, [&](const Notification &other) { return other.key == key; });
    return clicked;
}

void ShownNotifications::keepOnly(const QString &server)
{
    std::erase_if(
        m_notifications, [&](const Notification &notification) { return notification.key.server != server; });
}

void ShownNotifications::forgetExpired()
{
    std::erase_if(m_notifications, [](const Notification &notification) {
        return notification.clickableUntil && notification.clickableUntil->hasExpired();
    });
}

ShownNotifications::Notification *ShownNotifications::find(const Key &key)
{
    const auto found = std::ranges::find(m_notifications, key, &Notification::key);
    return found == m_notifications.end() ? nullptr : &*found;
}
