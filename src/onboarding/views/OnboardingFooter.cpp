#include "OnboardingFooter.h"

#include "OnboardingPrimaryButton.h"
#include "OnboardingSkipLink.h"

#include <QVBoxLayout>

namespace {

/// In points, between what one sees.
constexpr int sidePadding = 48;
constexpr int bottomPadding = 40;
constexpr int gap = 12;

constexpr int ring = OnboardingButton::outset;

} // namespace

OnboardingFooter::OnboardingFooter(const QString &primaryText)
    : m_primary(new OnboardingPrimaryButton(primaryText))
{
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(sidePadding - ring, 0, sidePadding - ring, bottomPadding - ring);
    column->setSpacing(gap - ring - OnboardingSkipLink::lineInset);
    column->addWidget(m_primary);
    connect(m_primary, &OnboardingPrimaryButton::clicked, this, &OnboardingFooter::primaryPressed);
}

OnboardingFooter::OnboardingFooter(const QString &primaryText, const QString &secondaryText)
    : OnboardingFooter(primaryText)
{
    m_secondary = new OnboardingSkipLink(secondaryText);
    layout()->addWidget(m_secondary);
    layout()->setAlignment(m_secondary, Qt::AlignHCenter);
    QMargins margins = layout()->contentsMargins();
    margins.setBottom(bottomPadding - OnboardingSkipLink::lineInset);
    layout()->setContentsMargins(margins);
    connect(m_secondary, &OnboardingSkipLink::clicked, this, &OnboardingFooter::secondaryPressed);
}
