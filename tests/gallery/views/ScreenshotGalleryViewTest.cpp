#include "ScreenshotGalleryView.h"

#include "../GalleryHome.h"
#include "AccessBanner.h"
#include "GalleryGrid.h"
#include "PushButton.h"
#include "SegmentedPicker.h"
#include "Sheet.h"
#include "TextLabel.h"
#include "savePicture.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QSemaphore>
#include <QTest>

#include <unistd.h>

#include <memory>
#include <utility>

/// The gallery as a whole, over real files: what it shows in each state, and what its controls do.
class ScreenshotGalleryViewTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void aLoadingTextStandsUntilTheListingEnds_data();
    void aLoadingTextStandsUntilTheListingEnds();
    void oneScreenshotIsCountedWithoutAnEnding();
    void thePopoverShowsNineAndSaysHowManyMore();
    void thePopoverListsOnlyTheDesktopAndTheWindowThreeFolders();
    void selectingInThePopoverKeepsEveryPosition();
    void cancelLeavesSelectingAndForgetsTheSelection();
    void aCopyIsConfirmedUntilItIsDismissed();
    void deletingAsksFirstAndSaysSoWhileItLasts();
    void cancellingTheQuestionOfAMenuForgetsItsSelection();
    void loadMoreIsShownWhileThereIsMore();
    void theGridSizeIsChosenByThePicker();
    void aNarrowHostGetsTwoRowsAndAsManyColumnsAsFit();
    void expandingOpensTheWindowBeforeThePopoverCloses();
    void controlASelectsWhatIsDisplayedInSelectionModeOnly();
    void escapeLeavesSelectingAndIsThenTheHosts();
    void controlCCopiesTheSelection();
    void theBannerIsShownWhileTheFolderCantBeRead();
    void refreshShowsWhatHasChanged();

private:
    [[nodiscard]] std::unique_ptr<ScreenshotGalleryView>
    shown(const GalleryConfiguration &configuration, QSize size = {1200, 900}) const;

    std::unique_ptr<GalleryHome> m_home;
};

namespace {

/// Keeps a queue from doing anything until it is released.
class HeldQueue final {
public:
    explicit HeldQueue(BackgroundQueue queue)
    {
        QThreadPool &pool = background::pool(queue);
        for (int thread = 0; thread < pool.maxThreadCount(); ++thread) {
            pool.start([held = m_held] { held->acquire(); });
        }
        m_threads = pool.maxThreadCount();
    }

    ~HeldQueue() { release(); }
    Q_DISABLE_COPY_MOVE(HeldQueue)

    void release() { m_held->release(std::exchange(m_threads, 0)); }

private:
    std::shared_ptr<QSemaphore> m_held = std::make_shared<QSemaphore>();
    int m_threads = 0;
};

/// What can be read on the view: its labels that are to be seen.
QStringList texts(const QWidget &view)
{
    QStringList list;
    for (const QLabel *const label : view.findChildren<QLabel *>()) {
        if (label->isVisible() && !label->text().isEmpty()) {
            list.append(label->text());
        }
    }
    return list;
}

PushButton *button(const QWidget &view, const QString &text)
{
    for (PushButton *const candidate : view.findChildren<PushButton *>()) {
        if (candidate->isVisible() && candidate->text() == text) {
            return candidate;
        }
    }
    return nullptr;
}

/// Of the cells, without what stands out of them.
int gridWidth(const ScreenshotGalleryView &view)
{
    return view.grid().width() - 2 * GalleryGrid::outset;
}

/// Presses the button that has this text now.
void press(const QWidget &view, const QString &text)
{
    QTRY_VERIFY_WITH_TIMEOUT(button(view, text) != nullptr, patience);
    button(view, text)->click();
}

Sheet *sheet(const QWidget &view)
{
    return view.window()->findChild<Sheet *>();
}

} // namespace

void ScreenshotGalleryViewTest::initTestCase()
{
    m_home = std::make_unique<GalleryHome>();
}

