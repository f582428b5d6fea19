#include "ScreenshotGalleryView.h"

#include "AccessBanner.h"
#include "GalleryGrid.h"
#include "HeldQueue.h"
#include "SegmentedPicker.h"
#include "TextLabel.h"
#include "labels.h"
#include "savePicture.h"
#include "shownGallery.h"

#include <QApplication>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>

#include <unistd.h>

#include <cstdlib>

namespace {

/// Where in the view the label with that text stands.
QRect placeOf(const QWidget &view, const QString &text)
{
    for (const QLabel *const label : view.findChildren<QLabel *>()) {
        if (label->isVisible() && label->text() == text) {
            return {label->mapTo(&view, QPoint()), label->size()};
        }
    }
    return {};
}

/// Of the cells, without what stands out of them.
int gridWidth(const ScreenshotGalleryView &view)
{
    return view.grid().width() - 2 * GalleryGrid::outset;
}

/// How far below the upper edge of what is in sight the cell begins.
int topInSight(const ScreenshotGalleryView &view, int index)
{
    return view.grid().cellRect(index).top() - view.grid().rectInSight().top();
}

/// Until the cell is the first that is in sight as a whole.
void scrollTo(const ScreenshotGalleryView &view, int index)
{
    constexpr int margin = 10;
    QScrollBar *const bar = view.findChild<QScrollArea *>()->verticalScrollBar();
    bar->setValue(bar->value() + topInSight(view, index) - margin);
}

/// Until those that have begun are published.
void waitForListings()
{
    background::pool(BackgroundQueue::Listing).waitForDone();
    QCoreApplication::sendPostedEvents();
}

} // namespace

/// The gallery as a whole, over real files: what it lists and shows in each state, and what its controls do.
class ScreenshotGalleryViewTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void aLoadingTextStandsUntilTheListingEnds_data();
    void aLoadingTextStandsUntilTheListingEnds();
    void oneScreenshotIsCountedWithoutAnEnding();
    void thePopoverShowsNineAndSaysHowManyMore();
    void thePopoverListsOnlyTheDesktopAndTheWindowThreeFolders();
    void loadMoreIsShownWhileThereIsMore();
    void theGridSizeIsChosenByThePicker();
    void whatIsInSightStaysWhileTheGridSizeChanges_data();
    void whatIsInSightStaysWhileTheGridSizeChanges();
    void changingTheGridSizeToAndFroGoesNowhere();
    void aNarrowHostGetsTwoRowsAndAsManyColumnsAsFit();
    void expandingOpensTheWindowBeforeThePopoverCloses();
    void theBannerIsShownWhileTheFolderCantBeRead();
    void refreshShowsWhatHasChanged();
    void f5IsRefresh();
    void itListsOnceWhenItAppears();
    void itListsAnewWhenItAppearsAgain();
    void aWindowThatComesBackFromTheTaskBarIsNotListedAnew();

private:
    std::unique_ptr<GalleryHome> m_home;
};

void ScreenshotGalleryViewTest::initTestCase()
{
    m_home = std::make_unique<GalleryHome>();
}

void ScreenshotGalleryViewTest::cleanup()
{
    m_home->clear();
}

void ScreenshotGalleryViewTest::aLoadingTextStandsUntilTheListingEnds_data()
{
    QTest::addColumn<bool>("isEmbedded");
    QTest::addColumn<QString>("loading");
    QTest::addColumn<QStringList>("empty");
    QTest::newRow("popover") << true << "Loading screenshots..."
                             << QStringList{
                                    QStringLiteral("No screenshots found"),
                                    QStringLiteral("Take a screenshot with ⌘⇧4 or ⌘⇧3 to get started")};
    QTest::newRow("window") << false << "Loading your screenshots..."
                            << QStringList{
                                   QStringLiteral("No Screenshots"),
                                   QStringLiteral("Take a screenshot to see it here")};
}

