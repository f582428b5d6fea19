#pragma once

#include <QDateTime>
#include <QString>
#include <QUrl>

/// One screenshot that a folder's listing found: its path, name, URL, creation date and size. A value: copied
/// freely, told from others by `id`.
///
/// Name and URL follow from the path, so they aren't stored: making a URL costs more than everything else
/// that the listing of a file does.
struct ScreenshotItem {
    /// The file's full path.
    QString id;
    /// The moment of the listing where the file has none. In UTC.
    QDateTime creationDate;
    /// In bytes.
    qint64 fileSize = 0;

    /// The file's name, for messages.
    [[nodiscard]] QString name() const { return id.sliced(id.lastIndexOf(u'/') + 1); }

    [[nodiscard]] QUrl url() const { return QUrl::fromLocalFile(id); }

    bool operator==(const ScreenshotItem &) const = default;
};
