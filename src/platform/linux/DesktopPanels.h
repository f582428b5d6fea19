#pragma once

#include "StatusItemPlace.h"

#include <QList>

#include <optional>

/// The screens as they are now, the primary one first.
[[nodiscard]] QList<ScreenShape> desktopScreens();

/// The panels as they are now. On X11 these are the windows of type dock in the window manager's list (EWMH).
/// `statusNotifierHost` is the process that shows status items: a panel of that process, or a panel with a
/// window of that process inside (as panels with plugins in processes of their own have), is known to hold
/// them. Elsewhere, and where no window says that it is a dock, what the screens' available geometry tells.
///
/// Blocks for a few round trips to the X server.
[[nodiscard]] QList<PanelShape> desktopPanels(std::optional<uint> statusNotifierHost);

/// Whether the pointer's place can be asked for at any time: on X11, but not under XWayland, which knows it
/// only while the pointer is over one of its own windows.
[[nodiscard]] bool isPointerPlaceKnown();
