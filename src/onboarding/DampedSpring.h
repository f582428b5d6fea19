#pragma once

/// The way of a mass on a damped spring that is let go at 0, at rest, and is drawn to 1: the solution of
/// x'' = −ω² (x − 1) − 2 ζ ω x' with x(0) = x'(0) = 0, where ω is 2π / response and ζ the damping fraction.
class DampedSpring final {
public:
    /// `response`: one swing's time without damping, in seconds, more than 0. `dampingFraction`: less than 1
    /// swings beyond the end, 1 is the fastest that doesn't, more is slower. More than 0, or it never rests.
    constexpr DampedSpring(double response, double dampingFraction)
        : m_response(response),
          m_dampingFraction(dampingFraction)
    {
    }

    /// Where it is after so many seconds.
    [[nodiscard]] double position(double seconds) const;

    /// After how many seconds it stays within `tolerance` of 1 for good; a bound, not the first such moment.
    [[nodiscard]] double settlingTime(double tolerance) const;

private:
    [[nodiscard]] double angularFrequency() const;
    /// What no later distance from 1 exceeds.
    [[nodiscard]] double greatestDistanceAfter(double seconds) const;

    double m_response;
    double m_dampingFraction;
};
