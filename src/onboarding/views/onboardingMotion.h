#pragma once

#include <chrono>

namespace onboardingMotion {

/// How long the pages and the progress meter take to change; all of it with ease-in-out.
inline constexpr std::chrono::milliseconds stepChange{300};

} // namespace onboardingMotion
