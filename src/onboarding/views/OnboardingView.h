#pragma once

#include "OnboardingStep.h"

#include <QWidget>

#include <functional>

class OnboardingHeader;
class OnboardingPageStage;

/// The contents of the window that leads a new user through the first-run pages. It begins with the first one
/// and moves by one step at a time; a page is made anew each time that it is shown. Going back undoes
/// nothing.
///
/// Return presses a page's large button while no other control has the keyboard; where that button has
/// nothing left to do, the link under it.
///
/// It is 560 × 680 points, less high only on a screen without room for that.
class OnboardingView final : public QWidget {
    Q_OBJECT

public:
    /// `onFinished` is called when the user leaves the last page; the view may go with it.
    explicit OnboardingView(std::function<void()> onFinished, QWidget *parent = nullptr);

    [[nodiscard]] OnboardingStep step() const { return m_step; }

protected:
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    [[nodiscard]] QWidget *makePage();
    void goOn();
    void goBack();
    void setStep(OnboardingStep step);
    /// Whether the keyboard is on a control that is about to go.
    [[nodiscard]] bool isKeyboardOnWhatGoes(OnboardingStep next) const;

    std::function<void()> m_onFinished;
    OnboardingStep m_step = OnboardingStep::Welcome;
    OnboardingHeader *m_header;
    OnboardingPageStage *m_stage;
};
