#include "OnboardingPrimaryButton.h"

#include "Symbols.h"
#include "Theme.h"
#include "Typography.h"
#include "continuousRoundedRect.h"
#include "paintFocusRing.h"
#include "paintTextShadow.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>

namespace {

/// In points.
constexpr int verticalPadding = 12;
constexpr int leastPadding = 12;
constexpr qreal radius = 8;
constexpr int checkSide = 16;
constexpr int gapAfterCheck = 7;

constexpr float pressedOpacity = 0.8F;
constexpr TextShadow labelShadow{.offset = 0.5, .blur = 1.5};

} // namespace

OnboardingPrimaryButton::OnboardingPrimaryButton(const QString &text, QWidget *parent)
    : OnboardingButton(text, parent)
{
    setFont(::font(TextStyle::StepButton));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize OnboardingPrimaryButton::sizeHint() const
{
    const int label = checkSide + gapAfterCheck + fontMetrics().horizontalAdvance(text());
    return QSize(label + 2 * leastPadding, lineHeight(TextStyle::StepButton) + 2 * verticalPadding)
        .grownBy(QMargins(outset, outset, outset, outset));
}

QSize OnboardingPrimaryButton::minimumSizeHint() const
{
    return {0, sizeHint().height()};
}

bool OnboardingPrimaryButton::hitButton(const QPoint &position) const
{
    return box().contains(position);
}

QString OnboardingPrimaryButton::shownText() const
{
    const int check = isEnabled() ? 0 : checkSide + gapAfterCheck;
    return fontMetrics().elidedText(text(), Qt::ElideRight, box().width() - 2 * leastPadding - check);
}

bool OnboardingPrimaryButton::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        setToolTip(shownText() == text() ? QString() : text());
    }
    return OnboardingButton::event(event);
}

QColor OnboardingPrimaryButton::faceColor() const
{
    const Theme &theme = Theme::current();
    if (!isEnabled()) {
        return theme.amberTint;
    }
    if (isDown()) {
        QColor pressed = theme.amber;
        pressed.setAlphaF(pressedOpacity);
        return pressed;
    }
    return underMouse() ? theme.amberHover : theme.amber;
}

void OnboardingPrimaryButton::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(continuousRoundedRect(box(), radius), faceColor());
    if (isEnabled()) {
        paintLabel(painter);
    } else {
        paintDoneLabel(painter);
    }
    if (hasFocus()) {
        paintFocusRing(painter, box(), radius, Theme::current().amberFocusRing);
    }
}

void OnboardingPrimaryButton::paintLabel(QPainter &painter) const
{
    const Theme &theme = Theme::current();
    if (theme.onAmberShadow.alpha() > 0) {
        paintTextShadow(painter, box(), shownText(), labelShadow, theme.onAmberShadow);
    }
    painter.setPen(theme.onAmber);
    painter.drawText(box(), Qt::AlignCenter | Qt::TextSingleLine, shownText());
}

void OnboardingPrimaryButton::paintDoneLabel(QPainter &painter) const
{
    const QColor ink = Theme::current().amberInk;
    const QString shown = shownText();
    constexpr int inset = checkSide + gapAfterCheck;
    QRect label = box();
    label.setWidth(inset + fontMetrics().horizontalAdvance(shown));
    label.moveLeft(box().left() + (box().width() - label.width()) / 2);
    const auto placed = [this, &label](const QRect &part) {
        return QStyle::visualRect(layoutDirection(), label, part);
    };
    const QRectF check = placed({label.left(), label.top(), checkSide, label.height()});
    Symbols::paint(painter, QStringLiteral("checkmark.circle.fill"), check.center(), checkSide, ink);
    painter.setPen(ink);
    painter.drawText(placed(label.adjusted(inset, 0, 0, 0)), Qt::AlignCenter | Qt::TextSingleLine, shown);
}
