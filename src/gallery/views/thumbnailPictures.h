#pragma once

#include "ThumbnailFrame.h"

#include <QImage>
#include <QPixmap>

#include <functional>

class QPainter;

/// Parts of a gallery's cell as pictures in the pixels of the screen: made once and copied at each painting,
/// because filling and stroking the curve of the corners takes many times as long. They have alpha, and they
/// are drawn at the corner of their frame.
namespace thumbnailPictures {

/// Whether nothing of what lies behind it is seen through the image in a frame, but at the rounded corners.
[[nodiscard]] bool covers(const QImage &image);

/// The image as it stands in the frame: filling it, cut at the right and the bottom, since a screenshot is
/// known by its top left. What is wider than 2.5 : 1 or narrower than 1 : 2 is fitted whole, with nothing
/// around it. The frame's corners are rounded.
[[nodiscard]] QImage framed(const QImage &image, const ThumbnailFrame &frame);

/// What `paint` paints in `color`, kept for all cells with such a frame. It paints around a frame with its
/// corner at the origin and stays inside of it.
[[nodiscard]] QPixmap shared(
    const char *name, const ThumbnailFrame &frame, const QColor &color,
    const std::function<void(QPainter &painter, const ThumbnailFrame &frame)> &paint);

/// The soft shadow of an image that stands out, kept likewise. It is larger than the frame, by the same on
/// all sides.
[[nodiscard]] QPixmap shadow(const ThumbnailFrame &frame);

} // namespace thumbnailPictures
