#pragma once

#include "PopoverAppearance.h"

/// What popovers and menus are painted as: the popover colour in an outline, a hairline around it, and two
/// soft shadows where something can show them.
namespace FloatingSurface {

/// The room that the shadows take around the outline, in logical pixels.
[[nodiscard]] QMargins shadowMargins();

/// Without a shadow the window is opaque and cut along the outline, so the hairline lies inside of it.
/// The painted shadow is kept while it is painted again and again; the toolkit's pixmap cache lets go of it
/// within a minute after that.
void paint(QPainter &painter, const QPainterPath &outline, PopoverAppearance::Shadow shadow);

} // namespace FloatingSurface
