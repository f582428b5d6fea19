#pragma once

#include <QString>

/// The gallery's texts that hold numbers, filled in. Numbers stand in decimal digits, and the ending of the
/// plural is an "s", or an "S" among capitals, unless the number is 1.
namespace galleryTexts {

/// How many there are, under the popover's title.
[[nodiscard]] QString screenshotCount(qsizetype count);

/// The same at the head of a window.
[[nodiscard]] QString headerCount(qsizetype displayed, qsizetype all);

[[nodiscard]] QString selectionCount(qsizetype count);

/// What the popover has no room for.
[[nodiscard]] QString overflow(qsizetype count);

[[nodiscard]] QString footer(qsizetype displayed, qsizetype all);
[[nodiscard]] QString loadMore(qsizetype remaining);

/// Asks before that many go to the Trash.
[[nodiscard]] QString deletionQuestion(qsizetype count);

} // namespace galleryTexts
