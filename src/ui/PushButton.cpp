#include "PushButton.h"

#include "Theme.h"
#include "Typography.h"
#include "continuousRoundedRect.h"

#include <QPainter>

namespace {

constexpr qreal radius = 7;
constexpr qreal disabledOpacity = 0.45;
constexpr qreal ringWidth = 2;
constexpr qreal ringDistance = 1.5;

/// A soft edge of shade below the button: the shape in three places, fainter the lower it lies.
void paintShadow(QPainter &painter, const QPainterPath &shape, const QColor &color)
{
    struct Copy {
        qreal offset;
        qreal strength;
    };

    for (const Copy copy : {Copy{1, 0.6}, Copy{1.5, 0.28}, Copy{2, 0.12}}) {
        QColor faint = color;
        faint.setAlphaF(static_cast<float>(color.alphaF() * copy.strength));
        painter.fillPath(shape.translated(0, copy.offset), faint);
    }
}

} // namespace

PushButton::PushButton(Kind kind, const QString &text, QWidget *parent)
    : QPushButton(text, parent),
      m_kind(kind)
{
    setFont(::font(TextStyle::SmallButton));
    setAutoDefault(true); // Return presses it
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
    repaintWithTheme(*this);
}

int PushButton::labelWidth() const
{
    return qCeil(QFontMetricsF(font()).horizontalAdvance(text()));
}

void PushButton::setPresence(qreal presence)
{
    m_presence = presence;
    update();
}

QSize PushButton::sizeHint() const
{
    return {labelWidth() + 2 * padding + 2 * outset, faceHeight + 2 * outset};
}

bool PushButton::hitButton(const QPoint &position) const
{
    return box().contains(position);
}

QString PushButton::elidedText() const
{
    return fontMetrics().elidedText(text(), Qt::ElideRight, box().width() - 2 * leastPadding);
}

void PushButton::resizeEvent(QResizeEvent *event)
{
    QPushButton::resizeEvent(event);
    setToolTip(elidedText() == text() ? QString() : text());
}

QColor PushButton::faceColor() const
{
    const Theme &theme = Theme::current();
    const bool destructive = m_kind == Kind::Destructive;
    if (isDown()) {
        return destructive ? theme.redPressed : theme.facePressed;
    }
    if (isEnabled() && underMouse()) {
        return destructive ? theme.redHover : theme.faceHover;
    }
    return destructive ? theme.red : theme.face;
}

void PushButton::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal opacity = isEnabled() ? m_presence : disabledOpacity;
    if (opacity < 1) {
        // As one layer, so that the face doesn't shine through its own label.
        QPixmap layer(size() * devicePixelRatioF());
        layer.setDevicePixelRatio(devicePixelRatioF());
        layer.fill(Qt::transparent);
        QPainter layerPainter(&layer);
        layerPainter.setRenderHint(QPainter::Antialiasing);
        layerPainter.setFont(font());
        paintButton(layerPainter);
        layerPainter.end();
        painter.setOpacity(opacity);
        painter.drawPixmap(0, 0, layer);
        painter.setOpacity(1);
    } else {
        paintButton(painter);
    }
    if (hasFocus()) {
        paintFocusRing(painter);
    }
}

void PushButton::paintButton(QPainter &painter) const
{
    const Theme &theme = Theme::current();
    const QPainterPath shape = continuousRoundedRect(box(), radius);
    paintShadow(painter, shape, theme.controlShadow);
    if (m_kind == Kind::Bordered) {
        // The outer half of a line of 1; the face covers the inner one.
        painter.strokePath(shape, QPen(theme.border, 1));
    }
    painter.fillPath(shape, faceColor());
    painter.setPen(m_kind == Kind::Destructive ? theme.onAccent : theme.primary);
    painter.drawText(box(), Qt::AlignCenter | Qt::TextSingleLine, elidedText());
}

void PushButton::paintFocusRing(QPainter &painter) const
{
    const qreal distance = ringDistance + ringWidth / 2;
    const QRectF ring = QRectF(box()).adjusted(-distance, -distance, distance, distance);
    painter.strokePath(
        continuousRoundedRect(ring, radius + distance), QPen(Theme::current().focusRing, ringWidth));
}
