#pragma once

#include "EventMonitor.h"

#include <QSocketNotifier>

struct xcb_connection_t;

/// Presses anywhere on the X11 screen, told apart from our own by where the pointer is.
///
/// XInput 2 raw events on the root window, on a connection of its own: no grab, and nothing is swallowed.
/// They arrive during other programs' grabs too (XInput 2.1 and later).
class RawPressMonitor final : public EventMonitor {
public:
    using Handler = std::function<void(QPoint position)>;

    /// Null where there is no X server or where it isn't the one that shows the windows (XWayland).
    [[nodiscard]] static std::unique_ptr<RawPressMonitor> create(Handler handler);

    ~RawPressMonitor() override;
    Q_DISABLE_COPY_MOVE(RawPressMonitor)

private:
    RawPressMonitor(xcb_connection_t *connection, Handler handler);

    void readEvents();

    xcb_connection_t *m_connection;
    QSocketNotifier m_notifier;
    Handler m_handler;
};
