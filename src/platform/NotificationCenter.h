#pragma once

#include <QObject>
#include <QString>
#include <QVariantMap>

#include <functional>

/// What a NotificationCenter hands to its observers.
struct ProcessNotification {
    QString name;
    QVariantMap userInfo;
};

/// Tells whoever asked for it, inside this process, that something has happened. Nothing of it reaches the
/// user: user notifications are a different thing. Main thread; observers run before `post` returns, in the
/// order in which they were added.
class NotificationCenter final : public QObject {
    Q_OBJECT

public:
    /// The process' one centre.
    static NotificationCenter &defaultCenter();

    void post(const QString &name, const QVariantMap &userInfo = {});

    /// Calls `observer` for each notification of that name, until `context` is gone.
    void addObserver(
        const QString &name, QObject *context, std::function<void(const ProcessNotification &)> observer);

Q_SIGNALS:
    /// Every notification of every name.
    void posted(const ProcessNotification &notification);
};
