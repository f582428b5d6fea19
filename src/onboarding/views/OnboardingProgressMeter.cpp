#include "OnboardingProgressMeter.h"

#include "Motion.h"
#include "Theme.h"
#include "continuousRoundedRect.h"
#include "fatalError.h"
#include "onboardingMotion.h"

#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace {

/// In points.
constexpr QSize segment(36, 4);
constexpr int gap = 6;
constexpr qreal radius = 2;

constexpr float restOpacity = 0.25F;

std::size_t checkedCount(int totalSteps)
{
    if (totalSteps < 0) {
        fatalError(QStringLiteral("A progress meter of %1 steps").arg(totalSteps));
    }
    return static_cast<std::size_t>(totalSteps);
}

QColor withOpacity(QColor color, qreal opacity)
{
    color.setAlphaF(static_cast<float>(color.alphaF() * opacity));
    return color;
}

} // namespace

OnboardingProgressMeter::OnboardingProgressMeter(int currentStep, int totalSteps, QWidget *parent)
    : QWidget(parent),
      m_currentStep(currentStep),
      m_fills(checkedCount(totalSteps))
{
    m_fills = fillsAtRest();
    setFixedSize(std::max(0, totalSteps * (segment.width() + gap) - gap), segment.height());
    repaintWithTheme(*this);
}

OnboardingProgressMeter::~OnboardingProgressMeter() = default;

std::vector<qreal> OnboardingProgressMeter::fillsAtRest() const
{
    std::vector<qreal> fills(static_cast<std::size_t>(totalSteps()), 0);
    const auto reached = std::clamp(m_currentStep + 1, 0, totalSteps());
    std::fill_n(fills.begin(), reached, 1);
    return fills;
}

void OnboardingProgressMeter::setCurrentStep(int step)
{
    if (step == m_currentStep) {
        return;
    }
    m_currentStep = step;
    m_motion = std::make_unique<QObject>();
    const auto move = [this, start = m_fills, end = fillsAtRest()](qreal progress) {
        for (std::size_t index = 0; index < m_fills.size(); ++index) {
            m_fills[index] = start[index] + (end[index] - start[index]) * progress;
        }
        update();
    };
    if (isVisible()) {
        Motion::run(
            *m_motion, onboardingMotion::stepChange, Motion::Kind::Movement, Motion::Curve::EaseInOut, move);
    } else {
        move(1);
    }
}

void OnboardingProgressMeter::paintEvent(QPaintEvent * /*event*/)
{
    const Theme &theme = Theme::current();
    QColor rest = theme.secondary;
    rest.setAlphaF(restOpacity);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QRect box(QPoint(), segment);
    for (const qreal fill : m_fills) {
        const QPainterPath shape =
            continuousRoundedRect(QStyle::visualRect(layoutDirection(), rect(), box), radius);
        painter.fillPath(shape, withOpacity(rest, 1 - fill));
        painter.fillPath(shape, withOpacity(theme.amber, fill));
        box.translate(segment.width() + gap, 0);
    }
}
