#pragma once

#include "FileManager.h"
#include "ScreenshotItem.h"

#include <QList>
#include <QUrl>

/// The listing of folders into records, for the gallery. Any thread; blocks for as long as the disk takes.
/// What can't be read prints one line and is left out.
namespace screenshotListing {

/// The screenshots of the folder whose bookmark is stored under the key and then of these folders, each
/// folder once, newest first. Of several with one date none comes first for certain.
[[nodiscard]] QList<ScreenshotItem> loadScreenshots(
    const FileManager &fileManager, const QString &bookmarkKey,
    const QList<SearchPathDirectory> &directories);

/// The screenshots that lie directly in the folder, in the order of its listing.
[[nodiscard]] QList<ScreenshotItem> scanDirectory(const FileManager &fileManager, const QUrl &url);

/// What is kept of one file. One without a creation date was created now.
[[nodiscard]] ScreenshotItem record(const QString &path, const FileAttributes &attributes);

} // namespace screenshotListing
