#include "SettingsIconBadge.h"

#include "Symbols.h"
#include "continuousRoundedRect.h"

#include <QLinearGradient>
#include <QPainter>

namespace {

/// Of the square's edge.
constexpr qreal radiusRatio = 0.27;
constexpr qreal fontRatio = 0.55;
/// A symbol's box at a font size of one point, in points.
constexpr qreal boxRatio = 1.2;

/// How much white the upper edge has.
constexpr float shine = 0.14F;

} // namespace

void SettingsIconBadge::paint(QPainter &painter, const QPointF &topLeft) const
{
    const Theme &theme = Theme::current();
    const QColor ground = theme.*color;
    const QRectF square(topLeft, QSizeF(size, size));
    QLinearGradient gradient(square.topLeft(), square.bottomLeft());
    QColor white = Qt::white;
    white.setAlphaF(shine);
    gradient.setColorAt(0, composited(white, ground));
    gradient.setColorAt(1, ground);
    painter.fillPath(continuousRoundedRect(square, size * radiusRatio), gradient);
    Symbols::paint(
        painter, systemImage + QStringLiteral(".semibold"), square.center(), size * fontRatio * boxRatio,
        theme.onAccent);
}
