#include "ApplicationIcon.h"

#include <QIcon>
#include <QPainter>

ApplicationIcon::ApplicationIcon(int side, QWidget *parent) : QWidget(parent)
{
    setFixedSize(side, side);
}

void ApplicationIcon::setScale(qreal scale)
{
    m_scale = scale;
    update();
}

void ApplicationIcon::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    if (qFuzzyCompare(m_scale, 1)) {
        windowIcon().paint(&painter, rect());
        return;
    }
    // While it moves, one picture of it in other sizes: drawing it anew for each would take its time.
    const QPixmap whole = windowIcon().pixmap(size(), painter.deviceTransform().m11());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QPointF centre = QRectF(rect()).center();
    painter.translate(centre);
    painter.scale(m_scale, m_scale);
    painter.translate(-centre);
    painter.drawPixmap(rect(), whole);
}
