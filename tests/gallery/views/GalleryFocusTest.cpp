#include "AccessBanner.h"
#include "GalleryGrid.h"
#include "HeldQueue.h"
#include "labels.h"
#include "shownGallery.h"

#include <QAbstractButton>
#include <QScrollArea>
#include <QScrollBar>

#include <unistd.h>

namespace {

constexpr int moreThanAllControls = 20;

/// What the control is called; the grid hasn't a name of its own.
QString nameOf(const QWidget *widget)
{
    if (const auto *const button = qobject_cast<const QAbstractButton *>(widget)) {
        return button->text();
    }
    return qobject_cast<const GalleryGrid *>(widget) == nullptr ? QString() : QStringLiteral("grid");
}

/// Where the key takes the keyboard, one after the other, until it comes round.
QStringList stops(const QWidget &view, Qt::Key key)
{
    QStringList names;
    for (int press = 0; press < moreThanAllControls; ++press) {
        QTest::keyClick(view.window(), key);
        const QString name = nameOf(view.window()->focusWidget());
        if (names.contains(name)) {
            break;
        }
        names.append(name);
    }
    return names;
}

/// The same stops from another one on.
QStringList beginningWith(const QString &first, QStringList names)
{
    std::ranges::rotate(names, names.begin() + qMax(qsizetype(0), names.indexOf(first)));
    return names;
}

} // namespace

/// Where the keyboard is in a gallery: when it opens, on its way through the controls, and where there is
/// nothing to be at.
class GalleryFocusTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void tabReachesEveryControl_data();
    void tabReachesEveryControl();
    void tabReachesTheBannerBeforeTheGrid();
    void theCellThatTabComesToIsBroughtIntoSight_data();
    void theCellThatTabComesToIsBroughtIntoSight();
    void theWayToMoreIsBroughtIntoSight();
    void loadingMoreByTheKeyboardGivesItBackToTheGrid();
    void theGridHasTheKeyboardOnceThereIsOne_data();
    void theGridHasTheKeyboardOnceThereIsOne();
    void theGridLeavesTheKeyboardToAControlThatHasIt();
    void nothingHasAFocusRingWhereThereIsNothing_data();
    void nothingHasAFocusRingWhereThereIsNothing();
    void aGridThatEmptiesGivesNothingAFocusRing_data();
    void aGridThatEmptiesGivesNothingAFocusRing();

private:
    /// The window that the keyboard is in.
    static std::unique_ptr<ScreenshotGalleryView>
    active(const GalleryConfiguration &configuration, QSize size = {1200, 900})
    {
        auto view = shown(configuration, size);
        view->activateWindow();
        std::ignore = QTest::qWaitForWindowActive(view.get());
        return view;
    }

    std::unique_ptr<GalleryHome> m_home;
};

void GalleryFocusTest::initTestCase()
{
    m_home = std::make_unique<GalleryHome>();
}

void GalleryFocusTest::cleanup()
{
    m_home->clear();
}

void GalleryFocusTest::tabReachesEveryControl_data()
{
    QTest::addColumn<bool>("isEmbedded");
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("isSelecting");
    QTest::addColumn<QStringList>("inOrder");
    const auto row = [](const char *name, bool isEmbedded, int count, bool isSelecting, const char *inOrder) {
        QTest::newRow(name) << isEmbedded << count << isSelecting
                            << QString::fromLatin1(inOrder).split(QStringLiteral(", "));
    };
    row("window", false, 31, false, "Standard, Refresh, Select, grid, Load More (1 remaining)");
    row("window, selecting", false, 3, true, "Standard, Copy, Delete, Cancel, grid");
    row("empty window", false, 0, false, "Standard, Refresh");
    row("popover", true, 3, false, "Expand, grid, View All, Select Multiple, Refresh");
    row("popover, selecting", true, 3, true, "Cancel, grid, View All, Copy All, Delete All");
    row("empty popover", true, 0, false, "Expand, Refresh");
}

