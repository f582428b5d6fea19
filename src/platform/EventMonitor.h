#pragma once

#include <QPoint>

#include <functional>
#include <memory>

class QWidget;

/// Watches presses of the left and the right mouse button without taking part: what was clicked gets its
/// click all the same. Lasts as long as the object. Main thread.
class EventMonitor {
public:
    EventMonitor() = default;
    virtual ~EventMonitor() = default;
    EventMonitor(const EventMonitor &) = delete;
    EventMonitor &operator=(const EventMonitor &) = delete;
    EventMonitor(EventMonitor &&) = delete;
    EventMonitor &operator=(EventMonitor &&) = delete;

    /// Presses outside this program's windows; the handler gets the place in global logical pixels. Null
    /// where the session doesn't tell: under Wayland no program sees another's clicks.
    [[nodiscard]] static std::unique_ptr<EventMonitor>
    addGlobalMonitor(std::function<void(QPoint position)> handler);

    /// Presses in this program's own windows; the handler gets the top-level window and the place in global
    /// logical pixels.
    [[nodiscard]] static std::unique_ptr<EventMonitor>
    addLocalMonitor(std::function<void(const QWidget &window, QPoint position)> handler);
};
