#include "PopoverFrame.h"
#include "Theme.h"

#include <QImage>
#include <QPainter>
#include <QTest>

namespace {

constexpr QRectF body(60, 60, 300, 226);

QImage painted(const PopoverGeometry &geometry, PopoverAppearance::Shadow shadow)
{
    QImage image(420, 360, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    PopoverFrame().paint(painter, geometry, shadow);
    return image;
}

} // namespace

class PopoverFrameTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void arrowReachesItsTip_data();
    void arrowReachesItsTip();
    void arrowKeepsClearOfTheCorners();
    void freePopoverHasNoArrow();
    void cornersAreCutAsDeepAsACircleOfTwelve();
    void bodyIsFilledAndShadowSurroundsIt();
    void shadowStaysInsideItsMargins();
    void withoutShadowEverythingInsideIsOpaque();
};

void PopoverFrameTest::arrowReachesItsTip_data()
{
    QTest::addColumn<PopoverEdge>("edge");
    QTest::addColumn<qreal>("tip");
    QTest::addColumn<QPointF>("end");
    QTest::newRow("below the anchor") << PopoverEdge::Below << 200.0 << QPointF(200, 50);
    QTest::newRow("above the anchor") << PopoverEdge::Above << 200.0 << QPointF(200, 296);
    QTest::newRow("left of the anchor") << PopoverEdge::Left << 150.0 << QPointF(370, 150);
    QTest::newRow("right of the anchor") << PopoverEdge::Right << 150.0 << QPointF(50, 150);
}

void PopoverFrameTest::arrowReachesItsTip()
{
    QFETCH(const PopoverEdge, edge);
    QFETCH(const qreal, tip);
    QFETCH(const QPointF, end);
    const QPainterPath outline = PopoverFrame().outline({body, edge, tip});
    const QRectF bounds = outline.boundingRect();
    QCOMPARE(bounds, body.united(QRectF(end, body.center()).normalized()));
    // Half a point inside the tip is in, beside it is out.
    const QPointF inwards = (body.center() - end) / QLineF(end, body.center()).length();
    const QPointF half = qAbs(inwards.y()) > qAbs(inwards.x()) ? QPointF(0, inwards.y() > 0 ? 0.5 : -0.5)
                                                               : QPointF(inwards.x() > 0 ? 0.5 : -0.5, 0);
    QVERIFY(outline.contains(end + half));
    QVERIFY(!outline.contains(end + half + QPointF(half.y(), half.x()) * 8));
}

void PopoverFrameTest::arrowKeepsClearOfTheCorners()
{
    const QPainterPath outline = PopoverFrame().outline({body, PopoverEdge::Below, body.left()});
    QCOMPARE(outline.boundingRect().left(), body.left());
    QVERIFY(!outline.contains(QPointF(body.left() + 3, body.top() - 1)));
    QVERIFY(outline.contains(QPointF(body.left() + 25.4, body.top() - 8)));
}

void PopoverFrameTest::freePopoverHasNoArrow()
{
    QCOMPARE(PopoverFrame().outline({body, PopoverEdge::Free, 0}).boundingRect(), body);
}

void PopoverFrameTest::cornersAreCutAsDeepAsACircleOfTwelve()
{
    const QPainterPath outline = PopoverFrame().outline({body, PopoverEdge::Below, 200});
    const qreal depth = 12 * (1 - M_SQRT1_2);
    for (const QPointF &corner : {body.topLeft(), body.topRight(), body.bottomLeft(), body.bottomRight()}) {
        const QPointF inwards(corner.x() < 200 ? 1 : -1, corner.y() < 170 ? 1 : -1);
        QVERIFY(outline.contains(corner + inwards * (depth + 0.3)));
        QVERIFY(!outline.contains(corner + inwards * (depth - 0.3)));
    }
}

void PopoverFrameTest::bodyIsFilledAndShadowSurroundsIt()
{
    const QImage image = painted({body, PopoverEdge::Below, 200}, PopoverAppearance::Shadow::Drawn);
    QCOMPARE(image.pixelColor(body.center().toPoint()), Theme::current().popover);
    QCOMPARE(image.pixelColor(200, 55), Theme::current().popover);
    const int below = image.pixelColor(200, 292).alpha();
    const int farBelow = image.pixelColor(200, 305).alpha();
    QVERIFY2(below > farBelow && farBelow > 0, qPrintable(QStringLiteral("%1 %2").arg(below).arg(farBelow)));
}

void PopoverFrameTest::shadowStaysInsideItsMargins()
{
    const PopoverFrame frame;
    const QImage image = painted({body, PopoverEdge::Below, 200}, PopoverAppearance::Shadow::Drawn);
    const QRect outer =
        body.toRect().adjusted(0, -frame.arrowSize().height(), 0, 0).marginsAdded(frame.shadowMargins());
    int strongestAtTheRim = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const int alpha = qAlpha(image.pixel(x, y));
            if (!outer.contains(x, y)) {
                QCOMPARE(alpha, 0);
            } else if (!outer.adjusted(1, 1, -1, -1).contains(x, y)) {
                strongestAtTheRim = qMax(strongestAtTheRim, alpha);
            }
        }
    }
    // A shadow that is cut off shows as a line.
    QVERIFY2(strongestAtTheRim <= 3, qPrintable(QString::number(strongestAtTheRim)));
}

void PopoverFrameTest::withoutShadowEverythingInsideIsOpaque()
{
    const PopoverGeometry geometry{body, PopoverEdge::Below, 200};
    const QImage image = painted(geometry, PopoverAppearance::Shadow::None);
    const QRegion shape(PopoverFrame().outline(geometry).toFillPolygon().toPolygon());
    for (const QRect &rect : shape) {
        for (int x = rect.left(); x <= rect.right(); ++x) {
            QCOMPARE(image.pixelColor(x, rect.top()).alpha(), 255);
        }
    }
    QCOMPARE(image.pixelColor(body.center().toPoint()), Theme::current().popover);
    QVERIFY(image.pixelColor(200, 285) != Theme::current().popover);
}

QTEST_MAIN(PopoverFrameTest)
#include "PopoverFrameTest.moc"
