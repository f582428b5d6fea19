#pragma once

#include <QString>

/// What a program is given that is started, or told to show something, because the user asked for it just
/// now: with it, its window may come to the front of the user's others.
///
/// A new id of the Startup Notification Protocol, which ends in the X server's time. Empty where there is no
/// X server or where it isn't the one that shows the windows (XWayland). GUI thread; waits for the X server.
[[nodiscard]] QString startupId();
