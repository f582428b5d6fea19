#pragma once

#include <QWidget>

#include <memory>
#include <vector>

/// A segment for each step; those of the current step and of all before it are filled. It is for the eye: the
/// caption beside it says the same.
class OnboardingProgressMeter final : public QWidget {
    Q_OBJECT

public:
    /// `currentStep` counts from 0. A negative number of steps is a programming error.
    OnboardingProgressMeter(int currentStep, int totalSteps, QWidget *parent = nullptr);
    ~OnboardingProgressMeter() override;
    Q_DISABLE_COPY_MOVE(OnboardingProgressMeter)

    [[nodiscard]] int currentStep() const { return m_currentStep; }

    [[nodiscard]] int totalSteps() const { return static_cast<int>(m_fills.size()); }

    /// The segments change their colours as slowly as the pages change.
    void setCurrentStep(int step);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    [[nodiscard]] std::vector<qreal> fillsAtRest() const;

    int m_currentStep;
    /// Of each segment: 0 not reached, 1 filled.
    std::vector<qreal> m_fills;
    /// Owns what is moving.
    std::unique_ptr<QObject> m_motion;
};
