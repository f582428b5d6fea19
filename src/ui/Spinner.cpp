#include "Spinner.h"

#include "Motion.h"
#include "Theme.h"

#include <QConicalGradient>
#include <QPainter>
#include <QTimerEvent>

#include <cmath>
#include <numbers>

namespace {

constexpr int millisecondsPerFrame = 33;
constexpr int millisecondsPerTurn = 900;
constexpr int millisecondsPerPulse = 1200;
constexpr qreal leastPulse = 0.4;
constexpr qreal disabledOpacity = 0.45;

/// How far in a period `elapsed` is, 0 to 1.
qreal phase(qint64 elapsed, int period)
{
    return static_cast<qreal>(elapsed % period) / period;
}

/// 270 degrees from the pale end at the top, clockwise to the full one at the left.
void paintArc(QPainter &painter, const QRectF &square, const QColor &color)
{
    const qreal diameter = 0.85 * square.width();
    const qreal width = 0.1 * square.width();
    QRectF circle(0, 0, diameter - width, diameter - width);
    circle.moveCenter(square.center());

    // The gradient runs against the clock from the top; the arc takes its last three quarters.
    QConicalGradient gradient(square.center(), 90);
    QColor transparent = color;
    transparent.setAlpha(0);
    gradient.setColorAt(0.25, color);
    gradient.setColorAt(1, transparent);
    painter.setPen(QPen(QBrush(gradient), width, Qt::SolidLine, Qt::FlatCap));
    painter.drawArc(circle, 90 * 16, -270 * 16);
}

} // namespace

Spinner::Spinner(QWidget *parent) : Spinner(regularSide, parent)
{
}

Spinner::Spinner(int side, QWidget *parent) : QProgressBar(parent), m_side(side)
{
    setRange(0, 0);
    setTextVisible(false);
    setFixedSize(side, side);
    setAccessibleName(tr("Loading"));
    repaintWithTheme(*this);
}

void Spinner::setColor(TextColor color)
{
    m_color = color;
    update();
}

void Spinner::showEvent(QShowEvent *event)
{
    QProgressBar::showEvent(event);
    m_sinceStart.start();
    m_timer.start(millisecondsPerFrame, this);
}

void Spinner::hideEvent(QHideEvent *event)
{
    QProgressBar::hideEvent(event);
    m_timer.stop();
}

void Spinner::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_timer.timerId()) {
        update();
    } else {
        QProgressBar::timerEvent(event);
    }
}

void Spinner::paintEvent(QPaintEvent * /*event*/)
{
    const qint64 elapsed = m_sinceStart.isValid() ? m_sinceStart.elapsed() : 0;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled() ? 1 : disabledOpacity);
    if (Motion::isReduced()) {
        const qreal wave = (1 + std::cos(2 * std::numbers::pi * phase(elapsed, millisecondsPerPulse))) / 2;
        painter.setOpacity(painter.opacity() * (leastPulse + (1 - leastPulse) * wave));
    } else {
        const QPointF centre = QRectF(rect()).center();
        painter.translate(centre);
        painter.rotate(360 * phase(elapsed, millisecondsPerTurn));
        painter.translate(-centre);
    }
    paintArc(painter, rect(), color(m_color));
}
