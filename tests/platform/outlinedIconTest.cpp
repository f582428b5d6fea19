#include "outlinedIcon.h"

#include <QImage>
#include <QPainter>
#include <QTest>

class outlinedIconTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void standsOutFromEveryBackground_data();
    void standsOutFromEveryBackground();
    void keepsItsInside();
    void noIconStaysNone();
};

namespace {

/// A square with a wide margin.
QIcon square(const QColor &colour)
{
    QPixmap pixmap(24, 24);
    pixmap.fill(Qt::transparent);
    QPainter(&pixmap).fillRect(6, 6, 12, 12, colour);
    return pixmap;
}

QImage on(const QColor &background, const QIcon &icon)
{
    QImage image(24, 24, QImage::Format_RGB32);
    image.fill(background);
    QPainter painter(&image);
    icon.paint(&painter, image.rect());
    return image;
}

} // namespace

void outlinedIconTest::standsOutFromEveryBackground_data()
{
    QTest::addColumn<QColor>("colour");
    QTest::addColumn<QColor>("background");
    QTest::newRow("black on black") << QColor(Qt::black) << QColor(Qt::black);
    QTest::newRow("black on white") << QColor(Qt::black) << QColor(Qt::white);
    QTest::newRow("white on white") << QColor(Qt::white) << QColor(Qt::white);
    QTest::newRow("white on black") << QColor(Qt::white) << QColor(Qt::black);
}

void outlinedIconTest::standsOutFromEveryBackground()
{
    QFETCH(const QColor, colour);
    QFETCH(const QColor, background);

    const QImage image = on(background, outlinedIcon(square(colour)));

    const int inside = image.pixelColor(12, 12).lightness();
    const int edge = image.pixelColor(12, 5).lightness();
    const int outside = image.pixelColor(1, 1).lightness();
    QCOMPARE(outside, background.lightness());
    QVERIFY(std::max(std::abs(inside - outside), std::abs(edge - outside)) > 60);
}

void outlinedIconTest::keepsItsInside()
{
    QCOMPARE(on(Qt::white, outlinedIcon(square(QColor(0x2e3436)))).pixelColor(12, 12), QColor(0x2e3436));
}

void outlinedIconTest::noIconStaysNone()
{
    QVERIFY(outlinedIcon(QIcon()).isNull());
}

QTEST_MAIN(outlinedIconTest)

#include "outlinedIconTest.moc"
