#include "StatusItemPlace.h"

#include <QLine>
#include <QMargins>

#include <algorithm>
#include <array>
#include <tuple>

namespace {

/// A status item's usual side in logical pixels.
constexpr int itemSide = 24;
/// No panel is thicker, in logical pixels.
constexpr int thickestPanel = 96;

const ScreenShape *screenAt(QPoint point, const QList<ScreenShape> &screens)
{
    const auto found = std::ranges::find_if(
        screens, [point](const ScreenShape &screen) { return screen.geometry.contains(point); });
    return found == screens.end() ? nullptr : &*found;
}

const PanelShape *panelAt(QPoint point, const QList<PanelShape> &panels)
{
    const auto found = std::ranges::find_if(
        panels, [point](const PanelShape &panel) { return panel.rectangle.contains(point); });
    return found == panels.end() ? nullptr : &*found;
}

QRect deviceGeometry(const ScreenShape &screen)
{
    return {screen.geometry.topLeft(), (QSizeF(screen.geometry.size()) * screen.scale).toSize()};
}

QPoint fromDevicePixels(QPoint point, const ScreenShape &screen)
{
    const QPoint origin = screen.geometry.topLeft();
    return origin + (QPointF(point - origin) / screen.scale).toPoint();
}

bool isHorizontal(const QRect &panel)
{
    return panel.width() >= panel.height();
}

/// The strip of a panel, as thick as the panel, that an item around `centre` takes.
QRect itemIn(const QRect &panel, QPoint centre)
{
    QRect item = panel;
    if (isHorizontal(panel)) {
        item.setWidth(std::min(itemSide, panel.width()));
        item.moveLeft(
            std::clamp(centre.x() - item.width() / 2, panel.left(), panel.right() + 1 - item.width()));
    } else {
        item.setHeight(std::min(itemSide, panel.height()));
        item.moveTop(
            std::clamp(centre.y() - item.height() / 2, panel.top(), panel.bottom() + 1 - item.height()));
    }
    return item;
}

QPoint endOf(const QRect &panel)
{
    return isHorizontal(panel) ? QPoint(panel.right(), panel.center().y())
                               : QPoint(panel.center().x(), panel.bottom());
}

/// The distances of a point inside a screen to its left, top, right and bottom edge.
std::array<int, 4> edgeDistances(QPoint point, const QRect &screen)
{
    return {
        point.x() - screen.left(), point.y() - screen.top(), screen.right() - point.x(),
        screen.bottom() - point.y()};
}

/// The band along the screen's edge nearest to a click, just thick enough to hold the item.
QRect bandAround(QPoint click, const QRect &screen)
{
    const auto distances = edgeDistances(click, screen);
    const auto nearest = std::ranges::min_element(distances);
    const int thickness = std::max(itemSide, *nearest + itemSide / 2);
    switch (nearest - distances.begin()) {
    case 0:
        return {screen.topLeft(), QSize(thickness, screen.height())};
    case 1:
        return {screen.topLeft(), QSize(screen.width(), thickness)};
    case 2:
        return {screen.right() + 1 - thickness, screen.top(), thickness, screen.height()};
    default:
        return {screen.left(), screen.bottom() + 1 - thickness, screen.width(), thickness};
    }
}

/// The panel that most likely holds the status items: one that is known to, else one on the primary screen,
/// else the longest.
const PanelShape *likeliestPanel(const QList<PanelShape> &panels, const QRect &primaryScreen)
{
    const auto likelihood = [&primaryScreen](const PanelShape &panel) {
        return std::tuple(
            panel.items == PanelShape::Items::Here, primaryScreen.contains(panel.rectangle.center()),
            std::max(panel.rectangle.width(), panel.rectangle.height()));
    };
    const auto found = std::ranges::max_element(panels, {}, likelihood);
    return found == panels.end() ? nullptr : &*found;
}

} // namespace

QRect fromDevicePixels(const QRect &rectangle, const QList<ScreenShape> &screens)
{
    for (const ScreenShape &screen : screens) {
        if (deviceGeometry(screen).contains(rectangle.center())) {
            return {
                fromDevicePixels(rectangle.topLeft(), screen),
                (QSizeF(rectangle.size()) / screen.scale).toSize()};
        }
    }
    return rectangle;
}

QList<PanelShape> panelsBesideAvailableGeometry(const QList<ScreenShape> &screens)
{
    QList<PanelShape> panels;
    for (const ScreenShape &screen : screens) {
        const QRect all = screen.geometry;
        const QRect free = screen.availableGeometry;
        for (const QRect &strip :
             {QRect(all.left(), all.top(), all.width(), free.top() - all.top()),
              QRect(all.left(), free.bottom() + 1, all.width(), all.bottom() - free.bottom()),
              QRect(all.left(), all.top(), free.left() - all.left(), all.height()),
              QRect(free.right() + 1, all.top(), all.right() - free.right(), all.height())}) {
            if (!strip.isEmpty()) {
                panels.append({.rectangle = strip, .itemArea = {}});
            }
        }
    }
    return panels;
}

bool isPlausibleClick(QPoint point, const QList<ScreenShape> &screens, const QList<PanelShape> &panels)
{
    const ScreenShape *screen = screenAt(point, screens);
    if (screen == nullptr) {
        return false;
    }
    if (!panels.isEmpty()) {
        return panelAt(point, panels) != nullptr;
    }
    return std::ranges::min(edgeDistances(point, screen->geometry)) < thickestPanel;
}

std::optional<QPoint> plausibleReportedClick(
    QPoint reported, ClickUnit unit, const QList<ScreenShape> &screens, const QList<PanelShape> &panels)
{
    if (reported.isNull()) {
        return std::nullopt;
    }
    const QPoint converted = fromDevicePixels(QRect(reported, QSize(1, 1)), screens).topLeft();
    const bool convertFirst = unit == ClickUnit::DevicePixels;
    for (const QPoint point : {convertFirst ? converted : reported, convertFirst ? reported : converted}) {
        if (isPlausibleClick(point, screens, panels)) {
            return point;
        }
    }
    return std::nullopt;
}

StatusItem::Anchor statusItemAnchor(
    std::optional<QPoint> click, const QList<ScreenShape> &screens, const QList<PanelShape> &panels)
{
    using Source = StatusItem::Anchor::Source;
    if (click && isPlausibleClick(*click, screens, panels)) {
        const PanelShape *panel = panelAt(*click, panels);
        const QRect band =
            panel != nullptr ? panel->rectangle : bandAround(*click, screenAt(*click, screens)->geometry);
        return {.rectangle = itemIn(band, *click), .source = Source::Click};
    }
    const QRect primaryScreen =
        screens.isEmpty() ? QRect(0, 0, itemSide, itemSide) : screens.first().geometry;
    if (const PanelShape *panel = likeliestPanel(panels, primaryScreen)) {
        const QPoint place = panel->itemArea.isEmpty() ? endOf(panel->rectangle) : panel->itemArea.center();
        return {.rectangle = itemIn(panel->rectangle, place), .source = Source::PanelEnd};
    }
    return {
        .rectangle = QRect(primaryScreen.right() + 1 - itemSide, primaryScreen.top(), itemSide, itemSide),
        .source = Source::ScreenCorner};
}
