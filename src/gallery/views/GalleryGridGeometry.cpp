#include "GalleryGridGeometry.h"

#include <algorithm>

int GalleryGridGeometry::height() const
{
    const int rows = (cellCount + columns() - 1) / columns();
    return 2 * outset + std::max(0, rows * metrics.rowPitch() - metrics.spacing);
}

QRect GalleryGridGeometry::cell(int index) const
{
    const int left = (width - metrics.widthOf(columns())) / 2;
    const int column = index % columns();
    const int x = left + column * (metrics.cellWidth + metrics.spacing);
    const int mirroredX = width - x - metrics.cellWidth;
    return {
        direction == Qt::RightToLeft ? mirroredX : x, outset + index / columns() * metrics.rowPitch(),
        metrics.cellWidth, metrics.rowHeight()};
}

int GalleryGridGeometry::indexAt(QPoint point) const
{
    const Range row = rowsIn(QRect(point, QSize(1, 1)));
    for (int index = row.first; index < row.end; ++index) {
        if (cell(index).contains(point)) {
            return index;
        }
    }
    return -1;
}

GalleryGridGeometry::Range GalleryGridGeometry::rowsIn(const QRect &area) const
{
    if (area.isEmpty()) {
        return {};
    }
    const int pitch = metrics.rowPitch();
    // The gap above a row counts as its row: a little more costs nothing.
    const int firstRow = std::max(0, (area.top() - outset) / pitch);
    const int lastRow = (area.bottom() - outset) / pitch;
    const int first = std::min(firstRow * columns(), cellCount);
    return {.first = first, .end = std::clamp((lastRow + 1) * columns(), first, cellCount)};
}
