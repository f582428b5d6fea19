#include "DesktopPanels.h"

#include "X11Server.h"
#include "XcbReply.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

namespace {

/// A panel's windows are few; what is deeper than a plugin's plug in its socket isn't looked at.
constexpr int deepestPluginWindow = 4;
/// In 32-bit units, more than any list of windows or types is long.
constexpr uint32_t longestProperty = 4096;

QList<uint32_t> property(xcb_connection_t *connection, xcb_window_t window, const char *name)
{
    const auto cookie = xcb_get_property(
        connection, 0, window, x11::atom(connection, name), XCB_GET_PROPERTY_TYPE_ANY, 0, longestProperty);
    const XcbReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection, cookie, nullptr));
    if (!reply || reply->format != 32) {
        return {};
    }
    const auto *values = static_cast<const uint32_t *>(xcb_get_property_value(reply.get()));
    return {values, values + reply->value_len};
}

bool isDock(xcb_connection_t *connection, xcb_window_t window)
{
    return property(connection, window, "_NET_WM_WINDOW_TYPE")
        .contains(x11::atom(connection, "_NET_WM_WINDOW_TYPE_DOCK"));
}

bool belongsTo(xcb_connection_t *connection, xcb_window_t window, uint process)
{
    return property(connection, window, "_NET_WM_PID") == QList<uint32_t>{process};
}

/// In device pixels of the root window; empty when the window is gone or not shown.
QRect rootGeometry(xcb_connection_t *connection, xcb_window_t window)
{
    const auto attributesCookie = xcb_get_window_attributes(connection, window);
    const auto geometryCookie = xcb_get_geometry(connection, window);
    const auto originCookie = xcb_translate_coordinates(connection, window, x11::root(connection), 0, 0);
    const XcbReply<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(connection, attributesCookie, nullptr));
    const XcbReply<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(connection, geometryCookie, nullptr));
    const XcbReply<xcb_translate_coordinates_reply_t> origin(
        xcb_translate_coordinates_reply(connection, originCookie, nullptr));
    if (!attributes || !geometry || !origin || attributes->map_state != XCB_MAP_STATE_VIEWABLE) {
        return {};
    }
    return {origin->dst_x, origin->dst_y, geometry->width, geometry->height};
}

/// The window of `process` inside `window`, down to a few levels, or XCB_WINDOW_NONE.
xcb_window_t windowInside(xcb_connection_t *connection, xcb_window_t window, uint process, int levels)
{
    const XcbReply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection, xcb_query_tree(connection, window), nullptr));
    if (!tree || levels == 0) {
        return XCB_WINDOW_NONE;
    }
    const xcb_window_t *first = xcb_query_tree_children(tree.get());
    const xcb_window_t *last = first + xcb_query_tree_children_length(tree.get());
    const auto *found = std::find_if(first, last, [connection, process](xcb_window_t child) {
        return belongsTo(connection, child, process);
    });
    if (found != last) {
        return *found;
    }
    for (const auto *child = first; child != last; ++child) {
        if (const xcb_window_t inside = windowInside(connection, *child, process, levels - 1)) {
            return inside;
        }
    }
    return XCB_WINDOW_NONE;
}

PanelShape panelShape(
    xcb_connection_t *connection, xcb_window_t window, std::optional<uint> statusNotifierHost,
    const QList<ScreenShape> &screens)
{
    PanelShape panel = {
        .rectangle = fromDevicePixels(rootGeometry(connection, window), screens), .itemArea = {}};
    if (!statusNotifierHost) {
        return panel;
    }
    if (const xcb_window_t plugin =
            windowInside(connection, window, *statusNotifierHost, deepestPluginWindow)) {
        panel.itemArea = fromDevicePixels(rootGeometry(connection, plugin), screens);
    }
    if (!panel.itemArea.isEmpty() || belongsTo(connection, window, *statusNotifierHost)) {
        panel.items = PanelShape::Items::Here;
    }
    return panel;
}

QList<PanelShape> dockWindows(
    xcb_connection_t *connection, std::optional<uint> statusNotifierHost, const QList<ScreenShape> &screens)
{
    QList<PanelShape> panels;
    for (const xcb_window_t window : property(connection, x11::root(connection), "_NET_CLIENT_LIST")) {
        if (!isDock(connection, window)) {
            continue;
        }
        const PanelShape panel = panelShape(connection, window, statusNotifierHost, screens);
        if (!panel.rectangle.isEmpty()) {
            panels.append(panel);
        }
    }
    return panels;
}

} // namespace

QList<ScreenShape> desktopScreens()
{
    QList<ScreenShape> shapes;
    const QList<QScreen *> screens = QGuiApplication::screens();
    for (const QScreen *screen : screens) {
        shapes.append(
            {.geometry = screen->geometry(),
             .availableGeometry = screen->availableGeometry(),
             .scale = screen->devicePixelRatio()});
    }
    return shapes;
}

QList<PanelShape> desktopPanels(std::optional<uint> statusNotifierHost)
{
    const QList<ScreenShape> screens = desktopScreens();
    if (xcb_connection_t *connection = x11::connection()) {
        const QList<PanelShape> panels = dockWindows(connection, statusNotifierHost, screens);
        if (!panels.isEmpty()) {
            return panels;
        }
    }
    return panelsBesideAvailableGeometry(screens);
}

bool isPointerPlaceKnown()
{
    return x11::connection() != nullptr && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}
