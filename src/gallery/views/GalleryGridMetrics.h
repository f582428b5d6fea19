#pragma once

#include "GalleryGridSize.h"

/// The numbers of one grid. Lengths are in points.
struct GalleryGridMetrics {
    /// A number under each image: 6 below it, 12 high.
    static constexpr int captionHeight = 18;

    int cellWidth = 0;
    int cellHeight = 0;
    /// Between two cells, across and down.
    int spacing = 0;
    /// At most; fewer where there is less room.
    int columnCount = 1;
    qreal cornerRadius = 0;
    bool showCaption = false;

    bool operator==(const GalleryGridMetrics &) const = default;

    /// From one row to the next.
    [[nodiscard]] int rowPitch() const { return rowHeight() + spacing; }

    /// A cell with its number.
    [[nodiscard]] int rowHeight() const { return cellHeight + (showCaption ? captionHeight : 0); }

    /// Of so many whole columns.
    [[nodiscard]] int widthOf(int columns) const { return columns * (cellWidth + spacing) - spacing; }

    /// As many whole columns as fit, at most `columnCount`, at least one.
    [[nodiscard]] int columnCountFitting(int availableWidth) const;

    /// The grid of a popover.
    [[nodiscard]] static GalleryGridMetrics embedded();

    /// The grid of a window.
    [[nodiscard]] static GalleryGridMetrics expanded(GalleryGridSize size);
};
