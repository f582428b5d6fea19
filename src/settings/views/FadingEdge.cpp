#include "FadingEdge.h"

#include "Theme.h"

#include <QLinearGradient>
#include <QPainter>

FadingEdge::FadingEdge(QWidget *parent) : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    repaintWithTheme(*this);
}

void FadingEdge::paintEvent(QPaintEvent * /*event*/)
{
    const QColor ground = Theme::current().window;
    QColor transparent = ground;
    transparent.setAlpha(0);
    QLinearGradient gradient(0, 0, 0, height());
    gradient.setColorAt(0, transparent);
    gradient.setColorAt(1, ground);
    QPainter(this).fillRect(rect(), gradient);
}
