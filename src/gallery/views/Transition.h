#pragma once

#include "Motion.h"

class QWidget;

/// A number between 0 and 1 that a widget paints with, on its way from one end to the other. A way that is
/// broken off goes on from where it is.
class Transition final {
public:
    explicit Transition(std::chrono::milliseconds duration, Motion::Kind kind)
        : m_duration(duration),
          m_kind(kind)
    {
    }

    [[nodiscard]] qreal value() const { return m_value; }

    /// Goes to `end`, repainting `widget`, which owns this.
    void run(QWidget &widget, qreal end);

    /// Is at `end` at once; the widget isn't repainted.
    void jump(qreal end);

private:
    const std::chrono::milliseconds m_duration;
    const Motion::Kind m_kind;
    qreal m_value = 0;
    qreal m_end = 0;
    /// Tells the way that counts from those that it has replaced.
    int m_way = 0;
};
