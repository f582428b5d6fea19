#include "PopoverPlacement.h"

#include <algorithm>

namespace {

/// Between the body and the edge of the screen.
constexpr int screenMargin = 8;
/// Between the panel and the arrow's tip.
constexpr int tipGap = 1;
/// Between the middle of the tip and the body's end: the corner's radius and half the arrow, and a little.
constexpr int tipInset = 26;

/// A panel on one side of the screen puts the popover on its inner side; where no panel tells, below if there
/// is room, else above.
PopoverEdge chooseEdge(const PopoverAnchor &anchor, int heightNeeded)
{
    if (anchor.arrow == PopoverAnchor::Arrow::None) {
        return PopoverEdge::Free;
    }
    const QPoint middle = anchor.rectangle.center();
    const QRect &area = anchor.availableArea;
    if (middle.y() < area.top()) {
        return PopoverEdge::Below;
    }
    if (middle.y() > area.bottom()) {
        return PopoverEdge::Above;
    }
    if (middle.x() < area.left()) {
        return PopoverEdge::Right;
    }
    if (middle.x() > area.right()) {
        return PopoverEdge::Left;
    }
    const bool fitsBelow = anchor.rectangle.bottom() + heightNeeded <= anchor.screen.bottom();
    return fitsBelow ? PopoverEdge::Below : PopoverEdge::Above;
}

/// `value` inside [low, high], or as near to `low` as it gets when they are crossed.
int clamped(int value, int low, int high)
{
    return std::max(low, std::min(value, high));
}

/// The body's upper left corner; what is inside the screen along the edge is kept there by the caller.
QPoint bodyCorner(PopoverEdge edge, QSize content, const PopoverAnchor &anchor, int arrowHeight)
{
    const QRect &item = anchor.rectangle;
    const QRect &area = anchor.availableArea;
    const int distance = tipGap + arrowHeight;
    const int centredX = item.center().x() - content.width() / 2;
    const int centredY = item.center().y() - content.height() / 2;
    switch (edge) {
    case PopoverEdge::Below:
        return {centredX, std::max(item.bottom() + 1, area.top()) + distance};
    case PopoverEdge::Above:
        return {centredX, std::min(item.top(), area.bottom() + 1) - distance - content.height()};
    case PopoverEdge::Right:
        return {std::max(item.right() + 1, area.left()) + distance, centredY};
    case PopoverEdge::Left:
        return {std::min(item.left(), area.right() + 1) - distance - content.width(), centredY};
    case PopoverEdge::Free:
        return {item.right() + 1 - content.width(), item.top()};
    }
    Q_UNREACHABLE();
}

QMargins withoutTipSide(QMargins margins, PopoverEdge edge)
{
    switch (edge) {
    case PopoverEdge::Below:
        margins.setTop(0);
        break;
    case PopoverEdge::Above:
        margins.setBottom(0);
        break;
    case PopoverEdge::Right:
        margins.setLeft(0);
        break;
    case PopoverEdge::Left:
        margins.setRight(0);
        break;
    case PopoverEdge::Free:
        break;
    }
    return margins;
}

QMargins arrowMargins(PopoverEdge edge, int height)
{
    switch (edge) {
    case PopoverEdge::Below:
        return {0, height, 0, 0};
    case PopoverEdge::Above:
        return {0, 0, 0, height};
    case PopoverEdge::Right:
        return {height, 0, 0, 0};
    case PopoverEdge::Left:
        return {0, 0, height, 0};
    case PopoverEdge::Free:
        return {};
    }
    Q_UNREACHABLE();
}

} // namespace

PopoverPlacement
placePopover(QSize contentSize, const PopoverAnchor &anchor, QSize arrowSize, QMargins shadowMargins)
{
    const int arrowHeight = arrowSize.height();
    const PopoverEdge edge = chooseEdge(anchor, contentSize.height() + arrowHeight + tipGap + screenMargin);

    const QRect inside = anchor.screen.adjusted(screenMargin, screenMargin, -screenMargin, -screenMargin);
    const bool isVertical = edge == PopoverEdge::Left || edge == PopoverEdge::Right;
    QRect body(bodyCorner(edge, contentSize, anchor, arrowHeight), contentSize);
    if (!isVertical) {
        body.moveLeft(clamped(body.left(), inside.left(), inside.right() + 1 - body.width()));
    }
    if (isVertical || edge == PopoverEdge::Free) {
        body.moveTop(clamped(body.top(), inside.top(), inside.bottom() + 1 - body.height()));
    }

    // The shadow stops at the tip, where the panel is, and at the edges of the screen: a window that reached
    // over them would be pushed back by the window manager, and the tip with it.
    const QRect hanging = body.marginsAdded(arrowMargins(edge, arrowHeight));
    const QRect window = hanging.marginsAdded(withoutTipSide(shadowMargins, edge))
                             .intersected(anchor.availableArea.united(hanging));
    const QRect local = body.translated(-window.topLeft());
    const QPoint target = anchor.rectangle.center() - window.topLeft();
    const int tip = isVertical ? clamped(target.y(), local.top() + tipInset, local.bottom() + 1 - tipInset)
                               : clamped(target.x(), local.left() + tipInset, local.right() + 1 - tipInset);
    return {
        .window = window,
        .geometry = {.body = QRectF(local), .edge = edge, .arrowTip = static_cast<qreal>(tip)},
    };
}
