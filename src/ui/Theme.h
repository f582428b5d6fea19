#pragma once

#include <QColor>

#include <optional>

class QWidget;

/// Every colour that the program draws with, as one value: a table for light and one for dark desktops.
///
/// Views ask for `current()` each time they paint and keep no colour of their own. The accent is the
/// desktop's where it has one, darkened as far as white text on it needs.
struct Theme {
    enum class Scheme { Light, Dark };
    enum class Contrast { Normal, Increased };

    QColor window;
    QColor sidebar;
    QColor controlBackground;
    QColor popover;

    QColor primary;
    QColor secondary;
    /// Large empty-state drawings only, never text.
    QColor tertiary;
    /// Text and symbols on the accent, on red, and on badges.
    QColor onAccent;

    QColor separator;
    QColor border;
    QColor face;
    QColor faceHover;
    QColor facePressed;
    QColor quietHover;
    QColor quietPressed;
    QColor well;
    QColor segment;

    QColor accent;
    QColor accentHover;
    QColor accentPressed;
    QColor selectionTint;
    QColor focusRing;

    QColor gray;
    QColor blue;
    QColor orange;
    QColor red;
    QColor redHover;
    QColor redPressed;
    QColor green;
    QColor blueText;
    QColor redText;
    QColor greenText;
    QColor orangeText;

    /// The first-run pages' own accent, whatever the desktop's is.
    QColor amber;
    QColor amberHover;
    /// Where amber says what is done already.
    QColor amberTint;
    QColor amberInk;
    /// Around an amber button.
    QColor amberFocusRing;
    /// Labels on amber; white is too faint there for whoever asks for more contrast.
    QColor onAmber;
    QColor onAmberShadow;

    /// Gray at opacity 0.1: what stands where an image isn't yet.
    QColor placeholder;
    /// The line inside every thumbnail and preview.
    QColor imageEdge;
    QColor scrim;
    QColor bannerFill;
    QColor bannerHover;
    QColor bannerLine;
    QColor switchOff;
    QColor switchKnob;

    QColor popoverEdge;
    QColor popoverFarShadow;
    QColor popoverNearShadow;
    QColor controlShadow;

    /// The table for a desktop that has this scheme, accent and contrast.
    [[nodiscard]] static Theme make(
        Scheme scheme, const std::optional<QColor> &accent = std::nullopt,
        Contrast contrast = Contrast::Normal);

    /// The table for the desktop as it is now. Main thread.
    [[nodiscard]] static const Theme &current();
};

/// Paints `widget` anew whenever the desktop changes its colours, for as long as it lives.
void repaintWithTheme(QWidget &widget);

/// WCAG 2's contrast of two opaque colours, 1 to 21.
[[nodiscard]] qreal contrastRatio(const QColor &one, const QColor &other);

/// `color` laid over an opaque `ground`.
[[nodiscard]] QColor composited(const QColor &color, const QColor &ground);
