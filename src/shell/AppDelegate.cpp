#include "AppDelegate.h"

#include "FileAccessManager.h"
#include "FileManager.h"
#include "MenuBarManager.h"
#include "NotificationCenter.h"
#include "NotificationManager.h"
#include "ScreenshotManager.h"
#include "ScreenshotWatcher.h"
#include "SettingsWindowDelegate.h"
#include "UpdaterController.h"
#include "UserDefaults.h"
#include "Workspace.h"
#include "presentWindow.h"
#include "runInBackground.h"

#include <chrono>

namespace {

/// How long the picker waits for what it calls the folder: no folder need answer for it to open.
constexpr std::chrono::milliseconds patienceWithWording(500);

} // namespace

AppDelegate::AppDelegate(WindowViews views)
    : m_preferences(&UserDefaults::standard()),
      m_views(std::move(views))
{
    m_folderRequestTimer.setSingleShot(true);
    m_folderRequestTimer.setInterval(patienceWithWording);
    m_folderRequestTimer.callOnTimeout(this, [] { FileAccessManager::shared().requestFolderAccess(); });
}

AppDelegate::~AppDelegate()
{
    delete m_settingsWindow;
    delete m_galleryWindow;
    delete m_onboardingWindow;
}

void AppDelegate::applicationDidFinishLaunching()
{
    setUpManagers();
    loadTimeframe();
    if (!showOnboardingIfNeeded()) {
        startWatching();
    }
}

void AppDelegate::applicationWillTerminate()
{
    // A second start of the program ends without ever having launched.
    if (m_fileAccessManager != nullptr) {
        m_fileAccessManager->stopPersistentAccess();
    }
}

void AppDelegate::setUpManagers()
{
    m_notificationManager = &NotificationManager::shared();
    m_notificationManager->setFolderAccessRequest([self = QPointer<AppDelegate>(this)] {
        if (self) {
            self->requestFolderAccess();
        }
    });
    // The check of the folder may have something to say.
    m_wording.use(FileManager::defaultManager().isDesktopElsewhere());
    m_fileAccessManager = &FileAccessManager::shared();
    offerOwnSettings();
    m_updaterController = std::make_unique<UpdaterController>();
    m_screenshotManager = std::make_unique<ScreenshotManager>();
    m_menuBarManager = std::make_unique<MenuBarManager>(*this);
    NotificationCenter::defaultCenter().addObserver(
        FileAccessManager::folderAccessGranted, this,
        [this](const ProcessNotification &) { folderAccessGranted(); });
}

/// After the folder's role may have changed, without waiting for a disk; calls `then` when it is done.
void AppDelegate::updateWording(std::function<void()> then)
{
    runInBackground(
        this, BackgroundQueue::Listing, [] { return FileManager::defaultManager().isDesktopElsewhere(); },
        [this, then = std::move(then)](bool isDesktopElsewhere) {
            m_wording.use(isDesktopElsewhere);
            if (then) {
                then();
            }
        });
}

/// For the user who was told that the folder can't be read.
void AppDelegate::requestFolderAccess()
{
    m_folderRequestTimer.start();
    // A folder that was picked but couldn't be read has changed the role already.
    updateWording([this] {
        if (m_folderRequestTimer.isActive()) {
            m_folderRequestTimer.stop();
            FileAccessManager::shared().requestFolderAccess();
        }
    });
}

/// For links to settings that this desktop has no program for.
void AppDelegate::offerOwnSettings()
{
    if (canShowSettingsWindow()) {
        Workspace::shared().setOwnSettings([self = QPointer<AppDelegate>(this)] {
            if (self) {
                self->showSettingsWindow();
            }
        });
    }
}

void AppDelegate::loadTimeframe()
{
    if (m_preferences->contains(preferences::timeframeInMinutes)) {
        m_timeframeInMinutes.set(m_preferences->integer(preferences::timeframeInMinutes));
    }
}

void AppDelegate::updateTimeframe(qint64 minutes)
{
    m_timeframeInMinutes.set(minutes);
    m_preferences->setInteger(preferences::timeframeInMinutes, minutes);
}

void AppDelegate::createWatcher()
{
    // The earlier watcher goes first: it must not report while the new one seeds itself.
    m_screenshotWatcher.reset();
    m_screenshotWatcher = std::make_unique<ScreenshotWatcher>();
    m_screenshotWatcher->setDelegate(this);
}

void AppDelegate::startWatching()
{
    createWatcher();
    m_fileAccessManager->startPersistentAccess();
}

/// A folder that was granted meanwhile is watched already.
void AppDelegate::finishOnboarding()
{
    m_hasFinishedOnboarding = true;
    m_preferences->setBoolean(preferences::hasCompletedOnboarding, true);
    if (m_onboardingWindow) {
        m_onboardingWindow->close();
    }
    if (!m_screenshotWatcher) {
        startWatching();
    }
}

void AppDelegate::folderAccessGranted()
{
    createWatcher();
    updateWording();
}

void AppDelegate::watcherDidDetectScreenshot(const QString &path)
{
    if (m_screenshotManager->autoCopyToClipboard()) {
        m_screenshotManager->copyToClipboard(path);
    }
    const QPointer<AppDelegate> self(this);
    m_menuBarManager->showConfirmation(
        path, timeframeInMinutes(),
        [self, path] {
            if (self) {
                self->m_screenshotManager->performDeletion(path);
            }
        },
        [self, path] {
            if (self) {
                // The delay of this moment, not of the moment when the screenshot was seen.
                self->m_screenshotManager->scheduleDeletion(path, self->timeframeInMinutes());
            }
        });
}

void AppDelegate::showSettingsWindow()
{
    if (canShowSettingsWindow()) {
        presentWindow(
            *this, {.window = m_settingsWindow, .delegate = m_settingsWindowDelegate},
            {
                .title = tr("Deskbroom Settings"),
                .contentSize = {640, 480},
                .controls = WindowDescription::Controls::CloseAndMinimize,
                .minimumSize = {},
            },
            [this] { return m_views.settings(*this); });
    }
}

void AppDelegate::showGalleryWindow()
{
    if (canShowGalleryWindow()) {
        presentWindow(
            *this, {.window = m_galleryWindow, .delegate = m_galleryWindowDelegate},
            {
                .title = tr("Screenshot Gallery"),
                .contentSize = {1200, 900},
                .controls = WindowDescription::Controls::CloseMinimizeAndResize,
                .minimumSize = {800, 700},
            },
            m_views.gallery);
    }
}

bool AppDelegate::showOnboardingIfNeeded()
{
    const bool isFinished =
        m_hasFinishedOnboarding || m_preferences->boolean(preferences::hasCompletedOnboarding);
    if (isFinished || !canShowOnboarding()) {
        return false;
    }
    presentWindow(
        *this, {.window = m_onboardingWindow, .delegate = m_onboardingWindowDelegate},
        {
            .title = tr("Welcome to Deskbroom"),
            .contentSize = {560, 680},
            .controls = WindowDescription::Controls::TitleOnly,
            .minimumSize = {},
        },
        [this] { return makeOnboardingView(); });
    return true;
}

std::unique_ptr<QWidget> AppDelegate::makeOnboardingView()
{
    return m_views.onboarding([self = QPointer<AppDelegate>(this)] {
        if (self) {
            self->finishOnboarding();
        }
    });
}

std::unique_ptr<QWidget> AppDelegate::makeRecentScreenshotsView(
    std::function<void()> onExpandToFull, std::function<void()> onClosePopover) const
{
    return m_views.recentScreenshots(std::move(onExpandToFull), std::move(onClosePopover));
}