void ScreenshotGalleryViewTest::aLoadingTextStandsUntilTheListingEnds()
{
    QFETCH(bool, isEmbedded);
    QFETCH(QString, loading);
    QFETCH(QStringList, empty);
    ScreenshotGalleryView view(isEmbedded ? GalleryConfiguration::popover() : GalleryConfiguration::window());
    view.resize(isEmbedded ? view.sizeHint() : QSize(1200, 900));
    view.show();
    QVERIFY(texts(view).contains(loading));
    const QRect place = placeOf(view, loading);
    QCOMPARE(place.height(), lineHeight(isEmbedded ? TextStyle::Subheadline : TextStyle::Body));
    QVERIFY(std::abs(place.center().x() - view.rect().center().x()) <= 1);
    savePicture(
        view,
        isEmbedded ? QStringLiteral("gallery-popover-loading") : QStringLiteral("gallery-window-loading"));
    QTRY_VERIFY_WITH_TIMEOUT(!texts(view).contains(loading), patience);
    for (const QString &text : empty) {
        QVERIFY2(texts(view).contains(text), qUtf8Printable(text));
    }
    QVERIFY(!view.grid().isVisible());
}

void ScreenshotGalleryViewTest::oneScreenshotIsCountedWithoutAnEnding()
{
    m_home->makeScreenshots(1);
    QVERIFY(texts(*shown(GalleryConfiguration::popover())).contains(QStringLiteral("1 screenshot")));
    QVERIFY(texts(*shown(GalleryConfiguration::window())).contains(QStringLiteral("1 SCREENSHOT")));
}

void ScreenshotGalleryViewTest::thePopoverShowsNineAndSaysHowManyMore()
{
    m_home->makeScreenshots(12);
    const auto view = shown(GalleryConfiguration::popover());
    QCOMPARE(view->size(), QSize(280, 355));
    QCOMPARE(view->viewModel().displayedScreenshots().size(), 9);
    QVERIFY(texts(*view).contains(QStringLiteral("+ 3 more")));
    QVERIFY(texts(*view).contains(QStringLiteral("12 screenshots")));
}

void ScreenshotGalleryViewTest::thePopoverListsOnlyTheDesktopAndTheWindowThreeFolders()
{
    std::ignore = m_home->makeScreenshot(1, m_home->home().desktop());
    std::ignore = m_home->makeScreenshot(2, m_home->home().pictures());
    std::ignore = m_home->makeScreenshot(3, m_home->home().downloads());
    QCOMPARE(names(shown(GalleryConfiguration::popover())->viewModel().allScreenshots()), numbered(1, 1));
    QCOMPARE(names(shown(GalleryConfiguration::window())->viewModel().allScreenshots()), numbered(1, 3));
    QCOMPARE(names(shown(GalleryConfiguration::settings())->viewModel().allScreenshots()), numbered(1, 1));
}

void ScreenshotGalleryViewTest::loadMoreIsShownWhileThereIsMore()
{
    m_home->makeScreenshots(31);
    const auto view = shown(GalleryConfiguration::window());
    QVERIFY(texts(*view).contains(QStringLiteral("SHOWING 30 OF 31")));
    QVERIFY(texts(*view).contains(QStringLiteral("Showing 30 of 31 screenshots")));
    press(*view, QStringLiteral("Load More (1 remaining)"));
    QTRY_VERIFY_WITH_TIMEOUT(texts(*view).contains(QStringLiteral("31 SCREENSHOTS")), patience);
    QVERIFY(button(*view, QStringLiteral("Load More (1 remaining)")) == nullptr);
    QCOMPARE(view->viewModel().displayedScreenshots().size(), 31);
}

void ScreenshotGalleryViewTest::theGridSizeIsChosenByThePicker()
{
    m_home->makeScreenshots(31);
    const auto view = shown(GalleryConfiguration::window());
    QCOMPARE(view->gridSize(), GalleryGridSize::Standard);
    QCOMPARE(gridWidth(*view), 6 * 120 + 5 * 12);
    auto *const picker = view->findChild<SegmentedPicker *>();
    QVERIFY(picker != nullptr);
    picker->setFocus();
    QTest::keyClick(picker, Qt::Key_Left);
    QCOMPARE(view->gridSize(), GalleryGridSize::Compact);
    QCOMPARE(gridWidth(*view), 10 * 80 + 9 * 8);
    QTest::keyClick(picker, Qt::Key_End);
    QCOMPARE(view->gridSize(), GalleryGridSize::Large);
    QCOMPARE(gridWidth(*view), 3 * 200 + 2 * 16);
}

