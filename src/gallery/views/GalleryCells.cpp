#include "GalleryCells.h"

#include "ScreenshotGalleryViewModel.h"

#include <utility>

namespace {

/// How far above and below what is in sight cells exist, in heights of what is in sight: the beginning of the
/// page that is scrolled to is there already.
constexpr qreal margin = 0.5;

} // namespace

GalleryCells::GalleryCells(
    QWidget &grid, const ScreenshotGalleryViewModel &model, std::function<void(const ScreenshotItem &)> tap)
    : m_grid(grid),
      m_model(model),
      m_tap(std::move(tap))
{
}

void GalleryCells::update(const GalleryGridGeometry &geometry, const QRect &rectInSight)
{
    using Priority = ThumbnailLoader::Priority;
    const int nearby = qRound(rectInSight.height() * margin);
    const GalleryGridGeometry::Range inSight = geometry.rowsIn(rectInSight);
    const GalleryGridGeometry::Range range = geometry.rowsIn(rectInSight.adjusted(0, -nearby, 0, nearby));
    if (std::exchange(m_metrics, geometry.metrics) != geometry.metrics) {
        setAside(std::exchange(m_cells, {}));
    }
    keepOnly(range);
    for (int index = range.first; index < range.end; ++index) {
        const ScreenshotItem &screenshot = m_model.displayedScreenshots().at(index);
        GalleryThumbnail &cell = cellFor(screenshot);
        constexpr QPoint outset(GalleryThumbnail::outset, GalleryThumbnail::outset);
        cell.move(geometry.cell(index).topLeft() - outset);
        cell.setFrameNumber(index + 1);
        cell.setSelection(selectionOf(screenshot.id));
        cell.load(inSight.contains(index) ? Priority::Visible : Priority::Nearby);
        cell.show();
    }
    deleteSuperfluous();
}

void GalleryCells::keepOnly(GalleryGridGeometry::Range range)
{
    Cells before = std::exchange(m_cells, {});
    for (int index = range.first; index < range.end; ++index) {
        m_cells.insert(before.extract(m_model.displayedScreenshots().at(index).id));
    }
    setAside(before);
}

void GalleryCells::setAside(const Cells &cells)
{
    for (const auto &[id, cell] : cells) {
        cell->cancelLoading();
        cell->hide();
        m_spare.push_back(cell);
    }
}

void GalleryCells::deleteSuperfluous()
{
    while (m_spare.size() > m_cells.size()) {
        delete m_spare.back();
        m_spare.pop_back();
    }
}

GalleryThumbnail &GalleryCells::cellFor(const ScreenshotItem &screenshot)
{
    GalleryThumbnail *&cell = m_cells[screenshot.id];
    if (cell == nullptr) {
        cell = takeSpare();
    } else if (cell->screenshot() == screenshot) {
        return *cell;
    }
    cell->setUp(screenshot, m_metrics, selectionOf(screenshot.id));
    cell->onTap = [this, screenshot] { m_tap(screenshot); };
    return *cell;
}

GalleryThumbnail *GalleryCells::takeSpare()
{
    if (m_spare.empty()) {
        return new GalleryThumbnail(&m_grid);
    }
    GalleryThumbnail *cell = m_spare.back();
    m_spare.pop_back();
    return cell;
}

GalleryThumbnail::Selection GalleryCells::selectionOf(const QString &id) const
{
    using Selection = GalleryThumbnail::Selection;
    if (!m_model.isSelectionMode()) {
        return Selection::Off;
    }
    return m_model.selectedIDs().contains(id) ? Selection::Selected : Selection::Unselected;
}

void GalleryCells::updateAttention(
    const std::function<GalleryThumbnail::Attention(const QString &)> &attentionOf)
{
    for (const auto &[id, cell] : m_cells) {
        const GalleryThumbnail::Attention attention = attentionOf(id);
        if (attention == cell->attention()) {
            continue;
        }
        cell->setAttention(attention);
        if (attention.isHovered || attention.hasFocus) {
            cell->raise();
        }
    }
}

GalleryThumbnail *GalleryCells::find(const QString &id) const
{
    const auto found = m_cells.find(id);
    return found == m_cells.end() ? nullptr : found->second;
}

void GalleryCells::reload(const QString &id)
{
    if (GalleryThumbnail *cell = find(id)) {
        cell->reload(ThumbnailLoader::Priority::Visible);
    }
}
