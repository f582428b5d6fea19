#include "SettingsView.h"

#include "AboutSettingsPage.h"
#include "ApplicationIcon.h"
#include "FeatureRow.h"
#include "GallerySettingsPage.h"
#include "GeneralSettingsPage.h"
#include "Hairline.h"
#include "PopUpButton.h"
#include "ScreenshotGalleryView.h"
#include "ScreenshotGalleryViewModel.h"
#include "SettingsCard.h"
#include "SettingsFixture.h"
#include "SettingsRow.h"
#include "SettingsRowDivider.h"
#include "SettingsSidebarView.h"
#include "SidebarRow.h"
#include "TextLabel.h"
#include "Theme.h"
#include "rendering.h"
#include "savePicture.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QTest>

namespace {

constexpr QSize windowSize(640, 480);

const SidebarRow &rowOf(const SettingsView &view, SettingsSection section)
{
    return *view.findChildren<SidebarRow *>().at(static_cast<qsizetype>(section));
}

void click(const SettingsView &view, SettingsSection section)
{
    QTest::mouseClick(&const_cast<SidebarRow &>(rowOf(view, section)), Qt::LeftButton);
}

QRect placeOf(const QWidget &part, const QWidget &view)
{
    return {part.mapTo(&view, QPoint()), part.size()};
}

} // namespace

/// The window's contents: the sidebar and its pages.
class SettingsViewTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void beginsWithTheGeneralPage();
    void theSidebarHasItsSectionsUnderTheirHeads();
    void hasTheGivenMeasures();
    void theGeneralPageHasTheGivenMeasures();
    void theAboutPageHasTheGivenMeasures();
    void aClickShowsThePage();
    void theKeyboardMovesTheSelection();
    void theKeyboardStaysInTheSidebar();
    void tabGoesThroughTheGalleryPageWithoutScreenshots();
    void noFocusRingUntilTheKeyboardIsUsed();
    void aPageIsMadeWhenItIsFirstShownAndKept();
    void theGalleryPageHasItsOwnModel();
    void theAboutPageSaysTheVersion_data();
    void theAboutPageSaysTheVersion();
    void isMirroredFromRightToLeft();
    void theSidebarIsAListForAssistivePrograms();
    void badgesAreInTheirColours();

private:
    [[nodiscard]] std::unique_ptr<SettingsView> shown();

    std::unique_ptr<GalleryHome> m_home;
    TestApplicationDelegate *m_delegate = nullptr;
};

void SettingsViewTest::initTestCase()
{
    m_home = std::make_unique<GalleryHome>();
    m_delegate = new TestApplicationDelegate;
    m_delegate->setParent(this);
}

void SettingsViewTest::cleanup()
{
    background::pool(BackgroundQueue::Listing).waitForDone();
    m_home->clear();
    QCoreApplication::setApplicationVersion({});
}

std::unique_ptr<SettingsView> SettingsViewTest::shown()
{
    auto view = std::make_unique<SettingsView>(*m_delegate);
    view->resize(windowSize);
    view->show();
    view->activateWindow();
    std::ignore = QTest::qWaitForWindowActive(view.get());
    return view;
}

void SettingsViewTest::beginsWithTheGeneralPage()
{
    const auto view = shown();
    QCOMPARE(view->selection(), SettingsSection::General);
    QVERIFY(rowOf(*view, SettingsSection::General).isChecked());
    QVERIFY(view->findChild<GeneralSettingsPage *>()->isVisible());
}

void SettingsViewTest::theSidebarHasItsSectionsUnderTheirHeads()
{
    const auto view = shown();
    QStringList rows;
    for (const SidebarRow *const row : view->findChildren<SidebarRow *>()) {
        rows.append(row->text());
    }
    QCOMPARE(
        rows, (QStringList{QStringLiteral("General"), QStringLiteral("Gallery"), QStringLiteral("About")}));
    QCOMPARE(
        texts(*view->findChild<SettingsSidebarView *>()),
        (QStringList{QStringLiteral("Library"), QStringLiteral("Support")}));
}

