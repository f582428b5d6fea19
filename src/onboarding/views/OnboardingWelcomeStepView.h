#pragma once

#include <QWidget>

#include <functional>
#include <memory>

class ApplicationIcon;

/// The first first-run page. Its icon springs to its full size each time that the page is shown.
class OnboardingWelcomeStepView final : public QWidget {
    Q_OBJECT

public:
    explicit OnboardingWelcomeStepView(std::function<void()> onContinue, QWidget *parent = nullptr);
    ~OnboardingWelcomeStepView() override;
    Q_DISABLE_COPY_MOVE(OnboardingWelcomeStepView)

    /// Of the icon, 1 being its full size.
    [[nodiscard]] qreal iconScale() const;

protected:
    void showEvent(QShowEvent *event) override;

private:
    void growIcon();

    std::function<void()> m_onContinue;
    ApplicationIcon *m_icon;
    /// Owns what is moving.
    std::unique_ptr<QObject> m_motion;
};
