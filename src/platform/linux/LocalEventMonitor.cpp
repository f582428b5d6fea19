#include "LocalEventMonitor.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWidget>

LocalEventMonitor::LocalEventMonitor(Handler handler) : m_handler(std::move(handler))
{
    qApp->installEventFilter(this);
}

bool LocalEventMonitor::eventFilter(QObject *watched, QEvent *event)
{
    // One press may pass here several times, for a widget and the parents that it leaves it to; whoever
    // closes something at the first has removed the monitor by the second.
    auto *const widget =
        event->type() == QEvent::MouseButtonPress ? qobject_cast<QWidget *>(watched) : nullptr;
    if (widget != nullptr) {
        const auto &press = static_cast<const QMouseEvent &>(*event);
        if (press.button() == Qt::LeftButton || press.button() == Qt::RightButton) {
            // Copied: the handler may remove the monitor.
            const Handler handler = m_handler;
            handler(*widget->window(), press.globalPosition().toPoint());
        }
    }
    return false;
}
