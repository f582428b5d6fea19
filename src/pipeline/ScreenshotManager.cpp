#include "ScreenshotManager.h"

#include "Bookmark.h"
#include "DelayedWork.h"
#include "FileCoordinator.h"
#include "FileManager.h"
#include "ImageCopy.h"
#include "NotificationCenter.h"
#include "Preferences.h"
#include "SecurityScopedAccess.h"
#include "UserDefaults.h"
#include "fatalError.h"
#include "print.h"
#include "runInBackground.h"

#include <chrono>

namespace {

QString fileName(const QString &path)
{
    return path.sliced(path.lastIndexOf(u'/') + 1);
}

QString failureText(const Error &error, const QString &path)
{
    if (error.domain != Error::cocoaDomain) {
        return QStringLiteral("Unexpected error: ") + error.localizedDescription;
    }
    switch (error.code) {
    case Error::FileInUse:
        return QStringLiteral("File is currently in use");
    case Error::FileNoPermission:
        return QStringLiteral("Permission denied - check file access");
    case Error::FileNoSuchFile:
        return QStringLiteral("Screenshot '") + fileName(path) + QStringLiteral("' no longer exists");
    default:
        return QStringLiteral("File system error: ") + error.localizedDescription;
    }
}

/// Moves the file to the Trash and prints how that went. Blocks; not for the main thread. Answers the
/// failure's text, if it failed.
std::optional<QString> moveToTrash(const QString &path)
{
    const auto moved =
        FileCoordinator().coordinateWritingForDeleting(QUrl::fromLocalFile(path), [](const QUrl &url) {
            return FileManager::defaultManager().trashItem(url);
        });
    if (moved) {
        print(QStringLiteral("Screenshot moved to Trash: ") + fileName(path));
        return std::nullopt;
    }
    QString text = failureText(moved.error(), path);
    print(QStringLiteral("Failed to delete screenshot: ") + text);
    return text;
}

std::chrono::seconds seconds(qint64 minutes)
{
    qint64 result = 0;
    if (__builtin_mul_overflow(minutes, qint64(60), &result)) {
        fatalError(QStringLiteral("A deletion delay of %1 minutes overflows").arg(minutes));
    }
    return std::chrono::seconds(result);
}

} // namespace

ScreenshotManager::ScreenshotManager(QObject *parent)
    : ObservableObject(parent),
      m_autoCopyToClipboard(this, false),
      m_preferences(&UserDefaults::standard())
{
    m_autoCopyToClipboard.set(m_preferences->boolean(preferences::autoCopyToClipboard));
}

ScreenshotManager::~ScreenshotManager() = default;

bool ScreenshotManager::hasPendingDeletion(const QString &path) const
{
    return m_pendingDeletions.contains(path);
}

void ScreenshotManager::scheduleDeletion(const QString &path, qint64 minutes)
{
    cancelDeletion(path);
    m_pendingDeletions[path] = std::make_unique<DelayedWork>(seconds(minutes), [this, path] {
        performDeletion(path);
        m_pendingDeletions.erase(path);
    });
    print(
        QStringLiteral("Scheduled deletion of ") + fileName(path) + QStringLiteral(" in ") +
        QString::number(minutes) + QStringLiteral(" minute") + (minutes >= 2 ? u"s" : u""));
}

void ScreenshotManager::cancelDeletion(const QString &path)
{
    m_pendingDeletions.erase(path);
}

void ScreenshotManager::performDeletion(const QString &path)
{
    runInBackground(
        this, [path] { return moveToTrash(path); },
        [this, path](const std::optional<QString> &failure) { finishDeletion(path, failure); });
}

void ScreenshotManager::finishDeletion(const QString &path, const std::optional<QString> &failure)
{
    if (failure) {
        NotificationCenter::defaultCenter().post(
            screenshotDeletionFailed, {{QStringLiteral("error"), *failure}, {QStringLiteral("path"), path}});
    }
    cancelDeletion(path);
    Q_EMIT didFinishDeletion(path);
}

void ScreenshotManager::copyToClipboard(const QString &path) const
{
    const auto access = startDesktopAccess();
    const QList<Image> images = ImageCopy::load({path}, [](const QString &unreadable) {
        print(QStringLiteral("Failed to load screenshot image from ") + unreadable);
    });
    if (ImageCopy().write(images)) {
        print(QStringLiteral("Copied screenshot to clipboard: ") + fileName(path));
    }
}

std::optional<SecurityScopedAccess> ScreenshotManager::startDesktopAccess() const
{
    const auto data = m_preferences->data(preferences::desktopFolderBookmark);
    if (!data) {
        return std::nullopt;
    }
    const auto bookmark = Bookmark::resolve(*data);
    if (!bookmark) {
        print(QStringLiteral("Failed to resolve Desktop bookmark: ") + bookmark.error().description());
        return std::nullopt;
    }
    return bookmark->isStale ? std::nullopt : SecurityScopedAccess::start(bookmark->url);
}