void ScreenshotGalleryViewTest::cleanup()
{
    m_home->clear();
}

std::unique_ptr<ScreenshotGalleryView>
ScreenshotGalleryViewTest::shown(const GalleryConfiguration &configuration, QSize size) const
{
    auto view = std::make_unique<ScreenshotGalleryView>(configuration);
    view->resize(configuration.mode == GalleryMode::Embedded ? view->sizeHint() : size);
    view->show();
    [&view] { QTRY_VERIFY_WITH_TIMEOUT(!view->viewModel().isLoading(), patience); }();
    QCoreApplication::sendPostedEvents();
    return view;
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

void ScreenshotGalleryViewTest::selectingInThePopoverKeepsEveryPosition()
{
    m_home->makeScreenshots(12);
    const auto view = shown(GalleryConfiguration::popover());
    const QRect grid = view->grid().geometry();
    const QRect viewAll = button(*view, QStringLiteral("View All"))->geometry();
    press(*view, QStringLiteral("Select Multiple"));
    QTRY_VERIFY(texts(*view).contains(QStringLiteral("0 selected")));
    QCOMPARE(view->grid().geometry(), grid);
    QCOMPARE(button(*view, QStringLiteral("View All"))->geometry(), viewAll);
    QVERIFY(button(*view, QStringLiteral("Cancel")) != nullptr);
    QVERIFY(button(*view, QStringLiteral("Expand")) == nullptr);
    QVERIFY(!texts(*view).contains(QStringLiteral("Click on any screenshot to copy it to clipboard")));
}

void ScreenshotGalleryViewTest::cancelLeavesSelectingAndForgetsTheSelection()
{
    m_home->makeScreenshots(3);
    const auto view = shown(GalleryConfiguration::window());
    press(*view, QStringLiteral("Select"));
    QTRY_VERIFY(button(*view, QStringLiteral("Delete")) != nullptr);
    QVERIFY(!button(*view, QStringLiteral("Delete"))->isEnabled());
    view->viewModel().toggleSelection(view->viewModel().displayedScreenshots().at(1));
    QTRY_VERIFY(texts(*view).contains(QStringLiteral("1 selected")));
    QVERIFY(button(*view, QStringLiteral("Delete"))->isEnabled());
    press(*view, QStringLiteral("Cancel"));
    QTRY_VERIFY(texts(*view).contains(QStringLiteral("3 SCREENSHOTS")));
    QVERIFY(view->viewModel().selectedIDs().isEmpty());
}

void ScreenshotGalleryViewTest::aCopyIsConfirmedUntilItIsDismissed()
{
    const CapturedOutput output;
    m_home->makeScreenshots(1);
    const auto view = shown(GalleryConfiguration::window());
    view->viewModel().copyToClipboard(view->viewModel().displayedScreenshots().constFirst());
    QTRY_VERIFY_WITH_TIMEOUT(sheet(*view) != nullptr, patience);
    QCOMPARE(sheet(*view)->accessibleName(), QStringLiteral("Screenshot Copied"));
    QCOMPARE(
        sheet(*view)->accessibleDescription(),
        QStringLiteral("'Screenshot 1.png' has been copied to your clipboard"));
    press(*sheet(*view), QStringLiteral("OK"));
    QTRY_VERIFY(sheet(*view) == nullptr);
    QVERIFY(!view->viewModel().copyConfirmationMessage());
}

void ScreenshotGalleryViewTest::deletingAsksFirstAndSaysSoWhileItLasts()
{
    m_home->makeScreenshots(2);
    const auto view = shown(GalleryConfiguration::window());
    select(view->viewModel(), {0});
    QTRY_VERIFY(texts(*view).contains(QStringLiteral("1 selected")));
    press(*view, QStringLiteral("Delete"));
    QTRY_VERIFY(sheet(*view) != nullptr);
    QCOMPARE(
        sheet(*view)->accessibleDescription(),
        QStringLiteral("Are you sure you want to move 1 screenshot to the Trash?"));
    QVERIFY(QFile::exists(m_home->home().desktop() + QStringLiteral("/Screenshot 1.png")));
    HeldQueue deletions(BackgroundQueue::Default);
    press(*sheet(*view), QStringLiteral("Delete All"));
    QVERIFY(view->viewModel().isDeleting());
    QTRY_VERIFY(button(*view, QStringLiteral("Deleting...")) != nullptr);
    QVERIFY(!button(*view, QStringLiteral("Deleting..."))->isEnabled());
    QVERIFY(!button(*view, QStringLiteral("Copy"))->isEnabled());
    savePicture(*view, QStringLiteral("gallery-window-deleting"));
    deletions.release();
    QTRY_VERIFY_WITH_TIMEOUT(texts(*view).contains(QStringLiteral("1 SCREENSHOT")), patience);
    QVERIFY(QFile::exists(m_home->trashed(QStringLiteral("Screenshot 1.png"))));
}

void ScreenshotGalleryViewTest::cancellingTheQuestionOfAMenuForgetsItsSelection()
{
    m_home->makeScreenshots(2);
    const auto view = shown(GalleryConfiguration::window());
    view->grid().setCurrentIndex(1);
    QTest::keyClick(view.get(), Qt::Key_Delete);
    QTRY_VERIFY(sheet(*view) != nullptr);
    QCOMPARE(view->viewModel().selectedIDs().size(), 1);
    press(*sheet(*view), QStringLiteral("Cancel"));
    QTRY_VERIFY(sheet(*view) == nullptr);
    QVERIFY(view->viewModel().selectedIDs().isEmpty());
    QVERIFY(!view->viewModel().showBulkDeleteConfirmation());
    QCOMPARE(view->viewModel().allScreenshots().size(), 2);
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

void ScreenshotGalleryViewTest::controlASelectsWhatIsDisplayedInSelectionModeOnly()
{
    m_home->makeScreenshots(31);
    const auto view = shown(GalleryConfiguration::window());
    QTest::keyClick(view.get(), Qt::Key_A, Qt::ControlModifier);
    QVERIFY(view->viewModel().selectedIDs().isEmpty());
    view->viewModel().setSelectionMode(true);
    QTest::keyClick(view.get(), Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(view->viewModel().selectedIDs(), ids(view->viewModel().displayedScreenshots()));
    QCOMPARE(view->viewModel().selectedIDs().size(), 30);
}

void ScreenshotGalleryViewTest::escapeLeavesSelectingAndIsThenTheHosts()
{
    m_home->makeScreenshots(2);
    const auto view = shown(GalleryConfiguration::window());
    select(view->viewModel(), {0});
    QKeyEvent leaves(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QCoreApplication::sendEvent(view.get(), &leaves);
    QVERIFY(leaves.isAccepted());
    QVERIFY(!view->viewModel().isSelectionMode());
    QKeyEvent closes(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QCoreApplication::sendEvent(view.get(), &closes);
    QVERIFY(!closes.isAccepted());
}

void ScreenshotGalleryViewTest::controlCCopiesTheSelection()
{
    const CapturedOutput output;
    m_home->makeScreenshots(3);
    const auto view = shown(GalleryConfiguration::window());
    select(view->viewModel(), {0, 2});
    QTest::keyClick(view.get(), Qt::Key_C, Qt::ControlModifier);
    QTRY_VERIFY_WITH_TIMEOUT(sheet(*view) != nullptr, patience);
    QCOMPARE(sheet(*view)->accessibleDescription(), QStringLiteral("2 screenshots copied to your clipboard"));
    QVERIFY(!view->viewModel().isSelectionMode());
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
    QVERIFY(!banner->isVisible()); // NOLINT(clang-analyzer-core.CallAndMessage): verified above
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

QTEST_MAIN(ScreenshotGalleryViewTest)
#include "ScreenshotGalleryViewTest.moc"
