#include "EventMonitor.h"

#include "LocalEventMonitor.h"
#include "RawPressMonitor.h"

std::unique_ptr<EventMonitor> EventMonitor::addGlobalMonitor(std::function<void(QPoint)> handler)
{
    return RawPressMonitor::create(std::move(handler));
}

std::unique_ptr<EventMonitor>
EventMonitor::addLocalMonitor(std::function<void(const QWidget &, QPoint)> handler)
{
    return std::make_unique<LocalEventMonitor>(std::move(handler));
}
