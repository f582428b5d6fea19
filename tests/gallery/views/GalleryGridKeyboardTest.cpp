#include "GalleryGrid.h"
#include "GalleryViewFixture.h"
#include "galleryDrag.h"

#include <QContextMenuEvent>
#include <QMimeData>

class GalleryGridKeyboardTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void keysMoveTheFocus_data();
    void keysMoveTheFocus();
    void arrowsFollowTheDirectionOfTexts();
    void pageKeysMoveByWhatIsInSight();
    void focusIsSeenOnlyWhereTheKeyboardIsUsed();
    void focusedCellIsBroughtIntoSight();
    void spaceAndReturnDoWhatAClickDoes_data();
    void spaceAndReturnDoWhatAClickDoes();
    void shiftExtendsTheSelection();
    void otherKeysAreLeftToTheHost_data();
    void otherKeysAreLeftToTheHost();
    void emptyGridTakesNoKey();
    void menuKeysOpenTheContextMenu();
    void focusStaysWithItsScreenshot();
    void focusGoesToTheNearestWhereItsScreenshotHasGone();
    void dragIsNoClick();
    void dragTakesItsFileAndLooksLikeItsCell();
    void selectedFilesAreDraggedTogether();

private:
    /// A grid of six columns with so many screenshots, focused, on the first.
    void show(int count);

    /// What it doesn't accept would go on to what it lies in.
    void sendToGridAlone(QKeyEvent &event) { static_cast<QObject &>(m_window->grid()).event(&event); }

    [[nodiscard]] int current() const { return m_window->grid().currentIndex().value_or(-1); }

    std::unique_ptr<GalleryHome> m_home;
    std::unique_ptr<ScreenshotGalleryViewModel> m_model;
    std::unique_ptr<GridWindow> m_window;
};

void GalleryGridKeyboardTest::initTestCase()
{
    m_home = std::make_unique<GalleryHome>();
}

void GalleryGridKeyboardTest::init()
{
    m_model = std::make_unique<ScreenshotGalleryViewModel>(
        std::nullopt, QList<SearchPathDirectory>{SearchPathDirectory::Desktop});
    m_window = std::make_unique<GridWindow>(*m_model);
}

void GalleryGridKeyboardTest::cleanup()
{
    m_window.reset();
    m_home->clear();
    m_model.reset();
}

void GalleryGridKeyboardTest::show(int count)
{
    m_home->makeScreenshots(count);
    load(*m_model);
    m_window->grid().render();
    m_window->show();
    m_window->grid().clearFocus(); // which the window's activation has given it
    m_window->grid().setFocus(Qt::TabFocusReason);
    QTRY_VERIFY(m_window->grid().hasFocus());
}

void GalleryGridKeyboardTest::keysMoveTheFocus_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<int>("to");
    // Fifteen in rows of six: 0 to 5, 6 to 11, 12 to 14.
    QTest::newRow("right") << 0 << Qt::Key_Right << 1;
    QTest::newRow("right over the row's end") << 5 << Qt::Key_Right << 6;
    QTest::newRow("right at the end") << 14 << Qt::Key_Right << 14;
    QTest::newRow("left") << 7 << Qt::Key_Left << 6;
    QTest::newRow("left at the beginning") << 0 << Qt::Key_Left << 0;
    QTest::newRow("down") << 2 << Qt::Key_Down << 8;
    QTest::newRow("down to the short row") << 11 << Qt::Key_Down << 14;
    QTest::newRow("down in the last row") << 13 << Qt::Key_Down << 13;
    QTest::newRow("up") << 13 << Qt::Key_Up << 7;
    QTest::newRow("up in the first row") << 3 << Qt::Key_Up << 3;
    QTest::newRow("home") << 13 << Qt::Key_Home << 0;
    QTest::newRow("end") << 3 << Qt::Key_End << 14;
    QTest::newRow("page down beyond the end") << 3 << Qt::Key_PageDown << 14;
    QTest::newRow("page up beyond the beginning") << 13 << Qt::Key_PageUp << 1;
}

void GalleryGridKeyboardTest::keysMoveTheFocus()
{
    QFETCH(const int, from);
    QFETCH(const Qt::Key, key);
    QFETCH(const int, to);
    show(15);
    QCOMPARE(current(), 0);
    m_window->grid().setCurrentIndex(from);
    m_window->press(key);
    QCOMPARE(current(), to);
    QVERIFY(m_window->grid().thumbnailAt(to)->attention().hasFocus);
    QVERIFY(from == to || !m_window->grid().thumbnailAt(from)->attention().hasFocus);
}

