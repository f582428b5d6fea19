#pragma once

#include "FileState.h"
#include "ImageFormat.h"

#include <QByteArray>
#include <QImage>
#include <QSize>

#include <chrono>
#include <optional>

/// A file in the thumbnail cache that the desktop's programs share: a PNG with texts that tell what it is of.
/// Any thread.
namespace sharedThumbnailEntry {

/// What an entry is of.
struct Subject {
    QByteArray uri;
    FileState state;
};

/// What an entry tells of its image beside.
struct ImageProperties {
    ImageFormat format = ImageFormat::Png;
    QSize size; ///< upright, in pixels
};

/// A change of a file needn't move its time as long as that is this young: it is kept in whole seconds here,
/// and by FAT in whole two.
inline constexpr std::chrono::nanoseconds timestampGranularity = std::chrono::seconds(2);

/// The thumbnail that `ImageSource::thumbnail` would make of the subject, made of the entry at the path,
/// which fits into a square of `side` pixels. None if there is no entry, or it is damaged, too small, or of
/// another file or another state of it. Anybody may have put it there: it is read with the care that any
/// image is.
[[nodiscard]] std::optional<QImage>
read(const QByteArray &path, int side, const Subject &subject, int maximumPixelSize);

/// In place of what is there. Where that can't be done it isn't, without a word: the cache only saves time.
void write(
    const QByteArray &path, const QImage &thumbnail, const Subject &subject,
    const ImageProperties &properties);

} // namespace sharedThumbnailEntry
