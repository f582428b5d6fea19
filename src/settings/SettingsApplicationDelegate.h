#pragma once

#include "ObservableObject.h"

class FileAccessManager;
class ScreenshotManager;

/// What the settings need of the application delegate, which is above them. Main thread.
class SettingsApplicationDelegate : public ObservableObject {
    Q_OBJECT

public:
    using ObservableObject::ObservableObject;

    /// The deletion delay; its changes are announced.
    [[nodiscard]] virtual qint64 timeframeInMinutes() const = 0;

    /// Sets and stores the deletion delay.
    virtual void updateTimeframe(qint64 minutes) = 0;

    /// Null before the launch; a window that is shown then is a programming error.
    [[nodiscard]] virtual FileAccessManager *fileAccessManager() const = 0;
    [[nodiscard]] virtual ScreenshotManager *screenshotManager() const = 0;
};
