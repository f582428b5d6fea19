#pragma once

#include <QTimer>

#include <chrono>
#include <functional>

/// A piece of work that the main thread runs once after a delay, unless it is cancelled first.
///
/// The timer is a precise one. A delay beyond the toolkit's 24 days (a millisecond count in an int) is a
/// chain of timers; zero and below run on the next turn of the loop. Destroying the object cancels it.
class DelayedWork final {
public:
    /// The longest stretch that one timer of the chain waits.
    static constexpr std::chrono::seconds longestStretch = std::chrono::hours(24 * 20);

    DelayedWork(
        std::chrono::seconds delay, std::function<void()> action,
        std::chrono::seconds stretch = longestStretch);
    ~DelayedWork() = default;
    Q_DISABLE_COPY_MOVE(DelayedWork)

    void cancel();

    /// Whether it will still run: neither cancelled nor fired.
    [[nodiscard]] bool isPending() const { return m_timer.isActive(); }

private:
    void startNextStretch();

    QTimer m_timer;
    std::chrono::seconds m_remaining;
    std::chrono::seconds m_stretch;
    std::function<void()> m_action;
};