void ScreenshotGalleryViewTest::whatIsInSightStaysWhileTheGridSizeChanges_data()
{
    QTest::addColumn<GalleryGridSize>("before");
    QTest::addColumn<GalleryGridSize>("after");
    QTest::addColumn<int>("current");
    QTest::addColumn<int>("kept");
    using Size = GalleryGridSize;
    // Scrolled to the row that begins with 30; no position of the keyboard, one above the sight, one in it.
    QTest::newRow("first, larger") << Size::Standard << Size::Large << -1 << 30;
    QTest::newRow("first, smaller") << Size::Standard << Size::Compact << -1 << 30;
    QTest::newRow("first, from the smallest") << Size::Compact << Size::Large << -1 << 30;
    QTest::newRow("first, focus elsewhere") << Size::Standard << Size::Large << 3 << 30;
    QTest::newRow("focus, larger") << Size::Standard << Size::Large << 44 << 44;
    QTest::newRow("focus, smaller") << Size::Large << Size::Standard << 34 << 34;
    QTest::newRow("focus, smallest") << Size::Large << Size::Compact << 34 << 34;
}

void ScreenshotGalleryViewTest::whatIsInSightStaysWhileTheGridSizeChanges()
{
    QFETCH(const GalleryGridSize, before);
    QFETCH(const GalleryGridSize, after);
    QFETCH(const int, current);
    QFETCH(const int, kept);
    m_home->makeScreenshots(120);
    const auto view = shown(GalleryConfiguration::window(), {1000, 700});
    while (view->viewModel().hasMore()) {
        loadMore(view->viewModel());
    }
    view->setGridSize(before);
    QCoreApplication::sendPostedEvents();
    const GalleryGrid &grid = view->grid();
    view->grid().setCurrentIndex(current);
    scrollTo(*view, 30);
    const int place = topInSight(*view, kept);
    view->setGridSize(after);
    QCoreApplication::sendPostedEvents();
    QVERIFY(grid.rectInSight().contains(grid.cellRect(kept)));
    QVERIFY2(std::abs(topInSight(*view, kept) - place) <= grid.cellRect(kept).height(), "at about its place");
}

void ScreenshotGalleryViewTest::changingTheGridSizeToAndFroGoesNowhere()
{
    m_home->makeScreenshots(60);
    const auto view = shown(GalleryConfiguration::settings(), {1000, 700});
    scrollTo(*view, 30);
    const int place = topInSight(*view, 30);
    for (const GalleryGridSize size : {GalleryGridSize::Large, GalleryGridSize::Standard}) {
        view->setGridSize(size);
        QCoreApplication::sendPostedEvents();
    }
    QCOMPARE(topInSight(*view, 30), place);
}

void ScreenshotGalleryViewTest::aNarrowHostGetsTwoRowsAndAsManyColumnsAsFit()
{
    m_home->makeScreenshots(9);
    const auto view = shown(GalleryConfiguration::settings(), {449, 400});
    QCOMPARE(gridWidth(*view), 3 * 120 + 2 * 12);
    view->setGridSize(GalleryGridSize::Large);
    QCOMPARE(gridWidth(*view), 200);
    view->setGridSize(GalleryGridSize::Compact);
    QCOMPARE(gridWidth(*view), 4 * 80 + 3 * 8);
    const PushButton *const refresh = button(*view, QStringLiteral("Refresh"));
    const auto *const picker = view->findChild<SegmentedPicker *>();
    QVERIFY(refresh->geometry().center().y() < picker->geometry().top());
}

void ScreenshotGalleryViewTest::expandingOpensTheWindowBeforeThePopoverCloses()
{
    m_home->makeScreenshots(1);
    QStringList calls;
    ScreenshotGalleryView view(
        GalleryConfiguration::popover(), [&calls] { calls.append(QStringLiteral("expand")); },
        [&calls] { calls.append(QStringLiteral("close")); });
    view.resize(view.sizeHint());
    view.show();
    press(view, QStringLiteral("Expand"));
    press(view, QStringLiteral("View All"));
    const QStringList once{QStringLiteral("expand"), QStringLiteral("close")};
    QCOMPARE(calls, once + once);
}

