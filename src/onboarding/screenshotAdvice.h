#pragma once

#include <QString>

/// What the user has to know, or to set, where the session's screenshot tool doesn't save a new screenshot by
/// itself: without it nothing would ever be found. Empty where it does, or where no one knows. A sentence of
/// at most two of the first-run pages' lines, as the desktop and the tool are set at this moment. Reads small
/// files at most. Main thread.
[[nodiscard]] QString screenshotAdvice();
