#include "OutsideClickMonitors.h"

#include "EventMonitor.h"
#include "Popover.h"
#include "outgoingDrag.h"

#include <QDrag>
#include <QGuiApplication>
#include <QWidget>

OutsideClickMonitors::OutsideClickMonitors() = default;

OutsideClickMonitors::~OutsideClickMonitors()
{
    remove();
}

void OutsideClickMonitors::install(const Popover &popover, const std::function<void()> &clickedOutside)
{
    remove();
    auto global = EventMonitor::addGlobalMonitor([clickedOutside](QPoint) { clickedOutside(); });
    if (global) {
        m_monitors.push_back(std::move(global));
    } else {
        watchActivity(popover, clickedOutside);
    }
    m_monitors.push_back(
        EventMonitor::addLocalMonitor([&popover, clickedOutside](const QWidget &window, QPoint) {
            if (popover.isShown() && !popover.contains(window)) {
                clickedOutside();
            }
        }));
}

void OutsideClickMonitors::watchActivity(const Popover &popover, const std::function<void()> &clickedOutside)
{
    const auto becameInactive = [&popover, clickedOutside] {
        // A drag takes the keyboard along; what it began in stays until it is over.
        const QDrag *const drag = outgoingDrag::current();
        if (drag == nullptr) {
            clickedOutside();
            return;
        }
        QObject::connect(drag, &QObject::destroyed, popover.window(), [&popover, clickedOutside] {
            if (popover.isShown() && QGuiApplication::applicationState() == Qt::ApplicationInactive) {
                clickedOutside();
            }
        });
    };
    m_activity = QObject::connect(
        qGuiApp, &QGuiApplication::applicationStateChanged, &popover,
        [&popover, becameInactive](Qt::ApplicationState state) {
            if (popover.isShown() && state == Qt::ApplicationInactive) {
                becameInactive();
            }
        });
}

void OutsideClickMonitors::remove()
{
    QObject::disconnect(m_activity);
    m_monitors.clear();
}
