#pragma once

#include <QFont>

/// The text styles, in the desktop's own font family where nothing else is said. Sizes are in points, and a
/// point is a logical pixel: the desktop's font size doesn't change them, its scale does.
enum class TextStyle {
    Title3,
    Headline,
    Body,
    Callout,
    /// The keys beside a menu's items.
    Shortcut,
    Subheadline,
    /// Heads of lists.
    StrongSubheadline,
    Caption,
    /// Heads of cards.
    StrongCaption,
    Button,
    SmallButton,
    /// Counts and labels in capitals: JetBrains Mono with wide tracking, in the desktop's font where that
    /// isn't installed.
    Monospaced,
    /// The same without the tracking.
    FrameNumber,
    // The first-run pages' own, in fonts of their own.
    WelcomeHeadline,
    StepHeadline,
    StepDescription,
    StepButton,
    StepLink,
    /// The place in the row of steps.
    StepCaption,
};

[[nodiscard]] QFont font(TextStyle style);

/// The height of a line in points, the same for every font family.
[[nodiscard]] int lineHeight(TextStyle style);