void ScreenshotGalleryViewTest::theBannerIsShownWhileTheFolderCantBeRead()
{
    if (geteuid() == 0) {
        QSKIP("root may read every folder");
    }
    m_home->makeScreenshots(1);
    const auto view = shown(GalleryConfiguration::window());
    auto *const banner = view->findChild<AccessBanner *>();
    QVERIFY(banner != nullptr);
    QVERIFY(!banner->isVisible());
    QVERIFY(QFile::setPermissions(m_home->home().desktop(), {}));
    view->hide();
    view->show();
    QTRY_VERIFY_WITH_TIMEOUT(banner->isVisible(), patience);
    QCOMPARE(banner->text(), QStringLiteral("Desktop Folder Access Required"));
    QCOMPARE(
        banner->accessibleDescription(),
        QStringLiteral("Deskbroom needs access to your Desktop folder. Click to open System Settings."));
    QCOMPARE(banner->width() - 2 * AccessBanner::outset, gridWidth(*view));
    QVERIFY(QFile::setPermissions(
        m_home->home().desktop(), QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner));
    view->hide();
    view->show();
    QTRY_VERIFY_WITH_TIMEOUT(!banner->isVisible(), patience);
}

void ScreenshotGalleryViewTest::refreshShowsWhatHasChanged()
{
    m_home->makeScreenshots(2);
    const auto view = shown(GalleryConfiguration::window());
    std::ignore = m_home->makeScreenshot(3);
    press(*view, QStringLiteral("Refresh"));
    QTRY_VERIFY_WITH_TIMEOUT(texts(*view).contains(QStringLiteral("3 SCREENSHOTS")), patience);
}

void ScreenshotGalleryViewTest::f5IsRefresh()
{
    m_home->makeScreenshots(2);
    const auto view = shown(GalleryConfiguration::window());
    std::ignore = m_home->makeScreenshot(3);
    QTest::keyClick(&view->grid(), Qt::Key_F5);
    QTRY_VERIFY_WITH_TIMEOUT(texts(*view).contains(QStringLiteral("3 SCREENSHOTS")), patience);
}

void ScreenshotGalleryViewTest::itListsOnceWhenItAppears()
{
    const QString folder = m_home->home().downloads();
    QVERIFY(QDir().rmdir(folder));
    const CapturedOutput output;
    const auto view = shown(GalleryConfiguration::window());
    waitForListings();
    files::makeFolder(folder);
    QCOMPARE(output.lines().filter(QString(QStringLiteral("Error accessing directory ") + folder)).size(), 1);
}

void ScreenshotGalleryViewTest::itListsAnewWhenItAppearsAgain()
{
    m_home->makeScreenshots(2);
    const auto view = shown(GalleryConfiguration::settings());
    view->hide();
    std::ignore = m_home->makeScreenshot(3);
    HeldQueue listings(BackgroundQueue::Listing);
    view->show();
    QCoreApplication::sendPostedEvents();
    QVERIFY2(
        texts(*view).contains(QStringLiteral("2 SCREENSHOTS")), "what was shown stays until there is more");
    QVERIFY(view->grid().isVisible());
    listings.release();
    QTRY_VERIFY_WITH_TIMEOUT(texts(*view).contains(QStringLiteral("3 SCREENSHOTS")), patience);
}

void ScreenshotGalleryViewTest::aWindowThatComesBackFromTheTaskBarIsNotListedAnew()
{
    m_home->makeScreenshots(2);
    const auto view = shown(GalleryConfiguration::window());
    std::ignore = m_home->makeScreenshot(3);
    QShowEvent event;
    QSpontaneKeyEvent::setSpontaneous(&event);
    qApp->notify(view.get(), &event); // sendEvent would take that back
    waitForListings();
    QCOMPARE(view->viewModel().allScreenshots().size(), 2);
}

QTEST_MAIN(ScreenshotGalleryViewTest)
#include "ScreenshotGalleryViewTest.moc"