void SettingsViewTest::hasTheGivenMeasures()
{
    const auto view = shown();
    QCOMPARE(view->findChild<SettingsSidebarView *>()->geometry(), QRect(0, 0, 190, 480));
    QCOMPARE(placeOf(rowOf(*view, SettingsSection::General), *view), QRect(8, 10, 174, 30));
    QCOMPARE(placeOf(rowOf(*view, SettingsSection::Gallery), *view), QRect(8, 73, 174, 30));
    QCOMPARE(placeOf(rowOf(*view, SettingsSection::About), *view), QRect(8, 136, 174, 30));
    // The page is beside the line; nothing of it has to be scrolled.
    const auto &page = *view->findChild<GeneralSettingsPage *>();
    QCOMPARE(placeOf(page, *view), QRect(191, 0, 449, 480));

    click(*view, SettingsSection::Gallery);
    const auto &gallery = *view->findChild<ScreenshotGalleryView *>();
    QCOMPARE(placeOf(gallery, *view), QRect(191, 50, 449, 398));
    const auto &heading = *gallery.parentWidget()->findChild<TextLabel *>();
    QCOMPARE(heading.text(), QStringLiteral("Gallery"));
    QCOMPARE(placeOf(heading, *view), QRect(191 + 20, 20, 449 - 20 - 20, 18));
}

void SettingsViewTest::theGeneralPageHasTheGivenMeasures()
{
    const auto view = shown();
    const auto &page = *view->findChild<GeneralSettingsPage *>();
    const auto cards = page.findChildren<SettingsCard *>();
    QCOMPARE(cards.size(), 3);
    int top = 20;
    for (const SettingsCard *const card : cards) {
        const QRect place = placeOf(*card, page);
        QCOMPARE(place.topLeft(), QPoint(20, top));
        QCOMPARE(place.width(), 449 - 20 - 20);
        top += place.height() + 20;
    }
    const auto &delay = *page.findChild<PopUpButton *>();
    QCOMPARE(delay.size(), QSize(130 + 2 * PopUpButton::outset, 26 + 2 * PopUpButton::outset));
    // Between the rows of the last card: a line, and nothing beside its point.
    const auto rows = cards.last()->findChildren<SettingsRow *>();
    QCOMPARE(rows.size(), 2);
    QCOMPARE(rows[1]->geometry().top(), rows[0]->geometry().bottom() + 1 + 1);
}

void SettingsViewTest::theAboutPageHasTheGivenMeasures()
{
    QCoreApplication::setApplicationVersion(QStringLiteral("1.2.3"));
    const auto view = shown();
    click(*view, SettingsSection::About);
    const auto &page = *view->findChild<AboutSettingsPage *>();
    const auto labels = page.findChildren<TextLabel *>(Qt::FindDirectChildrenOnly);
    QCOMPARE(labels.size(), 3);
    int top = 24;
    const auto verifyNext = [&page, &top](const QWidget &part, int height, int gapAfter) {
        const QRect place = placeOf(part, page);
        QCOMPARE(place.top(), top);
        QCOMPARE(place.height(), height);
        // In the middle, but for what half a point is rounded to.
        QVERIFY(qAbs(place.left() - (page.width() - 1 - place.right())) <= 1);
        top += height + gapAfter;
    };
    verifyNext(*page.findChild<ApplicationIcon *>(), 64, 12);
    verifyNext(*labels[0], 18, 3);
    verifyNext(*labels[1], 13, 8);
    verifyNext(*labels[2], 2 * 16, 20);
    QCOMPARE(labels[2]->width(), 360);
    const auto &features = *page.findChild<SettingsCard *>();
    verifyNext(features, 3 + 4 * 36 + 3 * 1 + 3, 0);
    QCOMPARE(features.width(), 400);
    const auto rows = page.findChildren<FeatureRow *>();
    QCOMPARE(rows.size(), 4);
    QCOMPARE(placeOf(*rows.first(), features).top(), 3);
    for (const SettingsRowDivider *const divider : page.findChildren<SettingsRowDivider *>()) {
        QCOMPARE(placeOf(*divider->findChild<Hairline *>(), features).left(), 44);
    }
}

