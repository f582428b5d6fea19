#include "Segment.h"

#include "TextColor.h"
#include "Theme.h"
#include "Typography.h"

#include <QKeyEvent>
#include <QPainter>

namespace {

constexpr int padding = 12;
constexpr int leastPadding = 4;
constexpr qreal disabledOpacity = 0.45;

} // namespace

Segment::Segment(const QString &text, QWidget *parent) : QRadioButton(text, parent)
{
    setFont(::font(TextStyle::SmallButton));
    setAttribute(Qt::WA_Hover);
    repaintWithTheme(*this);
}

QSize Segment::sizeHint() const
{
    return {
        qCeil(QFontMetricsF(font()).horizontalAdvance(text())) + 2 * padding,
        lineHeight(TextStyle::SmallButton)};
}

bool Segment::hitButton(const QPoint &position) const
{
    return rect().contains(position);
}

void Segment::focusInEvent(QFocusEvent *event)
{
    QRadioButton::focusInEvent(event);
    parentWidget()->update();
}

void Segment::focusOutEvent(QFocusEvent *event)
{
    QRadioButton::focusOutEvent(event);
    parentWidget()->update();
}

void Segment::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Space) {
        QRadioButton::keyPressEvent(event);
    } else {
        event->ignore();
    }
}

void Segment::resizeEvent(QResizeEvent *event)
{
    QRadioButton::resizeEvent(event);
    const int labelWidth = sizeHint().width() - 2 * padding;
    setToolTip(labelWidth > width() - 2 * leastPadding ? text() : QString());
}

void Segment::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setOpacity(isEnabled() ? 1 : disabledOpacity);
    const bool stressed = isChecked() || (isEnabled() && underMouse());
    painter.setPen(color(stressed ? TextColor::Primary : TextColor::Secondary));
    const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, width() - 2 * leastPadding);
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, shown);
}
