#include "Compositor.h"

#include "X11Server.h"

bool compositorIsActive()
{
    xcb_connection_t *const connection = x11::connection();
    if (connection == nullptr) {
        return true;
    }
    // Extended Window Manager Hints, "Compositing Managers". A session has one X11 screen, number 0.
    return x11::selectionOwner(connection, x11::atom(connection, "_NET_WM_CM_S0")) != XCB_WINDOW_NONE;
}
