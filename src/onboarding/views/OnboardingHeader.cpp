#include "OnboardingHeader.h"

#include "OnboardingBackButton.h"
#include "OnboardingProgressMeter.h"
#include "TextLabel.h"

#include <QEvent>
#include <QStyle>

namespace {

/// In points.
constexpr int topPadding = 24;
constexpr int sidePadding = 32;
constexpr int bottomPadding = 8;
constexpr int slotSide = 13;
constexpr int gapBeforeCaption = 8;

QString caption(OnboardingStep step)
{
    QString text = OnboardingHeader::tr("%lld OF %lld");
    for (const int number : {onboardingSteps::position(step), onboardingSteps::count}) {
        const QString placeholder = QStringLiteral("%lld");
        text.replace(text.indexOf(placeholder), placeholder.size(), QString::number(number));
    }
    return text;
}

} // namespace

OnboardingHeader::OnboardingHeader(OnboardingStep step, QWidget *parent)
    : QWidget(parent),
      m_back(new OnboardingBackButton(this)),
      m_meter(new OnboardingProgressMeter(onboardingSteps::rawValue(step), onboardingSteps::count, this)),
      m_caption(new TextLabel(TextStyle::StepCaption, QString(), this))
{
    setFixedHeight(fixedHeight);
    m_caption->setColor(TextColor::Secondary);
    connect(m_back, &OnboardingBackButton::clicked, this, &OnboardingHeader::backRequested);
    render(step);
}

void OnboardingHeader::setStep(OnboardingStep step)
{
    m_meter->setCurrentStep(onboardingSteps::rawValue(step));
    render(step);
}

void OnboardingHeader::render(OnboardingStep step)
{
    m_back->setVisible(step != OnboardingStep::Welcome);
    m_caption->setText(caption(step));
}

bool OnboardingHeader::event(QEvent *event)
{
    if (event->type() == QEvent::LayoutDirectionChange) {
        layOut();
    }
    return QWidget::event(event);
}

void OnboardingHeader::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    layOut();
}

void OnboardingHeader::layOut()
{
    m_meter->move((width() - m_meter->width()) / 2, topPadding);
    m_caption->setGeometry(
        sidePadding + slotSide, topPadding + m_meter->height() + gapBeforeCaption,
        width() - 2 * (sidePadding + slotSide), lineHeight(TextStyle::StepCaption));

    // It is larger than the slot that it stands in.
    const int content = fixedHeight - topPadding - bottomPadding;
    const QRect slot(sidePadding, topPadding + (content - slotSide + 1) / 2, slotSide, slotSide);
    QRect back(QPoint(), m_back->sizeHint());
    back.moveCenter(slot.center());
    m_back->setGeometry(QStyle::visualRect(layoutDirection(), rect(), back));
}
