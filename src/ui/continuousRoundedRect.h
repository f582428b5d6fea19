#pragma once

#include <QPainterPath>

/// A rectangle whose corners begin to bend earlier than a circle's arc and meet the edges without a jump in
/// curvature. `radius`, in points, is the radius of the circle that cuts as deep into the corner.
[[nodiscard]] QPainterPath continuousRoundedRect(const QRectF &rect, qreal radius);

/// One such corner as the last bend of `path`: from where the path stands, around `corner`, on to `end`.
void continuousCornerTo(QPainterPath &path, const QPointF &corner, const QPointF &end);

/// How far from its corner a bend of `radius` begins, in points.
[[nodiscard]] constexpr qreal continuousCornerReach(qreal radius)
{
    return 1.2 * radius;
}
