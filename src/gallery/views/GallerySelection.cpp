#include "GallerySelection.h"

#include "ScreenshotGalleryViewModel.h"

#include <algorithm>

void GallerySelection::setAnchor(const QString &id)
{
    m_anchorID = id;
    m_before = m_model.selectedIDs();
    m_extended = m_before;
}

void GallerySelection::extendTo(int index, int fallbackIndex)
{
    const QList<ScreenshotItem> &items = m_model.displayedScreenshots();
    if (anchorIndex() < 0) {
        setAnchor(items.at(fallbackIndex).id);
    } else if (m_model.selectedIDs() != m_extended) {
        // Changed by somebody else in the meantime.
        setAnchor(m_anchorID);
    }
    const auto [first, last] = std::minmax({anchorIndex(), index});
    m_extended = m_before;
    for (int between = first; between <= last; ++between) {
        m_extended.insert(items.at(between).id);
    }
    m_model.setSelectedIDs(m_extended);
}

int GallerySelection::anchorIndex() const
{
    const QList<ScreenshotItem> &items = m_model.displayedScreenshots();
    const auto found = std::ranges::find(items, m_anchorID, &ScreenshotItem::id);
    return found == items.end() ? -1 : int(found - items.begin());
}