void GalleryGridKeyboardTest::arrowsFollowTheDirectionOfTexts()
{
    m_window->area().setLayoutDirection(Qt::RightToLeft);
    show(15);
    m_window->press(Qt::Key_Left);
    QCOMPARE(current(), 1);
    m_window->press(Qt::Key_Right);
    QCOMPARE(current(), 0);
}

void GalleryGridKeyboardTest::pageKeysMoveByWhatIsInSight()
{
    show(120);
    m_window->press(Qt::Key_PageDown);
    QCOMPARE(current(), 600 / 120 * 6);
    m_window->press(Qt::Key_PageUp);
    QCOMPARE(current(), 0);
}

void GalleryGridKeyboardTest::focusIsSeenOnlyWhereTheKeyboardIsUsed()
{
    show(3);
    const auto hasRing = [this](int index) {
        return m_window->grid().thumbnailAt(index)->attention().hasFocus;
    };
    QVERIFY(hasRing(0));
    m_window->click(1);
    QCOMPARE(current(), 1);
    QVERIFY(!hasRing(0) && !hasRing(1));
    m_window->press(Qt::Key_Right);
    QVERIFY(hasRing(2));
    m_window->grid().clearFocus();
    QVERIFY(!hasRing(2));
}

void GalleryGridKeyboardTest::focusedCellIsBroughtIntoSight()
{
    show(120);
    m_window->press(Qt::Key_End);
    QVERIFY(m_window->grid().rectInSight().contains(m_window->grid().cellRect(119)));
    QVERIFY(m_window->grid().thumbnailAt(119)->attention().hasFocus);
    m_window->press(Qt::Key_Home);
    QVERIFY(m_window->grid().rectInSight().contains(m_window->grid().cellRect(0)));
}

void GalleryGridKeyboardTest::spaceAndReturnDoWhatAClickDoes_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("space") << Qt::Key_Space;
    QTest::newRow("return") << Qt::Key_Return;
    QTest::newRow("enter") << Qt::Key_Enter;
}

void GalleryGridKeyboardTest::spaceAndReturnDoWhatAClickDoes()
{
    QFETCH(const Qt::Key, key);
    show(3);
    m_window->press(Qt::Key_Right);
    m_window->press(key);
    QTRY_VERIFY_WITH_TIMEOUT(m_model->copyConfirmationMessage().has_value(), patience);
    QVERIFY(m_model->copyConfirmationMessage()->contains(QStringLiteral("Screenshot 2.png")));
    m_model->setSelectionMode(true);
    m_window->press(key);
    QCOMPARE(m_model->selectedIDs(), ids(m_model->displayedScreenshots().sliced(1, 1)));
    m_window->press(key);
    QVERIFY(m_model->selectedIDs().isEmpty());
}

void GalleryGridKeyboardTest::shiftExtendsTheSelection()
{
    show(15);
    const auto selected = [this](qsizetype first, qsizetype count) {
        return m_model->selectedIDs() == ids(m_model->displayedScreenshots().sliced(first, count));
    };
    m_window->press(Qt::Key_Right, Qt::ShiftModifier);
    QCOMPARE(current(), 1);
    QVERIFY(m_model->selectedIDs().isEmpty());
    m_model->setSelectionMode(true);
    m_window->press(Qt::Key_Down, Qt::ShiftModifier);
    QCOMPARE(current(), 7);
    QVERIFY(selected(1, 7));
    m_window->press(Qt::Key_Left, Qt::ShiftModifier);
    QVERIFY(selected(1, 6));
    m_window->press(Qt::Key_End, Qt::ShiftModifier);
    QVERIFY(selected(1, 14));
    m_window->press(Qt::Key_Home, Qt::ShiftModifier);
    QVERIFY(selected(0, 2));
}

void GalleryGridKeyboardTest::otherKeysAreLeftToTheHost_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::newRow("escape") << Qt::Key_Escape << Qt::KeyboardModifiers();
    QTest::newRow("delete") << Qt::Key_Delete << Qt::KeyboardModifiers();
    QTest::newRow("control and A") << Qt::Key_A << Qt::KeyboardModifiers(Qt::ControlModifier);
    QTest::newRow("control and C") << Qt::Key_C << Qt::KeyboardModifiers(Qt::ControlModifier);
    QTest::newRow("alt and left") << Qt::Key_Left << Qt::KeyboardModifiers(Qt::AltModifier);
    QTest::newRow("control and space") << Qt::Key_Space << Qt::KeyboardModifiers(Qt::ControlModifier);
}