void GalleryFocusTest::tabReachesEveryControl()
{
    QFETCH(const bool, isEmbedded);
    QFETCH(const int, count);
    QFETCH(const bool, isSelecting);
    QFETCH(const QStringList, inOrder);
    m_home->makeScreenshots(count);
    const auto view = active(isEmbedded ? GalleryConfiguration::popover() : GalleryConfiguration::window());
    if (isSelecting) {
        select(view->viewModel(), {0});
        QCoreApplication::sendPostedEvents();
    }
    QCOMPARE(beginningWith(inOrder.first(), stops(*view, Qt::Key_Tab)), inOrder);
    const QStringList inReverse(inOrder.rbegin(), inOrder.rend());
    QCOMPARE(beginningWith(inReverse.first(), stops(*view, Qt::Key_Backtab)), inReverse);
}

void GalleryFocusTest::tabReachesTheBannerBeforeTheGrid()
{
    if (geteuid() == 0) {
        QSKIP("root may read every folder");
    }
    std::ignore = m_home->makeScreenshot(1, m_home->home().pictures());
    QVERIFY(QFile::setPermissions(m_home->home().desktop(), {}));
    const auto view = active(GalleryConfiguration::window());
    const auto *const banner = view->findChild<AccessBanner *>();
    QTRY_VERIFY_WITH_TIMEOUT(banner->isVisible(), patience);
    const QString standard = QStringLiteral("Standard");
    const QStringList inOrder{
        standard, QStringLiteral("Refresh"), QStringLiteral("Select"), banner->text(),
        QStringLiteral("grid")};
    QCOMPARE(beginningWith(standard, stops(*view, Qt::Key_Tab)), inOrder);
}

void GalleryFocusTest::theCellThatTabComesToIsBroughtIntoSight_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<int>("cell");
    QTest::addColumn<bool>("isAtEnd");
    QTest::newRow("first cell, from above") << "Select" << Qt::Key_Tab << 0 << true;
    QTest::newRow("first cell, from below") << "Load More (10 remaining)" << Qt::Key_Backtab << 0 << true;
    QTest::newRow("last cell, from above") << "Select" << Qt::Key_Tab << 29 << false;
    QTest::newRow("last cell, from below") << "Load More (10 remaining)" << Qt::Key_Backtab << 29 << false;
}

void GalleryFocusTest::theCellThatTabComesToIsBroughtIntoSight()
{
    QFETCH(const QString, from);
    QFETCH(const Qt::Key, key);
    QFETCH(const int, cell);
    QFETCH(const bool, isAtEnd);
    m_home->makeScreenshots(40);
    const auto view = active(GalleryConfiguration::window(), {800, 500});
    GalleryGrid &grid = view->grid();
    grid.setCurrentIndex(cell);
    button(*view, from)->setFocus();
    QScrollBar *const bar = view->findChild<QScrollArea *>()->verticalScrollBar();
    bar->setValue(isAtEnd ? bar->maximum() : 0);
    QVERIFY(!grid.rectInSight().intersects(grid.cellRect(cell)));
    QTest::keyClick(view->focusWidget(), key);
    QCOMPARE(view->focusWidget(), &grid);
    const QRect shownCell = grid.cellRect(cell);
    const QRect inSight = grid.rectInSight();
    QVERIFY(inSight.contains(shownCell));
    // By as little as shows it with what is around it.
    const int beyond = isAtEnd ? shownCell.top() - inSight.top() : inSight.bottom() - shownCell.bottom();
    QVERIFY2(beyond < shownCell.height(), qPrintable(QString::number(beyond)));
}

void GalleryFocusTest::theWayToMoreIsBroughtIntoSight()
{
    m_home->makeScreenshots(40);
    const auto view = active(GalleryConfiguration::window(), {800, 500});
    const PushButton *const more = button(*view, QStringLiteral("Load More (10 remaining)"));
    QVERIFY(more->visibleRegion().isEmpty());
    button(*view, QStringLiteral("Refresh"))->setFocus();
    for (int press = 0; press < 2; ++press) {
        QTest::keyClick(view->focusWidget(), Qt::Key_Backtab);
    }
    QCOMPARE(view->focusWidget(), more);
    QCOMPARE(more->visibleRegion().boundingRect(), more->rect());
}

