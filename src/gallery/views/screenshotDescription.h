#pragma once

#include <QString>

struct ScreenshotItem;

/// What is told about a screenshot in words, for people and for assistive programs.
namespace screenshotDescription {

/// A file's name as it can be shown in any text: control characters have a visible form, and letters that run
/// from right to left don't turn round what stands beside the name.
[[nodiscard]] QString displayName(const QString &name);

/// Size and date, as the desktop's language writes them.
[[nodiscard]] QString details(const ScreenshotItem &screenshot);

/// Name, size and date as rich text in which nothing of the name is markup.
[[nodiscard]] QString toolTip(const ScreenshotItem &screenshot);

} // namespace screenshotDescription
