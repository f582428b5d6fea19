#include "GalleryGridAccessible.h"

#include "GalleryGrid.h"
#include "GalleryItemAccessible.h"

#include <utility>

namespace {

QAccessibleInterface *makeInterface(const QString & /*className*/, QObject *object)
{
    auto *grid = qobject_cast<GalleryGrid *>(object);
    return grid == nullptr ? nullptr : new GalleryGridAccessible(*grid);
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
      m_toldCount(grid.count())
{
}

GalleryGridAccessible::~GalleryGridAccessible()
{
    for (const auto &[index, id] : m_items) {
        QAccessible::deleteAccessibleInterface(id);
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
        return QAccessible::accessibleInterface(known->second);
    }
    auto *item = new GalleryItemAccessible(grid(), index);
    m_items.emplace(index, QAccessible::registerAccessibleInterface(item));
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

void GalleryGridAccessible::removeSuperfluousItems()
{
    std::erase_if(m_items, [count = childCount()](const auto &item) {
        const bool isSuperfluous = item.first >= count;
        if (isSuperfluous) {
            QAccessible::deleteAccessibleInterface(item.second);
        }
        return isSuperfluous;
    });
}

void GalleryGridAccessible::update(GalleryGrid &grid)
{
    GalleryGridAccessible *list = interfaceOf(grid);
    if (list == nullptr) {
        return;
    }
    list->removeSuperfluousItems();
    if (std::exchange(list->m_toldCount, grid.count()) != grid.count()) {
        QAccessibleEvent event(&grid, QAccessible::ObjectReorder);
        QAccessible::updateAccessibility(&event);
    }
}
