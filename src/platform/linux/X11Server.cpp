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
