#pragma once

#include <QRegion>

class QWindow;

/// Lets the mouse through the window where `region`, in the window's logical pixels, isn't. Does nothing
/// where the window isn't an X11 one. Main thread.
void setInputShape(const QWindow &window, const QRegion &region);
