#include "OnboardingDoneStepView.h"

#include "OnboardingFooter.h"

#include <utility>

OnboardingDoneStepView::OnboardingDoneStepView(
    const QString &advice, std::function<void()> onFinish, QWidget *parent)
    : OnboardingStepLayout(
          QStringLiteral("checkmark.circle.fill"), tr("You're all set."),
          tr("Deskbroom is already watching. Look for its icon in your menu bar whenever you need it."),
          new OnboardingFooter(tr("Start Using Deskbroom")), parent),
      m_onFinish(std::move(onFinish))
{
    if (!advice.isEmpty()) {
        addParagraph(advice);
    }
    connect(&footer(), &OnboardingFooter::primaryPressed, this, [this] { m_onFinish(); });
}
