#include "GalleryGridAccessible.h"

#include "GalleryGrid.h"
#include "GalleryItemAccessible.h"
#include "ScreenshotGalleryViewModel.h"

#include <utility>
#include <vector>

namespace {

QAccessibleInterface *makeInterface(const QString & /*className*/, QObject *object)
{
    auto *grid = qobject_cast<GalleryGrid *>(object);
    return grid == nullptr ? nullptr : new GalleryGridAccessible(*grid);
}

std::size_t fingerprint(const QList<ScreenshotItem> &screenshots)
{
    std::size_t hash = 0;
    for (const ScreenshotItem &screenshot : screenshots) {
        hash = qHash(screenshot.id, hash);
    }
    return hash;
}

bool isSelected(const GalleryGrid &grid, int index)
{
    return grid.model().isSelectionMode() && grid.model().selectedIDs().contains(grid.screenshotAt(index).id);
}

GalleryGridAccessible *interfaceOf(GalleryGrid &grid)
{
    return QAccessible::isActive()
               ? static_cast<GalleryGridAccessible *>(QAccessible::queryAccessibleInterface(&grid))
               : nullptr;
}

} // namespace

void GalleryGridAccessible::install()
{
    static const bool isInstalled = [] {
        QAccessible::installFactory(makeInterface);
        return true;
    }();
    static_cast<void>(isInstalled);
}

GalleryGridAccessible::GalleryGridAccessible(GalleryGrid &grid)
    : QAccessibleWidget(&grid, QAccessible::List),
      m_toldScreenshots(fingerprint(grid.model().displayedScreenshots()))
{
}

GalleryGridAccessible::~GalleryGridAccessible()
{
    for (const auto &[index, item] : m_items) {
        QAccessible::deleteAccessibleInterface(item.id);
    }
}

GalleryGrid &GalleryGridAccessible::grid() const
{
    return static_cast<GalleryGrid &>(*object());
}

QString GalleryGridAccessible::text(QAccessible::Text kind) const
{
    return kind == QAccessible::Name ? GalleryGrid::tr("Screenshots") : QAccessibleWidget::text(kind);
}

int GalleryGridAccessible::childCount() const
{
    return grid().count();
}

QAccessibleInterface *GalleryGridAccessible::child(int index) const
{
    if (index < 0 || index >= childCount()) {
        return nullptr;
    }
    const auto known = m_items.find(index);
    if (known != m_items.end()) {
        return QAccessible::accessibleInterface(known->second.id);
    }
    auto *item = new GalleryItemAccessible(grid(), index);
    m_items.emplace(
        index, Item{
                   .id = QAccessible::registerAccessibleInterface(item),
                   .isSelected = isSelected(grid(), index),
               });
    return item;
}

QAccessibleInterface *GalleryGridAccessible::childAt(int x, int y) const
{
    return child(grid().indexAt(grid().mapFromGlobal(QPoint(x, y))));
}

int GalleryGridAccessible::indexOfChild(const QAccessibleInterface *child) const
{
    const auto *item = dynamic_cast<const GalleryItemAccessible *>(child);
    return item == nullptr ? -1 : item->index();
}

QAccessibleInterface *GalleryGridAccessible::focusChild() const
{
    return grid().hasFocus() ? child(grid().currentIndex().value_or(-1)) : nullptr;
}

void GalleryGridAccessible::tellFocus(GalleryGrid &grid)
{
    if (QAccessible::isActive()) {
        QAccessibleEvent event(&grid, QAccessible::Focus);
        event.setChild(grid.currentIndex().value_or(-1));
        QAccessible::updateAccessibility(&event);
    }
}

void GalleryGridAccessible::update(GalleryGrid &grid)
{
    if (GalleryGridAccessible *list = interfaceOf(grid)) {
        list->tellScreenshots();
        list->tellSelection();
    }
}

void GalleryGridAccessible::tellScreenshots()
{
    const std::size_t now = fingerprint(grid().model().displayedScreenshots());
    if (std::exchange(m_toldScreenshots, now) == now) {
        return;
    }
    std::erase_if(m_items, [count = childCount()](const auto &item) {
        const bool hasGone = item.first >= count;
        if (hasGone) {
            QAccessible::deleteAccessibleInterface(item.second.id);
        }
        return hasGone;
    });
    QAccessibleEvent event(&grid(), QAccessible::ObjectReorder);
    QAccessible::updateAccessibility(&event);
}

void GalleryGridAccessible::tellSelection()
{
    // Whoever is told may ask for more items, so the changes are gathered first.
    std::vector<int> changed;
    for (auto &[index, item] : m_items) {
        const bool isNow = isSelected(grid(), index);
        if (std::exchange(item.isSelected, isNow) != isNow) {
            changed.push_back(index);
        }
    }
    for (const int index : changed) {
        QAccessibleEvent event(
            &grid(), isSelected(grid(), index) ? QAccessible::SelectionAdd : QAccessible::SelectionRemove);
        event.setChild(index);
        QAccessible::updateAccessibility(&event);
    }
}
