#include "DelayedWork.h"

#include <algorithm>
#include <utility>

DelayedWork::DelayedWork(
    std::chrono::seconds delay, std::function<void()> action, std::chrono::seconds stretch)
    : m_remaining(std::max(delay, std::chrono::seconds(0))),
      m_stretch(stretch),
      m_action(std::move(action))
{
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setSingleShot(true);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
        if (m_remaining.count() > 0) {
            startNextStretch();
        } else {
            // Moved out first: the action may destroy this object.
            const auto action = std::move(m_action);
            action();
        }
    });
    startNextStretch();
}

void DelayedWork::cancel()
{
    m_timer.stop();
}

void DelayedWork::startNextStretch()
{
    const auto stretch = std::min(m_remaining, m_stretch);
    m_remaining -= stretch;
    m_timer.start(stretch);
}
