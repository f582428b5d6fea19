#include "FloatingSurface.h"

#include "Theme.h"

#include <QPainter>
#include <QPixmap>
#include <QPixmapCache>

#include <cmath>
#include <cstddef>
#include <vector>

namespace {

struct ShadowLayer {
    /// How far down it lies and how far it is blurred, in points.
    int offset;
    int blur;
};

constexpr ShadowLayer farLayer{.offset = 10, .blur = 22};
constexpr ShadowLayer nearLayer{.offset = 2, .blur = 5};

/// One pass of a running average over `radius` pixels to either side, along one line of the image.
void averageLine(uchar *line, std::ptrdiff_t step, int count, int radius, std::vector<uchar> &scratch)
{
    const int width = 2 * radius + 1;
    const auto at = [line, step, count](int index) {
        return index >= 0 && index < count ? int(line[index * step]) : 0;
    };
    int sum = 0;
    for (int index = -radius; index < radius; ++index) {
        sum += at(index);
    }
    for (int index = 0; index < count; ++index) {
        sum += at(index + radius);
        scratch[std::size_t(index)] = uchar(sum / width);
        sum -= at(index - radius);
    }
    for (int index = 0; index < count; ++index) {
        line[index * step] = scratch[std::size_t(index)];
    }
}

/// Three running averages, which come as near to a Gaussian blur as an eye can tell.
void blur(QImage &mask, int points)
{
    // A blur of n points is a Gaussian of n / 2; three boxes of this radius have its variance.
    const int radius = qRound((std::sqrt(4.0 * (points / 2.0) * (points / 2.0) + 1) - 1) / 2);
    std::vector<uchar> scratch(std::size_t(qMax(mask.width(), mask.height())));
    for (int pass = 0; pass < 3; ++pass) {
        for (int y = 0; y < mask.height(); ++y) {
            averageLine(mask.scanLine(y), 1, mask.width(), radius, scratch);
        }
        for (int x = 0; x < mask.width(); ++x) {
            averageLine(mask.bits() + x, mask.bytesPerLine(), mask.height(), radius, scratch);
        }
    }
}

/// The outline's shadow in one colour, in an image that begins at `origin`. A pixel to a point is enough
/// for something so soft.
QImage
renderLayer(const QPainterPath &outline, const QRect &area, const ShadowLayer &layer, const QColor &color)
{
    QImage mask(area.size(), QImage::Format_Alpha8);
    mask.fill(0);
    QPainter maskPainter(&mask);
    maskPainter.setRenderHint(QPainter::Antialiasing);
    maskPainter.translate(QPointF(-area.topLeft()) + QPointF(0, layer.offset));
    maskPainter.fillPath(outline, Qt::black);
    maskPainter.end();
    blur(mask, layer.blur);

    QImage tinted(area.size(), QImage::Format_ARGB32_Premultiplied);
    tinted.fill(color);
    QPainter painter(&tinted);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawImage(0, 0, mask);
    return tinted;
}

QPixmap renderShadow(const QPainterPath &outline, const QRect &area)
{
    const Theme &theme = Theme::current();
    QImage image = renderLayer(outline, area, farLayer, theme.popoverFarShadow);
    QPainter painter(&image);
    painter.drawImage(0, 0, renderLayer(outline, area, nearLayer, theme.popoverNearShadow));
    painter.end();
    return QPixmap::fromImage(image);
}

/// Tells one outline's shadow from another's.
QString shadowKey(const QPainterPath &outline)
{
    std::size_t hash = Theme::current().popoverFarShadow.rgba();
    for (int index = 0; index < outline.elementCount(); ++index) {
        const QPainterPath::Element element = outline.elementAt(index);
        hash = qHashMulti(hash, element.x, element.y);
    }
    return QStringLiteral("floating surface shadow %1").arg(hash);
}

void paintShadow(QPainter &painter, const QPainterPath &outline)
{
    const QRect area = outline.boundingRect().toAlignedRect().marginsAdded(FloatingSurface::shadowMargins());
    const QString key = shadowKey(outline);
    QPixmap shadow;
    if (!QPixmapCache::find(key, &shadow)) {
        shadow = renderShadow(outline, area);
        QPixmapCache::insert(key, shadow);
    }
    painter.drawPixmap(area.topLeft(), shadow);
}

} // namespace

QMargins FloatingSurface::shadowMargins()
{
    constexpr int reach = farLayer.blur + 2;
    return {reach, reach - farLayer.offset, reach, reach + farLayer.offset};
}

void FloatingSurface::paint(QPainter &painter, const QPainterPath &outline, PopoverAppearance::Shadow shadow)
{
    const Theme &theme = Theme::current();
    painter.save();
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    if (shadow == PopoverAppearance::Shadow::Drawn) {
        paintShadow(painter, outline);
        // The outer half of a line of 1 is the hairline; the fill covers the inner one.
        painter.strokePath(outline, QPen(theme.popoverEdge, 1));
        painter.fillPath(outline, theme.popover);
    } else {
        const QColor edge = composited(theme.popoverEdge, theme.popover);
        painter.fillRect(outline.boundingRect().toAlignedRect(), edge);
        painter.fillPath(outline, theme.popover);
        painter.setClipPath(outline);
        painter.strokePath(outline, QPen(edge, 1));
    }
    painter.restore();
}
