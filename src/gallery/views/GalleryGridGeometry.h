#pragma once

#include "GalleryGridMetrics.h"

#include <QRect>

/// Where the cells of a grid lie, by their index. A value, made afresh whenever it is needed: nothing in it
/// grows with the number of cells.
struct GalleryGridGeometry {
    /// Indices from `first` up to, but without, `end`.
    struct Range {
        int first = 0;
        int end = 0;

        [[nodiscard]] bool contains(int index) const { return index >= first && index < end; }
    };

    GalleryGridMetrics metrics;
    int cellCount = 0;
    /// Around the cells on every side; what is wider than the columns is shared between left and right.
    int outset = 0;
    /// Of the whole grid, with the outsets.
    int width = 0;
    Qt::LayoutDirection direction = Qt::LeftToRight;

    [[nodiscard]] int columns() const { return metrics.columnCountFitting(width - 2 * outset); }

    [[nodiscard]] int height() const;

    /// The cell with its number. The index needn't be one of the grid's.
    [[nodiscard]] QRect cell(int index) const;

    /// -1 between and beside the cells.
    [[nodiscard]] int indexAt(QPoint point) const;

    /// All cells of the rows that `area` touches.
    [[nodiscard]] Range rowsIn(const QRect &area) const;
};
