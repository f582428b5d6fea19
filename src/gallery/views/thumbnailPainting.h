#pragma once

#include <QImage>
#include <QPainterPath>

class QPainter;

/// How the parts of a gallery's cell are painted. Lengths are in points; rectangles are the image's frame.
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

/// The image as it stands in a frame of `size`, with `devicePixelRatio` pixels to a point: filling it, cut at
/// the right and the bottom, since a screenshot is known by its top left. What is wider than 2.5 : 1 or
/// narrower than 1 : 2 is fitted whole, with nothing around it.
[[nodiscard]] QImage framed(const QImage &image, QSize size, qreal devicePixelRatio);

/// The soft shadow of an image that stands out.
void paintShadow(QPainter &painter, const QRect &frame, qreal radius);

/// What stands there instead of an image: nothing but gray, or a symbol where there will be none.
void paintPlaceholder(QPainter &painter, const QRectF &frame, qreal radius);
void paintUnreadable(QPainter &painter, const QRectF &frame);

/// An image made by `framed`, with its corners rounded.
void paintImage(QPainter &painter, const QRectF &frame, qreal radius, const QImage &image);

/// What makes such an image, painted before, brighter as it does under the pointer; by the painter's opacity.
void paintLight(QPainter &painter, const QRectF &frame, qreal radius);
/// What makes it darker while it is pressed.
void paintShade(QPainter &painter, const QRectF &frame, qreal radius);

/// The thin line inside every image.
void paintEdge(QPainter &painter, const QRectF &frame, qreal radius);

/// A ring inside the frame, and a line inside the ring that tells it from any image.
void paintSelectionRing(QPainter &painter, const QRectF &frame, qreal radius);

/// A ring around the image, 2 away from it.
void paintFocusRing(QPainter &painter, const QRectF &frame, qreal radius);

/// Of the diameter `box` has.
void paintBadge(QPainter &painter, const QRectF &box, Badge badge);

} // namespace thumbnailPainting
