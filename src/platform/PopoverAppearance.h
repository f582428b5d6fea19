#pragma once

#include <QMargins>
#include <QPainterPath>
#include <QRectF>
#include <QSize>

class QPainter;

/// Where a popover lies, seen from what it hangs on. `Free` hangs on nothing and has no arrow.
enum class PopoverEdge { Below, Above, Left, Right, Free };

/// A popover's shape in the coordinates of its window, in logical pixels.
struct PopoverGeometry {
    /// The rounded rectangle that holds the contents, without arrow and shadow.
    QRectF body;
    PopoverEdge edge = PopoverEdge::Below;
    /// The arrow's tip along the edge that it stands on: an x for Below and Above, a y for Left and Right.
    qreal arrowTip = 0;
};

/// How a popover looks: its outline, its arrow, its shadow. The popover knows where, this knows how.
class PopoverAppearance {
public:
    enum class Shadow { Drawn, None };

    PopoverAppearance() = default;
    virtual ~PopoverAppearance() = default;
    Q_DISABLE_COPY_MOVE(PopoverAppearance)

    /// The room that the shadow takes around body and arrow where a compositor draws translucency, in
    /// logical pixels.
    [[nodiscard]] virtual QMargins shadowMargins() const = 0;

    /// The arrow's breadth along the edge and its height away from it, in logical pixels.
    [[nodiscard]] virtual QSize arrowSize() const = 0;

    /// Body and arrow in one.
    [[nodiscard]] virtual QPainterPath outline(const PopoverGeometry &geometry) const = 0;

    virtual void paint(QPainter &painter, const PopoverGeometry &geometry, Shadow shadow) const = 0;
};