void GalleryFocusTest::loadingMoreByTheKeyboardGivesItBackToTheGrid()
{
    m_home->makeScreenshots(40);
    const auto view = active(GalleryConfiguration::window(), {800, 500});
    QTest::keyClick(view->focusWidget(), Qt::Key_Tab);
    const int place = view->findChild<QScrollArea *>()->verticalScrollBar()->value();
    QTest::keyClick(view->focusWidget(), Qt::Key_Space);
    QTRY_COMPARE_WITH_TIMEOUT(view->grid().count(), 40, patience);
    QCoreApplication::sendPostedEvents();
    QVERIFY(view->grid().hasFocus());
    QCOMPARE(view->findChild<QScrollArea *>()->verticalScrollBar()->value(), place);
}

void GalleryFocusTest::theGridHasTheKeyboardOnceThereIsOne_data()
{
    QTest::addColumn<bool>("isEmbedded");
    QTest::newRow("popover") << true;
    QTest::newRow("window") << false;
}

void GalleryFocusTest::theGridHasTheKeyboardOnceThereIsOne()
{
    QFETCH(const bool, isEmbedded);
    m_home->makeScreenshots(3);
    const auto view = active(isEmbedded ? GalleryConfiguration::popover() : GalleryConfiguration::window());
    QCOMPARE(nameOf(view->focusWidget()), QStringLiteral("grid"));
    QVERIFY2(!view->grid().currentIndex(), "no cell has a focus ring before the keyboard is used");
    QTest::keyClick(view.get(), Qt::Key_Tab);
    QVERIFY(nameOf(view->focusWidget()) != QStringLiteral("grid"));
}

void GalleryFocusTest::theGridLeavesTheKeyboardToAControlThatHasIt()
{
    m_home->makeScreenshots(3);
    HeldQueue listings(BackgroundQueue::Listing);
    ScreenshotGalleryView view(GalleryConfiguration::window());
    view.resize(1200, 900);
    view.show();
    view.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&view));
    QCOMPARE(stops(view, Qt::Key_Tab), QStringList({QStringLiteral("Standard")}));
    listings.release();
    QTRY_VERIFY_WITH_TIMEOUT(view.grid().isVisible(), patience);
    QCOMPARE(nameOf(view.focusWidget()), QStringLiteral("Standard"));
}

void GalleryFocusTest::nothingHasAFocusRingWhereThereIsNothing_data()
{
    QTest::addColumn<bool>("isEmbedded");
    QTest::newRow("popover") << true;
    QTest::newRow("window") << false;
}

void GalleryFocusTest::nothingHasAFocusRingWhereThereIsNothing()
{
    QFETCH(const bool, isEmbedded);
    const auto view = active(isEmbedded ? GalleryConfiguration::popover() : GalleryConfiguration::window());
    QCOMPARE(nameOf(QApplication::focusWidget()), QString());
    std::ignore = m_home->makeScreenshot(1);
    QTest::keyClick(view.get(), Qt::Key_F5);
    QTRY_COMPARE_WITH_TIMEOUT(nameOf(view->focusWidget()), QStringLiteral("grid"), patience);
}

void GalleryFocusTest::aGridThatEmptiesGivesNothingAFocusRing_data()
{
    QTest::addColumn<bool>("isEmbedded");
    QTest::addColumn<QString>("firstStop");
    QTest::newRow("popover") << true << "Expand";
    QTest::newRow("window") << false << "Standard";
}

void GalleryFocusTest::aGridThatEmptiesGivesNothingAFocusRing()
{
    QFETCH(const bool, isEmbedded);
    QFETCH(const QString, firstStop);
    const QString path = m_home->makeScreenshot(1);
    const auto view = active(isEmbedded ? GalleryConfiguration::popover() : GalleryConfiguration::window());
    QVERIFY(view->grid().hasFocus());
    int controlsReached = 0;
    connect(qApp, &QApplication::focusChanged, view.get(), [&](const QWidget *, const QWidget *now) {
        controlsReached += nameOf(now).isEmpty() ? 0 : 1;
    });
    QVERIFY(QFile::remove(path));
    press(*view, QStringLiteral("Refresh"));
    QTRY_VERIFY_WITH_TIMEOUT(!view->grid().isVisible(), patience);
    QCOMPARE(controlsReached, 0);
    QTest::keyClick(view->focusWidget(), Qt::Key_Tab);
    QCOMPARE(nameOf(view->focusWidget()), firstStop);
}

QTEST_MAIN(GalleryFocusTest)
#include "GalleryFocusTest.moc"
