#pragma once

#include "PopoverAppearance.h"

/// How the program's popovers look: corners of radius 12, an arrow of 22 × 10 that grows out of the edge and
/// ends in a soft tip, and the surface that menus have too.
class PopoverFrame final : public PopoverAppearance {
public:
    [[nodiscard]] QMargins shadowMargins() const override;
    [[nodiscard]] QSize arrowSize() const override;
    [[nodiscard]] QPainterPath outline(const PopoverGeometry &geometry) const override;
    void paint(QPainter &painter, const PopoverGeometry &geometry, Shadow shadow) const override;
};
