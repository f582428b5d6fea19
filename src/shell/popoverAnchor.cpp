#include "popoverAnchor.h"

#include <QGuiApplication>
#include <QScreen>

PopoverAnchor popoverAnchor(const StatusItem::Anchor &item)
{
    const QScreen *screen = QGuiApplication::screenAt(item.rectangle.center());
    if (screen == nullptr) {
        screen = QGuiApplication::primaryScreen();
    }
    return {
        .rectangle = item.rectangle,
        .arrow = item.source == StatusItem::Anchor::Source::ScreenCorner
                     ? PopoverAnchor::Arrow::None
                     : PopoverAnchor::Arrow::PointsAtRectangle,
        .screen = screen->geometry(),
        .availableArea = screen->availableGeometry(),
    };
}
