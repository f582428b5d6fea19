#pragma once

#include <array>
#include <optional>

/// The pages that a user is led through at the first launch, in their order. The raw values are what the
/// progress meter counts with.
enum class OnboardingStep {
    Welcome = 0,
    Notifications = 1,
    FolderAccess = 2,
    Done = 3,
};

namespace onboardingSteps {

inline constexpr std::array all = {
    OnboardingStep::Welcome, OnboardingStep::Notifications, OnboardingStep::FolderAccess,
    OnboardingStep::Done};

inline constexpr int count = static_cast<int>(all.size());

[[nodiscard]] constexpr int rawValue(OnboardingStep step)
{
    return static_cast<int>(step);
}

/// The place in the row of steps as a user counts, from 1.
[[nodiscard]] constexpr int position(OnboardingStep step)
{
    return rawValue(step) + 1;
}

/// None for a number that names no step.
[[nodiscard]] constexpr std::optional<OnboardingStep> fromRawValue(int value)
{
    return value >= 0 && value < count ? std::optional(static_cast<OnboardingStep>(value)) : std::nullopt;
}

} // namespace onboardingSteps
