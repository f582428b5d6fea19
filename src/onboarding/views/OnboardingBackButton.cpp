#include "OnboardingBackButton.h"

#include "Symbols.h"
#include "Theme.h"
#include "continuousRoundedRect.h"
#include "paintFocusRing.h"

#include <QPainter>

namespace {

/// In points.
constexpr int hitSide = 29;
constexpr int symbolSide = 15;
constexpr qreal radius = 6;

} // namespace

OnboardingBackButton::OnboardingBackButton(QWidget *parent) : OnboardingButton(QString(), parent)
{
    setAccessibleName(tr("Back"));
}

QSize OnboardingBackButton::sizeHint() const
{
    return {hitSide + 2 * outset, hitSide + 2 * outset};
}

bool OnboardingBackButton::hitButton(const QPoint &position) const
{
    return box().contains(position);
}

void OnboardingBackButton::paintEvent(QPaintEvent * /*event*/)
{
    const Theme &theme = Theme::current();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (isDown() || underMouse()) {
        painter.fillPath(
            continuousRoundedRect(box(), radius), isDown() ? theme.quietPressed : theme.quietHover);
    }
    QImage chevron = Symbols::image(
        QStringLiteral("chevron.left.semibold"), symbolSide, painter.deviceTransform().m11(),
        theme.secondary);
    if (layoutDirection() == Qt::RightToLeft) {
        chevron.mirror(true, false);
    }
    QRect square(0, 0, symbolSide, symbolSide);
    square.moveCenter(box().center());
    painter.drawImage(square.topLeft(), chevron);
    if (hasFocus()) {
        paintFocusRing(painter, box(), radius);
    }
}
