#include "Symbols.h"

#include "Theme.h"
#include "fatalError.h"

#include <QIconEngine>
#include <QPainter>
#include <QPixmap>

// A resource of a static library isn't linked in unless something names it; the macro wants the global scope.
static void initializeSymbols()
{
    Q_INIT_RESOURCE(symbols);
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

} // namespace

QImage Symbols::image(const QString &name, qreal points, qreal devicePixelRatio, const QColor &tint)
{
    initializeSymbols();
    // By the toolkit's icon engine for SVG, a plugin that keeps no drawing longer than its picture.
    const QIcon drawing(QStringLiteral(":/symbols/%1.svg").arg(name));
    const int pixels = qRound(points * devicePixelRatio);
    QImage image = drawing.pixmap(QSize(pixels, pixels), 1).toImage();
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

QIcon Symbols::icon(const QString &name)
{
    return QIcon(new SymbolIconEngine(name));
}
