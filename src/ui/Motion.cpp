#include "Motion.h"

#include "Appearance.h"

#include <QPointF>
#include <QVariantAnimation>

#include <algorithm>
#include <utility>

namespace {

constexpr std::chrono::milliseconds longestReducedFade{100};

/// The cubic curve that style sheets call ease-in-out as well; the toolkit's own is steeper in the middle.
QEasingCurve easeInOut()
{
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment(QPointF(0.42, 0), QPointF(0.58, 1), QPointF(1, 1));
    return curve;
}

QEasingCurve easing(Motion::Curve curve)
{
    switch (curve) {
    case Motion::Curve::EaseOut:
        return QEasingCurve::OutQuad;
    case Motion::Curve::EaseInOut:
        return easeInOut();
    case Motion::Curve::Linear:
        return QEasingCurve::Linear;
    }
    std::unreachable();
}

} // namespace

void Motion::run(
    QObject &owner, std::chrono::milliseconds duration, Kind kind, std::function<void(qreal)> step)
{
    run(owner, duration, kind, Curve::EaseOut, std::move(step));
}

void Motion::run(
    QObject &owner, std::chrono::milliseconds duration, Kind kind, Curve curve,
    std::function<void(qreal)> step)
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
    animation->setEasingCurve(easing(curve));
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
