#include "OverflowCount.h"

#include "Theme.h"
#include "Typography.h"
#include "continuousRoundedRect.h"

#include <QPainter>

namespace {

constexpr qreal radius = 6;

} // namespace

OverflowCount::OverflowCount(QWidget *parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setFont(::font(TextStyle::Subheadline));
    repaintWithTheme(*this);
}

void OverflowCount::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(continuousRoundedRect(rect(), radius), Theme::current().placeholder);
    painter.setPen(Theme::current().secondary);
    painter.drawText(
        rect(), Qt::AlignCenter | Qt::TextSingleLine,
        fontMetrics().elidedText(text(), Qt::ElideMiddle, width()));
}
