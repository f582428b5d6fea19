#pragma once

#include <xcb/xcb.h>

#include <optional>

/// The X server that the toolkit is connected to. Only to be asked on the GUI thread; every question but
/// `connection` and `root` waits for the server's answer.
namespace x11 {

/// The toolkit's own connection, or null where the toolkit doesn't draw through X11.
[[nodiscard]] xcb_connection_t *connection();

[[nodiscard]] xcb_window_t root(xcb_connection_t *connection);

/// XCB_ATOM_NONE only if the connection is broken.
[[nodiscard]] xcb_atom_t atom(xcb_connection_t *connection, const char *name);

/// XCB_WINDOW_NONE if nobody owns it.
[[nodiscard]] xcb_window_t selectionOwner(xcb_connection_t *connection, xcb_atom_t selection);

/// The server's present time, in the milliseconds of its events. Empty only if it can't be reached.
[[nodiscard]] std::optional<xcb_timestamp_t> serverTime();

} // namespace x11
