#pragma once

#include "StatusItem.h"

#include <QList>
#include <QPoint>
#include <QRect>

#include <optional>

/// The arithmetic of where a status item is when its panel doesn't say: pure functions of screens, panels
/// and clicks. All rectangles and points are in global logical pixels unless they say device pixels.

/// A screen. As with the toolkit, a screen's top left corner is the same in logical and in device pixels.
struct ScreenShape {
    QRect geometry;
    /// `geometry` without the panels; the same as `geometry` where the desktop doesn't tell.
    QRect availableGeometry;
    /// Device pixels to a logical pixel.
    qreal scale = 1;
};

/// A panel, and what is known of the status items in it.
struct PanelShape {
    enum class Items { Unknown, Here };

    QRect rectangle;
    Items items = Items::Unknown;
    /// The part of the panel that holds the items; empty if only the panel is known.
    QRect itemArea;

    bool operator==(const PanelShape &) const = default;
};

/// A rectangle that is in device pixels, on the screen that holds its centre.
[[nodiscard]] QRect fromDevicePixels(const QRect &rectangle, const QList<ScreenShape> &screens);

/// Panels as far as the screens' available geometry gives them away.
[[nodiscard]] QList<PanelShape> panelsBesideAvailableGeometry(const QList<ScreenShape> &screens);

/// Whether a status item can have been clicked there: on a panel, or close to a screen's edge where no panel
/// is known (they may hide themselves).
[[nodiscard]] bool
isPlausibleClick(QPoint point, const QList<ScreenShape> &screens, const QList<PanelShape> &panels);

/// The unit in which a panel hands over the place of a click; each has its own idea.
enum class ClickUnit { LogicalPixels, DevicePixels };

/// The place that a panel handed over, if it can be one: in `unit`, else in the other unit. Some panels send
/// 0,0 or a place relative to their own window.
[[nodiscard]] std::optional<QPoint> plausibleReportedClick(
    QPoint reported, ClickUnit unit, const QList<ScreenShape> &screens, const QList<PanelShape> &panels);

/// Where things hang for an item that was last clicked at `click`, or, never clicked, is believed in the
/// likeliest panel, or in the screen corner where panels usually are. The first screen is the primary one.
[[nodiscard]] StatusItem::Anchor statusItemAnchor(
    std::optional<QPoint> click, const QList<ScreenShape> &screens, const QList<PanelShape> &panels);
