#pragma once

#include <QStringList>

/// The names of the running desktop, its own first and then those of the desktops that it is made after, as
/// `XDG_CURRENT_DESKTOP` has them (Desktop Entry Specification). In whatever case; empty outside a desktop.
[[nodiscard]] QStringList currentDesktops();
