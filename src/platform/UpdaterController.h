#pragma once

#include <QObject>

/// "Check for Updates…": hands over to the desktop's software centre, which updates this program together
/// with everything else that is installed. Main thread; owned by the application delegate.
class UpdaterController final : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// Whether a software centre is installed. Looked up afresh at each call (well under a millisecond).
    [[nodiscard]] bool canCheckForUpdates() const;

    /// Starts the software centre of the running desktop, or else any that is installed, on its list of
    /// updates. It lives on without us. A start that fails prints one line.
    void checkForUpdates();
};
