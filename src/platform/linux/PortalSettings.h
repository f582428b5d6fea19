#pragma once

#include <QMap>
#include <QObject>
#include <QVariantMap>

class QDBusPendingCallWatcher;

/// The desktop's appearance settings as `org.freedesktop.portal.Settings` tells them, kept up to date without
/// ever waiting for the portal. Without a bus or a portal there are none.
class PortalSettings final : public QObject {
    Q_OBJECT

public:
    explicit PortalSettings(QObject *parent = nullptr);

    /// An invalid variant if the portal doesn't know the key, or hasn't answered yet.
    [[nodiscard]] QVariant value(const QString &settingsNamespace, const QString &key) const;

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void readAll();

private:
    void takeAnswer(QDBusPendingCallWatcher *call);

    QMap<QString, QVariantMap> m_values;
    /// The call whose answer counts: an earlier one that is still under way is out of date.
    QDBusPendingCallWatcher *m_call = nullptr;
};
