#include "GalleryGrid.h"
#include "labels.h"
#include "shownGallery.h"

#include <QKeyEvent>

/// Selecting several screenshots, by the gallery's buttons and keys.
class GallerySelectionTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void selectingInThePopoverKeepsEveryPosition();
    void cancelLeavesSelectingAndForgetsTheSelection();
    void controlASelectsWhatIsDisplayedInSelectionModeOnly();
    void escapeLeavesSelectingAndIsThenTheHosts();
    void controlCCopiesTheSelection();

private:
    std::unique_ptr<GalleryHome> m_home;
};

void GallerySelectionTest::initTestCase()
{
    m_home = std::make_unique<GalleryHome>();
}

void GallerySelectionTest::cleanup()
{
    m_home->clear();
}

void GallerySelectionTest::selectingInThePopoverKeepsEveryPosition()
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

void GallerySelectionTest::cancelLeavesSelectingAndForgetsTheSelection()
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

void GallerySelectionTest::controlASelectsWhatIsDisplayedInSelectionModeOnly()
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

void GallerySelectionTest::escapeLeavesSelectingAndIsThenTheHosts()
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

void GallerySelectionTest::controlCCopiesTheSelection()
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

QTEST_MAIN(GallerySelectionTest)
#include "GallerySelectionTest.moc"
