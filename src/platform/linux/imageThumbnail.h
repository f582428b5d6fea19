#pragma once

#include "ImageFormat.h"

#include <QImage>

#include <optional>

class QIODevice;

/// From a descriptor of an image file to pixels, and nothing else: see `ImageSource::thumbnail`. The
/// descriptor stays open and is at any position before and after. Any thread.
[[nodiscard]] std::optional<QImage> imageThumbnail(int descriptor, ImageFormat format, int maximumPixelSize);

/// The first image at full size, upright; a null image if it can't be decoded. Any thread.
[[nodiscard]] QImage uprightImage(QIODevice &device, ImageFormat format);
