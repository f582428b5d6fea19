#include "PopoverPlacement.h"

#include <QTest>

Q_DECLARE_METATYPE(PopoverEdge)

/// A screen of 1280 × 800 with a panel of 30 at one side, contents of 300 × 276, no shadow.
class PopoverPlacementTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void liesOnTheInnerSideOfThePanel_data();
    void liesOnTheInnerSideOfThePanel();
    void theTipPointsAtTheMiddleOfTheItem();
    void theTipIsOnePointBelowThePanel();
    void theTipKeepsAwayFromTheCorners();
    void staysInsideTheScreenWithEveryItem();
    void withoutAnItemThereIsNoArrow();
    void withoutPanelKnowledgeRoomDecides();
    void theShadowStopsAtTheTipAndTheScreensEdges();
    void followsTheScreenOfTheItem();
};

namespace {

constexpr QRect screen(0, 0, 1280, 800);
constexpr QSize content(300, 276);
constexpr QSize arrow(22, 10);

PopoverAnchor anchor(const QRect &rectangle, const QRect &availableArea)
{
    return {
        .rectangle = rectangle,
        .arrow = PopoverAnchor::Arrow::PointsAtRectangle,
        .screen = screen,
        .availableArea = availableArea,
    };
}

const QRect belowTopPanel = screen.adjusted(0, 30, 0, 0);

QRect bodyOnScreen(const PopoverPlacement &placement)
{
    return placement.geometry.body.toRect().translated(placement.window.topLeft());
}

} // namespace

void PopoverPlacementTest::liesOnTheInnerSideOfThePanel_data()
{
    QTest::addColumn<QRect>("item");
    QTest::addColumn<QRect>("availableArea");
    QTest::addColumn<PopoverEdge>("edge");
    QTest::newRow("panel at the top") << QRect(900, 3, 24, 24) << belowTopPanel << PopoverEdge::Below;
    QTest::newRow("panel at the bottom")
        << QRect(900, 773, 24, 24) << screen.adjusted(0, 0, 0, -30) << PopoverEdge::Above;
    QTest::newRow("panel at the left")
        << QRect(3, 400, 24, 24) << screen.adjusted(30, 0, 0, 0) << PopoverEdge::Right;
    QTest::newRow("panel at the right")
        << QRect(1253, 400, 24, 24) << screen.adjusted(0, 0, -30, 0) << PopoverEdge::Left;
}

void PopoverPlacementTest::liesOnTheInnerSideOfThePanel()
{
    QFETCH(const QRect, item);
    QFETCH(const QRect, availableArea);
    QFETCH(const PopoverEdge, edge);
    const PopoverPlacement placement = placePopover(content, anchor(item, availableArea), arrow, {});
    QCOMPARE(placement.geometry.edge, edge);
    QVERIFY(availableArea.contains(placement.window));
    QCOMPARE(bodyOnScreen(placement).size(), content);
}

void PopoverPlacementTest::theTipPointsAtTheMiddleOfTheItem()
{
    const QRect item(900, 3, 24, 24);
    const PopoverPlacement placement = placePopover(content, anchor(item, belowTopPanel), arrow, {});
    QCOMPARE(placement.window.left() + placement.geometry.arrowTip, qreal(item.center().x()));
    QCOMPARE(bodyOnScreen(placement).center().x(), item.center().x() - 1 + content.width() % 2);
}

void PopoverPlacementTest::theTipIsOnePointBelowThePanel()
{
    const PopoverPlacement placement =
        placePopover(content, anchor(QRect(900, 3, 24, 24), belowTopPanel), arrow, {});
    QCOMPARE(placement.window.top(), 31);
    QCOMPARE(bodyOnScreen(placement).top(), 41);
}

void PopoverPlacementTest::theTipKeepsAwayFromTheCorners()
{
    const PopoverPlacement placement =
        placePopover(content, anchor(QRect(1256, 3, 24, 24), belowTopPanel), arrow, {});
    QCOMPARE(bodyOnScreen(placement).right(), 1280 - 8 - 1);
    QVERIFY(placement.geometry.arrowTip <= placement.geometry.body.right() - 12 - 11);
}

void PopoverPlacementTest::staysInsideTheScreenWithEveryItem()
{
    for (int x = -40; x <= 1320; x += 20) {
        for (int y = -40; y <= 840; y += 20) {
            const PopoverPlacement placement =
                placePopover(content, anchor(QRect(x, y, 24, 24), belowTopPanel), arrow, {});
            QVERIFY2(
                screen.contains(bodyOnScreen(placement)),
                qPrintable(QStringLiteral("item at %1, %2").arg(x).arg(y)));
        }
    }
}

void PopoverPlacementTest::withoutAnItemThereIsNoArrow()
{
    PopoverAnchor corner = anchor(QRect(1256, 0, 24, 24), screen);
    corner.arrow = PopoverAnchor::Arrow::None;
    const PopoverPlacement placement = placePopover(content, corner, arrow, {});
    QCOMPARE(placement.geometry.edge, PopoverEdge::Free);
    QCOMPARE(placement.window.size(), content);
    QCOMPARE(placement.window.topRight(), QPoint(1280 - 8 - 1, 8));
}

void PopoverPlacementTest::withoutPanelKnowledgeRoomDecides()
{
    QCOMPARE(
        placePopover(content, anchor(QRect(900, 3, 24, 24), screen), arrow, {}).geometry.edge,
        PopoverEdge::Below);
    QCOMPARE(
        placePopover(content, anchor(QRect(900, 773, 24, 24), screen), arrow, {}).geometry.edge,
        PopoverEdge::Above);
}

void PopoverPlacementTest::theShadowStopsAtTheTipAndTheScreensEdges()
{
    const QMargins shadow(22, 12, 22, 32);
    const QRect item(700, 3, 24, 24);
    const PopoverPlacement plain = placePopover(content, anchor(item, belowTopPanel), arrow, {});
    const PopoverPlacement shadowed = placePopover(content, anchor(item, belowTopPanel), arrow, shadow);
    QCOMPARE(shadowed.window, plain.window.adjusted(-22, 0, 22, 32));
    QCOMPARE(bodyOnScreen(shadowed), bodyOnScreen(plain));

    const QRect atTheEnd(1256, 3, 24, 24);
    const PopoverPlacement cut = placePopover(content, anchor(atTheEnd, belowTopPanel), arrow, shadow);
    QCOMPARE(cut.window.right(), screen.right());
    QCOMPARE(
        bodyOnScreen(cut), bodyOnScreen(placePopover(content, anchor(atTheEnd, belowTopPanel), arrow, {})));
}

void PopoverPlacementTest::followsTheScreenOfTheItem()
{
    PopoverAnchor second = anchor(QRect(1400, 3, 24, 24), QRect(1280, 30, 1920, 1050));
    second.screen = QRect(1280, 0, 1920, 1080);
    QVERIFY(second.screen.contains(placePopover(content, second, arrow, {}).window));
}

QTEST_APPLESS_MAIN(PopoverPlacementTest)
#include "PopoverPlacementTest.moc"
