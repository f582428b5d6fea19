#pragma once

#include "ImageFormat.h"
#include "ImageThumbnails.h"

#include <optional>
#include <span>

class QIODevice;

/// From a descriptor of an image file to pixels, and nothing else: see `ImageSource::thumbnail`. Of each of
/// the maximum sizes one; the file is decoded once, and each is made directly of what was decoded. The
/// descriptor stays open and is at any position before and after. Any thread.
[[nodiscard]] std::optional<ImageThumbnails>
imageThumbnails(int descriptor, ImageFormat format, std::span<const int> maximumPixelSizes);

/// The first image at full size, upright; a null image if it can't be decoded. Any thread.
[[nodiscard]] QImage uprightImage(QIODevice &device, ImageFormat format);
