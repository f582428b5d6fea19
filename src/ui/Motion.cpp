#include "Motion.h"

#include "Appearance.h"

#include <QVariantAnimation>

#include <algorithm>

namespace {

constexpr std::chrono::milliseconds longestReducedFade{100};

} // namespace

void Motion::run(
    QObject &owner, std::chrono::milliseconds duration, Kind kind, std::function<void(qreal)> step)
{
    if (isReduced()) {
        if (kind == Kind::Movement) {
            step(1);
            return;
        }
        duration = std::min(duration, longestReducedFade);
    }
    step(0);
    auto *animation = new QVariantAnimation(&owner);
    animation->setDuration(static_cast<int>(duration.count()));
    animation->setEasingCurve(QEasingCurve::OutQuad);
    animation->setStartValue(0.0);
    animation->setEndValue(1.0);
    QObject::connect(
        animation, &QVariantAnimation::valueChanged, &owner,
        [step = std::move(step)](const QVariant &value) { step(value.toReal()); });
    animation->start(QAbstractAnimation::DeleteWhenStopped);
}

bool Motion::isReduced()
{
    return Appearance::shared().reducesMotion();
}
