#pragma once

#include "continuousRoundedRect.h"

#include <QRect>

/// What a thumbnail's image is painted into.
struct ThumbnailFrame {
    /// In points.
    QRect rect;
    /// In points.
    qreal cornerRadius = 0;
    /// Pixels to a point.
    qreal pixelRatio = 1;

    /// What the corners' rounding leaves of `rect`.
    [[nodiscard]] QPainterPath outline() const { return continuousRoundedRect(rect, cornerRadius); }

    /// The whole pixels that it takes.
    [[nodiscard]] QSize pixelSize() const { return (QSizeF(rect.size()) * pixelRatio).toSize(); }

    /// The same with its corner at the origin, as a picture of it has it.
    [[nodiscard]] ThumbnailFrame atOrigin() const
    {
        return {.rect = {QPoint(), rect.size()}, .cornerRadius = cornerRadius, .pixelRatio = pixelRatio};
    }
};
