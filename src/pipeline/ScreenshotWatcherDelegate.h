#pragma once

#include <QString>

/// Receives what a ScreenshotWatcher finds.
class ScreenshotWatcherDelegate {
public:
    ScreenshotWatcherDelegate() = default;
    virtual ~ScreenshotWatcherDelegate() = default;
    ScreenshotWatcherDelegate(const ScreenshotWatcherDelegate &) = delete;
    ScreenshotWatcherDelegate &operator=(const ScreenshotWatcherDelegate &) = delete;
    ScreenshotWatcherDelegate(ScreenshotWatcherDelegate &&) = delete;
    ScreenshotWatcherDelegate &operator=(ScreenshotWatcherDelegate &&) = delete;

    /// A screenshot has just appeared at `path`, a full path. Called once for each, on the main thread.
    virtual void watcherDidDetectScreenshot(const QString &path) = 0;
};
