#include "continuousRoundedRect.h"

#include <algorithm>

void continuousCornerTo(QPainterPath &path, const QPointF &corner, const QPointF &end)
{
    // With a reach of 1.2 radii, this much of the way to the corner puts the middle of the curve where the
    // middle of the circle's arc lies, 0.293 radii from either edge.
    constexpr qreal pull = 0.6823;
    const QPointF start = path.currentPosition();
    path.cubicTo(start + (corner - start) * pull, end + (corner - end) * pull, end);
}

QPainterPath continuousRoundedRect(const QRectF &rect, qreal radius)
{
    const qreal reach = std::min({continuousCornerReach(radius), rect.width() / 2, rect.height() / 2});
    QPainterPath path(rect.topLeft() + QPointF(reach, 0));
    path.lineTo(rect.topRight() - QPointF(reach, 0));
    continuousCornerTo(path, rect.topRight(), rect.topRight() + QPointF(0, reach));
    path.lineTo(rect.bottomRight() - QPointF(0, reach));
    continuousCornerTo(path, rect.bottomRight(), rect.bottomRight() - QPointF(reach, 0));
    path.lineTo(rect.bottomLeft() + QPointF(reach, 0));
    continuousCornerTo(path, rect.bottomLeft(), rect.bottomLeft() - QPointF(0, reach));
    path.lineTo(rect.topLeft() + QPointF(0, reach));
    continuousCornerTo(path, rect.topLeft(), rect.topLeft() + QPointF(reach, 0));
    path.closeSubpath();
    return path;
}
