#pragma once

#include <QIcon>

/// A one-coloured icon with a thin outline in the opposite lightness, so that it can be told apart from any
/// background. For X11 trays: unlike other panels they neither recolour an icon nor say what colour they are.
/// On a background that the icon stands out from anyway, the outline is next to invisible.
[[nodiscard]] QIcon outlinedIcon(const QIcon &icon);
