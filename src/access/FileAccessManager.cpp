#include "FileAccessManager.h"

#include "NotificationCenter.h"
#include "NotificationManager.h"
#include "OpenPanel.h"
#include "Preferences.h"
#include "SecurityScopedAccess.h"
#include "folderAccess.h"
#include "print.h"
#include "runInBackground.h"
#include "screenshotListing.h"
#include "storedBookmark.h"

#include <chrono>
#include <tuple>
#include <utility>

namespace {

/// How long the picker waits to learn where it starts.
constexpr std::chrono::milliseconds patienceWithStart(500);

QString accessFailure(const Error &error)
{
    if (error.domain != Error::cocoaDomain) {
        return QStringLiteral("Unexpected error: ") + error.localizedDescription;
    }
    switch (error.code) {
    case Error::FileNoSuchFile:
        return QStringLiteral("Desktop folder not found");
    case Error::FileNoPermission:
        return QStringLiteral("Permission denied - please grant folder access in System Settings");
    default:
        return QStringLiteral("File system error: ") + error.localizedDescription;
    }
}

/// As a person calls the folder; a slash for the topmost one.
QString folderName(const QUrl &url)
{
    const QString name = url.adjusted(QUrl::StripTrailingSlash).fileName();
    return name.isEmpty() ? QStringLiteral("/") : name;
}

/// Makes the bookmark of a folder that the user picked, or tells him why it can't be made. Any thread.
std::optional<QByteArray> makePickedBookmark(const QUrl &url)
{
    auto bookmark = Bookmark::make(url, Bookmark::Origin::PickedByUser);
    if (!bookmark) {
        print(QStringLiteral("Error creating bookmark: ") + bookmark.error().description());
        NotificationManager::shared().showAccessFailed(bookmark.error().localizedDescription);
        return std::nullopt;
    }
    return std::move(*bookmark);
}

/// As `folderAccess::verify`, and tells the user when it fails.
bool verifyPickedFolder(
    const FileManager &fileManager, const QString &bookmarkKey, const QByteArray &bookmark)
{
    const bool isVerified = folderAccess::verify(fileManager, bookmarkKey, bookmark);
    if (!isVerified) {
        NotificationManager::shared().showAccessFailed(
            FileAccessManager::tr("Could not verify folder access"));
    }
    return isVerified;
}

} // namespace

FileAccessManager &FileAccessManager::shared()
{
    // Never destroyed: it may be called to the end from whatever runs in the background.
    static auto *const manager = new FileAccessManager;
    return *manager;
}

FileAccessManager::FileAccessManager()
    : m_fileManager(&FileManager::defaultManager()),
      m_bookmarkKey(preferences::desktopFolderBookmark)
{
    m_openPanelTimer.setSingleShot(true);
    m_openPanelTimer.setInterval(patienceWithStart);
    connect(&m_openPanelTimer, &QTimer::timeout, this, [this] { showOpenPanel({}); });
    checkInitialAccess();
    startPersistentAccess();
}

void FileAccessManager::checkInitialAccess()
{
    m_fileManager->makeDesktop();
    const QList<QUrl> urls = m_fileManager->urls(SearchPathDirectory::Desktop);
    if (urls.isEmpty()) {
        print(QStringLiteral("Error: Could not locate Desktop directory"));
        NotificationManager::shared().showAccessFailed(tr("Could not locate Desktop directory"));
        return;
    }
    const QUrl &desktop = urls.constFirst();
    print(QStringLiteral("Requesting access to Desktop folder at: ") + desktop.path());
    const auto count = folderAccess::entryCount(*m_fileManager, desktop.path());
    if (!count) {
        print(QStringLiteral("Error accessing Desktop folder: ") + accessFailure(count.error()));
        NotificationManager::shared().showDesktopAccessRequired();
        return;
    }
    print(QStringLiteral("Desktop folder access granted"));
    createBookmark(desktop);
    touchOtherFolders();
}

/// Has the system ask for the other folders, or record that they are used, where it does such a thing: in
/// the background, because nothing depends on it.
void FileAccessManager::touchOtherFolders() const
{
    background::pool(BackgroundQueue::Listing).start([fileManager = m_fileManager] {
        for (const SearchPathDirectory directory :
             {SearchPathDirectory::Pictures, SearchPathDirectory::Downloads}) {
            for (const QUrl &url : fileManager->urls(directory)) {
                std::ignore = folderAccess::entryCount(*fileManager, url.path());
            }
        }
    });
}

void FileAccessManager::createBookmark(const QUrl &url)
{
    const auto bookmark = Bookmark::make(url, storedBookmark::origin(m_bookmarkKey));
    if (!bookmark) {
        print(QStringLiteral("Failed to create bookmark: ") + bookmark.error().description());
        return;
    }
    storedBookmark::store(m_bookmarkKey, *bookmark);
    print(QStringLiteral("Successfully created bookmark for: ") + url.path());
    stopPersistentAccess();
    startPersistentAccess();
}

