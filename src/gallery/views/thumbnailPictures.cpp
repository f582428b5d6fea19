#include "thumbnailPictures.h"

#include "Theme.h"
#include "softShadow.h"

#include <QPainter>
#include <QPixmapCache>

namespace {

constexpr qreal widestRatio = 2.5;
constexpr qreal narrowestRatio = 0.5;
constexpr SoftShadow farShadow{.offset = 6, .blur = 14};
constexpr SoftShadow nearShadow{.offset = 1, .blur = 3};

bool isFitted(const QImage &image)
{
    const qreal ratio = qreal(image.width()) / image.height();
    return ratio > widestRatio || ratio < narrowestRatio;
}

/// The image in the pixels of the frame, with square corners.
QImage scaled(const QImage &image, QSize frame)
{
    const bool fits = isFitted(image);
    const QSize size = image.size()
                           .scaled(frame, fits ? Qt::KeepAspectRatio : Qt::KeepAspectRatioByExpanding)
                           .expandedTo({1, 1});
    const QImage result = image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                              .convertToFormat(
                                  thumbnailPictures::covers(image) ? QImage::Format_RGB32
                                                                   : QImage::Format_ARGB32_Premultiplied);
    const QPoint corner(
        fits ? (size.width() - frame.width()) / 2 : 0, fits ? (size.height() - frame.height()) / 2 : 0);
    // Outside of the image the copy is transparent.
    return result.copy(QRect(corner, frame));
}

QString keyOf(const char *name, const ThumbnailFrame &frame, const QColor &color)
{
    return QStringLiteral("thumbnail %1 %2x%3 %4 %5 %6")
        .arg(QLatin1String(name))
        .arg(frame.rect.width())
        .arg(frame.rect.height())
        .arg(frame.cornerRadius)
        .arg(frame.pixelRatio)
        .arg(color.rgba());
}

} // namespace

bool thumbnailPictures::covers(const QImage &image)
{
    return !image.isNull() && !image.hasAlphaChannel() && !isFitted(image);
}

QImage thumbnailPictures::framed(const QImage &image, const ThumbnailFrame &frame)
{
    QImage result(frame.pixelSize(), QImage::Format_ARGB32_Premultiplied);
    result.fill(Qt::transparent);
    QPainter painter(&result);
    // Filled with a brush, not clipped: so the corners are smooth.
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(
        continuousRoundedRect(
            QRectF(QPointF(), QSizeF(frame.rect.size()) * frame.pixelRatio),
            frame.cornerRadius * frame.pixelRatio),
        QBrush(scaled(image, frame.pixelSize())));
    painter.end();
    result.setDevicePixelRatio(frame.pixelRatio);
    return result;
}

QPixmap thumbnailPictures::shared(
    const char *name, const ThumbnailFrame &frame, const QColor &color,
    const std::function<void(QPainter &painter, const ThumbnailFrame &frame)> &paint)
{
    const QString key = keyOf(name, frame, color);
    QPixmap picture;
    if (!QPixmapCache::find(key, &picture)) {
        picture = QPixmap(frame.pixelSize());
        picture.setDevicePixelRatio(frame.pixelRatio);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        paint(painter, frame.atOrigin());
        painter.end();
        QPixmapCache::insert(key, picture);
    }
    return picture;
}

QPixmap thumbnailPictures::shadow(const ThumbnailFrame &frame)
{
    const Theme &theme = Theme::current();
    const QString key = keyOf("shadow", frame, theme.popoverFarShadow);
    QPixmap picture;
    if (!QPixmapCache::find(key, &picture)) {
        const int reach = farShadow.blur + farShadow.offset;
        const QRect area = frame.atOrigin().rect.adjusted(-reach, -reach, reach, reach);
        const QPainterPath outline = frame.atOrigin().outline();
        QImage image = renderShadow(outline, area, farShadow, theme.popoverFarShadow);
        QPainter painter(&image);
        painter.drawImage(0, 0, renderShadow(outline, area, nearShadow, theme.popoverNearShadow));
        painter.end();
        picture = QPixmap::fromImage(image);
        QPixmapCache::insert(key, picture);
    }
    return picture;
}
