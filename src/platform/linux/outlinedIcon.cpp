#include "outlinedIcon.h"

#include <QImage>
#include <QPainter>
#include <QPixmap>

namespace {

/// The sides that trays ask for, in pixels.
constexpr int sides[] = {16, 22, 24, 32, 48};
constexpr qreal outlineOpacity = 0.6;
constexpr int middleLightness = 128;

QImage tinted(QImage image, const QColor &colour)
{
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), colour);
    return image;
}

/// The lightness of the icon's most opaque pixel, 0 to 255.
int lightnessOf(const QImage &image)
{
    QColor strongest(Qt::transparent);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor colour = image.pixelColor(x, y);
            if (colour.alpha() > strongest.alpha()) {
                strongest = colour;
            }
        }
    }
    return strongest.lightness();
}

QPixmap outlined(const QImage &image)
{
    const QImage outline = tinted(image, lightnessOf(image) < middleLightness ? Qt::white : Qt::black);
    QPixmap pixmap(image.size());
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setOpacity(outlineOpacity);
    for (const QPoint offset : {QPoint(-1, 0), QPoint(1, 0), QPoint(0, -1), QPoint(0, 1)}) {
        painter.drawImage(offset, outline);
    }
    painter.setOpacity(1);
    painter.drawImage(0, 0, image);
    return pixmap;
}

} // namespace

QIcon outlinedIcon(const QIcon &icon)
{
    QIcon result;
    if (icon.isNull()) {
        return result;
    }
    for (const int side : sides) {
        const QPixmap pixmap = icon.pixmap(QSize(side, side), 1.0);
        result.addPixmap(outlined(pixmap.toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied)));
    }
    return result;
}
