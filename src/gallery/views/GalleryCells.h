#pragma once

#include "GalleryGridGeometry.h"
#include "GalleryThumbnail.h"

#include <functional>
#include <unordered_map>
#include <vector>

class ScreenshotGalleryViewModel;

/// The widgets of a grid's cells: only for a range of the screenshots, used again for others when the range
/// moves. A screenshot that stays in the range keeps its widget, wherever its place is then.
class GalleryCells final {
public:
    /// `tap` is what a click on a cell does. The grid owns the widgets, and with the model lives longer than
    /// this.
    GalleryCells(
        QWidget &grid, const ScreenshotGalleryViewModel &model,
        std::function<void(const ScreenshotItem &)> tap);

    /// Shows the model in the rows in and near `rectInSight`. Thumbnails in sight are loaded before the
    /// others.
    void update(const GalleryGridGeometry &geometry, const QRect &rectInSight);

    /// Tells each cell how the pointer and the keyboard stand to it; those that stand out come to the front.
    void updateAttention(const std::function<GalleryThumbnail::Attention(const QString &id)> &attentionOf);

    /// Null while there is none.
    [[nodiscard]] GalleryThumbnail *find(const QString &id) const;

    /// The screenshot's file has changed.
    void reload(const QString &id);

private:
    using Cells = std::unordered_map<QString, GalleryThumbnail *>; // by the screenshot's id

    void keepOnly(GalleryGridGeometry::Range range);
    void setAside(const Cells &cells);
    void deleteSuperfluous();
    /// The screenshot's own, else one that isn't in use, else a new one.
    [[nodiscard]] GalleryThumbnail &cellFor(const ScreenshotItem &screenshot);
    [[nodiscard]] GalleryThumbnail *takeSpare();
    [[nodiscard]] GalleryThumbnail::Selection selectionOf(const QString &id) const;

    QWidget &m_grid;
    const ScreenshotGalleryViewModel &m_model;
    const std::function<void(const ScreenshotItem &)> m_tap;

    GalleryGridMetrics m_metrics;
    Cells m_cells;
    std::vector<GalleryThumbnail *> m_spare;
};
