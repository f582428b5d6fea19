#include "RawPressMonitor.h"

#include "XcbReply.h"

#include <QApplication>
#include <QCursor>

#include <xcb/xcb.h>
#include <xcb/xinput.h>

namespace {

constexpr uint32_t leftButton = 1;
constexpr uint32_t rightButton = 3;

bool isShownByX11()
{
    return QGuiApplication::platformName() == QLatin1String("xcb") &&
           qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

xcb_window_t rootWindow(xcb_connection_t *connection)
{
    return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

/// Announces version 2.1, so that raw events come during grabs, and asks for the presses.
bool selectRawPresses(xcb_connection_t *connection)
{
    const XcbReply<xcb_input_xi_query_version_reply_t> version(
        xcb_input_xi_query_version_reply(connection, xcb_input_xi_query_version(connection, 2, 1), nullptr));
    if (!version || version->major_version < 2) {
        return false;
    }

    struct {
        xcb_input_event_mask_t header;
        uint32_t mask;
    } const selection = {
        .header = {.deviceid = XCB_INPUT_DEVICE_ALL_MASTER, .mask_len = 1},
        .mask = XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS,
    };

    const xcb_void_cookie_t cookie =
        xcb_input_xi_select_events_checked(connection, rootWindow(connection), 1, &selection.header);
    return XcbReply<xcb_generic_error_t>(xcb_request_check(connection, cookie)) == nullptr;
}

bool isWatchedPress(const xcb_generic_event_t &event)
{
    if ((event.response_type & 0x7F) != XCB_GE_GENERIC) {
        return false;
    }
    const auto &generic = reinterpret_cast<const xcb_ge_generic_event_t &>(event);
    if (generic.event_type != XCB_INPUT_RAW_BUTTON_PRESS) {
        return false;
    }
    const uint32_t button = reinterpret_cast<const xcb_input_raw_button_press_event_t &>(event).detail;
    return button == leftButton || button == rightButton;
}

} // namespace

std::unique_ptr<RawPressMonitor> RawPressMonitor::create(Handler handler)
{
    if (!isShownByX11()) {
        return nullptr;
    }
    xcb_connection_t *const connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection) != 0 || !selectRawPresses(connection)) {
        xcb_disconnect(connection);
        return nullptr;
    }
    return std::unique_ptr<RawPressMonitor>(new RawPressMonitor(connection, std::move(handler)));
}

RawPressMonitor::RawPressMonitor(xcb_connection_t *connection, Handler handler)
    : m_connection(connection),
      m_notifier(xcb_get_file_descriptor(connection), QSocketNotifier::Read),
      m_handler(std::move(handler))
{
    QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier, [this] { readEvents(); });
}

RawPressMonitor::~RawPressMonitor()
{
    xcb_disconnect(m_connection);
}

void RawPressMonitor::readEvents()
{
    bool wasPressed = false;
    while (const XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(m_connection)}) {
        wasPressed = wasPressed || isWatchedPress(*event);
    }
    if (xcb_connection_has_error(m_connection) != 0) {
        m_notifier.setEnabled(false);
        return;
    }
    const QPoint position = QCursor::pos();
    if (wasPressed && QApplication::topLevelAt(position) == nullptr) {
        // Copied: the handler may remove the monitor.
        const Handler handler = m_handler;
        handler(position);
    }
}
