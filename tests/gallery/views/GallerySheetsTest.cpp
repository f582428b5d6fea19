#include "GalleryGrid.h"
#include "HeldQueue.h"
#include "labels.h"
#include "savePicture.h"
#include "shownGallery.h"

#include <QMouseEvent>

namespace {

void waitForCopies()
{
    background::pool(BackgroundQueue::UserInitiated).waitForDone();
    QCoreApplication::sendPostedEvents();
}

} // namespace

/// What a gallery says when something was copied, and asks before something is deleted.
class GallerySheetsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void aCopyIsConfirmedUntilItIsDismissed();
    void deletingAsksFirstAndSaysSoWhileItLasts();
    void cancellingTheQuestionOfAMenuForgetsItsSelection();
    void controlCWithoutASelectionCopiesTheItemWithTheFocus();
    void aDoubleClickIsConfirmedOnce();

private:
    std::unique_ptr<GalleryHome> m_home;
};

void GallerySheetsTest::initTestCase()
{
    m_home = std::make_unique<GalleryHome>();
}

void GallerySheetsTest::cleanup()
{
    m_home->clear();
}

void GallerySheetsTest::aCopyIsConfirmedUntilItIsDismissed()
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

void GallerySheetsTest::deletingAsksFirstAndSaysSoWhileItLasts()
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

void GallerySheetsTest::cancellingTheQuestionOfAMenuForgetsItsSelection()
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

void GallerySheetsTest::controlCWithoutASelectionCopiesTheItemWithTheFocus()
{
    const CapturedOutput output;
    m_home->makeScreenshots(3);
    const auto view = shown(GalleryConfiguration::window());
    QTest::keyClick(view.get(), Qt::Key_C, Qt::ControlModifier);
    waitForCopies();
    QVERIFY2(!view->viewModel().copyConfirmationMessage(), "there is none yet");
    view->grid().setCurrentIndex(1);
    QTest::keyClick(view.get(), Qt::Key_C, Qt::ControlModifier);
    QTRY_VERIFY_WITH_TIMEOUT(sheet(*view) != nullptr, patience);
    QCOMPARE(
        sheet(*view)->accessibleDescription(),
        QStringLiteral("'Screenshot 2.png' has been copied to your clipboard"));
}

void GallerySheetsTest::aDoubleClickIsConfirmedOnce()
{
    const CapturedOutput output;
    m_home->makeScreenshots(1);
    const auto view = shown(GalleryConfiguration::window());
    GalleryGrid &grid = view->grid();
    const QPoint middle = grid.cellRect(0).center();
    HeldQueue copies(BackgroundQueue::UserInitiated);
    QTest::mouseClick(&grid, Qt::LeftButton, {}, middle);
    QMouseEvent second(
        QEvent::MouseButtonDblClick, middle, grid.mapToGlobal(middle), Qt::LeftButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&grid, &second);
    QTest::mouseRelease(&grid, Qt::LeftButton, {}, middle);
    int messages = 0;
    connect(&view->viewModel(), &ObservableObject::objectWillChange, view.get(), [&] { ++messages; });
    copies.release();
    waitForCopies();
    QVERIFY2(
        output.lines().filter(QStringLiteral("Failed to load image")).size() == 2,
        "two clicks on what is no image");
    QCOMPARE(messages, 1);
    QTRY_VERIFY_WITH_TIMEOUT(sheet(*view) != nullptr, patience);
    press(*sheet(*view), QStringLiteral("OK"));
    QTRY_VERIFY(sheet(*view) == nullptr);
    QVERIFY(!view->viewModel().copyConfirmationMessage());
}

QTEST_MAIN(GallerySheetsTest)
#include "GallerySheetsTest.moc"
