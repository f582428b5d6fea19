#pragma once

#include "Error.h"
#include "ImageFormat.h"

#include <QByteArray>
#include <QSize>
#include <QUrl>

/// An image as its file has it: the bytes, not the pixels. An image loads when its type is recognised and its
/// size can be read; the pixels aren't looked at. What isn't a regular file (a pipe, a device) is refused and
/// never waited for. Any thread.
struct Image {
    /// The domain of a file that is no image; code 1.
    static inline const QString errorDomain = QStringLiteral("DeskbroomImageErrorDomain");

    /// The largest file that is loaded, in bytes: 512 MiB, far more than any screenshot.
    static constexpr qint64 largestFile = qint64(512) * 1024 * 1024;

    QUrl url;
    /// Empty in an image that only refers to its file.
    QByteArray bytes;
    ImageFormat format = ImageFormat::Png;
    /// In pixels, as stored: before the orientation is applied.
    QSize pixelSize;

    /// Loads the whole file.
    [[nodiscard]] static Result<Image> contentsOf(const QUrl &url);

    /// Reads no more than what tells whether the file loads, and leaves the bytes where they are.
    [[nodiscard]] static Result<Image> byReferencing(const QUrl &url);
};
