#include "activateWindow.h"

#include "X11Server.h"

#include <QWindow>

#include <optional>

namespace {

/// The toolkit's own request bears the time of the last event that it saw. When the user clicked on another
/// program's panel that was long ago, and window managers refuse what is older than their last click.
void requestActivation(xcb_connection_t *xcb, const QWindow &window, xcb_timestamp_t now)
{
    constexpr uint32_t fromApplication = 1;
    const xcb_client_message_event_t message{
        .response_type = XCB_CLIENT_MESSAGE,
        .format = 32,
        .sequence = 0,
        .window = static_cast<xcb_window_t>(window.winId()),
        .type = x11::atom(xcb, "_NET_ACTIVE_WINDOW"),
        .data = {.data32 = {fromApplication, now, XCB_WINDOW_NONE, 0, 0}},
    };
    xcb_send_event(
        xcb, 0, x11::root(xcb), XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
        reinterpret_cast<const char *>(&message));
    xcb_flush(xcb);
}

} // namespace

void activateWindow(QWindow &window)
{
    window.requestActivate();
    if (xcb_connection_t *const xcb = x11::connection()) {
        if (const std::optional<xcb_timestamp_t> now = x11::serverTime()) {
            requestActivation(xcb, window, *now);
        }
    }
}
