#include "thumbnailPainting.h"

#include "Appearance.h"
#include "Symbols.h"
#include "Theme.h"
#include "continuousRoundedRect.h"
#include "softShadow.h"

#include <QPainter>
#include <QPixmapCache>

#include <algorithm>

namespace {

constexpr qreal widestRatio = 2.5;
constexpr qreal narrowestRatio = 0.5;
constexpr SoftShadow farShadow{.offset = 6, .blur = 14};
constexpr SoftShadow nearShadow{.offset = 1, .blur = 3};
constexpr qreal edgeWidth = 0.5;
constexpr qreal ringWidth = 2;
constexpr qreal focusRingDistance = 2;
constexpr qreal unreadableSymbolSide = 24;

/// What lies on images, which are of any colour: the same on every desktop.
constexpr QColor ink(0x14, 0x16, 0x1A);

QColor withOpacity(QColor color, qreal opacity)
{
    color.setAlphaF(static_cast<float>(opacity));
    return color;
}

bool isDark()
{
    return Appearance::shared().colorScheme() == Appearance::ColorScheme::Dark;
}

QRectF inset(const QRectF &rect, qreal distance)
{
    return rect.adjusted(distance, distance, -distance, -distance);
}

/// A line of `width` whose outer edge lies `distance` inside the frame.
void paintLineInside(
    QPainter &painter, const QRectF &frame, qreal radius, qreal distance, qreal width, const QColor &color)
{
    const qreal middle = distance + width / 2;
    painter.strokePath(
        continuousRoundedRect(inset(frame, middle), std::max(0.0, radius - middle)), QPen(color, width));
}

QPixmap shadowOf(const QSize &size, qreal radius)
{
    const Theme &theme = Theme::current();
    const QString key = QStringLiteral("thumbnail shadow %1x%2 %3 %4")
                            .arg(size.width())
                            .arg(size.height())
                            .arg(radius)
                            .arg(theme.popoverFarShadow.rgba());
    QPixmap shadow;
    if (!QPixmapCache::find(key, &shadow)) {
        const int reach = farShadow.blur + farShadow.offset;
        const QRect area = QRect(QPoint(), size).adjusted(-reach, -reach, reach, reach);
        const QPainterPath outline = continuousRoundedRect(QRectF(QPointF(), size), radius);
        QImage image = renderShadow(outline, area, farShadow, theme.popoverFarShadow);
        QPainter painter(&image);
        painter.drawImage(0, 0, renderShadow(outline, area, nearShadow, theme.popoverNearShadow));
        painter.end();
        shadow = QPixmap::fromImage(image);
        QPixmapCache::insert(key, shadow);
    }
    return shadow;
}

void paintBadgeShadow(QPainter &painter, const QRectF &box)
{
    constexpr qreal blur = 2.5;
    constexpr qreal strength = 0.3;
    const QPointF centre = box.center() + QPointF(0, 1);
    const qreal reach = box.width() / 2 + blur;
    QRadialGradient gradient(centre, reach);
    gradient.setColorAt(1 - 2 * blur / reach, withOpacity(Qt::black, strength));
    gradient.setColorAt(1 - blur / reach, withOpacity(Qt::black, strength * 0.55));
    gradient.setColorAt(1 - blur / reach / 2, withOpacity(Qt::black, strength * 0.18));
    gradient.setColorAt(1, Qt::transparent);
    // Not under the badge, which is partly translucent.
    QPainterPath around;
    around.addEllipse(centre, reach, reach);
    around.addEllipse(box);
    painter.fillPath(around, gradient);
}

/// The mark of the symbol "checkmark.circle", heavier than there because it is smaller.
void paintCheckMark(QPainter &painter, const QRectF &box)
{
    constexpr qreal drawingSide = 22;
    const qreal scale = box.width() / drawingSide;
    QPolygonF mark{{-4.8, 0}, {-1.5, 3.3}, {4.7, -3.15}};
    for (QPointF &point : mark) {
        point = box.center() + point * scale;
    }
    painter.setPen(
        QPen(Theme::current().onAccent, box.width() / 10, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(mark);
}

void paintSymbol(
    QPainter &painter, const QString &name, const QPointF &centre, qreal side, const QColor &tint)
{
    const qreal ratio = thumbnailPainting::pixelRatio(painter);
    QRectF box(0, 0, side, side);
    box.moveCenter(centre);
    painter.drawImage(box.topLeft(), Symbols::image(name, side, ratio, tint));
}

void paintCopyBadge(QPainter &painter, const QRectF &box)
{
    painter.setBrush(withOpacity(ink, 0.7));
    painter.drawEllipse(box);
    const qreal side = box.width() > 20 ? 14 : 12;
    paintSymbol(painter, QStringLiteral("doc.on.clipboard"), box.center(), side, Theme::current().onAccent);
}

void paintSelectionBadge(QPainter &painter, const QRectF &box, thumbnailPainting::Badge badge)
{
    constexpr qreal whiteWidth = 1.5;
    constexpr qreal lineWidth = 0.5;
    const bool isSelected = badge == thumbnailPainting::Badge::Selected;
    painter.setBrush(isSelected ? Theme::current().accent : withOpacity(ink, 0.36));
    painter.drawEllipse(inset(box, whiteWidth / 2));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(withOpacity(ink, 0.5), lineWidth));
    painter.drawEllipse(inset(box, -lineWidth / 2));
    painter.setPen(QPen(Theme::current().onAccent, whiteWidth));
    painter.drawEllipse(inset(box, whiteWidth / 2));
    if (isSelected) {
        paintCheckMark(painter, box);
    }
}

} // namespace

qreal thumbnailPainting::pixelRatio(const QPainter &painter)
{
    return painter.deviceTransform().m11();
}

QImage thumbnailPainting::framed(const QImage &image, QSize size, qreal devicePixelRatio)
{
    const QSize frame = (QSizeF(size) * devicePixelRatio).toSize();
    const qreal ratio = qreal(image.width()) / image.height();
    const bool isFitted = ratio > widestRatio || ratio < narrowestRatio;
    const QSize scaled = image.size()
                             .scaled(frame, isFitted ? Qt::KeepAspectRatio : Qt::KeepAspectRatioByExpanding)
                             .expandedTo({1, 1});
    QImage result = image.scaled(scaled, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                        .convertToFormat(
                            image.hasAlphaChannel() || isFitted ? QImage::Format_ARGB32_Premultiplied
                                                                : QImage::Format_RGB32);
    const QPoint corner(
        isFitted ? (scaled.width() - frame.width()) / 2 : 0,
        isFitted ? (scaled.height() - frame.height()) / 2 : 0);
    // Outside of the image the copy is transparent.
    result = result.copy(QRect(corner, frame));
    result.setDevicePixelRatio(devicePixelRatio);
    return result;
}

void thumbnailPainting::paintShadow(QPainter &painter, const QRect &frame, qreal radius)
{
    const QPixmap shadow = shadowOf(frame.size(), radius);
    const QSize room = (shadow.size() - frame.size()) / 2;
    painter.drawPixmap(frame.topLeft() - QPoint(room.width(), room.height()), shadow);
}

void thumbnailPainting::paintPlaceholder(QPainter &painter, const QRectF &frame, qreal radius)
{
    painter.fillPath(continuousRoundedRect(frame, radius), Theme::current().placeholder);
}

void thumbnailPainting::paintUnreadable(QPainter &painter, const QRectF &frame)
{
    paintSymbol(
        painter, QStringLiteral("photo.on.rectangle.angled"), frame.center(), unreadableSymbolSide,
        Theme::current().tertiary);
}

void thumbnailPainting::paintImage(QPainter &painter, const QRectF &frame, qreal radius, const QImage &image)
{
    // Filled with a brush, not clipped: so the corners are smooth.
    painter.translate(frame.topLeft());
    painter.fillPath(continuousRoundedRect(QRectF(QPointF(), frame.size()), radius), QBrush(image));
    painter.translate(-frame.topLeft());
}

void thumbnailPainting::paintLight(QPainter &painter, const QRectF &frame, qreal radius)
{
    // Dodging divides by what is left of the source's brightness, so every channel grows by the same factor.
    const qreal factor = isDark() ? 1.12 : 1.05;
    const auto brightness = static_cast<float>(1 - 1 / factor);
    painter.setCompositionMode(QPainter::CompositionMode_ColorDodge);
    painter.fillPath(
        continuousRoundedRect(frame, radius), QColor::fromRgbF(brightness, brightness, brightness));
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

void thumbnailPainting::paintShade(QPainter &painter, const QRectF &frame, qreal radius)
{
    painter.fillPath(continuousRoundedRect(frame, radius), withOpacity(Qt::black, 0.08));
}

void thumbnailPainting::paintEdge(QPainter &painter, const QRectF &frame, qreal radius)
{
    paintLineInside(painter, frame, radius, 0, edgeWidth, Theme::current().imageEdge);
}

void thumbnailPainting::paintSelectionRing(QPainter &painter, const QRectF &frame, qreal radius)
{
    const Theme &theme = Theme::current();
    paintLineInside(
        painter, frame, radius, ringWidth, 1,
        isDark() ? withOpacity(ink, 0.55) : withOpacity(Qt::white, 0.85));
    paintLineInside(painter, frame, radius, 0, ringWidth, withOpacity(theme.selectionTint, 1));
}

void thumbnailPainting::paintFocusRing(QPainter &painter, const QRectF &frame, qreal radius)
{
    paintLineInside(
        painter, frame, radius, -(focusRingDistance + ringWidth), ringWidth, Theme::current().focusRing);
}

void thumbnailPainting::paintBadge(QPainter &painter, const QRectF &box, Badge badge)
{
    painter.save();
    painter.setPen(Qt::NoPen);
    paintBadgeShadow(painter, box);
    if (badge == Badge::Copy) {
        paintCopyBadge(painter, box);
    } else {
        paintSelectionBadge(painter, box, badge);
    }
    painter.restore();
}
