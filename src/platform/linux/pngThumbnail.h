#pragma once

#include "ImageThumbnails.h"

#include <optional>
#include <span>

/// Whether the pixels are stored in several passes, which `pngThumbnail` doesn't read: it would have to hold
/// them all. Rare, and never what a capture tool writes. The descriptor's position stays as it was.
[[nodiscard]] bool isInterlacedPng(int descriptor);

/// As `ImageSource::thumbnail`, for a PNG that isn't interlaced. Read without the toolkit, because its
/// reader loads the plugins of all its formats for good. Holds a few rows, however large the image is.
/// Colour profile and gamma are left alone, as by the toolkit. None if anything is wrong with the file.
/// The descriptor's position stays as it was. Any thread.
[[nodiscard]] std::optional<QImage> pngThumbnail(int descriptor, int maximumPixelSize);

/// The same in several sizes; the file is read once.
[[nodiscard]] std::optional<ImageThumbnails>
pngThumbnails(int descriptor, std::span<const int> maximumPixelSizes);

/// The same image in exactly `size`, which is in neither direction larger than the image.
[[nodiscard]] std::optional<QImage> scaledPng(int descriptor, QSize size);
