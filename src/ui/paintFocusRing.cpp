#include "paintFocusRing.h"

#include "Theme.h"
#include "continuousRoundedRect.h"

#include <QPainter>

void paintFocusRing(QPainter &painter, const QRectF &box, qreal radius)
{
    paintFocusRing(painter, box, radius, Theme::current().focusRing);
}

void paintFocusRing(QPainter &painter, const QRectF &box, qreal radius, const QColor &color)
{
    constexpr qreal width = 2;
    constexpr qreal distance = 1.5 + width / 2;
    painter.strokePath(
        continuousRoundedRect(box.adjusted(-distance, -distance, distance, distance), radius + distance),
        QPen(color, width));
}
