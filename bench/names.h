#pragma once

#include <QString>

/// The `index`-th of an endless row of names that capture tools give, as different desktops name them.
[[nodiscard]] QString screenshotName(int index);

/// The `index`-th of an endless row of other names that lie on desktops and in download folders; one in ten
/// is an image.
[[nodiscard]] QString otherName(int index);
