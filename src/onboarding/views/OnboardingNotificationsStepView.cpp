#include "OnboardingNotificationsStepView.h"

#include "OnboardingFooter.h"
#include "OnboardingPrimaryButton.h"
#include "OnboardingSkipLink.h"
#include "Workspace.h"
#include "whenWindowActivated.h"

#include <QEvent>
#include <QPointer>

#include <utility>

namespace {

using Status = UserNotificationCenter::AuthorizationStatus;

struct Labels {
    QString primary;
    QString secondary;
};

Labels labels(Status status)
{
    using View = OnboardingNotificationsStepView;
    switch (status) {
    case Status::NotDetermined:
        return {.primary = View::tr("Enable Notifications"), .secondary = View::tr("Not now")};
    case Status::Denied:
        return {.primary = View::tr("Open System Settings"), .secondary = View::tr("Continue")};
    case Status::Authorized:
        return {.primary = View::tr("Notifications On"), .secondary = View::tr("Continue")};
    case Status::Provisional:
    case Status::Ephemeral:
        return {.primary = View::tr("Enable Notifications"), .secondary = View::tr("Continue")};
    }
    std::unreachable();
}

QString description()
{
    return OnboardingNotificationsStepView::tr(
        "Deskbroom can notify you right after you take a screenshot, so you can keep or delete it without "
        "hunting through your Desktop.");
}

void openNotificationSettings()
{
    const QUrl settings(QStringLiteral("x-apple.systempreferences:com.apple.preference.notifications"));
    if (settings.isValid()) {
        Workspace::shared().open(settings);
    }
}

} // namespace

OnboardingNotificationsStepView::OnboardingNotificationsStepView(
    UserNotificationCenter &center, std::function<void()> onContinue, QWidget *parent)
    : OnboardingStepLayout(
          QStringLiteral("bell.badge.fill"), tr("Know the moment you capture one."), description(),
          new OnboardingFooter(QString(), QString()), parent),
      m_center(center),
      m_onContinue(std::move(onContinue))
{
    connect(
        &m_center, &UserNotificationCenter::authorizationMayHaveChanged, this,
        &OnboardingNotificationsStepView::readStatus);
    connect(&footer(), &OnboardingFooter::primaryPressed, this, &OnboardingNotificationsStepView::act);
    connect(&footer(), &OnboardingFooter::secondaryPressed, this, [this] { m_onContinue(); });
    // The user may come back from the desktop's settings.
    whenWindowActivated(*this, [this] { readStatus(); });
    render();
}

void OnboardingNotificationsStepView::showEvent(QShowEvent *event)
{
    OnboardingStepLayout::showEvent(event);
    readStatus();
}

void OnboardingNotificationsStepView::changeEvent(QEvent *event)
{
    OnboardingStepLayout::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        // Another folder may have got another name.
        setDescription(description());
    }
}

void OnboardingNotificationsStepView::readStatus()
{
    m_center.getAuthorizationStatus([page = QPointer(this), reading = ++m_readings](Status status) {
        if (page && reading == page->m_readings) {
            page->m_authorizationStatus = status;
            page->render();
        }
    });
}

void OnboardingNotificationsStepView::requestAuthorization()
{
    using enum UserNotificationCenter::AuthorizationOption;
    m_center.requestAuthorization(
        Alert | Sound, UserNotificationCenter::AuthorizationRequester::User,
        [page = QPointer(this)](bool, const std::optional<Error> &) {
            // Whatever came of it, the status says it.
            if (page) {
                page->readStatus();
            }
        });
}

void OnboardingNotificationsStepView::act()
{
    if (m_authorizationStatus == Status::Denied) {
        openNotificationSettings();
    } else {
        requestAuthorization();
    }
}

void OnboardingNotificationsStepView::render()
{
    const auto [primary, secondary] = labels(m_authorizationStatus);
    footer().primary().setText(primary);
    footer().primary().setEnabled(m_authorizationStatus != Status::Authorized);
    footer().secondary()->setText(secondary);
}
