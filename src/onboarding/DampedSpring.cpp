#include "DampedSpring.h"

#include <cmath>
#include <numbers>

double DampedSpring::angularFrequency() const
{
    return 2 * std::numbers::pi / m_response;
}

double DampedSpring::position(double seconds) const
{
    if (seconds <= 0) {
        return 0;
    }
    const double frequency = angularFrequency();
    const double decay = m_dampingFraction * frequency;
    if (m_dampingFraction < 1) {
        const double swing = frequency * std::sqrt(1 - m_dampingFraction * m_dampingFraction);
        return 1 - std::exp(-decay * seconds) *
                       (std::cos(swing * seconds) + decay / swing * std::sin(swing * seconds));
    }
    if (m_dampingFraction > 1) {
        const double spread = frequency * std::sqrt(m_dampingFraction * m_dampingFraction - 1);
        const double slow = decay - spread;
        const double fast = decay + spread;
        return 1 - (fast * std::exp(-slow * seconds) - slow * std::exp(-fast * seconds)) / (2 * spread);
    }
    return 1 - std::exp(-decay * seconds) * (1 + decay * seconds);
}

double DampedSpring::greatestDistanceAfter(double seconds) const
{
    if (m_dampingFraction >= 1) {
        // It comes nearer all the time.
        return 1 - position(seconds);
    }
    const double amplitude = 1 / std::sqrt(1 - m_dampingFraction * m_dampingFraction);
    return amplitude * std::exp(-m_dampingFraction * angularFrequency() * seconds);
}

double DampedSpring::settlingTime(double tolerance) const
{
    double early = 0;
    double late = m_response;
    while (greatestDistanceAfter(late) > tolerance) {
        early = late;
        late *= 2;
    }
    constexpr int halvings = 40;
    for (int halving = 0; halving < halvings; ++halving) {
        const double middle = (early + late) / 2;
        (greatestDistanceAfter(middle) > tolerance ? early : late) = middle;
    }
    return late;
}
