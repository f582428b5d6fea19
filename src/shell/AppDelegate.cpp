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

AppDelegate::AppDelegate(WindowViews views)
    : m_preferences(&UserDefaults::standard()),
      m_views(std::move(views))
{
}

AppDelegate::~AppDelegate()
{
    delete m_settingsWindow;
    delete m_galleryWindow;
}

void AppDelegate::applicationDidFinishLaunching()
{
    setUpManagers();
    loadTimeframe();
    startWatching();
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
            // A folder that was picked but couldn't be read has changed the role already.
            self->updateWording([] { FileAccessManager::shared().requestFolderAccess(); });
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
            m_views.settings);
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

std::unique_ptr<QWidget> AppDelegate::makeRecentScreenshotsView(
    std::function<void()> onExpandToFull, std::function<void()> onClosePopover) const
{
    return m_views.recentScreenshots(std::move(onExpandToFull), std::move(onClosePopover));
}
