#include "NotificationCenter.h"

#include <utility>

NotificationCenter &NotificationCenter::defaultCenter()
{
    static NotificationCenter center;
    return center;
}

void NotificationCenter::post(const QString &name, const QVariantMap &userInfo)
{
    Q_EMIT posted({.name = name, .userInfo = userInfo});
}

void NotificationCenter::addObserver(
    const QString &name, QObject *context, std::function<void(const ProcessNotification &)> observer)
{
    connect(
        this, &NotificationCenter::posted, context,
        [name, observer = std::move(observer)](const ProcessNotification &notification) {
            if (notification.name == name) {
                observer(notification);
            }
        });
}