void SettingsViewTest::aClickShowsThePage()
{
    const auto view = shown();
    click(*view, SettingsSection::Gallery);
    QCOMPARE(view->selection(), SettingsSection::Gallery);
    QVERIFY(view->findChild<GallerySettingsPage *>()->isVisible());
    QVERIFY(!view->findChild<GeneralSettingsPage *>()->isVisible());
    savePicture(*view, QStringLiteral("settings-gallery-empty"));
    click(*view, SettingsSection::About);
    QVERIFY(texts(*view).contains(QStringLiteral("Deskbroom")));
    savePicture(*view, QStringLiteral("settings-about"));
}

void SettingsViewTest::theKeyboardMovesTheSelection()
{
    const auto view = shown();
    QTest::keyClick(view.get(), Qt::Key_Tab);
    QCOMPARE(view->focusWidget(), &rowOf(*view, SettingsSection::General));
    const auto press = [&view](Qt::Key key) {
        QTest::keyClick(view->focusWidget(), key);
        return view->selection();
    };
    QCOMPARE(press(Qt::Key_Down), SettingsSection::Gallery);
    QCOMPARE(press(Qt::Key_Down), SettingsSection::About);
    QCOMPARE(press(Qt::Key_Down), SettingsSection::About);
    QCOMPARE(press(Qt::Key_Home), SettingsSection::General);
    QCOMPARE(press(Qt::Key_Up), SettingsSection::General);
    QCOMPARE(press(Qt::Key_End), SettingsSection::About);
    QCOMPARE(press(Qt::Key_Up), SettingsSection::Gallery);
}

void SettingsViewTest::theKeyboardStaysInTheSidebar()
{
    const auto view = shown();
    QTest::keyClick(view.get(), Qt::Key_Tab);
    // Also where the page would like to have it.
    QTest::keyClick(view->focusWidget(), Qt::Key_Down);
    QCOMPARE(view->focusWidget(), &rowOf(*view, SettingsSection::Gallery));
}

void SettingsViewTest::tabGoesThroughTheGalleryPageWithoutScreenshots()
{
    const auto view = shown();
    click(*view, SettingsSection::Gallery);
    const auto &gallery = *view->findChild<ScreenshotGalleryView *>();
    QTRY_VERIFY_WITH_TIMEOUT(!gallery.viewModel().isLoading(), patience);
    QCoreApplication::sendPostedEvents();
    QStringList stops;
    for (int press = 0; press < 4; ++press) {
        QTest::keyClick(view->focusWidget(), Qt::Key_Tab);
        const auto *const control = qobject_cast<QAbstractButton *>(view->focusWidget());
        stops.append(control == nullptr ? QString() : control->text());
    }
    const QString row = rowOf(*view, SettingsSection::Gallery).text();
    QCOMPARE(stops, QStringList({row, QStringLiteral("Standard"), QStringLiteral("Refresh"), row}));
}

void SettingsViewTest::noFocusRingUntilTheKeyboardIsUsed()
{
    const auto view = shown();
    QCOMPARE(view->focusWidget(), view.get());
    click(*view, SettingsSection::Gallery);
    QCOMPARE(view->focusWidget(), view.get());
    // What has the keyboard on a page loses it with the page.
    view->findChild<ScreenshotGalleryView *>()->setFocus();
    click(*view, SettingsSection::About);
    QCOMPARE(view->focusWidget(), view.get());
}

void SettingsViewTest::aPageIsMadeWhenItIsFirstShownAndKept()
{
    const auto view = shown();
    QCOMPARE(view->findChild<GallerySettingsPage *>(), nullptr);
    click(*view, SettingsSection::Gallery);
    const auto *const page = view->findChild<GallerySettingsPage *>();
    QVERIFY(page != nullptr);
    click(*view, SettingsSection::General);
    click(*view, SettingsSection::Gallery);
    QCOMPARE(view->findChildren<GallerySettingsPage *>(), {const_cast<GallerySettingsPage *>(page)});
}

