#include "screenshotListing.h"

#include "OpenFolder.h"
#include "SecurityScopedAccess.h"
#include "print.h"
#include "screenshotPath.h"
#include "storedBookmark.h"

#include <QDir>

#include <algorithm>

namespace {

/// The folder of the stored bookmark, if there is one that leads somewhere.
std::optional<QUrl> bookmarkedFolder(const QString &key)
{
    const auto bookmark = storedBookmark::data(key);
    if (!bookmark) {
        return std::nullopt;
    }
    const auto url = storedBookmark::resolve(key, *bookmark);
    if (!url) {
        print(QStringLiteral("Error using bookmark: ") + url.error().description());
        return std::nullopt;
    }
    return *url;
}

bool isSameFolder(const QUrl &first, const QUrl &second)
{
    return QDir::cleanPath(first.path()) == QDir::cleanPath(second.path());
}

/// All names first and all attributes afterwards, as this is two loops: half as dear for the processor's
/// caches as changing over between the system and the names' rule for each file.
Result<QStringList> screenshotPaths(const FileManager &fileManager, const QString &folder)
{
    const QString prefix = folder.endsWith(u'/') ? folder : QString(folder + u'/');
    QStringList paths;
    const auto state = fileManager.contentsOfDirectory(
        folder, FileManager::ListingOption::SkipsHiddenFiles, [&](QByteArrayView name) {
            if (auto path = screenshotPath(prefix, name)) {
                paths.append(std::move(*path));
            }
        });
    if (!state) {
        return std::unexpected(state.error());
    }
    return paths;
}

} // namespace

QList<ScreenshotItem> screenshotListing::loadScreenshots(
    const FileManager &fileManager, const QString &bookmarkKey, const QList<SearchPathDirectory> &directories)
{
    QList<QUrl> folders;
    const auto bookmarked = bookmarkedFolder(bookmarkKey);
    if (bookmarked) {
        folders.append(*bookmarked);
    }
    for (const SearchPathDirectory directory : directories) {
        const QList<QUrl> urls = fileManager.urls(directory);
        const auto isListed = [&urls](const QUrl &folder) { return isSameFolder(folder, urls.constFirst()); };
        if (!urls.isEmpty() && std::ranges::none_of(folders, isListed)) {
            folders.append(urls.constFirst());
        }
    }
    QList<ScreenshotItem> items;
    for (const QUrl &folder : std::as_const(folders)) {
        const auto access = folder == bookmarked ? SecurityScopedAccess::start(folder) : std::nullopt;
        items.append(scanDirectory(fileManager, folder));
    }
    std::ranges::sort(items, [](const ScreenshotItem &first, const ScreenshotItem &second) {
        return first.creationDate > second.creationDate;
    });
    return items;
}

QList<ScreenshotItem> screenshotListing::scanDirectory(const FileManager &fileManager, const QUrl &url)
{
    const QString folderPath = url.path();
    const auto paths = screenshotPaths(fileManager, folderPath);
    const auto folder = OpenFolder::open(folderPath);
    if (!paths || !folder) {
        print(
            QStringLiteral("Error accessing directory ") + folderPath + QStringLiteral(": ") +
            (paths ? folder.error() : paths.error()).description());
        return {};
    }
    QList<ScreenshotItem> items;
    items.reserve(paths->size());
    for (const QString &path : *paths) {
        const QStringView name = QStringView(path).sliced(path.lastIndexOf(u'/') + 1);
        const auto attributes = folder->attributesOfItem(name);
        if (!attributes) {
            print(
                QStringLiteral("Error reading file attributes for ") + name + QStringLiteral(": ") +
                attributes.error().description());
            continue;
        }
        items.append(record(path, *attributes));
    }
    return items;
}

ScreenshotItem screenshotListing::record(const QString &path, const FileAttributes &attributes)
{
    const std::optional<QDateTime> &created = attributes.creationDate;
    return {
        .id = path,
        .creationDate = created ? *created : QDateTime::currentDateTimeUtc(),
        .fileSize = attributes.size,
    };
}
