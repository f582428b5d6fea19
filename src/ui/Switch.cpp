#include "Switch.h"

#include "AccessibleRole.h"
#include "Appearance.h"
#include "Motion.h"
#include "Theme.h"
#include "paintFocusRing.h"

#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>
#include <QStyle>

namespace {

/// In points.
constexpr QSize faceSize(38, 22);
constexpr qreal radius = faceSize.height() / 2.0;
constexpr qreal inset = 2;
constexpr qreal knobSide = faceSize.height() - 2 * inset;
/// By how much the knob is wider while it is pressed.
constexpr qreal stretch = 3;

constexpr std::chrono::milliseconds slideDuration{150};
constexpr qreal disabledOpacity = 0.45;
/// Percent of the brightness under the pointer.
constexpr int hoverBrightness = 107;

QColor mixed(const QColor &from, const QColor &to, qreal progress)
{
    QColor above = to;
    above.setAlphaF(static_cast<float>(progress));
    return composited(above, from);
}

} // namespace

Switch::Switch(QWidget *parent) : QAbstractButton(parent)
{
    setAccessibleRole(*this, QAccessible::CheckBox);
    setCheckable(true);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus); // a click leaves the keyboard where it is
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    // Not its click: assistive programs check it without one.
    connect(this, &QAbstractButton::toggled, this, &Switch::takeCheckState);
    repaintWithTheme(*this);
}

Switch::~Switch() = default;

void Switch::setOn(bool isOn)
{
    if (isOn == m_isOn) {
        return;
    }
    m_isOn = isOn;
    setChecked(isOn);
    slide();
}

void Switch::takeCheckState(bool isChecked)
{
    if (isChecked != m_isOn) {
        m_isOn = isChecked;
        slide();
        Q_EMIT switched(isChecked);
    }
}

void Switch::slide()
{
    m_motion.reset();
    const qreal start = m_progress;
    const qreal end = m_isOn ? 1 : 0;
    if (!isVisible()) {
        m_progress = end;
        update();
        return;
    }
    m_motion = std::make_unique<QObject>();
    Motion::run(*m_motion, slideDuration, Motion::Kind::Movement, [this, start, end](qreal progress) {
        m_progress = start + (end - start) * progress;
        update();
    });
}

QSize Switch::sizeHint() const
{
    return faceSize.grownBy(QMargins(outset, outset, outset, outset));
}

QRect Switch::box() const
{
    return {QPoint(outset, outset), faceSize};
}

bool Switch::hitButton(const QPoint &position) const
{
    return box().contains(position);
}

void Switch::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        click();
    } else {
        QAbstractButton::keyPressEvent(event);
    }
}

QRectF Switch::knob() const
{
    const qreal width = knobSide + (isDown() ? stretch : 0);
    const qreal way = faceSize.width() - 2 * inset - width;
    const qreal progress = layoutDirection() == Qt::RightToLeft ? 1 - m_progress : m_progress;
    return {box().left() + inset + way * progress, box().top() + inset, width, knobSide};
}

void Switch::paintEvent(QPaintEvent * /*event*/)
{
    const Theme &theme = Theme::current();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setOpacity(isEnabled() ? 1 : disabledOpacity);

    const bool isHovered = isEnabled() && underMouse() && !isDown();
    const QColor track = mixed(theme.switchOff, theme.accent, m_progress);
    painter.setBrush(isHovered ? track.lighter(hoverBrightness) : track);
    painter.drawRoundedRect(box(), radius, radius);
    if (Appearance::shared().increasesContrast()) {
        QPainterPath outline;
        outline.addRoundedRect(QRectF(box()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
        painter.strokePath(outline, QPen(theme.border, 1));
    }
    const qreal knobRadius = knobSide / 2;
    painter.setBrush(theme.controlShadow);
    painter.drawRoundedRect(knob().translated(0, 1), knobRadius, knobRadius);
    painter.setBrush(isHovered || isDown() ? theme.onAccent : theme.switchKnob);
    painter.drawRoundedRect(knob(), knobRadius, knobRadius);

    if (hasFocus()) {
        painter.setOpacity(1);
        paintFocusRing(painter, box(), radius);
    }
}
