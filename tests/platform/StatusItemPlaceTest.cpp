#include "StatusItemPlace.h"

#include <QTest>

using Source = StatusItem::Anchor::Source;

Q_DECLARE_METATYPE(StatusItem::Anchor::Source)
Q_DECLARE_METATYPE(ClickUnit)
Q_DECLARE_METATYPE(QList<ScreenShape>)
Q_DECLARE_METATYPE(QList<PanelShape>)
Q_DECLARE_METATYPE(std::optional<QPoint>)

namespace {

const QRect fullHd(0, 0, 1920, 1080);

ScreenShape screen(const QRect &geometry, const QRect &available, qreal scale = 1)
{
    return {.geometry = geometry, .availableGeometry = available, .scale = scale};
}

ScreenShape bareScreen(const QRect &geometry, qreal scale = 1)
{
    return screen(geometry, geometry, scale);
}

PanelShape panel(const QRect &rectangle)
{
    return {.rectangle = rectangle, .itemArea = {}};
}

} // namespace

class StatusItemPlaceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anchorIs_data();
    void anchorIs();
    void anchorIsNeverEmpty();
    void panelsAreFoundAtEveryEdge();
    void devicePixelsBecomeLogicalOnesOfTheirScreen();
    void reportedClickIs_data();
    void reportedClickIs();
};

void StatusItemPlaceTest::anchorIs_data()
{
    QTest::addColumn<std::optional<QPoint>>("click");
    QTest::addColumn<QList<ScreenShape>>("screens");
    QTest::addColumn<QList<PanelShape>>("panels");
    QTest::addColumn<QRect>("rectangle");
    QTest::addColumn<Source>("source");

    const std::optional<QPoint> none;
    const QList<ScreenShape> one = {bareScreen(fullHd)};
    const PanelShape top = panel({0, 0, 1920, 27});
    const PanelShape bottom = panel({0, 1040, 1920, 40});
    const PanelShape left = panel({0, 0, 48, 1080});
    const PanelShape right = panel({1872, 0, 48, 1080});

    QTest::newRow("no panel: the top right corner")
        << none << one << QList<PanelShape>{} << QRect(1896, 0, 24, 24) << Source::ScreenCorner;
    QTest::newRow("top panel: its right end")
        << none << one << QList{top} << QRect(1896, 0, 24, 27) << Source::PanelEnd;
    QTest::newRow("bottom panel: its right end")
        << none << one << QList{bottom} << QRect(1896, 1040, 24, 40) << Source::PanelEnd;
    QTest::newRow("left panel: its lower end")
        << none << one << QList{left} << QRect(0, 1056, 48, 24) << Source::PanelEnd;
    QTest::newRow("right panel: its lower end")
        << none << one << QList{right} << QRect(1872, 1056, 48, 24) << Source::PanelEnd;
    QTest::newRow("two panels: the longer") << none << one << QList{panel({600, 1032, 700, 48}), top}
                                            << QRect(1896, 0, 24, 27) << Source::PanelEnd;
    QTest::newRow("two panels: the one that has the items")
        << none << one
        << QList{top, PanelShape{.rectangle = {600, 1032, 700, 48}, .items = PanelShape::Items::Here, .itemArea = {}}}
        << QRect(1276, 1032, 24, 48) << Source::PanelEnd;
    QTest::newRow("panel that says where its items are") << none << one
                                                         << QList{PanelShape{
                                                                .rectangle = top.rectangle,
                                                                .items = PanelShape::Items::Here,
                                                                .itemArea = QRect(1800, 0, 26, 26)}}
                                                         << QRect(1800, 0, 24, 27) << Source::PanelEnd;
    QTest::newRow("panel on the second screen alone: that screen")
        << none << QList{bareScreen(fullHd), bareScreen({1920, 0, 1280, 1024})}
        << QList{panel({1920, 0, 1280, 30})} << QRect(3176, 0, 24, 30) << Source::PanelEnd;
    QTest::newRow("panels on both screens: the primary one")
        << none << QList{bareScreen({0, 0, 1280, 1024}), bareScreen({1280, 0, 1920, 1080})}
        << QList{panel({1280, 0, 1920, 30}), panel({0, 0, 1280, 30})} << QRect(1256, 0, 24, 30)
        << Source::PanelEnd;

    QTest::newRow("click on a top panel: as thick as the panel")
        << std::optional(QPoint(1700, 10)) << one << QList{top} << QRect(1688, 0, 24, 27) << Source::Click;
    QTest::newRow("click at the very end: inside the panel")
        << std::optional(QPoint(1919, 10)) << one << QList{top} << QRect(1896, 0, 24, 27) << Source::Click;
    QTest::newRow("click on a left panel")
        << std::optional(QPoint(20, 500)) << one << QList{left} << QRect(0, 488, 48, 24) << Source::Click;
    QTest::newRow("click, but the panel has moved since")
        << std::optional(QPoint(1700, 10)) << one << QList{bottom} << QRect(1896, 1040, 24, 40)
        << Source::PanelEnd;
    QTest::newRow("click at the top edge, no panel known")
        << std::optional(QPoint(1700, 13)) << one << QList<PanelShape>{} << QRect(1688, 0, 24, 25)
        << Source::Click;
    QTest::newRow("click at the bottom edge, no panel known")
        << std::optional(QPoint(1700, 1059)) << one << QList<PanelShape>{} << QRect(1688, 1048, 24, 32)
        << Source::Click;
    QTest::newRow("click at the right edge, no panel known")
        << std::optional(QPoint(1899, 500)) << one << QList<PanelShape>{} << QRect(1888, 488, 32, 24)
        << Source::Click;
    QTest::newRow("click in the middle, no panel known")
        << std::optional(QPoint(900, 500)) << one << QList<PanelShape>{} << QRect(1896, 0, 24, 24)
        << Source::ScreenCorner;
    QTest::newRow("click off every screen") << std::optional(QPoint(5000, 5)) << one << QList<PanelShape>{}
                                            << QRect(1896, 0, 24, 24) << Source::ScreenCorner;
}

