#include "SettingsIconBadge.h"

#include "rendering.h"

#include <QPainter>
#include <QTest>

namespace {

constexpr int pixelsPerPoint = 4;
constexpr QPointF place(3, 5);

QImage painted(const SettingsIconBadge &badge)
{
    QImage image(QSize(40, 40) * pixelsPerPoint, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(pixelsPerPoint);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    badge.paint(painter, place);
    return image;
}

/// Around the pixels for which `counts` holds, in points.
template <typename Counts> QRectF bounds(const QImage &image, Counts counts)
{
    QRect found;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (counts(image.pixelColor(x, y))) {
                found |= QRect(x, y, 1, 1);
            }
        }
    }
    return {QPointF(found.topLeft()) / pixelsPerPoint, QSizeF(found.size()) / pixelsPerPoint};
}

} // namespace

/// A white symbol on a rounded square, as it is painted.
class SettingsIconBadgeTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void hasTheGivenMeasures_data();
    void hasTheGivenMeasures();
    void isShadedFromTopToBottom();
};

void SettingsIconBadgeTest::hasTheGivenMeasures_data()
{
    QTest::addColumn<qreal>("size");
    // How much of each edge a radius of 0.27 of the square's edge cuts from a corner.
    QTest::addColumn<qreal>("cut");
    // 0.55 of the square's edge, and a fifth more for the box of a symbol.
    QTest::addColumn<qreal>("symbol");
    QTest::newRow("in the sidebar") << 22.0 << 1.74 << 14.52;
    QTest::newRow("in the list of features") << 20.0 << 1.58 << 13.2;
}

void SettingsIconBadgeTest::hasTheGivenMeasures()
{
    QFETCH(const qreal, size);
    QFETCH(const qreal, cut);
    QFETCH(const qreal, symbol);
    const QImage image = painted({QStringLiteral("checkmark.circle"), &Theme::green, size});
    const QRectF square = bounds(image, [](const QColor &color) { return color.alpha() > 0; });
    QCOMPARE(square, QRectF(place, QSizeF(size, size)));

    const auto alphaAt = [&](qreal inset) {
        return colorAt(image, square.topLeft() + QPointF(inset, inset)).alpha();
    };
    QCOMPARE(alphaAt(cut - 0.5), 0);
    QCOMPARE(alphaAt(cut + 0.5), 255);

    // The drawing leaves a little of its box free, the same on all sides.
    const QRectF drawing = bounds(image, [](const QColor &color) { return color.red() > 200; });
    QVERIFY2(drawing.width() <= symbol, qPrintable(QString::number(drawing.width())));
    QVERIFY2(drawing.width() > 0.8 * symbol, qPrintable(QString::number(drawing.width())));
    QVERIFY(qAbs(drawing.center().x() - square.center().x()) <= 0.3);
    QVERIFY(qAbs(drawing.center().y() - square.center().y()) <= 0.3);
}

void SettingsIconBadgeTest::isShadedFromTopToBottom()
{
    const QImage image = painted({QStringLiteral("timer"), &Theme::blue, 22});
    const QColor blue = Theme::current().blue;
    QColor white = Qt::white;
    white.setAlphaF(0.14F);
    QVERIFY(isNearly(colorAt(image, place + QPointF(11, 0.25)), composited(white, blue), 3));
    QVERIFY(isNearly(colorAt(image, place + QPointF(11, 21.5)), blue, 3));
}

QTEST_MAIN(SettingsIconBadgeTest)
#include "SettingsIconBadgeTest.moc"
