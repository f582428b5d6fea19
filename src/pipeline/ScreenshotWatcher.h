#pragma once

#include "ScreenshotScan.h"
#include "ScreenshotWatcherDelegate.h"
#include "WeakInterface.h"

#include <QObject>
#include <QSet>
#include <QTimer>
#include <QUrl>

#include <chrono>
#include <memory>
#include <optional>
#include <utility>

class FileManager;

/// Finds screenshots that have just appeared in the watched folders and reports each one to its delegate.
///
/// Every 2.0 seconds it lists the folders on a background thread, keeps the names that `isScreenshot`
/// accepts and compares the paths with those of the scan before. A path that is new and whose file is less
/// than 10 seconds old is reported once. What is there when watching begins is never reported.
///
/// Lives on the main thread, which owns all its fields; a scan gets values and hands values back. Scans may
/// overlap; the result of one that began before the last applied one is dropped. Destroying the watcher ends
/// the watching: a scan under way reports to nobody.
class ScreenshotWatcher final : public QObject {
    Q_OBJECT

public:
    /// Starts watching at once: seeds itself, then starts the timer.
    explicit ScreenshotWatcher(QObject *parent = nullptr);
    ~ScreenshotWatcher() override;
    Q_DISABLE_COPY_MOVE(ScreenshotWatcher)

    void setDelegate(WeakInterface<ScreenshotWatcherDelegate> delegate) { m_delegate = std::move(delegate); }

    [[nodiscard]] const QSet<QString> &lastKnownScreenshots() const { return m_lastKnownScreenshots; }

    /// Lists the watched folders, decided afresh by the preferences: the bookmarked folder alone, else
    /// Desktop, Pictures and Downloads. `previous` spares listing the folders that haven't changed since.
    /// Failures are printed. Any thread; may block on a slow file system.
    [[nodiscard]] static ScreenshotScan
    collectScreenshotPaths(const FileManager &fileManager, const ScreenshotScan &previous);

    /// The screenshots of one folder, or none if it can't be listed. `previous` is what the last scan knew
    /// of it, if it did. Any thread.
    [[nodiscard]] static std::optional<FolderScan>
    scanDirectory(const FileManager &fileManager, const QUrl &url, const FolderScan *previous);

    /// What a tick compares with: the last scan that was applied.
    struct Baseline {
        ScreenshotScan scan;
        QSet<QString> known;
        /// False while a file is left out because it is still being written: the folder's times needn't move
        /// when it is done, so the next tick compares again.
        bool isSettled = true;
    };

    /// The baseline that a tick would put in its place.
    struct Outcome {
        Baseline baseline;
        /// The paths that weren't known when the tick began.
        QStringList added;
    };

    /// A tick's work away from the main thread: nothing when all is as it was. Any thread; may block on a
    /// slow file system.
    [[nodiscard]] static std::optional<Outcome>
    findNewScreenshots(const FileManager &fileManager, const Baseline &previous);

    static constexpr std::chrono::milliseconds pollInterval{2000};
    /// A screenshot that is older when it is first seen was copied, moved or restored, not taken.
    static constexpr qint64 freshnessMilliseconds = 10'000;
    /// How long a file that is still being written is left out, from its creation.
    static constexpr qint64 writingGraceMilliseconds = 6'000;

Q_SIGNALS:
    /// A scan's result has been applied; the first time, the watcher has seeded itself.
    void didApplyScan();

private:
    void startWatching();
    void startTimer();
    void checkForNewScreenshots();
    void apply(quint64 sequence, Outcome outcome);
    [[nodiscard]] bool isFresh(const QString &path, const QDateTime &cutoff) const;

    WeakInterface<ScreenshotWatcherDelegate> m_delegate;
    const FileManager *m_fileManager;
    std::unique_ptr<QTimer> m_timer;
    QSet<QString> m_lastKnownScreenshots;

    ScreenshotScan m_lastScan;
    bool m_isSettled = true;
    quint64 m_startedScans = 0;
    quint64 m_lastAppliedScan = 0;
};