void StatusItemPlaceTest::anchorIs()
{
    QFETCH(const std::optional<QPoint>, click);
    QFETCH(const QList<ScreenShape>, screens);
    QFETCH(const QList<PanelShape>, panels);

    const StatusItem::Anchor anchor = statusItemAnchor(click, screens, panels);

    QTEST(anchor.rectangle, "rectangle");
    QTEST(anchor.source, "source");
}

void StatusItemPlaceTest::anchorIsNeverEmpty()
{
    QVERIFY(!statusItemAnchor(std::nullopt, {}, {}).rectangle.isEmpty());
    QVERIFY(!statusItemAnchor(QPoint(3, 3), {bareScreen({0, 0, 10, 10})}, {panel({0, 0, 10, 4})})
                 .rectangle.isEmpty());
}

void StatusItemPlaceTest::panelsAreFoundAtEveryEdge()
{
    const QList<PanelShape> expected = {
        panel({0, 0, 1920, 30}), panel({0, 1040, 1920, 40}), panel({0, 0, 50, 1080}),
        panel({1860, 0, 60, 1080})};
    QCOMPARE(panelsBesideAvailableGeometry({screen(fullHd, {50, 30, 1810, 1010})}), expected);
    QCOMPARE(panelsBesideAvailableGeometry({bareScreen(fullHd)}), QList<PanelShape>{});
}

void StatusItemPlaceTest::devicePixelsBecomeLogicalOnesOfTheirScreen()
{
    // The second screen's corner is the same in both units.
    const QList<ScreenShape> screens = {bareScreen({0, 0, 1920, 1080}, 2), bareScreen({3840, 0, 1280, 1024})};
    QCOMPARE(fromDevicePixels({0, 0, 3840, 54}, screens), QRect(0, 0, 1920, 27));
    QCOMPARE(fromDevicePixels({3840, 984, 1280, 40}, screens), QRect(3840, 984, 1280, 40));
}

void StatusItemPlaceTest::reportedClickIs_data()
{
    QTest::addColumn<QPoint>("reported");
    QTest::addColumn<ClickUnit>("unit");
    QTest::addColumn<QList<ScreenShape>>("screens");
    QTest::addColumn<QList<PanelShape>>("panels");
    QTest::addColumn<std::optional<QPoint>>("place");

    const std::optional<QPoint> none;
    const QList<ScreenShape> plain = {bareScreen(fullHd)};
    const QList<ScreenShape> fine = {bareScreen(fullHd, 2)};
    const QList<PanelShape> top = {panel({0, 0, 1920, 27})};
    const QList<PanelShape> bottom = {panel({0, 1040, 1920, 40})};
    using enum ClickUnit;

    QTest::newRow("on the panel") << QPoint(1700, 10) << LogicalPixels << plain << top
                                  << std::optional(QPoint(1700, 10));
    QTest::newRow("0,0: the panel doesn't know") << QPoint(0, 0) << LogicalPixels << plain << top << none;
    QTest::newRow("off the panel") << QPoint(1700, 40) << LogicalPixels << plain << top << none;
    QTest::newRow("off every screen") << QPoint(1920, 10) << LogicalPixels << plain << top << none;
    QTest::newRow("negative") << QPoint(-5, 10) << LogicalPixels << plain << top << none;
    QTest::newRow("relative to a panel at the bottom")
        << QPoint(1700, 10) << LogicalPixels << plain << bottom << none;
    QTest::newRow("device pixels, as the desktop is known to")
        << QPoint(1000, 20) << DevicePixels << fine << top << std::optional(QPoint(500, 10));
    QTest::newRow("logical pixels, as the desktop is known to")
        << QPoint(1000, 20) << LogicalPixels << fine << top << std::optional(QPoint(1000, 20));
    QTest::newRow("device pixels after all: otherwise off the screen")
        << QPoint(3800, 20) << LogicalPixels << fine << top << std::optional(QPoint(1900, 10));
    QTest::newRow("logical pixels after all: otherwise off the panel")
        << QPoint(1900, 1060) << DevicePixels << fine << bottom << std::optional(QPoint(1900, 1060));
    QTest::newRow("no panel known, near the edge") << QPoint(1700, 90) << LogicalPixels << plain
                                                   << QList<PanelShape>{} << std::optional(QPoint(1700, 90));
    QTest::newRow("no panel known, thicker than panels are")
        << QPoint(1700, 96) << LogicalPixels << plain << QList<PanelShape>{} << none;
}

void StatusItemPlaceTest::reportedClickIs()
{
    QFETCH(const QPoint, reported);
    QFETCH(const ClickUnit, unit);
    QFETCH(const QList<ScreenShape>, screens);
    QFETCH(const QList<PanelShape>, panels);
    QFETCH(const std::optional<QPoint>, place);

    QCOMPARE(plausibleReportedClick(reported, unit, screens, panels), place);
}

QTEST_APPLESS_MAIN(StatusItemPlaceTest)

#include "StatusItemPlaceTest.moc"
