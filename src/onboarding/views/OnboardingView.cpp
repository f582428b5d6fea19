#include "OnboardingView.h"

#include "FileAccessManager.h"
#include "OnboardingButton.h"
#include "OnboardingDoneStepView.h"
#include "OnboardingFolderAccessStepView.h"
#include "OnboardingHeader.h"
#include "OnboardingNotificationsStepView.h"
#include "OnboardingPageStage.h"
#include "OnboardingWelcomeStepView.h"
#include "Theme.h"
#include "screenshotAdvice.h"

#include <QKeyEvent>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace {

/// In points.
constexpr QSize fullSize(560, 680);
/// Of the header and the page that needs most: the space around its parts is all that can shrink.
constexpr int leastHeight = 470;

} // namespace

OnboardingView::OnboardingView(std::function<void()> onFinished, QWidget *parent)
    : QWidget(parent),
      m_onFinished(std::move(onFinished)),
      m_header(new OnboardingHeader(m_step, this)),
      m_stage(new OnboardingPageStage(this))
{
    setMinimumSize(fullSize.width(), leastHeight);
    setMaximumSize(fullSize);
    resize(fullSize);
    m_stage->setPage(makePage());
    connect(m_header, &OnboardingHeader::backRequested, this, &OnboardingView::goBack);
    repaintWithTheme(*this);
}

QWidget *OnboardingView::makePage()
{
    const auto onContinue = [this] { goOn(); };
    switch (m_step) {
    case OnboardingStep::Welcome:
        return new OnboardingWelcomeStepView(onContinue);
    case OnboardingStep::Notifications:
        return new OnboardingNotificationsStepView(UserNotificationCenter::current(), onContinue);
    case OnboardingStep::FolderAccess:
        return new OnboardingFolderAccessStepView(FileAccessManager::shared(), onContinue);
    case OnboardingStep::Done:
        return new OnboardingDoneStepView(screenshotAdvice(), onContinue);
    }
    std::unreachable();
}

void OnboardingView::goOn()
{
    if (const auto next = onboardingSteps::fromRawValue(onboardingSteps::rawValue(m_step) + 1)) {
        setStep(*next);
    } else {
        m_onFinished();
    }
}

void OnboardingView::goBack()
{
    if (const auto previous = onboardingSteps::fromRawValue(onboardingSteps::rawValue(m_step) - 1)) {
        setStep(*previous);
    }
}

bool OnboardingView::isKeyboardOnWhatGoes(OnboardingStep next) const
{
    const QWidget *const focused = focusWidget();
    const bool hasWayBack = next != OnboardingStep::Welcome;
    return focused != nullptr && focused != this && (m_stage->isAncestorOf(focused) || !hasWayBack);
}

void OnboardingView::setStep(OnboardingStep step)
{
    const bool isKeyboardUsed = isKeyboardOnWhatGoes(step);
    if (isKeyboardUsed) {
        // The toolkit would give the keyboard to whatever comes next.
        setFocus();
    }
    m_step = step;
    m_header->setStep(step);
    m_stage->setPage(makePage());
    if (isKeyboardUsed) {
        m_stage->page()->setFocus(Qt::TabFocusReason);
    }
}

void OnboardingView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    // Otherwise the toolkit gives the keyboard, and so the focus ring, to the first control.
    if (!event->spontaneous()) {
        setFocus();
    }
}

void OnboardingView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    constexpr int top = OnboardingHeader::fixedHeight;
    m_header->setGeometry(0, 0, width(), top);
    m_stage->setGeometry(0, top, width(), height() - top);
}

void OnboardingView::keyPressEvent(QKeyEvent *event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isReturn || event->isAutoRepeat()) {
        QWidget::keyPressEvent(event);
        return;
    }
    const auto buttons = m_stage->page()->findChildren<OnboardingButton *>();
    const auto first =
        std::ranges::find_if(buttons, [](const OnboardingButton *button) { return button->isEnabled(); });
    if (first != buttons.end()) {
        (*first)->click();
    }
}

void OnboardingView::paintEvent(QPaintEvent * /*event*/)
{
    QPainter(this).fillRect(rect(), Theme::current().window);
}
