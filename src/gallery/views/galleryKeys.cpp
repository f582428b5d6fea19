#include "galleryKeys.h"

#include "GalleryGridGeometry.h"

#include <QKeyEvent>

#include <algorithm>

namespace {

/// By how much the index changes; the ends are far enough for any grid.
std::optional<int> step(int key, const GalleryGridGeometry &geometry, int rowsPerPage)
{
    const int forward = geometry.direction == Qt::RightToLeft ? -1 : 1;
    switch (key) {
    case Qt::Key_Left:
        return -forward;
    case Qt::Key_Right:
        return forward;
    case Qt::Key_Up:
        return -geometry.columns();
    case Qt::Key_Down:
        return geometry.columns();
    case Qt::Key_Home:
        return -geometry.cellCount;
    case Qt::Key_End:
        return geometry.cellCount;
    case Qt::Key_PageUp:
        return -rowsPerPage * geometry.columns();
    case Qt::Key_PageDown:
        return rowsPerPage * geometry.columns();
    default:
        return std::nullopt;
    }
}

/// The last cell above or below `current`, in its column, on the way to `target` outside of the grid.
int lastOnTheWay(int current, int target, const GalleryGridGeometry &geometry)
{
    const int columns = geometry.columns();
    const int column = current % columns;
    if (target < 0) {
        return column;
    }
    const int lastRow = (geometry.cellCount - 1) / columns;
    // Down from the last row but one goes to the last cell where the column has none there.
    return current / columns == lastRow ? current
                                        : std::min(lastRow * columns + column, geometry.cellCount - 1);
}

} // namespace

std::optional<int>
galleryIndexForKey(const QKeyEvent &event, int current, const GalleryGridGeometry &geometry, int rowsPerPage)
{
    const Qt::KeyboardModifiers meaningful = event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier);
    const std::optional<int> by = step(event.key(), geometry, rowsPerPage);
    if (!by || meaningful != Qt::NoModifier || geometry.cellCount == 0) {
        return std::nullopt;
    }
    const bool isToEnd = event.key() == Qt::Key_Home || event.key() == Qt::Key_End;
    if (current < 0) {
        return event.key() == Qt::Key_End ? geometry.cellCount - 1 : 0;
    }
    const int target = current + *by;
    if (target >= 0 && target < geometry.cellCount) {
        return target;
    }
    return isToEnd || std::abs(*by) == 1 ? std::clamp(target, 0, geometry.cellCount - 1)
                                         : lastOnTheWay(current, target, geometry);
}
