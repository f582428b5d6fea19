#pragma once

#include <QString>

/// What the session's screenshot tool does with a picture that the user has just taken.
enum class ScreenshotSaving {
    /// It is in its folder at once (GNOME Shell, gnome-screenshot).
    AtOnce,
    /// It is shown first and saved only when the user says so, unless the preview is switched off
    /// (SystemScreenshotPreview), whatever that switch says at the moment (Spectacle).
    AfterPreview,
    /// The user says each time whether and where it is saved (xfce4-screenshooter, mate-screenshot), or it
    /// goes to the clipboard alone: nothing is there to be found before that.
    OnRequest,
    /// Which tool is in use isn't known.
    Unknown,
};

/// As the desktop and the tool's settings say at this moment, for a picture taken with the desktop's own
/// keys. What is kept in the desktop's database isn't asked for: an administrator's ban on saving to disk
/// isn't seen. At most one read of a small file; any thread.
[[nodiscard]] ScreenshotSaving screenshotSaving();

/// Names of tools that there is more to say about.
namespace screenshotTools {

inline constexpr QLatin1String spectacle("Spectacle");
inline constexpr QLatin1String xfce("xfce4-screenshooter");
inline constexpr QLatin1String mate("mate-screenshot");
inline constexpr QLatin1String elementary("elementary Screenshot");
inline constexpr QLatin1String flameshot("Flameshot");

} // namespace screenshotTools

/// The name of the tool that the session's desktop comes with; on a desktop without one, the tool that the
/// user has told where to save. Empty if neither is known. "Spectacle", "xfce4-screenshooter", "Flameshot"
/// and so on. Small files are read, none of them on a desktop with a tool of its own; any thread.
[[nodiscard]] QString screenshotTool();
