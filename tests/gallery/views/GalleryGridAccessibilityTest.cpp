#include "GalleryGrid.h"
#include "GalleryViewFixture.h"

#include <QAccessible>

class GalleryGridAccessibilityTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void gridIsAListOfScreenshots();
    void itemsHaveNamesAndDescriptions();
    void itemsStandWhereTheirCellsDo();
    void itemsTellWhetherTheyAreSelected();
    void itemsOutOfSightSaySo();
    void focusIsWhereTheKeyboardIs();
    void pressCopiesOrSelects();
    void pressReachesItemsWithoutACell();
    void menuCanBeOpened();
    void goneScreenshotsAreNoItemsAnyMore();

private:
    void show(int count);

    [[nodiscard]] QAccessibleInterface *list() const
    {
        return QAccessible::queryAccessibleInterface(&m_window->grid());
    }

    std::unique_ptr<GalleryHome> m_home;
    std::unique_ptr<ScreenshotGalleryViewModel> m_model;
    std::unique_ptr<GridWindow> m_window;
};

void GalleryGridAccessibilityTest::initTestCase()
{
    m_home = std::make_unique<GalleryHome>();
}

void GalleryGridAccessibilityTest::init()
{
    m_model = std::make_unique<ScreenshotGalleryViewModel>(
        std::nullopt, QList<SearchPathDirectory>{SearchPathDirectory::Desktop});
    m_window = std::make_unique<GridWindow>(*m_model);
}

void GalleryGridAccessibilityTest::cleanup()
{
    m_window.reset();
    m_home->clear();
    m_model.reset();
}

void GalleryGridAccessibilityTest::show(int count)
{
    m_home->makeScreenshots(count);
    load(*m_model);
    m_window->grid().render();
    m_window->show();
}

void GalleryGridAccessibilityTest::gridIsAListOfScreenshots()
{
    show(200);
    QCOMPARE(list()->role(), QAccessible::List);
    QCOMPARE(list()->text(QAccessible::Name), QStringLiteral("Screenshots"));
    QCOMPARE(list()->childCount(), 200);
    for (const int index : {0, 1, 199}) {
        QAccessibleInterface *item = list()->child(index);
        QCOMPARE(item->role(), QAccessible::ListItem);
        QCOMPARE(item->parent(), list());
        QCOMPARE(list()->indexOfChild(item), index);
        QCOMPARE(list()->child(index), item);
        QVERIFY(item->isValid());
    }
    QVERIFY(list()->child(200) == nullptr);
    QVERIFY(list()->child(-1) == nullptr);
}

void GalleryGridAccessibilityTest::itemsHaveNamesAndDescriptions()
{
    show(3);
    const QAccessibleInterface *item = list()->child(2);
    const QString name = item->text(QAccessible::Name);
    QVERIFY(name.startsWith(QStringLiteral("03, ")));
    QVERIFY(name.contains(QStringLiteral("Screenshot 3.png")));
    QVERIFY(item->text(QAccessible::Description).contains(QLocale().formattedDataSize(8)));
}

void GalleryGridAccessibilityTest::itemsStandWhereTheirCellsDo()
{
    show(200);
    m_window->scrollTo(300);
    const GalleryGrid &grid = m_window->grid();
    constexpr int index = 19;
    QVERIFY(!list()->child(index)->state().offscreen);
    const QRect rect = list()->child(index)->rect();
    QCOMPARE(rect.topLeft(), grid.mapToGlobal(grid.cellRect(index).topLeft()));
    QCOMPARE(rect.size(), QSize(120, 108));
    QCOMPARE(list()->childAt(rect.center().x(), rect.center().y()), list()->child(index));
}

void GalleryGridAccessibilityTest::itemsTellWhetherTheyAreSelected()
{
    show(3);
    QVERIFY(!list()->child(1)->state().selectable);
    select(*m_model, {1});
    QVERIFY(list()->child(1)->state().selectable);
    QVERIFY(list()->child(1)->state().selected);
    QVERIFY(list()->child(2)->state().selectable);
    QVERIFY(!list()->child(2)->state().selected);
}

void GalleryGridAccessibilityTest::itemsOutOfSightSaySo()
{
    show(200);
    QVERIFY(!list()->child(0)->state().offscreen);
    QVERIFY(!list()->child(0)->state().invisible);
    QVERIFY(list()->child(199)->state().offscreen);
    QVERIFY(list()->child(199)->state().invisible);
}

void GalleryGridAccessibilityTest::focusIsWhereTheKeyboardIs()
{
    show(10);
    m_window->grid().clearFocus(); // which the window's activation has given it
    m_window->grid().setFocus(Qt::TabFocusReason);
    QTRY_VERIFY(m_window->grid().hasFocus());
    m_window->press(Qt::Key_Right);
    QCOMPARE(list()->focusChild(), list()->child(1));
    QVERIFY(list()->child(1)->state().focused);
    QVERIFY(list()->child(0)->state().focusable);
    QVERIFY(!list()->child(0)->state().focused);
}

void GalleryGridAccessibilityTest::pressCopiesOrSelects()
{
    show(3);
    QAccessibleActionInterface *actions = list()->child(1)->actionInterface();
    QVERIFY(actions->actionNames().contains(QAccessibleActionInterface::pressAction()));
    actions->doAction(QAccessibleActionInterface::pressAction());
    QTRY_VERIFY_WITH_TIMEOUT(m_model->copyConfirmationMessage().has_value(), patience);
    m_model->setSelectionMode(true);
    actions->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(m_model->selectedIDs(), ids(m_model->displayedScreenshots().sliced(1, 1)));
}

void GalleryGridAccessibilityTest::pressReachesItemsWithoutACell()
{
    show(200);
    m_model->setSelectionMode(true);
    QVERIFY(m_window->grid().thumbnailAt(199) == nullptr);
    list()->child(199)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(m_model->selectedIDs(), ids(m_model->displayedScreenshots().sliced(199, 1)));
    QVERIFY(m_window->grid().thumbnailAt(199) != nullptr);
    QVERIFY(!list()->child(199)->state().offscreen);
}

void GalleryGridAccessibilityTest::menuCanBeOpened()
{
    show(200);
    QString asked;
    m_window->grid().onContextMenu = [&asked](const ScreenshotItem &screenshot, QPoint) {
        asked = screenshot.name();
    };
    list()->child(150)->actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
    QCOMPARE(asked, QStringLiteral("Screenshot 151.png"));
    QVERIFY(!list()->child(150)->state().offscreen);
}

void GalleryGridAccessibilityTest::goneScreenshotsAreNoItemsAnyMore()
{
    show(3);
    QCOMPARE(list()->child(2)->text(QAccessible::Name).left(2), QStringLiteral("03"));
    QAccessibleInterface *first = list()->child(0);
    select(*m_model, {0, 1});
    m_model->deleteSelected();
    QTRY_COMPARE_WITH_TIMEOUT(m_window->grid().count(), 1, patience);
    QCOMPARE(list()->childCount(), 1);
    QVERIFY(list()->child(2) == nullptr);
    QVERIFY(first->isValid());
    QVERIFY(first->text(QAccessible::Name).contains(QStringLiteral("Screenshot 3.png")));
}

QTEST_MAIN(GalleryGridAccessibilityTest)
#include "GalleryGridAccessibilityTest.moc"
