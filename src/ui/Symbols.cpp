#include "Symbols.h"

#include "Theme.h"
#include "fatalError.h"

#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QPixmap>

// A resource of a static library isn't linked in unless something names it; the macro wants the global scope.
static void initializeSymbols()
{
    Q_INIT_RESOURCE(symbols);
    Q_INIT_RESOURCE(semibold_symbols);
}

namespace {

class SymbolIconEngine final : public QIconEngine {
public:
    explicit SymbolIconEngine(QString name) : m_name(std::move(name)) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override
    {
        const int side = qMin(rect.width(), rect.height());
        QRect square(0, 0, side, side);
        square.moveCenter(rect.center());
        painter->drawImage(
            square, Symbols::image(m_name, side, painter->device()->devicePixelRatioF(), tint(mode)));
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State) override
    {
        return QPixmap::fromImage(Symbols::image(m_name, qMin(size.width(), size.height()), 1, tint(mode)));
    }

    [[nodiscard]] QIconEngine *clone() const override { return new SymbolIconEngine(m_name); }

    QString iconName() override { return m_name; }

    QString key() const override { return QStringLiteral("symbol"); }

private:
    static QColor tint(QIcon::Mode mode)
    {
        const Theme &theme = Theme::current();
        QColor color = mode == QIcon::Selected ? theme.onAccent : theme.primary;
        if (mode == QIcon::Disabled) {
            color.setAlphaF(0.45F);
        }
        return color;
    }

    QString m_name;
};

/// Painted by the toolkit's icon engine for SVG, a plugin. It keeps only the file's name, and what it has
/// painted in the toolkit's cache of pixmaps, which empties itself some time after the last use.
const QIcon &drawing(const QString &name)
{
    // Never destroyed: the plugin that their engines come from may be unloaded first.
    static auto &drawings = *new QHash<QString, QIcon>;
    QIcon &found = drawings[name];
    if (found.isNull()) {
        found = QIcon(QStringLiteral(":/symbols/%1.svg").arg(name));
    }
    return found;
}

} // namespace

QImage Symbols::image(const QString &name, qreal points, qreal devicePixelRatio, const QColor &tint)
{
    initializeSymbols();
    const int pixels = qRound(points * devicePixelRatio);
    QImage image = drawing(name).pixmap(QSize(pixels, pixels), 1).toImage();
    if (image.size() != QSize(pixels, pixels)) {
        fatalError(
            QStringLiteral("The symbol %1 can't be drawn: without its file or the SVG plugin").arg(name));
    }
    image.convertTo(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), tint);
    painter.end();
    image.setDevicePixelRatio(devicePixelRatio);
    return image;
}

void Symbols::paint(
    QPainter &painter, const QString &name, const QPointF &centre, qreal points, const QColor &tint)
{
    const qreal pixelsPerPoint = painter.deviceTransform().m11();
    const QImage drawing = image(name, points, pixelsPerPoint, tint);
    const QSizeF size = drawing.deviceIndependentSize();
    const QPointF corner = centre - QPointF(size.width(), size.height()) / 2;
    painter.drawImage(QPointF((corner * pixelsPerPoint).toPoint()) / pixelsPerPoint, drawing);
}

QIcon Symbols::icon(const QString &name)
{
    return QIcon(new SymbolIconEngine(name));
}
