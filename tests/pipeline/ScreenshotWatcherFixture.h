#pragma once

#include "RecordingWatcherDelegate.h"
#include "ScreenshotWatcher.h"
#include "TemporaryHome.h"
#include "files.h"
#include "runInBackground.h"

#include <QSignalSpy>
#include <QTest>

#include <memory>

/// What the tests of a watcher share: a home for each test and a real watcher on it.
class ScreenshotWatcherFixture : public QObject {
protected:
    /// Long enough for two ticks on a busy machine.
    static constexpr int patience = 15'000;

    void makeHome()
    {
        m_home = std::make_unique<TemporaryHome>();
        m_recorder = std::make_unique<RecordingWatcherDelegate>();
    }

    void removeHome()
    {
        m_watcher.reset();
        background::pool(BackgroundQueue::Scan).waitForDone();
        m_recorder.reset();
        m_home.reset();
    }

    /// Returns when the watcher has seeded itself.
    void startWatching()
    {
        m_watcher = std::make_unique<ScreenshotWatcher>();
        m_watcher->setDelegate(m_recorder.get());
        QSignalSpy seeded(m_watcher.get(), &ScreenshotWatcher::didApplyScan);
        QVERIFY(seeded.wait(patience));
    }

    /// Returns when at least `count` ticks that began after the call are through: each tick that finds a
    /// change applies its scan, so a marker file on the Desktop tells.
    void awaitTicks(int count)
    {
        for (int i = 0; i < count; ++i) {
            const QString marker = desktopFile(QStringLiteral("Screenshot marker %1.png").arg(i));
            files::write(marker);
            QTRY_VERIFY_WITH_TIMEOUT(m_recorder->reports.contains(marker), patience);
            m_recorder->reports.removeAll(marker);
            files::remove(marker);
        }
    }

    [[nodiscard]] QString desktopFile(const QString &name) const { return m_home->desktop() + u'/' + name; }

    std::unique_ptr<TemporaryHome> m_home;
    std::unique_ptr<RecordingWatcherDelegate> m_recorder;
    std::unique_ptr<ScreenshotWatcher> m_watcher;
};
