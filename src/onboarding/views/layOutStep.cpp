#include "layOutStep.h"

#include "AccessibleRole.h"
#include "OnboardingFooter.h"
#include "OnboardingPrimaryButton.h"
#include "OnboardingStepTexts.h"

#include <QVBoxLayout>

namespace {

/// In points.
constexpr int gap = 24;

} // namespace

void layOutStep(QWidget &page, QWidget *icon, OnboardingStepTexts *texts, OnboardingFooter *footer)
{
    auto *const column = new QVBoxLayout(&page);
    column->setContentsMargins({});
    column->setSpacing(0);
    column->addStretch();
    column->addSpacing(gap);
    column->addWidget(icon, 0, Qt::AlignHCenter);
    column->addSpacing(gap);
    column->addWidget(texts, 0, Qt::AlignHCenter);
    column->addSpacing(gap);
    column->addStretch();
    column->addSpacing(gap - OnboardingButton::outset);
    column->addWidget(footer);

    setAccessibleRole(page, QAccessible::Grouping);
    page.setAccessibleName(texts->headline());
    page.setFocusProxy(&footer->primary());
}
