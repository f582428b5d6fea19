#pragma once

#include "ThumbnailFrame.h"

class QPainter;

/// How the parts of a gallery's cell are painted. Lengths are in points.
namespace thumbnailPainting {

/// What a circle in the image's corner says.
enum class Badge {
    /// A click copies.
    Copy,
    /// A click selects.
    Unselected,
    Selected,
};

/// Pixels to a point, also where a widget is painted into an image that has other pixels than its screen.
[[nodiscard]] qreal pixelRatio(const QPainter &painter);

/// Moves what is painted from here on by less than a pixel, so that a pixel begins at `point`: pictures in
/// the pixels of the screen stay crisp.
void alignToPixels(QPainter &painter, const QPointF &point);

/// The soft shadow of an image that stands out.
void paintShadow(QPainter &painter, const ThumbnailFrame &frame);

/// What stands there instead of an image: nothing but gray, or a symbol where there will be none.
void paintPlaceholder(QPainter &painter, const ThumbnailFrame &frame);
void paintUnreadable(QPainter &painter, const ThumbnailFrame &frame);

/// What makes an image, painted before, brighter as it is under the pointer; by the painter's opacity.
void paintLight(QPainter &painter, const ThumbnailFrame &frame);
/// What makes it darker while it is pressed.
void paintShade(QPainter &painter, const ThumbnailFrame &frame);

/// The thin line inside every image.
void paintEdge(QPainter &painter, const ThumbnailFrame &frame);

/// A ring inside the frame, and a line inside the ring that tells it from any image.
void paintSelectionRing(QPainter &painter, const ThumbnailFrame &frame);

/// A ring around the image, 2 away from it.
void paintFocusRing(QPainter &painter, const ThumbnailFrame &frame);

/// Of the diameter `box` has.
void paintBadge(QPainter &painter, const QRectF &box, Badge badge);

} // namespace thumbnailPainting
