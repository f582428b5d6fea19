#pragma once

#include <QMetaObject>

#include <functional>
#include <memory>
#include <vector>

class EventMonitor;
class Popover;

/// Tells of presses of the left and the right mouse button outside a popover: in other programs, and in this
/// program's own windows that don't belong to the popover. Nothing is swallowed.
///
/// Where the session doesn't tell of other programs' clicks, it tells that the program has become inactive;
/// not while something is dragged out of the popover, but afterwards. Nothing is watched before `install`.
/// Main thread.
class OutsideClickMonitors final {
public:
    OutsideClickMonitors();
    ~OutsideClickMonitors();
    Q_DISABLE_COPY_MOVE(OutsideClickMonitors)

    /// In place of those that are installed. `popover` outlives them, and is passed over in silence while it
    /// shows nothing.
    void install(const Popover &popover, const std::function<void()> &clickedOutside);

    void remove();

    /// How many the session's windowing system has installed for us: none, the one for our own windows, or
    /// both.
    [[nodiscard]] size_t count() const { return m_monitors.size(); }

private:
    void watchActivity(const Popover &popover, const std::function<void()> &clickedOutside);

    std::vector<std::unique_ptr<EventMonitor>> m_monitors;
    QMetaObject::Connection m_activity;
};
