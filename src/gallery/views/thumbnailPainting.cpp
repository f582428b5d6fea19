#include "thumbnailPainting.h"

#include "Appearance.h"
#include "Symbols.h"
#include "Theme.h"
#include "thumbnailPictures.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

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
    QPainter &painter, const ThumbnailFrame &frame, qreal distance, qreal width, const QColor &color)
{
    const qreal middle = distance + width / 2;
    painter.strokePath(
        continuousRoundedRect(inset(frame.rect, middle), std::max(0.0, frame.cornerRadius - middle)),
        QPen(color, width));
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

void thumbnailPainting::alignToPixels(QPainter &painter, const QPointF &point)
{
    const qreal ratio = pixelRatio(painter);
    const QPointF pixel = painter.deviceTransform().map(point);
    painter.translate(
        (std::round(pixel.x()) - pixel.x()) / ratio, (std::round(pixel.y()) - pixel.y()) / ratio);
}

void thumbnailPainting::paintShadow(QPainter &painter, const ThumbnailFrame &frame)
{
    const QPixmap shadow = thumbnailPictures::shadow(frame);
    const QSize room = (shadow.size() - frame.rect.size()) / 2;
    painter.drawPixmap(frame.rect.topLeft() - QPoint(room.width(), room.height()), shadow);
}

void thumbnailPainting::paintPlaceholder(QPainter &painter, const ThumbnailFrame &frame)
{
    const QColor &color = Theme::current().placeholder;
    const auto paint = [&color](QPainter &picture, const ThumbnailFrame &own) {
        picture.fillPath(own.outline(), color);
    };
    painter.drawPixmap(frame.rect.topLeft(), thumbnailPictures::shared("placeholder", frame, color, paint));
}

void thumbnailPainting::paintUnreadable(QPainter &painter, const ThumbnailFrame &frame)
{
    paintSymbol(
        painter, QStringLiteral("photo.on.rectangle.angled"), QRectF(frame.rect).center(),
        unreadableSymbolSide, Theme::current().tertiary);
}

void thumbnailPainting::paintLight(QPainter &painter, const ThumbnailFrame &frame)
{
    // Dodging divides by what is left of the source's brightness, so every channel grows by the same factor.
    const qreal factor = isDark() ? 1.12 : 1.05;
    const auto brightness = static_cast<float>(1 - 1 / factor);
    painter.setCompositionMode(QPainter::CompositionMode_ColorDodge);
    painter.fillPath(frame.outline(), QColor::fromRgbF(brightness, brightness, brightness));
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

void thumbnailPainting::paintShade(QPainter &painter, const ThumbnailFrame &frame)
{
    painter.fillPath(frame.outline(), withOpacity(Qt::black, 0.08));
}

void thumbnailPainting::paintEdge(QPainter &painter, const ThumbnailFrame &frame)
{
    const QColor &color = Theme::current().imageEdge;
    const auto paint = [&color](QPainter &picture, const ThumbnailFrame &own) {
        paintLineInside(picture, own, 0, edgeWidth, color);
    };
    painter.drawPixmap(frame.rect.topLeft(), thumbnailPictures::shared("edge", frame, color, paint));
}

void thumbnailPainting::paintSelectionRing(QPainter &painter, const ThumbnailFrame &frame)
{
    const QColor color = withOpacity(Theme::current().selectionTint, 1);
    const auto paint = [&color](QPainter &picture, const ThumbnailFrame &own) {
        paintLineInside(
            picture, own, ringWidth, 1, isDark() ? withOpacity(ink, 0.55) : withOpacity(Qt::white, 0.85));
        paintLineInside(picture, own, 0, ringWidth, color);
    };
    const char *const name = isDark() ? "ring in dark" : "ring in light";
    painter.drawPixmap(frame.rect.topLeft(), thumbnailPictures::shared(name, frame, color, paint));
}

void thumbnailPainting::paintFocusRing(QPainter &painter, const ThumbnailFrame &frame)
{
    paintLineInside(painter, frame, -(focusRingDistance + ringWidth), ringWidth, Theme::current().focusRing);
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
