#pragma once

#include <QPalette>

/// The toolkit's widgets for a desktop that prefers dark programs. The toolkit itself gets to know of that
/// only from a platform theme, which not every desktop has.
[[nodiscard]] QPalette darkPalette();
