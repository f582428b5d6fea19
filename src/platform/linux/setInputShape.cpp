#include "setInputShape.h"

#include "X11Server.h"

#include <QWindow>

#include <xcb/shape.h>

#include <vector>

void setInputShape(const QWindow &window, const QRegion &region)
{
    xcb_connection_t *const xcb = x11::connection();
    if (xcb == nullptr) {
        return;
    }
    const qreal scale = window.devicePixelRatio();
    std::vector<xcb_rectangle_t> rectangles;
    rectangles.reserve(static_cast<size_t>(region.rectCount()));
    for (const QRect &rectangle : region) {
        const QRect device = QRectF(rectangle.topLeft() * scale, rectangle.size() * scale).toAlignedRect();
        rectangles.push_back({
            .x = static_cast<int16_t>(device.x()),
            .y = static_cast<int16_t>(device.y()),
            .width = static_cast<uint16_t>(device.width()),
            .height = static_cast<uint16_t>(device.height()),
        });
    }
    xcb_shape_rectangles(
        xcb, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED,
        static_cast<xcb_window_t>(window.winId()), 0, 0, static_cast<uint32_t>(rectangles.size()),
        rectangles.data());
    xcb_flush(xcb);
}