void GalleryGridKeyboardTest::otherKeysAreLeftToTheHost()
{
    QFETCH(const Qt::Key, key);
    QFETCH(const Qt::KeyboardModifiers, modifiers);
    show(3);
    QKeyEvent event(QEvent::KeyPress, key, modifiers);
    event.accept();
    sendToGridAlone(event);
    QVERIFY(!event.isAccepted());
    QCOMPARE(current(), 0);
}

void GalleryGridKeyboardTest::emptyGridTakesNoKey()
{
    show(0);
    QCOMPARE(current(), -1);
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_End, Qt::Key_Space}) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        sendToGridAlone(event);
        QVERIFY(!event.isAccepted());
    }
}

void GalleryGridKeyboardTest::menuKeysOpenTheContextMenu()
{
    show(60);
    QStringList asked;
    QPoint position;
    m_window->grid().onContextMenu = [&](const ScreenshotItem &screenshot, QPoint where) {
        asked.append(screenshot.name());
        position = where;
    };
    m_window->press(Qt::Key_End);
    m_window->press(Qt::Key_F10, Qt::ShiftModifier);
    QCOMPARE(asked, numbered(60, 60));
    QVERIFY(m_window->grid().cellRect(59).contains(m_window->grid().mapFromGlobal(position)));
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(1, 1), QPoint(1, 1));
    QCoreApplication::sendEvent(&m_window->grid(), &event);
    QCOMPARE(asked.size(), 2);
}

void GalleryGridKeyboardTest::focusStaysWithItsScreenshot()
{
    show(8);
    m_window->grid().setCurrentIndex(6);
    select(*m_model, {1, 2});
    m_model->deleteSelected();
    QTRY_COMPARE_WITH_TIMEOUT(m_window->grid().count(), 6, patience);
    QTRY_COMPARE(current(), 4);
    QVERIFY(m_window->grid().thumbnailAt(4)->attention().hasFocus);
    QCOMPARE(m_window->grid().thumbnailAt(4)->screenshot().name(), QStringLiteral("Screenshot 7.png"));
}

void GalleryGridKeyboardTest::focusGoesToTheNearestWhereItsScreenshotHasGone()
{
    show(5);
    m_window->grid().setCurrentIndex(4);
    select(*m_model, {3, 4});
    m_model->deleteSelected();
    QTRY_COMPARE_WITH_TIMEOUT(m_window->grid().count(), 3, patience);
    QTRY_COMPARE(current(), 2);
}

void GalleryGridKeyboardTest::dragIsNoClick()
{
    show(3);
    GalleryGrid &grid = m_window->grid();
    const QPoint from = m_window->middle(1);
    const QPoint to = from + QPoint(30, 0);
    QTest::mousePress(&grid, Qt::LeftButton, {}, from);
    QMouseEvent move(
        QEvent::MouseMove, to, grid.mapToGlobal(to), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&grid, &move);
    QTest::mouseRelease(&grid, Qt::LeftButton, {}, from);
    background::pool(BackgroundQueue::UserInitiated).waitForDone();
    QCoreApplication::sendPostedEvents();
    QVERIFY(!m_model->copyConfirmationMessage());
}

void GalleryGridKeyboardTest::dragTakesItsFileAndLooksLikeItsCell()
{
    show(3);
    const ScreenshotItem &dragged = m_model->displayedScreenshots().at(1);
    const auto data = galleryDrag::files(galleryDrag::screenshots(*m_model, dragged));
    QCOMPARE(data->urls(), QList<QUrl>({dragged.url()}));
    QCOMPARE(galleryDrag::picture(*m_window->grid().thumbnailAt(1)).deviceIndependentSize(), QSizeF(120, 90));
}

void GalleryGridKeyboardTest::selectedFilesAreDraggedTogether()
{
    show(4);
    select(*m_model, {0, 2});
    const QList<ScreenshotItem> &screenshots = m_model->displayedScreenshots();
    QCOMPARE(
        galleryDrag::screenshots(*m_model, screenshots.at(2)),
        QList<ScreenshotItem>({screenshots.at(0), screenshots.at(2)}));
    QCOMPARE(
        galleryDrag::screenshots(*m_model, screenshots.at(3)), QList<ScreenshotItem>({screenshots.at(3)}));
}

QTEST_MAIN(GalleryGridKeyboardTest)
#include "GalleryGridKeyboardTest.moc"
