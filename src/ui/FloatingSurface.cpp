#include "FloatingSurface.h"

#include "Theme.h"
#include "softShadow.h"

#include <QPainter>
#include <QPixmap>
#include <QPixmapCache>

#include <cstddef>

namespace {

constexpr SoftShadow farLayer{.offset = 10, .blur = 22};
constexpr SoftShadow nearLayer{.offset = 2, .blur = 5};

QPixmap renderShadows(const QPainterPath &outline, const QRect &area)
{
    const Theme &theme = Theme::current();
    QImage image = renderShadow(outline, area, farLayer, theme.popoverFarShadow);
    QPainter painter(&image);
    painter.drawImage(0, 0, renderShadow(outline, area, nearLayer, theme.popoverNearShadow));
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
        shadow = renderShadows(outline, area);
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
