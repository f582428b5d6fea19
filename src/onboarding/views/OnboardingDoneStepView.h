#pragma once

#include "OnboardingStepLayout.h"

#include <functional>

/// The last first-run page.
class OnboardingDoneStepView final : public OnboardingStepLayout {
    Q_OBJECT

public:
    /// `advice`: what there is to do on this desktop; empty for nothing.
    OnboardingDoneStepView(const QString &advice, std::function<void()> onFinish, QWidget *parent = nullptr);

private:
    std::function<void()> m_onFinish;
};