void SettingsViewTest::theGalleryPageHasItsOwnModel()
{
    m_home->makeScreenshots(70);
    std::ignore = m_home->makeScreenshot(71, m_home->home().pictures());
    const auto view = shown();
    click(*view, SettingsSection::Gallery);
    const auto &gallery = *view->findChild<ScreenshotGalleryView *>();
    QTRY_VERIFY_WITH_TIMEOUT(!gallery.viewModel().isLoading(), patience);
    // Batches of 60, of the Desktop alone.
    QCOMPARE(gallery.viewModel().displayedScreenshots().size(), 60);
    QCOMPARE(gallery.viewModel().allScreenshots().size(), 70);
    QCOMPARE(gallery.mode(), GalleryMode::Expanded);
    QCOMPARE(gallery.gridSize(), GalleryGridSize::Standard);
}

void SettingsViewTest::theAboutPageSaysTheVersion_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<QStringList>("shownTexts");
    const QString name = QStringLiteral("Deskbroom");
    QTest::newRow("set") << QStringLiteral("1.2.3") << QStringList{name, QStringLiteral("Version 1.2.3")};
    QTest::newRow("not set") << QString() << QStringList{name};
}

void SettingsViewTest::theAboutPageSaysTheVersion()
{
    QFETCH(const QString, version);
    QFETCH(QStringList, shownTexts);
    QCoreApplication::setApplicationVersion(version);
    const auto view = shown();
    click(*view, SettingsSection::About);
    shownTexts += QStringList{
        QStringLiteral("Keeps your desktop clean by automatically managing your screenshots."),
        QStringLiteral("Get notified when screenshots are taken"),
        QStringLiteral("Option to delete screenshots immediately"),
        QStringLiteral("Schedule screenshots for automatic deletion"),
        QStringLiteral("Confirmation before deleting"),
    };
    const QStringList all = texts(*view);
    // Behind the sidebar's two heads.
    QCOMPARE(all.mid(2), shownTexts);
    QCOMPARE(view->findChild<ApplicationIcon *>()->size(), QSize(64, 64));
}

void SettingsViewTest::isMirroredFromRightToLeft()
{
    const auto view = shown();
    view->setLayoutDirection(Qt::RightToLeft);
    QCOMPARE(view->findChild<SettingsSidebarView *>()->geometry().right(), view->width() - 1);
    QCOMPARE(placeOf(*view->findChild<GeneralSettingsPage *>(), *view).left(), 0);
    savePicture(*view, QStringLiteral("settings-right-to-left"));
}

void SettingsViewTest::theSidebarIsAListForAssistivePrograms()
{
    const auto view = shown();
    QAccessibleInterface *const list =
        QAccessible::queryAccessibleInterface(view->findChild<SettingsSidebarView *>());
    QCOMPARE(list->role(), QAccessible::List);
    QList<QAccessibleInterface *> items;
    for (int index = 0; index < list->childCount(); ++index) {
        if (list->child(index)->role() == QAccessible::ListItem) {
            items.append(list->child(index));
        }
    }
    QCOMPARE(items.size(), 3);
    QCOMPARE(items[1]->text(QAccessible::Name), QStringLiteral("Gallery"));
    QVERIFY(items[0]->state().selected);
    QVERIFY(!items[1]->state().selected);
    items[1]->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(view->selection(), SettingsSection::Gallery);
    QVERIFY(items[1]->state().selected);
    QVERIFY(!items[0]->state().selected);
}

void SettingsViewTest::badgesAreInTheirColours()
{
    const auto view = shown();
    const Theme &theme = Theme::current();
    const auto colourOf = [&view](SettingsSection section) {
        // At the lower edge, where the gradient ends and the symbol doesn't reach.
        return colorAt(rendered(const_cast<SidebarRow &>(rowOf(*view, section)), 2), {19, 25.25});
    };
    QVERIFY(isNearly(colourOf(SettingsSection::General), theme.gray, 3));
    QVERIFY(isNearly(colourOf(SettingsSection::Gallery), theme.blue, 3));
    QVERIFY(isNearly(colourOf(SettingsSection::About), theme.gray, 3));
}

QTEST_MAIN(SettingsViewTest)
#include "SettingsViewTest.moc"
