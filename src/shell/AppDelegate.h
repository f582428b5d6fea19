#pragma once

#include "Preferences.h"
#include "ScreenshotFolderWording.h"
#include "ScreenshotWatcherDelegate.h"
#include "SettingsApplicationDelegate.h"

#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <memory>

class FileAccessManager;
class MenuBarManager;
class NotificationManager;
class ScreenshotManager;
class ScreenshotWatcher;
class SettingsWindowDelegate;
class UpdaterController;
class UserDefaults;

/// What the windows and the gallery popover show. What has no view can't be opened.
struct WindowViews {
    using Factory = std::function<std::unique_ptr<QWidget>()>;
    using SettingsFactory = std::function<std::unique_ptr<QWidget>(SettingsApplicationDelegate &)>;
    /// The view is given what to do when the user has gone through all of its pages.
    using OnboardingFactory = std::function<std::unique_ptr<QWidget>(std::function<void()> onFinished)>;
    /// The view is given what opens the gallery window and what closes the popover that it is in.
    using PopoverFactory = std::function<std::unique_ptr<QWidget>(
        std::function<void()> onExpandToFull, std::function<void()> onClosePopover)>;

    // The braces are for those that name only some members.
    // NOLINTBEGIN(readability-redundant-member-init)
    SettingsFactory settings = {};
    Factory gallery = {};
    PopoverFactory recentScreenshots = {};
    OnboardingFactory onboarding = {};
    // NOLINTEND(readability-redundant-member-init)
};

/// The program's centre: makes the long-lived objects in their order and keeps them, receives the watcher's
/// reports and turns them into clipboard copies and questions, owns the windows and the deletion delay.
///
/// There is one, made by DeskbroomApp. Main thread.
class AppDelegate final : public SettingsApplicationDelegate, public ScreenshotWatcherDelegate {
    Q_OBJECT

public:
    explicit AppDelegate(WindowViews views = {});
    ~AppDelegate() override;
    Q_DISABLE_COPY_MOVE(AppDelegate)

    /// The launch sequence.
    void applicationDidFinishLaunching();

    /// Gives back the access to the watched folder. Deletions that are still pending are dropped.
    void applicationWillTerminate();

    /// The program lives in the panel: it goes on when its last window closes.
    [[nodiscard]] static bool applicationShouldTerminateAfterLastWindowClosed() { return false; }

    /// Begins to watch afresh: a new watcher seeds itself with what the granted folder holds.
    void folderAccessGranted();

    /// The window operations open a window or bring the open one to the front.
    void showSettingsWindow();
    void showGalleryWindow();

    /// Opens the first-run pages unless the user has gone through them, in this run or an earlier one.
    /// Whether they are open now.
    bool showOnboardingIfNeeded();

    [[nodiscard]] bool canShowSettingsWindow() const { return m_views.settings != nullptr; }

    [[nodiscard]] bool canShowGalleryWindow() const { return m_views.gallery != nullptr; }

    [[nodiscard]] bool canShowOnboarding() const { return m_views.onboarding != nullptr; }

    [[nodiscard]] bool canShowRecentScreenshots() const { return m_views.recentScreenshots != nullptr; }

    /// A new view for the gallery popover, if there can be one.
    [[nodiscard]] std::unique_ptr<QWidget> makeRecentScreenshotsView(
        std::function<void()> onExpandToFull, std::function<void()> onClosePopover) const;

    [[nodiscard]] qint64 timeframeInMinutes() const override { return m_timeframeInMinutes.get(); }

    void updateTimeframe(qint64 minutes) override;

    void watcherDidDetectScreenshot(const QString &path) override;

    /// The long-lived objects: null before the launch, the watcher until watching starts.
    [[nodiscard]] FileAccessManager *fileAccessManager() const override { return m_fileAccessManager; }

    [[nodiscard]] MenuBarManager *menuBarManager() const { return m_menuBarManager.get(); }

    [[nodiscard]] ScreenshotManager *screenshotManager() const override { return m_screenshotManager.get(); }

    [[nodiscard]] ScreenshotWatcher *screenshotWatcher() const { return m_screenshotWatcher.get(); }

    [[nodiscard]] UpdaterController *updaterController() const { return m_updaterController.get(); }

    [[nodiscard]] QWidget *settingsWindow() const { return m_settingsWindow; }

    [[nodiscard]] QWidget *galleryWindow() const { return m_galleryWindow; }

    [[nodiscard]] QWidget *onboardingWindow() const { return m_onboardingWindow; }

private:
    void setUpManagers();
    void updateWording(std::function<void()> then = {});
    void requestFolderAccess();
    void offerOwnSettings();
    void loadTimeframe();
    void createWatcher();
    void startWatching();
    [[nodiscard]] std::unique_ptr<QWidget> makeOnboardingView();
    void finishOnboarding();

    /// The shared ones, which outlive the delegate.
    NotificationManager *m_notificationManager = nullptr;
    FileAccessManager *m_fileAccessManager = nullptr;
    std::unique_ptr<MenuBarManager> m_menuBarManager;
    std::unique_ptr<ScreenshotManager> m_screenshotManager;
    std::unique_ptr<ScreenshotWatcher> m_screenshotWatcher;
    std::unique_ptr<UpdaterController> m_updaterController;
    QPointer<QWidget> m_settingsWindow;
    QPointer<QWidget> m_galleryWindow;
    QPointer<QWidget> m_onboardingWindow;
    std::unique_ptr<SettingsWindowDelegate> m_settingsWindowDelegate;
    std::unique_ptr<SettingsWindowDelegate> m_galleryWindowDelegate;
    std::unique_ptr<SettingsWindowDelegate> m_onboardingWindowDelegate;
    Published<qint64> m_timeframeInMinutes{this, preferences::defaultTimeframeInMinutes};
    UserDefaults *m_preferences;

    WindowViews m_views;
    ScreenshotFolderWording m_wording;
    /// Runs while the picker waits for its wording.
    QTimer m_folderRequestTimer;
    /// In this run, whether that could be stored or not.
    bool m_hasFinishedOnboarding = false;
};