void FileAccessManager::startPersistentAccess()
{
    if (m_persistentAccessUrl) {
        return;
    }
    const auto bookmark = storedBookmark::data(m_bookmarkKey);
    if (!bookmark) {
        return;
    }
    const auto url = storedBookmark::resolve(m_bookmarkKey, *bookmark);
    if (!url) {
        print(QStringLiteral("Failed to start persistent Desktop access: ") + url.error().description());
        return;
    }
    auto access = SecurityScopedAccess::start(*url);
    if (!access) {
        print(QStringLiteral("startAccessingSecurityScopedResource returned false for Desktop bookmark"));
        return;
    }
    SecurityScopedAccess::keep(std::move(access));
    m_persistentAccessUrl = *url;
    print(QStringLiteral("Persistent Desktop access started: ") + url->path());
}

void FileAccessManager::stopPersistentAccess()
{
    SecurityScopedAccess::keep(std::nullopt);
    m_persistentAccessUrl.reset();
    print(QStringLiteral("Persistent Desktop access stopped"));
}

void FileAccessManager::requestFolderAccess()
{
    if (m_openPanelTimer.isActive()) {
        return;
    }
    m_openPanelTimer.start();
    // The folder's disk may take its time, or never answer, which is reason enough to want another folder.
    // Who asks again meanwhile mustn't take a second thread.
    if (!std::exchange(m_isLookingForStart, true)) {
        runInBackground(
            this, BackgroundQueue::UserInitiated,
            [fileManager = m_fileManager] {
                return fileManager->urls(SearchPathDirectory::Desktop).value(0);
            },
            [this](const QUrl &desktop) { takeStart(desktop); });
    }
}

void FileAccessManager::takeStart(const QUrl &directory)
{
    m_isLookingForStart = false;
    // Otherwise it comes too late: the panel is open, or closed again.
    if (m_openPanelTimer.isActive()) {
        m_openPanelTimer.stop();
        showOpenPanel(directory);
    }
}

void FileAccessManager::showOpenPanel(const QUrl &directory)
{
    delete m_openPanel;
    m_openPanel = new OpenPanel(this);
    m_openPanel->setPrompt(tr("Grant Access"));
    m_openPanel->setMessage(tr("Please select your Desktop folder to grant access for screenshot detection"));
    m_openPanel->setTitle(tr("Select Desktop Folder"));
    m_openPanel->setDirectoryUrl(directory);
    m_openPanel->begin([this, panel = m_openPanel](OpenPanel::ModalResponse response) {
        const QUrl url = panel->url();
        panel->deleteLater();
        if (response == OpenPanel::ModalResponse::OK && !url.isEmpty()) {
            handleSelectedFolder(url);
        }
    });
}

void FileAccessManager::handleSelectedFolder(const QUrl &url)
{
    const quint64 pick = ++m_picks;
    runInBackground(
        this, [url] { return makePickedBookmark(url); },
        [this, pick, url](const std::optional<QByteArray> &bookmark) {
            if (bookmark && pick == m_picks) {
                takeOver(pick, url, *bookmark);
            }
        });
}

/// What a picked folder needs once it has a bookmark: held access, a check, and the announcement. Of several
/// picks in a row only the last is announced.
void FileAccessManager::takeOver(quint64 pick, const QUrl &url, const QByteArray &bookmark)
{
    storedBookmark::store(m_bookmarkKey, bookmark);
    print(QStringLiteral("Successfully created bookmark for: ") + url.path());
    stopPersistentAccess();
    startPersistentAccess();
    runInBackground(
        this,
        [fileManager = m_fileManager, key = m_bookmarkKey, bookmark] {
            return verifyPickedFolder(*fileManager, key, bookmark);
        },
        [this, pick, url](bool isVerified) {
            if (isVerified && pick == m_picks) {
                NotificationManager::shared().showAccessGranted(folderName(url));
                NotificationCenter::defaultCenter().post(folderAccessGranted);
            }
        });
}

std::optional<QByteArray> FileAccessManager::bookmark() const
{
    return storedBookmark::data(m_bookmarkKey);
}

bool FileAccessManager::hasValidAccess() const
{
    const auto stored = bookmark();
    return stored && folderAccess::verify(*m_fileManager, m_bookmarkKey, *stored);
}

void FileAccessManager::loadScreenshots(
    const QList<SearchPathDirectory> &directories, QObject *owner,
    std::function<void(QList<ScreenshotItem>)> done) const
{
    runInBackground(
        owner, BackgroundQueue::Listing,
        [fileManager = m_fileManager, key = m_bookmarkKey, directories] {
            return screenshotListing::loadScreenshots(*fileManager, key, directories);
        },
        std::move(done));
}
