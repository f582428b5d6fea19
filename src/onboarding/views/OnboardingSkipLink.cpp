#include "OnboardingSkipLink.h"

#include "Theme.h"
#include "Typography.h"
#include "paintFocusRing.h"

#include <QPainter>

namespace {

/// In points.
constexpr int padding = 8;
constexpr qreal radius = 5;

constexpr qreal pressedOpacity = 0.6;

} // namespace

OnboardingSkipLink::OnboardingSkipLink(const QString &text, QWidget *parent) : OnboardingButton(text, parent)
{
    setFont(::font(TextStyle::StepLink));
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
}

QSize OnboardingSkipLink::sizeHint() const
{
    const int width = qCeil(QFontMetricsF(font()).horizontalAdvance(text())) + 2 * (padding + outset);
    return {width, lineHeight(TextStyle::StepLink) + 2 * lineInset};
}

void OnboardingSkipLink::paintEvent(QPaintEvent * /*event*/)
{
    const Theme &theme = Theme::current();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool isHovered = underMouse() && !isDown();
    painter.setPen(isHovered ? theme.primary : theme.secondary);
    painter.setOpacity(isDown() ? pressedOpacity : 1);
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, text());
    if (hasFocus()) {
        painter.setOpacity(1);
        paintFocusRing(painter, box(), radius);
    }
}
