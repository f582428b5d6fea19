#include "startupId.h"

#include "X11Server.h"
#include "XcbReply.h"

#include <QCoreApplication>

#include <optional>

namespace {

/// The server tells the time with an event about a change. On a connection of its own, so that the toolkit's
/// events stay where they are.
class ServerClock final {
public:
    ServerClock() : m_connection(xcb_connect(nullptr, nullptr)) {}

    ~ServerClock() { xcb_disconnect(m_connection); }

    Q_DISABLE_COPY_MOVE(ServerClock)

    [[nodiscard]] std::optional<xcb_timestamp_t> now() const
    {
        if (xcb_connection_has_error(m_connection) != 0) {
            return std::nullopt;
        }
        const xcb_window_t window = xcb_generate_id(m_connection);
        const uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_create_window(
            m_connection, 0, window, x11::root(m_connection), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
            XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
        xcb_change_property(
            m_connection, XCB_PROP_MODE_APPEND, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 0, nullptr);
        xcb_flush(m_connection);
        while (const XcbReply<xcb_generic_event_t> event{xcb_wait_for_event(m_connection)}) {
            if ((event->response_type & 0x7F) == XCB_PROPERTY_NOTIFY) {
                return reinterpret_cast<const xcb_property_notify_event_t &>(*event).time;
            }
        }
        return std::nullopt;
    }

private:
    xcb_connection_t *m_connection;
};

bool isShownByX11()
{
    return x11::connection() != nullptr && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

} // namespace

QString startupId()
{
    const std::optional<xcb_timestamp_t> now = isShownByX11() ? ServerClock().now() : std::nullopt;
    if (!now) {
        return {};
    }
    static int count = 0;
    return QStringLiteral("deskbroom-%1-%2_TIME%3")
        .arg(QString::number(QCoreApplication::applicationPid()), QString::number(++count))
        .arg(*now);
}
