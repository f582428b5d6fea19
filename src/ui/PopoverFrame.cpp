#include "PopoverFrame.h"

#include "FloatingSurface.h"
#include "continuousRoundedRect.h"

#include <QTransform>

#include <algorithm>

namespace {

constexpr qreal cornerRadius = 12;
constexpr int arrowBreadth = 22;
constexpr int arrowHeight = 10;

/// From the edge at the left of the arrow over its tip to the edge at the right: straight sides that leave
/// the edge in a curve and meet in a soft tip.
void addArrow(QPainterPath &path, qreal tip)
{
    constexpr qreal half = arrowBreadth / 2.0;
    constexpr qreal slope = 1.5;
    // Half the breadth of the soft tip; the sides would meet as far above it as they go down beside it.
    constexpr qreal tipHalf = 1.8;
    constexpr qreal tipDrop = tipHalf * slope / 2;
    // Where the sides would meet the edge, and where the curves end on them.
    constexpr qreal foot = tipHalf + (arrowHeight - tipDrop) / slope;
    constexpr qreal bend = (half - foot) * 0.555;

    const auto at = [tip](qreal x, qreal height) { return QPointF(tip + x, -height); };
    path.lineTo(at(-half, 0));
    path.quadTo(at(-foot, 0), at(-foot + bend, bend * slope));
    path.lineTo(at(-tipHalf, arrowHeight - tipDrop));
    path.quadTo(at(0, arrowHeight + tipDrop), at(tipHalf, arrowHeight - tipDrop));
    path.lineTo(at(foot - bend, bend * slope));
    path.quadTo(at(foot, 0), at(half, 0));
}

/// A body of this size whose upper left corner is the origin, with the arrow on its upper edge.
QPainterPath outlineWithArrowOnTop(QSizeF size, qreal tip)
{
    const qreal reach = continuousCornerReach(cornerRadius);
    const qreal nearest = reach + arrowBreadth / 2.0;
    QPainterPath path(QPointF(reach, 0));
    addArrow(path, std::clamp(tip, nearest, std::max(nearest, size.width() - nearest)));
    path.lineTo(size.width() - reach, 0);
    continuousCornerTo(path, {size.width(), 0}, {size.width(), reach});
    path.lineTo(size.width(), size.height() - reach);
    continuousCornerTo(path, {size.width(), size.height()}, {size.width() - reach, size.height()});
    path.lineTo(reach, size.height());
    continuousCornerTo(path, {0, size.height()}, {0, size.height() - reach});
    path.lineTo(0, reach);
    continuousCornerTo(path, {0, 0}, {reach, 0});
    path.closeSubpath();
    return path;
}

} // namespace

QMargins PopoverFrame::shadowMargins() const
{
    return FloatingSurface::shadowMargins();
}

QSize PopoverFrame::arrowSize() const
{
    return {arrowBreadth, arrowHeight};
}

QPainterPath PopoverFrame::outline(const PopoverGeometry &geometry) const
{
    const QRectF &body = geometry.body;
    // Each maps the arrow's edge, drawn on top, to where it belongs: mirrored for a popover above its anchor,
    // with the axes exchanged for one beside it.
    switch (geometry.edge) {
    case PopoverEdge::Below: {
        const QPainterPath path = outlineWithArrowOnTop(body.size(), geometry.arrowTip - body.left());
        return QTransform(1, 0, 0, 1, body.left(), body.top()).map(path);
    }
    case PopoverEdge::Above: {
        const QPainterPath path = outlineWithArrowOnTop(body.size(), geometry.arrowTip - body.left());
        return QTransform(1, 0, 0, -1, body.left(), body.bottom()).map(path);
    }
    case PopoverEdge::Right: {
        const QPainterPath path =
            outlineWithArrowOnTop(body.size().transposed(), geometry.arrowTip - body.top());
        return QTransform(0, 1, 1, 0, body.left(), body.top()).map(path);
    }
    case PopoverEdge::Left: {
        const QPainterPath path =
            outlineWithArrowOnTop(body.size().transposed(), geometry.arrowTip - body.top());
        return QTransform(0, 1, -1, 0, body.right(), body.top()).map(path);
    }
    case PopoverEdge::Free:
        break;
    }
    return continuousRoundedRect(body, cornerRadius);
}

void PopoverFrame::paint(QPainter &painter, const PopoverGeometry &geometry, Shadow shadow) const
{
    FloatingSurface::paint(painter, outline(geometry), shadow);
}
