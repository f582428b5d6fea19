#pragma once

#include <QFont>

/// The text styles, in the desktop's own font family but for the monospaced one. Sizes are in points, and a
/// point is a logical pixel: the desktop's font size doesn't change them, its scale does.
enum class TextStyle {
    Title3,
    Headline,
    Body,
    Callout,
    Subheadline,
    Caption,
    Button,
    SmallButton,
    /// Counts and labels in capitals: JetBrains Mono with wide tracking, in the desktop's font where that
    /// isn't installed.
    Monospaced,
    /// The same without the tracking.
    FrameNumber,
};

[[nodiscard]] QFont font(TextStyle style);

/// The height of a line in points, the same for every font family.
[[nodiscard]] int lineHeight(TextStyle style);
