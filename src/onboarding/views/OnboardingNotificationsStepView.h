#pragma once

#include "OnboardingStepLayout.h"
#include "UserNotificationCenter.h"

#include <functional>

/// The first-run page that asks for notifications. It shows what is set at the moment, read when it is shown,
/// and again when the user comes back to it or a notification service comes; it never moves on by itself.
class OnboardingNotificationsStepView final : public OnboardingStepLayout {
    Q_OBJECT

public:
    /// What the centre answers after the page has gone is dropped.
    OnboardingNotificationsStepView(
        UserNotificationCenter &center, std::function<void()> onContinue, QWidget *parent = nullptr);

    [[nodiscard]] UserNotificationCenter::AuthorizationStatus authorizationStatus() const
    {
        return m_authorizationStatus;
    }

protected:
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void readStatus();
    void requestAuthorization();
    void act();
    void render();

    UserNotificationCenter &m_center;
    std::function<void()> m_onContinue;
    UserNotificationCenter::AuthorizationStatus m_authorizationStatus =
        UserNotificationCenter::AuthorizationStatus::NotDetermined;
    /// How often the status was asked for: an answer that comes after that to a later question is old.
    int m_readings = 0;
};
