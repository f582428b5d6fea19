#include "SlimScrollBar.h"

#include "Theme.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace {

constexpr int margin = 3;
constexpr qreal thumbBreadth = 6;
constexpr qreal stressedBreadth = 8;
constexpr qreal leastLength = 28;
constexpr float opacity = 0.4F;
constexpr float stressedOpacity = 0.6F;

} // namespace

SlimScrollBar::SlimScrollBar(QWidget *parent) : QScrollBar(Qt::Vertical, parent)
{
    setAttribute(Qt::WA_Hover);
    setAttribute(Qt::WA_OpaquePaintEvent, false);
    setFocusPolicy(Qt::NoFocus);
    hide();
    repaintWithTheme(*this);
}

qreal SlimScrollBar::thumbLength() const
{
    const qreal room = height() - 2 * margin;
    const int whole = maximum() - minimum() + pageStep();
    return whole <= 0 ? room : std::min(room, std::max(leastLength, room * pageStep() / whole));
}

qreal SlimScrollBar::thumbTop() const
{
    const qreal way = height() - 2 * margin - thumbLength();
    const int range = maximum() - minimum();
    return margin + (range <= 0 ? 0 : way * (value() - minimum()) / range);
}

bool SlimScrollBar::event(QEvent *event)
{
    if (event->type() == QEvent::HoverEnter || event->type() == QEvent::HoverLeave) {
        update();
    }
    return QScrollBar::event(event);
}

void SlimScrollBar::sliderChange(SliderChange change)
{
    QScrollBar::sliderChange(change);
    if (change == SliderRangeChange) {
        setVisible(maximum() > minimum());
    }
    update();
}

void SlimScrollBar::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    const qreal position = event->position().y();
    if (position < thumbTop()) {
        triggerAction(SliderPageStepSub);
    } else if (position >= thumbTop() + thumbLength()) {
        triggerAction(SliderPageStepAdd);
    } else {
        m_grip = position - thumbTop();
        setSliderDown(true);
    }
    update();
}

void SlimScrollBar::mouseMoveEvent(QMouseEvent *event)
{
    const qreal way = height() - 2 * margin - thumbLength();
    if (m_grip && way > 0) {
        const qreal top = event->position().y() - *m_grip - margin;
        setValue(minimum() + qRound((maximum() - minimum()) * std::clamp(top / way, 0.0, 1.0)));
    }
}

void SlimScrollBar::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        m_grip.reset();
        setSliderDown(false);
        update();
    }
}

void SlimScrollBar::contextMenuEvent(QContextMenuEvent *event)
{
    // Instead of the toolkit's menu for bars: what lies below answers.
    event->ignore();
}

void SlimScrollBar::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal thickness = isStressed() ? stressedBreadth : thumbBreadth;
    const qreal outerEdge = layoutDirection() == Qt::RightToLeft ? margin : width() - margin - thickness;
    QColor color = Theme::current().secondary;
    color.setAlphaF(isStressed() ? stressedOpacity : opacity);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(
        QRectF(outerEdge, thumbTop(), thickness, thumbLength()), thickness / 2, thickness / 2);
}
