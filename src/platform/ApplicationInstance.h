#pragma once

#include <QObject>

#include <functional>
#include <memory>

class QDBusPendingCallWatcher;
class RuntimeFolderGuard;

/// Keeps the program to one instance for a session: the first one owns the session bus name
/// `org.deskbroom.Deskbroom` and answers `org.freedesktop.Application` there; every later start activates the
/// first and is to end. Without a session bus, a lock and a socket in XDG_RUNTIME_DIR do the same. Made in
/// `main` and kept to the end, on the main thread. A bus that goes away later changes nothing.
class ApplicationInstance final : public QObject {
    Q_OBJECT

public:
    enum class Role {
        /// This is the session's instance. Also where nothing can tell: better two than none.
        First,
        /// Another one was there and has been told; this process has nothing left to do.
        HandedOver,
    };

    explicit ApplicationInstance(QObject *parent = nullptr);
    ~ApplicationInstance() override;
    Q_DISABLE_COPY_MOVE(ApplicationInstance)

    /// Finds out which this is and calls `decided`, once, on a later turn of the event loop. Waits for
    /// nobody; a first instance that hangs is given ten seconds to answer. Called once.
    void claim(std::function<void(Role)> decided);

Q_SIGNALS:
    /// Somebody has started the program again, or the desktop asks it to show itself.
    void activated();

private:
    void requestName();
    void takeNameAnswer(QDBusPendingCallWatcher *call);
    void handOver();
    void takeHandOverAnswer(QDBusPendingCallWatcher *call);
    void claimInRuntimeFolder();
    void decide(Role role);

    std::function<void(Role)> m_decided;
    std::unique_ptr<RuntimeFolderGuard> m_guard;
    int m_attempts = 0;
};
