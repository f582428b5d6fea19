#pragma once

#include "OnboardingPrimaryButton.h"
#include "OnboardingSkipLink.h"

#include <QSize>
#include <QWidget>

/// What tests see of a first-run page.
namespace onboardingPage {

/// What the view gives a page, in points.
inline constexpr QSize size(560, 624);

[[nodiscard]] inline OnboardingPrimaryButton &primary(const QWidget &page)
{
    return *page.findChild<OnboardingPrimaryButton *>();
}

/// Only for pages that have one.
[[nodiscard]] inline OnboardingSkipLink &secondary(const QWidget &page)
{
    return *page.findChild<OnboardingSkipLink *>();
}

/// The labels of the page's buttons from above, with a disabled one in brackets.
[[nodiscard]] inline QStringList labels(const QWidget &page)
{
    QStringList labels;
    for (const OnboardingButton *const button : page.findChildren<OnboardingButton *>()) {
        labels.append(button->isEnabled() ? button->text() : u'(' + button->text() + u')');
    }
    return labels;
}

} // namespace onboardingPage
