#pragma once

#include "OnboardingStep.h"

#include <QWidget>

class OnboardingBackButton;
class OnboardingProgressMeter;
class TextLabel;

/// What stays in its place above the first-run pages: the way back, which the first page doesn't have, and
/// how far one has come.
class OnboardingHeader final : public QWidget {
    Q_OBJECT

public:
    /// In points.
    static constexpr int fixedHeight = 56;

    explicit OnboardingHeader(OnboardingStep step, QWidget *parent = nullptr);

    void setStep(OnboardingStep step);

Q_SIGNALS:
    void backRequested();

protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void render(OnboardingStep step);
    void layOut();

    OnboardingBackButton *m_back;
    OnboardingProgressMeter *m_meter;
    TextLabel *m_caption;
};
