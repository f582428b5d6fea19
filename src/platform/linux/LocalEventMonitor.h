#pragma once

#include "EventMonitor.h"

#include <QObject>

/// Presses in this program's own windows: an event filter on the application that lets everything pass.
class LocalEventMonitor final : public QObject, public EventMonitor {
    Q_OBJECT

public:
    using Handler = std::function<void(const QWidget &window, QPoint position)>;

    explicit LocalEventMonitor(Handler handler);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    Handler m_handler;
};
