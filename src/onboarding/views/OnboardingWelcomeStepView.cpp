#include "OnboardingWelcomeStepView.h"

#include "ApplicationIcon.h"
#include "DampedSpring.h"
#include "Motion.h"
#include "OnboardingFooter.h"
#include "OnboardingStepTexts.h"
#include "layOutStep.h"

#include <QShowEvent>

namespace {

/// In points.
constexpr int iconSide = 96;
constexpr int textWidth = 360;

constexpr qreal smallScale = 0.8;
constexpr DampedSpring spring(0.5, 0.6);
/// Of the spring's way: less than a fiftieth of a point of the icon.
constexpr double invisible = 0.001;

} // namespace

OnboardingWelcomeStepView::OnboardingWelcomeStepView(std::function<void()> onContinue, QWidget *parent)
    : QWidget(parent),
      m_onContinue(std::move(onContinue)),
      m_icon(new ApplicationIcon(iconSide))
{
    auto *const texts = new OnboardingStepTexts(
        TextStyle::WelcomeHeadline, tr("Thanks for downloading."),
        tr("A few quick steps and you're set — screenshots handled automatically, right from your menu bar."),
        textWidth);
    auto *const footer = new OnboardingFooter(tr("Get Started"));
    connect(footer, &OnboardingFooter::primaryPressed, this, [this] { m_onContinue(); });
    layOutStep(*this, m_icon, texts, footer);
    m_icon->setScale(smallScale);
}

OnboardingWelcomeStepView::~OnboardingWelcomeStepView() = default;

qreal OnboardingWelcomeStepView::iconScale() const
{
    return m_icon->scale();
}

void OnboardingWelcomeStepView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (!event->spontaneous()) {
        growIcon();
    }
}

void OnboardingWelcomeStepView::growIcon()
{
    using Seconds = std::chrono::duration<double>;
    const Seconds settled(spring.settlingTime(invisible));
    m_motion = std::make_unique<QObject>();
    Motion::run(
        *m_motion, std::chrono::duration_cast<std::chrono::milliseconds>(settled), Motion::Kind::Movement,
        Motion::Curve::Linear, [this, settled](qreal progress) {
            const bool isSettled = progress >= 1;
            const qreal way = isSettled ? 1 : spring.position(settled.count() * progress);
            m_icon->setScale(smallScale + (1 - smallScale) * way);
        });
}
