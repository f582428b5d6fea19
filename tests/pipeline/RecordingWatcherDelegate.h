#pragma once

#include "ScreenshotWatcherDelegate.h"

#include <QObject>
#include <QStringList>

/// Keeps what a watcher reports.
class RecordingWatcherDelegate final : public QObject, public ScreenshotWatcherDelegate {
public:
    void watcherDidDetectScreenshot(const QString &path) override { reports.append(path); }

    QStringList reports;
};
