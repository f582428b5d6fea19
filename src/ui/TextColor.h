#pragma once

#include <QColor>

/// What texts and symbols are drawn in. The theme knows the colours; views keep only these names.
enum class TextColor {
    Primary,
    Secondary,
    /// Large empty-state drawings only, never text.
    Tertiary,
    Blue,
    Red,
    Green,
    Orange,
    /// The first-run pages' symbols; too faint for text.
    Amber,
    /// On the accent, on red, and on badges.
    OnAccent,
};

/// The colour for the desktop as it is now. Main thread.
[[nodiscard]] QColor color(TextColor textColor);
