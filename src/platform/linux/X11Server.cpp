#include "X11Server.h"

#include "XcbReply.h"

#include <QGuiApplication>

#include <cstring>

xcb_connection_t *x11::connection()
{
    const auto *const application = qobject_cast<QGuiApplication *>(QCoreApplication::instance());
    const auto *const x11 =
        application == nullptr ? nullptr : application->nativeInterface<QNativeInterface::QX11Application>();
    return x11 == nullptr ? nullptr : x11->connection();
}

xcb_window_t x11::root(xcb_connection_t *connection)
{
    // Every screen of a session is one X11 screen today.
    return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

xcb_atom_t x11::atom(xcb_connection_t *connection, const char *name)
{
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<uint16_t>(std::strlen(name)), name);
    const XcbReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

xcb_window_t x11::selectionOwner(xcb_connection_t *connection, xcb_atom_t selection)
{
    const XcbReply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, selection), nullptr));
    return reply ? reply->owner : xcb_window_t(XCB_WINDOW_NONE);
}

std::optional<xcb_timestamp_t> x11::serverTime()
{
    // It tells the time with an event about a change. On a connection of its own, so that the toolkit's
    // events stay where they are.
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> own(
        xcb_connect(nullptr, nullptr), &xcb_disconnect);
    if (xcb_connection_has_error(own.get()) != 0) {
        return std::nullopt;
    }
    const xcb_window_t window = xcb_generate_id(own.get());
    const uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(
        own.get(), 0, window, root(own.get()), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
        XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    xcb_change_property(
        own.get(), XCB_PROP_MODE_APPEND, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 0, nullptr);
    xcb_flush(own.get());
    while (const XcbReply<xcb_generic_event_t> event{xcb_wait_for_event(own.get())}) {
        if ((event->response_type & 0x7F) == XCB_PROPERTY_NOTIFY) {
            return reinterpret_cast<const xcb_property_notify_event_t &>(*event).time;
        }
    }
    return std::nullopt;
}
