#include "Transition.h"

#include <QWidget>

void Transition::run(QWidget &widget, qreal end)
{
    if (end == m_end) {
        return;
    }
    m_end = end;
    Motion::run(
        widget, m_duration, m_kind, [this, &widget, way = ++m_way, start = m_value, end](qreal progress) {
            if (way == m_way) {
                m_value = start + (end - start) * progress;
                widget.update();
            }
        });
}

void Transition::jump(qreal end)
{
    ++m_way;
    m_value = end;
    m_end = end;
}
