#pragma once

#include <QString>

struct ScreenshotItem;

/// What is told about a screenshot in words, for people and for assistive programs.
namespace screenshotDescription {

/// Size and date, as the desktop's language writes them.
[[nodiscard]] QString details(const ScreenshotItem &screenshot);

/// Name, size and date as rich text in which nothing of the name is markup.
[[nodiscard]] QString toolTip(const ScreenshotItem &screenshot);

} // namespace screenshotDescription
