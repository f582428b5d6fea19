#pragma once

#include <QColor>
#include <QImage>
#include <QPainterPath>

/// How far down a shadow lies and how far it is blurred, in points.
struct SoftShadow {
    int offset;
    int blur;
};

/// The outline's shadow in one colour, in an image of `area`, both in points. A pixel to a point is enough
/// for something so soft.
[[nodiscard]] QImage
renderShadow(const QPainterPath &outline, const QRect &area, const SoftShadow &shadow, const QColor &color);
