#include "Hairline.h"

#include "Theme.h"

#include <QPainter>

#include <algorithm>

Hairline::Hairline(Qt::Orientation orientation, QWidget *parent) : QWidget(parent), m_orientation(orientation)
{
    if (orientation == Qt::Horizontal) {
        setFixedHeight(1);
    } else {
        setFixedWidth(1);
    }
    repaintWithTheme(*this);
}

void Hairline::paintEvent(QPaintEvent * /*event*/)
{
    const qreal thickness = std::max(0.5, 1 / devicePixelRatioF());
    const QSizeF line =
        m_orientation == Qt::Horizontal ? QSizeF(width(), thickness) : QSizeF(thickness, height());
    QPainter(this).fillRect(QRectF(QPointF(), line), Theme::current().separator);
}
