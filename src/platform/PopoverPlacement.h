#pragma once

#include "PopoverAppearance.h"

#include <QRect>

/// What a popover hangs on and where it may lie, all in global logical pixels.
struct PopoverAnchor {
    /// The status item, or the corner where it would be.
    QRect rectangle;
    /// Whether there is an item to point at.
    enum class Arrow { PointsAtRectangle, None } arrow = Arrow::PointsAtRectangle;
    /// The screen that holds the rectangle, whole and without its panels.
    QRect screen;
    QRect availableArea;
};

/// Where a popover's window goes and where its parts lie in it.
struct PopoverPlacement {
    /// In global logical pixels.
    QRect window;
    PopoverGeometry geometry;
};

/// Hangs contents of `contentSize` under the anchor, or over it or beside it, depending on which side of the
/// screen the panel is; always inside the screen, the arrow's tip on the anchor's middle as far as the
/// rounded corners let it. All lengths in logical pixels.
[[nodiscard]] PopoverPlacement
placePopover(QSize contentSize, const PopoverAnchor &anchor, QSize arrowSize, QMargins shadowMargins);
