#pragma once

/// The desktop's own switch for the notifications of this program, which the user finds in its settings.
enum class NotificationSwitch { Off, On };

/// As the running desktop has it set now; on where it has no switch, or the switch can't be read. Off means
/// that nothing reaches the user: one that only keeps banners away and still fills the list counts as on, and
/// so does "do not disturb", which isn't about this program.
///
/// Depends on the environment and the settings files alone; takes some ten milliseconds where the desktop's
/// database is asked. Any thread but the main one.
[[nodiscard]] NotificationSwitch readNotificationSwitch();
