#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// A message bus of a test's own on which nothing is started by being called: whatever is installed on the
/// machine stays out. Lives as long as the object.
///
/// `brokenServices` are names that it would start somebody for, if the start didn't fail each time.
class PrivateBus final {
public:
    explicit PrivateBus(const QStringList &brokenServices = {});
    ~PrivateBus();
    Q_DISABLE_COPY_MOVE(PrivateBus)

    /// For DBUS_SESSION_BUS_ADDRESS.
    [[nodiscard]] QString address() const { return m_address; }

    /// The bus goes away without a word, as when it crashes.
    void kill();

private:
    QTemporaryDir m_folder;
    QProcess m_daemon;
    QString m_address;
};
