#pragma once

#include "FileState.h"

#include <QImage>
#include <QString>

#include <functional>
#include <optional>

/// What became of a file that a thumbnail was asked of.
struct DecodedThumbnail {
    /// Null if the file can't be read as an image.
    QImage image;
    /// The file as it was when it was opened for reading; none if there was no file.
    std::optional<FileState> fileState;
};

/// Makes a thumbnail whose longer side is at most so many pixels. For a background thread.
using ThumbnailDecoder = std::function<DecodedThumbnail(const QString &path, int maximumPixelSize)>;

[[nodiscard]] DecodedThumbnail decodeThumbnail(const QString &path, int maximumPixelSize);
