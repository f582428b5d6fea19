#pragma once

#include "Error.h"
#include "ImageFormat.h"

#include <QByteArray>
#include <QSize>

class QUrl;

/// An image as its file has it: the bytes, not the pixels. Any thread.
struct Image {
    /// The domain of a file that is no image; code 1.
    static inline const QString errorDomain = QStringLiteral("DeskbroomImageErrorDomain");

    /// The largest file that is loaded, in bytes: 512 MiB, far more than any screenshot.
    static constexpr qint64 largestFile = qint64(512) * 1024 * 1024;

    QByteArray bytes;
    ImageFormat format = ImageFormat::Png;
    /// In pixels, as stored: before the orientation is applied.
    QSize pixelSize;

    /// Loads a file whose type is recognised and whose size can be read; the pixels aren't looked at. What
    /// isn't a regular file (a pipe, a device) is refused and never waited for.
    [[nodiscard]] static Result<Image> contentsOf(const QUrl &url);
};
