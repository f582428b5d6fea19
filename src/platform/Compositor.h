#pragma once

/// Whether half transparent windows show what lies under them now: under X11 only with a compositing
/// manager, which may come and go, so ask when a window is about to be shown. Main thread.
[[nodiscard]] bool compositorIsActive();
